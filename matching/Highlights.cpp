#include "matching/Highlights.h"

#include "base/TextFolding.h"
#include "base/Utf8.h"
#include "matching/NamesFirstScore.h"

#include <QChar>

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>

namespace quillon {

namespace {

/// Invalid bytes are numbered from behind the last code point, so that each equals only itself.
constexpr char32_t FIRST_INVALID_BYTE = 0x110000;

/// The characters of a text in lower case. An invalid byte counts as one character.
std::u32string lowerCharacters(std::string_view text)
{
    std::u32string characters;
    while (!text.empty()) {
        const Utf8Character character = firstUtf8Character(text);
        characters += character.isValid
                          ? QChar::toLower(character.codePoint)
                          : FIRST_INVALID_BYTE + static_cast<unsigned char>(text.front());
        text.remove_prefix(character.length);
    }
    return characters;
}

/// For each character of the text, the length of the longest run that begins there and occurs in
/// the query. The time is proportional to the product of both lengths.
std::vector<std::size_t> longestRuns(std::u32string_view query, std::u32string_view text)
{
    std::vector<std::size_t> longest(text.size());
    // Element k is the length of what the text from i on and the query from k on have in common.
    std::vector<std::size_t> common(query.size() + 1);
    for (std::size_t i = text.size(); i-- > 0;) {
        for (std::size_t k = 0; k < query.size(); ++k) {
            common[k] = text[i] == query[k] ? common[k + 1] + 1 : 0;
            longest[i] = std::max(longest[i], common[k]);
        }
    }
    return longest;
}

/// Returns the ranges of the characters that the bytes at these places, ascending, belong to.
std::vector<TextRange> charactersAt(const std::vector<std::size_t> &places, std::string_view text)
{
    std::vector<TextRange> ranges;
    auto place = places.begin();
    std::size_t byte = 0;
    for (std::int64_t character = 0; place != places.end(); ++character) {
        const std::size_t end = byte + firstUtf8Character(text.substr(byte)).length;
        const auto next =
            std::find_if(place, places.end(), [end](std::size_t at) { return at >= end; });
        if (next != place) {
            if (!ranges.empty() && ranges.back().location + ranges.back().length == character)
                ++ranges.back().length;
            else
                ranges.push_back({character, 1});
        }
        place = next;
        byte = end;
    }
    return ranges;
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
    const std::vector<std::size_t> longest = longestRuns(wanted, characters);
    std::vector<Run> runs;
    for (std::size_t i = 0; i < longest.size(); ++i) {
        if (longest[i] >= 2)
            runs.push_back({i, longest[i]});
    }
    std::ranges::sort(runs, [](const Run &a, const Run &b) {
        return a.length != b.length ? a.length > b.length : a.location > b.location;
    });

    const auto textOf = [&](const Run &run) {
        return std::u32string_view(characters).substr(run.location, run.length);
    };
    std::vector<Run> kept;
    for (const Run &run : runs) {
        const bool isMarkedAlready = std::ranges::any_of(kept, [&](const Run &other) {
            const bool isInside = run.location >= other.location &&
                                  run.location + run.length <= other.location + other.length;
            return isInside || textOf(run) == textOf(other);
        });
        if (!isMarkedAlready)
            kept.push_back(run);
    }
    std::vector<TextRange> ranges;
    ranges.reserve(kept.size());
    for (const Run &run : kept)
        ranges.push_back(
            {static_cast<std::int64_t>(run.location), static_cast<std::int64_t>(run.length)});
    return ranges;
}

std::vector<TextRange> namesFirstRanges(std::string_view query, std::string_view text)
{
    return charactersAt(namesFirstMatch(query, text), text);
}

std::vector<TextRange> wordRanges(const std::vector<std::string> &words, std::string_view text)
{
    // A letter of the folded text stands inside the bytes of its character.
    const std::string folded = foldedText(text).value_or(std::string(text));
    std::set<std::size_t> places;
    for (const std::string &word : words)
        for (const std::size_t place : namesFirstMatch(word, folded))
            places.insert(place);
    return charactersAt({places.begin(), places.end()}, text);
}

} // namespace quillon
