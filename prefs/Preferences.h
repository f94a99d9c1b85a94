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
// them. Writes return false when the value could not be written.

/// A yes or no among the settings.
class PreferencesBoolean
{
public:
    /// The default only describes the preference. An absent key reads as false whatever the default
    /// is.
    PreferencesBoolean(DefaultsStore &store, std::string_view key, bool defaults = false);

    /// Returns the store's boolean reading of the value under the key, or false when there is none.
    bool value() const;
    bool set(bool value);

    const std::string &key() const { return key_; }
    bool defaults() const { return defaults_; }

private:
    DefaultsStore &store_;
    std::string key_;
    bool defaults_;
};

/// A list of strings among the settings. Once a list has been written, it holds, even an empty one.
class PreferencesArrayList
{
public:
    /// Duplicates are refused whether or not the list is called unique.
    PreferencesArrayList(DefaultsStore &store, std::string key, bool uniques,
                         std::vector<std::string> defaults);

    /// Returns the stored list, or the defaults while nothing, or no list of strings, is stored.
    std::vector<std::string> values() const;
    /// Appends the value and writes the whole list. Writes nothing when the list has the value
    /// already.
    bool add(const std::string &value);
    /// Removes every such value and writes the whole list, whether or not it has changed.
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

/// One choice of a menu. Two choices are equal when their keys are.
struct PreferencesSelectListItem
{
    /// The stored text.
    std::string key;
    /// The text that is shown.
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

    /// Returns one line for diagnostics, in English.
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
    /// Returns the stored choice, or the default while no string is stored. For a stored string
    /// that names no item, prints one line to standard error and returns the choice that was read
    /// last. If no choice was read before, prints that line and ends the program with status 1.
    const PreferencesSelectListItem &selected() const;
    /// Returns the stored string if it names no item.
    std::optional<WrongChoice> wrongChoice() const;
    /// Stores the item, which is one of the values.
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
    /// The choice that was read last; null until one was read.
    mutable const PreferencesSelectListItem *lastGood_ GUARDED_BY(mutex_) = nullptr;
    /// The wrong choice that was reported last.
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
    /// Where a folder opens: in a new window or in the existing one.
    struct OpenInFinder
    {
        static const PreferencesSelectListItem newWindow;
        static const PreferencesSelectListItem existing;
    };
    /// How the rows of an answer are ranked.
    struct MatchOrder
    {
        static const PreferencesSelectListItem path;
        static const PreferencesSelectListItem names;
    };
    // NOLINTEND(readability-identifier-naming)

    /// Reads each choice once, so that it stays in force when a wrong one is stored later.
    explicit Preferences(DefaultsStore &store);

    PreferencesSelectList quickSearchBehavior;
    PreferencesBoolean finderQuickSearch;
    PreferencesSelectList openInFinderBehavior;
    PreferencesSelectList matchOrder;
    /// True when an answer has only what matches in the order that was typed.
    PreferencesBoolean matchWordsInOrder;
    /// True when the desktop's own search is answered with nothing.
    PreferencesBoolean hideFromDesktopSearch;
    /// True when what is opened is not entered in the desktop's list of recent files.
    PreferencesBoolean hideFromRecentFiles;
    PreferencesBoolean enableBetaUpdates;

    /// Reads every choice, so that a wrong one is reported now and not when the choice is needed.
    void readChoices() const;
    /// Returns the stored choices, of all lists, that name no item. A start that finds one reports
    /// it and ends. Later, a wrong choice leaves the choice that was read last in force.
    std::vector<WrongChoice> wrongChoices() const;
};

} // namespace quillon
