#include "app/IndexAnswers.h"

#include "core/SearchBase.h"
#include "matching/RecentAccessScore.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "prefs/Preferences.h"

#include <vector>

namespace quillon {

IndexAnswers::IndexAnswers(const SearchBase &searchBase, SearchBaseBuilder &builder,
                           RecentAccessScore &recentAccessScore, const Preferences &preferences)
    : searchBase_(searchBase),
      builder_(builder),
      recentAccessScore_(recentAccessScore),
      preferences_(preferences)
{
    builder_.addObserver(*this);
}

IndexAnswers::~IndexAnswers()
{
    builder_.removeObserver(*this);
}

RemoteAnswer IndexAnswers::find(const RemoteQuery &query) const
{
    if (!isComplete_ || query.settings != standardDefaultsPath())
        return std::nullopt;
    const std::string &orderName =
        query.order.empty() ? preferences_.matchOrder.selected().key : query.order;
    const MatchOrder order = matchOrderNamed(orderName).value_or(MatchOrder::path);
    const bool wantsMostUsed = query.order == RemoteQuery::MOST_USED;
    const std::vector<FuzzyMatchResult> results =
        wantsMostUsed ? searchBase_.mostUsedThere(query.limit)
                      : searchBase_.matchesThere(query.text, query.limit, order, query.words);
    std::vector<RemoteMatch> matches;
    for (const FuzzyMatchResult &result : results) {
        matches.push_back({result.text(), result.score(), {}});
        for (const TextRange &range : result.highlightRanges())
            matches.back().ranges.emplace_back(range.location, range.length);
    }
    return matches;
}

bool IndexAnswers::recordUse(const std::string &settings, const std::string &path)
{
    return settings == standardDefaultsPath() &&
           recentAccessScore_.addRecentAccess({path, path, {}, SearchBaseResultType::standard});
}

void IndexAnswers::buildEnded()
{
    isComplete_ = builder_.hasLocations() && !builder_.isCancelled();
}

} // namespace quillon
