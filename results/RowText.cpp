#include "results/RowText.h"

#include "base/PathText.h"
#include "base/Utf8.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace quillon {

namespace {

constexpr char32_t REPLACEMENT = 0xfffd;

/// Returns true for characters that would break the line or change how the rest of it reads, since
/// a name may hold anything.
bool isUnfitToDraw(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029 || c == 0x061C ||
           c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

/// Appends the text. starts receives the place where each character begins, and the end of the last
/// one.
void appendDecoded(std::string_view bytes, QString &text, std::vector<int> *starts)
{
    text.reserve(static_cast<qsizetype>(bytes.size()));
    while (!bytes.empty()) {
        if (starts)
            starts->push_back(static_cast<int>(text.size()));
        const Utf8Character first = firstUtf8Character(bytes);
        const bool isFit = first.isValid && !isUnfitToDraw(first.codePoint);
        text += QChar::fromUcs4(isFit ? first.codePoint : REPLACEMENT);
        bytes.remove_prefix(first.length);
    }
    if (starts)
        starts->push_back(static_cast<int>(text.size()));
}

/// Returns the places of the ranges in a text whose characters begin at the given places.
std::vector<RowText::Span> spansOf(const std::vector<TextRange> &ranges,
                                   const std::vector<int> &starts)
{
    const auto characters = static_cast<std::int64_t>(starts.size()) - 1;
    std::vector<RowText::Span> spans;
    for (const TextRange &range : ranges) {
        const auto from = std::clamp<std::int64_t>(range.location, 0, characters);
        const auto to = std::clamp<std::int64_t>(range.location + range.length, from, characters);
        const int start = starts[static_cast<std::size_t>(from)];
        spans.push_back({start, starts[static_cast<std::size_t>(to)] - start});
    }
    std::ranges::sort(spans, {}, &RowText::Span::start);
    std::vector<RowText::Span> joined;
    for (const RowText::Span &span : spans) {
        if (joined.empty() || span.start >= joined.back().start + joined.back().length) {
            joined.push_back(span);
            continue;
        }
        RowText::Span &last = joined.back();
        last.length = std::max(last.length, span.start + span.length - last.start);
    }
    return joined;
}

/// Puts "~" in place of the first characters of the path, which are those of a folder.
void abbreviate(RowText &row, int length)
{
    const auto moved = [length](int position) { return std::max(position - length, 0) + 1; };
    row.text.replace(0, length, QStringLiteral("~"));
    row.nameStart = moved(row.nameStart);
    std::vector<RowText::Span> matches;
    for (const RowText::Span &span : row.matches) {
        const int start = span.start < length ? 0 : moved(span.start);
        const int end = moved(span.start + span.length);
        if (matches.empty() || start >= matches.back().start + matches.back().length)
            matches.push_back({start, end - start});
        else
            matches.back().length = end - matches.back().start;
    }
    row.matches = std::move(matches);
}

} // namespace

QString displayText(std::string_view bytes)
{
    QString text;
    appendDecoded(bytes, text, nullptr);
    return text;
}

RowText rowText(const SearchBaseResult &result, std::string_view home)
{
    RowText row;
    std::vector<int> starts;
    appendDecoded(result.text(), row.text, &starts);

    // The last component of "/home/alex/" is "alex/".
    const auto lastSlash = row.text.lastIndexOf(u'/', row.text.endsWith(u'/') ? -2 : -1);
    row.nameStart = static_cast<int>(lastSlash) + 1;

    row.matches = spansOf(result.highlightRanges(), starts);
    // The home folder itself keeps its name, and so does everything when it is "/".
    if (home.size() > 1 && result.text().size() > home.size() + 1 &&
        isAtOrBelow(result.text(), home))
        abbreviate(row, static_cast<int>(displayText(home).size()));
    return row;
}

QString spokenText(const SearchBaseResult &result)
{
    const RowText row = rowText(result);
    QString place = row.text.left(row.nameStart);
    if (place.size() > 1)
        place.chop(1); // the slash
    const QString name = row.text.mid(row.nameStart);
    if (result.type() == SearchBaseResultType::inFrontFinder)
        return QCoreApplication::translate("RowText", "%1, in the front window").arg(name);
    return place.isEmpty() || name.isEmpty()
               ? row.text
               : QCoreApplication::translate("RowText", "%1, in %2").arg(name, place);
}

} // namespace quillon
