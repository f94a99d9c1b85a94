#pragma once

#include "matching/NameTable.h"
#include "matching/ShortQuery.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace quillon {

/// Remembers for one query what names gain as the last ones of texts, in vectors whose meaning is
/// the scorer's. Many folders share a name, so most gains are computed once and used often. When
/// there is no room a name takes the place of another. Not synchronised.
class NameGains
{
public:
    /// The gains of a name are so many vectors.
    explicit NameGains(std::size_t vectors) : vectors_(vectors) {}

    bool has(NameTable::Id id) const { return !places_.empty() && places_[id % PLACES].id == id; }
    /// Returns the gains of a name that is there.
    const lanes::Vector *gains(NameTable::Id id) const { return &gains_[id % PLACES * vectors_]; }
    /// Returns the highest score that a text of which this name, which is there, is the last can
    /// have.
    int most(NameTable::Id id) const { return places_[id % PLACES].most; }
    /// Adds a name. The function computes its gains into the vectors that it is given, and returns
    /// the highest score.
    template <typename Compute>
    void add(NameTable::Id id, const Compute &compute)
    {
        if (places_.empty()) {
            places_.resize(PLACES);
            gains_ = std::make_unique_for_overwrite<lanes::Vector[]>(PLACES * vectors_);
        }
        places_[id % PLACES] = {.id = id, .most = compute(&gains_[id % PLACES * vectors_])};
    }

private:
    struct Place
    {
        NameTable::Id id = NameTable::NONE;
        int most = 0;
    };
    /// The names that a tree held first, which are often its most frequent ones, have places of
    /// their own. For a query of eight bytes they take 1.5 MB.
    static constexpr std::size_t PLACES = std::size_t{1} << 15;

    std::size_t vectors_;
    std::vector<Place> places_;
    std::unique_ptr<lanes::Vector[]> gains_;
};

} // namespace quillon
