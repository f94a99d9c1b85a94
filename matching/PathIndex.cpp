#include "matching/PathIndex.h"

#include <memory>

namespace quillon {

void PathIndex::arrange()
{
    // Releasing a tree takes as long as a search, so it is done after the lock is given back.
    std::unique_ptr<PathTree> arranged;
    std::uint64_t changes = 0;
    {
        const ReadingIndex reading(lock);
        if (tree.isHeld() || !tree.isScattered())
            return;
        changes = tree.changes();
        arranged = std::make_unique<PathTree>();
        if (!arranged->arrange(tree, [this] { return !lock.isWriterWaiting(); }))
            return;
    }
    const WritingIndex writing(lock);
    if (tree.changes() == changes && !tree.isHeld())
        tree.replaceBy(*arranged);
}

} // namespace quillon
