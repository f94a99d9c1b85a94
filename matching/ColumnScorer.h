#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// Computes fuzzyScore() for one query, byte by byte of the text instead of byte by byte of the
/// query, so that texts with a common beginning share the cost of that beginning. The operations
/// and their order are those of the plain rule, and so are the doubles.
///
/// A state has 2 n doubles for a query of n bytes: for each query byte the best score with that
/// byte matched anywhere so far, then for each query byte the best score with that byte matched by
/// the last byte of the text. It depends on the text's bytes so far and on nothing else. Immutable;
/// safe from every thread.
class ColumnScorer
{
public:
    using State = std::vector<double>;

    /// The query has 1 to scoring::MAX_LENGTH bytes.
    explicit ColumnScorer(std::string_view query);

    /// Returns the state of the empty text.
    State initialState() const;
    /// Carries a state over a name. It is that of the beginning up to the slash before the name,
    /// which has position bytes.
    void extendByName(State &state, std::size_t position, std::string_view name) const
    {
        extend(state, position, '/', name);
    }
    /// Does the same for the name and the slash behind it.
    void enterName(State &state, std::size_t position, std::string_view name) const
    {
        extend(state, position, '/', name);
        extend(state, position + name.size(), name.empty() ? '/' : name.back(), "/");
    }
    /// Returns the score of a text that is longer than the query.
    double score(const State &state) const { return state[rows_ - 1]; }

private:
    struct Rows
    {
        std::uint16_t begin = 0;
        std::uint16_t end = 0;
    };

    void extend(State &state, std::size_t position, char previous, std::string_view bytes) const;
    void extendByByte(double *best, double *ending, std::size_t position, char previous,
                      char byte) const;

    std::size_t rows_;
    /// Each lower-cased byte has a range of positions_, which holds its rows, the last row first.
    std::array<Rows, 256> rowsOf_{};
    std::vector<std::uint16_t> positions_;
    std::vector<double> gaps_;
};

} // namespace quillon
