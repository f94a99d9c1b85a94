#include "ctl/MatchCommand.h"

#include "base/JsonValues.h"
#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "ctl/RecordReader.h"
#include "matching/FuzzyMatch.h"
#include "matching/RecentAccessScore.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

namespace {

/// Use counts that were given and that nobody changes.
class HeldUseCounts final : public RecentAccessScoreDataStore
{
public:
    explicit HeldUseCounts(DefaultsDictionary counts) : counts_(std::move(counts)) {}

    std::optional<DefaultsDictionary> dictionary(std::string_view) override { return counts_; }
    bool edit(std::string_view, const DefaultsStore::Made &) override { return false; }

private:
    const DefaultsDictionary counts_;
};

/// Reads the file. Returns nothing, and prints a line to standard error, when it holds no JSON
/// object.
std::optional<DefaultsDictionary> readCounts(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        complain(path + ": cannot be read");
        return std::nullopt;
    }
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    if (!document.isObject()) {
        complain(path + ": is no JSON object of paths and use counts");
        return std::nullopt;
    }
    DefaultsDictionary counts;
    const QJsonObject object = document.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry)
        if (auto value = fromJson(entry.value()))
            counts.emplace(textToBytes(entry.key()), std::move(*value));
    return counts;
}

void printStats(const FuzzyMatch &matcher, const std::vector<double> &milliseconds)
{
    const std::size_t count = matcher.count();
    const double each =
        count == 0 ? 0.0 : static_cast<double>(matcher.bytes()) / static_cast<double>(count);
    std::string line = "{\"candidates\": " + std::to_string(count) +
                       ", \"bytesPerCandidate\": " + shortestDecimal(each) +
                       ", \"milliseconds\": [";
    const char *separator = "";
    for (const double time : milliseconds) {
        line.append(separator).append(shortestDecimal(time));
        separator = ", ";
    }
    line += "]}\n";
    std::fputs(line.c_str(), stderr);
}

} // namespace

int MatchCommand::run(Output &output) const
{
    std::optional<DefaultsDictionary> counts;
    if (countsFile.empty())
        counts.emplace();
    else
        counts = readCounts(countsFile);
    if (!counts)
        return USAGE_ERROR;
    HeldUseCounts given(std::move(*counts));
    RecentAccessScore score(given);
    FuzzyMatch matcher(&score);

    const auto add = [&](std::span<const std::string_view> paths) { matcher.add(paths); };
    if (const std::error_code error = readRecords(stdin, format.ending(), add)) {
        complain("standard input: " + error.message());
        return FAILURE;
    }

    // Arranging the paths makes later searches faster, but takes longer than a single search.
    if (repeat > 1)
        matcher.arrange();
    std::vector<FuzzyMatchResult> results;
    std::vector<double> milliseconds;
    for (std::size_t i = 0; i < repeat; ++i) {
        const auto start = std::chrono::steady_clock::now();
        results = matcher.match(query, top, order);
        if (inAnyOrder)
            matcher.addWordMatches(query, top, order, results);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        milliseconds.push_back(took.count());
    }
    print(results, format, output);
    const bool written = output.finish();
    if (stats)
        printStats(matcher, milliseconds);
    return written ? SUCCESS : FAILURE;
}

} // namespace quillon
