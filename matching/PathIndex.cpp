#include "matching/PathIndex.h"

namespace quillon {

void PathIndex::arrange(const std::function<void(const PathTree &former)> &isReplaced)
{
    // The former tree is released behind the lock: that takes as long as a search.
    PathTree arranged;
    std::uint64_t changes = 0;
    {
        const ReadingIndex reading(lock);
        changes = tree.changes();
        if (tree.isHeld() || !tree.isScattered() ||
            !arranged.arrange(tree, [this] { return !lock.isWriterWaiting(); }))
            return;
    }
    const WritingIndex writing(lock);
    if (tree.changes() != changes || tree.isHeld())
        return;
    tree.replaceBy(arranged);
    isReplaced(arranged);
}

} // namespace quillon
