#pragma once

#include "base/DefaultsStore.h"
#include "base/Mutex.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class FolderIdentity;

/// The folders the user chose to search, each kept as opaque bytes that still lead to the folder
/// after it got a new name within its parent folder.
///
/// Holds nothing between calls: each one reads the store afresh. Safe from every thread. Bytes that
/// are just an absolute path are a bookmark too, one that follows no renaming.
class Bookmarks
{
public:
    /// The diagnostic lines go to the stream; it, the store and the service outlive this object.
    Bookmarks(DefaultsStore &store, const FolderIdentity &folders, std::string key,
              std::FILE *diagnostics = stdout);

    /// The stored entries, folder path to data or the text it was written as. Entries that are
    /// neither are left out, each with a diagnostic line.
    DefaultsDictionary load() const;
    /// Adds the folder, or replaces its entry. A symbolic link to a folder is kept as the link.
    /// False when no folder stands at the absolute path or the store cannot be written.
    bool add(const std::string &path);
    /// Removes the folder's entry and every other one that leads to it. False when the store
    /// cannot be written.
    bool remove(const std::string &path);
    /// The absolute path the bytes lead to now, without a trailing slash. Absent when the folder
    /// is gone or may not be read. A folder found under a new name gains an entry under it.
    std::optional<std::string> resolve(const std::string &data);
    /// Every entry resolved, the failing ones left out. In no particular order; a folder is
    /// listed once for each entry that leads to it.
    std::vector<std::string> allURLs();

    /// The names of the entries that lead to no folder now, or to one that may not be read, in byte
    /// order. Prints nothing of them, and changes nothing.
    std::vector<std::string> lost() const;

    const std::string BOOKMARKS_USER_DEFAULT_KEY;

private:
    struct Location;
    std::optional<Location> locate(const std::string &data) const;
    std::optional<std::string> makeData(const std::string &path) const;
    bool store(const std::string &path, const std::string &data);
    void print(std::string_view text) const;

    DefaultsStore &store_;
    const FolderIdentity &folders_;
    std::FILE *diagnostics_;
    /// Held from reading the dictionary to writing it back.
    Mutex changing_;
};

} // namespace quillon
