#pragma once

#include <string_view>

namespace quillon {

/// Drops every "/" from the end of a path, except the path's first byte.
constexpr std::string_view withoutTrailingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

/// Whether a path is the folder's own path or lies below it. Both are absolute and neither ends
/// with
/// "/", except for "/" itself.
constexpr bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    if (!path.starts_with(folder))
        return false;
    return folder == "/" || path.size() == folder.size() || path[folder.size()] == '/';
}

} // namespace quillon
