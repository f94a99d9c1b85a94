#include "core/SearchBase.h"

#include "indexing/CrawlSink.h"
#include "indexing/Crawler.h"
#include "indexing/SearchBaseFinder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace quillon {

namespace {

constexpr std::size_t RESULT_LIMIT = 25;
constexpr std::size_t GO_TO_PATH_LIMIT = 24;
constexpr std::size_t MOST_ACCESSED_COUNT = 10;

/// Tab and the Unicode space separators, in UTF-8.
constexpr std::array<std::string_view, 18> BLANKS = {
    " ",      "\t",     "\u00a0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200a", "\u202f", "\u205f", "\u3000"};

std::string_view trimBlanks(std::string_view text)
{
    const auto isBlank = [](std::string_view at, bool fromEnd) {
        return std::ranges::find_if(BLANKS, [&](std::string_view blank) {
            return fromEnd ? at.ends_with(blank) : at.starts_with(blank);
        });
    };
    for (auto blank = isBlank(text, false); blank != BLANKS.end(); blank = isBlank(text, false))
        text.remove_prefix(blank->size());
    for (auto blank = isBlank(text, true); blank != BLANKS.end(); blank = isBlank(text, true))
        text.remove_suffix(blank->size());
    return text;
}

SearchBaseResultRef standardResult(const FuzzyMatchResult &match)
{
    return std::make_shared<SearchBaseResult>(match.text(), match.text(), match.highlightRanges(),
                                              SearchBaseResultType::standard);
}

/// Puts what a crawl keeps into the index, one folder's entries at a time, until the index is
/// reset: what the crawl knows of it no longer holds then, and the crawl is to end.
class IndexSink final : public CrawlSink
{
public:
    IndexSink(SearchBasePaths &paths, std::stop_source end)
        : paths_(paths), end_(std::move(end)), generation_(generation(paths.index()))
    {}

    Token root(const std::string &path) override
    {
        const WritingIndex writing(paths_.index().lock);
        return isReset() ? PathTree::NONE : paths_.add(path);
    }
    void add(Token parent, std::span<Entry> entries) override
    {
        const WritingIndex writing(paths_.index().lock);
        if (isReset())
            return;
        for (Entry &entry : entries)
            entry.token = paths_.add(parent, entry.name);
    }

private:
    static std::uint64_t generation(const PathIndex &index)
    {
        const ReadingIndex reading(index.lock);
        return index.tree.generation();
    }
    bool isReset() REQUIRES(paths_.index().lock)
    {
        const bool isReset = paths_.index().tree.generation() != generation_;
        if (isReset)
            end_.request_stop();
        return isReset;
    }

    SearchBasePaths &paths_;
    std::stop_source end_;
    const std::uint64_t generation_;
};

} // namespace

SearchBase::SearchBase(SearchBaseFinder &searchBaseFinder, FuzzyMatch &searchBaseMatcher,
                       FolderLister &folderLister)
    : searchBaseMatcher_(searchBaseMatcher),
      searchBasePaths_(searchBaseMatcher.index()),
      searchBaseFinder_(searchBaseFinder),
      searchBaseIgnorePaths_(searchBaseFinder),
      folderLister_(folderLister)
{}

std::vector<SearchBaseResultRef> SearchBase::search(std::string_view query) const
{
    std::vector<SearchBaseResultRef> results;
    for (const FuzzyMatchResult &match : searchBaseMatcher_.match(query, RESULT_LIMIT))
        results.push_back(standardResult(match));
    if (results.size() <= GO_TO_PATH_LIMIT && trimBlanks(query).starts_with('/'))
        results.push_back(std::make_shared<SearchBaseResult>(std::string(query), std::string(query),
                                                             std::vector<TextRange>(),
                                                             SearchBaseResultType::goToPath));
    return results;
}

std::vector<SearchBaseResultRef> SearchBase::mostAccessedResults() const
{
    std::vector<SearchBaseResultRef> results;
    for (const FuzzyMatchResult &match :
         searchBaseMatcher_.mostAccessedResults(MOST_ACCESSED_COUNT))
        results.push_back(standardResult(match));
    return results;
}

void SearchBase::reset()
{
    const WritingIndex writing(searchBasePaths_.index().lock);
    searchBasePaths_.index().tree.clear();
}

std::set<std::string> SearchBase::includeFilePatterns() const
{
    std::set<std::string> patterns;
    for (const IncludeFilePatternSearchBaseLocation &location :
         searchBaseFinder_.includeFilePatternLocations())
        patterns.insert(location.pattern());
    return patterns;
}

void SearchBase::build(const Progress &progress, const std::stop_token &stop)
{
    const std::vector<IncludePathSearchBaseLocation> locations =
        searchBaseFinder_.includeLocations();
    const std::set<std::string> patterns = includeFilePatterns();
    searchBaseIgnorePaths_.refresh();
    std::string starting = "Starting search with ";
    for (const IncludePathSearchBaseLocation &location : locations)
        starting += location.url();
    progress(starting);

    Crawler crawler(folderLister_, searchBaseIgnorePaths_.rules());
    std::stop_source end;
    const std::stop_callback endOnRequest(stop, [&end] { end.request_stop(); });
    IndexSink sink(searchBasePaths_, end);
    for (const IncludePathSearchBaseLocation &location : locations) {
        progress("Scanning " + location.url());
        crawler.crawl(location.url(), patterns, sink, progress, end.get_token());
        if (end.stop_requested())
            return;
        progress("Added " + std::to_string(count()) + " items");
    }
}

std::size_t SearchBase::count() const
{
    const ReadingIndex reading(searchBasePaths_.index().lock);
    return searchBasePaths_.count();
}

} // namespace quillon
