// Measures what a large change of the disk costs the main thread, and what a dump of the index
// costs. FOLDER, which holds COUNT folders or more, is moved into an indexed folder beside it,
// updated again, and moved out. Prints the time of each step on the main queue and of the whole
// update, and then how long an arrangement of the index and a search keep writers waiting.

#include "base/InlineTaskQueue.h"
#include "bench/Corpus.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double milliseconds(Clock::time_point since)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

/// Settings that hold only one include folder.
class OneFolder final : public DefaultsStore
{
public:
    explicit OneFolder(std::string folder) : folder_(std::move(folder)) {}
    std::optional<DefaultsValue> value(std::string_view key) const override
    {
        if (key != "qln-bookmarks")
            return std::nullopt;
        return DefaultsValue{DefaultsDictionary{{folder_, DefaultsValue{DefaultsData{folder_}}}}};
    }
    bool set(std::string_view, const DefaultsValue &) override { return false; }
    bool remove(std::string_view) override { return false; }
    bool removeAll() override { return false; }
    bool synchronize() override { return true; }

private:
    std::string folder_;
};

/// Runs everything at once and remembers the longest task.
class TimedQueue final : public TaskQueue
{
public:
    void post(Task task) override
    {
        const auto start = Clock::now();
        task();
        longest = std::max(longest, milliseconds(start));
    }
    void postDelayed(std::chrono::milliseconds, Task task) override { post(std::move(task)); }
    double longest = 0;
};

class Base final : public SearchBase
{
public:
    using SearchBase::add;
    using SearchBase::SearchBase;
};

struct Bench
{
    explicit Bench(const std::string &folder) : store(folder) {}

    void update(const char *what, const std::string &path) { update(what, std::span(&path, 1)); }
    void update(const char *what, std::span<const std::string> paths)
    {
        queue.longest = 0;
        const auto start = Clock::now();
        base.update(paths);
        std::printf("%-28s %10zu paths  main thread %8.2f ms  in all %9.2f ms\n", what,
                    base.count(), queue.longest, milliseconds(start));
    }

    OneFolder store;
    StatxFolderIdentity identity;
    SearchBaseFinder finder{store, identity};
    FuzzyMatch matcher{nullptr};
    PosixFolderLister lister;
    SearchBaseLogger logger{store};
    TimedQueue queue;
    Base base{
        nullptr, finder, matcher, {.folderLister = lister, .logger = logger, .mainQueue = queue}};
};

void measureUpdates(const fs::path &folder)
{
    const fs::path root = folder.string() + "-indexed";
    fs::create_directories(root / "in");
    Bench bench(root);
    bench.base.build([](const std::string &) {});
    fs::rename(folder, root / "in/moved");
    bench.update("moved in", root / "in");
    bench.update("nothing changed", root / "in");
    fs::rename(root / "in/moved", folder);
    bench.update("moved out", root / "in");
    fs::create_directory(root / "wide");
    for (int i = 0; i < 10'000; ++i)
        fs::create_directory(root / "wide" / ("child " + std::to_string(i)));
    bench.update("10,000 children came", root / "wide");
    bench.update("10,000 children stay", root / "wide");
    fs::remove_all(root / "wide");
    bench.update("10,000 children went", root / "wide");
    std::vector<std::string> siblings;
    for (int i = 0; i < 100'000; ++i) {
        siblings.push_back(root / ("sibling " + std::to_string(i)));
        fs::create_directory(siblings.back());
    }
    bench.update("100,000 siblings came", siblings);
    fs::remove_all(root);
}

void measureWriter(Bench &bench)
{
    std::vector<double> waits;
    {
        const auto search = [&](const std::stop_token &stop) {
            while (!stop.stop_requested())
                bench.base.search("eeeeee");
        };
        const std::jthread one(search);
        const std::jthread two(search);
        for (int i = 0; i < 2000; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const auto start = Clock::now();
            const WritingIndex writing(bench.matcher.index().lock);
            waits.push_back(milliseconds(start));
        }
    }
    std::ranges::sort(waits);
    std::printf(
        "a writer waits for two searches over %zu paths: median %.2f ms, 99 of 100 %.2f ms, "
        "longest %.2f ms\n",
        bench.base.count(), waits[waits.size() / 2], waits[waits.size() * 99 / 100], waits.back());
}

/// The paths are added in random order, so that every sibling is far from the next in memory.
void measureArrangement(Bench &bench)
{
    double longestWait = 0;
    {
        // A writer that comes this often makes each arrangement give up.
        const std::jthread arranger([&](const std::stop_token &stop) {
            while (!stop.stop_requested())
                bench.matcher.arrange();
        });
        for (int i = 0; i < 500; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const auto start = Clock::now();
            const WritingIndex writing(bench.matcher.index().lock);
            longestWait = std::max(longestWait, milliseconds(start));
        }
    }
    const auto search = [&bench] {
        const auto start = Clock::now();
        bench.base.search("src/main");
        return milliseconds(start);
    };
    const double before = search();
    std::vector<double> searches;
    std::jthread searcher([&](const std::stop_token &stop) {
        do
            searches.push_back(search());
        while (!stop.stop_requested());
    });
    const auto start = Clock::now();
    bench.matcher.arrange();
    const double took = milliseconds(start);
    searcher.request_stop();
    searcher.join();
    std::printf("arranging %zu paths: %.0f ms; a search takes %.2f ms before, %.2f ms at most "
                "meanwhile, %.2f ms afterwards; a writer waits for %.2f ms at most\n",
                bench.base.count(), took, before, std::ranges::max(searches), search(),
                longestWait);
}

void measureDump(Bench &bench)
{
    std::size_t bytes = 0;
    double longest = 0;
    const auto start = Clock::now();
    auto last = start;
    bench.base.treeDescription([&](std::string_view piece) {
        bytes += piece.size();
        longest = std::max(longest, milliseconds(last));
        last = Clock::now();
    });
    std::printf("dump of %zu paths, %zu bytes: %.0f ms, longest piece %.2f ms\n",
                bench.base.count(), bytes, milliseconds(start), longest);
}

} // namespace

} // namespace quillon

int main(int argc, char **argv)
{
    std::size_t count = 0;
    const std::string_view number = argc == 3 ? argv[2] : "";
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), count);
    if (number.empty() || error != std::errc() || end != number.data() + number.size()) {
        std::fputs("usage: index_update FOLDER COUNT\n", stderr);
        return 2;
    }
    quillon::measureUpdates(argv[1]);
    std::vector<std::string> paths = quillon::bench::makeCorpus(count);
    {
        quillon::Bench bench("/");
        std::ranges::shuffle(paths, std::minstd_rand(1));
        for (const std::string &path : paths)
            bench.base.add(path);
        quillon::measureArrangement(bench);
    }
    quillon::Bench bench("/");
    for (const std::string &path : quillon::bench::makeCorpus(count))
        bench.base.add(path);
    quillon::measureWriter(bench);
    quillon::measureDump(bench);
    return 0;
}
