#include "shortcut/QLNShortcutMonitor.h"

#include "base/DefaultsStore.h"
#include "prefs/PreferenceKeys.h"
#include "shortcut/QLNDictionaryTransformer.h"

#include <cstdio>
#include <utility>

namespace quillon {

QLNShortcutMonitor::QLNShortcutMonitor(DefaultsStore &defaults, DefaultsChanges &changes)
    : defaults_(defaults), receiver_(changes.onChange([this] { refresh(); }))
{
    shortcut_ = read();
}

bool QLNShortcutMonitor::store(const std::optional<QLNShortcut> &shortcut)
{
    const std::string_view key = PreferenceKeys::SHORTCUT;
    const bool isStored = shortcut
                              ? defaults_.set(key, QLNDictionaryTransformer::storedForm(*shortcut))
                              : defaults_.remove(key);
    refresh();
    return isStored;
}

std::optional<QLNShortcut> QLNShortcutMonitor::read()
{
    const std::string_view key = PreferenceKeys::SHORTCUT;
    const auto stored = defaults_.value(key);
    auto shortcut = stored ? QLNDictionaryTransformer::shortcut(*stored) : std::nullopt;
    const std::string fault = stored && !shortcut ? stored->description() : std::string();
    if (!fault.empty() && fault != complainedOf_)
        std::fprintf(stderr, "quillon: %.*s: %s is no shortcut; write one as \"Ctrl+Alt+Space\"\n",
                     static_cast<int>(key.size()), key.data(), fault.c_str());
    complainedOf_ = fault;
    return shortcut;
}

void QLNShortcutMonitor::refresh()
{
    auto shortcut = read();
    if (shortcut == shortcut_)
        return;
    shortcut_ = std::move(shortcut);
    Q_EMIT changed();
}

} // namespace quillon
