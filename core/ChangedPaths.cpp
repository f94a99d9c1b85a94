#include "core/ChangedPaths.h"

#include "base/PathText.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>
#include <unordered_map>

namespace quillon {

namespace {

/// So many changed names at most share a crawl and a task of the main queue, so that the task takes
/// about a millisecond.
constexpr std::size_t MOST_TOGETHER = 500;

} // namespace

std::vector<ChangedPaths> ChangedPaths::together(std::span<const std::string> paths,
                                                 const std::vector<std::string> &roots)
{
    std::vector<ChangedPaths> all;
    std::unordered_map<std::string_view, std::size_t> ofFolder;
    for (const std::string &each : paths) {
        const std::string_view path = withoutTrailingSlashes(each);
        if (path == "/" || std::ranges::binary_search(roots, path, std::less<>())) {
            all.push_back({.path = std::string(path)});
            continue;
        }
        const std::string_view folder = parentFolder(path);
        const auto [place, isNew] = ofFolder.try_emplace(folder, all.size());
        if (isNew || all[place->second].names.size() == MOST_TOGETHER) {
            place->second = all.size();
            all.push_back({.path = std::string(folder)});
        }
        all[place->second].names.emplace_back(lastComponent(path));
    }
    return all;
}

} // namespace quillon
