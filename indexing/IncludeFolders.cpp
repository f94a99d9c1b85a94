#include "indexing/IncludeFolders.h"

#include "base/PathText.h"
#include "indexing/NameKinds.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchLocations.h"
#include "indexing/SkipRules.h"
#include "platform/FolderIdentity.h"
#include "platform/FolderLister.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace quillon {

IncludeFolders::Outcome IncludeFolders::add(const std::vector<std::string> &paths) const
{
    using enum RefusedFolder::Reason;
    const SearchLocations locations = SearchLocations::of(finder_);
    const std::shared_ptr<const SkipRules> rules = locations.rules();
    Outcome outcome;
    for (const std::string &path : paths) {
        if (auto refused = refusal(path, locations.folders, *rules))
            outcome.refused.push_back(std::move(*refused));
        else if (!finder_.bookmarks.add(path))
            outcome.refused.push_back({path, cannotBeStored});
        else
            outcome.added.push_back(path);
    }
    return outcome;
}

std::optional<RefusedFolder> IncludeFolders::refusal(const std::string &path,
                                                     const std::vector<std::string> &listed,
                                                     const SkipRules &rules) const
{
    using enum RefusedFolder::Reason;
    if (std::ranges::find(listed, path) != listed.end())
        return RefusedFolder{path, isListed};
    const FolderPresence presence = identity_.presence(path);
    if (presence == FolderPresence::away)
        return RefusedFolder{path, isNoFolder};
    if (presence != FolderPresence::there)
        return RefusedFolder{path, cannotBeRead};
    if (isPackageName(lastComponent(path)))
        return RefusedFolder{path, isPackage};
    const auto around = std::ranges::find_if(
        listed, [&](const std::string &folder) { return isSearchedAsPartOf(folder, path, rules); });
    if (around != listed.end())
        return RefusedFolder{path, isSearchedAsPart, *around};
    return std::nullopt;
}

/// Returns true when a crawl of the folder reaches the path too.
bool IncludeFolders::isSearchedAsPartOf(const std::string &folder, const std::string &path,
                                        const SkipRules &rules) const
{
    const std::string prefix = folder == "/" ? folder : folder + '/';
    if (!path.starts_with(prefix))
        return false;
    SkipRules::State state = rules.stateOf(folder == "/" ? "" : folder);
    for (std::size_t begin = prefix.size(); begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const auto name = std::string_view(path).substr(begin, end - begin);
        const bool isHidden = SkipRules::hides(state, name, true);
        state = rules.below(state, name);
        const bool isEntered = end == path.size() || !isPackageName(name);
        if (isHidden || !isEntered ||
            rules.skips(state, name, [&] { return std::string_view(path).substr(0, end); }))
            return false;
        begin = end + 1;
    }
    // A crawl does not follow links.
    return lister_.kind(path) == FolderLister::Kind::folder;
}

} // namespace quillon
