#pragma once

#include "matching/FuzzyMatch.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace quillon {

/// Holds the items of the front file manager window as they were at one moment. Searches on several
/// threads share them, and nobody changes them.
struct FrontItems
{
    using FilenameToPathMapping = std::unordered_map<std::string, std::string>;

    /// Finds the file names. It is null when there is nothing to search.
    std::shared_ptr<const FuzzyMatch> cachedMatcher;
    /// The whole path of each file name; null when there is nothing to search.
    std::shared_ptr<const FilenameToPathMapping> cachedFilenameToPathMapping;

    /// Returns the whole path of a file name, or the name itself when its path is not known.
    std::string path(const std::string &filename) const
    {
        if (cachedFilenameToPathMapping != nullptr) {
            const auto found = cachedFilenameToPathMapping->find(filename);
            if (found != cachedFilenameToPathMapping->end())
                return found->second;
        }
        return filename;
    }
};

/// Provides the items of the front file manager window. Safe from every thread.
class FrontItemsSource
{
public:
    FrontItemsSource() = default;
    virtual ~FrontItemsSource() = default;
    FrontItemsSource(const FrontItemsSource &) = delete;
    FrontItemsSource &operator=(const FrontItemsSource &) = delete;

    /// Returns true when the user wants them searched and a file manager was in front when the
    /// panel came.
    virtual bool isFinderFrontmost() const = 0;
    virtual FrontItems frontItems() const = 0;
};

} // namespace quillon
