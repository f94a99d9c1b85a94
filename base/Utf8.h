#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

/// One character of a text that may hold any bytes: a Unicode code point, or a byte that is not
/// part of one.
struct Utf8Character
{
    /// The code point has no meaning when the character is not valid.
    char32_t codePoint = 0;
    /// The length is 1 to 4 bytes, and 1 for a character that is not valid.
    std::size_t length = 1;
    bool isValid = false;
};

/// Returns the first character of some bytes, which are not empty. Overlong forms, surrogates and
/// numbers beyond the last code point are not valid.
Utf8Character firstUtf8Character(std::string_view bytes);
/// Returns the number of characters, which counts each byte that is not valid.
std::size_t utf8CharacterCount(std::string_view bytes);
/// Returns true for a tab and for the characters that Unicode calls space separators.
bool isBlank(const Utf8Character &character);
/// Returns the bytes as text, with U+FFFD in place of each byte that is not valid.
std::string replacingInvalidUtf8(std::string_view bytes);

} // namespace quillon
