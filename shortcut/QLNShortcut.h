#pragma once

#include "platform/HotKey.h"

#include <QStringList>

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// The global shortcut as the user has set it.
struct QLNShortcut
{
    /// The keys, which are absent when the desktop's own settings bind a key to "quillon --toggle".
    /// A shortcut is set then too, but there is nothing to bind here.
    std::optional<KeyCombination> keys;

    static QLNShortcut boundByDesktop() { return {}; }
    /// Reads "Ctrl+Alt+Space" or "desktop", in any case and with the usual other names of keys and
    /// modifiers. Returns nothing when the text is not a shortcut. The key need not be on any
    /// keyboard.
    static std::optional<QLNShortcut> fromText(std::string_view text);
    /// Returns a text that fromText() reads back as this shortcut.
    std::string text() const;
    /// Returns the names that the keys have on the user's keyboard, modifiers first. The list is
    /// empty for a shortcut without keys.
    QStringList keyNames() const;

    friend bool operator==(const QLNShortcut &, const QLNShortcut &) = default;
};

/// A modifier of a combination and its name. The modifiers are listed in the order in which they
/// are written.
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

/// Returns KeyCombination::key for a key as a person writes it: "z" for "Z", "Prior" for "PgUp".
std::string keyFromText(std::string_view text);

} // namespace quillon
