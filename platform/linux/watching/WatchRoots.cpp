#include "platform/linux/watching/WatchRoots.h"

#include "platform/FSEventStream.h"

#include <algorithm>
#include <filesystem>
#include <ranges>
#include <system_error>
#include <utility>

namespace quillon {

WatchRoots::WatchRoots(const InotifyQueue &queue, WatchedFolders &folders,
                       const FSEventItemTest &items, ChangeLog &changes, const MountTable *mounts)
    : queue_(queue), folders_(folders), items_(items), changes_(changes), mounts_(mounts)
{}

void WatchRoots::add(const std::string &path)
{
    if (!contains(path))
        roots_.push_back({.path = path});
}

void WatchRoots::add(const std::string &path, Id node)
{
    if (node != WatchTree::NONE)
        roots_.push_back({.path = path, .node = node, .isKnown = true});
    else
        add(path);
}

bool WatchRoots::contains(std::string_view path) const
{
    return std::ranges::find(roots_, path, &Root::path) != roots_.end();
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

void WatchRoots::keepOnly(const std::vector<std::string> &paths)
{
    for (const std::string &path : this->paths())
        if (std::ranges::find(paths, path) == paths.end())
            remove(path);
}

std::vector<std::string> WatchRoots::paths() const
{
    std::vector<std::string> paths;
    for (const Root &root : roots_)
        paths.push_back(root.path);
    return paths;
}

std::vector<std::pair<std::string, WatchTree::Id>> WatchRoots::entered() const
{
    std::vector<std::pair<std::string, Id>> entered;
    for (const Root &root : roots_)
        if (root.node != WatchTree::NONE && folders_.tree().isLive(root.node))
            entered.emplace_back(root.path, root.node);
    return entered;
}

// The folders above

std::vector<std::pair<int, std::string>> WatchRoots::guard(const InotifyQueue &queue,
                                                           const std::string &path)
{
    std::vector<std::pair<int, std::string>> guards;
    const auto climb = [&](const std::string &place) {
        // From the top, so that what comes while this goes on is noticed further up.
        for (std::size_t slash = place.find('/');
             slash != std::string::npos && slash + 1 < place.size();
             slash = place.find('/', slash + 1)) {
            const std::string name =
                place.substr(slash + 1, place.find('/', slash + 1) - slash - 1);
            const auto added =
                queue.add(slash == 0 ? "/" : place.substr(0, slash), InotifyQueue::Links::follow);
            if (added.watch != WatchTree::NO_WATCH)
                guards.emplace_back(added.watch, name);
        }
    };
    climb(path);
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    if (!error && real != path)
        climb(real);
    return guards;
}

void WatchRoots::own(const std::vector<std::pair<int, std::string>> &guards)
{
    for (const auto &[watch, name] : guards) {
        auto &names = guards_[watch];
        if (std::ranges::find(names, name) == names.end())
            names.push_back(name);
    }
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

void WatchRoots::check(FolderVerifier &verifier, std::uint32_t flags,
                       std::optional<std::int64_t> quietSince)
{
    for (Root &root : roots_)
        checkOne(root, verifier, flags, quietSince);
}

/// Asks the path as it is written first: resolving it may take for ever where a server is gone.
bool WatchRoots::isRemote(const std::string &path) const
{
    if (mounts_ == nullptr)
        return false;
    if (mounts_->isRemote(path))
        return true;
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error);
    return !error && mounts_->isRemote(real);
}

void WatchRoots::checkOne(Root &root, FolderVerifier &verifier, std::uint32_t flags,
                          std::optional<std::int64_t> quietSince)
{
    const bool wasKnown = std::exchange(root.isKnown, true);
    if (root.isRemote || isRemote(root.path)) {
        if (!std::exchange(root.isRemote, true) || !wasKnown)
            onRemote(root.path, true);
        return;
    }
    own(guard(queue_, root.path));
    const FolderProbe found = probeFolder(root.path, true);
    const auto verdict =
        found.isFolder() ? items_.folder(root.path) : FSEventItemTest::Folder::skipped;
    const bool isEntered = found.isFolder() && verdict != FSEventItemTest::Folder::listed;
    const bool wasThere = root.node != WatchTree::NONE && folders_.tree().isLive(root.node);
    if (wasThere && isEntered && verifier.isStill(root.node, root.path, found))
        return;
    if (wasThere)
        folders_.drop(root.node);
    root.node = isEntered ? verifier.adoptRoot(root.path) : WatchTree::NONE;
    if (root.node == WatchTree::NONE) {
        if (wasThere)
            changes_.add(root.path, ChangeLog::Found::nothing, flags);
        return;
    }
    const bool isQuiet = quietSince && !wasKnown;
    if (!isQuiet)
        changes_.add(root.path, ChangeLog::Found::folder, flags);
    verifier.adopt(root.node, isQuiet ? quietSince : std::nullopt);
}

} // namespace quillon
