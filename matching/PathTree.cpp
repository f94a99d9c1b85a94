#include "matching/PathTree.h"

#include "base/Hashing.h"
#include "base/Require.h"

#include <algorithm>
#include <bit>

namespace quillon {

namespace {

std::size_t commonPrefix(std::string_view a, std::string_view b)
{
    const std::size_t shorter = std::min(a.size(), b.size());
    constexpr std::size_t WORD = sizeof(std::uint64_t);
    std::size_t same = 0;
    while (same + WORD <= shorter && wordAt(&a[same], WORD) == wordAt(&b[same], WORD))
        same += WORD;
    while (same < shorter && a[same] == b[same])
        ++same;
    return same;
}

} // namespace

PathTree::PathTree()
{
    clear();
}

void PathTree::clear()
{
    chunks_.clear();
    names_.clear();
    children_.clear();
    hasTable_ = true;
    trail_ = {};
    counts_ = {};
    dead_ = 0;
    scattered_ = 0;
    parentsOfDead_.clear();
    givenUp_.clear();
    free_.clear();
    used_ = 0;
    families_.clear();
    usedFamilies_ = NO_FAMILY + 1;
    freeFamilies_.clear();
    ++generation_;
    ++changes_;
    const NodeId root = allocate();
    require(root == ROOT, "the root is the first node");
}

PathTree::NodeId PathTree::insert(std::string_view text, Flags flags)
{
    // Components that the last text began with need no look-up.
    auto &steps = trail_.steps;
    const std::size_t shared = commonPrefix(text, trail_.text);
    const auto isComponentOfBoth = [&](const Trail::Step &step) {
        return step.end <= shared && (step.end == text.size() || text[step.end] == '/') &&
               (step.end == trail_.text.size() || trail_.text[step.end] == '/');
    };
    while (!steps.empty() && !isComponentOfBoth(steps.back()))
        steps.pop_back();
    trail_.text.resize(shared);
    trail_.text.append(text.substr(shared));

    NodeId node = steps.empty() ? ROOT : steps.back().node;
    std::size_t begin = steps.empty() ? 0 : steps.back().end + 1;
    while (begin <= text.size()) {
        const std::size_t slash = std::min(text.find('/', begin), text.size());
        node = child(node, text.substr(begin, slash - begin));
        steps.push_back({slash, node});
        begin = slash + 1;
    }
    keep(node, flags);
    return node;
}

PathTree::NodeId PathTree::insertChild(NodeId parent, std::string_view name, Flags flags)
{
    const NodeId id = child(parent, name);
    keep(id, flags);
    return id;
}

void PathTree::keep(NodeId id, Flags flags)
{
    addFlags(id, flags);
    buryIfDead(id);
}

PathTree::NodeId PathTree::child(NodeId parent, std::string_view name)
{
    const std::uint64_t hash = hashOf(name, parent);
    const NodeId present = findChild(hash, parent, name);
    if (present != NONE)
        return present;
    const NodeId id = makeChild(parent, name);
    if (hasTable_)
        children_.insert(hash, id);
    return id;
}

PathTree::NodeId PathTree::makeChild(NodeId parent, std::string_view name)
{
    const NodeId id = place(parent, name);
    revive(mutableNode(parent));
    widenAncestors(id);
    return id;
}

/// Makes a node and links it, as if nothing else depended on it.
PathTree::NodeId PathTree::place(NodeId parent, std::string_view name)
{
    ++changes_;
    const NodeId id = allocate();
    const Node &above = node(parent);
    Node &fresh = mutableNode(id);
    fresh = {};
    fresh.name = names_.take(name);
    ByteClassSet &below = mutableChunkOf(id).below[id & CHUNK_MASK];
    below = classesOf(name);
    if (names_.isFolded(fresh.name))
        below |= classesOf(names_.folded(fresh.name));
    fresh.parent = parent;
    const std::size_t before = parent == ROOT ? 0 : std::size_t{above.textLength} + 1;
    fresh.textLength =
        static_cast<std::uint16_t>(std::min<std::size_t>(before + name.size(), LONG_TEXT));
    fresh.nameLength = static_cast<std::uint8_t>(std::min<std::size_t>(name.size(), LONG_NAME));
    append(parent, id);
    return id;
}

void PathTree::append(NodeId parent, NodeId id)
{
    Node &above = mutableNode(parent);
    if (!above.hasChildren())
        beginFamily(above);
    Family &family = mutableFamily(above);
    if (family.lastChild == NONE) {
        family.firstChild = id;
    } else {
        scattered_ += id == family.lastChild + 1 ? 0U : 1U;
        setNextSibling(family.lastChild, id);
    }
    family.lastChild = id;
}

BytePairSet PathTree::pairsOfName(const Node &node) const
{
    BytePairSet pairs = pairsOf(names_.name(node.name));
    if (names_.isFolded(node.name))
        pairs |= pairsOf(names_.folded(node.name));
    return pairs;
}

void PathTree::beginFamily(Node &node)
{
    if (!freeFamilies_.empty()) {
        node.family = freeFamilies_.back();
        freeFamilies_.pop_back();
    } else {
        if (usedFamilies_ >> CHUNK_BITS == families_.size())
            families_.push_back(std::make_unique<FamilyChunk>());
        node.family = usedFamilies_++;
    }
    const bool isRoot = node.name == NameTable::NONE;
    mutableFamily(node) = {.pairs = isRoot ? BytePairSet() : pairsOfName(node)};
}

void PathTree::endFamily(Node &node)
{
    freeFamilies_.push_back(node.family);
    node.family = NO_FAMILY;
}

void PathTree::setNextSibling(NodeId id, NodeId next)
{
    mutableNode(id).nextSibling = next;
    const NodeId place = id & CHUNK_MASK;
    std::uint64_t &word = mutableChunkOf(id).isNextBeside[place / WORD_BITS];
    const std::uint64_t bit = std::uint64_t{1} << (place % WORD_BITS);
    word = next == id + 1 ? word | bit : word & ~bit;
}

PathTree::NodeId PathTree::skipSiblingsWithout(ByteClassSet classes, NodeId id) const
{
    for (unsigned left = LONGEST_SKIP; left > 0 && id != NONE; --left) {
        if ((classes & ~below(id)) == 0)
            return id;
        id = isNextBeside(id) ? id + 1 : node(id).nextSibling;
    }
    return id;
}

PathTree::NodeId PathTree::allocate()
{
    if (free_.empty() && !givenUp_.empty())
        recycle();
    if (!free_.empty()) {
        const NodeId id = free_.back();
        free_.pop_back();
        return id;
    }
    require(used_ != ~NodeId{0}, "an index holds fewer than 2^32 components");
    if ((used_ & CHUNK_MASK) == 0)
        chunks_.push_back(std::make_unique<Chunk>());
    return used_++;
}

/// Returns what an ancestor holds because of a node: what the node holds, its slash, and the pair
/// of the parent's last byte and that slash.
PathTree::Held PathTree::broughtBy(NodeId id) const
{
    const Node &child = node(id);
    const unsigned levels = mostLevels(below(id));
    const ByteClassSet more = levels == UNCOUNTED_LEVELS ? 0 : levelClasses(levels + 1);
    Held brought{.classes = below(id) | more | shortNameClass(child.nameLength),
                 .pairs = pairsBelow(child)};
    if (child.parent != ROOT) {
        const std::string_view name = this->name(node(child.parent));
        brought.pairs.add(pairOf(name.empty() ? '/' : name.back(), '/'));
    }
    return brought;
}

void PathTree::widenAncestors(NodeId id)
{
    for (; node(id).parent != ROOT; id = node(id).parent) {
        const NodeId above = node(id).parent;
        const auto [below, pairs] = broughtBy(id);
        ByteClassSet &belowAncestor = mutableChunkOf(above).below[above & CHUNK_MASK];
        BytePairSet &pairsBelowAncestor = mutableFamily(node(above)).pairs;
        if ((belowAncestor & below) == below && pairsBelowAncestor.hasAll(pairs))
            return;
        belowAncestor |= below;
        pairsBelowAncestor |= pairs;
    }
}

PathTree::NodeId PathTree::find(std::string_view text) const
{
    NodeId id = ROOT;
    std::size_t begin = 0;
    while (begin <= text.size()) {
        const std::size_t slash = std::min(text.find('/', begin), text.size());
        id = findChild(id, text.substr(begin, slash - begin));
        if (id == NONE)
            return NONE;
        begin = slash + 1;
    }
    return id;
}

PathTree::NodeId PathTree::findChild(NodeId parent, std::string_view name) const
{
    return findChild(hashOf(name, parent), parent, name);
}

PathTree::NodeId PathTree::findChild(std::uint64_t hash, NodeId parent, std::string_view name) const
{
    if (hasTable_)
        return children_.find(hash, [&](NodeId id) {
            const Node &candidate = node(id);
            return candidate.parent == parent && this->name(candidate) == name;
        });
    NodeId id = firstChild(parent);
    while (id != NONE && this->name(node(id)) != name)
        id = node(id).nextSibling;
    return id;
}

std::uint64_t PathTree::hashOfChild(NodeId id) const
{
    const Node &child = node(id);
    return hashOf(name(child), child.parent);
}

void PathTree::path(NodeId id, std::vector<NodeId> &nodes) const
{
    nodes.clear();
    for (; id != ROOT; id = node(id).parent)
        nodes.push_back(id);
    std::ranges::reverse(nodes);
}

void PathTree::appendText(NodeId id, std::string &text) const
{
    std::size_t length = 0;
    for (NodeId n = id; n != ROOT; n = node(n).parent)
        length += name(node(n)).size() + (node(n).parent == ROOT ? 0 : 1);
    const std::size_t begin = text.size();
    text.resize(begin + length);
    char *end = text.data() + begin + length;
    for (NodeId n = id; n != ROOT; n = node(n).parent) {
        const std::string_view component = name(node(n));
        end -= component.size();
        std::ranges::copy(component, end);
        if (node(n).parent != ROOT)
            *--end = '/';
    }
}

std::string PathTree::text(NodeId id) const
{
    std::string text;
    appendText(id, text);
    return text;
}

std::strong_ordering PathTree::compareTexts(NodeId a, NodeId b) const
{
    // Folders of numbered names score alike by the thousand.
    if (node(a).parent == node(b).parent)
        return name(node(a)) <=> name(node(b));
    std::vector<NodeId> pathA;
    std::vector<NodeId> pathB;
    path(a, pathA);
    path(b, pathB);
    const auto [restA, restB] = std::ranges::mismatch(pathA, pathB);
    if (restA == pathA.end() || restB == pathB.end())
        return pathA.size() <=> pathB.size();

    // Where the names differ, the shorter one continues with a slash or ends its text.
    const std::string_view nameA = name(node(*restA));
    const std::string_view nameB = name(node(*restB));
    const auto [differA, differB] = std::ranges::mismatch(nameA, nameB);
    const auto following = [](auto byte, auto end, bool isLast) {
        if (byte != end)
            return static_cast<int>(static_cast<unsigned char>(*byte));
        return isLast ? -1 : static_cast<int>('/');
    };
    const int byteA = following(differA, nameA.end(), *restA == a);
    const int byteB = following(differB, nameB.end(), *restB == b);
    if (byteA != byteB)
        return byteA <=> byteB;
    // The bytes differ, since a component holds no slash that could equal the other's.
    return a <=> b;
}

std::size_t PathTree::count(Flags flag) const
{
    return counts_[static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(flag)))];
}

std::size_t PathTree::bytes() const
{
    return sizeof(*this) + chunks_.size() * sizeof(Chunk) +
           chunks_.capacity() * sizeof(chunks_[0]) + (names_.bytes() - sizeof(names_)) +
           (children_.bytes() - sizeof(children_)) + families_.size() * sizeof(FamilyChunk) +
           families_.capacity() * sizeof(families_[0]) +
           freeFamilies_.capacity() * sizeof(FamilyId) +
           (parentsOfDead_.capacity() + givenUp_.capacity() + free_.capacity()) * sizeof(NodeId);
}

} // namespace quillon
