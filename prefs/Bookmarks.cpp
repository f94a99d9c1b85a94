#include "prefs/Bookmarks.h"

#include "base/PathText.h"
#include "platform/FolderIdentity.h"

#include <charconv>
#include <set>
#include <utility>

// The stored bytes are one line of text, "v1 INODE BIRTHTIME PATH", or "v1 - - PATH" where the
// file system does not tell folders apart. The path comes last, as it may hold any byte; a path
// alone starts with a slash and so cannot be taken for a version.

namespace quillon {
namespace {

constexpr std::string_view VERSION = "v1 ";
constexpr std::string_view NO_IDENTITY = "- - ";

struct Bookmark
{
    std::string path;
    std::optional<FolderId> id;
};

std::string parentOf(const std::string &path)
{
    const auto slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

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
    std::string path;
    /// The folder has another name than the bytes say.
    bool stale = false;
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
    const std::string folder(withoutTrailingSlashes(path));
    std::set<std::string> doomed = {folder, path};
    for (const auto &[name, value] : load()) {
        const auto location = locate(*value.asData());
        if (location && location->path == folder)
            doomed.insert(name);
    }
    const MutexLock lock(changing_);
    DefaultsDictionary entries = load();
    std::erase_if(entries, [&](const auto &entry) { return doomed.contains(entry.first); });
    return store_.set(BOOKMARKS_USER_DEFAULT_KEY, {std::move(entries)});
}

std::optional<std::string> Bookmarks::resolve(const std::string &data)
{
    auto location = locate(data);
    if (!location)
        return std::nullopt;
    if (location->stale) {
        print("TODO: Handle stale bookmark");
        const auto fresh = makeData(location->path);
        if (!fresh)
            return std::nullopt;
        store(location->path, *fresh);
        return resolve(*fresh);
    }
    if (!folders_.isReadable(location->path)) {
        print("TODO: Handle invalid access " + location->path);
        return std::nullopt;
    }
    return std::move(location->path);
}

std::vector<std::string> Bookmarks::allURLs()
{
    std::vector<std::string> paths;
    for (const auto &[path, value] : load())
        if (auto resolved = resolve(*value.asData()))
            paths.push_back(std::move(*resolved));
    return paths;
}

std::vector<std::string> Bookmarks::lost() const
{
    std::vector<std::string> names;
    for (const auto &[name, value] : load()) {
        const auto location = locate(*value.asData());
        if (!location || !folders_.isReadable(location->path))
            names.push_back(name);
    }
    return names;
}

std::optional<Bookmarks::Location> Bookmarks::locate(const std::string &data) const
{
    auto bookmark = decode(data);
    if (!bookmark)
        return std::nullopt;
    if (folders_.isFolder(bookmark->path))
        return Location{.path = std::move(bookmark->path)};
    if (!bookmark->id)
        return std::nullopt;
    auto renamed = folders_.find(parentOf(bookmark->path), *bookmark->id);
    if (!renamed)
        return std::nullopt;
    return Location{.path = std::move(*renamed), .stale = true};
}

std::optional<std::string> Bookmarks::makeData(const std::string &path) const
{
    if (!path.starts_with('/') || !folders_.isFolder(path))
        return std::nullopt;
    return encode({.path = path, .id = folders_.identify(path)});
}

bool Bookmarks::store(const std::string &path, const std::string &data)
{
    const MutexLock lock(changing_);
    DefaultsDictionary entries = load();
    entries.insert_or_assign(path, DefaultsValue{DefaultsData{data}});
    return store_.set(BOOKMARKS_USER_DEFAULT_KEY, {std::move(entries)});
}

void Bookmarks::print(std::string_view text) const
{
    std::fwrite(text.data(), 1, text.size(), diagnostics_);
    std::fputc('\n', diagnostics_);
}

} // namespace quillon
