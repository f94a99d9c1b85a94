#include "core/DemoSearchBase.h"
#include "core/SearchBase.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/ArrangedTree.h"
#include "tests/support/ManualTaskQueue.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;
using RealBase = SearchBaseOver<PosixFolderLister>;
using FakeBase = SearchBaseOver<FakeFolderLister>;

/// Returns the sorted lines of the dump, so that the order of the sets does not matter. Empty sets
/// are left out, since they mean the same as no set.
std::vector<std::string> linesOf(const SearchBase &base)
{
    std::vector<std::string> lines;
    std::istringstream stream(base.treeDescription());
    for (std::string line; std::getline(stream, line);) {
        if (line == "\t" && lines.back().ends_with(": "))
            lines.pop_back();
        else
            lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

/// A real tree and a base that has indexed it.
class Changed
{
public:
    explicit Changed(const std::vector<std::string> &folders,
                     const std::vector<std::string> &roots = {""})
    {
        for (const std::string &folder : folders)
            disk.makeFolder(folder);
        for (const std::string &root : roots)
            roots_.push_back(root.empty() ? disk.path() : disk.path(root));
        base.includeFolders(roots_);
        base.build();
    }
    /// Returns the lines logged since the last call, without the time and the place.
    std::vector<std::string> log()
    {
        std::vector<std::string> lines;
        for (std::string line : base.logger.recentLogItems()) {
            line.erase(0, line.find(' ') + 1);
            for (auto at = line.find(disk.path()); at != std::string::npos;
                 at = line.find(disk.path()))
                line.replace(at, disk.path().size(), "D");
            lines.push_back(std::move(line));
        }
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(logged_));
        logged_ += lines.size();
        return lines;
    }
    void update(const std::string &relative = {})
    {
        base.searchBase.update(relative.empty() ? disk.path() : disk.path(relative));
    }
    /// Expects the index to equal one that is built now. Searches may find more in folders that are
    /// away.
    void expectFresh()
    {
        RealBase fresh;
        fresh.includeFolders(roots_);
        fresh.build();
        EXPECT_EQ(linesOf(base.searchBase), linesOf(fresh.searchBase));
        std::vector<std::string> there = base.indexed();
        std::erase_if(there, [this](const std::string &path) {
            return !base.searchBase.awayFolderOf(path).empty();
        });
        EXPECT_THAT(there, UnorderedElementsAreArray(fresh.indexed()));
    }
    bool has(const std::string &relative)
    {
        return testing::Value(base.indexed(), Contains(disk.path(relative)));
    }

    TemporaryFolder disk;
    RealBase base;

private:
    std::vector<std::string> roots_;
    std::size_t logged_ = 0;
};

struct ChangeRow
{
    const char *name;
    std::vector<std::string> folders;
    std::function<void(const TemporaryFolder &)> change;
    std::vector<std::string> updates;
    std::vector<std::string> roots = {""};

    friend std::ostream &operator<<(std::ostream &stream, const ChangeRow &row)
    {
        return stream << row.name;
    }
};

class SearchBaseChange : public testing::TestWithParam<ChangeRow>
{};

TEST_P(SearchBaseChange, leavesWhatAFreshBuildWouldHold)
{
    const ChangeRow &row = GetParam();
    Changed changed(row.folders, row.roots);
    row.change(changed.disk);
    for (const std::string &path : row.updates)
        changed.update(path);
    changed.expectFresh();
}

void moveInto(const TemporaryFolder &disk, const char *from, const char *to)
{
    fs::rename(disk.path(from), disk.path(to));
}
void replace(const TemporaryFolder &disk, const char *path)
{
    fs::remove_all(disk.path(path));
}

const std::vector<ChangeRow> CHANGES = {
    {"createdSubtree", {"a"}, [](auto &d) { d.makeFolder("a/b/c d/e"); }, {"a"}},
    {"createdItself", {"a"}, [](auto &d) { d.makeFolder("a/b/c"); }, {"a/b"}},
    {"deletedSubtreeByItsParent",
     {"a/b/c/d/e", "a/b c/x"},
     [](auto &d) { replace(d, "a/b"); },
     {"a"}},
    {"deletedItself", {"a/b/c/d/e", "a/x"}, [](auto &d) { replace(d, "a/b"); }, {"a/b"}},
    {"deletedFarAbove", {"a/b/c/d/e"}, [](auto &d) { replace(d, "a"); }, {""}},
    {"deletedDeepBelow", {"a/b/c/d/e/f"}, [](auto &d) { replace(d, "a/b/c/d"); }, {"a"}},
    {"renamed", {"a/b/c/d"}, [](auto &d) { moveInto(d, "a/b", "a/z"); }, {"a"}},
    {"movedElsewhere",
     {"a/b/c/d", "z"},
     [](auto &d) { moveInto(d, "a/b", "z/b"); },
     {"a/b", "z/b"}},
    {"swapped",
     {"a/x/1", "b/y/2"},
     [](auto &d) {
         moveInto(d, "a", "t");
         moveInto(d, "b", "a");
         moveInto(d, "t", "b");
     },
     {"a", "b"}},
    {"becameAFile",
     {"a/b/c"},
     [](auto &d) {
         replace(d, "a/b");
         d.writeFile("a/b");
     },
     {"a/b"}},
    {"becameAnIncludedFile",
     {"a/b.sublime-project/c/d"},
     [](auto &d) {
         replace(d, "a/b.sublime-project");
         d.writeFile("a/b.sublime-project");
     },
     {"a"}},
    {"includedFileItself",
     {"a"},
     [](auto &d) { d.writeFile("a/x.sublime-project"); },
     {"a/x.sublime-project"}},
    {"otherFile", {"a"}, [](auto &d) { d.writeFile("a/x.txt"); }, {"a/x.txt", "a"}},
    {"becameALinkToTheLike",
     {"a/b/c/d", "z/c/d"},
     [](auto &d) {
         replace(d, "a/b");
         fs::create_directory_symlink(d.path("z"), d.path("a/b"));
     },
     {"a"}},
    {"becameALinkItself",
     {"a/b/c/d", "z/c/d"},
     [](auto &d) {
         replace(d, "a/b");
         fs::create_directory_symlink(d.path("z"), d.path("a/b"));
     },
     {"a/b"}},
    {"hidden", {"a/b/c/d"}, [](auto &d) { moveInto(d, "a/b", "a/.b"); }, {"a"}},
    {"excludedNamesBelow",
     {"a"},
     [](auto &d) {
         d.makeFolder("a/node_modules/x");
         d.makeFolder("a/Library/Caches/x");
     },
     {"a"}},
    {"excludedNameItself",
     {"a"},
     [](auto &d) { d.makeFolder("a/node_modules.sublime-project"); },
     {"a/node_modules.sublime-project"}},
    {"packageBelow", {"a"}, [](auto &d) { d.makeFolder("a/B.xcodeproj/x"); }, {"a"}},
    {"packageItself", {"a"}, [](auto &d) { d.makeFolder("a/B.app/Contents"); }, {"a/B.app/"}},
    {"insideAnApplication",
     {"a/B.app"},
     [](auto &d) { d.makeFolder("a/B.app/Contents"); },
     {"a/B.app/Contents"}},
    {"includeFolderInAnExcludedOne",
     {"a/node_modules/in/x/y", "a/b"},
     [](auto &d) { replace(d, "a/b"); },
     {"a", "", "a/node_modules/in"},
     {"", "a/node_modules/in"}},
    {"includeFolderThatIsHidden",
     {"a/.in/x/y"},
     [](auto &d) { d.makeFolder("a/.in/x/z"); },
     {"a/.in", "a"},
     {"", "a/.in"}},
    {"underAnIncludeFolderThatStays",
     {"a/.in/x/y"},
     [](auto &d) { replace(d, "a/.in/x"); },
     {"a"},
     {"", "a/.in"}},
    {"includeFolderGone",
     {"a/in/x/y", "b"},
     [](auto &d) { replace(d, "a/in"); },
     {"a"},
     {"b", "a"}},
    {"oddNames",
     {"a", "a b", "a-b/x"},
     [](auto &d) {
         d.makeFolder("a\n\xff/ ");
         replace(d, "a-b");
     },
     {""}},
    {"everything", {"a/b", "c/d"}, [](auto &d) { replace(d, "a"); }, {"a/b", "a", ""}},
};

INSTANTIATE_TEST_SUITE_P(Rows, SearchBaseChange, testing::ValuesIn(CHANGES),
                         [](const auto &row) { return row.param.name; });

TEST(SearchBaseUpdate, tellsTheLogWhatItDoesInOrder)
{
    Changed changed({"a/b/c", "a/P.app/x", "a/d"});
    changed.log();
    fs::remove_all(changed.disk.path("a/b"));
    changed.update("a/");
    auto lines = changed.log();
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], "sbl_change: D/a/");
    EXPECT_THAT(lines[1],
                testing::MatchesRegex(R"(sbl_stored_desc: \["D/a/.*", "D/a/.*", "D/a/.*"\])"));
    std::sort(lines.begin() + 2, lines.begin() + 5);
    EXPECT_THAT(std::vector(lines.begin() + 2, lines.end()),
                ElementsAre("sbp_remove: D/a/P.app", "sbp_remove: D/a/b", "sbp_remove: D/a/d",
                            "sbp_remove: D/a", "sbp_remove: D/a/b/c"));

    changed.update("gone");
    EXPECT_THAT(changed.log(), ElementsAre("sbl_change: D/gone", "sbl_stored_desc: []",
                                           "sbp_remove: D/gone", "sbl_root_gone: D/gone"));
    changed.update("a/P.app/x");
    EXPECT_THAT(changed.log(),
                ElementsAre("sbl_change: D/a/P.app/x", "sbl_ignore_app D/a/P.app/x"));
    changed.update("a/P.app/");
    EXPECT_THAT(changed.log(), ElementsAre("sbl_change: D/a/P.app/", "sbl_stored_desc: []",
                                           "sbp_remove: D/a/P.app", "sb_grd is_package D/a/P.app"));
    changed.base.searchBase.remove(changed.disk.path("a/d/"));
    EXPECT_THAT(changed.log(), ElementsAre("sbp_remove: D/a/d"));
    EXPECT_FALSE(changed.has("a/d"));

    Changed package({"in.app/x"}, {"in.app"});
    EXPECT_THAT(package.log(), ElementsAre("sb_grd is_package D/in.app"));
}

TEST(SearchBaseUpdate, reportsInsertionsThatTakeLong)
{
    for (const auto &[step, line] :
         {std::pair(1000ms, ""), std::pair(1500ms, "*>*>*>*> SB: Long delta 1.5 3\n")}) {
        FakeBase base;
        base.lister.add("/a/b/c");
        std::chrono::steady_clock::time_point now;
        SearchBase timed(nullptr, base.finder, base.matcher,
                         {.folderLister = base.lister,
                          .logger = base.logger,
                          .mainQueue = base.queue,
                          .now = [&, tick = step] { return now += tick; }});
        timed.update("/a");
        EXPECT_EQ(base.output.take(), line);
        EXPECT_THAT(base.indexed(), ElementsAre("/a", "/a/b", "/a/b/c"));
    }
}

/// Drops what it is given, as a closed queue does.
struct ClosedQueue final : TaskQueue
{
    void post(Task) override {}
    void postDelayed(std::chrono::milliseconds, Task) override {}
};

TEST(SearchBaseUpdate, changesNothingOnceTheQueueIsClosedOrAStopRequested)
{
    FakeBase base;
    base.lister.add("/a/b");
    ClosedQueue closed;
    SearchBase refused(nullptr, base.finder, base.matcher,
                       {.folderLister = base.lister, .logger = base.logger, .mainQueue = closed});
    refused.update("/a");
    std::stop_source stop;
    stop.request_stop();
    base.searchBase.update("/a", stop.get_token());
    EXPECT_THAT(base.indexed(), IsEmpty());
    const ReadingIndex reading(base.matcher.index().lock);
    EXPECT_EQ(base.matcher.index().tree.find("/a"), PathTree::NONE) << "no node stays behind";
}

/// Adds folders with these numbers in /w.
void addTo(FakeFolderLister &lister, int first, int end)
{
    for (int i = first; i < end; ++i)
        lister.add("/w/" + std::to_string(i));
}

/// More folders come and go than nodes without a flag gather before they are collected.
TEST(SearchBaseUpdate, bringsAWideFolderUpToDate)
{
    FakeBase base;
    addTo(base.lister, 0, 2000);
    base.searchBase.update("/w");
    FakeFolderLister later;
    FakeBase fresh;
    for (FakeFolderLister *lister : {&later, &fresh.lister})
        addTo(*lister, 500, 6000);
    SearchBase changed(nullptr, base.finder, base.matcher,
                       {.folderLister = later, .logger = base.logger, .mainQueue = base.queue});
    changed.update("/w");
    fresh.searchBase.update("/w");
    EXPECT_EQ(base.searchBase.count(), 1U + 5500);
    EXPECT_EQ(linesOf(base.searchBase), linesOf(fresh.searchBase));
    EXPECT_EQ(base.indexed(), fresh.indexed());
}

/// Runs each task at once and counts them.
struct CountingQueue final : TaskQueue
{
    void post(Task task) override
    {
        ++tasks;
        task();
    }
    void postDelayed(std::chrono::milliseconds, Task task) override { post(std::move(task)); }
    int tasks = 0;
};

TEST(SearchBaseUpdate, addsAndForgetsVeryManyPathsSomeAtATime)
{
    constexpr int number = 110'000;
    constexpr std::size_t many = number;
    FakeBase base;
    addTo(base.lister, 0, number);
    FakeFolderLister emptied;
    emptied.add("/w");
    const auto update = [&base](FakeFolderLister &lister) {
        CountingQueue queue;
        IndexDifferences found;
        SearchBase changed(
            nullptr, base.finder, base.matcher,
            {.folderLister = lister,
             .logger = base.logger,
             .mainQueue = queue,
             .onDifferences = [&](const IndexDifferences &differences) { found = differences; }});
        changed.update("/w");
        EXPECT_EQ(queue.tasks, 2);
        return std::pair(found.added.size(), found.removed.size());
    };
    base.searchBase.update("/w");
    EXPECT_EQ(update(emptied), std::pair(std::size_t{0}, many));
    EXPECT_THAT(base.indexed(), ElementsAre("/w"));
    EXPECT_EQ(update(base.lister), std::pair(many, std::size_t{0}));
    EXPECT_THAT(base.indexed(), SizeIs(many + 1));
}

TEST(SearchBaseUpdate, takesTheChangedNamesOfAFolderTogether)
{
    constexpr int NAMES = 1200;
    FakeBase base;
    FakeBase fresh;
    base.lister.add("/w/gone/x");
    std::vector<std::string> paths = {"/w/gone", "/w/never"};
    for (int i = 0; i < NAMES; ++i) {
        paths.push_back("/w/" + std::to_string(i));
        fresh.lister.add(paths.back() + "/below");
    }
    base.searchBase.update("/w");
    fresh.searchBase.update("/w");
    CountingQueue queue;
    SearchBase changed(nullptr, base.finder, base.matcher,
                       {.folderLister = fresh.lister, .logger = base.logger, .mainQueue = queue});
    fresh.lister.unanswered = {"/w/7"};
    EXPECT_THAT(changed.update(paths), ElementsAre("/w/7"));
    EXPECT_EQ(base.searchBase.count(), 1U + 2 * (NAMES - 1));
    EXPECT_EQ(queue.tasks, 3) << "500 names and fewer share one";
    fresh.lister.unanswered.clear();
    EXPECT_THAT(changed.update(std::vector<std::string>{"/w/7"}), IsEmpty());
    EXPECT_EQ(linesOf(base.searchBase), linesOf(fresh.searchBase));
    EXPECT_EQ(base.indexed(), fresh.indexed());
}

TEST(SearchBaseUpdate, leavesAsItIsWhatAFileSystemDoesNotAnswerFor)
{
    FakeBase base;
    for (const char *folder : {"/a/mount/x/y", "/a/old", "/a/zz/removed"})
        base.lister.add(folder);
    base.searchBase.update("/a");
    const auto before = linesOf(base.searchBase);

    // The mount is listed where it is, and nothing in it is reported.
    FakeFolderLister others;
    for (const char *folder : {"/a/mount", "/a/old", "/a/new/z"})
        others.add(folder);
    SearchBase mounted(nullptr, base.finder, base.matcher,
                       {.folderLister = others, .logger = base.logger, .mainQueue = base.queue});
    others.unanswered = {"/a"};
    mounted.update("/a");
    EXPECT_EQ(linesOf(base.searchBase), before);
    others.unanswered.clear();
    others.silent = {"/a"};
    mounted.update("/a");
    EXPECT_EQ(linesOf(base.searchBase), before);
    others.silent.clear();
    others.unanswered = {"/a/mount/x"};
    mounted.update("/a");
    FakeBase fresh;
    for (const char *folder : {"/a/mount/x/y", "/a/old", "/a/new/z"})
        fresh.lister.add(folder);
    fresh.searchBase.update("/a");
    EXPECT_EQ(linesOf(base.searchBase), linesOf(fresh.searchBase));
    EXPECT_EQ(base.indexed(), fresh.indexed());

    others.unanswered.clear();
    mounted.update("/a");
    EXPECT_THAT(base.indexed(), ElementsAre("/a", "/a/mount", "/a/new", "/a/new/z", "/a/old"));
}

TEST(SearchBaseUpdate, returnsTheFoldersThatCouldNotBeListed)
{
    FakeBase base;
    base.lister.add("/a/b/c");
    for (const std::string broken : {"/a", "/a/b"}) {
        base.lister.broken = {broken};
        EXPECT_THAT(base.searchBase.update(std::vector<std::string>{"/a"}), ElementsAre(broken));
    }
    EXPECT_THAT(base.indexed(), ElementsAre("/a", "/a/b"));
    base.lister.broken.clear();
    EXPECT_THAT(base.searchBase.update(std::vector<std::string>{"/a/b"}), IsEmpty());
    EXPECT_THAT(base.indexed(), ElementsAre("/a", "/a/b", "/a/b/c"));
}

TEST(SearchBaseUpdate, keepsWhatIsInAFolderThatCannotBeListed)
{
    for (const std::string broken : {"/a", "/a/b", "/a/b/c", "/a/b/c/d"}) {
        for (const std::vector<std::string> &changed :
             {std::vector<std::string>{"/a"}, {"/a/b"}, {"/a/b", "/a/new"}, {"/a/b/c"}}) {
            SCOPED_TRACE(broken + " while " + changed.back() + " is updated");
            FakeBase base;
            base.lister.add("/a/b/c/d/e");
            base.searchBase.update("/a");
            const auto before = linesOf(base.searchBase);
            base.lister.broken = {broken};
            base.searchBase.update(changed);
            EXPECT_EQ(linesOf(base.searchBase), before);

            base.lister.add("/a/new");
            base.searchBase.update(changed);
            base.lister.broken.clear();
            FakeBase fresh;
            for (const char *folder : {"/a/b/c/d/e", "/a/new"})
                fresh.lister.add(folder);
            fresh.searchBase.update("/a");
            base.searchBase.update("/a");
            EXPECT_EQ(linesOf(base.searchBase), linesOf(fresh.searchBase));
        }
    }
}

TEST(SearchBaseUpdate, takesTheWholeFileSystemAndNoPathWithoutASlash)
{
    FakeBase base;
    FakeBase fresh;
    for (const char *folder : {"/a/b", "/c"})
        base.lister.add(folder);
    for (const char *folder : {"/a/d", "/e/f"})
        fresh.lister.add(folder);
    for (FakeBase *each : {&base, &fresh}) {
        each->includeFolders({"/"});
        each->build();
    }
    const auto before = linesOf(base.searchBase);
    SearchBase changed(
        nullptr, base.finder, base.matcher,
        {.folderLister = fresh.lister, .logger = base.logger, .mainQueue = base.queue});
    for (const char *path : {"", "a", "./a"})
        changed.update(path);
    EXPECT_EQ(linesOf(base.searchBase), before);
    changed.update("/");
    EXPECT_EQ(linesOf(base.searchBase), linesOf(fresh.searchBase));
    EXPECT_EQ(base.indexed(), fresh.indexed());
}

TEST(SearchBaseUpdate, writesNothingIntoAnIndexThatWasResetMeanwhile)
{
    FakeBase base;
    base.lister.add("/a/b");
    base.lister.onOpen = [&](const std::string &path) {
        if (path == "/a/b")
            base.searchBase.reset();
    };
    base.searchBase.update("/a");
    EXPECT_THAT(base.indexed(), IsEmpty());
    EXPECT_EQ(base.logger.recentLogItems().size(), 1U);
    base.lister.onOpen = {};

    // The reset comes between the crawl and the task of the main queue.
    ManualTaskQueue queue;
    std::atomic<bool> isPosted = false;
    struct Posting final : TaskQueue
    {
        explicit Posting(ManualTaskQueue &to, std::atomic<bool> &flag) : to_(to), flag_(flag) {}
        void post(Task task) override
        {
            to_.post(std::move(task));
            flag_ = true;
            flag_.notify_all();
        }
        void postDelayed(std::chrono::milliseconds, Task) override {}
        ManualTaskQueue &to_;
        std::atomic<bool> &flag_;
    } posting(queue, isPosted);
    SearchBase late(nullptr, base.finder, base.matcher,
                    {.folderLister = base.lister, .logger = base.logger, .mainQueue = posting});
    std::jthread updating([&] { late.update("/a"); });
    isPosted.wait(false);
    late.reset();
    queue.runAll();
    updating.join();
    EXPECT_THAT(base.indexed(), IsEmpty());
}

TEST(SearchBaseUpdate, waitsForABuildAndThenCorrectsIt)
{
    FakeBase base;
    for (const char *folder : {"/usr/a/b", "/usr/z/y"})
        base.lister.add(folder);
    base.includeFolders({"/usr"});
    std::jthread updating;
    std::atomic<bool> isChanged = false;
    base.lister.onOpen = [&](const std::string &path) {
        if (path == "/usr" && !isChanged.exchange(true))
            updating = std::jthread([&] { base.searchBase.update("/usr/new"); });
    };
    base.build();
    updating.join();
    EXPECT_THAT(base.logger.recentLogItems(), Contains(EndsWith("sbl_root_gone: /usr/new")));
    EXPECT_EQ(base.searchBase.count(), 5U);
}

/// Returns whether events report a change in this folder, which they do unless the index leaves it
/// out.
bool isTold(const std::string &folder)
{
    const std::string_view inner = "r/.h/b";
    const std::string below = folder.substr(folder.starts_with(inner) ? inner.size() : 0) + "/";
    return std::ranges::none_of(
        std::vector<std::string>{"/.h/", "/_extras/", "/n.app/"},
        [&](const std::string &name) { return below.find(name) != std::string::npos; });
}

/// Changes a small tree at random and passes the changes on as events do: each changed path, or the
/// folder it is in, or something above.
TEST(SearchBaseUpdate, followsRandomChangesOfTheDisk)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        std::mt19937 random(seed);
        const auto pick = [&random](std::size_t count) { return random() % count; };
        const std::vector<std::string> names = {
            "a", "b", "a b", ".h", "n.app", "_extras", "f.sublime-project"};
        const auto path = [&] {
            std::string text = "r";
            for (auto depth = 1 + pick(4); depth > 0; --depth)
                text += "/" + names[pick(names.size())];
            return text;
        };
        Changed changed({"r/a/b/a", "r/.h/b", "elsewhere/a/b"}, {"r", "r/.h/b"});
        std::vector<std::string> touched;
        for (int i = 0; i < 300 && !testing::Test::HasFailure(); ++i) {
            const std::string one = path();
            const std::string two = path();
            std::error_code ignored;
            switch (pick(5)) {
            case 0:
                fs::remove_all(changed.disk.path(one), ignored);
                break;
            case 1:
                fs::rename(changed.disk.path(one), changed.disk.path(two), ignored);
                break;
            case 2:
                // The link leads out of the tree, so that no link leads to itself.
                fs::create_directory_symlink(changed.disk.path("elsewhere"), changed.disk.path(one),
                                             ignored);
                break;
            case 3:
                if (fs::is_directory(
                        changed.disk.path(one).substr(0, changed.disk.path(one).rfind('/')),
                        ignored))
                    std::ofstream(changed.disk.path(one));
                break;
            default:
                fs::create_directories(changed.disk.path(one), ignored);
            }
            touched.push_back(one);
            touched.push_back(two);
            if (pick(6) != 0)
                continue;
            // The folders around the changes are reported, those nearest to the root first.
            std::ranges::sort(touched, {}, &std::string::size);
            std::vector<std::string> told;
            for (const std::string &at : touched)
                if (isTold(at.substr(0, at.rfind('/'))))
                    told.push_back(changed.disk.path(at.substr(0, at.rfind('/'))));
            touched.clear();
            told.push_back(changed.disk.path("r"));
            told.push_back(changed.disk.path("r/.h/b"));
            if (pick(2) == 0)
                changed.base.searchBase.update(told);
            else
                for (const std::string &each : told)
                    changed.base.searchBase.update(each);
            changed.expectFresh();
            const WritingIndex writing(changed.base.matcher.index().lock);
            arrangeNow(changed.base.matcher.index().tree);
        }
        if (testing::Test::HasFailure())
            ADD_FAILURE() << "seed " << seed;
    }
}

TEST(SearchBaseUpdate, neverHidesAnUnchangedFolderFromASearch)
{
    Changed changed({"stays/deep/needle", "comes"});
    const std::string needle = changed.disk.path("stays/deep/needle");
    std::atomic<bool> isOver = false;
    std::atomic<int> answers = 0;
    std::jthread searcher([&] {
        while (!isOver) {
            const auto rows = changed.base.searchBase.search("stays/deep/needle");
            ASSERT_FALSE(rows.empty());
            EXPECT_EQ(rows.front()->text(), needle);
            EXPECT_THAT(changed.base.searchBase.treeDescription(), HasSubstr(needle));
            ++answers;
        }
    });
    std::jthread arranger([&] {
        while (!isOver) {
            const WritingIndex writing(changed.base.matcher.index().lock);
            arrangeNow(changed.base.matcher.index().tree);
        }
    });
    for (int i = 0; i < 25 || answers < 10; ++i) {
        for (int k = 0; k < 30; ++k)
            changed.disk.makeFolder("comes/" + std::to_string(i % 3) + "/" + std::to_string(k));
        changed.update(i % 2 == 0 ? "" : "stays/deep");
        fs::remove_all(changed.disk.path("comes/" + std::to_string(i % 3)));
        changed.update("comes");
    }
    isOver = true;
    searcher.join();
    arranger.join();
    changed.update();
    changed.expectFresh();
}

TEST(SearchBaseUpdate, laysATreeOutAnewWhoseSiblingsHaveComeOneByOne)
{
    constexpr int FOLDERS = 10'100;
    FakeBase base;
    const auto addToEach = [&base](const std::string &name) {
        for (int i = 0; i < FOLDERS; ++i)
            base.lister.add("/usr/" + std::to_string(i) + "/" + name);
    };
    const auto isScattered = [&base] {
        const ReadingIndex reading(base.matcher.index().lock);
        return base.matcher.index().tree.isScattered();
    };
    base.includeFolders({"/usr"});
    addToEach("first");
    base.build();
    addToEach("second");

    // The update comes in the middle of a dump, which needs its nodes until its end.
    std::string dump;
    base.searchBase.treeDescription([&](std::string_view piece) {
        if (!dump.empty() && !isScattered())
            base.searchBase.update("/usr");
        dump += piece;
    });
    EXPECT_LT(dump.find("\n/usr/9999/first\n"), dump.find("*** Begin children"));
    EXPECT_TRUE(isScattered());

    const std::vector<std::string> paths = base.searchBase.paths();
    EXPECT_EQ(paths.size(), 1U + 3 * FOLDERS);
    base.searchBase.update("/usr/0");
    EXPECT_FALSE(isScattered());
    EXPECT_EQ(base.searchBase.paths(), paths);
    EXPECT_EQ(base.matcher.count(), paths.size());
    EXPECT_EQ(base.searchBase.search("/usr/777/second").front()->text(), "/usr/777/second");
}

TEST(SearchBase, putsTheFrontWindowsItemsFirst)
{
    struct Row
    {
        bool active;
        std::size_t items;
        std::size_t indexed;
        std::size_t rows;
        bool goesToPath;
    };
    for (const Row &row : {Row{false, 3, 3, 4, true}, Row{true, 3, 3, 7, true},
                           Row{true, 0, 3, 4, true}, Row{true, 30, 30, 50, false},
                           Row{true, 12, 12, 25, true}, Row{true, 12, 13, 25, false}}) {
        FakeBase base;
        base.front.isFrontmost = row.active;
        if (row.items > 0)
            base.front.matcher = std::make_shared<FuzzyMatch>();
        for (std::size_t i = 0; i < row.items; ++i)
            base.front.matcher->add("/x item " + std::to_string(10 + i));
        base.front.paths["/x item 10"] = "/folder/x item 10";
        for (std::size_t i = 0; i < row.indexed; ++i)
            base.matcher.add("/x/" + std::to_string(10 + i));
        const auto rows = base.searchBase.search("/x");
        ASSERT_EQ(rows.size(), row.rows);
        EXPECT_EQ(rows.back()->type() == SearchBaseResultType::goToPath, row.goesToPath);
        if (row.active && row.items > 0) {
            EXPECT_EQ(rows[0]->type(), SearchBaseResultType::inFrontFinder);
            EXPECT_EQ(rows[0]->text(), "/x item 10");
            EXPECT_EQ(rows[0]->path(), "/folder/x item 10");
            EXPECT_EQ(rows[1]->path(), rows[1]->text());
            EXPECT_EQ(rows[0]->highlightRanges(), (std::vector{TextRange{0, 2}}));
        }
    }
}

TEST(SearchBase, describesEverythingItHolds)
{
    FakeBase base;
    for (const char *folder : {"/a/b", "/a b", "/a-"})
        base.lister.add(folder);
    EXPECT_EQ(base.searchBase.treeDescription(),
              "\n\n*** Begin paths list ***\n\n\n\n*** Begin children tree mapping ***\n\n");
    base.includeFolders({"/"});
    base.build();
    const std::string text = base.searchBase.treeDescription();
    EXPECT_THAT(text, StartsWith("\n\n*** Begin paths list ***\n\n/\n/a\n/a b\n/a-\n/a/b"
                                 "\n\n*** Begin children tree mapping ***\n\n/: \n\t/"));
    EXPECT_THAT(text, EndsWith("\n/a: \n\t/a/b"));
    EXPECT_THAT(text, Not(HasSubstr("\n\n\n")));
}

TEST(DemoSearchBase, showsSampleFoldersInsteadOfTheDisk)
{
    FakeBase base;
    base.lister.onOpen = [](const std::string &path) { ADD_FAILURE() << path; };
    base.includeFolders({"/"});
    DemoSearchBase demo(
        nullptr, base.finder, base.matcher,
        {.folderLister = base.lister, .logger = base.logger, .mainQueue = base.queue});
    demo.build({});
    EXPECT_GT(demo.count(), 20U);
    EXPECT_THAT(demo.search("recip").front()->text(), EndsWith("/Recipes"));
}

} // namespace

} // namespace quillon
