#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quillon {

/// Says by which rule matches are ranked. Both rules have the same matches.
enum class MatchOrder : std::uint8_t
{
    /// Rows are ranked by where the letters lie in the whole path, see fuzzyScore().
    path,
    /// By the names that the letters begin, the own name above all, see namesFirstScore().
    names,
};

/// Returns the order that settings and commands call so; absent for any other word.
constexpr std::optional<MatchOrder> matchOrderNamed(std::string_view word)
{
    if (word == "path")
        return MatchOrder::path;
    if (word == "names")
        return MatchOrder::names;
    return std::nullopt;
}

} // namespace quillon
