#pragma once

#include "indexing/CrawlSink.h"
#include "indexing/CrawlStack.h"
#include "indexing/NameKinds.h"
#include "indexing/SkipRules.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The entries of one folder that belong in the index. The memory is used again for the next
/// folder. It has no lock of its own.
class KeptEntries
{
public:
    /// The rules and the extensions outlive this object.
    KeptEntries(const SkipRules &rules, const ExtensionSet &extensions)
        : rules_(rules), extensions_(extensions)
    {}

    void clear();
    /// Keeps an entry of the folder if it belongs in the index.
    void keep(const CrawlSink::Entry &entry, const CrawlItem &folder);
    /// Does the same where a hidden name counts like any other. Returns whether the entry was kept.
    bool keepNamed(const CrawlSink::Entry &entry, const CrawlItem &folder);
    bool isEmpty() const { return kept_.empty(); }
    /// Returns true when there are folders to go into.
    bool leadsOn() const;

    struct Counts
    {
        std::uint64_t folders = 0;
        std::uint64_t files = 0;
        /// The sum of itemHash() over the entries that are not gone into.
        std::uint64_t items = 0;
    };
    /// Gives the sink what was kept. After this, children() are the folders to go into.
    Counts handOver(CrawlSink &sink, CrawlSink::Token folder);
    const std::vector<CrawlStack::Child> &children() const { return children_; }

private:
    struct Kept
    {
        std::size_t nameOffset = 0;
        std::size_t nameSize = 0;
        SkipRules::State state;
        bool isFolder = false;
        CrawlSink::Token token = 0;
    };

    std::string_view name(const Kept &kept) const
    {
        return std::string_view(names_).substr(kept.nameOffset, kept.nameSize);
    }

    const SkipRules &rules_;
    const ExtensionSet &extensions_;
    std::string names_;
    std::vector<Kept> kept_;
    std::vector<CrawlSink::Entry> entries_;
    std::vector<CrawlStack::Child> children_;
};

} // namespace quillon
