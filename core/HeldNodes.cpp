#include "core/HeldNodes.h"

namespace quillon {

namespace {

/// Folders whose dead children go at a time.
constexpr std::size_t SLICE = 1024;

} // namespace

HeldNodes::HeldNodes(SearchBasePaths &paths) : paths_(paths)
{
    const WritingIndex writing(paths_.lock());
    paths_.mutableTree().hold();
}

HeldNodes::~HeldNodes()
{
    {
        const WritingIndex writing(paths_.lock());
        paths_.mutableTree().letGo();
    }
    while (collectSome()) {
    }
}

bool HeldNodes::collectSome()
{
    const WritingIndex writing(paths_.lock());
    return paths_.mutableTree().collectSomeDead(SLICE);
}

} // namespace quillon
