#include "platform/linux/watching/InotifyEventService.h"

#include "platform/linux/disk/FolderProbe.h"
#include "platform/linux/watching/FolderSweep.h"
#include "tests/platform/WatchSupport.h"
#include "tests/support/Needs.h"
#include "tests/support/UnprivilegedUser.h"

#include <gmock/gmock.h>

#include <atomic>
#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint32_t EVENTS_LOST = 0x5;
constexpr std::uint32_t ROOT_CHANGED = 0x20;

InotifyOptions budget(std::size_t watches)
{
    InotifyOptions options;
    options.watchBudget = watches;
    options.report = [](const std::string &) {};
    return options;
}

class WatchingTest : public testing::Test
{
protected:
    void move(const std::string &from, const std::string &to) const
    {
        ASSERT_EQ(::rename(disk_.path(from).c_str(), disk_.path(to).c_str()), 0) << from << to;
    }
    void remove(const std::string &path) const { fs::remove_all(disk_.path(path)); }

    TemporaryFolder disk_;
};

// Changes and their reports

struct Change
{
    std::string name;
    /// These folders are made below "root" before the watch has begun.
    std::vector<std::string> before;
    std::function<void(const TemporaryFolder &disk)> act;
    std::vector<std::string> told;
};

std::ostream &operator<<(std::ostream &out, const Change &change)
{
    return out << change.name;
}

void rename(const TemporaryFolder &disk, const std::string &from, const std::string &to)
{
    fs::rename(disk.path(from), disk.path(to));
}

void exchangeBoth(const TemporaryFolder &disk, const std::string &one, const std::string &other)
{
    ::syscall(SYS_renameat2, AT_FDCWD, disk.path(one).c_str(), AT_FDCWD, disk.path(other).c_str(),
              RENAME_EXCHANGE);
}

class WatchedChangeTest : public testing::TestWithParam<Change>
{
protected:
    void SetUp() override
    {
        disk_.makeFolder("outside/deep/down");
        disk_.makeFolder("root");
        for (const std::string &path : GetParam().before)
            disk_.makeFolder("root/" + path);
    }
    void actAndCompare(InotifyOptions options)
    {
        WatchRig rig(disk_.path("root"), std::move(options));
        rig.takeTold();
        GetParam().act(disk_);
        EXPECT_EQ(rig.told(), GetParam().told);
        EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
        // The new folders are watched too.
        for (const std::string &path : rig.index->onDisk())
            if (fs::is_directory(fs::symlink_status(path)) && !path.ends_with(".app"))
                fs::create_directory(path + "/later");
        rig.flush();
        EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
    }
    TemporaryFolder disk_;
};

TEST_P(WatchedChangeTest, isToldAsWhatCameOrWent)
{
    actAndCompare({});
}

std::vector<Change> changes()
{
    using Disk = TemporaryFolder;
    return {
        {"nestedFolders", {}, [](const Disk &d) { d.makeFolder("root/1/2/3/4"); }, {"1"}},
        {"aTreeThatGoes",
         {"a/b/c"},
         [](const Disk &d) { fs::remove_all(d.path("root/a")); },
         {"a"}},
        {"aFolderThatDoesNotStay",
         {},
         [](const Disk &d) {
             for (int i = 0; i < 1000; ++i) {
                 d.makeFolder("root/short");
                 fs::remove(d.path("root/short"));
             }
         },
         {}},
        {"theSameNameAgain",
         {"a/b"},
         [](const Disk &d) {
             fs::remove_all(d.path("root/a"));
             d.makeFolder("root/a/c");
         },
         {"a"}},
        {"movedIn", {}, [](const Disk &d) { rename(d, "outside/deep", "root/in"); }, {"in"}},
        {"movedOut", {"a/b"}, [](const Disk &d) { rename(d, "root/a", "outside/a"); }, {"a"}},
        {"movedWithin",
         {"a/b/c", "x"},
         [](const Disk &d) { rename(d, "root/a/b", "root/x/y"); },
         {"a/b", "x/y"}},
        {"parentThenChildRenamed",
         {"a/b/c"},
         [](const Disk &d) {
             rename(d, "root/a", "root/x");
             rename(d, "root/x/b", "root/x/y");
             fs::remove(d.path("root/x/y/c"));
         },
         {"a", "x"}},
        {"renamedAndDeleted",
         {"a/b"},
         [](const Disk &d) {
             rename(d, "root/a", "root/x");
             fs::remove_all(d.path("root/x"));
         },
         {"a"}},
        {"exchanged",
         {"a/1", "b/2/3"},
         [](const Disk &d) { exchangeBoth(d, "root/a", "root/b"); },
         {"a", "b"}},
        {"overAnEmptyFolder",
         {"a/1", "b"},
         [](const Disk &d) { rename(d, "root/a", "root/b"); },
         {"a", "b"}},
        {"hidden", {"a/b"}, [](const Disk &d) { rename(d, "root/a", "root/.a"); }, {"a"}},
        {"shown", {".a/b"}, [](const Disk &d) { rename(d, "root/.a", "root/a"); }, {"a"}},
        {"changesNobodyWants",
         {".hidden", "skipped/deep", "some.app"},
         [](const Disk &d) {
             d.makeFolder("root/.hidden/new");
             d.makeFolder("root/skipped/deep/new");
             d.makeFolder("root/some.app/new");
             d.writeFile("root/notes.md");
         },
         {}},
        {"aPackage", {}, [](const Disk &d) { d.makeFolder("root/new.app/inside"); }, {"new.app"}},
        {"aFile", {"a"}, [](const Disk &d) { d.writeFile("root/a/new.txt"); }, {"a/new.txt"}},
        {"aFileAndItsFolder", {}, [](const Disk &d) { d.writeFile("root/a/new.txt"); }, {"a"}},
        {"aFolderBecomesAFile",
         {"a.txt/b"},
         [](const Disk &d) {
             fs::remove_all(d.path("root/a.txt"));
             d.writeFile("root/a.txt");
         },
         {"a.txt"}},
        {"aFolderBecomesALink",
         {"a/b"},
         [](const Disk &d) {
             fs::remove_all(d.path("root/a"));
             fs::create_directory_symlink(d.path("outside"), d.path("root/a"));
         },
         {"a"}},
        {"namesThatBeginAlike",
         {"foo", "foo_bar/b"},
         [](const Disk &d) { fs::remove(d.path("root/foo")); },
         {"foo"}},
        {"oddNames",
         {},
         [](const Disk &d) { d.makeFolder("root/line\nfeed/\xff\xfe"); },
         {"line\nfeed"}},
        {"aFolderThatIsOpenElsewhere",
         {"a/b"},
         [](const Disk &d) {
             const int open = ::open(d.path("root/a").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
             fs::remove_all(d.path("root/a"));
             d.makeFolder("root/a/c");
             ::close(open);
         },
         {"a"}},
    };
}

INSTANTIATE_TEST_SUITE_P(Watching, WatchedChangeTest, testing::ValuesIn(changes()),
                         [](const auto &row) { return row.param.name; });

TEST_F(WatchingTest, tellsNothingOfAFileThatIsSavedAgain)
{
    disk_.writeFile("root/a.txt", "old");
    WatchRig rig(disk_.path("root"));
    rig.takeTold();
    disk_.writeFile("root/.a.txt.new", "new");
    move("root/.a.txt.new", "root/a.txt");
    disk_.writeFile("root/a.txt", "in place");
    // A path that was reported lately would be reported again to be sure, but this one was not
    // reported.
    EXPECT_THAT(rig.told(), IsEmpty());
}

TEST_F(WatchingTest, reachesFoldersWhosePathIsLongerThanTheSystemTakes)
{
    disk_.makeFolder("root");
    WatchRig rig(disk_.path("root"));
    const std::string name(250, 'n');
    int folder = ::open(disk_.path("root").c_str(), O_PATH | O_CLOEXEC);
    const auto goDown = [&] {
        ASSERT_EQ(::mkdirat(folder, name.c_str(), 0700), 0);
        const int next = ::openat(folder, name.c_str(), O_PATH | O_CLOEXEC);
        ::close(std::exchange(folder, next));
    };
    for (int i = 0; i < 20; ++i)
        goDown();
    rig.flush();
    EXPECT_EQ(rig.stream().status().watched, 21U);
    goDown();
    rig.flush();
    EXPECT_EQ(rig.stream().status().watched, 22U);
    ::close(folder);
    // The standard library cannot remove such a path, so it is moved up piece by piece.
    for (int i = 0; i < 21; ++i) {
        fs::rename(disk_.path("root/" + name), disk_.path("rest"));
        if (fs::exists(disk_.path("rest/" + name)))
            fs::rename(disk_.path("rest/" + name), disk_.path("root/" + name));
        fs::remove(disk_.path("rest"));
    }
    rig.flush();
    EXPECT_EQ(rig.stream().status().folders, 1U);
}

TEST_F(WatchingTest, seesAnUnreadableFolderAndEntersItOnceItMayBeRead)
{
    fs::permissions(disk_.path(), fs::perms::all);
    disk_.makeFolder("root/locked/inside");
    const uid_t owner = ::geteuid() == 0 ? UnprivilegedUser::ID : ::geteuid();
    for (const char *path : {"root/locked", "root/locked/inside"})
        ASSERT_EQ(::chown(disk_.path(path).c_str(), owner, static_cast<gid_t>(-1)), 0);
    const UnprivilegedUser user;
    fs::permissions(disk_.path("root/locked"), fs::perms::none);
    WatchRig rig(disk_.path("root"));
    EXPECT_EQ(rig.stream().status().folders, 2U);
    EXPECT_EQ(rig.stream().status().watched, 1U);
    fs::permissions(disk_.path("root/locked"), fs::perms::owner_all);
    rig.flush();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
    EXPECT_EQ(rig.stream().status().watched, 3U);
}

// Races

TEST_F(WatchingTest, losesNothingThatHappensBetweenArmingAndListing)
{
    disk_.makeFolder("root");
    std::set<std::string> seen;
    InotifyOptions options;
    options.beforeListing = [&](const std::string &path) {
        if (path.ends_with("new") && seen.insert(path).second)
            fs::create_directories(path + "/in between/deeper");
    };
    WatchRig rig(disk_.path("root"), options);
    disk_.makeFolder("root/new");
    rig.flush();
    disk_.makeFolder("root/new/in between/deeper/last");
    rig.flush();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
    EXPECT_THAT(rig.index->paths(), Contains(disk_.path("root/new/in between/deeper/last")));
}

TEST_F(WatchingTest, losesNothingThatHappensBetweenListingAndDelivery)
{
    disk_.makeFolder("root");
    std::atomic<int> deliveries = 0;
    InotifyOptions options;
    options.beforeDelivery = [&] {
        if (const int number = ++deliveries; number > 2 && number < 6)
            disk_.makeFolder("root/new/" + std::to_string(number) + "/deep");
    };
    WatchRig rig(disk_.path("root"), options);
    disk_.makeFolder("root/new");
    for (int i = 0; i < 6; ++i)
        rig.flush();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
}

// Roots

TEST_F(WatchingTest, keepsWatchingARootThatGoesAndComesBack)
{
    disk_.makeFolder("above/top/a");
    WatchRig rig(disk_.path("above/top"));
    rig.takeTold();
    const auto expectRoot = [&](std::size_t folders) {
        EXPECT_THAT(rig.told(), ElementsAre(""));
        EXPECT_EQ(rig.flagsOf(""), ROOT_CHANGED);
        EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
        EXPECT_EQ(rig.stream().status().watched, folders);
    };
    remove("above/top");
    expectRoot(0);
    disk_.makeFolder("above/top/b");
    expectRoot(2);
    move("above", "elsewhere");
    expectRoot(0);
    move("elsewhere", "above");
    expectRoot(2);
    disk_.makeFolder("above/top/c");
    EXPECT_THAT(rig.told(), ElementsAre("c"));
}

TEST_F(WatchingTest, waitsForARootThatIsNotThereYet)
{
    WatchRig rig(disk_.path("not/yet"));
    disk_.makeFolder("not");
    EXPECT_THAT(rig.told(), IsEmpty());
    disk_.makeFolder("not/yet/deep");
    EXPECT_THAT(rig.told(), ElementsAre(""));
    EXPECT_EQ(rig.stream().status().watched, 2U);
}

TEST_F(WatchingTest, followsALinkThatIsARoot)
{
    disk_.makeFolder("real/a");
    disk_.makeFolder("other/b");
    fs::create_directory_symlink("real", disk_.path("root"));
    WatchRig rig(disk_.path("root"));
    rig.takeTold();
    disk_.makeFolder("real/a/new");
    EXPECT_THAT(rig.told(), ElementsAre("a/new"));
    fs::create_directory_symlink("other", disk_.path("next"));
    move("next", "root");
    EXPECT_THAT(rig.told(), ElementsAre(""));
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
    disk_.makeFolder("other/b/new");
    EXPECT_THAT(rig.told(), ElementsAre("b/new"));
}

// Mounts

TEST_F(WatchingTest, noticesWhatIsMountedAndTakenAway)
{
    disk_.makeFolder("root/point/below");
    disk_.makeFolder("root/twice/a");
    disk_.makeFolder("root/second");
    WatchRig rig(disk_.path("root"));
    rig.takeTold();
    const std::string point = disk_.path("root/point");
    QUILLON_NEEDS(::mount("none", point.c_str(), "tmpfs", 0, nullptr) == 0, "the right to mount");
    EXPECT_THAT(rig.told(), ElementsAre("point"));
    const std::string elsewhere = disk_.makeFolder("elsewhere");
    ASSERT_EQ(::mount("none", elsewhere.c_str(), "tmpfs", 0, nullptr), 0);
    EXPECT_THAT(rig.told(), IsEmpty()) << "a mount elsewhere does not concern the root";
    ASSERT_EQ(::umount(elsewhere.c_str()), 0);
    disk_.makeFolder("root/point/on top");
    EXPECT_THAT(rig.told(), ElementsAre("point/on top"));
    ASSERT_EQ(::umount(point.c_str()), 0);
    EXPECT_THAT(rig.told(), ElementsAre("point"));
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());

    const std::string second = disk_.path("root/second");
    ASSERT_EQ(::mount(disk_.path("root/twice").c_str(), second.c_str(), nullptr, MS_BIND, nullptr),
              0);
    rig.flush();
    rig.takeTold();
    disk_.makeFolder("root/twice/a/new");
    EXPECT_THAT(rig.told(), ElementsAre("second/a/new", "twice/a/new"));
    ASSERT_EQ(::umount(second.c_str()), 0);
    rig.flush();
    rig.takeTold();
    disk_.makeFolder("root/twice/a/newer");
    EXPECT_THAT(rig.told(), ElementsAre("twice/a/newer"));
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
}

TEST_F(WatchingTest, waitsForTheDiskThatARootIsOn)
{
    disk_.makeFolder("disk/docs/deep");
    const std::string media = disk_.makeFolder("media");
    WatchRig rig(disk_.path("media/docs"));
    for (int times = 0; times < 2; ++times) {
        QUILLON_NEEDS(
            ::mount(disk_.path("disk").c_str(), media.c_str(), nullptr, MS_BIND, nullptr) == 0,
            "the right to mount");
        EXPECT_THAT(rig.told(), ElementsAre(""));
        disk_.makeFolder("disk/docs/new" + std::to_string(times));
        EXPECT_THAT(rig.told(), ElementsAre("new" + std::to_string(times)));
        EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
        ASSERT_EQ(::umount(media.c_str()), 0);
        EXPECT_THAT(rig.told(), ElementsAre(""));
        EXPECT_THAT(rig.index->paths(), IsEmpty());
    }
}

TEST_F(WatchingTest, looksAtRemoteFoldersNowAndThen)
{
    const TemporaryFolder memory("/dev/shm");
    memory.makeFolder("root/a");
    InotifyOptions options;
    options.isRemote = [](std::string_view type) { return type == "tmpfs"; };
    WatchRig rig(memory.path("root"), options);
    memory.makeFolder("root/a/new/deep");
    memory.writeFile("root/a/new.txt");
    rig.flushUntilCurrent();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
    EXPECT_EQ(rig.stream().status().watched, 0U);
    EXPECT_EQ(rig.stream().status().folders, 4U);
    fs::remove_all(memory.path("root/a/new"));
    rig.flushUntilCurrent();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
}

// Lost events and too few watches

TEST_F(WatchingTest, findsWhatChangedWhenEventsAreLost)
{
    for (int i = 0; i < 40; ++i)
        disk_.makeFolder("root/" + std::to_string(i) + "/inside");
    InotifyOptions options;
    options.queueLimit = 64;
    options.readingInterval = 1h;
    WatchRig rig(disk_.path("root"), options);
    for (int round = 0; round < 3; ++round) {
        rig.takeTold();
        for (int i = 0; i < 40; ++i) {
            const std::string folder = "root/" + std::to_string(i);
            disk_.makeFolder(folder + "/new/" + std::to_string(round) + "/deep");
            remove(folder + "/inside");
            move(folder + "/new", folder + "/inside");
        }
        rig.flush();
        EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
        EXPECT_EQ(rig.flagsOf(""), EVENTS_LOST);
        EXPECT_EQ(rig.stream().status().watched, rig.index->paths().size());
    }
}

TEST_F(WatchingTest, listsEverythingWhenEventsAreLostAndTheClockWasSet)
{
    disk_.makeFolder("root/a/b");
    std::atomic<std::int64_t> step = 0;
    InotifyOptions options;
    options.queueLimit = 0;
    options.wallClock = [&] {
        timespec time = {};
        ::clock_gettime(CLOCK_REALTIME, &time);
        return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec + step;
    };
    WatchRig rig(disk_.path("root"), options);
    // All later stamps now seem older than the last reading.
    step = std::int64_t{3600} * 1'000'000'000;
    rig.flush();
    disk_.makeFolder("root/a/b/new");
    step = 0;
    rig.flush();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
}

TEST_F(WatchingTest, keepsToItsBudgetAndLooksAtTheRest)
{
    for (int i = 0; i < 10; ++i)
        disk_.makeFolder("root/" + std::to_string(i) + "/deep/deeper");
    std::vector<std::string> lines;
    InotifyOptions options = budget(11);
    options.report = [&](const std::string &line) { lines.push_back(line); };
    WatchRig rig(disk_.path("root"), options);
    EXPECT_EQ(rig.stream().status().watched, 11U);
    EXPECT_EQ(rig.stream().status().folders, 31U);
    for (int i = 0; i < 10; ++i)
        disk_.makeFolder("root/" + std::to_string(i) + "/deep/deeper/new");
    rig.flush();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
    EXPECT_EQ(rig.stream().status().watched, 11U);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines.front(), HasSubstr("watching 11 of 31 folders"));
    EXPECT_THAT(lines.front(), HasSubstr("fs.inotify.max_user_watches is "));
}

TEST_F(WatchingTest, sweepsByItself)
{
    disk_.makeFolder("root/a");
    InotifyOptions options = budget(0);
    options.sweepInterval = 5ms;
    WatchRig rig(disk_.path("root"), options);
    disk_.makeFolder("root/a/new");
    const auto end = std::chrono::steady_clock::now() + 30s;
    while (!rig.index->isIndexed(disk_.path("root/a/new")) &&
           std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
}

TEST_F(WatchingTest, sleepsWhereNothingIsToBeSwept)
{
    const InotifyQueue queue(false);
    const ModelIndex items("/home");
    ChangeLog changes(items);
    WatchedFolders folders(queue, 2, [] { return std::int64_t{0}; });
    OpenQuestions questions(folders);
    FolderVerifier verifier(folders, items, changes, questions, nullptr, {});
    const FolderSweep sweep(folders, verifier, {1ms, 1h});
    WatchTree &tree = folders.tree();
    const WatchTree::Id root = tree.add(WatchTree::NONE, "/home");
    tree.setWatch(root, 1);
    folders.setUnwatched(tree.add(root, "server"), {.isClosed = true});
    EXPECT_EQ(sweep.due(), FolderSweep::Clock::time_point::max());
    folders.setUnwatched(tree.add(root, "far"), {});
    EXPECT_LE(sweep.due(), FolderSweep::Clock::now());
}

TEST_F(WatchingTest, doesNotStartWhatNobodyCouldEnd)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer checks the type of an object through a pipe";
#endif
    rlimit files{};
    ::getrlimit(RLIMIT_NOFILE, &files);
    const rlimit none{0, files.rlim_max};
    InotifyEventService service;
    FSEventStreamService::Request request;
    request.paths = {disk_.path("root")};
    request.items = std::make_shared<ModelIndex>(disk_.path("root"));
    ::setrlimit(RLIMIT_NOFILE, &none);
    const auto stream = service.create(std::move(request));
    const bool isStarted = stream->start();
    ::setrlimit(RLIMIT_NOFILE, &files);
    EXPECT_FALSE(isStarted) << "nothing is left to wake its thread by";
    stream->invalidate();
}

// Streams after a crawl

class ArmedWatchTest : public WatchingTest
{
protected:
    /// Lists folders as a crawl does, and gives up the folders of one name.
    void begin(InotifyOptions options = {}, std::string givenUp = {})
    {
        givenUp_ = std::move(givenUp);
        service_.emplace(std::move(options));
        index_ = std::make_shared<ModelIndex>(disk_.path("root"));
        receiver_.emplace(index_);
        record_ = service_->beginRecord();
        root_ = record_->enteredRoot(index_->root(), stampOf(index_->root()));
        crawl(root_, index_->root());
        index_->update(index_->root());
    }
    void crawl(CrawlRecord::Folder folder, const std::string &path)
    {
        std::error_code error;
        for (const auto &entry : fs::directory_iterator(path, error))
            if (entry.is_directory() && !entry.is_symlink() &&
                entry.path().filename() != givenUp_ &&
                index_->folder(entry.path().string()) == WatchFilter::Folder::entered)
                crawl(record_->entered(folder, entry.path().filename().string(),
                                       stampOf(entry.path())),
                      entry.path());
    }
    FolderStamp stampOf(const std::string &path) const
    {
        return knowsStamps_ ? probeFolder(path, false).stamp : FolderStamp();
    }
    /// By this clock everything on the disk is old.
    static InotifyOptions later()
    {
        InotifyOptions options;
        options.wallClock = [] { return std::int64_t{4'000'000'000} * 1'000'000'000; };
        return options;
    }
    void makeStream()
    {
        FSEventStreamService::Request request;
        request.callback = receiver_->callback();
        request.paths = {index_->root()};
        request.latency = WatchRig::LATENCY;
        request.items = index_;
        request.recorded = record_;
        stream_ = service_->create(std::move(request));
        stream_->setDispatchQueue(queue_);
        ASSERT_TRUE(stream_->start());
    }
    std::vector<std::string> told()
    {
        stream_->flushSync();
        queue_.postAndWait([] {});
        return receiver_->takeTold();
    }
    void TearDown() override
    {
        if (stream_)
            stream_->invalidate();
    }

    bool knowsStamps_ = true;
    std::string givenUp_;
    std::optional<InotifyEventService> service_;
    std::shared_ptr<ModelIndex> index_;
    std::shared_ptr<CrawlRecord> record_;
    CrawlRecord::Folder root_ = 0;
    std::optional<WatchReceiver> receiver_;
    ThreadTaskQueue queue_;
    std::unique_ptr<FSEventStream> stream_;
};

TEST_F(ArmedWatchTest, tellsWhatHappensFromTheArmingOn)
{
    disk_.makeFolder("root/a/b/c");
    disk_.makeFolder("root/x");
    begin(later());
    disk_.makeFolder("root/a/b/c/during");
    remove("root/x");
    makeStream();
    const std::vector<std::string> first = told();
    EXPECT_THAT(std::set(first.begin(), first.end()), ElementsAre("a/b/c/during", "x"));
    EXPECT_EQ(stream_->status().watched, 5U);
    disk_.makeFolder("root/a/b/c/during/later");
    EXPECT_THAT(told(), ElementsAre("a/b/c/during/later"));
    EXPECT_EQ(index_->paths(), index_->onDisk());
}

TEST_F(ArmedWatchTest, listsAgainOnlyWhatIsTooYoungForItsStamp)
{
    disk_.makeFolder("root/a/b/c");
    for (const bool isOld : {true, false}) {
        std::set<std::string> listed;
        InotifyOptions options = isOld ? later() : InotifyOptions();
        options.beforeListing = [&](const std::string &path) { listed.insert(path); };
        begin(options);
        makeStream();
        EXPECT_THAT(told(), IsEmpty());
        stream_->invalidate();
        const std::string root = disk_.path("root");
        if (isOld)
            EXPECT_THAT(listed, IsEmpty());
        else
            EXPECT_THAT(listed, ElementsAre(root, root + "/a", root + "/a/b", root + "/a/b/c"));
        EXPECT_EQ(index_->paths(), index_->onDisk());
    }
}

TEST_F(ArmedWatchTest, takesNamesOfAnyLength)
{
    disk_.makeFolder("root");
    begin(later());
    // This disk has no names of this length, but other disks list names of a thousand bytes.
    const std::string name(1000, 'n');
    record_->entered(record_->entered(root_, name, {1, 2, 3}), name, {1, 3, 3});
    makeStream();
    told();
    EXPECT_EQ(index_->paths(), index_->onDisk());
}

TEST_F(ArmedWatchTest, looksAtNothingElseThanWhatACrawlHasGivenUp)
{
    std::set<std::string> listed;
    InotifyOptions options = later();
    options.beforeListing = [&](const std::string &path) { listed.insert(path); };
    disk_.makeFolder("root/other/deep");
    const std::string hung = disk_.makeFolder("root/hung");
    begin(options, "hung");
    record_->notEntered(root_, "hung");
    makeStream();
    EXPECT_THAT(told(), ElementsAre("hung"));
    EXPECT_THAT(listed, ElementsAre(hung));
}

TEST_F(ArmedWatchTest, findsAFolderInThePlaceOfAnother)
{
    disk_.makeFolder("root/a/b/c");
    disk_.makeFolder("root/x/y");
    disk_.makeFolder("other/b/d");
    begin(later());
    move("root/a", "away");
    move("other", "root/a");
    ASSERT_EQ(::syscall(SYS_renameat2, AT_FDCWD, disk_.path("root/x").c_str(), AT_FDCWD,
                        disk_.path("root/a/b").c_str(), RENAME_EXCHANGE),
              0);
    makeStream();
    told();
    EXPECT_EQ(index_->paths(), index_->onDisk());
    EXPECT_EQ(stream_->status().watched, 6U);
    disk_.makeFolder("root/x/d/later");
    EXPECT_THAT(told(), ElementsAre("x/d/later"));
}

TEST_F(ArmedWatchTest, watchesWhatIsInAFolderThatWasAwayMeanwhile)
{
    for (const char *path : {"root", "root/a", "root/x", "root/a/b", "root/x/b"})
        disk_.makeFolder(path);
    const std::string a = disk_.path("root/a");
    std::atomic<bool> isCrawled = false;
    int exchanges = 0;
    InotifyOptions options = later();
    // The service reads the clock when a folder is gone. So "a" is away while "a/b" gets its watch.
    options.readingInterval = 1h;
    options.wallClock = [&, old = options.wallClock] {
        if (exchanges < 2 && isCrawled &&
            (exchanges == 1 || watchedInodes().contains(inodeOf(a)))) {
            ++exchanges;
            ::syscall(SYS_renameat2, AT_FDCWD, a.c_str(), AT_FDCWD, disk_.path("root/x").c_str(),
                      RENAME_EXCHANGE);
        }
        return old();
    };
    service_.emplace(options);
    index_ = std::make_shared<ModelIndex>(disk_.path("root"));
    receiver_.emplace(index_);
    index_->update(index_->root());
    record_ = service_->beginRecord();
    root_ = record_->enteredRoot(index_->root(), stampOf(index_->root()));
    const auto recorded = record_->entered(root_, "a", stampOf(a));
    const auto other = record_->entered(root_, "x", stampOf(disk_.path("root/x")));
    record_->entered(root_, "gone", {1, 2, 3});
    record_->entered(recorded, "b", stampOf(a + "/b"));
    record_->entered(root_, "gone too", {1, 3, 3});
    record_->entered(other, "b", stampOf(disk_.path("root/x/b")));
    isCrawled = true;
    makeStream();
    told();
    EXPECT_EQ(exchanges, 2);
    disk_.makeFolder("root/a/b/later");
    EXPECT_THAT(told(), ElementsAre("a/b/later"));
    EXPECT_EQ(stream_->status().watched, 6U);
}

TEST_F(ArmedWatchTest, doesWithoutStamps)
{
    knowsStamps_ = false;
    disk_.makeFolder("root/a/b");
    disk_.makeFolder("root/x");
    begin();
    disk_.makeFolder("root/a/b/during");
    remove("root/x");
    makeStream();
    told();
    EXPECT_EQ(index_->paths(), index_->onDisk());
    EXPECT_EQ(stream_->status().watched, 4U);
}

TEST_F(ArmedWatchTest, givesAShortBudgetToTheFoldersNearestToTheRoot)
{
    for (int i = 0; i < 8; ++i)
        disk_.makeFolder("root/" + std::to_string(i) + "/deep/deeper");
    begin(budget(9));
    disk_.makeFolder("root/5/deep/during");
    makeStream();
    told();
    EXPECT_EQ(index_->paths(), index_->onDisk());
    EXPECT_EQ(stream_->status().watched, 9U);
    const auto watched = watchedInodes();
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(watched.contains(inodeOf(disk_.path("root/" + std::to_string(i))))) << i;
}

TEST_F(ArmedWatchTest, listsItselfWhatTheCrawlCouldNot)
{
    disk_.makeFolder("root/a");
    begin(later());
    record_->notListed(root_);
    fs::create_directories(disk_.path("root/a/missed"));
    makeStream();
    EXPECT_THAT(told(), Contains(""));
    EXPECT_EQ(stream_->status().watched, 3U);
    EXPECT_EQ(index_->paths(), index_->onDisk());
}

TEST_F(ArmedWatchTest, bearsCallsThatComeTooLate)
{
    disk_.makeFolder("root/a");
    begin();
    makeStream();
    EXPECT_EQ(record_->entered(root_, "late", {}), 0U);
    stream_->invalidate();
    record_->notListed(root_);
    EXPECT_EQ(record_->enteredRoot(disk_.path("root"), {}), 0U);
    EXPECT_EQ(record_->entered(root_, "a", {}), 0U);
}

// The end

TEST_F(WatchingTest, tellsNothingOnceItHasStopped)
{
    disk_.makeFolder("root");
    {
        WatchRig rig(disk_.path("root"), {}, 0);
        rig.takeTold();
        rig.stream().stop();
        disk_.makeFolder("root/new");
        EXPECT_THAT(rig.told(), IsEmpty());
        EXPECT_FALSE(rig.stream().start());
    }
    WatchRig next(disk_.path("root"));
    next.takeTold();
    EXPECT_THAT(next.told(), IsEmpty());
    disk_.makeFolder("root/newer");
    EXPECT_THAT(next.told(), ElementsAre("newer"));
}

TEST_F(WatchingTest, tellsByItselfAfterTheLatency)
{
    disk_.makeFolder("root");
    WatchRig rig(disk_.path("root"), {}, 0.01);
    disk_.makeFolder("root/new");
    const auto end = std::chrono::steady_clock::now() + 30s;
    while (!rig.index->isIndexed(disk_.path("root/new")) && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(rig.index->paths(), rig.index->onDisk());
}

TEST_F(WatchingTest, leavesOutWhatIsExcluded)
{
    disk_.makeFolder("root/a");
    WatchRig rig(disk_.path("root"));
    rig.takeTold();
    EXPECT_TRUE(rig.stream().setExclusionPaths({disk_.path("root/a")}));
    EXPECT_FALSE(rig.stream().setExclusionPaths(std::vector<std::string>(9, "/")));
    disk_.makeFolder("root/a/new");
    disk_.makeFolder("root/ab");
    EXPECT_THAT(rig.told(), ElementsAre("ab"));
}

} // namespace

} // namespace quillon
