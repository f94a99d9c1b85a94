#include "indexing/CrawlReport.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillon {

CrawlReport::CrawlReport(std::string rootPath, const std::optional<std::vector<std::string>> &names,
                         bool wantsMessages)
    : rootPath_(std::move(rootPath)),
      names_(names),
      wantsMessages_(wantsMessages),
      pathWanted_(wantsMessages)
{
    if (names_)
        result_.kinds.resize(names_->size(), FolderLister::Kind::unknown);
}

// What could not be listed

void CrawlReport::setKind(std::size_t number, FolderLister::Kind kind)
{
    const MutexLock lock(mutex_);
    result_.kinds[number] = kind;
}

void CrawlReport::notRead(const std::string &path, const std::error_code &error)
{
    const MutexLock lock(mutex_);
    ++result_.errors;
    forgetKind(path);
    result_.notListed.push_back(path);
    addErrorLine(path, error);
}

void CrawlReport::notOpened(const std::string &path, const std::error_code &error)
{
    const MutexLock lock(mutex_);
    ++result_.errors;
    leaveOut(path, error);
    addErrorLine(path, error);
}

void CrawlReport::rootNotOpened(const std::error_code &error)
{
    const MutexLock lock(mutex_);
    if (!names_)
        leaveOut(rootPath_, error);
    failRoot(error);
}

void CrawlReport::rootTimedOut()
{
    const MutexLock lock(mutex_);
    failRoot(std::make_error_code(std::errc::timed_out));
}

void CrawlReport::leaveOut(const std::string &path, const std::error_code &error)
{
    // A folder without permission is a folder all the same.
    if (error != std::errc::permission_denied)
        forgetKind(path);
    if (error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory)
        result_.notListed.push_back(path);
}

void CrawlReport::forgetKind(const std::string &path)
{
    const std::size_t prefix = rootPath_ == "/" ? 1 : rootPath_.size() + 1;
    if (!names_ || path.size() <= prefix)
        return;
    const auto name = std::ranges::find(*names_, std::string_view(path).substr(prefix));
    if (name != names_->end())
        result_.kinds[static_cast<std::size_t>(name - names_->begin())] =
            FolderLister::Kind::unknown;
}

void CrawlReport::failRoot(const std::error_code &error)
{
    result_.error = error;
    if (error == std::errc::no_such_file_or_directory) {
        result_.outcome = CrawlResult::Outcome::packageOrMissing;
        return;
    }
    result_.outcome = CrawlResult::Outcome::unreadable;
    addErrorLine(rootPath_, error);
}

CrawlResult CrawlReport::result()
{
    const MutexLock lock(mutex_);
    return result_;
}

// Messages

void CrawlReport::setProcessing(std::string path)
{
    const MutexLock lock(mutex_);
    processing_ = std::move(path);
}

void CrawlReport::addErrorLine(const std::string &path, const std::error_code &error)
{
    if (wantsMessages_)
        errorLines_.push_back("Enumerator error " + path + " " + error.message());
}

void CrawlReport::deliver(const Crawler::Progress &progress)
{
    if (!progress)
        return;
    std::vector<std::string> errors;
    std::string processing;
    {
        const MutexLock lock(mutex_);
        errors.swap(errorLines_);
        processing.swap(processing_);
    }
    for (const std::string &line : errors)
        progress(line);
    if (processing.empty())
        return;
    progress("Processing " + processing);
    pathWanted_ = true;
}

} // namespace quillon
