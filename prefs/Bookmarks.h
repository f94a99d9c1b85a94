#pragma once

#include "base/DefaultsStore.h"
#include "base/Mutex.h"
#include "platform/FolderIdentity.h"

#include <cstdio>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The folders that the user chose to search. Each is kept as opaque bytes that still lead to the
/// folder after it was renamed within its parent folder.
///
/// Keeps nothing between calls: each one reads the store anew. Safe from every thread. Bytes that
/// are just an absolute path are a bookmark too, but they do not follow a renaming.
class Bookmarks
{
public:
    /// The diagnostic lines go to the stream. The stream, the store and the service outlive this
    /// object.
    Bookmarks(DefaultsStore &store, const FolderIdentity &folders, std::string key,
              std::FILE *diagnostics = stdout);

    /// Returns the stored entries, from folder path to the data or to the text that was stored in
    /// place of data. Other entries are left out, each with a diagnostic line.
    DefaultsDictionary load() const;
    /// Adds the folder, or replaces its entry. A symbolic link to a folder is kept as the link.
    /// Returns false when no folder is at the absolute path or when the store cannot be written.
    bool add(const std::string &path);
    /// Removes the folder's entry and every other one that leads to it, with the choices that
    /// belong to them. Returns false when the store cannot be written.
    bool remove(const std::string &path);
    /// Chooses whether hidden folders below the folder are searched, for its entry and every other
    /// one that leads to it. Returns false when the store cannot be written.
    bool searchHidden(const std::string &path, bool isWanted);
    /// Returns the names of the entries for which that was chosen, and perhaps of former entries,
    /// ascending.
    std::vector<std::string> namesWithHidden() const;
    /// Returns the absolute path to which the bytes lead now, without a trailing slash. Returns
    /// nothing when the folder is gone or may not be read. A folder that is found under a new name
    /// gets an entry under that name.
    std::optional<std::string> resolve(const std::string &data);
    /// Returns the paths to which the entries lead, in no particular order, without the entries
    /// that lead nowhere. A folder is listed once for each entry that leads to it.
    std::vector<std::string> allURLs();

    /// The result for one entry.
    struct Resolved
    {
        /// The entry's name in the settings.
        std::string name;
        /// The absolute path to which the bytes lead. If no folder is there now, the path that the
        /// bytes hold, or an empty text if they hold none.
        std::string path;
        FolderPresence presence = FolderPresence::away;
        /// True when hidden folders below the folder are searched.
        bool searchesHidden = false;
    };
    /// Resolves every entry as resolve() does, and returns the results in the order of the names.
    /// All folders are located at the same time, so one that does not answer delays no other.
    std::vector<Resolved> resolveAll();
    /// Returns the presence of one folder.
    FolderPresence presence(const std::string &path) const { return folders_.presence(path); }

    const std::string BOOKMARKS_USER_DEFAULT_KEY;

private:
    struct Location;
    std::set<std::string> namesOf(const std::string &folder) const;
    std::vector<Location> locateAll(const DefaultsDictionary &entries) const;
    Location locate(const std::string &data) const;
    Location refreshed(Location location);
    std::optional<std::string> makeData(const std::string &path) const;
    bool store(const std::string &path, const std::string &data);
    bool storeHidden(const std::set<std::string> &names, bool isWanted) REQUIRES(changing_);
    void print(std::string_view text) const;

    DefaultsStore &store_;
    const FolderIdentity &folders_;
    std::FILE *diagnostics_;
    /// It is held from reading a dictionary to writing it back.
    Mutex changing_;
};

} // namespace quillon
