#include "base/FileUri.h"

#include "base/PathText.h"

#include <glib.h>

#include <memory>
#include <string_view>

namespace quillon {

namespace {

using GlibText = std::unique_ptr<char, decltype(&g_free)>;

bool isThisMachine(std::string_view host)
{
    return host.empty() || host == "localhost" || host == g_get_host_name();
}

} // namespace

std::string fileUri(const std::string &path)
{
    const std::string trimmed(withoutTrailingSlashes(path));
    const GlibText uri(g_filename_to_uri(trimmed.c_str(), nullptr, nullptr), &g_free);
    return uri ? uri.get() : std::string();
}

std::optional<std::string> localPath(const std::string &uri)
{
    char *named = nullptr;
    const GlibText path(g_filename_from_uri(uri.c_str(), &named, nullptr), &g_free);
    const GlibText host(named, &g_free);
    if (!path || !isThisMachine(host ? host.get() : ""))
        return std::nullopt;
    return std::string(withoutTrailingSlashes(path.get()));
}

} // namespace quillon
