#pragma once

#include "base/IdTable.h"
#include "matching/ByteClasses.h"
#include "matching/NameTable.h"

#include <array>
#include <atomic>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// Keeps a set of texts as a tree of their components between slashes, so that a million folder
/// paths cost little more than their last names and share the work of matching their beginnings.
///
/// Any text can be kept and is given back byte for byte; "a//b" and "a/" have empty components.
/// Each node stands for one text and carries flags; a node without flags and children is dead and
/// removed when enough of them have gathered. An id stays valid until its node is dead. Not
/// synchronised: PathIndex pairs the tree with its lock.
///
/// A search spends its time on reading siblings. What decides whether a node is worth a look stands
/// in an array of its own, and siblings that were inserted together have neighbouring ids, so a run
/// of them is read at the speed of memory. arrange() gives that form to a tree that has lost it.
class PathTree
{
public:
    using NodeId = std::uint32_t;
    /// ROOT is the parent of first components. NONE stands for no node.
    static constexpr NodeId ROOT = 0;
    static constexpr NodeId NONE = 0;

    using FamilyId = std::uint32_t;
    static constexpr FamilyId NO_FAMILY = 0;

    /// The flags say what a node is kept for.
    using Flags = std::uint8_t;
    /// The path store holds the text.
    static constexpr Flags STORED = 1;
    /// Searches find the text.
    static constexpr Flags CANDIDATE = 2;
    /// The path store lists the text under its parent.
    static constexpr Flags LISTED = 4;
    /// The path store holds a set of children for the text, even when it is empty.
    static constexpr Flags HAS_CHILD_SET = 8;

    struct Node
    {
        NodeId parent = NONE;
        NodeId nextSibling = NONE;
        /// What only nodes with children have, see hasChildren().
        FamilyId family = NO_FAMILY;
        NameTable::Id name = NameTable::NONE;
        /// The length of the whole text is in bytes and saturates at LONG_TEXT.
        std::uint16_t textLength = 0;
        /// The length of the name saturates at LONG_NAME.
        std::uint8_t nameLength = 0;
        Flags flags = 0;

        bool hasChildren() const { return family != NO_FAMILY; }
    };
    static_assert(sizeof(Node) == 20);
    static constexpr std::uint16_t LONG_TEXT = 0xffff;
    static constexpr std::uint8_t LONG_NAME = 0xff;

    PathTree();
    PathTree(const PathTree &) = delete;
    PathTree &operator=(const PathTree &) = delete;

    /// Returns the node of a text, made where it is missing, with these flags added.
    NodeId insert(std::string_view text, Flags flags);
    /// Does what insert() does for the parent's text, a slash (none below ROOT) and the name, which
    /// holds no slash.
    NodeId insertChild(NodeId parent, std::string_view name, Flags flags);
    /// Adds a child that is not there yet to a tree in which no node was ever removed. Only this
    /// may be called until endAppending(). Looking for a child then takes the longer, the more
    /// siblings there are, until useTable() is called.
    NodeId appendNew(NodeId parent, std::string_view name, Flags flags);
    void endAppending();
    /// Returns a table of all children, made several times as quick as one by one. Absent where a
    /// parent has two children of one name: the tree is good for nothing then.
    std::optional<IdTable> childTable() const;
    /// Takes the table of the tree as it is now.
    void useTable(IdTable &&table);
    /// Returns NONE where the tree has no such node. A node may be there without any flag.
    NodeId find(std::string_view text) const;
    NodeId findChild(NodeId parent, std::string_view name) const;
    void addFlags(NodeId id, Flags flags);
    void removeFlags(NodeId id, Flags flags);
    /// Takes the flags from every node.
    void removeFlagsEverywhere(Flags flags);
    void clear();

    /// Returns false for NONE.
    bool isStored(NodeId id) const { return id != NONE && (node(id).flags & STORED) != 0; }
    const Node &node(NodeId id) const { return chunkOf(id).nodes[id & CHUNK_MASK]; }
    /// Returns every class of byte that occurs in the node's name or anywhere below, and the
    /// classes of the short names below; perhaps more.
    ByteClassSet below(NodeId id) const { return chunkOf(id).below[id & CHUNK_MASK]; }
    /// Returns the pairs of neighbouring bytes in the node's name, with the slash before it, and in
    /// everything below, and perhaps more.
    BytePairSet pairsBelow(const Node &node) const
    {
        return node.hasChildren() ? pairsOfFamily(node) : pairsOfName(node);
    }
    /// Returns the same without a copy for a node that has children.
    const BytePairSet &pairsOfFamily(const Node &node) const { return family(node).pairs; }
    /// Returns the same for a node that has none.
    BytePairSet pairsOfName(const Node &node) const;
    /// Returns the first child, which the others are linked to in the order of insertion.
    NodeId firstChild(const Node &node) const
    {
        return node.hasChildren() ? family(node).firstChild : NONE;
    }
    NodeId firstChild(NodeId id) const { return firstChild(node(id)); }
    /// The sibling to look at next: the first one, from id on, of which below() has all the
    /// classes. Gives up after LONGEST_SKIP siblings and returns the one reached, which may lack
    /// some. NONE behind the last sibling.
    NodeId skipSiblingsWithout(ByteClassSet classes, NodeId id) const;
    static constexpr unsigned LONGEST_SKIP = 256;
    /// Starts to bring what a search reads of a node into the processor's caches.
    void prefetch(NodeId id) const
    {
        const Chunk &chunk = chunkOf(id);
        __builtin_prefetch(&chunk.below[id & CHUNK_MASK]);
        __builtin_prefetch(&chunk.nodes[id & CHUNK_MASK]);
    }
    std::string_view name(const Node &node) const { return names_.name(node.name); }
    const NameTable &names() const { return names_; }
    std::string text(NodeId id) const;
    /// Appends the text to a buffer, which the caller may use again.
    void appendText(NodeId id, std::string &text) const;
    /// Compares the texts by bytes. That is not the order of the components, since ' ', '-' and '.'
    /// sort before '/'.
    std::strong_ordering compareTexts(NodeId a, NodeId b) const;

    /// Every node's id is below this number.
    NodeId ids() const { return used_; }
    /// Returns the number of nodes that carry the flag.
    std::size_t count(Flags flag) const;
    /// Returns the memory that is held in bytes, slack included.
    std::size_t bytes() const;
    /// Changes when clear() or replaceBy() makes every id invalid.
    std::uint64_t generation() const { return generation_; }

    /// Grows with every change, so that equal numbers mean an unchanged tree.
    std::uint64_t changes() const { return changes_; }
    bool isHeld() const { return holds_ > 0; }
    /// Returns true when so many siblings lie apart that arrange() makes searches faster.
    bool isScattered() const;
    /// Copies the source into this empty tree, in depth-first order and with the children of each
    /// node side by side; dead nodes are left out. Stops early, and returns false, as soon as
    /// isWanted returns false; it is called every few hundred microseconds. The source may be read
    /// by others meanwhile.
    bool arrange(const PathTree &source, const std::function<bool()> &isWanted);
    /// Exchanges the contents with another tree. Every id of both becomes invalid, and nothing is
    /// held. Searches that are under way see the new generation.
    void replaceBy(PathTree &other);

    /// While the tree is pinned, the nodes and names that removals give up are not used again, so
    /// that a search that stepped aside for a writer can continue along the links it has seen.
    /// Readers may call this.
    void pin() const { pins_.fetch_add(1); }
    void unpin() const { pins_.fetch_sub(1); }
    /// While the tree is held, dead nodes stay where they are: they can be given flags again, and
    /// only clear() makes ids invalid.
    void hold() { ++holds_; }
    void letGo() { --holds_; }
    /// Removes the dead nodes below some parents, unless the tree is held. Returns false when no
    /// dead node is left.
    bool collectSomeDead(std::size_t parents);

private:
    static constexpr unsigned CHUNK_BITS = 12;
    static constexpr NodeId CHUNK_SIZE = NodeId{1} << CHUNK_BITS;
    static constexpr NodeId CHUNK_MASK = CHUNK_SIZE - 1;
    static constexpr NodeId WORD_BITS = 64;
    /// Holds nodes by id. The fields that a search reads of every sibling are apart from those that
    /// it reads of few.
    struct Chunk
    {
        std::array<ByteClassSet, CHUNK_SIZE> below{};
        /// Each node has a bit here, which says that its next sibling has the next id.
        std::array<std::uint64_t, CHUNK_SIZE / WORD_BITS> isNextBeside{};
        std::array<Node, CHUNK_SIZE> nodes{};
    };
    static constexpr Flags COUNTED_FLAGS = STORED | CANDIDATE | LISTED | HAS_CHILD_SET;
    /// The node is dead, is counted as such, and is still in the hash and in its parent's list.
    static constexpr Flags DEAD = 64;
    /// The node has dead children and is in parentsOfDead_.
    static constexpr Flags HAS_DEAD_CHILDREN = 128;
    /// Removals are paid for in batches, since a singly linked list is walked once for all of them.
    static constexpr std::size_t FEWEST_DEAD_TO_COLLECT = 1024;

    /// Remembers the text that was inserted last and its nodes, most of which the next text of a
    /// sorted list shares.
    struct Trail
    {
        std::string text;
        struct Step
        {
            /// Where the component ends in the text.
            std::size_t end = 0;
            NodeId node = NONE;
        };
        std::vector<Step> steps;
    };

    /// Is a part of each node that has children. Most nodes have none.
    struct Family
    {
        NodeId firstChild = NONE;
        NodeId lastChild = NONE;
        BytePairSet pairs;
    };
    using FamilyChunk = std::array<Family, CHUNK_SIZE>;

    /// The bytes and pairs of bytes that a node stands for.
    struct Held
    {
        ByteClassSet classes = 0;
        BytePairSet pairs;
    };

    const Chunk &chunkOf(NodeId id) const { return *chunks_[id >> CHUNK_BITS]; }
    Chunk &mutableChunkOf(NodeId id) { return *chunks_[id >> CHUNK_BITS]; }
    Node &mutableNode(NodeId id) { return mutableChunkOf(id).nodes[id & CHUNK_MASK]; }
    const Family &family(const Node &node) const
    {
        return (*families_[node.family >> CHUNK_BITS])[node.family & CHUNK_MASK];
    }
    Family &mutableFamily(const Node &node) { return const_cast<Family &>(family(node)); } // ours
    /// Gives a family without a child to a node that has none.
    void beginFamily(Node &node);
    void endFamily(Node &node);
    bool isNextBeside(NodeId id) const
    {
        const NodeId place = id & CHUNK_MASK;
        return (chunkOf(id).isNextBeside[place / WORD_BITS] >> (place % WORD_BITS) & 1) != 0;
    }
    /// Links a node to the sibling behind it, which may be NONE.
    void setNextSibling(NodeId id, NodeId next);
    std::uint64_t hashOfChild(NodeId id) const;
    NodeId child(NodeId parent, std::string_view name);
    NodeId makeChild(NodeId parent, std::string_view name);
    NodeId place(NodeId parent, std::string_view name);
    NodeId findChild(std::uint64_t hash, NodeId parent, std::string_view name) const;
    void keep(NodeId id, Flags flags);
    void append(NodeId parent, NodeId id);
    NodeId copyNode(const PathTree &source, NodeId id, NodeId parent);
    NodeId allocate();
    Held broughtBy(NodeId id) const;
    void widenAncestors(NodeId id);
    void revive(Node &node);
    void buryIfDead(NodeId id);
    void rememberParentOfDead(NodeId parent);
    void removeDeadChildren(NodeId parent);
    void recycle();
    void path(NodeId id, std::vector<NodeId> &nodes) const;

    std::vector<std::unique_ptr<Chunk>> chunks_;
    NodeId used_ = 0;
    std::vector<std::unique_ptr<FamilyChunk>> families_;
    /// Every family in use has an id below this number.
    FamilyId usedFamilies_ = NO_FAMILY + 1;
    std::vector<FamilyId> freeFamilies_;
    NameTable names_;
    IdTable children_;
    /// The table above has every child.
    bool hasTable_ = true;
    Trail trail_;
    std::array<std::size_t, 8> counts_{};
    std::size_t dead_ = 0;
    /// Nodes that were appended behind a sibling without getting the id behind it.
    std::size_t scattered_ = 0;
    int holds_ = 0;
    std::vector<NodeId> parentsOfDead_;
    /// These nodes are in no list any more, but a pinned search may still stand on one.
    std::vector<NodeId> givenUp_;
    /// These nodes are ready to be used again.
    std::vector<NodeId> free_;
    std::uint64_t generation_ = 0;
    std::uint64_t changes_ = 0;
    mutable std::atomic<int> pins_ = 0;
};

} // namespace quillon
