#pragma once

#include "matching/ByteClasses.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quillon {

/// Eight numbers of 16 bits that are worked on at once, one for each of eight query bytes.
namespace lanes {

using Vector __attribute__((vector_size(16))) = std::int16_t;
inline constexpr std::size_t COUNT = sizeof(Vector) / sizeof(std::int16_t);

inline Vector all(std::int16_t value)
{
    return Vector{} + value;
}

inline Vector greater(Vector a, Vector b)
{
    return a > b ? a : b;
}

/// Gives every lane the value of the lane below it, and the first lane the last one of below.
inline Vector shiftUp(Vector lanes, Vector below)
{
#ifdef __SSE2__
    // From the shuffle below GCC 12 would make eight moves of single lanes, which takes a long
    // query a seventh more time.
    return reinterpret_cast<Vector>(_mm_slli_si128(reinterpret_cast<__m128i>(lanes), 2)) |
           reinterpret_cast<Vector>(_mm_srli_si128(reinterpret_cast<__m128i>(below), 14));
#else
    return __builtin_shufflevector(below, lanes, 7, 8, 9, 10, 11, 12, 13, 14);
#endif
}

/// Gives every lane the value of the lane above it, and the last lane the first one of above.
inline Vector shiftDown(Vector lanes, Vector above)
{
#ifdef __SSE2__
    return reinterpret_cast<Vector>(_mm_srli_si128(reinterpret_cast<__m128i>(lanes), 2)) |
           reinterpret_cast<Vector>(_mm_slli_si128(reinterpret_cast<__m128i>(above), 14));
#else
    return __builtin_shufflevector(lanes, above, 1, 2, 3, 4, 5, 6, 7, 8);
#endif
}

/// Takes the lane of a where the mask has all ones, and that of b where it has none.
inline Vector select(Vector mask, Vector a, Vector b)
{
    return (mask & a) | (~mask & b);
}

inline int highest(Vector lanes)
{
    lanes = greater(lanes, __builtin_shufflevector(lanes, lanes, 4, 5, 6, 7, 0, 1, 2, 3));
    lanes = greater(lanes, __builtin_shufflevector(lanes, lanes, 2, 3, 0, 1, 6, 7, 4, 5));
    return std::max(lanes[0], lanes[1]);
}

} // namespace lanes

/// The highest scores, or ranks, that a node's own text and the texts below it can have.
struct Bounds
{
    int text = 0;
    int below = 0;
};

/// Knows what the scorers in whole numbers ask of a query at each byte of a text. The query is one
/// word, or several that are looked for at the same time, each for itself; a word holds any bytes.
/// Each byte of the words, of which there are 1 to 32, is a row. Immutable; safe from every thread.
class ShortQuery
{
public:
    /// A longer query would need more vectors than such a scorer is worth.
    static constexpr std::size_t LONGEST = 32;

    static constexpr std::size_t MOST_VECTORS = LONGEST / lanes::COUNT;
    /// Holds one number for each query byte.
    using Vectors = std::array<lanes::Vector, MOST_VECTORS>;

    /// Describes one byte of a word. A capital is taken for its small letter.
    struct Row
    {
        bool isFirst = false;
        bool isLast = false;
        /// The classes that a text must hold to match the word from this byte on.
        ByteClassSet needed = 0;
        /// The classes of the pairs of this byte with the byte of the word before it, if there is
        /// one, and with a slash, and its wordStart().
        unsigned behindPrevious = 0;
        unsigned behindSlash = 0;
        unsigned startsWord = 0;
        /// The pairs of any byte with the other separators, and those of such a separator with the
        /// query byte before it.
        BytePairSet behindAnySeparator;
        BytePairSet separatorBehindPrevious;
        /// Only letters and digits earn a bonus at the start of a name or word.
        bool earnsBonus = false;
        bool isSlash = false;
        /// This byte or one behind it is a slash.
        bool isSlashBehind = false;

        /// Return whether the pairs have this byte behind the one before it, at the start of a
        /// name, and at the start of a word.
        bool mayFollow(const BytePairSet &pairs) const
        {
            return !isFirst && pairs.has(behindPrevious);
        }
        bool mayStartName(const BytePairSet &pairs) const
        {
            return earnsBonus && pairs.has(behindSlash);
        }
        bool mayStartWord(const BytePairSet &pairs) const
        {
            return earnsBonus && pairs.has(startsWord);
        }
    };

    /// Adds up the most that the bytes of a word earn behind another, from the last one on.
    class Earnings
    {
    public:
        /// No more of the bytes than there are levels are first in a name, and those earn
        /// startOfName. The first byte of a word within a name earns startOfWord, which is less.
        Earnings(unsigned levels, int startOfName, int startOfWord)
            : levels_(levels), startOfName_(startOfName), startOfWord_(startOfWord)
        {}

        /// Adds a byte that earns so much where it is not first in a name.
        void add(int otherwise, bool mayStartName)
        {
            if (mayStartName && otherwise < startOfName_ && levels_ > 0) {
                --levels_;
                words_ += otherwise == startOfWord_ ? 1U : 0U;
                sum_ += startOfName_;
            } else if (mayStartName && otherwise < startOfWord_ && words_ > 0) {
                // A byte that is first in a word gives its level to this one, which gains more.
                --words_;
                sum_ += startOfWord_;
            } else {
                sum_ += otherwise;
            }
        }
        int sum() const { return sum_; }

    private:
        unsigned levels_;
        int startOfName_;
        int startOfWord_;
        unsigned words_ = 0;
        int sum_ = 0;
    };

    /// The separators of words; a slash separates names.
    static constexpr std::string_view WORD_SEPARATORS = " -_.";

    explicit ShortQuery(const std::vector<std::string_view> &words);

    std::size_t rows() const { return rows_; }
    bool isOneWord() const { return words_ == 1; }
    /// Returns the number of vectors that the rows take, a power of two.
    std::size_t vectors() const { return vectors_; }
    /// Calls the function with the number of vectors as a constant, which keeps them in registers.
    template <typename Function>
    auto withVectors(const Function &function) const
    {
        if (vectors_ == 1)
            return function.template operator()<1>();
        if (vectors_ == 2)
            return function.template operator()<2>();
        return function.template operator()<MOST_VECTORS>();
    }
    const Row &row(std::size_t i) const { return queryRows_[i]; }
    /// Returns vectors with all ones in the lanes of the first bytes of words, and of the last.
    const Vectors &firstRows() const { return firstRows_; }
    const Vectors &lastRows() const { return lastRows_; }
    bool holds(char byte) const { return maskOf_[static_cast<unsigned char>(byte)] != 0; }
    /// Returns vectors with all ones in the lanes of the query bytes that a text's byte matches.
    const lanes::Vector *matchedBy(char byte) const
    {
        return masks_[maskOf_[static_cast<unsigned char>(byte)]].data();
    }

    /// Returns the sum of the highest number of each word, of so many vectors.
    template <std::size_t COUNT>
    int sumOfHighest(const Vectors &vectors) const
    {
        if (words_ > 1)
            return sumOfHighest(vectors);
        lanes::Vector highest = vectors[0];
        for (std::size_t v = 1; v < COUNT; ++v)
            highest = lanes::greater(highest, vectors[v]);
        return lanes::highest(highest);
    }

    /// Returns a bit for each word whose first row has a higher number than the limit.
    std::size_t wordsAbove(int limit, const lanes::Vector *vectors) const
    {
        std::size_t words = 0;
        for (std::size_t word = 0; word < words_; ++word) {
            const std::size_t row = firstRowOf_[word];
            const bool isAbove = vectors[row / lanes::COUNT][row % lanes::COUNT] > limit;
            words |= (isAbove ? std::size_t{1} : 0) << word;
        }
        return words;
    }

    /// Returns the number of row i.
    static int at(const Vectors &vectors, std::size_t i)
    {
        return vectors[i / lanes::COUNT][i % lanes::COUNT];
    }

private:
    void addWord(std::string_view word);
    int sumOfHighest(const Vectors &vectors) const;

    std::size_t rows_ = 0;
    std::size_t vectors_ = 0;
    std::size_t words_ = 0;
    /// Gives each byte its entry of masks_, which is 0 for a byte that the query does not hold.
    std::array<std::uint8_t, 256> maskOf_{};
    std::vector<Vectors> masks_;
    std::array<Row, LONGEST> queryRows_{};
    std::array<std::uint8_t, LONGEST> firstRowOf_{};
    Vectors firstRows_{};
    Vectors lastRows_{};
};

} // namespace quillon
