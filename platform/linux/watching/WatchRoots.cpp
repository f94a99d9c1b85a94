#include "platform/linux/watching/WatchRoots.h"

#include "base/PathText.h"
#include "platform/FSEventStream.h"

#include <algorithm>
#include <filesystem>
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
                       ChangeLog &changes, OpenQuestions &questions, const MountTable *mounts)
    : queue_(queue),
      folders_(folders),
      items_(items),
      changes_(changes),
      questions_(questions),
      mounts_(mounts)
{}

void WatchRoots::add(const std::string &path)
{
    if (std::ranges::find(roots_, path, &Root::path) == roots_.end())
        roots_.push_back({.path = path});
}

void WatchRoots::remove(std::string_view path)
{
    std::erase_if(roots_, [&](const Root &root) {
        if (root.path != path)
            return false;
        if (const Id folder = folders_.tree().find(WatchTree::NONE, path);
            folder != WatchTree::NONE)
            folders_.drop(folder);
        if (root.isRemote)
            folders_.noteRemote(root.path, false);
        return true;
    });
}

void WatchRoots::noteMount(const std::string &point)
{
    for (const Root &root : roots_) {
        const Id folder = folders_.tree().find(WatchTree::NONE, root.path);
        const bool isAbove = isAtOrBelow(root.path, point);
        if (isAbove)
            questions_.askAboutRoots();
        // Resolving the path of a root may take for ever when a server is gone.
        if (root.isRemote || (isAbove && folder == WatchTree::NONE))
            continue;
        const std::string real = realPathOf(root.path);
        // A root that is not there may be a link to what the mount provides.
        if (root.realPath.empty() || isAtOrBelow(root.realPath, point) || isAtOrBelow(real, point))
            questions_.askAboutRoots();
        if (folder != WatchTree::NONE && !real.empty() && isBelow(point, real))
            askBelow(folder, std::string_view(point).substr(real == "/" ? 1 : real.size() + 1));
    }
}

/// Asks about the last name of a path below a root if all folders on the way are entered.
void WatchRoots::askBelow(Id root, std::string_view below)
{
    Id folder = root;
    std::size_t slash = below.find('/');
    for (; slash != std::string_view::npos && folder != WatchTree::NONE; slash = below.find('/')) {
        folder = folders_.tree().find(folder, below.substr(0, slash));
        below.remove_prefix(slash + 1);
    }
    if (folder != WatchTree::NONE)
        questions_.ask(folder, below);
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

void WatchRoots::note(const InotifyQueue::Event &event)
{
    const auto guard = guards_.find(event.watch);
    if (guard == guards_.end())
        return;
    if (event.isOwn || std::ranges::find(guard->second, event.name) != guard->second.end())
        questions_.askAboutRoots();
    if (event.isEnd)
        guards_.erase(guard);
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
        root.isKnown = true;
        if (!std::exchange(root.isRemote, true))
            folders_.noteRemote(root.path, true);
        return;
    }
    const bool isGuarded = guard(root.path);
    root.realPath = realPathOf(root.path);
    const FolderProbe found = probeFolder(root.path, true);
    // Unless all guards are in place, only a check shows that a root has come or gone.
    if (!isGuarded)
        questions_.askAboutRootsLater();
    if (!isOnServer || found.isUnknown())
        return questions_.askLater(WatchTree::NONE, root.path);
    const bool wasKnown = std::exchange(root.isKnown, true);
    const auto verdict = found.isFolder() ? items_.folder(root.path) : WatchFilter::Folder::skipped;
    const bool isEntered = found.isFolder() && verdict != WatchFilter::Folder::listed;
    const Id before = folders_.tree().find(WatchTree::NONE, root.path);
    const bool wasThere = before != WatchTree::NONE;
    if (wasThere && isEntered && verifier.keepIfSame(before, root.path, found)) {
        if (terms.isSuspect)
            changes_.tellAgain(root.path);
        return;
    }
    if (wasThere)
        folders_.drop(before);
    const auto entered =
        isEntered ? verifier.enter(WatchTree::NONE, root.path) : std::optional(WatchTree::NONE);
    if (entered.value_or(WatchTree::NONE) == WatchTree::NONE) {
        if (wasThere || !entered)
            changes_.add(root.path, ChangeLog::Found::nothing, terms.flags);
        return;
    }
    const bool isQuiet = terms.quietSince && !wasKnown;
    if (!isQuiet)
        changes_.add(root.path, ChangeLog::Found::folder, terms.flags);
    verifier.explore(*entered, isQuiet ? terms.quietSince : std::nullopt);
}

} // namespace quillon
