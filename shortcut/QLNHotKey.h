#pragma once

#include "platform/HotKey.h"

namespace quillon {

/// A key combination that is registered with the desktop as long as this lives. One at a time for
/// each service, which outlives it.
class QLNHotKey
{
public:
    /// Pressed is called for each press, told as by HotKey::grab().
    QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
              HotKey::Told told);
    ~QLNHotKey();
    QLNHotKey(const QLNHotKey &) = delete;
    QLNHotKey &operator=(const QLNHotKey &) = delete;

private:
    HotKey &service_;
};

} // namespace quillon
