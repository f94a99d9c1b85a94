#include "matching/ColumnScorer.h"

#include "base/Require.h"
#include "matching/FuzzyScore.h"

#include <algorithm>

namespace quillon {

using namespace scoring;

ColumnScorer::ColumnScorer(std::string_view query)
    : rows_(query.size()), gaps_(query.size(), GAP_INNER)
{
    require(rows_ >= 1 && rows_ <= MAX_LENGTH, "a scored query has 1 to 1024 bytes");
    gaps_.back() = GAP_TRAILING;
    for (std::size_t byte = 0; byte < rowsOf_.size(); ++byte) {
        const char wanted = lower(static_cast<char>(byte));
        Rows &rows = rowsOf_[byte];
        rows.begin = static_cast<std::uint16_t>(positions_.size());
        if (wanted == static_cast<char>(byte)) {
            for (std::size_t i = rows_; i-- > 0;) {
                if (lower(query[i]) == wanted)
                    positions_.push_back(static_cast<std::uint16_t>(i));
            }
        }
        rows.end = static_cast<std::uint16_t>(positions_.size());
    }
    for (char capital = 'A'; capital <= 'Z'; ++capital)
        rowsOf_[static_cast<unsigned char>(capital)] =
            rowsOf_[static_cast<unsigned char>(lower(capital))];
}

ColumnScorer::State ColumnScorer::initialState() const
{
    return State(2 * rows_, SCORE_MIN);
}

void ColumnScorer::extend(State &state, std::size_t position, char previous,
                          std::string_view bytes) const
{
    double *best = state.data();
    double *ending = best + rows_;
    for (const char byte : bytes) {
        extendByByte(best, ending, position, previous, byte);
        previous = byte;
        ++position;
    }
}

void ColumnScorer::extendByByte(double *best, double *ending, std::size_t position, char previous,
                                char byte) const
{
    const Rows matched = rowsOf_[static_cast<unsigned char>(byte)];
    const Rows matchedBefore = rowsOf_[static_cast<unsigned char>(previous)];
    const double earned = matched.begin == matched.end ? 0 : bonus(byte, previous);
    // The last row comes first, because each row reads the value that the row above had before this
    // byte.
    for (std::size_t r = matched.begin; r < matched.end; ++r) {
        const std::size_t i = positions_[r];
        ending[i] = i == 0 ? static_cast<double>(position) * GAP_LEADING + earned
                           : std::max(best[i - 1] + earned, ending[i - 1] + MATCH_CONSECUTIVE);
    }
    if (matched.begin != matchedBefore.begin || matched.end != matchedBefore.end) {
        for (std::size_t r = matchedBefore.begin; r < matchedBefore.end; ++r)
            ending[positions_[r]] = SCORE_MIN;
    }
    for (std::size_t i = 0; i < rows_; ++i)
        best[i] += gaps_[i];
    for (std::size_t r = matched.begin; r < matched.end; ++r)
        best[positions_[r]] = std::max(ending[positions_[r]], best[positions_[r]]);
}

} // namespace quillon
