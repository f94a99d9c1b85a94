#include "core/IndexSink.h"
#include "core/SearchBase.h"
#include "tests/core/SearchBaseSupport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using RealBase = SearchBaseOver<PosixFolderLister>;
using FakeBase = SearchBaseOver<FakeFolderLister>;

TEST(SearchBaseBuild, tellsOfEveryIncludeFolderByPathWithARunningTotal)
{
    const TemporaryFolder disk;
    const std::string inner = disk.makeFolder("a/inner/x").substr(0, disk.path("a/inner").size());
    const std::string a = disk.path("a");
    const std::string b = disk.makeFolder("b");
    const std::string package = disk.makeFolder("c.app");
    disk.makeFolder("b/one/two");
    disk.makeFolder("c.app/Contents");

    RealBase base;
    base.includeFolders({b, package, inner, a});
    EXPECT_THAT(base.build(),
                ElementsAre("Starting search with " + a + inner + b + package, "Scanning " + a,
                            "Processing", "Added 3 items", "Scanning " + inner, "Processing",
                            "Added 3 items", "Scanning " + b, "Processing", "Added 6 items",
                            "Scanning " + package, "Added 7 items"));
    EXPECT_THAT(base.indexed(),
                ElementsAre(a, inner, inner + "/x", b, b + "/one", b + "/one/two", package));
    EXPECT_EQ(base.searchBase.count(), 7U);

    base.includeFolders({});
    EXPECT_THAT(base.build(), ElementsAre("Starting search with "));
}

TEST(SearchBaseBuild, followsTheSettingsOfItsTime)
{
    const TemporaryFolder disk;
    for (const char *folder : {".hidden/x", "_extras/x", "App.xcodeproj/inside", "Library/Caches",
                               "node_modules/x", "raw \xff\n/x"})
        disk.makeFolder(folder);
    for (const char *file : {"node_modules/n.txt", "Notes.TXT", "notes.txt", "w.sublime-project"})
        disk.writeFile(file);
    std::filesystem::create_symlink(disk.path("Library"), disk.path("link"));
    const auto found = [&](const RealBase &base) {
        std::vector<std::string> names;
        for (const std::string &path : base.indexed())
            names.push_back(path.substr(disk.path().size()));
        return names;
    };

    RealBase base;
    base.includeFolders({disk.path()});
    base.build();
    EXPECT_THAT(base.searchBase.includeFilePatterns(),
                ElementsAre("sublime-project", "sublime-workspace", "xcodeproj", "xcworkspace"));
    EXPECT_THAT(found(base), ElementsAre("", "/App.xcodeproj", "/Library", "/raw \xff\n",
                                         "/raw \xff\n/x", "/w.sublime-project"));

    const auto texts = [](const std::string &text) {
        return DefaultsValue{DefaultsArray{DefaultsValue{text}}};
    };
    base.store.set("exclude-folder-patterns", texts("raw"));
    base.store.set("include-file-patterns", texts("txt"));
    base.searchBase.reset();
    EXPECT_EQ(base.searchBase.count(), 0U);
    EXPECT_THAT(base.searchBase.search("Library"), IsEmpty());
    base.build();
    EXPECT_THAT(found(base), ElementsAre("", "/App.xcodeproj", "/Library", "/_extras", "/_extras/x",
                                         "/node_modules", "/node_modules/n.txt", "/node_modules/x",
                                         "/notes.txt"));
}

TEST(SearchBaseBuild, indexesTheWholeFileSystemUnderItsPlainNames)
{
    FakeBase base;
    for (const char *folder : {"/home/u/docs", "/usr/bin", "/srv"})
        base.lister.add(folder);
    base.includeFolders({"/", "/usr"});
    EXPECT_THAT(base.build(),
                ElementsAre("Starting search with //usr", "Scanning /", "Processing",
                            "Added 7 items", "Scanning /usr", "Processing", "Added 7 items"));
    EXPECT_THAT(base.indexed(),
                ElementsAre("/", "/home", "/home/u", "/home/u/docs", "/srv", "/usr", "/usr/bin"));
}

/// A base over "/" with a few thousand folders, whose paths are in all.
struct LargeBase : FakeBase
{
    LargeBase()
    {
        for (int i = 0; i < 60; ++i)
            for (int k = 0; k < 60; ++k)
                lister.add("/folder " + std::to_string(i) + "/sub " + std::to_string(k));
        includeFolders({"/", "/usr"});
        lister.add("/usr");
    }
    static constexpr std::size_t ALL = 1 + 60 + 60 * 60 + 1;
};

/// Searches the base again and again until it is told to end, and checks each answer for what is
/// always true.
struct Searcher
{
    void operator()(const std::string &query)
    {
        for (std::size_t last = 0; !isOver; ++answers) {
            const auto rows = searchBase.search(query);
            const std::size_t now = searchBase.count();
            const bool isRight =
                searchBase.mostAccessedResults().empty() && rows.size() <= 25 &&
                now >= std::exchange(last, now) &&
                std::ranges::all_of(rows, [&](const SearchBaseResultRef &row) {
                    return row->text() == query || row->text().starts_with("/folder ");
                });
            if (!isRight)
                areRight = false;
        }
    }

    const SearchBase &searchBase;
    std::atomic<bool> isOver = false;
    std::atomic<bool> areRight = true;
    std::atomic<int> answers = 0;
};

TEST(SearchBaseBuild, isSearchedWhileItRuns)
{
    LargeBase base;
    Searcher search{base.searchBase};
    std::atomic<int> opened = 0;
    base.lister.onOpen = [&](const std::string &) {
        if (++opened % 1000 != 0)
            return;
        // Continues once each thread may have begun and ended a search in the middle of the build.
        for (const int seen = search.answers; search.answers < seen + 4;)
            std::this_thread::yield();
    };
    {
        const std::jthread one([&] { search("sub"); });
        const std::jthread two([&] { search("/folder 1/sub 2"); });
        base.build();
        search.isOver = true;
    }
    EXPECT_TRUE(search.areRight);
    EXPECT_EQ(base.searchBase.count(), LargeBase::ALL);
    EXPECT_EQ(base.searchBase.search("/folder 1/sub 2").front()->text(), "/folder 1/sub 2");
}

TEST(SearchBaseBuild, endsEarlyOnRequestAndCanBeBuiltAgain)
{
    LargeBase base;
    std::stop_source source;
    base.lister.onOpen = [&](const std::string &path) {
        if (path == "/folder 7")
            source.request_stop();
    };
    EXPECT_THAT(base.build(source.get_token()),
                AllOf(Each(Not(StartsWith("Added "))), Not(Contains("Scanning /usr"))));
    EXPECT_LT(base.searchBase.count(), LargeBase::ALL);

    EXPECT_THAT(base.build(), Contains("Added " + std::to_string(LargeBase::ALL) + " items"));
    EXPECT_EQ(base.searchBase.count(), LargeBase::ALL);
}

TEST(SearchBaseBuild, leavesAnIndexAloneThatWasResetMeanwhile)
{
    LargeBase base;
    std::once_flag once;
    base.lister.onOpen = [&](const std::string &path) {
        if (path.starts_with("/folder 2/"))
            std::call_once(once, [&] {
                base.searchBase.reset();
                base.matcher.add("/new");
            });
    };
    EXPECT_THAT(base.build(), Each(Not(StartsWith("Added "))));
    EXPECT_THAT(base.indexed(), ElementsAre("/new"));
    base.build();
    EXPECT_EQ(base.matcher.count(), LargeBase::ALL + 1);
}

TEST(IndexSink, addsWhatItIsGivenUntilTheIndexIsReset)
{
    FuzzyMatch matcher;
    SearchBasePaths paths(matcher.index());
    std::stop_source reset;
    IndexSink sink(paths, reset.get_token());
    std::vector<std::string> names;
    for (int i = 0; i < 3000; ++i)
        names.push_back(std::to_string(i));
    std::vector<CrawlSink::Entry> entries;
    for (const std::string &name : names)
        entries.push_back({.name = name, .isFolder = true});
    const CrawlSink::Token root = sink.root("/a");
    sink.add(root, entries);
    CrawlSink::Entry below{.name = "below"};
    sink.add(entries.back().token, {&below, 1});
    sink.finish();
    EXPECT_EQ(matcher.count(), 3002U);
    EXPECT_EQ(matcher.match("/a/2999/below", 1).front().text(), "/a/2999/below");

    // The files of many folders wait for each other.
    std::vector<CrawlSink::Entry> files(entries.begin(), entries.begin() + 700);
    for (CrawlSink::Entry &file : files)
        file.isFolder = false;
    for (std::size_t parent = 0; parent < 5; ++parent)
        sink.add(entries[parent].token, files);
    sink.finish();
    EXPECT_EQ(matcher.count(), 3002U + 5 * 700);
    for (std::size_t parent = 0; parent < 5; ++parent) {
        const std::string path = "/a/" + names[parent] + "/699";
        EXPECT_EQ(matcher.match(path, 1).front().text(), path);
    }
    sink.add(root, files);

    reset.request_stop();
    matcher.reset();
    sink.finish();
    sink.add(root, entries);
    sink.root("/b");
    EXPECT_EQ(matcher.count(), 0U);
}

} // namespace

} // namespace quillon
