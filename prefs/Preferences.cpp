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

std::string WrongChoice::description() const
{
    std::string line =
        "the setting \"" + key + "\" holds \"" + value + "\", which is none of its values:";
    for (const std::string &text : permitted)
        line += " \"" + text + "\"";
    return line;
}

std::vector<std::string> PreferencesSelectList::keys() const
{
    std::vector<std::string> keys;
    std::ranges::transform(values_, std::back_inserter(keys), &PreferencesSelectListItem::key);
    return keys;
}

const PreferencesSelectListItem &PreferencesSelectList::selected() const
{
    const auto stored = store_.string(key_);
    const PreferencesSelectListItem *const item = stored ? find(*stored) : &defaults_;
    const MutexLock lock(mutex_);
    if (item) {
        lastGood_ = item;
        return *item;
    }
    if (!lastGood_ || complained_ != *stored) {
        complained_ = *stored;
        std::fprintf(stderr, "quillon: %s%s\n", wrong(*stored).description().c_str(),
                     lastGood_ ? "; the former choice stays in force" : "");
    }
    // The choice is needed and is not known. Other threads are running, so nothing is cleared up.
    // What was written is on the disk.
    if (!lastGood_)
        std::_Exit(EXIT_FAILURE);
    return *lastGood_;
}

std::optional<WrongChoice> PreferencesSelectList::wrongChoice() const
{
    const auto stored = store_.string(key_);
    const PreferencesSelectListItem *const item = stored ? find(*stored) : &defaults_;
    if (!item)
        return wrong(*stored);
    const MutexLock lock(mutex_);
    lastGood_ = item;
    return std::nullopt;
}

bool PreferencesSelectList::select(const PreferencesSelectListItem &item)
{
    require(find(item.key) != nullptr, "a choice is one of its list");
    return store_.set(key_, {item.key});
}

const PreferencesSelectListItem *PreferencesSelectList::find(const std::string &stored) const
{
    const auto item = std::ranges::find(values_, stored, &PreferencesSelectListItem::key);
    return item == values_.end() ? nullptr : &*item;
}

WrongChoice PreferencesSelectList::wrong(const std::string &stored) const
{
    return {.key = key_, .value = stored, .permitted = keys()};
}

const PreferencesSelectListItem Preferences::QuickSearchBehavior::open{"open",
                                                                       "Open in Default App"};
const PreferencesSelectListItem Preferences::QuickSearchBehavior::select{"select",
                                                                         "Show in Finder"};
const PreferencesSelectListItem Preferences::OpenInFinder::newWindow{"new", "New Window"};
const PreferencesSelectListItem Preferences::OpenInFinder::existing{"existing", "Existing Window"};
const PreferencesSelectListItem Preferences::MatchOrder::path{"path", "By the whole path"};
const PreferencesSelectListItem Preferences::MatchOrder::names{"names", "Names first"};

Preferences::Preferences(DefaultsStore &store)
    : quickSearchBehavior(store, PreferenceKeys::QUICK_SEARCH_BEHAVIOR,
                          {QuickSearchBehavior::open, QuickSearchBehavior::select},
                          QuickSearchBehavior::open),
      finderQuickSearch(store, PreferenceKeys::FINDER_QUICK_SEARCH),
      openInFinderBehavior(store, PreferenceKeys::OPEN_FINDER_BEHAVIOR,
                           {OpenInFinder::newWindow, OpenInFinder::existing},
                           OpenInFinder::newWindow),
      matchOrder(store, PreferenceKeys::MATCH_ORDER, {MatchOrder::path, MatchOrder::names},
                 MatchOrder::path),
      matchWordsInOrder(store, PreferenceKeys::MATCH_WORDS_IN_ORDER),
      hideFromDesktopSearch(store, PreferenceKeys::HIDE_FROM_DESKTOP_SEARCH),
      hideFromRecentFiles(store, PreferenceKeys::HIDE_FROM_RECENT_FILES),
      enableBetaUpdates(store, PreferenceKeys::ENABLE_BETA_UPDATES)
{
    // This reads each choice, which stays in force when a wrong one is stored later.
    wrongChoices();
}

void Preferences::readChoices() const
{
    quickSearchBehavior.selected();
    openInFinderBehavior.selected();
    matchOrder.selected();
}

std::vector<WrongChoice> Preferences::wrongChoices() const
{
    std::vector<WrongChoice> wrong;
    for (const PreferencesSelectList *list :
         {&quickSearchBehavior, &openInFinderBehavior, &matchOrder})
        if (auto choice = list->wrongChoice())
            wrong.push_back(std::move(*choice));
    return wrong;
}

} // namespace quillon
