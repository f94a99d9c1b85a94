#pragma once

#include <string_view>

namespace quillon {

/// Finds the parent of a path by its text alone.
class StringPathParent
{
public:
    /// The path without its last component; a slash at the end is not one. The parent of "/" is
    /// "/" and that of a relative path of one component is ".". A view of the path or of a
    /// constant.
    static std::string_view getParentFolderPath(std::string_view path);
};

/// Drops one "/" from the end of a path of two or more bytes.
std::string_view normalizePath(std::string_view path);

} // namespace quillon
