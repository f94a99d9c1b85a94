// How a tree is filled at one go
//
// A tree that is read from a file needs none of what makes single insertions safe: every child is
// new, comes after its parent, and nobody searches yet. So a child is linked and nothing more. What
// ancestors hold of the nodes below them is gathered in one sweep at the end, and the table by
// which children are found by name is made only when somebody wants it, since searches do without.

#include "matching/PathTree.h"

#include <array>
#include <bit>
#include <utility>

namespace quillon {

PathTree::NodeId PathTree::appendNew(NodeId parent, std::string_view name, Flags flags)
{
    hasTable_ = false;
    const NodeId id = place(parent, name);
    flags &= COUNTED_FLAGS;
    mutableNode(id).flags |= flags;
    for (unsigned bits = flags; bits != 0; bits &= bits - 1)
        ++counts_[static_cast<std::size_t>(std::countr_zero(bits))];
    return id;
}

void PathTree::endAppending()
{
    // A child has a higher id than its parent.
    for (NodeId id = used_ - 1; id > ROOT; --id) {
        buryIfDead(id);
        const NodeId parent = node(id).parent;
        if (parent == ROOT)
            continue;
        const auto [classes, pairs] = broughtBy(id);
        mutableChunkOf(parent).below[parent & CHUNK_MASK] |= classes;
        mutableFamily(node(parent)).pairs |= pairs;
    }
}

std::optional<IdTable> PathTree::childTable() const
{
    // The table is filled from one end to the other, so that each part of it is in the caches of
    // the processor while it is filled.
    struct Entry
    {
        std::uint64_t hash = 0;
        NodeId id = NONE;
    };
    constexpr unsigned PART_BITS = 8;
    const auto partOf = [](std::uint64_t hash) { return hash >> (WORD_BITS - PART_BITS); };
    std::vector<std::uint64_t> hashes(used_);
    std::array<std::size_t, (1U << PART_BITS) + 1> ends{};
    for (NodeId id = 1; id < used_; ++id) {
        hashes[id] = hashOfChild(id);
        ++ends[partOf(hashes[id]) + 1];
    }
    for (std::size_t part = 1; part < ends.size(); ++part)
        ends[part] += ends[part - 1];
    std::vector<Entry> entries(used_ - 1);
    for (NodeId id = 1; id < used_; ++id)
        entries[ends[partOf(hashes[id])]++] = {hashes[id], id};

    IdTable table;
    for (const Entry &entry : entries) {
        const auto isSame = [&](NodeId other) {
            const Node &child = node(entry.id);
            return node(other).parent == child.parent && name(node(other)) == name(child);
        };
        if (table.find(entry.hash, isSame) != NONE)
            return std::nullopt;
        table.insert(entry.hash, entry.id);
    }
    return table;
}

void PathTree::useTable(IdTable &&table)
{
    children_ = std::move(table);
    hasTable_ = true;
}

} // namespace quillon
