#include "platform/linux/applications/GioWorkspace.h"

#include "base/FileUri.h"
#include "platform/linux/applications/Applications.h"
#include "platform/linux/bus/ActivationToken.h"

#include <gio/gio.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace quillon {

namespace {

/// Returns the application that opens the file by default, or null when there is none or the item
/// is gone.
ObjectRef<GAppInfo> defaultApplication(GFile *file)
{
    return ObjectRef<GAppInfo>(g_file_query_default_handler(file, nullptr, nullptr));
}

} // namespace

bool GioWorkspace::open(const std::string &path)
{
    const ObjectRef<GFile> file(g_file_new_for_path(path.c_str()));
    const ObjectRef<GAppInfo> application = defaultApplication(file.get());
    return application && launch(application.get(), fileUri(path), token_.text());
}

bool GioWorkspace::openLink(const std::string &address)
{
    const std::unique_ptr<char, decltype(&g_free)> scheme(g_uri_parse_scheme(address.c_str()),
                                                          &g_free);
    const ObjectRef<GAppInfo> application(
        scheme ? g_app_info_get_default_for_uri_scheme(scheme.get()) : nullptr);
    return application && launch(application.get(), address, token_.text());
}

std::string GioWorkspace::applicationToOpen(const std::string &path) const
{
    const ObjectRef<GFile> file(g_file_new_for_path(path.c_str()));
    const ObjectRef<GAppInfo> application = defaultApplication(file.get());
    const char *id = application ? g_app_info_get_id(application.get()) : nullptr;
    return id ? id : "";
}

std::vector<std::string> GioWorkspace::iconNames(const std::string &path) const
{
    std::vector<std::string> names;
    const ObjectRef<GFile> file(g_file_new_for_path(path.c_str()));
    const ObjectRef<GFileInfo> info(g_file_query_info(file.get(), G_FILE_ATTRIBUTE_STANDARD_ICON,
                                                      G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    GIcon *icon = info ? g_file_info_get_icon(info.get()) : nullptr;
    if (!icon || !G_IS_THEMED_ICON(icon))
        return names;
    for (auto name = g_themed_icon_get_names(G_THEMED_ICON(icon)); *name; ++name) {
        // The rows show coloured icons. Symbolic ones have one colour, and so has "inode-directory"
        // in most themes.
        const std::string_view text(*name);
        if (!text.ends_with("-symbolic") && text != "inode-directory")
            names.emplace_back(text);
    }
    return names;
}

bool GioWorkspace::isFolder(const std::string &path) const
{
    return g_file_test(path.c_str(), G_FILE_TEST_IS_DIR);
}

std::string GioWorkspace::resolvingSymlinks(const std::string &path) const
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                               &std::free);
    return resolved ? resolved.get() : path;
}

} // namespace quillon
