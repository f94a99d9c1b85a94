#include "indexing/SearchBaseIgnorePaths.h"

#include "indexing/SearchLocations.h"

#include <utility>

namespace quillon {

SearchBaseIgnorePaths::SearchBaseIgnorePaths(SearchBaseFinder &searchBaseFinder)
    : searchBaseFinder_(searchBaseFinder), rules_(std::make_shared<const SkipRules>())
{}

void SearchBaseIgnorePaths::refresh()
{
    refresh(SearchLocations::of(searchBaseFinder_));
}

void SearchBaseIgnorePaths::refresh(const SearchLocations &locations)
{
    auto rules = locations.rules();
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
