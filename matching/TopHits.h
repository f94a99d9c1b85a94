#pragma once

#include "matching/PathTree.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon {

/// Is a text of the tree with its score.
struct Hit
{
    double score = 0;
    PathTree::NodeId node = PathTree::NONE;
    /// Of equal scores the lesser length is better. It is 0 where length plays no part.
    std::uint32_t length = 0;
};

/// Collects the best hits, at most a given number of them, by score descending, then by length and
/// then by text ascending. Not synchronised. The tree is read when hits are compared.
class TopHits
{
public:
    TopHits(const PathTree &tree, std::size_t capacity) : tree_(tree), capacity_(capacity) {}

    bool isFull() const { return hits_.size() >= capacity_; }
    /// Returns the hit that the next better one pushes out. The collection is full, and its
    /// capacity is not 0.
    const Hit &worst() const { return hits_.front(); }
    /// Returns true when add() would keep this hit.
    bool wants(const Hit &hit) const;
    void add(const Hit &hit);
    /// Returns the hits, the best one first, and leaves the collection empty.
    std::vector<Hit> takeSorted();

private:
    bool isBetter(const Hit &a, const Hit &b) const;

    const PathTree &tree_;
    std::size_t capacity_;
    /// The hits are a heap with the worst one in front.
    std::vector<Hit> hits_;
};

} // namespace quillon
