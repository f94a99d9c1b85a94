// Reads any file that has the right checksum. Either it is refused, or it is an index that is
// written and read again.

#include "base/Require.h"
#include "core/KeptIndex.h"

#include <string>
#include <string_view>

#include <xxhash.h>

namespace {

using namespace quillon;

bool fill(PathTree &tree, FolderMarks &marks, std::string_view bytes)
{
    const auto enter = [&](PathTree::NodeId parent, const KeptIndex::Component &component) {
        const PathTree::NodeId node = tree.appendNew(parent, component.name, component.flags);
        marks.set(node, component.mark);
        return node;
    };
    if (!KeptIndex::read(bytes, enter))
        return false;
    tree.endAppending();
    return tree.childTable().has_value();
}

/// Puts a head before the content, with the right checksum.
std::string withHead(const std::string &content)
{
    PathIndex empty;
    std::string bytes = KeptIndex::write(empty, {}, {}, {}).value();
    const std::uint64_t checksum = XXH3_64bits(content.data(), content.size());
    bytes.resize(KeptIndex::HEAD_SIZE - sizeof(checksum));
    bytes.append(reinterpret_cast<const char *>(&checksum), sizeof(checksum));
    return bytes + content;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string bytes = withHead({reinterpret_cast<const char *>(data), size});
    const auto basis = KeptIndex::basis(bytes);
    PathIndex index;
    FolderMarks marks;
    {
        const WritingIndex writing(index.lock);
        if (!basis || !fill(index.tree, marks, bytes))
            return 0;
    }
    const std::string again = KeptIndex::write(index, *basis, marks, {}).value();
    PathTree tree;
    FolderMarks taken;
    require(KeptIndex::basis(again) == basis, "an index is built by what it was built by");
    require(fill(tree, taken, again), "what is written can be read");
    const ReadingIndex reading(index.lock);
    for (const PathTree::Flags flag : {PathTree::STORED, PathTree::CANDIDATE, PathTree::LISTED})
        require(tree.count(flag) == index.tree.count(flag), "an index is read as it was written");
    return 0;
}
