#pragma once

#include "platform/HotKey.h"

namespace quillon {

/// Keeps a key combination registered with the desktop as long as this object lives. The service
/// outlives it and serves only one object at a time.
class QLNHotKey
{
public:
    /// Each press calls pressed. The outcome is reported as by HotKey::grab().
    QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
              HotKey::Receiver receiver);
    ~QLNHotKey();
    QLNHotKey(const QLNHotKey &) = delete;
    QLNHotKey &operator=(const QLNHotKey &) = delete;

private:
    HotKey &service_;
};

} // namespace quillon
