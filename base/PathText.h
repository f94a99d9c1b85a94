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

} // namespace quillon
