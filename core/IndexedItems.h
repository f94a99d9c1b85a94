#pragma once

#include "base/Mutex.h"
#include "core/SearchBasePaths.h"
#include "indexing/NameKinds.h"
#include "indexing/SkipRules.h"
#include "platform/FSEventStream.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The items that one build would index, as the event service asks for them.
///
/// The service may still ask for a while after the index is gone; close() puts an end to that.
class IndexedItems final : public WatchFilter
{
public:
    /// The include folders are sorted.
    IndexedItems(const SearchBasePaths &paths, std::shared_ptr<const SkipRules> rules,
                 ExtensionSet extensions, std::vector<std::string> roots);

    Folder folder(std::string_view path) const override;
    bool includesFile(std::string_view name) const override;
    bool isIndexed(std::string_view path) const override EXCLUDES(mutex_);

    /// After this call the index is no longer read, and nothing counts as indexed.
    void close() EXCLUDES(mutex_);

private:
    const std::shared_ptr<const SkipRules> rules_;
    const ExtensionSet extensions_;
    const std::vector<std::string> roots_;
    mutable Mutex mutex_;
    const SearchBasePaths *paths_ GUARDED_BY(mutex_);
};

} // namespace quillon
