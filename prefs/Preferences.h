#pragma once

#include "base/Mutex.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class DefaultsStore;

// Every read of a wrapper goes to the store and every write straight to it. The wrappers are safe
// from every thread, but adding to a list and removing from it are not atomic. The store outlives
// them. Writes return false when the value could not be brought to the disk.

/// A yes or no among the settings.
class PreferencesBoolean
{
public:
    /// The default describes the preference; an absent key reads as false whatever it says.
    PreferencesBoolean(DefaultsStore &store, std::string_view key, bool defaults = false);

    /// The store's boolean reading of whatever stands under the key; false when nothing does.
    bool value() const;
    bool set(bool value);

    const std::string &key() const { return key_; }
    bool defaults() const { return defaults_; }

private:
    DefaultsStore &store_;
    std::string key_;
    bool defaults_;
};

/// A list of strings among the settings. Once written the stored list holds, even an empty one.
class PreferencesArrayList
{
public:
    /// Duplicates are refused whether the list is called unique or not.
    PreferencesArrayList(DefaultsStore &store, std::string key, bool uniques,
                         std::vector<std::string> defaults);

    /// The defaults while nothing, or no list of strings, is stored.
    std::vector<std::string> values() const;
    /// Appends and writes the whole list; writes nothing when the value is in it already.
    bool add(const std::string &value);
    /// Removes every such value and writes the whole list, changed or not.
    bool remove(const std::string &value);

    const std::string &key() const { return key_; }
    bool uniques() const { return uniques_; }
    const std::vector<std::string> &defaults() const { return defaults_; }

private:
    bool write(const std::vector<std::string> &values);

    DefaultsStore &store_;
    std::string key_;
    bool uniques_;
    std::vector<std::string> defaults_;
};

/// One choice of a menu. Two are equal when their keys are.
struct PreferencesSelectListItem
{
    /// What is stored.
    std::string key;
    /// What is shown.
    std::string title;

    friend bool operator==(const PreferencesSelectListItem &a, const PreferencesSelectListItem &b)
    {
        return a.key == b.key;
    }
};

/// A stored choice that names no item of its list.
struct WrongChoice
{
    /// The key in the settings.
    std::string key;
    /// The text that is stored.
    std::string value;
    /// The texts that may be stored, in menu order.
    std::vector<std::string> permitted;

    /// One line for diagnostics, in English.
    std::string description() const;

    friend bool operator==(const WrongChoice &, const WrongChoice &) = default;
};

/// One choice out of several among the settings.
class PreferencesSelectList
{
public:
    /// The values in menu order; the default is one of them.
    PreferencesSelectList(DefaultsStore &store, std::string_view key,
                          std::vector<PreferencesSelectListItem> values,
                          PreferencesSelectListItem defaults);

    std::vector<std::string> keys() const;
    /// The default while no string is stored. For a stored string that names no item, the choice
    /// that was read last, with one line on standard error for each such string; where no choice
    /// was read before, that line and the end of the program, with status 1.
    const PreferencesSelectListItem &selected() const;
    /// The stored string where it names no item.
    std::optional<WrongChoice> wrongChoice() const;
    /// The item is one of the values.
    bool select(const PreferencesSelectListItem &item);

    const std::string &key() const { return key_; }
    const std::vector<PreferencesSelectListItem> &values() const { return values_; }
    const PreferencesSelectListItem &defaults() const { return defaults_; }

private:
    const PreferencesSelectListItem *find(const std::string &stored) const;
    WrongChoice wrong(const std::string &stored) const;

    DefaultsStore &store_;
    std::string key_;
    std::vector<PreferencesSelectListItem> values_;
    PreferencesSelectListItem defaults_;
    mutable Mutex mutex_;
    /// The choice that was read last; null until there was one.
    mutable const PreferencesSelectListItem *lastGood_ GUARDED_BY(mutex_) = nullptr;
    /// The wrong choice that was said last.
    mutable std::string complained_ GUARDED_BY(mutex_);
};

/// The wrappers that the whole application shares.
class Preferences
{
public:
    // NOLINTBEGIN(readability-identifier-naming): read like the values of an enum
    /// What choosing a quick-search row does.
    struct QuickSearchBehavior
    {
        static const PreferencesSelectListItem open;
        static const PreferencesSelectListItem select;
    };
    /// Where a folder opens.
    struct OpenInFinder
    {
        static const PreferencesSelectListItem newWindow;
        static const PreferencesSelectListItem existing;
    };
    // NOLINTEND(readability-identifier-naming)

    /// Reads each choice once, so that it stays in force when a wrong one is stored later.
    explicit Preferences(DefaultsStore &store);

    PreferencesSelectList quickSearchBehavior;
    PreferencesBoolean finderQuickSearch;
    PreferencesSelectList openInFinderBehavior;
    PreferencesBoolean enableBetaUpdates;

    /// Reads every choice, so that a wrong one is said now and not when the choice is needed.
    void readChoices() const;
    /// The stored choices that name no item, of all lists. A start that finds one says it and
    /// ends; afterwards a wrong choice leaves the choice that was read last in force.
    std::vector<WrongChoice> wrongChoices() const;
};

} // namespace quillon
