#include "ctl/CrawlCommand.h"

#include "core/SearchBasePaths.h"
#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "indexing/Crawler.h"
#include "indexing/SearchBaseFinder.h"
#include "matching/FuzzyMatchResult.h"
#include "matching/PathIndex.h"
#include "platform/linux/disk/PosixFolderLister.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <set>
#include <stop_token>

namespace quillon {

namespace {

/// Builds an index and prints each path when it is added.
class PrintingSink final : public CrawlSink
{
public:
    PrintingSink(Output &output, char end) : output_(output), end_(end) {}

    Token root(const std::string &path) override;
    void add(Token parent, std::span<Entry> entries) override;
    /// Prints the last root, once it is known that it can be indexed.
    void acceptRoot();
    /// Returns a stop that is requested once nobody reads the output.
    std::stop_token closed() const { return closed_.get_token(); }

    std::size_t folders() const { return folders_; }
    std::size_t files() const { return files_; }
    double bytesPerPath();

private:
    void print(std::string_view path) REQUIRES(paths_.lock());

    PathIndex index_;
    SearchBasePaths paths_{index_};
    Output &output_;
    const char end_;
    std::stop_source closed_;
    std::string newRoot_;
    std::string text_ GUARDED_BY(paths_.lock());
    std::size_t folders_ = 0;
    std::size_t files_ = 0;
};

CrawlSink::Token PrintingSink::root(const std::string &path)
{
    const WritingIndex writing(paths_.lock());
    const std::size_t before = paths_.count();
    const Token token = paths_.add(path);
    newRoot_ = paths_.count() > before ? path : "";
    return token;
}

void PrintingSink::acceptRoot()
{
    if (newRoot_.empty())
        return;
    const WritingIndex writing(paths_.lock());
    ++folders_;
    print(newRoot_);
}

void PrintingSink::add(Token parent, std::span<Entry> entries)
{
    const WritingIndex writing(paths_.lock());
    text_.clear();
    paths_.tree().appendText(parent, text_);
    text_ += '/';
    const std::size_t prefix = text_.size();
    for (Entry &entry : entries) {
        const std::size_t before = paths_.count();
        entry.token = paths_.add(parent, entry.name);
        if (paths_.count() == before)
            continue; // another root holds it too
        ++(entry.isFolder ? folders_ : files_);
        text_.resize(prefix);
        print(text_ += entry.name);
    }
}

void PrintingSink::print(std::string_view path)
{
    output_.write(path);
    output_.write({&end_, 1});
    if (output_.isClosed())
        closed_.request_stop();
}

double PrintingSink::bytesPerPath()
{
    const ReadingIndex reading(paths_.lock());
    return static_cast<double>(paths_.tree().bytes()) /
           static_cast<double>(std::max<std::size_t>(paths_.count(), 1));
}

std::shared_ptr<const SkipRules> makeRules(const CrawlCommand &command,
                                           std::vector<std::string> folders)
{
    std::vector<std::string> patterns;
    if (!command.noDefaultExcludes)
        patterns = SearchBaseFinder::defaultExcludePatterns();
    patterns.insert(patterns.end(), command.excludes.begin(), command.excludes.end());
    if (!command.noBuiltInExcludes)
        for (const auto &location : SearchBaseFinder::builtInExcludeLocations())
            patterns.push_back(location.pattern());
    std::ranges::sort(folders);
    return std::make_shared<const SkipRules>(
        patterns, folders, command.withHidden ? folders : std::vector<std::string>());
}

void printStats(PrintingSink &sink, std::uint64_t errors, std::chrono::duration<double> time)
{
    const std::string line =
        "{\"folders\": " + std::to_string(sink.folders()) +
        ", \"files\": " + std::to_string(sink.files()) + ", \"errors\": " + std::to_string(errors) +
        ", \"seconds\": " + shortestDecimal(time.count()) +
        ", \"bytesPerFolder\": " + shortestDecimal(sink.bytesPerPath()) + "}\n";
    std::fputs(line.c_str(), stderr);
}

} // namespace

int CrawlCommand::run(Output &output) const
{
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::string> roots;
    std::ranges::transform(folders, std::back_inserter(roots), absolutePath);

    PosixFolderLister lister;
    Crawler crawler(lister, makeRules(*this, roots), {.threads = static_cast<unsigned>(threads)});
    PrintingSink sink(output, nulSeparated ? '\0' : '\n');
    const std::set<std::string> wanted(extensions.begin(), extensions.end());
    std::uint64_t errors = 0;
    bool failed = false;
    const auto report = [](const std::string &line) {
        if (line.starts_with("Enumerator error "))
            complain(line);
    };
    for (const std::string &root : roots) {
        const CrawlResult result = crawler.crawl(root, wanted, sink, report, sink.closed());
        errors += result.errors;
        if (!result.error) {
            sink.acceptRoot();
            continue;
        }
        failed = true;
        ++errors;
        if (result.outcome == CrawlResult::Outcome::packageOrMissing)
            complain("Enumerator error " + root + " " + result.error.message());
    }
    const bool written = output.finish();
    if (stats)
        printStats(sink, errors, std::chrono::steady_clock::now() - start);
    return written && !failed ? SUCCESS : FAILURE;
}

} // namespace quillon
