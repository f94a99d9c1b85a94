#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quillon {

/// Bytes sorted into 64 classes, so that a set of them is one word. A letter has one class for
/// both its cases, and as a capital in addition one that it shares with a few other capitals.
using ByteClassSet = std::uint64_t;

namespace byteclasses {

constexpr std::array<ByteClassSet, 256> makeTable()
{
    constexpr unsigned FIRST_DIGIT = 26;
    constexpr unsigned FIRST_SEPARATOR = 36;
    constexpr std::string_view SEPARATORS = "/ -_.";
    constexpr unsigned FIRST_CAPITAL_GROUP = 41;
    constexpr unsigned CAPITAL_GROUPS = 8;
    constexpr unsigned FIRST_OTHER_GROUP = FIRST_CAPITAL_GROUP + CAPITAL_GROUPS;
    constexpr unsigned OTHER_GROUPS = 64 - FIRST_OTHER_GROUP;
    const auto bit = [](unsigned index) { return ByteClassSet{1} << index; };

    std::array<ByteClassSet, 256> table{};
    for (unsigned c = 0; c < 256; ++c) {
        const auto separator = SEPARATORS.find(static_cast<char>(c));
        if (c >= 'a' && c <= 'z')
            table[c] = bit(c - 'a');
        else if (c >= 'A' && c <= 'Z')
            table[c] = bit(c - 'A') | bit(FIRST_CAPITAL_GROUP + (c - 'A') % CAPITAL_GROUPS);
        else if (c >= '0' && c <= '9')
            table[c] = bit(FIRST_DIGIT + (c - '0'));
        else if (separator != std::string_view::npos)
            table[c] = bit(FIRST_SEPARATOR + static_cast<unsigned>(separator));
        else
            table[c] = bit(FIRST_OTHER_GROUP + c % OTHER_GROUPS);
    }
    return table;
}

inline constexpr std::array<ByteClassSet, 256> TABLE = makeTable();

} // namespace byteclasses

/// As a byte of a query: the classes that a text must hold to match it. As a byte of a text: the
/// classes that it provides.
constexpr ByteClassSet classesOf(char byte)
{
    return byteclasses::TABLE[static_cast<unsigned char>(byte)];
}

constexpr ByteClassSet classesOf(std::string_view bytes)
{
    ByteClassSet set = 0;
    for (const char byte : bytes)
        set |= classesOf(byte);
    return set;
}

} // namespace quillon
