#include "prefs/KeptFolders.h"

#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/StoredTexts.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillon {
namespace {

using Strings = std::vector<std::string>;

constexpr std::string_view KEY = "kept-on-top";

/// What is stored, what is then kept or released, and what is kept in the end.
struct KeptRow
{
    std::string name;
    std::optional<DefaultsValue> stored;
    std::string kept;
    std::string released;
    Strings paths;
    Strings storedAfterwards;

    friend std::ostream &operator<<(std::ostream &out, const KeptRow &row)
    {
        return out << row.name;
    }
};

const KeptRow KEPT_ROWS[] = {
    {"first", std::nullopt, "/b", "", {"/b"}, {"/b"}},
    {"afterTheOthers", listOf({"/b"}), "/a/", "", {"/b", "/a"}, {"/b", "/a"}},
    {"onceOnly", listOf({"/b/"}), "/b", "", {"/b"}, {"/b/"}},
    {"bytesThatAreNoText", std::nullopt, "/caf\xe9", "", {"/caf\xe9"}, {"/caf\xe9"}},
    {"everySpellingReleased", listOf({"/b/", "/a", "/b"}), "", "/b", {"/a"}, {"/a"}},
    {"absentReleased", listOf({"/b"}), "", "/a", {"/b"}, {"/b"}},
    {"noPathsAreIgnored",
     listOf({"", "~/x", "/b"}),
     "/a",
     "",
     {"/b", "/a"},
     {"", "~/x", "/b", "/a"}},
    {"noListIsIgnored", DefaultsValue{"/b"}, "/a", "", {"/a"}, {"/a"}},
    {"mixedListIsIgnored", DefaultsValue{DefaultsArray{{"/b"}, {true}}}, "/a", "", {"/a"}, {"/a"}},
};

class KeptFoldersRows : public testing::TestWithParam<KeptRow>
{};

TEST_P(KeptFoldersRows, areKeptInOrderAndStored)
{
    const KeptRow &row = GetParam();
    FakeDefaultsStore store;
    if (row.stored)
        store.set(KEY, *row.stored);
    KeptFolders folders(store);
    EXPECT_TRUE(row.kept.empty() || folders.keep(row.kept));
    EXPECT_TRUE(row.released.empty() || folders.release(row.released));
    EXPECT_EQ(folders.paths(), row.paths);
    EXPECT_EQ(folders.contains(row.paths.back() + "/"), true);
    EXPECT_EQ(store.value(KEY), listOf(row.storedAfterwards));
}

INSTANTIATE_TEST_SUITE_P(Rows, KeptFoldersRows, testing::ValuesIn(KEPT_ROWS),
                         [](const auto &row) { return row.param.name; });

TEST(KeptFolders, saysWhatCouldNotBeStored)
{
    FakeDefaultsStore store;
    KeptFolders folders(store);
    EXPECT_TRUE(folders.keep("/a"));
    store.failWrites();
    EXPECT_FALSE(folders.keep("/b"));
    EXPECT_FALSE(folders.release("/a"));
    EXPECT_FALSE(folders.releaseAll());
    EXPECT_EQ(folders.paths(), Strings{"/a"});
    store.failWrites(false);
    EXPECT_TRUE(folders.releaseAll());
    EXPECT_FALSE(store.contains(KEY));
}

} // namespace
} // namespace quillon
