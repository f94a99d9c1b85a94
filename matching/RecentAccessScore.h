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

/// The recorded uses at one moment. Never changes once it is handed out.
struct RecentAccessSnapshot
{
    /// Uses by path, every one above zero.
    UseCounts counts;
    /// The sum of all counts.
    std::int64_t totalUsages = 0;

    /// The path's share of all uses, 0 to 1; 0.0 for a path without uses.
    double share(std::string_view path) const;
};

/// Where use counts are kept.
class RecentAccessScoreDataStore
{
public:
    RecentAccessScoreDataStore() = default;
    virtual ~RecentAccessScoreDataStore() = default;
    RecentAccessScoreDataStore(const RecentAccessScoreDataStore &) = delete;
    RecentAccessScoreDataStore &operator=(const RecentAccessScoreDataStore &) = delete;

    /// The result is absent when nothing, or no dictionary, is stored under the key.
    virtual std::optional<DefaultsDictionary> dictionary(std::string_view key) = 0;
    /// Returns false when the value could not be kept.
    virtual bool set(const DefaultsValue &value, std::string_view key) = 0;
};

/// Keeps use counts among the user's settings.
class DefaultsRecentAccessScoreDataStore final : public RecentAccessScoreDataStore
{
public:
    explicit DefaultsRecentAccessScoreDataStore(DefaultsStore &store) : store_(store) {}

    std::optional<DefaultsDictionary> dictionary(std::string_view key) override;
    bool set(const DefaultsValue &value, std::string_view key) override;

private:
    DefaultsStore &store_;
};

/// The use counts and their stored form. Changed by the main thread, read by any.
class RecentAccessScoreData
{
public:
    /// The settings key, under which stands a dictionary from path to use count.
    static constexpr std::string_view KEY = "recent-access-score-data";

    RecentAccessScoreData(UseCounts dataset, RecentAccessScoreDataStore &dataStore);

    /// Counts one use and writes all counts at once. A count or a sum that no longer fits stops
    /// the program.
    void recordUse(const std::string &path);
    /// Takes one use of the path back and writes all counts at once. Does nothing without one.
    void takeBack(const std::string &path);
    /// The n most used paths, most used first, equal counts by path; n is not negative.
    std::vector<std::string> topPaths(int n) const;
    /// Forgets the counts of one path, in the store too. False when the store still has them.
    bool forget(std::string_view path);
    /// Forgets every count; as above.
    bool reset();
    std::shared_ptr<const RecentAccessSnapshot> snapshot() const;

private:
    void replace(UseCounts dataset);

    RecentAccessScoreDataStore &dataStore_;
    mutable Mutex mutex_;
    std::shared_ptr<const RecentAccessSnapshot> current_ GUARDED_BY(mutex_);
};

/// How often the user opened each path, and the share of all uses that gives it.
///
/// Uses are recorded and reset by the main thread; everything else is safe from any thread.
class RecentAccessScore
{
public:
    /// Loads the stored counts. Whatever is no whole number above zero is left out, and of counts
    /// that add up to more than 2^62 the largest.
    explicit RecentAccessScore(RecentAccessScoreDataStore &store);

    /// Records one use of the result's path without its closing slash, so that a folder counts as
    /// the same one however it was reached. The use is saved when this returns.
    void addRecentAccess(const SearchBaseResult &result);
    /// Takes a recorded use of the result's path back, as when it could not be opened.
    void takeBack(const SearchBaseResult &result);
    /// The path's share of all uses, 0 to 1.
    double score(std::string_view path) const;
    /// The n most used paths, most used first, equal counts by path; n is not negative.
    std::vector<std::string> topScores(int n) const;
    /// Forgets the uses of one path. False when the store still has them; a search does not count
    /// them any more in any case.
    bool forgetUses(std::string_view path);
    /// Forgets all uses; as above.
    bool resetScores();
    /// What a search works with; later uses do not show in it.
    std::shared_ptr<const RecentAccessSnapshot> snapshot() const;

private:
    RecentAccessScoreData data_;
};

} // namespace quillon
