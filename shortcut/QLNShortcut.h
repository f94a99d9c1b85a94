#pragma once

#include "platform/HotKey.h"

#include <QStringList>

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// Is the global shortcut as the user has set it.
struct QLNShortcut
{
    /// The keys are absent when the desktop's own settings bind a key to "quillon --toggle". There
    /// is nothing to bind here then, and yet a shortcut is set.
    std::optional<KeyCombination> keys;

    static QLNShortcut boundByDesktop() { return {}; }
    /// Reads "Ctrl+Alt+Space" or "desktop", in any case and with the usual other names of keys and
    /// modifiers. The shortcut is absent when the text is none. The key need not be on any
    /// keyboard.
    static std::optional<QLNShortcut> fromText(std::string_view text);
    /// Returns a text that fromText() reads back as this shortcut.
    std::string text() const;
    /// Returns the names that the keys have on the user's keyboard, modifiers first. There are
    /// none for a shortcut without keys.
    QStringList keyNames() const;

    friend bool operator==(const QLNShortcut &, const QLNShortcut &) = default;
};

/// Lists the modifiers of a combination, each with its name, in the order in which they are
/// written.
struct ShortcutModifier
{
    std::string_view name;
    bool KeyCombination::*isHeld;

    /// Finds a modifier by its name or one of its other usual names, in any case. Returns null for
    /// an unknown name.
    static const ShortcutModifier *named(std::string_view name);
    static const ShortcutModifier *begin();
    static const ShortcutModifier *end();
};

/// Returns KeyCombination::key for the way a person writes it: "Z" is "z", "PgUp" is "Prior".
std::string keyFromText(std::string_view text);

} // namespace quillon
