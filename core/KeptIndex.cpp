#include "core/KeptIndex.h"

#include "core/HeldNodes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include <xxhash.h>

// The form of the file
//
//   8 bytes    what it is, with the version of this form and of the rules for what is indexed
//   8 bytes    a checksum of all that follows
//   lists      the settings, the include folders, those that were away
//   groups     the children of ROOT, then of the first child that has any, and so on, depth first
//
// A group is the number of children and, for each: a byte of flags, the name as a text, and 8 bytes
// of its mark where the flags say so. A text is its length and its bytes; a list its length and its
// members. Lengths take seven bits a byte, the lowest first, with the eighth bit set in all but the
// last one. Marks and the checksum are in the byte order of the machine, which alone reads them.
//
// The groups have the order in which a tree lies best in memory (PathTree::arrange), so that
// inserting them one after the other leaves siblings side by side.

namespace quillon {

namespace {

using NodeId = PathTree::NodeId;

constexpr std::string_view MAGIC = "QLNidx01";
constexpr std::size_t CHECKSUM_SIZE = sizeof(std::uint64_t);
static_assert(KeptIndex::HEAD_SIZE == MAGIC.size() + CHECKSUM_SIZE);
constexpr PathTree::Flags KEPT_FLAGS =
    PathTree::STORED | PathTree::CANDIDATE | PathTree::LISTED | PathTree::HAS_CHILD_SET;
constexpr unsigned HAS_CHILDREN = 16;
constexpr unsigned HAS_MARK = 32;
constexpr unsigned IS_NO_FOLDER = 64;
constexpr unsigned BITS_A_BYTE = 7;
constexpr unsigned MORE = 1U << BITS_A_BYTE;

class Writer
{
public:
    void number(std::uint64_t value)
    {
        for (; value >= MORE; value >>= BITS_A_BYTE)
            bytes.push_back(static_cast<char>(value | MORE));
        bytes.push_back(static_cast<char>(value));
    }
    void word(std::uint64_t value)
    {
        std::array<char, sizeof(value)> raw{};
        std::memcpy(raw.data(), &value, raw.size());
        bytes.append(raw.data(), raw.size());
    }
    void text(std::string_view value)
    {
        number(value.size());
        bytes += value;
    }
    void list(const std::vector<std::string> &texts)
    {
        number(texts.size());
        for (const std::string &member : texts)
            text(member);
    }

    std::string bytes;
};

/// Reads what a Writer wrote. After the first thing that is missing, everything reads as empty.
class Reader
{
public:
    explicit Reader(std::string_view bytes) : left_(bytes) {}

    bool isGood() const { return good_; }
    bool isAtEnd() const { return left_.empty(); }
    std::uint64_t number()
    {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += BITS_A_BYTE) {
            const auto byte = static_cast<unsigned char>(this->byte());
            value |= std::uint64_t{byte & (MORE - 1)} << shift;
            if (byte < MORE)
                return value;
        }
        fail();
        return 0;
    }
    unsigned byte()
    {
        const std::string_view one = take(1);
        return one.empty() ? 0 : static_cast<unsigned char>(one.front());
    }
    std::uint64_t word()
    {
        std::uint64_t value = 0;
        const std::string_view raw = take(sizeof(value));
        if (raw.size() == sizeof(value))
            std::memcpy(&value, raw.data(), sizeof(value));
        return value;
    }
    std::string_view text() { return take(number()); }
    std::vector<std::string> list()
    {
        std::vector<std::string> texts;
        for (std::uint64_t left = number(); left > 0 && good_; --left)
            texts.emplace_back(text());
        return texts;
    }

private:
    void fail()
    {
        good_ = false;
        left_ = {};
    }
    std::string_view take(std::uint64_t size)
    {
        if (size > left_.size()) {
            fail();
            return {};
        }
        const std::string_view taken = left_.substr(0, size);
        left_.remove_prefix(size);
        return taken;
    }

    std::string_view left_;
    bool good_ = true;
};

std::uint64_t checksum(std::string_view bytes)
{
    return XXH3_64bits(bytes.data(), bytes.size());
}

IndexBasis readBasis(Reader &reader)
{
    IndexBasis basis;
    basis.settings = reader.list();
    basis.folders = reader.list();
    basis.missing = reader.list();
    return basis;
}

/// Writes one node among its siblings. Returns whether a group of its own children follows.
bool writeNode(const PathTree &tree, NodeId id, FolderMarks::Mark mark, Writer &writer)
{
    const PathTree::Node &node = tree.node(id);
    unsigned flags = node.flags & KEPT_FLAGS;
    flags |= node.hasChildren() ? HAS_CHILDREN : 0;
    if (mark == FolderMarks::NO_FOLDER)
        flags |= IS_NO_FOLDER;
    else if (mark != FolderMarks::UNKNOWN)
        flags |= HAS_MARK;
    writer.bytes.push_back(static_cast<char>(flags));
    writer.text(tree.name(node));
    if ((flags & HAS_MARK) != 0)
        writer.word(mark);
    return (flags & HAS_CHILDREN) != 0;
}

} // namespace

std::optional<IndexBasis> KeptIndex::basis(std::string_view bytes)
{
    if (!bytes.starts_with(MAGIC))
        return std::nullopt;
    bytes.remove_prefix(MAGIC.size());
    Reader head(bytes.substr(0, CHECKSUM_SIZE));
    if (bytes.size() < CHECKSUM_SIZE || head.word() != checksum(bytes.substr(CHECKSUM_SIZE)))
        return std::nullopt;
    Reader reader(bytes.substr(CHECKSUM_SIZE));
    IndexBasis basis = readBasis(reader);
    return reader.isGood() ? std::optional(std::move(basis)) : std::nullopt;
}

bool KeptIndex::read(std::string_view bytes, const Enter &enter)
{
    Reader reader(bytes.substr(std::min(bytes.size(), HEAD_SIZE)));
    readBasis(reader);
    // What is below an absent parent is left out.
    std::vector<std::optional<NodeId>> parents{PathTree::ROOT};
    std::vector<std::optional<NodeId>> children;
    while (!parents.empty() && reader.isGood()) {
        const std::optional<NodeId> parent = parents.back();
        parents.pop_back();
        children.clear();
        for (std::uint64_t left = reader.number(); left > 0 && reader.isGood(); --left) {
            const unsigned flags = reader.byte();
            Component component{.name = reader.text(),
                                .flags = static_cast<PathTree::Flags>(flags & KEPT_FLAGS)};
            if ((flags & HAS_MARK) != 0)
                component.mark = reader.word();
            else if ((flags & IS_NO_FOLDER) != 0)
                component.mark = FolderMarks::NO_FOLDER;
            if (!reader.isGood() || component.name.find('/') != std::string_view::npos)
                return false;
            const NodeId node = parent ? enter(*parent, component) : PathTree::NONE;
            if ((flags & HAS_CHILDREN) != 0)
                children.push_back(node == PathTree::NONE ? std::nullopt : std::optional(node));
        }
        parents.insert(parents.end(), children.rbegin(), children.rend());
    }
    return reader.isGood() && reader.isAtEnd();
}

std::optional<std::string> KeptIndex::write(PathIndex &index, const IndexBasis &basis,
                                            const FolderMarks &marks,
                                            const std::stop_token &isReset)
{
    Writer writer;
    writer.list(basis.settings);
    writer.list(basis.folders);
    writer.list(basis.missing);

    // Writers may run between any two nodes. What they remove is still there as a node without
    // flags, and what they add comes after its siblings.
    const HeldNodes held(index);
    const ReadingIndex reading(index.lock);
    std::vector<NodeId> parents{PathTree::ROOT};
    std::vector<NodeId> children;
    Writer group;
    std::size_t written = 0;
    while (!parents.empty()) {
        const NodeId parent = parents.back();
        parents.pop_back();
        children.clear();
        group.bytes.clear();
        std::size_t count = 0;
        for (NodeId id = index.tree.firstChild(parent); id != PathTree::NONE;
             id = index.tree.node(id).nextSibling) {
            if (++written % PathIndex::SLICE == 0 && index.lock.isWriterWaiting())
                index.lock.yieldShared();
            if (written % PathIndex::SLICE == 0 && isReset.stop_requested())
                return std::nullopt;
            ++count;
            if (writeNode(index.tree, id, marks.at(id), group))
                children.push_back(id);
        }
        writer.number(count);
        writer.bytes += group.bytes;
        parents.insert(parents.end(), children.rbegin(), children.rend());
    }

    Writer file;
    file.bytes = MAGIC;
    file.word(checksum(writer.bytes));
    file.bytes += writer.bytes;
    return std::move(file.bytes);
}

} // namespace quillon
