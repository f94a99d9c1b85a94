#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

/// One character of text that may hold anything: a Unicode code point, or a byte that belongs to
/// none.
struct Utf8Character
{
    /// Not to be read when the character is not valid.
    char32_t codePoint = 0;
    /// 1 to 4; 1 when not valid.
    std::size_t length = 1;
    bool isValid = false;
};

/// The first character of bytes, which are not empty. Overlong forms, surrogates and what lies
/// beyond the last code point are not valid.
Utf8Character firstUtf8Character(std::string_view bytes);
/// The bytes as text, with U+FFFD in place of each byte that is not valid.
std::string replacingInvalidUtf8(std::string_view bytes);

} // namespace quillon
