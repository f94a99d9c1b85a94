#include "prefs/Bookmarks.h"

#include "base/PathText.h"
#include "prefs/PreferenceKeys.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstddef>
#include <system_error>
#include <thread>
#include <utility>

// The stored bytes are one line of text, "v1 INODE BIRTHTIME PATH", or "v1 - - PATH" where the
// file system does not tell folders apart. The path comes last, as it may hold any byte; a path
// alone starts with a slash and so cannot be taken for a version.

namespace quillon {
namespace {

constexpr std::string_view VERSION = "v1 ";
constexpr std::string_view NO_IDENTITY = "- - ";
/// More folders than this are not looked at side by side.
constexpr std::size_t MOST_AT_A_TIME = 16;

struct Bookmark
{
    std::string path;
    std::optional<FolderId> id;
};

/// Takes a number and the blank behind it off the text.
template <typename Number>
bool takeNumber(std::string_view &text, Number &number)
{
    const char *const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest == end || *rest != ' ')
        return false;
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()) + 1);
    return true;
}

std::optional<Bookmark> decode(std::string_view data)
{
    Bookmark bookmark;
    if (data.starts_with(VERSION)) {
        data.remove_prefix(VERSION.size());
        if (data.starts_with(NO_IDENTITY)) {
            data.remove_prefix(NO_IDENTITY.size());
        } else {
            FolderId id;
            if (!takeNumber(data, id.inode) || !takeNumber(data, id.birthTime))
                return std::nullopt;
            bookmark.id = id;
        }
    }
    if (!data.starts_with('/') || data.find('\0') != std::string_view::npos)
        return std::nullopt;
    bookmark.path = withoutTrailingSlashes(data);
    return bookmark;
}

std::string encode(const Bookmark &bookmark)
{
    std::string data(VERSION);
    if (bookmark.id)
        data +=
            std::to_string(bookmark.id->inode) + " " + std::to_string(bookmark.id->birthTime) + " ";
    else
        data += NO_IDENTITY;
    return data + bookmark.path;
}

} // namespace

/// Where bytes lead.
struct Bookmarks::Location
{
    /// The path as in Resolved.
    std::string path;
    FolderPresence presence = FolderPresence::away;
    /// The folder has another name than the bytes say.
    bool isStale = false;

    bool isFolder() const
    {
        return presence == FolderPresence::there || presence == FolderPresence::unreadable;
    }
};

Bookmarks::Bookmarks(DefaultsStore &store, const FolderIdentity &folders, std::string key,
                     std::FILE *diagnostics)
    : BOOKMARKS_USER_DEFAULT_KEY(std::move(key)),
      store_(store),
      folders_(folders),
      diagnostics_(diagnostics)
{}

DefaultsDictionary Bookmarks::load() const
{
    DefaultsDictionary entries;
    for (auto &[path, value] : store_.dictionary(BOOKMARKS_USER_DEFAULT_KEY).value_or(entries)) {
        if (value.asData())
            entries.emplace(path, std::move(value));
        else
            print("Unable to resolve " + value.description());
    }
    return entries;
}

bool Bookmarks::add(const std::string &path)
{
    const std::string folder(withoutTrailingSlashes(path));
    const auto data = makeData(folder);
    return data && store(folder, *data);
}

bool Bookmarks::remove(const std::string &path)
{
    std::set<std::string> doomed = namesOf(std::string(withoutTrailingSlashes(path)));
    doomed.insert(path);
    const MutexLock lock(changing_);
    DefaultsDictionary current = load();
    std::erase_if(current, [&](const auto &entry) { return doomed.contains(entry.first); });
    return store_.set(BOOKMARKS_USER_DEFAULT_KEY, {std::move(current)}) &&
           storeHidden(doomed, false);
}

bool Bookmarks::searchHidden(const std::string &path, bool isWanted)
{
    const std::set<std::string> names = namesOf(std::string(withoutTrailingSlashes(path)));
    const MutexLock lock(changing_);
    return storeHidden(names, isWanted);
}

std::vector<std::string> Bookmarks::namesWithHidden() const
{
    std::vector<std::string> names;
    for (const auto &[name, value] :
         store_.dictionary(PreferenceKeys::SEARCH_HIDDEN_FOLDERS).value_or(DefaultsDictionary()))
        if (value == DefaultsValue{true})
            names.push_back(name);
    return names;
}

/// Writes nothing when nothing changes.
bool Bookmarks::storeHidden(const std::set<std::string> &names, bool isWanted)
{
    const DefaultsDictionary before =
        store_.dictionary(PreferenceKeys::SEARCH_HIDDEN_FOLDERS).value_or(DefaultsDictionary());
    DefaultsDictionary chosen = before;
    for (const std::string &name : names) {
        if (isWanted)
            chosen.insert_or_assign(name, DefaultsValue{true});
        else
            chosen.erase(name);
    }
    return chosen == before ||
           store_.set(PreferenceKeys::SEARCH_HIDDEN_FOLDERS, {std::move(chosen)});
}

/// Returns the folder itself and the name of every entry that leads to it.
std::set<std::string> Bookmarks::namesOf(const std::string &folder) const
{
    std::set<std::string> names = {folder};
    const DefaultsDictionary entries = load();
    const std::vector<Location> locations = locateAll(entries);
    auto location = locations.begin();
    for (const auto &[name, value] : entries) {
        if (location->isFolder() && location->path == folder)
            names.insert(name);
        ++location;
    }
    return names;
}

std::optional<std::string> Bookmarks::resolve(const std::string &data)
{
    Location location = refreshed(locate(data));
    if (location.presence != FolderPresence::there)
        return std::nullopt;
    return std::move(location.path);
}

std::vector<std::string> Bookmarks::allURLs()
{
    std::vector<std::string> paths;
    for (Resolved &entry : resolveAll())
        if (entry.presence == FolderPresence::there)
            paths.push_back(std::move(entry.path));
    return paths;
}

std::vector<Bookmarks::Resolved> Bookmarks::resolveAll()
{
    const DefaultsDictionary entries = load();
    const std::vector<std::string> withHidden = namesWithHidden();
    std::vector<Location> locations = locateAll(entries);
    std::vector<Resolved> all;
    auto location = locations.begin();
    for (const auto &[name, value] : entries) {
        const bool searchesHidden = std::ranges::binary_search(withHidden, name);
        const bool isStale = location->isStale;
        Location found = refreshed(std::move(*location++));
        if (isStale && searchesHidden) {
            const MutexLock lock(changing_);
            storeHidden({found.path}, true);
        }
        all.push_back({.name = name,
                       .path = std::move(found.path),
                       .presence = found.presence,
                       .searchesHidden = searchesHidden});
    }
    return all;
}

/// Locates every entry, all at the same time.
std::vector<Bookmarks::Location> Bookmarks::locateAll(const DefaultsDictionary &entries) const
{
    std::vector<std::string> data;
    for (const auto &[name, value] : entries)
        data.push_back(*value.asData());
    std::vector<Location> locations(data.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < data.size(); i = next++)
            locations[i] = locate(data[i]);
    };
    std::vector<std::jthread> helpers;
    try {
        while (helpers.size() + 1 < std::min(data.size(), MOST_AT_A_TIME))
            helpers.emplace_back(work);
    } catch (const std::system_error &) {
        // The threads that there are do it all.
    }
    work();
    helpers.clear();
    return locations;
}

Bookmarks::Location Bookmarks::locate(const std::string &data) const
{
    auto bookmark = decode(data);
    if (!bookmark)
        return {};
    Location location{.path = bookmark->path, .presence = folders_.presence(bookmark->path)};
    if (location.presence != FolderPresence::away || !bookmark->id)
        return location;
    if (auto renamed = folders_.find(std::string(parentFolder(bookmark->path)), *bookmark->id)) {
        location.presence = folders_.presence(*renamed);
        location.path = std::move(*renamed);
        location.isStale = true;
    }
    return location;
}

/// Stores the bytes of a folder with a new name afresh, and says what is wrong with one that may
/// not be read.
Bookmarks::Location Bookmarks::refreshed(Location location)
{
    if (location.isStale && location.isFolder()) {
        print("TODO: Handle stale bookmark");
        if (const auto fresh = makeData(location.path))
            store(location.path, *fresh);
        else
            location.presence = FolderPresence::away;
    }
    if (location.presence == FolderPresence::unreadable)
        print("TODO: Handle invalid access " + location.path);
    return location;
}

std::optional<std::string> Bookmarks::makeData(const std::string &path) const
{
    if (!path.starts_with('/'))
        return std::nullopt;
    const FolderPresence presence = folders_.presence(path);
    if (presence != FolderPresence::there && presence != FolderPresence::unreadable)
        return std::nullopt;
    return encode({.path = path, .id = folders_.identify(path)});
}

bool Bookmarks::store(const std::string &path, const std::string &data)
{
    const MutexLock lock(changing_);
    DefaultsDictionary entries = load();
    entries.insert_or_assign(path, DefaultsValue::ofData(data));
    return store_.set(BOOKMARKS_USER_DEFAULT_KEY, {std::move(entries)});
}

void Bookmarks::print(std::string_view text) const
{
    std::fwrite(text.data(), 1, text.size(), diagnostics_);
    std::fputc('\n', diagnostics_);
}

} // namespace quillon
