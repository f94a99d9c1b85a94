#include "prefs/Bookmarks.h"

#include "platform/linux/disk/StatxFolderIdentity.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/Needs.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <latch>

namespace quillon {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class BookmarksTest : public testing::Test
{
protected:
    static constexpr std::string_view KEY = "qln-bookmarks";

    std::string data(const std::string &path) const
    {
        return store.dictionary(KEY).value().at(path).asData().value();
    }
    Strings storedPaths() const
    {
        Strings paths;
        for (const auto &[path, value] : store.dictionary(KEY).value_or(DefaultsDictionary()))
            paths.push_back(path);
        return paths;
    }
    /// Returns the paths of the entries that resolve, in order. What was printed meanwhile goes to
    /// `printed`.
    Strings resolved()
    {
        testing::internal::CaptureStdout();
        Strings paths = bookmarks.allURLs();
        std::fflush(stdout);
        printed = testing::internal::GetCapturedStdout();
        std::ranges::sort(paths);
        return paths;
    }

    /// Returns the names of the entries that lead to no folder, or to one that may not be read.
    Strings missing()
    {
        testing::internal::CaptureStdout();
        Strings names;
        for (const Bookmarks::Resolved &entry : bookmarks.resolveAll())
            if (entry.presence != FolderPresence::there)
                names.push_back(entry.name);
        testing::internal::GetCapturedStdout();
        return names;
    }

    TemporaryFolder root;
    FakeDefaultsStore store;
    StatxFolderIdentity folders;
    Bookmarks bookmarks{store, folders, std::string(KEY)};
    std::string printed;
};

TEST_F(BookmarksTest, areNoneInAFreshStore)
{
    EXPECT_EQ(resolved(), Strings());
    EXPECT_EQ(store.writes(), 0);
    EXPECT_EQ(printed, "");
}

TEST_F(BookmarksTest, keepEachFolderOnceUntilItIsRemoved)
{
    const std::string folder = root.makeFolder("a \xFF\n b");
    const std::string other = root.makeFolder("other");
    EXPECT_TRUE(bookmarks.add(folder));
    EXPECT_TRUE(bookmarks.add(folder + "/"));
    EXPECT_TRUE(bookmarks.add(other));
    EXPECT_EQ(resolved(), (Strings{folder, other}));
    EXPECT_EQ(storedPaths(), (Strings{folder, other}));

    const auto before = store.value(KEY);
    const int writes = store.writes();
    EXPECT_TRUE(bookmarks.remove(root.path("unknown")));
    EXPECT_EQ(store.value(KEY), before);
    EXPECT_EQ(store.writes(), writes + 1);
    EXPECT_TRUE(bookmarks.remove(folder));
    EXPECT_EQ(resolved(), Strings{other});
}

TEST_F(BookmarksTest, keepWhetherHiddenFoldersAreSearched)
{
    constexpr std::string_view HIDDEN = "search-hidden-folders";
    const std::string folder = root.makeFolder("a \xFF\n b");
    const std::string other = root.makeFolder("other");
    bookmarks.add(folder);
    bookmarks.add(other);
    const auto withHidden = [this] {
        Strings paths;
        for (const Bookmarks::Resolved &entry : bookmarks.resolveAll())
            if (entry.searchesHidden)
                paths.push_back(entry.path);
        return paths;
    };
    EXPECT_EQ(withHidden(), Strings());
    const auto entries = store.value(KEY);
    EXPECT_TRUE(bookmarks.searchHidden(folder + "/", true));
    EXPECT_EQ(withHidden(), Strings{folder});
    EXPECT_EQ(store.value(KEY), entries) << "a version without the choice reads what it wrote";
    const int writes = store.writes();
    EXPECT_TRUE(bookmarks.searchHidden(folder, true));
    EXPECT_EQ(store.writes(), writes);

    EXPECT_TRUE(bookmarks.remove(folder));
    EXPECT_EQ(store.dictionary(HIDDEN), DefaultsDictionary());
    store.set(HIDDEN, {DefaultsDictionary{{other, {false}}, {folder, {true}}}});
    EXPECT_EQ(withHidden(), Strings()) << "written by hand";
    store.set(HIDDEN, {std::string("yes")});
    EXPECT_EQ(withHidden(), Strings());
    EXPECT_TRUE(bookmarks.searchHidden(other, true));
    EXPECT_TRUE(bookmarks.searchHidden(other, false));
    EXPECT_EQ(withHidden(), Strings());
}

TEST_F(BookmarksTest, refuseWhatIsNoFolder)
{
    EXPECT_FALSE(bookmarks.add(root.writeFile("file")));
    EXPECT_FALSE(bookmarks.add(root.path("missing")));
    EXPECT_FALSE(bookmarks.add("relative"));
    EXPECT_FALSE(bookmarks.add(""));
    EXPECT_EQ(store.writes(), 0);
    EXPECT_TRUE(bookmarks.add("/"));
    EXPECT_EQ(resolved(), Strings{"/"});
}

TEST_F(BookmarksTest, followAFolderToItsNewName)
{
    const std::string old = root.makeFolder("a/Old");
    const std::string renamed = root.path("a/New");
    QUILLON_NEEDS(folders.identify(old), "a file system that keeps birth times");
    EXPECT_TRUE(bookmarks.add(old));
    EXPECT_TRUE(bookmarks.searchHidden(old, true));
    fs::rename(old, renamed);
    EXPECT_EQ(resolved(), Strings{renamed}); // The entry was found after the listing began.
    EXPECT_EQ(printed, "TODO: Handle stale bookmark\n");
    EXPECT_EQ(storedPaths(), (Strings{renamed, old}));
    EXPECT_EQ(resolved(), (Strings{renamed, renamed}));
    EXPECT_EQ(bookmarks.resolve(data(renamed)), renamed);

    // A folder in the old place is again the one that is meant.
    root.makeFolder("a/Old");
    EXPECT_EQ(resolved(), (Strings{renamed, old}));
    EXPECT_EQ(printed, "");
    EXPECT_EQ(bookmarks.namesWithHidden(), (Strings{renamed, old}));
    fs::remove(old);
    EXPECT_TRUE(bookmarks.remove(renamed));
    EXPECT_EQ(storedPaths(), Strings());
    EXPECT_EQ(bookmarks.namesWithHidden(), Strings());
}

/// Answers once it has been asked about all of the folders.
class TogetherIdentity final : public FolderIdentity
{
public:
    explicit TogetherIdentity(std::ptrdiff_t folders) : all_(folders) {}
    FolderPresence presence(const std::string &) const override
    {
        all_.arrive_and_wait();
        return FolderPresence::there;
    }
    std::optional<FolderId> identify(const std::string &) const override { return {}; }
    std::optional<std::string> find(const std::string &, const FolderId &) const override
    {
        return {};
    }

private:
    mutable std::latch all_;
};

TEST_F(BookmarksTest, areLookedAtAllAtTheSameTime)
{
    DefaultsDictionary entries;
    for (const char *path : {"/a", "/b", "/c"})
        entries.emplace(path, DefaultsValue{path});
    store.set(KEY, {entries});
    const TogetherIdentity together(3);
    Bookmarks many(store, together, std::string(KEY));
    EXPECT_EQ(many.allURLs(), (Strings{"/a", "/b", "/c"}));
}

TEST_F(BookmarksTest, loseAFolderOnlyWhileItIsAway)
{
    const std::string folder = root.makeFolder("a/folder");
    EXPECT_TRUE(bookmarks.add(folder));
    fs::rename(root.path("a"), root.path("b"));
    EXPECT_EQ(resolved(), Strings());
    fs::rename(root.path("b/folder"), root.path("b/other"));
    EXPECT_EQ(resolved(), Strings());
    EXPECT_EQ(missing(), Strings{folder});
    EXPECT_EQ(printed, "");
    fs::rename(root.path("b/other"), root.path("b/folder"));
    fs::rename(root.path("b"), root.path("a"));
    EXPECT_EQ(resolved(), Strings{folder});
    EXPECT_EQ(missing(), Strings());
    EXPECT_EQ(store.writes(), 1);
}

TEST_F(BookmarksTest, keepASymbolicLinkAsTheLink)
{
    fs::create_directory_symlink(root.makeFolder("target"), root.path("link"));
    EXPECT_TRUE(bookmarks.add(root.path("link")));
    EXPECT_EQ(resolved(), Strings{root.path("link")});
    fs::remove(root.path("target"));
    EXPECT_EQ(resolved(), Strings());
}

TEST_F(BookmarksTest, canBeWrittenByHand)
{
    const std::string folder = root.makeFolder("folder");
    store.set(KEY, {DefaultsDictionary{
                       {folder, {folder + "//"}},
                       {"/number", {std::int64_t{5}}},
                       {"/list", {DefaultsArray{{"a"}}}},
                       {"/null", {nullptr}},
                       {"/relative", {"folder"}},
                       {"/cut", {DefaultsData{"v1 12 "}}},
                       {"/newer", {DefaultsData{"v2 1 2 /x"}}},
                       {"/with a zero", {DefaultsData{folder + std::string(1, '\0')}}},
                   }});
    EXPECT_EQ(resolved(), Strings{folder});
    EXPECT_EQ(printed, "Unable to resolve [\"a\"]\nUnable to resolve null\nUnable to resolve 5\n");
    EXPECT_EQ(missing(), (Strings{"/cut", "/newer", "/relative", "/with a zero"}));
    EXPECT_EQ(store.writes(), 1);
    fs::rename(folder, root.path("renamed"));
    EXPECT_EQ(resolved(), Strings());

    testing::internal::CaptureStdout();
    EXPECT_TRUE(bookmarks.add(root.path("renamed")));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(store.dictionary(KEY).value().at(folder), DefaultsValue{folder + "//"});

    store.set(KEY, {DefaultsDictionary{{"/gone/", {"/gone/"}}}});
    EXPECT_TRUE(bookmarks.remove(missing().front())) << "by the name it has";
    EXPECT_EQ(storedPaths(), Strings());
}

TEST_F(BookmarksTest, leaveOutAFolderThatMayNotBeRead)
{
    const std::string closed = root.makeFolder("closed");
    const std::string open = root.makeFolder("open");
    EXPECT_TRUE(bookmarks.add(closed));
    EXPECT_TRUE(bookmarks.add(open));
    fs::permissions(root.path(), fs::perms(0755));
    fs::permissions(closed, fs::perms::none);
    const UnprivilegedUser user;
    EXPECT_EQ(resolved(), Strings{open});
    EXPECT_EQ(printed, "TODO: Handle invalid access " + closed + "\n");
    EXPECT_EQ(missing(), Strings{closed});
    EXPECT_EQ(storedPaths(), (Strings{closed, open}));
}

} // namespace
} // namespace quillon
