#include "indexing/SearchBaseIgnorePaths.h"

#include "indexing/SearchBaseFinder.h"

#include <string>
#include <utility>
#include <vector>

namespace quillon {

SearchBaseIgnorePaths::SearchBaseIgnorePaths(SearchBaseFinder &searchBaseFinder)
    : searchBaseFinder_(searchBaseFinder), rules_(std::make_shared<const SkipRules>())
{}

void SearchBaseIgnorePaths::refresh()
{
    std::vector<std::string> patterns;
    for (const auto &location : searchBaseFinder_.excludeLocations())
        patterns.push_back(location.pattern());
    for (const auto &location : SearchBaseFinder::builtInExcludeLocations())
        patterns.push_back(location.pattern());
    std::vector<std::string> folders;
    for (const auto &location : searchBaseFinder_.includeLocations())
        folders.push_back(location.url());
    auto rules = std::make_shared<const SkipRules>(patterns, std::move(folders));

    const MutexLock lock(mutex_);
    rules_ = std::move(rules);
}

std::shared_ptr<const SkipRules> SearchBaseIgnorePaths::rules() const
{
    const MutexLock lock(mutex_);
    return rules_;
}

bool SearchBaseIgnorePaths::shouldSkipPath(std::string_view path) const
{
    const auto rules = this->rules();
    SkipRules::State state = rules->stateOf(path);
    return rules->skipsPath(state, [&] { return path; });
}

bool SearchBaseIgnorePaths::shouldSkip(std::string_view path, std::string_view name,
                                       bool isDirectory) const
{
    if (!isDirectory)
        return false;
    const auto rules = this->rules();
    SkipRules::State state = rules->stateOf(path);
    return rules->skips(state, name, [&] { return path; });
}

} // namespace quillon
