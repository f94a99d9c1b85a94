#include "app/RowText.h"

#include <algorithm>
#include <cstdint>

namespace quillon {

namespace {

struct Decoded
{
    char32_t character = 0;
    std::size_t bytes = 1;
};

constexpr char32_t REPLACEMENT = 0xFFFD;

/// The first character of the bytes, which are not empty; a byte that begins none is the
/// replacement mark.
Decoded decodeFirst(std::string_view bytes)
{
    const auto byte = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length)
        return {REPLACEMENT, 1};
    char32_t character = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {REPLACEMENT, 1};
        character = (character << 6) | (byte(i) & 0x3FU);
    }
    constexpr char32_t SMALLEST[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < SMALLEST[length] || isSurrogate || character > 0x10FFFF)
        return {REPLACEMENT, 1};
    return {character, length};
}

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
        const Decoded first = decodeFirst(bytes);
        text += QChar::fromUcs4(isUnfitToDraw(first.character) ? REPLACEMENT : first.character);
        bytes.remove_prefix(first.bytes);
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

} // namespace quillon
