#include "core/HeldNodes.h"

namespace quillon {

HeldNodes::HeldNodes(PathIndex &index) : index_(index)
{
    const WritingIndex writing(index_.lock);
    index_.tree.hold();
}

HeldNodes::~HeldNodes()
{
    {
        const WritingIndex writing(index_.lock);
        index_.tree.letGo();
    }
    while (collectSome()) {
    }
}

bool HeldNodes::collectSome()
{
    const WritingIndex writing(index_.lock);
    return index_.tree.collectSomeDead(PathIndex::SLICE);
}

} // namespace quillon
