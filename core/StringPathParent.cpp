#include "core/StringPathParent.h"

#include "base/PathText.h"

namespace quillon {

std::string_view StringPathParent::getParentFolderPath(std::string_view path)
{
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return ".";
    return withoutTrailingSlashes(path.substr(0, slash + 1));
}

std::string_view normalizePath(std::string_view path)
{
    if (path.size() >= 2 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

} // namespace quillon
