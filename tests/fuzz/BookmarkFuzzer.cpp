// Reads any bytes as the bookmark of a folder. The disk is asked about absolute paths only, and
// what is found under another name is kept so that it is found again.

#include "base/Require.h"
#include "prefs/Bookmarks.h"
#include "tests/support/FakeDefaultsStore.h"

#include <cstdint>
#include <cstdio>

namespace {

using namespace quillon;

/// A disk on which the folder of every identity is at its parent's "found".
class FindingEverything final : public FolderIdentity
{
public:
    FolderPresence presence(const std::string &path) const override
    {
        check(path);
        return path.ends_with("/found") ? FolderPresence::there : FolderPresence::away;
    }
    std::optional<FolderId> identify(const std::string &path) const override
    {
        check(path);
        return path.ends_with("/found") ? std::optional(FolderId{1, 2}) : std::nullopt;
    }
    std::optional<std::string> find(const std::string &parent, const FolderId &) const override
    {
        check(parent);
        return (parent == "/" ? "" : parent) + "/found";
    }

private:
    static void check(const std::string &path)
    {
        require(path.starts_with('/'), "a path is absolute");
        require(path.find('\0') == std::string::npos, "a path ends where the kernel sees its end");
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static std::FILE *const NOWHERE = std::fopen("/dev/null", "w");
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    const FindingEverything disk;
    FakeDefaultsStore store;
    store.set("key", {DefaultsDictionary{{"entry", DefaultsValue{DefaultsData{bytes}}},
                                         {"text", DefaultsValue{bytes}}}});
    Bookmarks bookmarks(store, disk, "key", NOWHERE);
    const auto path = bookmarks.resolve(bytes);
    require(!path || path->starts_with('/'), "a bookmark leads to an absolute path");
    for (const Bookmarks::Resolved &entry : bookmarks.resolveAll()) {
        require(entry.path.empty() || entry.path.starts_with('/'), "an entry leads to a path");
        if (entry.name == "entry" && path)
            require(entry.path == *path, "an entry leads where its bytes lead");
    }
    if (path) {
        require(bookmarks.remove(*path), "an entry can be removed");
        require(!bookmarks.load().contains("entry"), "an entry is removed by where it leads");
    }
    return 0;
}
