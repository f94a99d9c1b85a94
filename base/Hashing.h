#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillon {

/// Multiplies and folds, so that every bit of the result depends on every bit of the operands.
inline std::uint64_t mixed(std::uint64_t a, std::uint64_t b)
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// Returns up to eight bytes as one number.
inline std::uint64_t wordAt(const char *bytes, std::size_t count)
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, count);
    return word;
}

/// Returns a hash of the bytes that differs for a number that is hashed along with them.
inline std::uint64_t hashOf(std::string_view bytes, std::uint64_t number = 0)
{
    // The constants are fractional digits of pi, and odd.
    constexpr std::uint64_t SEED = 0x243f6a8885a308d3;
    constexpr std::uint64_t FACTOR = 0x13198a2e03707345;
    constexpr std::size_t WORD = sizeof(std::uint64_t);
    std::uint64_t hash = mixed(SEED ^ number, FACTOR ^ bytes.size());
    while (bytes.size() >= WORD) {
        hash = mixed(hash ^ wordAt(bytes.data(), WORD), FACTOR);
        bytes.remove_prefix(WORD);
    }
    return mixed(bytes.empty() ? hash : hash ^ wordAt(bytes.data(), bytes.size()), FACTOR);
}

} // namespace quillon
