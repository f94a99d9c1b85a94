#include "core/IndexedItems.h"

#include "base/PathText.h"

#include <algorithm>
#include <utility>

namespace quillon {

IndexedItems::IndexedItems(const SearchBasePaths &paths, std::shared_ptr<const SkipRules> rules,
                           ExtensionSet extensions, std::vector<std::string> roots)
    : rules_(std::move(rules)),
      extensions_(std::move(extensions)),
      roots_(std::move(roots)),
      paths_(&paths)
{}

WatchFilter::Folder IndexedItems::folder(std::string_view path) const
{
    const std::string_view name = lastComponent(path);
    if (!std::ranges::binary_search(roots_, path, std::less<>())) {
        SkipRules::State state = rules_->stateOf(path);
        if (SkipRules::hides(state, name, true) || rules_->skips(state, name, [&] { return path; }))
            return Folder::skipped;
    }
    return isPackageName(name) ? Folder::listed : Folder::entered;
}

bool IndexedItems::includesFile(std::string_view name) const
{
    return !isHiddenName(name) && extensions_.holdsExtensionOf(name);
}

bool IndexedItems::isIndexed(std::string_view path) const
{
    const MutexLock lock(mutex_);
    if (paths_ == nullptr)
        return false;
    const ReadingIndex reading(paths_->lock());
    return paths_->paths().contains(path);
}

void IndexedItems::close()
{
    const MutexLock lock(mutex_);
    paths_ = nullptr;
}

} // namespace quillon
