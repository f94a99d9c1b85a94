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

    /// Returns a null pointer where the gains are not known.
    const lanes::Vector *find(NameTable::Id id) const
    {
        return !ids_.empty() && ids_[id % PLACES] == id ? at(id) : nullptr;
    }
    /// Returns room for the gains of a name that is not there, which the caller computes.
    lanes::Vector *add(NameTable::Id id)
    {
        if (ids_.empty()) {
            ids_.resize(PLACES);
            gains_ = std::make_unique_for_overwrite<lanes::Vector[]>(PLACES * vectors_);
        }
        ids_[id % PLACES] = id;
        return at(id);
    }

private:
    /// The names that a tree held first, which are often its most frequent ones, have places of
    /// their own. For a query of eight bytes they take 1.5 MB.
    static constexpr std::size_t PLACES = std::size_t{1} << 15;

    lanes::Vector *at(NameTable::Id id) const { return &gains_[id % PLACES * vectors_]; }

    std::size_t vectors_;
    std::vector<NameTable::Id> ids_;
    std::unique_ptr<lanes::Vector[]> gains_;
};

} // namespace quillon
