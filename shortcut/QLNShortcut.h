#pragma once

#include "platform/HotKey.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// The global shortcut as the user has set it.
struct QLNShortcut
{
    /// Absent when the desktop's own settings bind a key to "quillon --toggle": then there is
    /// nothing to bind here, and yet a shortcut is set.
    std::optional<KeyCombination> keys;

    static QLNShortcut boundByDesktop() { return {}; }
    /// From "Ctrl+Alt+Space" or "desktop", in any case and with the usual other names of keys and
    /// modifiers. Absent when it is none of them; whether a keyboard has the key is not asked.
    static std::optional<QLNShortcut> fromText(std::string_view text);
    /// A text that fromText() reads back as this.
    std::string text() const;

    friend bool operator==(const QLNShortcut &, const QLNShortcut &) = default;
};

/// The modifiers of a combination, each with its name in a text, in the order they are written.
struct ShortcutModifier
{
    std::string_view name;
    bool KeyCombination::*isHeld;

    /// By name or by one of its other usual names, in any case; null for an unknown one.
    static const ShortcutModifier *named(std::string_view name);
    static const ShortcutModifier *begin();
    static const ShortcutModifier *end();
};

/// KeyCombination::key from how a person writes it: "Z" is "z", "PgUp" is "Prior".
std::string keyFromText(std::string_view text);

} // namespace quillon
