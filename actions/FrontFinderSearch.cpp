#include "actions/FrontFinderSearch.h"

#include "actions/AppleScriptRunner.h"
#include "base/PathText.h"
#include "base/TaskQueue.h"
#include "platform/FileManager.h"
#include "prefs/Preferences.h"

#include <memory>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

/// Returns the last component of a path without the slashes behind it. The result is empty when
/// there is none.
std::string_view filename(std::string_view path)
{
    return lastComponent(withoutTrailingSlashes(path));
}

/// Makes items of the paths. Items are matched only by their names, so of two paths with the same
/// name the later one is kept.
FrontItems itemsAt(const std::vector<std::string> &paths)
{
    auto mapping = std::make_shared<FrontItems::FilenameToPathMapping>();
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
    services_.background.post(
        [this, generation = ++generation_, completion = std::move(completion)]() mutable {
            FrontItems items = itemsAt(getPathsInCurrentFinderWindow());
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
    keep({});
}

void FrontFinderSearch::keep(FrontItems items)
{
    const MutexLock lock(mutex_);
    std::swap(items_, items);
}

} // namespace quillon
