#include "app/panel/RowText.h"

#include "base/Utf8.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>

namespace quillon {

namespace {

constexpr char32_t REPLACEMENT = 0xfffd;

/// A name may hold anything; these would break the line or let it read other than it is.
bool isUnfitToDraw(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029 || c == 0x061C ||
           c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

/// Appends the text; starts gets where each character begins, and the end of the last one.
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

} // namespace

QString displayText(std::string_view bytes)
{
    QString text;
    appendDecoded(bytes, text, nullptr);
    return text;
}

RowText rowText(const SearchBaseResult &result)
{
    RowText row;
    std::vector<int> starts;
    appendDecoded(result.text(), row.text, &starts);

    // "/home/alex/" is called "alex/".
    const auto lastSlash = row.text.lastIndexOf(u'/', row.text.endsWith(u'/') ? -2 : -1);
    row.nameStart = static_cast<int>(lastSlash) + 1;

    const auto characters = static_cast<std::int64_t>(starts.size()) - 1;
    for (const TextRange &range : result.highlightRanges()) {
        const auto from = std::clamp<std::int64_t>(range.location, 0, characters);
        const auto to = std::clamp<std::int64_t>(range.location + range.length, from, characters);
        const int start = starts[static_cast<std::size_t>(from)];
        row.matches.push_back({start, starts[static_cast<std::size_t>(to)] - start});
    }
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
