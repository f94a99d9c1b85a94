#include "ctl/PickSource.h"

#include "base/PathText.h"
#include "base/TextFolding.h"
#include "base/Utf8.h"
#include "ctl/FindCommand.h"
#include "prefs/KeptFolders.h"
#include "prefs/Preferences.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

// The panel has as many rows.
constexpr std::uint32_t MOST_ROWS = 25;
constexpr std::uint32_t MOST_USED_ROWS = 10;
/// A shorter query lists the most used folders.
constexpr std::size_t SHORTEST_QUERY = 2;

/// The time that an answer waits for the disk to say whether a typed path exists.
constexpr auto DISK_PATIENCE = 300ms;

std::string homeFolder()
{
    const char *home = std::getenv("HOME");
    return home == nullptr ? "" : home;
}

/// Returns the words of a query or of a name, with a blank between two, however they are written.
std::string folded(std::string_view text)
{
    return joinedWords(foldedWords(text));
}

SearchBaseResultRef row(const std::string &path, std::vector<TextRange> ranges,
                        SearchBaseResultType type = SearchBaseResultType::standard)
{
    return std::make_shared<SearchBaseResult>(path, path, std::move(ranges), type);
}

} // namespace

PickSource::PickSource()
    : settings_(standardDefaultsPath()),
      counts_(settings_),
      isInAnyOrder_(!Preferences(settings_).matchWordsInOrder.value()),
      home_(homeFolder()),
      diskCalls_({.diskOf = remoteDiskOf}),
      disk_(lister_, diskCalls_, DISK_PATIENCE)
{}

bool PickSource::prepare()
{
    return askRunningInstance({}) || makeOwnIndex();
}

PickSource::Answer PickSource::answer(const std::string &query)
{
    const std::string wanted = expanded(query);
    Answer answer;
    for (const FuzzyMatchResult &result : results(wanted))
        answer.rows.push_back(row(result.text(), result.highlightRanges()));
    if (utf8CharacterCount(wanted) < SHORTEST_QUERY) {
        answer.rows = withKeptFirst(KeptFolders(settings_).paths(), answer.rows);
        if (answer.rows.empty() && !home_.empty())
            answer.rows.push_back(row(home_, {}));
        return answer;
    }
    if (!wanted.starts_with('/') || !isThere(wanted))
        return answer;
    const std::string path(withoutTrailingSlashes(wanted));
    const auto found = std::ranges::find(answer.rows, path, &SearchBaseResult::path);
    answer.selected = static_cast<std::size_t>(found - answer.rows.begin());
    if (found == answer.rows.end())
        answer.rows.push_back(row(path, {}, SearchBaseResultType::goToPath));
    return answer;
}

std::vector<FuzzyMatchResult> PickSource::results(const std::string &query)
{
    if (isAnswering_) {
        if (auto results = askRunningInstance(query))
            return *results;
        // The application has ended meanwhile.
        if (!makeOwnIndex())
            return {};
    }
    if (utf8CharacterCount(query) < SHORTEST_QUERY)
        return index_->mostUsed(MOST_USED_ROWS);
    return index_->find(query, MOST_ROWS, order_, isInAnyOrder_);
}

std::optional<std::vector<FuzzyMatchResult>>
PickSource::askRunningInstance(const std::string &query)
{
    const bool isShort = utf8CharacterCount(query) < SHORTEST_QUERY;
    const RemoteAnswer answer = instance_.find({.settings = standardDefaultsPath(),
                                                .text = query,
                                                .limit = isShort ? MOST_USED_ROWS : MOST_ROWS,
                                                .order = isShort ? RemoteQuery::MOST_USED : "",
                                                .words = isInAnyOrder_});
    isAnswering_ = answer.has_value();
    return answer ? std::optional(resultsOf(*answer)) : std::nullopt;
}

bool PickSource::makeOwnIndex()
{
    const auto order = orderOfSettings(settings_);
    index_ = std::make_unique<OwnIndex>(settings_, OwnIndex::Source::keptOrDisk);
    if (!order || !index_->choose({}))
        return false;
    order_ = *order;
    if (index_->restore())
        return true;
    // A line about a folder that cannot be read would stand in the middle of the rows.
    reading_ = std::async(std::launch::async,
                          [this] { index_->build([](const std::string &) {}, stop_.get_token()); });
    return true;
}

bool PickSource::isThere(const std::string &path)
{
    const FolderKind kind = disk_.kind(path);
    return kind == FolderKind::folder || kind == FolderKind::other;
}

std::string PickSource::expanded(const std::string &query) const
{
    return query.starts_with("~/") ? home_ + query.substr(1) : query;
}

std::optional<std::string> PickSource::clearPath(const std::string &query, const Answer &answer)
{
    if (isReading() || answer.rows.empty())
        return std::nullopt;
    const std::string &selected = answer.rows[answer.selected]->path();
    if (selected == withoutTrailingSlashes(expanded(query)))
        return selected;
    const RecentAccessScore uses(counts_);
    const auto isUsed = [&](const SearchBaseResultRef &each) {
        return uses.score(each->path()) > 0;
    };
    const std::string typed = folded(query);
    const auto hasName = [&](const SearchBaseResultRef &each) {
        return folded(lastComponent(each->path())) == typed;
    };
    const auto nameBegins = [&](const SearchBaseResultRef &each) {
        return folded(lastComponent(each->path())).starts_with(typed);
    };
    const auto isFirstAlone = [&](const auto &holds) {
        return holds(answer.rows.front()) && std::ranges::count_if(answer.rows, holds) == 1;
    };
    if (answer.rows.size() == 1 || isFirstAlone(hasName) || isFirstAlone(nameBegins) ||
        isFirstAlone(isUsed))
        return answer.rows.front()->path();
    return std::nullopt;
}

} // namespace quillon
