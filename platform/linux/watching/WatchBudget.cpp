#include "platform/linux/watching/WatchBudget.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using Id = WatchTree::Id;

/// The folders that are to be armed, those nearest to the roots first, and the folders whose
/// watches they get.
struct Exchange
{
    std::vector<Id> arm;
    std::vector<Id> give;
};

Exchange planned(const WatchedFolders &folders)
{
    const WatchTree &tree = folders.tree();
    const auto depth = [&](Id id) { return tree.depth(id); };
    Exchange plan;
    for (const auto &[id, known] : folders.unwatched())
        if (!known.isClosed)
            plan.arm.push_back(id);
    std::ranges::sort(plan.arm, {}, depth);
    for (Id id = 1; id < tree.idLimit(); ++id)
        if (tree.isLive(id) && tree.watch(id) != WatchTree::NO_WATCH)
            plan.give.push_back(id);
    std::ranges::stable_sort(plan.give, std::ranges::greater(), depth);

    const std::size_t budget = folders.budget();
    const std::size_t used = tree.watches();
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

} // namespace

void fitWatchesToBudget(WatchedFolders &folders, FolderVerifier &verifier,
                        const std::function<void()> &drain)
{
    WatchTree &tree = folders.tree();
    const Exchange plan = planned(folders);
    for (const Id id : plan.give)
        folders.nowUnwatched(id, folders.sight(tree.path(id), tree.isRoot(id), false));
    if (!plan.give.empty())
        drain();
    for (const Id id : plan.give)
        folders.dropWatch(id);
    verifier.armInOrder(plan.arm);
}

} // namespace quillon
