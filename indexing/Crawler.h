#pragma once

#include "indexing/CrawlSink.h"
#include "indexing/SkipRules.h"
#include "platform/FolderLister.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

namespace quillon {

class CrawlRecord;

/// The outcome of a crawl of one root.
struct CrawlResult
{
    enum class Outcome
    {
        /// Crawled to the end, except for what was reported as an error on the way.
        complete,
        /// The root is a package or could not be found; nothing was crawled.
        packageOrMissing,
        /// The root could not be read; nothing was crawled.
        unreadable,
        /// Ended early on request.
        stopped,
    };
    Outcome outcome = Outcome::complete;
    /// The reason why the root could not be read.
    std::error_code error;
    /// The numbers of folders and files kept below the root.
    std::uint64_t folders = 0;
    std::uint64_t files = 0;
    /// The number of read errors below the root.
    std::uint64_t errors = 0;
    /// It holds the kind of what is at each name after crawlNames(). A folder that could not be
    /// listed, unless it may not be read, is unknown.
    std::vector<FolderLister::Kind> kinds = {};
    /// The folders, including the root, that could not be listed to their end and perhaps can be
    /// the next time. A folder that is gone is not among them.
    std::vector<std::string> notListed = {};
};

struct CrawlOptions
{
    /// The number of threads that share the work.
    unsigned threads = 2;
    /// A thread that is this long in one call into the file system gets a substitute.
    std::chrono::milliseconds stall{1000};
    /// Once nothing else is left, a folder whose call takes longer than this is reported as an
    /// error and waited for no more.
    std::chrono::milliseconds patience{20000};
};

/// Walks everything below a folder and hands over what belongs in the index.
///
/// Hidden names are left out, except for folders where the rules want them; links are not followed
/// (but the root may be one), packages are listed and not entered. Paths may be of any length and
/// names hold any bytes. A folder that cannot be read is reported and the crawl continues. A file
/// system that does not answer holds up neither the rest of the crawl, nor its end for long, nor a
/// stop.
class Crawler
{
public:
    /// Receives "Processing " and a path, at most about 60 times a second, and, for every error,
    /// "Enumerator error ", a path, a blank and a reason. It is called on the thread that called
    /// crawl().
    using Progress = std::function<void(const std::string &line)>;

    /// The rules are valid as long as the crawler lives. The lister outlives the crawler and also
    /// the calls for which a crawl no longer waits. The record, if any, receives each folder before
    /// it is listed.
    Crawler(FolderLister &folderLister, std::shared_ptr<const SkipRules> rules,
            CrawlOptions options = {}, std::shared_ptr<CrawlRecord> record = nullptr);

    /// Crawls the folder at the absolute path and returns when that is done or stop was requested.
    /// The sink receives folders, and files whose extension is included. The extension is the text
    /// after the last dot of the name, and its case matters. The sink always receives the root,
    /// whatever it is, before everything else. Crawls may run on several threads at a time.
    CrawlResult crawl(const std::string &root, const std::set<std::string> &includedExtensions,
                      CrawlSink &sink, const Progress &progress = {},
                      const std::stop_token &stop = {});

    /// Crawls only some names in a folder, as if the folder held nothing else. Hidden names count.
    CrawlResult crawlNames(const std::string &folder, std::vector<std::string> names,
                           const std::set<std::string> &includedExtensions, CrawlSink &sink,
                           const std::stop_token &stop = {});

private:
    CrawlResult crawlFrom(const std::string &path, std::optional<std::vector<std::string>> names,
                          const std::set<std::string> &includedExtensions, CrawlSink &sink,
                          const Progress &progress, const std::stop_token &stop);

    FolderLister &folderLister_;
    std::shared_ptr<const SkipRules> rules_;
    CrawlOptions options_;
    std::shared_ptr<CrawlRecord> record_;
};

} // namespace quillon
