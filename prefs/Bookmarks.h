#pragma once

#include "base/DefaultsStore.h"
#include "base/Mutex.h"
#include "platform/FolderIdentity.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

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

    /// What became of one entry.
    struct Resolved
    {
        /// The entry's name in the settings.
        std::string name;
        /// The absolute path that the bytes lead to or, where no folder is there now, the path that
        /// they hold; empty when they hold none.
        std::string path;
        FolderPresence presence = FolderPresence::away;
    };
    /// Every entry resolved as resolve() does, in the order of the names. The folders are looked at
    /// all at the same time, so one that does not answer delays no other.
    std::vector<Resolved> resolveAll();
    /// Looks at one folder.
    FolderPresence presence(const std::string &path) const { return folders_.presence(path); }

    const std::string BOOKMARKS_USER_DEFAULT_KEY;

private:
    struct Location;
    std::vector<Location> locateAll(const DefaultsDictionary &entries) const;
    Location locate(const std::string &data) const;
    Location refreshed(Location location);
    std::optional<std::string> makeData(const std::string &path) const;
    bool store(const std::string &path, const std::string &data);
    void print(std::string_view text) const;

    DefaultsStore &store_;
    const FolderIdentity &folders_;
    std::FILE *diagnostics_;
    /// It is held from reading the dictionary to writing it back.
    Mutex changing_;
};

} // namespace quillon
