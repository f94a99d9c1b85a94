#include "matching/RecentAccessScore.h"

#include "base/PathText.h"
#include "base/Require.h"

#include <algorithm>
#include <span>
#include <utility>

namespace quillon {
namespace {

/// The highest sum of stored counts. It leaves room for more uses than anybody records.
constexpr std::int64_t MOST_STORED = std::int64_t{1} << 62;

/// Returns the stored counts that can be used. The settings can be written by hand, so the largest
/// counts are left out if the sum would be too high.
UseCounts usableCounts(const DefaultsDictionary &dictionary)
{
    std::vector<std::pair<std::int64_t, std::string>> stored;
    for (const auto &[path, value] : dictionary)
        if (const auto count = value.asInteger(); count && *count > 0)
            stored.emplace_back(*count, path);
    std::ranges::sort(stored);

    UseCounts counts;
    std::int64_t total = 0;
    for (auto &[count, path] : stored) {
        if (count > MOST_STORED - total)
            break;
        total += count;
        counts.emplace(std::move(path), count);
    }
    return counts;
}

std::int64_t sum(const UseCounts &counts)
{
    std::int64_t total = 0;
    for (const auto &[path, count] : counts)
        require(!__builtin_add_overflow(total, count, &total), "the sum of all use counts fits");
    return total;
}

std::vector<const UseCounts::value_type *> ranked(const UseCounts &counts)
{
    std::vector<const UseCounts::value_type *> entries;
    entries.reserve(counts.size());
    for (const auto &entry : counts)
        entries.push_back(&entry);
    std::ranges::sort(entries, [](const auto *a, const auto *b) {
        return a->second != b->second ? a->second > b->second : a->first < b->first;
    });
    return entries;
}

DefaultsValue storedForm(const UseCounts &counts)
{
    DefaultsDictionary dictionary;
    for (const auto &[path, count] : counts)
        dictionary.emplace(path, DefaultsValue{count});
    return {std::move(dictionary)};
}

} // namespace

double RecentAccessSnapshot::share(std::string_view path) const
{
    const auto found = counts.find(path);
    if (found == counts.end())
        return 0.0;
    return static_cast<double>(found->second) / static_cast<double>(totalUsages);
}

std::optional<DefaultsDictionary>
DefaultsRecentAccessScoreDataStore::dictionary(std::string_view key)
{
    return store_.dictionary(key);
}

bool DefaultsRecentAccessScoreDataStore::edit(std::string_view key, const DefaultsStore::Made &made)
{
    return store_.edit(key, made);
}

RecentAccessScoreData::RecentAccessScoreData(UseCounts dataset,
                                             RecentAccessScoreDataStore &dataStore)
    : dataStore_(dataStore)
{
    replace(std::move(dataset));
}

bool RecentAccessScoreData::recordUse(const std::string &path)
{
    return change([&path](UseCounts &counts) {
        std::int64_t &count = counts[path];
        require(!__builtin_add_overflow(count, 1, &count), "a use count fits");
    });
}

void RecentAccessScoreData::takeBack(const std::string &path)
{
    if (!snapshot()->counts.contains(path))
        return;
    change([&path](UseCounts &counts) {
        const auto found = counts.find(path);
        if (found != counts.end() && --found->second == 0)
            counts.erase(found);
    });
}

std::vector<std::string> RecentAccessScoreData::topPaths(int n) const
{
    require(n >= 0, "the number of most used paths asked for is not negative");
    const auto current = snapshot();
    std::vector<std::string> paths;
    const std::span ranked(current->ranked);
    for (const auto *entry : ranked.first(std::min(static_cast<std::size_t>(n), ranked.size())))
        paths.push_back(entry->first);
    return paths;
}

bool RecentAccessScoreData::forget(const std::string &path)
{
    if (!snapshot()->counts.contains(path))
        return true;
    return change([&path](UseCounts &counts) { counts.erase(path); });
}

bool RecentAccessScoreData::reset()
{
    return change([](UseCounts &counts) { counts.clear(); });
}

std::shared_ptr<const RecentAccessSnapshot> RecentAccessScoreData::snapshot() const
{
    const MutexLock lock(mutex_);
    return current_;
}

bool RecentAccessScoreData::change(const std::function<void(UseCounts &counts)> &edit)
{
    const MutexLock changing(changing_);
    UseCounts counts;
    const bool isStored = dataStore_.edit(KEY, [&](const std::optional<DefaultsValue> &stored) {
        const auto *dictionary = stored ? std::get_if<DefaultsDictionary>(&stored->value) : nullptr;
        counts = usableCounts(dictionary != nullptr ? *dictionary : DefaultsDictionary());
        edit(counts);
        return storedForm(counts);
    });
    if (!isStored) {
        counts = snapshot()->counts;
        edit(counts);
    }
    replace(std::move(counts));
    return isStored;
}

void RecentAccessScoreData::replace(UseCounts dataset)
{
    const std::int64_t total = sum(dataset);
    const auto next = std::make_shared<RecentAccessSnapshot>();
    next->counts = std::move(dataset);
    next->totalUsages = total;
    next->ranked = ranked(next->counts);
    std::shared_ptr<const RecentAccessSnapshot> former = next;
    const MutexLock lock(mutex_);
    current_.swap(former);
}

RecentAccessScore::RecentAccessScore(RecentAccessScoreDataStore &store)
    : data_(
          usableCounts(store.dictionary(RecentAccessScoreData::KEY).value_or(DefaultsDictionary())),
          store)
{}

bool RecentAccessScore::addRecentAccess(const SearchBaseResult &result)
{
    return data_.recordUse(std::string(withoutTrailingSlashes(result.path())));
}

void RecentAccessScore::takeBack(const SearchBaseResult &result)
{
    data_.takeBack(std::string(withoutTrailingSlashes(result.path())));
}

double RecentAccessScore::score(std::string_view path) const
{
    return snapshot()->share(path);
}

std::vector<std::string> RecentAccessScore::topScores(int n) const
{
    return data_.topPaths(n);
}

bool RecentAccessScore::forgetUses(const std::string &path)
{
    return data_.forget(path);
}

bool RecentAccessScore::resetScores()
{
    return data_.reset();
}

std::shared_ptr<const RecentAccessSnapshot> RecentAccessScore::snapshot() const
{
    return data_.snapshot();
}

} // namespace quillon
