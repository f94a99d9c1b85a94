#include "platform/linux/disk/Descriptor.h"
#include "platform/linux/disk/FolderProbe.h"
#include "tests/platform/WatchSupport.h"
#include "tests/support/RandomUser.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct Circumstances
{
    std::string name;
    std::string disk;
    InotifyOptions options;
    bool isPlenty = true;
};

std::ostream &operator<<(std::ostream &out, const Circumstances &circumstances)
{
    return out << circumstances.name;
}

InotifyOptions options(std::optional<std::size_t> budget, std::optional<std::size_t> queueLimit)
{
    InotifyOptions made;
    made.watchBudget = budget;
    made.sweepInterval = 20ms;
    made.readingInterval = 1ms;
    made.queueLimit = queueLimit;
    made.report = [](const std::string &) {};
    return made;
}

std::vector<Circumstances> allCircumstances()
{
    std::vector<Circumstances> all;
    const std::string disk = fs::temp_directory_path();
    for (const auto &[where, folder] :
         {std::pair{"Disk", disk}, std::pair{"Memory", std::string("/dev/shm")}}) {
        all.push_back({std::string("plenty") + where, folder, options({}, {}), true});
        all.push_back({std::string("thirty") + where, folder, options(30, {}), false});
        all.push_back({std::string("none") + where, folder, options(0, {}), false});
        all.push_back({std::string("shortQueue") + where, folder, options({}, 64), true});
        all.push_back({std::string("shortOfBoth") + where, folder, options(30, 64), false});
    }
    return all;
}

class WatchingRandomTest : public testing::TestWithParam<Circumstances>
{
protected:
    static int runs()
    {
        const char *text = std::getenv("QUILLON_WATCH_RUNS");
        return text != nullptr ? std::atoi(text) : 1;
    }
    void run(unsigned seed);
    void runWithCrawl(unsigned seed);
    static void expectWatchesOnFoldersOnly(const ModelIndex &index, FSEventStream &stream,
                                           bool isPlenty);
};

void WatchingRandomTest::expectWatchesOnFoldersOnly(const ModelIndex &index, FSEventStream &stream,
                                                    bool isPlenty)
{
    const auto watched = watchedInodes();
    std::size_t entered = 0;
    for (const std::string &path : index.onDisk()) {
        if (!fs::is_directory(fs::symlink_status(path)) || path.ends_with(".app"))
            continue;
        ++entered;
        if (isPlenty) {
            EXPECT_EQ(watched.count(inodeOf(path)), 1U) << path;
        }
    }
    // The folders above the root are watched too. A sweep may be about to watch another one.
    const auto above = static_cast<std::size_t>(std::ranges::count(index.root(), '/'));
    FSEventStatus status = stream.status();
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (watchedInodes().size() != status.watched + above &&
           std::chrono::steady_clock::now() < end) {
        stream.flushSync();
        status = stream.status();
    }
    EXPECT_EQ(watchedInodes().size(), status.watched + above);
    EXPECT_EQ(status.folders, entered);
    EXPECT_LE(status.watched, status.budget);
}

/// Returns the paths that the index lacks, with a "+", and those that it holds wrongly, with a "-".
std::vector<std::string> differences(const ModelIndex &index)
{
    const auto held = index.paths();
    const auto wanted = index.onDisk();
    std::vector<std::string> found;
    for (const std::string &path : wanted)
        if (!held.contains(path))
            found.push_back("+" + path);
    for (const std::string &path : held)
        if (!wanted.contains(path))
            found.push_back("-" + path);
    return found;
}

void WatchingRandomTest::run(unsigned seed)
{
    const TemporaryFolder disk(GetParam().disk);
    const std::string root = disk.makeFolder("above/root");
    RandomUser user(root, disk.makeFolder("outside"), seed);
    for (int i = 0; i < 100; ++i)
        user.act();
    WatchRig rig(root, GetParam().options, 0.002 * (seed % 16));
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 1000; ++i)
            user.act();
        rig.flush();
        ASSERT_THAT(differences(*rig.index), testing::IsEmpty()) << "seed " << seed;
        expectWatchesOnFoldersOnly(*rig.index, rig.stream(), GetParam().isPlenty);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    EXPECT_TRUE(rig.areIDsRising());
}

/// Returns the path of an opened folder, wherever that has been moved to.
std::string pathOf(const Descriptor &folder)
{
    return "/proc/self/fd/" + std::to_string(folder.get());
}

/// Lists and records a folder and what is below it as a crawl does: the stamp and the names are
/// those of one folder, even when another one takes its place meanwhile.
void crawl(CrawlRecord &record, CrawlRecord::Folder recorded, const Descriptor &folder,
           const std::string &path, ModelIndex &index)
{
    if (!folder) {
        record.notListed(recorded);
        return;
    }
    std::error_code error;
    std::uint64_t items = 0;
    for (fs::directory_iterator at(pathOf(folder), error), end; !error && at != end;
         at.increment(error)) {
        const std::string name = at->path().filename();
        const std::string item = path + "/" + name;
        const auto type = at->symlink_status(error).type();
        if (type != fs::file_type::directory) {
            if (type == fs::file_type::not_found || !index.includesFile(name))
                continue;
            index.add(item);
            items += itemHash(name);
            continue;
        }
        const auto verdict = index.folder(item);
        if (verdict != WatchFilter::Folder::skipped)
            index.add(item);
        if (verdict == WatchFilter::Folder::listed)
            items += itemHash(name);
        if (verdict == WatchFilter::Folder::entered) {
            constexpr int FLAGS = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
            const Descriptor below(::openat(folder.get(), name.c_str(), FLAGS));
            const FolderStamp stamp =
                below ? probeFolder(pathOf(below), true).stamp : FolderStamp();
            crawl(record, record.entered(recorded, name, stamp), below, item, index);
        }
    }
    if (items != 0)
        record.listed(recorded, items);
    if (error)
        record.notListed(recorded);
}

/// The tree is old enough for stamps to be trusted, and then changes while it is crawled.
void WatchingRandomTest::runWithCrawl(unsigned seed)
{
    const TemporaryFolder disk(GetParam().disk);
    const std::string root = disk.makeFolder("above/root");
    RandomUser user(root, disk.makeFolder("outside"), seed);
    for (int i = 0; i < 500; ++i)
        user.act();
    const auto oldEnough = std::chrono::system_clock::now() + 200ms;
    std::this_thread::sleep_until(oldEnough);
    InotifyOptions options = GetParam().options;
    options.wallClock = [] {
        return std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch() +
                                        1900ms)
            .count();
    };
    std::jthread acting([&user](const std::stop_token &stop) {
        for (int i = 0; i < 300 && !stop.stop_requested(); ++i)
            user.act();
    });
    WatchRig rig(std::make_shared<ModelIndex>(root, seed % 2 == 0), options, WatchRig::LATENCY,
                 [](InotifyEventService &service, const std::shared_ptr<ModelIndex> &index) {
                     auto record = service.beginRecord();
                     const Descriptor folder(
                         ::open(index->root().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
                     const auto recorded = record->enteredRoot(
                         index->root(),
                         folder ? probeFolder(pathOf(folder), true).stamp : FolderStamp());
                     index->add(index->root());
                     crawl(*record, recorded, folder, index->root(), *index);
                     return record;
                 });
    acting.join();
    rig.flush();
    ASSERT_THAT(differences(*rig.index), testing::IsEmpty()) << "seed " << seed;
    expectWatchesOnFoldersOnly(*rig.index, rig.stream(), GetParam().isPlenty);
}

TEST_P(WatchingRandomTest, losesNothingOfWhatHappensDuringACrawl)
{
    for (int i = 0; i < runs() && !HasFailure(); ++i)
        runWithCrawl(static_cast<unsigned>(i));
}

TEST_P(WatchingRandomTest, losesNothing)
{
    for (int i = 0; i < runs() && !HasFailure(); ++i)
        run(static_cast<unsigned>(i));
}

INSTANTIATE_TEST_SUITE_P(Everywhere, WatchingRandomTest, testing::ValuesIn(allCircumstances()),
                         [](const auto &row) { return row.param.name; });

} // namespace

} // namespace quillon
