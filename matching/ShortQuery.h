#pragma once

#include "matching/ByteClasses.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

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
    return __builtin_shufflevector(below, lanes, 7, 8, 9, 10, 11, 12, 13, 14);
}

/// Gives every lane the value of the lane above it, and the last lane the first one of above.
inline Vector shiftDown(Vector lanes, Vector above)
{
    return __builtin_shufflevector(lanes, above, 1, 2, 3, 4, 5, 6, 7, 8);
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

/// Knows of a query of 1 to 32 bytes what the scorers in whole numbers ask of it at each byte of a
/// text. Immutable; safe from every thread.
class ShortQuery
{
public:
    /// A longer query would need more vectors than such a scorer is worth.
    static constexpr std::size_t LONGEST = 32;

    static constexpr std::size_t MOST_VECTORS = LONGEST / lanes::COUNT;
    /// Holds one number for each query byte.
    using Vectors = std::array<lanes::Vector, MOST_VECTORS>;

    /// Describes one query byte. A capital is taken for its small letter.
    struct Row
    {
        /// The classes that a text must hold to match the query from this byte on.
        ByteClassSet needed = 0;
        /// The pairs of this byte with the query byte before it and with a slash, and its
        /// wordStart(). The last two are empty for bytes that earn no bonus.
        BytePairSet behindPrevious = 0;
        BytePairSet behindSlash = 0;
        BytePairSet startsWord = 0;
        /// The pairs of any byte with the other separators, and those of such a separator with the
        /// query byte before it.
        BytePairSet behindAnySeparator = 0;
        BytePairSet separatorBehindPrevious = 0;
        bool isSlash = false;
        /// This byte or one behind it is a slash.
        bool isSlashBehind = false;
    };

    /// The separators of words; a slash separates names.
    static constexpr std::string_view WORD_SEPARATORS = " -_.";

    explicit ShortQuery(std::string_view query);

    std::size_t rows() const { return rows_; }
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
    bool holds(char byte) const { return maskOf_[static_cast<unsigned char>(byte)] != 0; }
    /// Returns vectors with all ones in the lanes of the query bytes that a text's byte matches.
    const lanes::Vector *matchedBy(char byte) const
    {
        return masks_[maskOf_[static_cast<unsigned char>(byte)]].data();
    }

    /// Returns the number of row i.
    static int at(const Vectors &vectors, std::size_t i)
    {
        return vectors[i / lanes::COUNT][i % lanes::COUNT];
    }

private:
    std::size_t rows_;
    std::size_t vectors_;
    /// Gives each byte its entry of masks_, which is 0 for a byte that the query does not hold.
    std::array<std::uint8_t, 256> maskOf_{};
    std::vector<Vectors> masks_;
    std::array<Row, LONGEST> queryRows_{};
};

} // namespace quillon
