#include "matching/Highlights.h"

#include <QChar>

#include <algorithm>
#include <cstdint>
#include <string>

namespace quillon {

namespace {

/// Invalid bytes lie behind the last code point, so that each equals only itself.
constexpr char32_t FIRST_INVALID_BYTE = 0x110000;

/// Length of the well-formed UTF-8 sequence at the beginning of bytes, or 0.
std::size_t sequenceLength(std::string_view bytes)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char first = byte(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xc2 ? 0
                               : first < 0xe0 ? 2
                               : first < 0xf0 ? 3
                               : first < 0xf5 ? 4
                                              : 0;
    if (length == 0 || length > bytes.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80)
            return 0;
    }
    // Overlong forms, surrogates and what lies beyond the last code point.
    const bool isBad =
        length > 1 && ((first == 0xe0 && byte(1) < 0xa0) || (first == 0xed && byte(1) > 0x9f) ||
                       (first == 0xf0 && byte(1) < 0x90) || (first == 0xf4 && byte(1) > 0x8f));
    return isBad ? 0 : length;
}

/// The characters of a text in lower case, an invalid byte being one.
std::u32string lowerCharacters(std::string_view text)
{
    std::u32string characters;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        const auto first = static_cast<unsigned char>(text.front());
        if (length == 0) {
            characters += FIRST_INVALID_BYTE + first;
            text.remove_prefix(1);
            continue;
        }
        constexpr unsigned char PAYLOAD[] = {0, 0x7f, 0x1f, 0x0f, 0x07};
        char32_t character = first & PAYLOAD[length];
        for (std::size_t i = 1; i < length; ++i)
            character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3f);
        characters += QChar::toLower(character);
        text.remove_prefix(length);
    }
    return characters;
}

/// Length of the longest run at the beginning of text that occurs in the query.
std::size_t longestRun(std::u32string_view query, std::u32string_view text)
{
    std::size_t length = 0;
    while (length < text.size() &&
           query.find(text.substr(0, length + 1)) != std::u32string_view::npos)
        ++length;
    return length;
}

} // namespace

std::vector<TextRange> highlightRanges(std::string_view query, std::string_view text)
{
    struct Run
    {
        std::size_t location;
        std::size_t length;
    };
    const std::u32string wanted = lowerCharacters(query);
    const std::u32string characters = lowerCharacters(text);
    std::vector<Run> runs;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const std::size_t length = longestRun(wanted, std::u32string_view(characters).substr(i));
        if (length >= 2)
            runs.push_back({i, length});
    }
    std::ranges::sort(runs, [](const Run &a, const Run &b) {
        return a.length != b.length ? a.length > b.length : a.location > b.location;
    });

    const auto textOf = [&](const Run &run) {
        return std::u32string_view(characters).substr(run.location, run.length);
    };
    std::vector<Run> kept;
    for (const Run &run : runs) {
        const bool isTaken = std::ranges::any_of(kept, [&](const Run &other) {
            return (run.location < other.location + other.length &&
                    other.location < run.location + run.length) ||
                   textOf(run) == textOf(other);
        });
        if (!isTaken)
            kept.push_back(run);
    }
    std::vector<TextRange> ranges;
    for (const Run &run : kept)
        ranges.push_back(
            {static_cast<std::int64_t>(run.location), static_cast<std::int64_t>(run.length)});
    return ranges;
}

} // namespace quillon
