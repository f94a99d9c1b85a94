#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace quillon {

/// Learns during one search how often a bound leaves a folder's subtree out, and so where bounds
/// are worth their time. Not synchronised.
class PruningRates
{
public:
    /// Returns whether the next folder, with so many levels below it, at least one, is worth a
    /// bound. A bound takes as long as a look at a few folders. With one level below, it must leave
    /// out half of the folders to pay; with each level more, half as many suffice, since more is
    /// left out with each. One folder in some is always bounded, to notice when the rate changes.
    bool isWorthBound(unsigned levels)
    {
        Group &group = groupOf(levels);
        return group.rate >= WHOLE >> indexOf(levels) >> 1 || ++group.passed % PASSES_PER_TRY == 0;
    }
    /// Learns whether the bound left the subtree out.
    void learn(unsigned levels, bool isLeftOut)
    {
        int &rate = groupOf(levels).rate;
        rate += ((isLeftOut ? WHOLE : 0) - rate) / REMEMBERED;
    }

private:
    static constexpr int WHOLE = 1 << 16;
    /// An average over about so many folders is taken.
    static constexpr int REMEMBERED = 64;
    static constexpr unsigned PASSES_PER_TRY = 16;

    struct Group
    {
        int rate = WHOLE;
        unsigned passed = 0;
    };

    std::size_t indexOf(unsigned levels) const
    {
        return std::min(std::size_t{levels}, groups_.size()) - 1;
    }
    Group &groupOf(unsigned levels) { return groups_[indexOf(levels)]; }

    /// Stands for one, two and three levels, and for more.
    std::array<Group, 4> groups_;
};

} // namespace quillon
