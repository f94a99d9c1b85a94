#include "indexing/KeptEntries.h"

#include <algorithm>

namespace quillon {

void KeptEntries::clear()
{
    names_.clear();
    kept_.clear();
}

void KeptEntries::keep(const CrawlSink::Entry &entry, const CrawlItem &folder)
{
    if (!SkipRules::hides(folder.state, entry.name, entry.isFolder))
        keepNamed(entry, folder);
}

bool KeptEntries::keepNamed(const CrawlSink::Entry &entry, const CrawlItem &folder)
{
    SkipRules::State state;
    if (entry.isFolder) {
        state = rules_.below(folder.state, entry.name);
        const auto path = [&] { return folder.path() + "/" + std::string(entry.name); };
        if (rules_.skips(state, entry.name, path))
            return false;
    } else if (!extensions_.holdsExtensionOf(entry.name)) {
        return false;
    }
    kept_.push_back({names_.size(), entry.name.size(), state, entry.isFolder, entry.token});
    names_ += entry.name;
    return true;
}

bool KeptEntries::leadsOn() const
{
    return std::ranges::any_of(
        kept_, [this](const Kept &kept) { return kept.isFolder && !isPackageName(name(kept)); });
}

KeptEntries::Counts KeptEntries::handOver(CrawlSink &sink, CrawlSink::Token folder)
{
    Counts counts;
    entries_.clear();
    for (const Kept &kept : kept_) {
        ++(kept.isFolder ? counts.folders : counts.files);
        entries_.push_back({.name = name(kept), .isFolder = kept.isFolder, .token = kept.token});
    }
    sink.add(folder, entries_);
    children_.clear();
    for (std::size_t i = 0; i < kept_.size(); ++i) {
        if (kept_[i].isFolder && !isPackageName(entries_[i].name))
            children_.push_back({entries_[i].name, entries_[i].token, kept_[i].state});
        else
            counts.items += itemHash(entries_[i].name);
    }
    return counts;
}

} // namespace quillon
