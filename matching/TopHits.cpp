#include "matching/TopHits.h"

#include <algorithm>
#include <compare>
#include <utility>

namespace quillon {

bool TopHits::isBetter(const Hit &a, const Hit &b) const
{
    if (a.score != b.score)
        return a.score > b.score;
    if (a.length != b.length)
        return a.length < b.length;
    return std::is_lt(tree_.compareTexts(a.node, b.node));
}

bool TopHits::wants(const Hit &hit) const
{
    return !isFull() || (capacity_ > 0 && isBetter(hit, worst()));
}

void TopHits::add(const Hit &hit)
{
    if (!wants(hit))
        return;
    const auto better = [this](const Hit &a, const Hit &b) { return isBetter(a, b); };
    if (isFull()) {
        std::ranges::pop_heap(hits_, better);
        hits_.pop_back();
    }
    hits_.push_back(hit);
    std::ranges::push_heap(hits_, better);
}

std::vector<Hit> TopHits::takeSorted()
{
    std::ranges::sort_heap(hits_, [this](const Hit &a, const Hit &b) { return isBetter(a, b); });
    return std::exchange(hits_, {});
}

} // namespace quillon
