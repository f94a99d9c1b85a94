#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace quillon {

/// Bytes sorted into 57 classes, so that a set of them is one word. A letter has one class for
/// both its cases, and as a capital in addition one that it shares with a few other capitals. The
/// other seven classes say of a set what short names it stands for, see shortNameClass().
using ByteClassSet = std::uint64_t;

namespace byteclasses {

inline constexpr unsigned FIRST_DIGIT = 26;
inline constexpr unsigned FIRST_SEPARATOR = 36;
inline constexpr std::string_view SEPARATORS = "/ -_.";
inline constexpr unsigned FIRST_CAPITAL_GROUP = 41;
inline constexpr unsigned CAPITAL_GROUPS = 8;
inline constexpr unsigned FIRST_OTHER_GROUP = FIRST_CAPITAL_GROUP + CAPITAL_GROUPS;
inline constexpr unsigned FIRST_LEVEL = 54;
inline constexpr unsigned OTHER_GROUPS = FIRST_LEVEL - FIRST_OTHER_GROUP;
inline constexpr unsigned FIRST_SHORT_NAME = 57;
inline constexpr unsigned LEVELS = FIRST_SHORT_NAME - FIRST_LEVEL;
inline constexpr unsigned SHORT_NAMES = 64 - FIRST_SHORT_NAME;

constexpr std::array<ByteClassSet, 256> makeTable()
{
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

/// Stands for more levels of folders than are counted.
inline constexpr unsigned UNCOUNTED_LEVELS = std::numeric_limits<unsigned>::max();

/// Returns, for a byte of a query, the classes that a text must hold to match it; for a byte of a
/// text, the classes that it provides.
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

/// Returns the class of a name of up to 7 bytes, one class for each length and one for 0 and 1; the
/// empty set for longer names.
constexpr ByteClassSet shortNameClass(std::size_t length)
{
    using namespace byteclasses;
    const std::size_t index = length == 0 ? 0 : length - 1;
    return index < SHORT_NAMES ? ByteClassSet{1} << (FIRST_SHORT_NAME + index) : 0;
}

/// Returns a length in bytes that no name is below of which the set has the class of its length.
constexpr int leastNameLength(ByteClassSet set)
{
    using namespace byteclasses;
    const auto classes = set >> FIRST_SHORT_NAME;
    if (classes == 0)
        return static_cast<int>(SHORT_NAMES) + 1;
    const int index = std::countr_zero(classes);
    return index == 0 ? 0 : index + 1;
}

/// Returns the classes of as many levels, one of which is the slash: a text with so many slashes
/// behind a node needs them.
constexpr ByteClassSet levelClasses(unsigned levels)
{
    using namespace byteclasses;
    if (levels == 0)
        return 0;
    const unsigned counted = std::min(levels - 1, LEVELS);
    return classesOf('/') | ((ByteClassSet{1} << counted) - 1) << FIRST_LEVEL;
}

/// Returns the most levels that are below a node of which the set is known.
constexpr unsigned mostLevels(ByteClassSet set)
{
    using namespace byteclasses;
    if ((set & classesOf('/')) == 0)
        return 0;
    const auto counted =
        static_cast<unsigned>(std::countr_one(set >> FIRST_LEVEL & ((1U << LEVELS) - 1)));
    return counted == LEVELS ? UNCOUNTED_LEVELS : counted + 1;
}

/// Is a set of pairs of neighbouring bytes, which are sorted into classes, whatever the case of
/// letters.
class BytePairSet
{
public:
    static constexpr unsigned CLASSES = 128;

    constexpr void add(unsigned pairClass)
    {
        words_[pairClass / WORD_BITS] |= std::uint64_t{1} << (pairClass % WORD_BITS);
    }
    constexpr bool has(unsigned pairClass) const
    {
        return (words_[pairClass / WORD_BITS] >> (pairClass % WORD_BITS) & 1) != 0;
    }
    constexpr bool hasAll(const BytePairSet &other) const
    {
        std::uint64_t missing = 0;
        for (std::size_t i = 0; i < words_.size(); ++i)
            missing |= other.words_[i] & ~words_[i];
        return missing == 0;
    }
    constexpr bool hasAny(const BytePairSet &other) const
    {
        std::uint64_t common = 0;
        for (std::size_t i = 0; i < words_.size(); ++i)
            common |= other.words_[i] & words_[i];
        return common != 0;
    }
    constexpr BytePairSet &operator|=(const BytePairSet &other)
    {
        for (std::size_t i = 0; i < words_.size(); ++i)
            words_[i] |= other.words_[i];
        return *this;
    }
    constexpr bool operator==(const BytePairSet &) const = default;

private:
    static constexpr unsigned WORD_BITS = 64;

    std::array<std::uint64_t, CLASSES / WORD_BITS> words_{};
};

namespace bytepairs {

/// The class of a pair is taken from the top of the product of a factor and the number whose digits
/// are the two bytes. The product is a sum, and these are its parts for each first and second byte.
struct Parts
{
    std::array<std::uint32_t, 256> first{};
    std::array<std::uint32_t, 256> second{};
};

constexpr Parts makeParts()
{
    // Fibonacci hashing: the factor is 2^32 divided by the golden ratio.
    constexpr std::uint32_t FACTOR = 0x9e3779b1;
    Parts parts;
    for (unsigned c = 0; c < 256; ++c) {
        const std::uint32_t lowered = c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
        parts.first[c] = (lowered << 8) * FACTOR;
        parts.second[c] = lowered * FACTOR;
    }
    return parts;
}

inline constexpr Parts PARTS = makeParts();

} // namespace bytepairs

/// Returns the class of a pair of bytes.
constexpr unsigned pairOf(char first, char second)
{
    const std::uint32_t sum = bytepairs::PARTS.first[static_cast<unsigned char>(first)] +
                              bytepairs::PARTS.second[static_cast<unsigned char>(second)];
    return static_cast<unsigned>(std::uint64_t{sum} * BytePairSet::CLASSES >> 32);
}

/// Returns the class that stands for a word inside a component which begins with the byte.
constexpr unsigned wordStart(char byte)
{
    constexpr char MARK = '\x7f'; // Hardly any name holds it.
    return pairOf(MARK, byte);
}

/// Returns the pairs of a path component with the slash before it, and the starts of its words. A
/// word begins behind " ", "-", "_" or ".", and with a capital behind a small letter.
constexpr BytePairSet pairsOf(std::string_view name)
{
    BytePairSet set;
    char before = '/';
    for (const char byte : name) {
        set.add(pairOf(before, byte));
        const bool isBehindSmall = before >= 'a' && before <= 'z';
        const bool isBehindSeparator =
            before == ' ' || before == '-' || before == '_' || before == '.';
        if (isBehindSeparator || (isBehindSmall && byte >= 'A' && byte <= 'Z'))
            set.add(wordStart(byte));
        before = byte;
    }
    return set;
}

} // namespace quillon
