#include "ctl/FindCommand.h"

#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "ctl/OwnIndex.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/settings/JsonDefaultsStore.h"

#include <utility>

namespace quillon {

int FindCommand::run(Output &output) const
{
    bool failed = false;
    auto results = askRunningInstance();
    if (results)
        tellSource("the running program");
    else
        results = searchAlone(failed);
    print(*results, format, output);
    if (!output.finish() || failed)
        return FIND_FAILURE;
    return results->empty() ? NOTHING_FOUND : SUCCESS;
}

std::optional<std::vector<FuzzyMatchResult>> FindCommand::askRunningInstance() const
{
    if (crawl || !folders.empty() || top > RemoteQuery::MOST)
        return std::nullopt;
    BusRunningInstance instance;
    const RemoteAnswer answer = instance.find({.settings = standardDefaultsPath(),
                                               .text = joinedWords(words),
                                               .limit = static_cast<std::uint32_t>(top),
                                               .order = order,
                                               .words = inAnyOrder});
    return answer ? std::optional(resultsOf(*answer)) : std::nullopt;
}

std::vector<FuzzyMatchResult> FindCommand::searchAlone(bool &failed) const
{
    JsonDefaultsStore user(standardDefaultsPath());
    const auto ranking = order.empty() ? orderOfSettings(user) : matchOrderNamed(order);
    OwnIndex index(user, crawl || !folders.empty() ? OwnIndex::Source::disk
                                                   : OwnIndex::Source::keptOrDisk);
    failed = !ranking || !index.choose(folders, withHidden);
    if (!ranking || (failed && folders.empty()))
        return {};
    if (const auto keptAt = index.restore()) {
        tellSource("the index as it was at " + localTime(*keptAt));
    } else {
        tellSource("the disk");
        index.build([](const std::string &line) { complain(line); });
    }
    return index.find(joinedWords(words), top, *ranking, inAnyOrder);
}

void FindCommand::tellSource(const std::string &source) const
{
    if (stats)
        complain("answered from " + source);
}

std::string joinedWords(const std::vector<std::string> &words)
{
    std::string query;
    for (const std::string &word : words)
        query.append(query.empty() ? "" : " ").append(word);
    return query;
}

std::vector<FuzzyMatchResult> resultsOf(const std::vector<RemoteMatch> &matches)
{
    std::vector<FuzzyMatchResult> results;
    for (const RemoteMatch &match : matches) {
        std::vector<TextRange> ranges;
        for (const auto &[location, length] : match.ranges)
            ranges.push_back({location, length});
        results.emplace_back(match.path, match.score, std::move(ranges));
    }
    return results;
}

} // namespace quillon
