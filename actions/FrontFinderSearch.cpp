#include "actions/FrontFinderSearch.h"

#include "actions/AppleScriptRunner.h"
#include "base/TaskQueue.h"
#include "platform/FileManager.h"
#include "prefs/Preferences.h"

#include <memory>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

using Mapping = FrontItems::FilenameToPathMapping;

/// The last component, slashes after it left out; empty when there is none.
std::string_view filename(std::string_view path)
{
    const std::size_t last = path.find_last_not_of('/');
    path = path.substr(0, last == std::string_view::npos ? 0 : last + 1);
    return path.substr(path.find_last_of('/') + 1);
}

/// Of two paths with the same file name the later one holds. The names match by their text alone;
/// what was known of others is kept, too.
FrontItems rebuilt(const std::vector<std::string> &paths,
                   const std::shared_ptr<const Mapping> &earlier)
{
    auto mapping = earlier ? std::make_shared<Mapping>(*earlier) : std::make_shared<Mapping>();
    auto matcher = std::make_shared<FuzzyMatch>();
    std::vector<std::string_view> filenames;
    filenames.reserve(paths.size());
    for (const std::string &path : paths) {
        const std::string_view name = filename(path);
        if (name.empty())
            continue;
        mapping->insert_or_assign(std::string(name), path);
        filenames.push_back(name);
    }
    matcher->add(filenames);
    return {.cachedMatcher = std::move(matcher), .cachedFilenameToPathMapping = std::move(mapping)};
}

} // namespace

FrontFinderSearch::FrontFinderSearch(Services services) : services_(services) {}

bool FrontFinderSearch::isFinderFrontmost() const
{
    return services_.preferences.finderQuickSearch.value() && services_.fileManager.isFrontmost();
}

FrontItems FrontFinderSearch::frontItems() const
{
    const MutexLock lock(mutex_);
    return items_;
}

std::vector<std::string> FrontFinderSearch::getPathsInCurrentFinderWindow() const
{
    if (!isFinderFrontmost())
        return {};
    auto result = AppleScriptRunner::callHandler(
        services_.appleScriptRunner.getPathsInCurrentFinderWindowAppleScript,
        AppleScriptRunner::GET_PATHS_IN_CURRENT_FINDER_WINDOW, {""});
    if (!result)
        return {};
    const auto list = std::move(*result).coerceToList();
    if (!list)
        return {};
    std::vector<std::string> paths;
    paths.reserve(list->numberOfItems());
    for (std::size_t place = 1; place <= list->numberOfItems(); ++place) {
        if (auto path = list->at(place).stringValue())
            paths.push_back(std::move(*path));
    }
    return paths;
}

void FrontFinderSearch::refresh(std::function<void()> completion)
{
    const std::uint64_t generation = ++generation_;
    // Nothing else is kept before this refresh is, or else it is overtaken.
    services_.background.post([this, generation, earlier = frontItems().cachedFilenameToPathMapping,
                               completion = std::move(completion)]() mutable {
        FrontItems items = rebuilt(getPathsInCurrentFinderWindow(), earlier);
        services_.main.post([this, generation, items = std::move(items),
                             completion = std::move(completion)]() mutable {
            if (generation != generation_)
                return;
            keep(std::move(items));
            completion();
        });
    });
}

void FrontFinderSearch::forget()
{
    ++generation_;
    keep({.cachedMatcher = nullptr,
          .cachedFilenameToPathMapping = frontItems().cachedFilenameToPathMapping});
}

void FrontFinderSearch::keep(FrontItems items)
{
    const MutexLock lock(mutex_);
    std::swap(items_, items);
}

} // namespace quillon
