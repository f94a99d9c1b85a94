#include "ctl/FindCommand.h"

#include "base/InlineTaskQueue.h"
#include "base/JsonValues.h"
#include "core/SearchBase.h"
#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "ctl/ReadOnlySettings.h"
#include "ctl/ReadableFolders.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/RecentAccessScore.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/settings/UserCacheFile.h"
#include "prefs/Preferences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace quillon {

namespace {

QJsonObject toJson(const FuzzyMatchResult &result)
{
    QJsonArray ranges;
    for (const TextRange &range : result.highlightRanges())
        ranges.append(QJsonArray{qint64{range.location}, qint64{range.length}});
    // JSON has no infinity.
    const QJsonValue score =
        std::isfinite(result.score())
            ? QJsonValue(result.score())
            : QJsonValue(QString::fromStdString(shortestDecimal(result.score())));
    return {{QStringLiteral("path"), bytesToText(result.text())},
            {QStringLiteral("score"), score},
            {QStringLiteral("ranges"), ranges}};
}

void print(const std::vector<FuzzyMatchResult> &results, const FindCommand &how, Output &output)
{
    QJsonArray rows;
    for (const FuzzyMatchResult &result : results) {
        if (how.json)
            rows.append(toJson(result));
        else
            output.write(result.text() + (how.nulSeparated ? '\0' : '\n'));
    }
    if (how.json)
        output.write(QJsonDocument(rows).toJson(QJsonDocument::Compact).toStdString() +
                     (how.nulSeparated ? '\0' : '\n'));
}

} // namespace

int FindCommand::run(Output &output) const
{
    bool failed = false;
    auto results = askRunningInstance();
    if (results)
        tellSource("the running program");
    else
        results = searchAlone(failed);
    print(*results, *this, output);
    if (!output.finish() || failed)
        return FIND_FAILURE;
    return results->empty() ? NOTHING_FOUND : SUCCESS;
}

std::string FindCommand::query() const
{
    std::string query;
    for (const std::string &word : words)
        query.append(query.empty() ? "" : " ").append(word);
    return query;
}

std::optional<std::vector<FuzzyMatchResult>> FindCommand::askRunningInstance() const
{
    if (crawl || !folders.empty() || top > RemoteQuery::MOST)
        return std::nullopt;
    BusRunningInstance instance;
    const RemoteAnswer answer = instance.find({.settings = standardDefaultsPath(),
                                               .text = query(),
                                               .limit = static_cast<std::uint32_t>(top),
                                               .order = order,
                                               .words = inAnyOrder});
    if (!answer)
        return std::nullopt;
    std::vector<FuzzyMatchResult> results;
    for (const RemoteMatch &match : *answer) {
        std::vector<TextRange> ranges;
        for (const auto &[location, length] : match.ranges)
            ranges.push_back({location, length});
        results.emplace_back(match.path, match.score, std::move(ranges));
    }
    return results;
}

std::vector<FuzzyMatchResult> FindCommand::searchAlone(bool &failed) const
{
    JsonDefaultsStore user(standardDefaultsPath());
    ReadOnlySettings settings(user);
    const StatxFolderIdentity disk;
    BoundedCalls diskCalls({.diskOf = remoteDiskOf});
    const BoundedFolderIdentity identity(disk, diskCalls);
    SearchBaseFinder finder(settings, identity, stderr);

    // The store prints to standard error what is wrong with the settings. Searching other folders
    // than those that the user chose would be no answer.
    failed = settings.fault().has_value();
    const std::optional<MatchOrder> ranking = orderInForce(settings);
    if (!ranking) {
        failed = true;
        return {};
    }
    if (!folders.empty())
        settings.includeOnly(readableFolders(folders, identity, failed));
    else if (failed)
        return {};
    else if (const char *home = std::getenv("HOME"); finder.bookmarks.load().empty() && home)
        settings.includeOnly(readableFolders({home}, identity, failed));

    DefaultsRecentAccessScoreDataStore counts(settings);
    RecentAccessScore score(counts);
    FuzzyMatch matcher(&score);
    PosixFolderLister lister;
    SearchBaseLogger logger(settings, stderr);
    InlineTaskQueue queue;
    UserCacheFile file(standardIndexPath());
    const auto keptAt = crawl || !folders.empty() ? std::nullopt : file.confirmedAt();
    SearchBase searchBase(nullptr, finder, matcher,
                          {.folderLister = lister,
                           .logger = logger,
                           .mainQueue = queue,
                           .keptIndex = keptAt ? &file : nullptr});
    if (searchBase.restore()) {
        tellSource("the index as it was at " + localTime(*keptAt));
    } else {
        tellSource("the disk");
        searchBase.build([](const std::string &line) {
            if (line.starts_with("Enumerator error "))
                complain(line);
        });
    }
    std::vector<FuzzyMatchResult> results = matcher.match(query(), top, *ranking);
    if (inAnyOrder)
        matcher.addWordMatches(query(), top, *ranking, results);
    return results;
}

std::optional<MatchOrder> FindCommand::orderInForce(DefaultsStore &settings) const
{
    if (!order.empty())
        return matchOrderNamed(order);
    const Preferences preferences(settings);
    if (const auto wrong = preferences.matchOrder.wrongChoice()) {
        complain(wrong->description());
        return std::nullopt;
    }
    return matchOrderNamed(preferences.matchOrder.selected().key);
}

void FindCommand::tellSource(const std::string &source) const
{
    if (stats)
        complain("answered from " + source);
}

} // namespace quillon
