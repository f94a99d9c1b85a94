#include "platform/linux/watching/WatchRoots.h"

#include "base/PathText.h"
#include "platform/FSEventStream.h"

#include <algorithm>
#include <filesystem>
#include <ranges>
#include <system_error>
#include <utility>

namespace quillon {

namespace {

/// Returns the path without links, or an empty text when nothing is there or the disk did not
/// answer.
std::string realPathOf(const std::string &path)
{
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    return error ? std::string() : real.string();
}

} // namespace

WatchRoots::WatchRoots(const InotifyQueue &queue, WatchedFolders &folders, const WatchFilter &items,
                       ChangeLog &changes, RetryList &retries, const MountTable *mounts)
    : queue_(queue),
      folders_(folders),
      items_(items),
      changes_(changes),
      retries_(retries),
      mounts_(mounts)
{}

void WatchRoots::add(const std::string &path)
{
    if (std::ranges::find(roots_, path, &Root::path) == roots_.end())
        roots_.push_back({.path = path});
}

void WatchRoots::setFolder(std::string_view path, Id node)
{
    const auto root = std::ranges::find(roots_, path, &Root::path);
    root->node = node;
    root->isKnown = true;
}

void WatchRoots::remove(std::string_view path)
{
    std::erase_if(roots_, [&](const Root &root) {
        if (root.path != path)
            return false;
        if (root.node != WatchTree::NONE && folders_.tree().isLive(root.node))
            folders_.drop(root.node);
        if (root.isRemote)
            onRemote(root.path, false);
        return true;
    });
}

WatchTree::Id WatchRoots::folder(std::string_view path) const
{
    const auto root = std::ranges::find(roots_, path, &Root::path);
    const bool isThere =
        root != roots_.end() && root->node != WatchTree::NONE && folders_.tree().isLive(root->node);
    return isThere ? root->node : WatchTree::NONE;
}

std::vector<std::pair<std::string, WatchTree::Id>> WatchRoots::entered() const
{
    std::vector<std::pair<std::string, Id>> entered;
    for (const Root &root : roots_)
        if (root.node != WatchTree::NONE && folders_.tree().isLive(root.node))
            entered.emplace_back(root.path, root.node);
    return entered;
}

bool WatchRoots::areConcernedByMount(std::string_view point) const
{
    return std::ranges::any_of(roots_, [&](const Root &root) {
        if (isAtOrBelow(root.path, point))
            return true;
        // A root that is not there may be a link to what the mount provides.
        return !root.isRemote && (root.realPath.empty() || isAtOrBelow(root.realPath, point) ||
                                  isAtOrBelow(realPathOf(root.path), point));
    });
}

// The folders above

bool WatchRoots::guard(const std::string &path)
{
    bool isComplete = guardWay(path);
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    if (!error && real != path)
        isComplete = guardWay(real) && isComplete;
    return isComplete && (!error || meansAbsence(error.value()));
}

/// Begins at the top, so that a folder that appears meanwhile is noticed in the one above.
bool WatchRoots::guardWay(const std::string &path)
{
    bool isComplete = true;
    for (std::size_t slash = path.find('/'); slash != std::string::npos && slash + 1 < path.size();
         slash = path.find('/', slash + 1)) {
        const std::string name = path.substr(slash + 1, path.find('/', slash + 1) - slash - 1);
        const auto added =
            queue_.add(slash == 0 ? "/" : path.substr(0, slash), InotifyQueue::Links::follow);
        if (added.watch == WatchTree::NO_WATCH) {
            isComplete = isComplete && meansAbsence(added.error);
            continue;
        }
        auto &names = guards_[added.watch];
        if (std::ranges::find(names, name) == names.end())
            names.push_back(name);
    }
    return isComplete;
}

bool WatchRoots::note(const InotifyQueue::Event &event)
{
    const auto guard = guards_.find(event.watch);
    if (guard == guards_.end())
        return false;
    const bool concerns =
        event.isOwn || std::ranges::find(guard->second, event.name) != guard->second.end();
    if (event.isEnd)
        guards_.erase(guard);
    return concerns;
}

// The roots

void WatchRoots::check(FolderVerifier &verifier, const Check &terms)
{
    for (Root &root : roots_)
        checkOne(root, verifier, terms);
}

/// Checks the path as it is written first, since resolving it may take for ever when a server is
/// gone.
std::optional<bool> WatchRoots::isRemote(const std::string &path) const
{
    if (mounts_ == nullptr)
        return false;
    if (mounts_->isRemote(path))
        return true;
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error);
    if (error && !meansAbsence(error.value()))
        return std::nullopt;
    return !error && mounts_->isRemote(real);
}

void WatchRoots::checkOne(Root &root, FolderVerifier &verifier, const Check &terms)
{
    const auto isOnServer = root.isRemote ? std::optional(true) : isRemote(root.path);
    if (isOnServer.value_or(false)) {
        const bool wasKnown = std::exchange(root.isKnown, true);
        if (!std::exchange(root.isRemote, true) || !wasKnown)
            onRemote(root.path, true);
        return;
    }
    const bool isGuarded = guard(root.path);
    root.realPath = realPathOf(root.path);
    const FolderProbe found = probeFolder(root.path, true);
    // Unless all guards are in place, only a check shows that a root has come or gone.
    if (!isGuarded)
        retries_.addRoots();
    if (!isOnServer || found.isUnknown())
        return retries_.addRoot(root.path);
    const bool wasKnown = std::exchange(root.isKnown, true);
    const auto verdict = found.isFolder() ? items_.folder(root.path) : WatchFilter::Folder::skipped;
    const bool isEntered = found.isFolder() && verdict != WatchFilter::Folder::listed;
    const bool wasThere = root.node != WatchTree::NONE && folders_.tree().isLive(root.node);
    if (wasThere && isEntered && verifier.keepIfSame(root.node, root.path, found)) {
        if (terms.isSuspect)
            changes_.tellAgain(root.path);
        return;
    }
    if (wasThere)
        folders_.drop(root.node);
    const auto entered = isEntered ? verifier.enterRoot(root.path) : WatchTree::NONE;
    root.node = entered.value_or(WatchTree::NONE);
    if (root.node == WatchTree::NONE) {
        if (wasThere || !entered)
            changes_.add(root.path, ChangeLog::Found::nothing, terms.flags);
        return;
    }
    const bool isQuiet = terms.quietSince && !wasKnown;
    if (!isQuiet)
        changes_.add(root.path, ChangeLog::Found::folder, terms.flags);
    verifier.explore(root.node, isQuiet ? terms.quietSince : std::nullopt);
}

} // namespace quillon
