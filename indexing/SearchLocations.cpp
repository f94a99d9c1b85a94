#include "indexing/SearchLocations.h"

#include "indexing/SearchBaseFinder.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

void sortOnce(std::vector<std::string> &paths)
{
    std::ranges::sort(paths);
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
}

} // namespace

SearchLocations SearchLocations::withoutFolders(const SearchBaseFinder &finder)
{
    SearchLocations locations;
    locations.patterns = finder.patternsInForce();
    locations.filePatterns = finder.includeFilePatternPreferences.values();
    locations.namesWithHidden = finder.bookmarks.namesWithHidden();
    return locations;
}

SearchLocations SearchLocations::of(SearchBaseFinder &finder)
{
    SearchLocations locations = withoutFolders(finder);
    for (Bookmarks::Resolved &entry : finder.bookmarks.resolveAll()) {
        if (entry.searchesHidden && !entry.path.empty())
            locations.withHidden.push_back(entry.path);
        if (entry.presence == FolderPresence::there)
            locations.folders.push_back(std::move(entry.path));
        else
            locations.missing.push_back(
                {std::move(entry.name), std::move(entry.path), entry.presence});
    }
    sortOnce(locations.folders);
    sortOnce(locations.withHidden);
    // A folder that was found under a new name has got another entry.
    locations.namesWithHidden = finder.bookmarks.namesWithHidden();
    return locations;
}

std::vector<std::string> SearchLocations::settings(const DefaultsDictionary &bookmarks) const
{
    // The lengths of the lists tell one list from the next.
    std::vector<std::string> texts = patterns;
    texts.push_back(std::to_string(texts.size()));
    texts.insert(texts.end(), filePatterns.begin(), filePatterns.end());
    texts.push_back(std::to_string(filePatterns.size()));
    texts.insert(texts.end(), namesWithHidden.begin(), namesWithHidden.end());
    texts.push_back(std::to_string(namesWithHidden.size()));
    for (const auto &[name, value] : bookmarks) {
        texts.push_back(name);
        texts.push_back(value.asData().value_or(""));
    }
    return texts;
}

std::vector<std::string> SearchLocations::roots() const
{
    std::vector<std::string> roots = folders;
    for (const Missing &folder : missing)
        if (!folder.path.empty() && folder.presence != FolderPresence::unanswered)
            roots.push_back(folder.path);
    sortOnce(roots);
    return roots;
}

std::shared_ptr<const SkipRules> SearchLocations::rules() const
{
    // A missing folder overrides a pattern as the others will once it is there. Until then it comes
    // after them.
    std::vector<std::string> overriding = folders;
    for (const Missing &folder : missing)
        if (!folder.path.empty())
            overriding.push_back(folder.path);
    return std::make_shared<const SkipRules>(patterns, std::move(overriding), withHidden);
}

} // namespace quillon
