#pragma once

#include "base/DefaultsStore.h"
#include "base/Mutex.h"
#include "results/SearchBaseResult.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon {

/// Hashes strings and views alike, so that a map is searched without making a string.
struct StringViewHash
{
    using is_transparent = void; // NOLINT(readability-identifier-naming): the library's name
    std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>{}(text);
    }
};

using UseCounts = std::unordered_map<std::string, std::int64_t, StringViewHash, std::equal_to<>>;

/// The recorded uses at one moment. A snapshot never changes once it is handed out.
struct RecentAccessSnapshot
{
    /// The uses by path, every one above zero.
    UseCounts counts;
    /// The sum of all counts.
    std::int64_t totalUsages = 0;
    /// The counts again, highest first, equal ones by path.
    std::vector<const UseCounts::value_type *> ranked;

    /// Returns the path's share of all uses, 0 to 1, which is 0.0 for a path without uses.
    double share(std::string_view path) const;
};

/// Stores use counts.
class RecentAccessScoreDataStore
{
public:
    RecentAccessScoreDataStore() = default;
    virtual ~RecentAccessScoreDataStore() = default;
    RecentAccessScoreDataStore(const RecentAccessScoreDataStore &) = delete;
    RecentAccessScoreDataStore &operator=(const RecentAccessScoreDataStore &) = delete;

    /// Returns nothing when nothing, or no dictionary, is stored under the key.
    virtual std::optional<DefaultsDictionary> dictionary(std::string_view key) = 0;
    /// Stores what `made` returns for the value that is stored. `made` may be called more than
    /// once. Returns false when the value could not be stored.
    virtual bool edit(std::string_view key, const DefaultsStore::Made &made) = 0;
};

/// Stores use counts among the user's settings.
class DefaultsRecentAccessScoreDataStore final : public RecentAccessScoreDataStore
{
public:
    explicit DefaultsRecentAccessScoreDataStore(DefaultsStore &store) : store_(store) {}

    std::optional<DefaultsDictionary> dictionary(std::string_view key) override;
    bool edit(std::string_view key, const DefaultsStore::Made &made) override;

private:
    DefaultsStore &store_;
};

/// The use counts and their stored form. Safe from every thread. Each change is made to the counts
/// that are stored, so that it loses none of them, even when they could not be read before. What
/// could not be stored holds until the next change.
class RecentAccessScoreData
{
public:
    /// The settings key of a dictionary from path to use count.
    static constexpr std::string_view KEY = "recent-access-score-data";

    RecentAccessScoreData(UseCounts dataset, RecentAccessScoreDataStore &dataStore);

    /// Counts one use and stores it at once. A count or a sum that no longer fits stops the
    /// program. Returns false when the store still has the former counts.
    bool recordUse(const std::string &path);
    /// Takes one use of the path back and stores that at once. Does nothing when the path has no
    /// uses.
    void takeBack(const std::string &path);
    /// Returns the n most used paths, most used first, equal counts by path. n is not negative.
    std::vector<std::string> topPaths(int n) const;
    /// Forgets the counts of one path, also in the store. Returns false when the store still has
    /// them.
    bool forget(const std::string &path);
    /// Forgets every count, as forget() does for one path.
    bool reset();
    std::shared_ptr<const RecentAccessSnapshot> snapshot() const;

private:
    bool change(const std::function<void(UseCounts &counts)> &edit) EXCLUDES(changing_, mutex_);
    void replace(UseCounts dataset) EXCLUDES(mutex_);

    RecentAccessScoreDataStore &dataStore_;
    /// It is held for the length of a change. Readers take another mutex, so that they wait for no
    /// disk.
    Mutex changing_;
    mutable Mutex mutex_;
    std::shared_ptr<const RecentAccessSnapshot> current_ GUARDED_BY(mutex_);
};

/// Knows how often the user opened each path, and its share of all uses. Safe from every thread. A
/// change of the counts waits for the disk.
class RecentAccessScore
{
public:
    /// Loads the stored counts. Leaves out whatever is not a whole number above zero, and the
    /// largest of counts that add up to more than 2^62.
    explicit RecentAccessScore(RecentAccessScoreDataStore &store);

    /// Records one use of the result's path without its closing slash, so that a folder counts as
    /// the same one however it was reached. Returns true when the use is saved, and false when it
    /// counts only until the end of the program.
    bool addRecentAccess(const SearchBaseResult &result);
    /// Takes a recorded use of the result's path back, for example because the path could not be
    /// opened.
    void takeBack(const SearchBaseResult &result);
    /// Returns the path's share of all uses, 0 to 1.
    double score(std::string_view path) const;
    /// Returns the n most used paths, most used first, equal counts by path. n is not negative.
    std::vector<std::string> topScores(int n) const;
    /// Forgets the uses of one path. Returns false when the store still has them. Searches stop
    /// counting them in either case.
    bool forgetUses(const std::string &path);
    /// Forgets all uses, as forgetUses() does for one path.
    bool resetScores();
    /// Returns the uses as they are now, for a search. Later uses do not show in it.
    std::shared_ptr<const RecentAccessSnapshot> snapshot() const;

private:
    RecentAccessScoreData data_;
};

} // namespace quillon
