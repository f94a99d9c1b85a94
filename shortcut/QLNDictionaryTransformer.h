#pragma once

#include "base/DefaultsStore.h"
#include "shortcut/QLNShortcut.h"

#include <optional>

namespace quillon {

/// The stored form of a shortcut: {"key": "space", "modifiers": ["Ctrl", "Alt"]}, or the string
/// "desktop" for one that the desktop binds. What QLNShortcut::fromText() takes is read as well.
class QLNDictionaryTransformer
{
public:
    static DefaultsValue storedForm(const QLNShortcut &shortcut);
    /// Absent when the value is no shortcut.
    static std::optional<QLNShortcut> shortcut(const DefaultsValue &stored);
};

} // namespace quillon
