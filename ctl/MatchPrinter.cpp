#include "ctl/MatchPrinter.h"

#include "base/JsonValues.h"
#include "base/Utf8.h"
#include "ctl/Output.h"
#include "platform/linux/terminal/TerminalText.h"
#include "results/RowText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace quillon {

namespace {

// Matched letters stand out as grep's do.
constexpr std::string_view MARK_BEGIN = "\x1b[1;31m";
constexpr std::string_view MARK_END = "\x1b[0m";

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

std::string withScore(const FuzzyMatchResult &result)
{
    std::string line = shortestDecimal(result.score()) + "\t" + result.text() + "\t";
    const char *separator = "";
    for (const TextRange &range : result.highlightRanges()) {
        line.append(separator).append(std::to_string(range.location));
        line.append(":").append(std::to_string(range.length));
        separator = ",";
    }
    return line;
}

/// Returns the path for people who read it on a terminal, with its matched letters marked.
std::string marked(const FuzzyMatchResult &result, bool isColoured)
{
    const RowText row =
        rowText({result.text(), {}, result.highlightRanges(), SearchBaseResultType::standard});
    if (!isColoured)
        return row.text.toStdString();
    std::string line;
    int end = 0;
    for (const RowText::Span &span : row.matches) {
        line += row.text.mid(end, span.start - end).toStdString();
        line += MARK_BEGIN;
        line += row.text.mid(span.start, span.length).toStdString();
        line += MARK_END;
        end = span.start + span.length;
    }
    return line + row.text.mid(end).toStdString();
}

/// Returns the match with its path as it leads from the folder. Letters that this path leaves out
/// are not marked.
FuzzyMatchResult relativeTo(const std::filesystem::path &folder, const FuzzyMatchResult &result)
{
    std::string path = std::filesystem::path(result.text()).lexically_relative(folder).string();
    if (path.empty())
        return result; // no way leads there
    // The path is a way up, if any, and then the end of the former path.
    std::size_t up = path == "." ? path.size() : 0;
    while (path.compare(up, 3, "../") == 0)
        up += 3;
    if (path.compare(up, std::string::npos, "..") == 0)
        up = path.size();
    const auto first = static_cast<std::int64_t>(up);
    const auto shift = static_cast<std::int64_t>(utf8CharacterCount(path)) -
                       static_cast<std::int64_t>(utf8CharacterCount(result.text()));
    std::vector<TextRange> ranges;
    for (const TextRange &range : result.highlightRanges()) {
        const auto begin = std::max(range.location + shift, first);
        const auto end = range.location + range.length + shift;
        if (begin < end)
            ranges.push_back({begin, end - begin});
    }
    return {std::move(path), result.score(), std::move(ranges)};
}

} // namespace

void print(const std::vector<FuzzyMatchResult> &results, const MatchFormat &format, Output &output)
{
    QJsonArray rows;
    const bool isForPeople = !format.scores && !format.nulSeparated && isTerminal(stdout);
    const bool isColoured = mayColour(stdout);
    std::error_code error;
    const auto folder = format.relative ? std::filesystem::current_path(error) : "";
    for (const FuzzyMatchResult &found : results) {
        const FuzzyMatchResult &result = format.relative ? relativeTo(folder, found) : found;
        if (format.json)
            rows.append(toJson(result));
        else if (format.scores)
            output.write(withScore(result) + format.ending());
        else
            output.write((isForPeople ? marked(result, isColoured) : result.text()) +
                         format.ending());
    }
    if (format.json)
        output.write(QJsonDocument(rows).toJson(QJsonDocument::Compact).toStdString() +
                     format.ending());
}

} // namespace quillon
