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

/// Keeps nothing but the number.
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

/// What is in force now, with the folder among those to search.
std::shared_ptr<const SkipRules> rulesFor(const std::string &path, const SearchBaseFinder &finder)
{
    std::vector<std::string> patterns;
    for (const auto &location : finder.excludeLocations())
        patterns.push_back(location.pattern());
    for (const auto &location : SearchBaseFinder::builtInExcludeLocations())
        patterns.push_back(location.pattern());
    return std::make_shared<const SkipRules>(patterns, std::vector{path});
}

} // namespace

FolderCounter::FolderCounter(const Services &services, const std::string &path)
    : progress_(std::make_shared<Progress>())
{
    services.background.post([services, path, progress = progress_] {
        const std::stop_token stop = progress->stop.get_token();
        if (stop.stop_requested())
            return;
        Crawler crawler(services.folderLister, rulesFor(path, services.searchBaseFinder));
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
