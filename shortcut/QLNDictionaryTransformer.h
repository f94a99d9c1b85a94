#pragma once

#include "base/DefaultsStore.h"
#include "shortcut/QLNShortcut.h"

#include <optional>

namespace quillon {

/// Converts a shortcut to its stored form and back. The form is {"key": "space", "modifiers":
/// ["Ctrl", "Alt"]}, or the string "desktop" for a shortcut that the desktop binds. Texts that
/// QLNShortcut::fromText() takes are read as well.
class QLNDictionaryTransformer
{
public:
    static DefaultsValue storedForm(const QLNShortcut &shortcut);
    /// Returns nothing when the value is not a shortcut.
    static std::optional<QLNShortcut> shortcut(const DefaultsValue &stored);
};

} // namespace quillon
