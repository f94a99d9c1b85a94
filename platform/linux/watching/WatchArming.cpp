#include "platform/linux/watching/WatchArming.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace quillon {

WatchArming::WatchArming(WatchedFolders &folders, FolderVerifier &verifier,
                         OpenQuestions &questions, Hooks hooks)
    : folders_(folders),
      tree_(folders.tree()),
      verifier_(verifier),
      questions_(questions),
      hooks_(std::move(hooks))
{}

// The folders of a crawl

WatchTree::Id WatchArming::enterCrawled(Id parent, std::string_view name,
                                        const CrawledFolder &crawled)
{
    if (const Id known = tree_.find(parent, name); known != WatchTree::NONE)
        return known;
    if (verifier_.stopsAtBoundary(parent, name))
        return WatchTree::NONE;
    const Id id = tree_.add(parent, name);
    listed_.push_back({id, crawled.stamp, crawled.items});
    return id;
}

void WatchArming::armCrawled(std::int64_t crawledSince)
{
    std::vector<Listed> listed = std::exchange(listed_, {});
    if (tree_.watches() + listed.size() > folders_.budget())
        std::ranges::stable_sort(listed, {},
                                 [this](const Listed &one) { return tree_.depth(one.id); });
    else
        std::stable_partition(listed.begin(), listed.end(),
                              [this](const Listed &one) { return tree_.isRoot(one.id); });
    std::vector<Listed> changed;
    std::vector<Id> gone;
    for (const Listed &one : listed) {
        if (!hooks_.goesOn())
            return;
        const Outcome outcome = tree_.isLive(one.id) ? armOne(one, crawledSince) : Outcome::done;
        if (outcome == Outcome::changed)
            changed.push_back(one);
        else if (outcome == Outcome::gone)
            gone.push_back(one.id);
    }
    for (const Listed &one : changed)
        if (tree_.isLive(one.id) && hooks_.goesOn())
            verifier_.reconcile(one.id, {.crawledItems = one.items});
    for (const Id id : gone)
        verifier_.verifyPlace(id);
}

WatchArming::Outcome WatchArming::armOne(const Listed &listed, std::int64_t crawledSince)
{
    const WatchedFolders::Unwatched asListed{.stamp = listed.stamp,
                                             .isTrusted = isOlder(listed.stamp, crawledSince),
                                             .items = listed.items};
    const bool hasRoom = folders_.hasRoom();
    if (!hasRoom && listed.stamp.isKnown()) {
        folders_.setUnwatched(listed.id, asListed);
        return Outcome::done;
    }
    const std::string path = tree_.path(listed.id);
    const bool isRoot = tree_.isRoot(listed.id);
    FolderState seen = folders_.sight(path, isRoot, hasRoom);
    if (seen.watch != WatchTree::NO_WATCH)
        seen.probe = probeFolder(path, isRoot);
    if (seen.isUnknown() || seen.mayGetWatch())
        questions_.askLater(tree_.parent(listed.id), tree_.name(listed.id));
    if (seen.isUnknown()) {
        folders_.setUnwatched(listed.id, asListed);
        return Outcome::done;
    }
    if (!seen.probe.isFolder() && !seen.probe.isUnknown()) {
        folders_.discard(seen);
        return Outcome::gone;
    }
    folders_.record(listed.id, seen);
    // Another folder in its place has another stamp, and so have the folders below it.
    const FolderStamp &now = seen.probe.stamp;
    const bool isSame = !listed.stamp.isKnown() || listed.stamp == now;
    return isSame && isOlder(now, crawledSince) ? Outcome::done : Outcome::changed;
}

// The budget

WatchArming::Exchange WatchArming::planned() const
{
    const auto depth = [&](Id id) { return tree_.depth(id); };
    Exchange plan{.arm = folders_.swept(), .give = {}};
    std::ranges::sort(plan.arm, {}, depth);
    for (Id id = 1; id < tree_.idLimit(); ++id)
        if (tree_.isLive(id) && tree_.watch(id) != WatchTree::NO_WATCH)
            plan.give.push_back(id);
    std::ranges::stable_sort(plan.give, std::ranges::greater(), depth);

    const std::size_t budget = folders_.budget();
    const std::size_t used = tree_.watches();
    const std::size_t room = budget > used ? budget - used : 0;
    const std::size_t surplus = std::min(used > budget ? used - budget : 0, plan.give.size());
    // Beyond the watches that are free or have to go anyway, only a folder further up is worth a
    // watch.
    std::size_t swaps = 0;
    while (room + swaps < plan.arm.size() && surplus + swaps < plan.give.size() &&
           depth(plan.arm[room + swaps]) < depth(plan.give[surplus + swaps]))
        ++swaps;
    plan.give.resize(surplus + swaps);
    plan.arm.resize(std::min(plan.arm.size(), room + swaps));
    return plan;
}

void WatchArming::fitToBudget()
{
    const Exchange plan = planned();
    for (const Id id : plan.give)
        folders_.record(id, folders_.sight(tree_.path(id), tree_.isRoot(id), false));
    if (!plan.give.empty())
        hooks_.drain();
    for (const Id id : plan.give)
        folders_.dropWatch(id);
    armInOrder(plan.arm);
}

/// Listing a folder at once would give the watches to the folders below it.
void WatchArming::armInOrder(const std::vector<Id> &ids)
{
    std::vector<Id> changed;
    std::vector<Id> gone;
    for (const Id id : ids) {
        if (!tree_.isLive(id) || folders_.unwatched(id) == nullptr || !hooks_.goesOn())
            continue;
        const std::string path = tree_.path(id);
        const FolderProbe found = probeFolder(path, tree_.isRoot(id));
        const auto isChanged =
            found.isFolder() ? verifier_.keep(id, path, found) : std::optional<bool>();
        if (!isChanged)
            gone.push_back(id);
        else if (*isChanged)
            changed.push_back(id);
    }
    for (const Id id : changed)
        if (tree_.isLive(id) && hooks_.goesOn())
            verifier_.reconcile(id, {});
    for (const Id id : gone)
        verifier_.verifyPlace(id);
}

} // namespace quillon
