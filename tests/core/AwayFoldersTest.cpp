#include "platform/linux/disk/PosixFolderLister.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/MemoryCacheFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

/// Two folders to search on a real disk, one of which is a stick that is plugged in and out.
class AwayFoldersTest : public testing::Test
{
protected:
    using Base = SearchBaseOver<PosixFolderLister>;
    /// The path of a row and the folder that is away.
    using Row = std::pair<std::string, std::string>;

    /// Begins the next run of the program.
    Base &start()
    {
        base_ = std::make_unique<Base>(file_);
        base_->includeFolders({home_, stick_});
        return *base_;
    }
    /// Runs the program until the index is kept.
    Base &run()
    {
        Base &base = start();
        base.searchBase.restore();
        base.build();
        base.searchBase.keep();
        return base;
    }
    void plugOut() const { std::filesystem::rename(stick_, drawer_.path("stick")); }
    void plugIn() const { std::filesystem::rename(drawer_.path("stick"), stick_); }
    std::vector<Row> rows(const std::string &query) const
    {
        std::vector<Row> rows;
        for (const SearchBaseResultRef &row : base_->searchBase.search(query))
            rows.emplace_back(row->path(), row->awayFolder());
        return rows;
    }
    std::vector<std::string> indexed() const
    {
        std::vector<std::string> texts = base_->indexed();
        std::ranges::sort(texts);
        return texts;
    }

    TemporaryFolder disk_;
    TemporaryFolder drawer_;
    MemoryCacheFile file_;
    const std::string home_ = disk_.makeFolder("home");
    const std::string stick_ = disk_.makeFolder("stick");
    const std::string photos_ = disk_.makeFolder("stick/photos");
    const std::string summer_ = disk_.makeFolder("stick/photos/summer");
    std::unique_ptr<Base> base_;
};

TEST_F(AwayFoldersTest, keepTheirRowsFromRunToRun)
{
    run();
    EXPECT_THAT(rows("summer"), ElementsAre(Pair(summer_, "")));
    plugOut();
    for (int i = 0; i < 3; ++i) {
        const Base &base = run();
        EXPECT_THAT(base.searchBase.paths(), ElementsAre(home_)) << i;
        EXPECT_THAT(rows("summer"), ElementsAre(Pair(summer_, stick_))) << i;
        EXPECT_THAT(base.searchBase.awayFolders(), ElementsAre(stick_)) << i;
    }
    Base &restored = start();
    ASSERT_TRUE(restored.searchBase.restore());
    EXPECT_THAT(rows("summer"), ElementsAre(Pair(summer_, summer_))) << "no disk was asked yet";
    EXPECT_THAT(restored.searchBase.matchesThere("summer", 25, MatchOrder::path, true), IsEmpty());
    restored.build();
    restored.searchBase.reset();
    restored.build();
    EXPECT_THAT(rows("summer"), ElementsAre(Pair(summer_, stick_))) << "a build anew keeps them";

    plugIn();
    run();
    EXPECT_THAT(rows("summer"), ElementsAre(Pair(summer_, "")));
    EXPECT_EQ(indexed(), base_->searchBase.paths());
}

TEST_F(AwayFoldersTest, keepOnlyWhatTheSettingsStillWant)
{
    run();
    plugOut();
    run();
    const auto rowsAfter = [this](const auto &change) {
        Base &base = start();
        change(base);
        base.searchBase.restore();
        base.build();
        return rows("summer");
    };
    EXPECT_THAT(rowsAfter([&](Base &base) {
                    base.includeFolders({home_, stick_, "/bin"});
                }),
                ElementsAre(Pair(summer_, stick_)));
    EXPECT_THAT(rowsAfter([&](Base &base) {
                    base.includeFolders({home_, photos_});
                }),
                ElementsAre(Pair(summer_, photos_)));
    EXPECT_THAT(rowsAfter([&](Base &base) { base.includeFolders({home_}); }), IsEmpty());
    EXPECT_THAT(rowsAfter([](Base &base) { base.finder.excludePatternsPreferences.add("summer"); }),
                IsEmpty());
}

TEST_F(AwayFoldersTest, keepTheirRowsWhileTheProgramRuns)
{
    Base &base = run();
    const auto use = [&](const std::string &path) {
        base.score.addRecentAccess({path, path, {}, SearchBaseResultType::standard});
    };
    use(summer_);
    use(home_);
    plugOut();
    // The watch may report what is inside the folder first, and what was never indexed.
    base.searchBase.update(photos_);
    base.searchBase.update(stick_ + "/never there");
    EXPECT_THAT(base.searchBase.update(std::vector{stick_}), IsEmpty())
        << "the watch reports when it is back, so there is nothing to ask again";
    EXPECT_THAT(base.searchBase.paths(), ElementsAre(home_));
    EXPECT_THAT(indexed(), ElementsAre(home_, stick_, photos_, summer_));
    EXPECT_THAT(rows("summer"), ElementsAre(Pair(summer_, stick_)));
    EXPECT_EQ(base.searchBase.awayFolderOf(summer_), stick_);
    EXPECT_EQ(base.searchBase.awayFolderOf(home_), "");

    const auto texts = [](const std::vector<FuzzyMatchResult> &results) {
        std::vector<std::string> each;
        for (const FuzzyMatchResult &result : results)
            each.push_back(result.text());
        return each;
    };
    const auto there = [&](const std::string &query, std::size_t top) {
        return texts(base.searchBase.matchesThere(query, top, MatchOrder::path, true));
    };
    EXPECT_THAT(there("summer", 25), IsEmpty());
    EXPECT_THAT(there("e", 1), ElementsAre(home_)) << "others take their places";
    EXPECT_THAT(texts(base.searchBase.mostUsedThere(10)), ElementsAre(home_));
    std::vector<Row> mostUsed;
    for (const SearchBaseResultRef &row : base.searchBase.mostAccessedResults())
        mostUsed.emplace_back(row->path(), row->awayFolder());
    EXPECT_THAT(mostUsed, UnorderedElementsAre(Pair(summer_, stick_), Pair(home_, "")));

    std::filesystem::remove(drawer_.path("stick/photos/summer"));
    std::filesystem::create_directory(drawer_.path("stick/winter"));
    plugIn();
    base.searchBase.update(stick_);
    EXPECT_THAT(base.searchBase.paths(), ElementsAre(home_, stick_, photos_, stick_ + "/winter"));
    EXPECT_EQ(indexed(), base.searchBase.paths());
    EXPECT_THAT(rows("photos"), ElementsAre(Pair(photos_, "")));
}

TEST_F(AwayFoldersTest, standInsideOtherFoldersOfTheSearch)
{
    const std::string all = disk_.path();
    for (const bool isUpdated : {true, false}) {
        const std::string gone = disk_.makeFolder("gone");
        Base &first = start();
        first.includeFolders({all, stick_});
        first.build();
        first.searchBase.keep();
        plugOut();
        std::filesystem::remove(gone);
        if (isUpdated) {
            first.searchBase.update(std::vector{stick_, gone});
        } else {
            Base &second = start();
            second.includeFolders({all, stick_});
            second.searchBase.restore();
            second.build();
        }
        EXPECT_THAT(rows("gone"), IsEmpty()) << isUpdated;
        EXPECT_THAT(rows("stick/summer"), ElementsAre(Pair(summer_, stick_))) << isUpdated;
        base_->searchBase.update(all);
        EXPECT_THAT(rows("stick/summer"), ElementsAre(Pair(summer_, stick_))) << isUpdated;
        plugIn();
        base_->searchBase.update(all);
        EXPECT_THAT(indexed(), Contains(summer_));
        EXPECT_EQ(indexed(), base_->searchBase.paths()) << isUpdated;
    }
}

} // namespace

} // namespace quillon
