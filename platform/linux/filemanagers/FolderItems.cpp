#include "platform/linux/filemanagers/FolderItems.h"

#include <fstream>
#include <memory>
#include <unordered_set>

#include <dirent.h>
#include <sys/stat.h>

namespace quillon {

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};

bool isFolder(int parent, const dirent &entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status = {};
    return fstatat(parent, entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

/// Returns the names to leave out. A folder's ".hidden" file lists them, one to a line.
std::unordered_set<std::string> namesToHide(const std::string &prefix)
{
    std::unordered_set<std::string> names;
    std::ifstream list(prefix + ".hidden");
    for (std::string name; std::getline(list, name);)
        names.insert(std::move(name));
    return names;
}

} // namespace

std::vector<std::string> folderItems(const std::string &folder)
{
    std::vector<std::string> items;
    const std::unique_ptr<DIR, CloseFolder> listing(opendir(folder.c_str()));
    if (!listing)
        return items;
    const std::string prefix = folder.ends_with('/') ? folder : folder + '/';
    const auto hidden = namesToHide(prefix);
    while (const dirent *entry = readdir(listing.get())) {
        if (entry->d_name[0] == '.' || hidden.contains(entry->d_name))
            continue;
        std::string &item = items.emplace_back(prefix).append(entry->d_name);
        if (isFolder(dirfd(listing.get()), *entry))
            item += '/';
    }
    return items;
}

} // namespace quillon
