#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace quillon {

/// Returns how many elements must be inserted, deleted or replaced to turn one text into the other.
template <typename Text>
std::size_t editDistance(const Text &one, const Text &other)
{
    std::vector<std::size_t> row(static_cast<std::size_t>(other.size()) + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const auto letter : one) {
        std::size_t diagonal = std::exchange(row[0], row[0] + 1);
        std::size_t i = 1;
        for (const auto otherLetter : other) {
            const std::size_t changed = diagonal + (letter != otherLetter ? 1 : 0);
            diagonal = std::exchange(row[i], std::min({row[i] + 1, row[i - 1] + 1, changed}));
            ++i;
        }
    }
    return row.back();
}

} // namespace quillon
