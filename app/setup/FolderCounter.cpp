#include "app/setup/FolderCounter.h"

#include "base/TaskQueue.h"
#include "indexing/Crawler.h"
#include "indexing/SearchBaseFinder.h"

#include <algorithm>
#include <atomic>
#include <stop_token>
#include <vector>

namespace quillon {

struct FolderCounter::Progress
{
    std::atomic<std::size_t> folders = 0;
    std::atomic<bool> isDone = false;
    std::stop_source stop;
};

namespace {

/// Keeps only the number.
class CountingSink final : public CrawlSink
{
public:
    explicit CountingSink(std::atomic<std::size_t> &folders) : folders_(folders) {}

    Token root(const std::string &) override
    {
        ++folders_;
        return 0;
    }
    void add(Token, std::span<Entry> entries) override
    {
        folders_ += static_cast<std::size_t>(std::ranges::count_if(entries, &Entry::isFolder));
    }

private:
    std::atomic<std::size_t> &folders_;
};

} // namespace

FolderCounter::FolderCounter(const Services &services, const std::string &path)
    : progress_(std::make_shared<Progress>())
{
    services.counting.post([services, path, progress = progress_] {
        const std::stop_token stop = progress->stop.get_token();
        if (stop.stop_requested())
            return;
        Crawler crawler(services.folderLister,
                        std::make_shared<const SkipRules>(
                            services.searchBaseFinder.patternsInForce(), std::vector{path}));
        CountingSink sink(progress->folders);
        crawler.crawl(path, {}, sink, {}, stop);
        progress->isDone = true;
    });
}

FolderCounter::~FolderCounter()
{
    progress_->stop.request_stop();
}

std::size_t FolderCounter::count() const
{
    return progress_->folders;
}

bool FolderCounter::isDone() const
{
    return progress_->isDone;
}

} // namespace quillon
