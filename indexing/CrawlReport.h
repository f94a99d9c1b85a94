#pragma once

#include "base/Mutex.h"
#include "indexing/Crawler.h"
#include "platform/FolderLister.h"

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace quillon {

/// What the workers of a crawl report: the kinds of the crawled names, the folders that could not
/// be listed, and the messages. Safe from every thread.
class CrawlReport
{
public:
    /// The names in the root that are crawled, which outlive this object, are absent when all of
    /// them are.
    CrawlReport(std::string rootPath, const std::optional<std::vector<std::string>> &names,
                bool wantsMessages);

    /// Records the kind of what is at the name with this number.
    void setKind(std::size_t number, FolderLister::Kind kind) EXCLUDES(mutex_);
    /// Records a folder below the root, or the root itself, that could not be read to its end.
    void notRead(const std::string &path, const std::error_code &error) EXCLUDES(mutex_);
    /// Records a folder below the root that could not be opened.
    void notOpened(const std::string &path, const std::error_code &error) EXCLUDES(mutex_);
    void rootNotOpened(const std::error_code &error) EXCLUDES(mutex_);
    /// Records that a call for the root has not returned.
    void rootTimedOut() EXCLUDES(mutex_);

    /// Returns true once for each path that a message needs.
    bool wantsPath()
    {
        return pathWanted_.load(std::memory_order_relaxed) && pathWanted_.exchange(false);
    }
    void setProcessing(std::string path) EXCLUDES(mutex_);
    /// Passes the messages on. Only the thread that crawls calls this.
    void deliver(const Crawler::Progress &progress) EXCLUDES(mutex_);

    /// Returns the result so far, without the numbers of folders and files.
    CrawlResult result() EXCLUDES(mutex_);

private:
    void leaveOut(const std::string &path, const std::error_code &error) REQUIRES(mutex_);
    void forgetKind(const std::string &path) REQUIRES(mutex_);
    void failRoot(const std::error_code &error) REQUIRES(mutex_);
    void addErrorLine(const std::string &path, const std::error_code &error) REQUIRES(mutex_);

    const std::string rootPath_;
    const std::optional<std::vector<std::string>> &names_;
    const bool wantsMessages_;
    std::atomic<bool> pathWanted_;

    Mutex mutex_;
    std::vector<std::string> errorLines_ GUARDED_BY(mutex_);
    std::string processing_ GUARDED_BY(mutex_);
    CrawlResult result_ GUARDED_BY(mutex_);
};

} // namespace quillon
