#include "indexing/SearchBaseLocation.h"

#include <utility>

namespace quillon {

IncludePathSearchBaseLocation::IncludePathSearchBaseLocation(std::string url)
    : SearchBaseLocation(Types::INCLUDE_PATH), url_(std::move(url))
{}

ExcludePatternSearchBaseLocation::ExcludePatternSearchBaseLocation(std::string pattern)
    : SearchBaseLocation(Types::EXCLUDE_PATTERN), pattern_(std::move(pattern))
{}

IncludeFilePatternSearchBaseLocation::IncludeFilePatternSearchBaseLocation(std::string pattern)
    : SearchBaseLocation(Types::INCLUDE_FILE_PATTERN), pattern_(std::move(pattern))
{}

} // namespace quillon
