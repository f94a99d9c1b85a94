#include "prefs/Preferences.h"

#include "base/DefaultsStore.h"
#include "base/Require.h"
#include "prefs/PreferenceKeys.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace quillon {

PreferencesBoolean::PreferencesBoolean(DefaultsStore &store, std::string_view key, bool defaults)
    : store_(store), key_(key), defaults_(defaults)
{}

bool PreferencesBoolean::value() const
{
    return store_.boolean(key_).value_or(false);
}

bool PreferencesBoolean::set(bool value)
{
    return store_.set(key_, {value});
}

PreferencesArrayList::PreferencesArrayList(DefaultsStore &store, std::string key, bool uniques,
                                           std::vector<std::string> defaults)
    : store_(store), key_(std::move(key)), uniques_(uniques), defaults_(std::move(defaults))
{}

std::vector<std::string> PreferencesArrayList::values() const
{
    return store_.stringArray(key_).value_or(defaults_);
}

bool PreferencesArrayList::add(const std::string &value)
{
    std::vector<std::string> current = values();
    if (std::ranges::find(current, value) != current.end())
        return true;
    current.push_back(value);
    return write(current);
}

bool PreferencesArrayList::remove(const std::string &value)
{
    std::vector<std::string> current = values();
    std::erase(current, value);
    return write(current);
}

bool PreferencesArrayList::write(const std::vector<std::string> &values)
{
    DefaultsArray array;
    for (const std::string &value : values)
        array.push_back({value});
    return store_.set(key_, {std::move(array)});
}

PreferencesSelectList::PreferencesSelectList(DefaultsStore &store, std::string_view key,
                                             std::vector<PreferencesSelectListItem> values,
                                             PreferencesSelectListItem defaults)
    : store_(store), key_(key), values_(std::move(values)), defaults_(std::move(defaults))
{}

std::vector<std::string> PreferencesSelectList::keys() const
{
    std::vector<std::string> keys;
    std::ranges::transform(values_, std::back_inserter(keys), &PreferencesSelectListItem::key);
    return keys;
}

const PreferencesSelectListItem &PreferencesSelectList::selected() const
{
    const auto stored = store_.string(key_);
    if (!stored)
        return defaults_;
    const auto item = std::ranges::find(values_, *stored, &PreferencesSelectListItem::key);
    if (item == values_.end())
        stopOn(*stored);
    return *item;
}

bool PreferencesSelectList::select(const PreferencesSelectListItem &item)
{
    require(std::ranges::find(values_, item) != values_.end(), "a choice is one of its list");
    return store_.set(key_, {item.key});
}

void PreferencesSelectList::stopOn(const std::string &stored) const
{
    std::string line = "quillon: the setting \"" + key_ + "\" holds \"" + stored +
                       "\", which is none of its values:";
    for (const auto &item : values_)
        line += " \"" + item.key + "\"";
    std::fprintf(stderr, "%s\n", line.c_str());
    std::abort();
}

const PreferencesSelectListItem Preferences::QuickSearchBehavior::open{"open",
                                                                       "Open in Default App"};
const PreferencesSelectListItem Preferences::QuickSearchBehavior::select{"select",
                                                                         "Show in Finder"};
const PreferencesSelectListItem Preferences::OpenInFinder::newWindow{"new", "New Window"};
const PreferencesSelectListItem Preferences::OpenInFinder::existing{"existing", "Existing Window"};

Preferences::Preferences(DefaultsStore &store)
    : quickSearchBehavior(store, PreferenceKeys::QUICK_SEARCH_BEHAVIOR,
                          {QuickSearchBehavior::open, QuickSearchBehavior::select},
                          QuickSearchBehavior::open),
      finderQuickSearch(store, PreferenceKeys::FINDER_QUICK_SEARCH),
      openInFinderBehavior(store, PreferenceKeys::OPEN_FINDER_BEHAVIOR,
                           {OpenInFinder::newWindow, OpenInFinder::existing},
                           OpenInFinder::newWindow),
      enableBetaUpdates(store, PreferenceKeys::ENABLE_BETA_UPDATES)
{}

} // namespace quillon
