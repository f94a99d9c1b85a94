#include "platform/linux/filemanagers/ProcessWatches.h"

#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/MountTable.h"
#include "platform/linux/disk/PosixFolderLister.h"

#include <cstdint>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <unordered_set>

#include <sys/stat.h>

namespace quillon {

namespace {

using Inodes = std::unordered_set<std::uint64_t>;

/// Returns the inodes that a process watches. Their devices are useless, since on some file systems
/// they differ from what stat() gives. So callers compare a folder's name as well.
Inodes watchedInodes(pid_t process)
{
    Inodes inodes;
    const std::filesystem::path descriptors =
        std::filesystem::path("/proc") / std::to_string(process) / "fdinfo";
    std::error_code error;
    for (std::filesystem::directory_iterator it(descriptors, error), end; !error && it != end;
         it.increment(error)) {
        std::ifstream description(it->path());
        std::string line;
        while (std::getline(description, line)) {
            const std::size_t at = line.find(" ino:");
            if (line.starts_with("inotify ") && at != std::string::npos)
                inodes.insert(std::strtoull(line.c_str() + at + 5, nullptr, 16));
        }
    }
    return inodes;
}

bool isOneOf(const Inodes &inodes, const std::string &path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && inodes.contains(status.st_ino);
}

std::string below(const std::string &folder, std::string_view name)
{
    return std::string(folder == "/" ? "" : folder).append("/").append(name);
}

class Search
{
public:
    Search(const Inodes &inodes, const std::string &name, Deadline deadline)
        : inodes_(inodes), name_(name), deadline_(deadline)
    {}

    std::optional<std::string> below(const std::string &root, const std::string &without)
    {
        std::deque<std::string> waiting{root};
        while (!waiting.empty() && !deadline_.hasPassed()) {
            const std::string folder = std::move(waiting.front());
            waiting.pop_front();
            if (folder == without)
                continue;
            if (auto found = read(folder, waiting))
                return found;
        }
        return std::nullopt;
    }

private:
    /// Reads one folder and appends its subfolders to those that wait to be read.
    std::optional<std::string> read(const std::string &folder, std::deque<std::string> &waiting)
    {
        std::error_code error;
        const auto opened = lister_.open(folder, FolderLister::Wanted::subfolders, error);
        while (opened && !deadline_.hasPassed() && opened->read(batch_, error)) {
            for (const FolderEntry &entry : batch_.entries) {
                if (!entry.isFolder || entry.name.starts_with('.'))
                    continue;
                std::string path = quillon::below(folder, entry.name);
                if (mounts_.isRemoteMountPoint(path))
                    continue;
                if (entry.name == name_ && isOneOf(inodes_, path))
                    return path;
                waiting.push_back(std::move(path));
            }
        }
        return std::nullopt;
    }

    const Inodes &inodes_;
    const std::string &name_;
    const Deadline deadline_;
    const MountTable mounts_{isRemoteFileSystem};
    PosixFolderLister lister_;
    FolderBatch batch_;
};

} // namespace

bool isWatchedFolder(pid_t process, const std::string &path)
{
    return isOneOf(watchedInodes(process), path);
}

std::optional<std::string> watchedFolder(pid_t process, const std::string &name, Deadline deadline)
{
    // Only the root has this name.
    if (name == "/")
        return name;
    const Inodes inodes = watchedInodes(process);
    if (inodes.empty() || name.empty())
        return std::nullopt;
    if (name.starts_with('/'))
        return isOneOf(inodes, name) ? std::optional(name) : std::nullopt;
    Search search(inodes, name, deadline);
    const char *home = std::getenv("HOME");
    const std::string nearest = home ? home : "";
    if (std::filesystem::path(nearest).filename() == name && isOneOf(inodes, nearest))
        return nearest;
    if (!nearest.empty())
        if (auto found = search.below(nearest, ""))
            return found;
    return search.below("/", nearest);
}

} // namespace quillon
