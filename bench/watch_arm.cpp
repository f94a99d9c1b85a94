// Crawls FOLDER again and again, alone and for a stream that watches it afterwards. Prints the
// medians, their ratio, how long the watches then take and the memory that they need here.

#include "base/SerialTaskQueue.h"
#include "indexing/Crawler.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/watching/FolderWatcher.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace quillon;

constexpr int ROUNDS = 7;

class NoSink final : public CrawlSink
{
public:
    Token root(const std::string &) override { return 0; }
    void add(Token, std::span<Entry>) override {}
};

class EnterAll final : public WatchFilter
{
public:
    Folder folder(std::string_view) const override { return Folder::entered; }
    bool includesFile(std::string_view) const override { return false; }
    bool isIndexed(std::string_view) const override { return true; }
};

struct Times
{
    std::vector<double> wall;
    std::vector<double> processor;
};

double secondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void crawl(const std::string &folder, const std::shared_ptr<CrawlRecord> &record, Times &times)
{
    PosixFolderLister lister;
    NoSink sink;
    Crawler crawler(lister, std::make_shared<const SkipRules>(), {}, record);
    const auto begin = std::chrono::steady_clock::now();
    const std::clock_t processorBegin = std::clock();
    crawler.crawl(folder, {"txt"}, sink);
    times.processor.push_back(static_cast<double>(std::clock() - processorBegin) / CLOCKS_PER_SEC);
    times.wall.push_back(secondsSince(begin));
}

/// Returns a watcher of everything that was crawled.
std::shared_ptr<FolderWatcher> makeWatcher(const std::string &folder, CrawlNotes &notes,
                                           TaskQueue &queue)
{
    InotifyOptions options;
    options.watchBudget = maxUserWatches() * 9 / 10;
    FolderWatcher::Stream stream;
    stream.roots = {folder};
    stream.latency = std::chrono::hours(1);
    stream.crawled = notes.take();
    stream.delivery = std::make_shared<EventDelivery>(
        FSEventStreamCallback(), nullptr, std::make_shared<std::atomic<std::uint64_t>>(0));
    stream.delivery->setQueue(queue);
    return std::make_shared<FolderWatcher>(std::make_shared<EnterAll>(), options,
                                           FolderWatcher::Kind::local, std::move(stream));
}

double median(std::vector<double> times)
{
    std::ranges::sort(times);
    return times[times.size() / 2];
}

void print(const char *what, const std::vector<double> &alone, const std::vector<double> &recorded)
{
    std::printf("%s: crawl %.3f s, recorded %.3f s, ratio %.2f\n", what, median(alone),
                median(recorded), median(recorded) / median(alone));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: watch_arm FOLDER\n", stderr);
        return 2;
    }
    Times alone;
    Times recorded;
    std::vector<double> watching;
    SerialTaskQueue queue("watch-arm");
    for (int i = 0; i < ROUNDS; ++i) {
        crawl(argv[1], nullptr, alone);
        auto notes = std::make_shared<CrawlNotes>(wallClockOf({})());
        crawl(argv[1], notes, recorded);
        const auto begin = std::chrono::steady_clock::now();
        auto watcher = makeWatcher(argv[1], *notes, queue);
        if (!watcher->start())
            return 1;
        watcher->flush(std::nullopt);
        watching.push_back(secondsSince(begin));
        const std::size_t folders = watcher->status().folders;
        if (i + 1 == ROUNDS)
            std::printf("%zu folders, %.1f bytes each\n", folders,
                        static_cast<double>(watcher->bytes()) / static_cast<double>(folders));
        // The watcher's thread releases the watches, which must not disturb the next crawl.
        const std::weak_ptr<FolderWatcher> ending = watcher;
        watcher->stop();
        watcher.reset();
        while (!ending.expired())
            std::this_thread::yield();
    }
    print("wall", alone.wall, recorded.wall);
    print("processor", alone.processor, recorded.processor);
    std::printf("watched %.3f s later\n", median(watching));
    return 0;
}
