#include "indexing/SearchBaseFinder.h"

#include "indexing/SearchLocations.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct CountingDelegate final : SearchBaseFinderDelegate
{
    void reloadList() override { ++reloads; }
    int reloads = 0;
};

template <typename Locations>
std::vector<std::string> textsOf(const Locations &locations)
{
    std::vector<std::string> texts;
    for (const auto &location : locations)
        texts.push_back(location.mainText());
    return texts;
}

class SearchBaseFinderTest : public testing::Test
{
protected:
    TemporaryFolder disk_;
    FakeDefaultsStore store_;
    StatxFolderIdentity folders_;
    SearchBaseFinder finder_{store_, folders_};
};

TEST_F(SearchBaseFinderTest, readsTheDefaultsWithoutWritingThem)
{
    EXPECT_THAT(textsOf(finder_.excludeLocations()),
                ElementsAre("node_modules", "_extras", "wp-content", "wp-admin", "wp-includes",
                            ".pgadmin"));
    EXPECT_THAT(textsOf(finder_.includeFilePatternLocations()),
                ElementsAre("xcodeproj", "xcworkspace", "sublime-project", "sublime-workspace"));
    EXPECT_THAT(finder_.includeLocations(), IsEmpty());
    EXPECT_EQ(store_.writes(), 0);
}

TEST_F(SearchBaseFinderTest, keepsAnEmptiedListEmptyAndTheBuiltInPatternsInPlace)
{
    for (const auto &location : finder_.excludeLocations())
        finder_.remove(location);
    for (const auto &location : finder_.includeFilePatternLocations())
        finder_.remove(location);

    EXPECT_THAT(finder_.excludeLocations(), IsEmpty());
    EXPECT_THAT(finder_.includeFilePatternLocations(), IsEmpty());
    EXPECT_THAT(textsOf(SearchBaseFinder::builtInExcludeLocations()),
                ElementsAreArray({"/Library/", "/.DocumentRevisions-V100/", "/private/var/",
                                  "/private/tmp/", "/opt/homebrew/", "/Music Library.musiclibrary/",
                                  "/.git/", "xcuserdata", "Xcode/DerivedData", "/Assets.xcassets/",
                                  "Code/Cache/Cache_Data", "Library/Group Containers", "/.Trash/",
                                  "/.npm/", "/Photos Library.photoslibrary", "/Photo Booth Library",
                                  "/tmp/cache/", "/Sparkle.framework/Versions/"}));
}

TEST_F(SearchBaseFinderTest, appendsADefaultThatWasRemovedAndAddedBack)
{
    finder_.remove(ExcludePatternSearchBaseLocation("_extras"));
    finder_.excludePatternsPreferences.add("_extras");
    EXPECT_THAT(textsOf(finder_.excludeLocations()),
                ElementsAre("node_modules", "wp-content", "wp-admin", "wp-includes", ".pgadmin",
                            "_extras"));
}

TEST_F(SearchBaseFinderTest, listsFoldersOnceByPathAndRemovesEveryBookmarkOfOne)
{
    const std::string b = disk_.makeFolder("b");
    const std::string a = disk_.makeFolder("a \xff\n");
    const auto data = [](const std::string &path) { return DefaultsValue{DefaultsData{path}}; };
    store_.set("qln-bookmarks", {DefaultsDictionary{{b, data(b)},
                                                    {a, data(a)},
                                                    {"/old name of a", data(a)},
                                                    {"/gone", data(disk_.path("gone"))}}});
    EXPECT_THAT(textsOf(finder_.includeLocations()), ElementsAre(a, b));
    const SearchLocations locations = SearchLocations::of(finder_);
    EXPECT_THAT(locations.folders, ElementsAre(a, b));
    ASSERT_EQ(locations.missing.size(), 1U);
    EXPECT_EQ(locations.missing.front().name, "/gone");
    EXPECT_EQ(locations.missing.front().presence, FolderPresence::away);
    EXPECT_THAT(locations.roots(), ElementsAre(a, b, disk_.path("gone")));

    finder_.remove(IncludePathSearchBaseLocation(a));
    EXPECT_THAT(textsOf(finder_.includeLocations()), ElementsAre(b));
    EXPECT_EQ(finder_.bookmarks.load().size(), 2U);
    finder_.remove(IncludePathSearchBaseLocation(locations.missing.front().name));
    EXPECT_THAT(SearchLocations::of(finder_).missing, IsEmpty());
    EXPECT_EQ(finder_.bookmarks.load().size(), 1U);
}

TEST_F(SearchBaseFinderTest, tellsADelegateThatStillLivesOfEveryRemoval)
{
    struct OtherLocation final : SearchBaseLocation
    {
        OtherLocation() : SearchBaseLocation("other") {}
    };
    auto delegate = std::make_shared<CountingDelegate>();
    finder_.setDelegate(delegate);
    finder_.remove(ExcludePatternSearchBaseLocation("never listed"));
    finder_.remove(IncludeFilePatternSearchBaseLocation("xcodeproj"));
    finder_.remove(IncludePathSearchBaseLocation("/nowhere"));
    const int writes = store_.writes();
    finder_.remove(OtherLocation());
    EXPECT_EQ(delegate->reloads, 4);
    EXPECT_EQ(store_.writes(), writes);

    delegate.reset();
    finder_.remove(IncludeFilePatternSearchBaseLocation("xcworkspace"));
    EXPECT_THAT(textsOf(finder_.includeFilePatternLocations()),
                ElementsAre("sublime-project", "sublime-workspace"));
}

TEST(SearchBaseLocation, namesItsKindInItsLabel)
{
    const IncludePathSearchBaseLocation folder("/home/u");
    EXPECT_EQ(folder.type(), "include_path");
    EXPECT_EQ(folder.mainText() + std::string(folder.kindSuffix()),
              "/home/u – Include Folder, Recursive");
    const ExcludePatternSearchBaseLocation exclude("_extras");
    EXPECT_EQ(exclude.type(), "exclude_pattern");
    EXPECT_EQ(exclude.mainText() + std::string(exclude.kindSuffix()), "_extras – Exclude Pattern");
    const IncludeFilePatternSearchBaseLocation file("txt");
    EXPECT_EQ(file.type(), "include_file_pattern");
    EXPECT_EQ(file.mainText() + std::string(file.kindSuffix()),
              "txt – Include Files with Extension");
}

} // namespace

} // namespace quillon
