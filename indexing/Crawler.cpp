#include "indexing/Crawler.h"

#include "indexing/NameKinds.h"
#include "platform/FolderLister.h"

#include <chrono>
#include <utility>
#include <vector>

namespace quillon {

namespace {

std::string withoutTrailingSlashes(std::string path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

/// One crawl of one root.
class Walk
{
public:
    struct Folder
    {
        std::string path;
        std::shared_ptr<const OpenFolder> parent;
        std::string name;
        CrawlSink::Token token = 0;
        SkipRules::State state;
    };

    Walk(const SkipRules &rules, const std::set<std::string> &extensions, CrawlSink &sink,
         const Crawler::Progress &progress)
        : rules_(rules), extensions_(extensions), sink_(sink), progress_(progress)
    {}

    void run(Folder root, std::shared_ptr<OpenFolder> opened, const std::stop_token &stop);
    CrawlResult result;

private:
    void list(const Folder &folder, const std::shared_ptr<OpenFolder> &opened);
    void report(const std::string &path, const std::error_code &error);
    void processing(const std::string &path);

    const SkipRules &rules_;
    ExtensionSet extensions_;
    CrawlSink &sink_;
    const Crawler::Progress &progress_;
    std::vector<Folder> pending_;
    FolderBatch batch_;
    std::chrono::steady_clock::time_point nextLine_;
};

void Walk::report(const std::string &path, const std::error_code &error)
{
    ++result.errors;
    if (progress_)
        progress_("Enumerator error " + path + " " + error.message());
}

void Walk::processing(const std::string &path)
{
    const auto now = std::chrono::steady_clock::now();
    if (!progress_ || now < nextLine_)
        return;
    nextLine_ = now + std::chrono::milliseconds(16);
    progress_("Processing " + path);
}

void Walk::list(const Folder &folder, const std::shared_ptr<OpenFolder> &opened)
{
    std::vector<Folder> kept;
    std::vector<CrawlSink::Entry> entries;
    std::vector<std::string> names;
    std::error_code error;
    while (opened->read(batch_, error)) {
        for (const FolderEntry &entry : batch_.entries) {
            if (isHiddenName(entry.name))
                continue;
            Folder child{folder.path + "/" + std::string(entry.name),
                         opened,
                         std::string(entry.name),
                         0,
                         {}};
            processing(child.path);
            child.state = rules_.below(folder.state, entry.name);
            const bool keep =
                entry.isFolder ? !rules_.skips(child.state, entry.name,
                                               [&]() -> const std::string & { return child.path; })
                               : extensions_.holdsExtensionOf(entry.name);
            if (!keep)
                continue;
            ++(entry.isFolder ? result.folders : result.files);
            entries.push_back({.name = {}, .isFolder = entry.isFolder});
            kept.push_back(std::move(child));
        }
    }
    if (error)
        report(folder.path, error);
    if (entries.empty())
        return;
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i].name = kept[i].name;
    sink_.add(folder.token, entries);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        kept[i].token = entries[i].token;
        if (entries[i].isFolder && !isPackageName(kept[i].name))
            pending_.push_back(std::move(kept[i]));
    }
}

void Walk::run(Folder root, std::shared_ptr<OpenFolder> opened, const std::stop_token &stop)
{
    list(root, opened);
    while (!pending_.empty()) {
        if (stop.stop_requested()) {
            result.outcome = CrawlResult::Outcome::stopped;
            return;
        }
        const Folder folder = std::move(pending_.back());
        pending_.pop_back();
        std::error_code error;
        const std::shared_ptr<OpenFolder> next = folder.parent->open(folder.name, error);
        if (next)
            list(folder, next);
        else if (error)
            report(folder.path, error);
    }
}

} // namespace

Crawler::Crawler(FolderLister &folderLister, std::shared_ptr<const SkipRules> rules)
    : folderLister_(folderLister), rules_(std::move(rules))
{}

CrawlResult Crawler::crawl(const std::string &root, const std::set<std::string> &includedExtensions,
                           CrawlSink &sink, const Progress &progress, std::stop_token stop)
{
    const std::string path = withoutTrailingSlashes(root);
    Walk walk(*rules_, includedExtensions, sink, progress);
    Walk::Folder folder{path == "/" ? "" : path, nullptr, {}, sink.root(path), {}};
    folder.state = rules_->stateOf(folder.path);
    if (isPackageName(path.substr(path.rfind('/') + 1))) {
        walk.result.outcome = CrawlResult::Outcome::packageOrMissing;
        return walk.result;
    }
    const auto wanted = includedExtensions.empty() ? FolderLister::Wanted::subfolders
                                                   : FolderLister::Wanted::everything;
    std::error_code error;
    std::shared_ptr<OpenFolder> opened = folderLister_.open(path, wanted, error);
    if (opened) {
        walk.run(std::move(folder), std::move(opened), stop);
    } else if (error) {
        const bool isMissing = error == std::errc::no_such_file_or_directory;
        walk.result.outcome =
            isMissing ? CrawlResult::Outcome::packageOrMissing : CrawlResult::Outcome::unreadable;
        walk.result.error = error;
        if (!isMissing && progress)
            progress("Enumerator error " + path + " " + error.message());
    }
    return walk.result;
}

} // namespace quillon
