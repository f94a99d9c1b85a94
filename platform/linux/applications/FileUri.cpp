#include "platform/linux/applications/FileUri.h"

#include "platform/linux/bus/GioPointers.h"

namespace quillon {

std::string fileUri(const std::string &path)
{
    const ObjectRef<GFile> file(g_file_new_for_path(path.c_str()));
    return GString8(g_file_get_uri(file.get())).get();
}

std::optional<std::string> localPath(const std::string &uri)
{
    if (!uri.starts_with("file://"))
        return std::nullopt;
    const ObjectRef<GFile> file(g_file_new_for_uri(uri.c_str()));
    const GString8 path(g_file_get_path(file.get()));
    return path ? std::optional<std::string>(path.get()) : std::nullopt;
}

} // namespace quillon
