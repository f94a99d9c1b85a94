#include "core/HeldNodes.h"

namespace quillon {

namespace {

/// The dead children of so many folders are removed at a time.
constexpr std::size_t SLICE = 1024;

} // namespace

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
    return index_.tree.collectSomeDead(SLICE);
}

} // namespace quillon
