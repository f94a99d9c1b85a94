#include "core/SearchBase.h"

#include "base/PathText.h"
#include "base/Utf8.h"
#include "core/HeldNodes.h"
#include "core/IndexKeeper.h"
#include "core/ReportedChanges.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/FrontItems.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

namespace quillon {

namespace {

constexpr std::size_t RESULT_LIMIT = 25;
constexpr std::size_t GO_TO_PATH_LIMIT = 24;
constexpr std::size_t MOST_ACCESSED_COUNT = 10;
/// The bytes of a dump that are made before writers get a chance to run.
constexpr std::size_t DUMP_PIECE = std::size_t{64} * 1024;

bool beginsLikePath(std::string_view query)
{
    while (!query.empty() && isBlank(firstUtf8Character(query)))
        query.remove_prefix(firstUtf8Character(query).length);
    return query.starts_with('/');
}

} // namespace

SearchBase::SearchBase(const FrontItemsSource *frontFinderSearch,
                       SearchBaseFinder &searchBaseFinder, FuzzyMatch &searchBaseMatcher,
                       Services services)
    : searchBaseMatcher_(searchBaseMatcher),
      searchBasePaths_(searchBaseMatcher.index()),
      frontFinderSearch_(frontFinderSearch),
      searchBaseFinder_(searchBaseFinder),
      searchBaseIgnorePaths_(searchBaseFinder),
      services_(std::move(services)),
      changes_(services_.watching
                   ? std::make_shared<ReportedChanges>(
                         services_.watching->eventQueue,
                         ReportedChanges::Hooks{
                             .onReport = services_.onReport,
                             .update = [this](auto paths,
                                              const auto &stop) { return update(paths, stop); }})
                   : nullptr),
      searchBaseWatcher_(services_.watching
                             ? std::make_unique<SearchBaseWatcher>(
                                   searchBaseIgnorePaths_, *services_.watching, services_.mainQueue)
                             : nullptr),
      indexKeeper_(services_.keptIndex ? std::make_unique<IndexKeeper>(searchBaseMatcher_.index(),
                                                                       *services_.keptIndex)
                                       : nullptr),
      locations_(std::make_shared<const SearchLocations>())
{
    if (searchBaseWatcher_)
        searchBaseWatcher_->setDelegate(changes_);
}

SearchBase::~SearchBase()
{
    const MutexLock lock(watching_);
    stopWatching();
}

// Answers

std::vector<SearchBaseResultRef> SearchBase::search(std::string_view query, MatchOrder order) const
{
    return answer(query, order, false);
}

std::vector<SearchBaseResultRef> SearchBase::searchWithWords(std::string_view query,
                                                             MatchOrder order) const
{
    return answer(query, order, true);
}

std::vector<SearchBaseResultRef> SearchBase::answer(std::string_view query, MatchOrder order,
                                                    bool withWords) const
{
    std::vector<SearchBaseResultRef> results;
    FrontItems front;
    if (frontFinderSearch_ != nullptr && frontFinderSearch_->isFinderFrontmost())
        front = frontFinderSearch_->frontItems();
    if (front.cachedMatcher != nullptr) {
        for (const FuzzyMatchResult &match : front.cachedMatcher->match(query, RESULT_LIMIT, order))
            results.push_back(std::make_shared<SearchBaseResult>(
                match.text(), front.path(match.text()), match.highlightRanges(),
                SearchBaseResultType::inFrontFinder));
    }
    std::vector<FuzzyMatchResult> matches = searchBaseMatcher_.match(query, RESULT_LIMIT, order);
    const bool offersPath =
        results.size() + matches.size() <= GO_TO_PATH_LIMIT && beginsLikePath(query);
    if (withWords)
        searchBaseMatcher_.addWordMatches(query, RESULT_LIMIT - results.size(), order, matches);
    std::ranges::move(standardResults(matches), std::back_inserter(results));
    if (offersPath)
        results.push_back(std::make_shared<SearchBaseResult>(std::string(query), std::string(query),
                                                             std::vector<TextRange>(),
                                                             SearchBaseResultType::goToPath));
    return results;
}

std::vector<SearchBaseResultRef> SearchBase::mostAccessedResults() const
{
    return standardResults(searchBaseMatcher_.mostAccessedResults(MOST_ACCESSED_COUNT));
}

std::vector<FuzzyMatchResult> SearchBase::matchesThere(std::string_view query, std::size_t top,
                                                       MatchOrder order, bool withWords) const
{
    for (std::size_t asked = top;; asked *= 2) {
        std::vector<FuzzyMatchResult> matches = searchBaseMatcher_.match(query, asked, order);
        if (withWords)
            searchBaseMatcher_.addWordMatches(query, asked, order, matches);
        const bool areAll = matches.size() < asked;
        eraseAway(matches);
        if (!areAll && matches.size() < top)
            continue;
        if (matches.size() > top)
            matches.erase(matches.begin() + static_cast<std::ptrdiff_t>(top), matches.end());
        return matches;
    }
}

std::vector<FuzzyMatchResult> SearchBase::mostUsedThere(std::size_t top) const
{
    std::vector<FuzzyMatchResult> results = searchBaseMatcher_.mostAccessedResults(top);
    eraseAway(results);
    return results;
}

void SearchBase::eraseAway(std::vector<FuzzyMatchResult> &matches) const
{
    const ReadingIndex reading(searchBasePaths_.lock());
    std::erase_if(matches, [this](const FuzzyMatchResult &match)
                               NO_THREAD_SAFETY_ANALYSIS { return isAway(match.text()); });
}

std::vector<SearchBaseResultRef>
SearchBase::standardResults(const std::vector<FuzzyMatchResult> &matches) const
{
    std::vector<bool> areAway;
    {
        const ReadingIndex reading(searchBasePaths_.lock());
        for (const FuzzyMatchResult &match : matches)
            areAway.push_back(isAway(match.text()));
    }
    std::vector<SearchBaseResultRef> results;
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const std::string &path = matches[i].text();
        std::string away = areAway[i] ? awayFolderOf(path) : std::string();
        // Before a build has looked for the folders, nobody knows which of them is away.
        if (areAway[i] && away.empty())
            away = path;
        results.push_back(
            std::make_shared<SearchBaseResult>(path, path, matches[i].highlightRanges(),
                                               SearchBaseResultType::standard, std::move(away)));
    }
    return results;
}

bool SearchBase::isAway(const std::string &path) const
{
    const PathTree &tree = searchBasePaths_.tree();
    // Usually nothing is away. An index that was just restored has no quick way to find a path.
    if (tree.count(PathTree::CANDIDATE) <= tree.count(PathTree::STORED))
        return false;
    const PathTree::NodeId node = tree.find(path);
    constexpr PathTree::Flags BOTH = PathTree::STORED | PathTree::CANDIDATE;
    return node != PathTree::NONE && (tree.node(node).flags & BOTH) == PathTree::CANDIDATE;
}

std::string SearchBase::awayFolderOf(std::string_view path) const
{
    std::string nearest;
    for (const std::string &folder : awayFolders())
        if (isAtOrBelow(path, folder) && folder.size() > nearest.size())
            nearest = folder;
    return nearest;
}

std::set<std::string> SearchBase::includeFilePatterns() const
{
    std::set<std::string> patterns;
    for (const IncludeFilePatternSearchBaseLocation &location :
         searchBaseFinder_.includeFilePatternLocations())
        patterns.insert(location.pattern());
    return patterns;
}

std::size_t SearchBase::count() const
{
    const ReadingIndex reading(searchBasePaths_.lock());
    return searchBasePaths_.count();
}

std::shared_ptr<const SearchLocations> SearchBase::locations() const
{
    const MutexLock lock(watching_);
    return locations_;
}

std::vector<std::string> SearchBase::awayFolders() const
{
    std::vector<std::string> folders;
    {
        const MutexLock lock(watching_);
        if (areCrawled_)
            folders = locations_->folders;
        for (const SearchLocations::Missing &folder : locations_->missing)
            folders.push_back(folder.path.empty() ? folder.name : folder.path);
    }
    const ReadingIndex reading(searchBasePaths_.lock());
    std::erase_if(folders, [this](const std::string &folder) NO_THREAD_SAFETY_ANALYSIS {
        return searchBasePaths_.paths().contains(folder);
    });
    return folders;
}

std::vector<std::string> SearchBase::paths() const
{
    std::vector<std::string> paths;
    {
        const ReadingIndex reading(searchBasePaths_.lock());
        paths.reserve(searchBasePaths_.count());
        searchBasePaths_.paths().forEach(
            [&paths](std::string_view path) { paths.emplace_back(path); });
    }
    std::ranges::sort(paths);
    return paths;
}

// Changes

void SearchBase::reset()
{
    // The order matters: an earlier change must never take the emptied index for its own.
    const MutexLock lock(watching_);
    stopWatching();
    const WritingIndex writing(searchBasePaths_.lock());
    beginAnew();
    searchBasePaths_.clear();
}

std::optional<FSEventStatus> SearchBase::watchStatus() const
{
    return searchBaseWatcher_ ? searchBaseWatcher_->status() : std::nullopt;
}

void SearchBase::settle()
{
    if (searchBaseWatcher_)
        searchBaseWatcher_->settle();
}

void SearchBase::add(std::string_view path)
{
    const WritingIndex writing(searchBasePaths_.lock());
    searchBasePaths_.mutableTree().insert(normalizePath(path), PathTree::CANDIDATE);
    searchBasePaths_.add(path);
}

void SearchBase::remove(std::string_view path)
{
    std::vector<std::string> lines;
    {
        const WritingIndex writing(searchBasePaths_.lock());
        const PathTree::NodeId node = searchBasePaths_.remove(path, lines);
        searchBasePaths_.mutableTree().removeFlags(node, PathTree::CANDIDATE);
    }
    services_.logger.log(lines);
}

// The dump

void SearchBase::treeDescription(const std::function<void(std::string_view)> &receive) const
{
    receive("\n\n*** Begin paths list ***\n\n");
    describe(SortedPathWalk::Of::paths, receive);
    receive("\n\n*** Begin children tree mapping ***\n\n");
    describe(SortedPathWalk::Of::childSets, receive);
}

std::string SearchBase::treeDescription() const
{
    std::string text;
    treeDescription([&text](std::string_view piece) { text += piece; });
    return text;
}

void SearchBase::describe(SortedPathWalk::Of of,
                          const std::function<void(std::string_view)> &receive) const
{
    // The walk continues from where it was, so the nodes have to stay in place.
    const HeldNodes held(searchBaseMatcher_.index());
    std::optional<SortedPathWalk> walk;
    bool isFirst = true;
    for (bool goesOn = true; goesOn;) {
        std::string piece;
        {
            const ReadingIndex reading(searchBasePaths_.lock());
            const PathTree &tree = searchBasePaths_.tree();
            if (!walk) {
                walk.emplace(tree, of);
                if (of == SortedPathWalk::Of::childSets)
                    searchBasePaths_.appendTreeMapping(PathTree::ROOT, true, piece);
            }
            while (goesOn && piece.size() < DUMP_PIECE) {
                const PathTree::NodeId node = walk->next();
                goesOn = node != PathTree::NONE;
                if (!goesOn)
                    break;
                isFirst = isFirst && piece.empty();
                if (of == SortedPathWalk::Of::childSets) {
                    searchBasePaths_.appendTreeMapping(node, isFirst, piece);
                } else {
                    piece += isFirst ? "" : "\n";
                    tree.appendText(node, piece);
                }
                isFirst = false;
            }
        }
        receive(piece);
    }
}

} // namespace quillon
