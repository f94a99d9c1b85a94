#pragma once

#include "matching/FuzzyMatch.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// The items that the front file manager window shows, for searches among them. Safe from every
/// thread.
class FrontFinderSearch
{
public:
    FrontFinderSearch() = default;
    virtual ~FrontFinderSearch() = default;
    FrontFinderSearch(const FrontFinderSearch &) = delete;
    FrontFinderSearch &operator=(const FrontFinderSearch &) = delete;

    /// Whether the user wants it and a file manager was in front.
    virtual bool isActive() const = 0;
    /// The items by the texts shown; null when there are none to search.
    virtual std::shared_ptr<const FuzzyMatch> matcher() const = 0;
    /// The whole path of a text shown; absent when it is not known.
    virtual std::optional<std::string> fullPath(std::string_view text) const = 0;
};

} // namespace quillon
