#pragma once

namespace quillon {

/// The modifier keys that choose an action: Alt, Shift and Ctrl, in this order. The Super key is
/// never considered.
struct ActionShortcutFlags
{
    bool option = false;
    bool shift = false;
    bool command = false;
    friend bool operator==(const ActionShortcutFlags &, const ActionShortcutFlags &) = default;
};

} // namespace quillon
