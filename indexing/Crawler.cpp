#include "indexing/Crawler.h"

#include "base/PathText.h"
#include "indexing/CrawlTeam.h"

#include <utility>

// How a crawl goes.
//
// Workers (CrawlWorker), two as a rule, each go depth first through what is on their own stack
// (CrawlStack). A worker that has run out takes half of what another has left nearest to the root,
// so that few subtrees change hands. Folders are opened relative to the one above, which stays open
// while it has subfolders to visit; in deep trees those nearest to the root are closed and opened
// again when they are needed. A path exists as text only where a message or a rule asks for it: a
// folder is its name and the folder above (CrawlFolder).
//
// A worker records each folder (CrawlRecord), with its stamp, before it lists the folder. So the
// watch that takes the record over finds what changes after that.
//
// The thread that crawls looks after the workers and passes on their messages (CrawlTeam,
// CrawlReport). Any call into the file system may be one that never returns. A worker that is long
// in one is stalled: the others take over what it has left, a substitute takes its place, and once
// nothing else is left to be visited its folder is reported and the worker is left to itself.

namespace quillon {

Crawler::Crawler(FolderLister &folderLister, std::shared_ptr<const SkipRules> rules,
                 CrawlOptions options, std::shared_ptr<CrawlRecord> record)
    : folderLister_(folderLister),
      rules_(std::move(rules)),
      options_(options),
      record_(std::move(record))
{}

CrawlResult Crawler::crawl(const std::string &root, const std::set<std::string> &includedExtensions,
                           CrawlSink &sink, const Progress &progress, const std::stop_token &stop)
{
    const std::string path(withoutTrailingSlashes(root));
    if (isPackageName(lastComponent(path))) {
        sink.root(path);
        return {.outcome = CrawlResult::Outcome::packageOrMissing, .error = {}};
    }
    return crawlFrom(path, std::nullopt, includedExtensions, sink, progress, stop);
}

CrawlResult Crawler::crawlNames(const std::string &folder, std::vector<std::string> names,
                                const std::set<std::string> &includedExtensions, CrawlSink &sink,
                                const std::stop_token &stop)
{
    return crawlFrom(std::string(withoutTrailingSlashes(folder)), std::move(names),
                     includedExtensions, sink, {}, stop);
}

CrawlResult Crawler::crawlFrom(const std::string &path,
                               std::optional<std::vector<std::string>> names,
                               const std::set<std::string> &includedExtensions, CrawlSink &sink,
                               const Progress &progress, const std::stop_token &stop)
{
    CrawlItem item;
    item.token = sink.root(path);
    item.name = path == "/" ? "" : path;
    item.state = rules_->stateOf(item.name);
    const auto team =
        std::make_shared<CrawlTeam>(CrawlTeam::Task{.folderLister = folderLister_,
                                                    .rules = rules_,
                                                    .extensions = ExtensionSet(includedExtensions),
                                                    .sink = sink,
                                                    .rootPath = path,
                                                    .root = std::move(item),
                                                    .names = std::move(names),
                                                    .record = record_,
                                                    .reportsProgress = progress != nullptr},
                                    options_);
    return team->run(progress, stop);
}

} // namespace quillon
