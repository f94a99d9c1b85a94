#include "core/DiskKinds.h"

#include "base/PathText.h"
#include "indexing/SkipRules.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace quillon {

bool DiskKinds::isRoot(const std::string &path) const
{
    return std::ranges::binary_search(roots_, path);
}

bool DiskKinds::isInAwayFolder(const std::string &path) const
{
    const std::string *nearest = nullptr;
    for (const std::string &root : roots_)
        if (isAtOrBelow(path, root) && (!nearest || root.size() > nearest->size()))
            nearest = &root;
    return nearest && kindOf(*nearest) == Kind::nothing;
}

bool DiskKinds::isSkipped(const std::string &folder) const
{
    SkipRules::State state = rules_.stateOf(folder);
    return rules_.skips(state, lastComponent(folder), [&] { return folder; });
}

FolderLister::Kind DiskKinds::kindOf(const std::string &path) const
{
    const Kind kind = lister_.kind(isRoot(path) ? path + "/." : path);
    if (isRoot(path))
        return kind == Kind::other ? Kind::nothing : kind;
    const auto isIncluded = [&] { return extensions_.holdsExtensionOf(lastComponent(path)); };
    const bool counts =
        kind == Kind::other ? isIncluded() : kind != Kind::folder || !isSkipped(path);
    return counts ? kind : Kind::nothing;
}

FolderLister::Kind DiskKinds::kindWithoutLinks(const std::string &path) const
{
    std::optional<std::size_t> nearestRoot;
    for (const std::string &root : roots_) {
        if (isBelow(path, root))
            nearestRoot = std::max(nearestRoot.value_or(0), root == "/" ? 0 : root.size());
    }
    if (nearestRoot && !isRoot(path)) {
        for (std::size_t slash = path.find('/', *nearestRoot + 1); slash != std::string::npos;
             slash = path.find('/', slash + 1)) {
            const Kind kind = lister_.kind(path.substr(0, slash));
            if (kind != Kind::folder)
                return kind == Kind::unknown ? kind : Kind::nothing;
        }
    }
    return kindOf(path);
}

} // namespace quillon
