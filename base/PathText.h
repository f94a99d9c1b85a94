#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

/// Drops every "/" from the end of a path, except the path's first byte.
constexpr std::string_view withoutTrailingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

// In the functions below, a path is absolute and does not end with "/", except for "/" itself.

/// Returns the name at the end of a path, which is empty for "/". A text without a slash is a name.
constexpr std::string_view lastComponent(std::string_view path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

/// Returns the folder that a path is in. "/" is in itself.
constexpr std::string_view parentFolder(std::string_view path)
{
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

/// Returns the path of a name in a folder.
inline std::string pathIn(std::string_view folder, std::string_view name)
{
    return std::string(folder == "/" ? "" : folder).append("/").append(name);
}

/// Returns true when a path is the folder's own path or is below the folder.
constexpr bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    if (!path.starts_with(folder))
        return false;
    return folder == "/" || path.size() == folder.size() || path[folder.size()] == '/';
}

/// Returns true when a path is below the folder and is not the folder itself.
constexpr bool isBelow(std::string_view path, std::string_view folder)
{
    return path.size() > folder.size() && isAtOrBelow(path, folder);
}

} // namespace quillon
