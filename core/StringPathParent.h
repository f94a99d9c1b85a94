#pragma once

#include <string_view>

namespace quillon {

/// Finds the parent of a path by its text alone.
class StringPathParent
{
public:
    /// Returns the path without its last component. A slash at the end is not a component. The
    /// parent of "/" is "/", and the parent of a relative path of one component is ".". The result
    /// is a view of the path or of a constant.
    static std::string_view getParentFolderPath(std::string_view path);
};

/// Drops one "/" from the end of a path of two or more bytes.
std::string_view normalizePath(std::string_view path);

} // namespace quillon
