#pragma once

#include <span>
#include <string>
#include <string_view>

namespace quillon {

/// The modifier keys that choose an action: Alt, Shift and Ctrl, in this order. The Super key is
/// never considered.
struct ActionShortcutFlags
{
    bool option = false;
    bool shift = false;
    bool command = false;
    friend bool operator==(const ActionShortcutFlags &, const ActionShortcutFlags &) = default;

    /// Returns the symbols of the keys held and "Return", joined by dashes, such as "⌥-⇧-Return".
    std::string title() const;
};

/// Returns the flags whose symbols are anywhere in the title; none for a title without any.
ActionShortcutFlags flagsFromShortcutTitle(std::string_view title);
/// Returns the combinations that the user may assign, in the order of their menu.
std::span<const ActionShortcutFlags> allShortcutFlags();

} // namespace quillon
