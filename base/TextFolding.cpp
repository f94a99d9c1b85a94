#include "base/TextFolding.h"

#include "base/Utf8.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <memory>

namespace quillon {

namespace {

constexpr char32_t FIRST_BEYOND_ASCII = 0x80;

bool isAscii(std::string_view text)
{
    return std::ranges::all_of(
        text, [](char byte) { return static_cast<unsigned char>(byte) < FIRST_BEYOND_ASCII; });
}

void append(std::string &text, gunichar letter)
{
    std::array<char, 6> bytes{};
    const int length = g_unichar_to_utf8(letter, bytes.data());
    text.append(bytes.data(), static_cast<std::size_t>(length));
}

/// Appends a letter that has no accent any more. Latin letters such as "ł" and "ß" become the ASCII
/// letters that people type for them, where GLib knows some.
void appendPlain(std::string &text, gunichar letter)
{
    if (letter < FIRST_BEYOND_ASCII) {
        text += static_cast<char>(letter);
        return;
    }
    const gunichar small = g_unichar_tolower(letter);
    std::string alone;
    append(alone, small);
    if (g_unichar_get_script(small) == G_UNICODE_SCRIPT_LATIN) {
        const std::unique_ptr<char, decltype(&g_free)> ascii(g_str_to_ascii(alone.c_str(), "C"),
                                                             &g_free);
        // A question mark stands for a letter that has no such form.
        if (std::string_view(ascii.get()).find('?') == std::string_view::npos)
            alone = ascii.get();
    }
    text += alone;
}

/// Returns the folded character, in at most as many bytes as it has. Empty for an accent alone. No
/// character becomes one that separates names or words.
std::string fold(char32_t codePoint, std::string_view bytes)
{
    std::array<gunichar, G_UNICHAR_MAX_DECOMPOSITION_LENGTH> parts{};
    const gsize count = g_unichar_fully_decompose(codePoint, TRUE, parts.data(), parts.size());
    std::string letters;
    for (gsize i = 0; i < count; ++i)
        if (g_unichar_combining_class(parts[i]) == 0)
            appendPlain(letters, parts[i]);
    const bool fits = letters.size() <= bytes.size() && letters.find_first_of("/ ") == letters.npos;
    return fits ? letters : std::string(bytes);
}

/// Does the same. The names of a disk share few characters, and folding one takes as long as
/// inserting a name, so each thread remembers those it has folded.
std::string_view folded(char32_t codePoint, std::string_view bytes)
{
    constexpr std::size_t ROOM = 1024;
    struct Known
    {
        char32_t codePoint = 0;
        std::string letters;
    };
    thread_local std::vector<Known> known(ROOM);
    Known &place = known[codePoint % ROOM];
    if (place.codePoint != codePoint)
        place = {codePoint, fold(codePoint, bytes)};
    return place.letters;
}

/// Calls the receiver with each character's bytes and with what they become.
template <typename Receive>
void forEachFolded(std::string_view text, const Receive &receive)
{
    while (!text.empty()) {
        const Utf8Character character = firstUtf8Character(text);
        const std::string_view bytes = text.substr(0, character.length);
        text.remove_prefix(character.length);
        if (character.isValid && character.codePoint >= FIRST_BEYOND_ASCII)
            receive(bytes, folded(character.codePoint, bytes));
        else
            receive(bytes, bytes);
    }
}

} // namespace

std::optional<std::string> foldedText(std::string_view text)
{
    if (isAscii(text))
        return std::nullopt;
    std::string result;
    result.reserve(text.size());
    forEachFolded(text, [&result](std::string_view bytes, std::string_view letters) {
        result += letters;
        result.append(bytes.size() - letters.size(), '\0');
    });
    return result == text ? std::nullopt : std::optional(std::move(result));
}

std::vector<std::string> foldedWords(std::string_view query)
{
    std::vector<std::string> words;
    bool isInWord = false;
    forEachFolded(query, [&](std::string_view bytes, std::string_view letters) {
        if (bytes == "/" || isBlank(firstUtf8Character(bytes))) {
            isInWord = false;
            return;
        }
        if (!isInWord)
            words.emplace_back();
        isInWord = true;
        std::ranges::transform(letters, std::back_inserter(words.back()), g_ascii_tolower);
    });
    std::erase(words, "");
    return words;
}

} // namespace quillon
