#include "base/Utf8.h"

#include <QChar>

namespace quillon {

Utf8Character firstUtf8Character(std::string_view bytes)
{
    const auto byte = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return {.codePoint = lead, .length = 1, .isValid = true};
    const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || bytes.size() < length)
        return {};
    char32_t codePoint = lead & (0xffU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80)
            return {};
        codePoint = codePoint << 6 | (byte(i) & 0x3fU);
    }
    constexpr char32_t SMALLEST[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = codePoint >= 0xd800 && codePoint <= 0xdfff;
    if (codePoint < SMALLEST[length] || isSurrogate || codePoint > 0x10ffff)
        return {};
    return {.codePoint = codePoint, .length = length, .isValid = true};
}

std::size_t utf8CharacterCount(std::string_view bytes)
{
    std::size_t count = 0;
    for (; !bytes.empty(); ++count)
        bytes.remove_prefix(firstUtf8Character(bytes).length);
    return count;
}

bool isBlank(const Utf8Character &character)
{
    return character.isValid && (character.codePoint == U'\t' ||
                                 QChar::category(character.codePoint) == QChar::Separator_Space);
}

std::string replacingInvalidUtf8(std::string_view bytes)
{
    constexpr std::string_view REPLACEMENT = "\xef\xbf\xbd";
    std::string text;
    while (!bytes.empty()) {
        const Utf8Character first = firstUtf8Character(bytes);
        text += first.isValid ? bytes.substr(0, first.length) : REPLACEMENT;
        bytes.remove_prefix(first.length);
    }
    return text;
}

} // namespace quillon
