#include "indexing/SearchBaseFinder.h"

#include "indexing/SearchLocations.h"
#include "prefs/PreferenceKeys.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

constexpr std::array<std::string_view, 18> BUILT_IN_EXCLUDE_PATTERNS{
    "/Library/",
    "/.DocumentRevisions-V100/",
    "/private/var/",
    "/private/tmp/",
    "/opt/homebrew/",
    "/Music Library.musiclibrary/",
    "/.git/",
    "xcuserdata",
    "Xcode/DerivedData",
    "/Assets.xcassets/",
    "Code/Cache/Cache_Data",
    "Library/Group Containers",
    "/.Trash/",
    "/.npm/",
    "/Photos Library.photoslibrary",
    "/Photo Booth Library",
    "/tmp/cache/",
    "/Sparkle.framework/Versions/",
};

template <typename Location, typename Texts>
std::vector<Location> locationsOf(const Texts &texts)
{
    std::vector<Location> locations;
    locations.reserve(texts.size());
    for (const auto &text : texts)
        locations.emplace_back(std::string(text));
    return locations;
}

} // namespace

SearchBaseFinder::SearchBaseFinder(DefaultsStore &store, const FolderIdentity &folders,
                                   std::FILE *diagnostics)
    : bookmarks(store, folders, std::string(PreferenceKeys::BOOKMARKS), diagnostics),
      excludePatternsPreferences(store, std::string(PreferenceKeys::EXCLUDE_FOLDER_PATTERNS), true,
                                 defaultExcludePatterns()),
      includeFilePatternPreferences(
          store, std::string(PreferenceKeys::INCLUDE_FILE_PATTERNS), true,
          {"xcodeproj", "xcworkspace", "sublime-project", "sublime-workspace"})
{}

std::vector<IncludePathSearchBaseLocation> SearchBaseFinder::includeLocations()
{
    return locationsOf<IncludePathSearchBaseLocation>(SearchLocations::of(*this).folders);
}

std::vector<ExcludePatternSearchBaseLocation> SearchBaseFinder::excludeLocations() const
{
    return locationsOf<ExcludePatternSearchBaseLocation>(excludePatternsPreferences.values());
}

std::vector<IncludeFilePatternSearchBaseLocation>
SearchBaseFinder::includeFilePatternLocations() const
{
    return locationsOf<IncludeFilePatternSearchBaseLocation>(
        includeFilePatternPreferences.values());
}

std::vector<ExcludePatternSearchBaseLocation> SearchBaseFinder::builtInExcludeLocations()
{
    return locationsOf<ExcludePatternSearchBaseLocation>(BUILT_IN_EXCLUDE_PATTERNS);
}

std::vector<std::string> SearchBaseFinder::patternsInForce() const
{
    std::vector<std::string> patterns = excludePatternsPreferences.values();
    patterns.insert(patterns.end(), BUILT_IN_EXCLUDE_PATTERNS.begin(),
                    BUILT_IN_EXCLUDE_PATTERNS.end());
    return patterns;
}

std::vector<std::string> SearchBaseFinder::defaultExcludePatterns()
{
    return {"node_modules", "_extras", "wp-content", "wp-admin", "wp-includes", ".pgadmin"};
}

void SearchBaseFinder::remove(const SearchBaseLocation &location)
{
    if (const auto *folder = dynamic_cast<const IncludePathSearchBaseLocation *>(&location))
        bookmarks.remove(folder->url());
    else if (const auto *exclude =
                 dynamic_cast<const ExcludePatternSearchBaseLocation *>(&location))
        excludePatternsPreferences.remove(exclude->pattern());
    else if (const auto *extension =
                 dynamic_cast<const IncludeFilePatternSearchBaseLocation *>(&location))
        includeFilePatternPreferences.remove(extension->pattern());
    if (const auto delegate = delegate_.lock())
        delegate->reloadList();
}

void SearchBaseFinder::setDelegate(std::weak_ptr<SearchBaseFinderDelegate> delegate)
{
    delegate_ = std::move(delegate);
}

} // namespace quillon
