#pragma once

#include "matching/PathTree.h"

#include <cstddef>
#include <vector>

namespace quillon {

/// A text of the tree with its score.
struct Hit
{
    double score = 0;
    PathTree::NodeId node = PathTree::NONE;
};

/// The best hits so far, at most a given number of them: higher scores first, then texts ascending.
/// Not synchronised; the tree is read while hits are compared.
class TopHits
{
public:
    TopHits(const PathTree &tree, std::size_t capacity) : tree_(tree), capacity_(capacity) {}

    bool isFull() const { return hits_.size() >= capacity_; }
    /// The hit that the next better one pushes out; only when full, and the capacity is not 0.
    const Hit &worst() const { return hits_.front(); }
    /// Whether add() would keep this hit.
    bool wants(const Hit &hit) const;
    void add(const Hit &hit);
    /// Takes over what another one holds.
    void merge(const TopHits &other);
    /// Best first. Leaves nothing behind.
    std::vector<Hit> takeSorted();

private:
    bool isBetter(const Hit &a, const Hit &b) const;

    const PathTree &tree_;
    std::size_t capacity_;
    /// A heap with the worst hit in front.
    std::vector<Hit> hits_;
};

} // namespace quillon
