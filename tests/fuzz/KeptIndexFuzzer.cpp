// Any file with the right checksum: it is refused, or it is an index that is written and read again.

#include "base/Require.h"
#include "core/KeptIndex.h"

#include <xxhash.h>

#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quillon;
    const std::string content(reinterpret_cast<const char *>(data), size);
    PathIndex empty;
    std::string bytes = KeptIndex::write(empty, {}, {}, {}).value();
    const std::uint64_t checksum = XXH3_64bits(content.data(), content.size());
    bytes.resize(KeptIndex::HEAD_SIZE);
    std::memcpy(bytes.data() + KeptIndex::HEAD_SIZE - sizeof(checksum), &checksum,
                sizeof(checksum));
    bytes += content;

    const auto basis = KeptIndex::basis(bytes);
    PathIndex index;
    FolderMarks marks;
    const auto enter = [](PathTree &tree, FolderMarks &taken) {
        return [&](PathTree::NodeId parent, const KeptIndex::Component &component) {
            const PathTree::NodeId node =
                tree.appendNew(parent, component.name, component.flags);
            taken.set(node, component.mark);
            return node;
        };
    };
    const bool isRead = [&]() NO_THREAD_SAFETY_ANALYSIS {
        return KeptIndex::read(bytes, enter(index.tree, marks)) && index.tree.makeFindable();
    }();
    if (!basis || !isRead)
        return 0;
    const std::string again = KeptIndex::write(index, *basis, marks, {}).value();
    PathTree tree;
    FolderMarks taken;
    require(KeptIndex::basis(again) == basis, "an index is built by what it was built by");
    require(KeptIndex::read(again, enter(tree, taken)) && tree.makeFindable(),
            "what is written can be read");
    for (const PathTree::Flags flag : {PathTree::STORED, PathTree::CANDIDATE, PathTree::LISTED})
        require([&]() NO_THREAD_SAFETY_ANALYSIS {
            return tree.count(flag) == index.tree.count(flag);
        }(), "an index is read as it was written");
    return 0;
}
