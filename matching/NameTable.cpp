#include "matching/NameTable.h"

#include "base/Hashing.h"
#include "base/TextFolding.h"

#include <optional>
#include <string>

namespace quillon {

NameTable::Id NameTable::take(std::string_view name)
{
    const std::uint64_t hash = hashOf(name);
    const Id present = ids_.find(hash, [&](Id id) { return this->name(id) == name; });
    if (present != NONE) {
        ++mutableEntry(present).uses;
        return present;
    }
    const std::optional<std::string> folded = foldedText(name);
    std::string both;
    if (folded)
        both.append(name).append(*folded);
    const Id id = allocate();
    mutableEntry(id) = {.bytes = bytes_.store(folded ? both : name),
                        .length = static_cast<std::uint32_t>(name.size()) & 0x7fffffff,
                        .isFolded = folded.has_value(),
                        .uses = 1};
    ids_.insert(hash, id);
    return id;
}

NameTable::Id NameTable::allocate()
{
    if (!free_.empty()) {
        const Id id = free_.back();
        free_.pop_back();
        return id;
    }
    if (end_ >> CHUNK_BITS == chunks_.size())
        chunks_.push_back(std::make_unique<Chunk>());
    return end_++;
}

void NameTable::release(Id id)
{
    Entry &entry = mutableEntry(id);
    if (--entry.uses > 0)
        return;
    ids_.erase(hashOf(name(id)), id);
    bytes_.release(entry.bytes, std::size_t{entry.length} * (entry.isFolded ? 2 : 1));
    entry = {};
    free_.push_back(id);
}

void NameTable::clear()
{
    bytes_.clear();
    chunks_.clear();
    end_ = NONE + 1;
    free_.clear();
    ids_.clear();
}

std::size_t NameTable::bytes() const
{
    return sizeof(*this) + (bytes_.bytes() - sizeof(bytes_)) + (ids_.bytes() - sizeof(ids_)) +
           chunks_.size() * sizeof(Chunk) + chunks_.capacity() * sizeof(chunks_[0]) +
           free_.capacity() * sizeof(Id);
}

} // namespace quillon
