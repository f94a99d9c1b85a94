#include "platform/linux/GioWorkspace.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <cstdlib>
#include <memory>
#include <string_view>

#include <unistd.h>

namespace quillon {

namespace {

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using Object = std::unique_ptr<T, Unref>;

/// Runs in the started program: a session of its own, so that a Control-C or the end of the
/// terminal that quillon was started from does not end it.
void detach(gpointer)
{
    setsid();
}

bool launch(GAppInfo *application, GFile *file)
{
    const std::unique_ptr<char, decltype(&g_free)> uri(g_file_get_uri(file), &g_free);
    GList uris{uri.get(), nullptr, nullptr};
    if (!G_IS_DESKTOP_APP_INFO(application))
        return g_app_info_launch_uris(application, &uris, nullptr, nullptr);
    // Without G_SPAWN_DO_NOT_REAP_CHILD nothing of the started program is left to us.
    return g_desktop_app_info_launch_uris_as_manager(G_DESKTOP_APP_INFO(application), &uris,
                                                     nullptr, G_SPAWN_SEARCH_PATH, detach, nullptr,
                                                     nullptr, nullptr, nullptr);
}

/// Null when there is none or the item is gone.
Object<GAppInfo> defaultApplication(GFile *file)
{
    return Object<GAppInfo>(g_file_query_default_handler(file, nullptr, nullptr));
}

} // namespace

bool GioWorkspace::open(const std::string &path)
{
    const Object<GFile> file(g_file_new_for_path(path.c_str()));
    const Object<GAppInfo> application = defaultApplication(file.get());
    return application && launch(application.get(), file.get());
}

std::string GioWorkspace::applicationToOpen(const std::string &path) const
{
    const Object<GFile> file(g_file_new_for_path(path.c_str()));
    const Object<GAppInfo> application = defaultApplication(file.get());
    const char *id = application ? g_app_info_get_id(application.get()) : nullptr;
    return id ? id : "";
}

std::vector<std::string> GioWorkspace::iconNames(const std::string &path) const
{
    std::vector<std::string> names;
    const Object<GFile> file(g_file_new_for_path(path.c_str()));
    const Object<GFileInfo> info(g_file_query_info(file.get(), G_FILE_ATTRIBUTE_STANDARD_ICON,
                                                   G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    GIcon *icon = info ? g_file_info_get_icon(info.get()) : nullptr;
    if (!icon || !G_IS_THEMED_ICON(icon))
        return names;
    for (auto name = g_themed_icon_get_names(G_THEMED_ICON(icon)); *name; ++name) {
        // Line drawings in one colour, the second by its type's name; the rows show the others.
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
