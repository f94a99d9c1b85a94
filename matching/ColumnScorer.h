#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// fuzzyScore() for one query, computed byte by byte of the text instead of byte by byte of the
/// query, so that texts with a common beginning share its cost. The same operations in the same
/// order: the same doubles.
///
/// A state is 2 n doubles for a query of n bytes: for each query byte the best score with it
/// matched anywhere so far, then for each the best score with it matched at the last byte. It
/// depends on the text's bytes so far and on nothing else. Immutable; safe from every thread.
class ColumnScorer
{
public:
    using State = std::vector<double>;

    /// A query of 1 to scoring::MAX_LENGTH bytes.
    explicit ColumnScorer(std::string_view query);

    std::size_t rows() const { return rows_; }
    /// The state of the empty text.
    State initialState() const;
    /// Carries the state of a text of position bytes, the last of them previous ("/" where there
    /// is none), over the bytes that follow.
    void extend(State &state, std::size_t position, char previous, std::string_view bytes) const;
    /// The score of a text longer than the query.
    double score(const State &state) const { return state[rows_ - 1]; }

private:
    struct Rows
    {
        std::uint16_t begin = 0;
        std::uint16_t end = 0;
    };

    void extendByByte(double *best, double *ending, std::size_t position, char previous,
                      char byte) const;

    std::size_t rows_;
    /// The rows of each lower-cased byte, as a range of positions_, last row first.
    std::array<Rows, 256> rowsOf_{};
    std::vector<std::uint16_t> positions_;
    std::vector<double> gaps_;
};

} // namespace quillon
