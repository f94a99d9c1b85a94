#include "platform/FSEventStream.h"
#include "platform/FolderLister.h"
#include "tests/indexing/CrawlSupport.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A file system in memory where some calls do not return until they are released.
///
/// Every folder has the same subfolders, down to a depth. Opening one called "hang" hangs, and so
/// does reading one called "read-hang". The destructor waits until every thread has left.
class HangingLister final : public FolderLister
{
public:
    HangingLister(std::vector<std::string> names, int depth)
        : names_(std::move(names)), depth_(depth)
    {}
    ~HangingLister() override
    {
        release();
        while (folders_ > 0)
            std::this_thread::yield();
    }

    std::unique_ptr<OpenFolder> open(const std::string &path, Wanted, std::error_code &) override
    {
        return make(path.substr(1), depth_);
    }
    Kind kind(const std::string &) override { return Kind::folder; }
    int hanging() const { return hanging_; }
    void release()
    {
        if (!released_.try_wait())
            released_.count_down();
    }

private:
    class Folder final : public OpenFolder
    {
    public:
        Folder(HangingLister &lister, std::string name, int depth)
            : lister_(lister), name_(std::move(name)), depth_(depth)
        {
            ++lister_.folders_;
        }
        ~Folder() override { --lister_.folders_; }

        bool read(FolderBatch &batch, std::error_code &) override
        {
            batch.entries.clear();
            lister_.hangIf(name_ == "read-hang");
            if (depth_ == 0 || std::exchange(read_, true))
                return false;
            for (const std::string &name : lister_.names_)
                batch.entries.push_back({name, true});
            return true;
        }
        std::unique_ptr<OpenFolder> open(const std::string &name, std::error_code &) const override
        {
            return lister_.make(name, depth_ - 1);
        }
        FolderKind kind(const std::string &) const override { return FolderKind::folder; }
        FolderStamp stamp() const override { return {}; }
        FolderStamp childStamp(const std::string &) const override { return {}; }

    private:
        HangingLister &lister_;
        std::string name_;
        int depth_;
        bool read_ = false;
    };

    std::unique_ptr<OpenFolder> make(const std::string &name, int depth)
    {
        auto folder = std::make_unique<Folder>(*this, name, depth);
        hangIf(name == "hang");
        return folder;
    }
    void hangIf(bool doesHang)
    {
        if (!doesHang)
            return;
        ++hanging_;
        released_.wait();
    }

    const std::vector<std::string> names_;
    const int depth_;
    std::latch released_{1};
    std::atomic<int> hanging_ = 0;
    std::atomic<int> folders_ = 0;
};

struct HangingDiskCrawl
{
    HangingDiskCrawl(HangingLister &lister, const std::string &root, CrawlOptions options,
                     const std::stop_token &stop = {})
    {
        result = Crawler(lister, std::make_shared<SkipRules>(), options)
                     .crawl(
                         root, {}, sink,
                         [&](const std::string &line) {
                             if (line.starts_with("Enumerator error "))
                                 errors.insert(line);
                         },
                         stop);
    }
    RecordingSink sink;
    std::set<std::string> errors;
    CrawlResult result;
};

constexpr CrawlOptions IMPATIENT{.threads = 2, .stall = 10ms, .patience = 150ms};
constexpr CrawlOptions PATIENT{.threads = 2, .stall = 10ms, .patience = 1h};

/// Returns the number of folders on all levels, where each has two subfolders that do not hang.
std::size_t allFolders(int depth)
{
    return (std::size_t{1} << depth) - 1;
}

/// Hangs on folders called "enter-hang".
class HangingRecord final : public CrawlRecord
{
public:
    HangingRecord(std::latch &released, std::atomic<int> &living, std::vector<std::string> &missed)
        : released_(released), living_(living), missed_(missed)
    {
        ++living_;
    }
    ~HangingRecord() override { --living_; }
    static constexpr Folder ROOT = 10;

    Folder enteredRoot(const std::string &, const FolderStamp &) override { return ROOT; }
    Folder entered(Folder parent, std::string_view name, const FolderStamp &) override
    {
        if (name == "enter-hang")
            released_.wait();
        return parent + 1;
    }
    void listed(Folder, std::uint64_t) override {}
    void notListed(Folder folder) override { missed_.push_back(std::to_string(folder)); }
    void notEntered(Folder parent, std::string_view name) override
    {
        missed_.push_back(std::to_string(parent).append("/").append(name));
    }

private:
    std::latch &released_;
    std::atomic<int> &living_;
    std::vector<std::string> &missed_;
};

TEST(HangingCrawl, leavesArmingBehindToo)
{
    HangingLister lister({"a", "enter-hang", "hang", "read-hang"}, 1);
    std::latch released{1};
    std::atomic<int> living = 0;
    std::vector<std::string> missed;
    RecordingSink sink;
    const auto result = Crawler(lister, std::make_shared<SkipRules>(), IMPATIENT,
                                std::make_shared<HangingRecord>(released, living, missed))
                            .crawl("/r", {}, sink);
    EXPECT_EQ(result.errors, 3U);
    EXPECT_THAT(sink.kept, ElementsAre("/r/a", "/r/enter-hang", "/r/hang", "/r/read-hang"));
    EXPECT_THAT(missed, UnorderedElementsAre("10/enter-hang", "10/hang", "11"))
        << "the folder above and what else is in it are not looked at again";
    EXPECT_EQ(living, 1) << "a call uses it still";
    lister.release();
    released.count_down();
    while (living > 0)
        std::this_thread::yield();
}

TEST(HangingCrawl, visitsEverythingElseAndReportsWhatHangs)
{
    // In the second tree more folders hang than the crawl ever waits for at the same time.
    for (const int depth : {3, 6}) {
        HangingLister lister({"a", "hang", "b"}, depth);
        const HangingDiskCrawl crawl(lister, "/r", IMPATIENT);
        EXPECT_EQ(crawl.result.outcome, CrawlResult::Outcome::complete);
        EXPECT_EQ(crawl.sink.kept.size(), 3 * allFolders(depth));
        EXPECT_EQ(crawl.errors.size(), allFolders(depth));
        EXPECT_EQ(crawl.result.errors, crawl.errors.size());
        EXPECT_THAT(crawl.errors, Contains("Enumerator error /r/a/hang Connection timed out"));
    }
}

TEST(HangingCrawl, givesUpAFolderThatCannotBeReadToItsEnd)
{
    HangingLister lister({"a", "read-hang"}, 2);
    const HangingDiskCrawl crawl(lister, "/r", IMPATIENT);
    EXPECT_THAT(crawl.errors, ElementsAre("Enumerator error /r/a/read-hang Connection timed out",
                                          "Enumerator error /r/read-hang Connection timed out"));
    EXPECT_THAT(crawl.result.notListed, UnorderedElementsAre("/r/a/read-hang", "/r/read-hang"));
}

TEST(HangingCrawl, givesUpARootThatHangs)
{
    for (const std::string name : {"/hang", "/read-hang"}) {
        HangingLister lister({"a"}, 1);
        const HangingDiskCrawl crawl(lister, name, IMPATIENT);
        EXPECT_EQ(crawl.result.outcome, CrawlResult::Outcome::unreadable);
        EXPECT_EQ(crawl.result.error, std::errc::timed_out);
        EXPECT_THAT(crawl.errors,
                    ElementsAre("Enumerator error " + name + " Connection timed out"));
        EXPECT_THAT(crawl.sink.kept, IsEmpty());
    }
}

TEST(HangingCrawl, waitsForWhatIsOnlySlow)
{
    HangingLister lister({"a", "hang", "b"}, 3);
    const std::jthread helper([&](const std::stop_token &stop) {
        // All of them hang at the same time, so each thread got a substitute.
        while (lister.hanging() < 7 && !stop.stop_requested())
            std::this_thread::yield();
        lister.release();
    });
    const HangingDiskCrawl crawl(lister, "/r", PATIENT);
    EXPECT_EQ(crawl.result.outcome, CrawlResult::Outcome::complete);
    EXPECT_EQ(crawl.sink.kept.size(), 3U + 9U + 27U);
    EXPECT_THAT(crawl.errors, IsEmpty());
}

TEST(HangingCrawl, canBeStopped)
{
    HangingLister lister({"a", "hang", "b"}, 3);
    std::stop_source source;
    const std::jthread helper([&] {
        while (lister.hanging() < 2)
            std::this_thread::yield();
        source.request_stop();
    });
    const HangingDiskCrawl crawl(lister, "/r", PATIENT, source.get_token());
    EXPECT_EQ(crawl.result.outcome, CrawlResult::Outcome::stopped);
    EXPECT_THAT(crawl.errors, IsEmpty());
}

} // namespace

} // namespace quillon
