#pragma once

#include "platform/HotKey.h"

namespace quillon {

/// Keeps a key combination registered with the desktop as long as it lives. Each service has one at
/// a time and outlives it.
class QLNHotKey
{
public:
    /// Each press calls pressed. The outcome is reported as by HotKey::grab().
    QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
              HotKey::Told told);
    ~QLNHotKey();
    QLNHotKey(const QLNHotKey &) = delete;
    QLNHotKey &operator=(const QLNHotKey &) = delete;

private:
    HotKey &service_;
};

} // namespace quillon
