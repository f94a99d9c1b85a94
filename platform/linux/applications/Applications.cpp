#include "platform/linux/applications/Applications.h"

#include "platform/linux/applications/StartedProgram.h"
#include "platform/linux/bus/ActivationToken.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace quillon {

namespace {

constexpr std::string_view SUFFIX = ".desktop";

// Without G_SPAWN_DO_NOT_REAP_CHILD this process need not wait for the started program. The
// program's outputs are discarded, since a program that reads our output would otherwise wait for
// its end.
constexpr auto FLAGS = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                G_SPAWN_STDERR_TO_DEV_NULL);

/// Runs in the started process and gives it a session of its own. Otherwise a Control-C in the
/// terminal that quillon was started from, or that terminal's end, would end the program.
void detach(gpointer)
{
    takeAllSignals();
    setsid();
}

/// Runs in the started process as detach() does, and enters the folder.
void detachIn(gpointer folder)
{
    detach(nullptr);
    if (chdir(static_cast<const char *>(folder)) != 0)
        _exit(EXIT_FAILURE);
}

/// Returns the token that goes to an application which the bus starts.
char *tokenOf(GAppLaunchContext *context, GAppInfo *, GList *)
{
    const StringList environment(g_app_launch_context_get_environment(context));
    return g_strdup(g_environ_getenv(environment.get(), ACTIVATION_VARIABLES.front()));
}

/// Returns what passes the token on, or null when there is none.
ObjectRef<GAppLaunchContext> contextWith(const std::string &token)
{
    if (token.empty())
        return nullptr;
    static const GType TYPE = g_type_register_static_simple(
        G_TYPE_APP_LAUNCH_CONTEXT, "QuillonLaunchContext", sizeof(GAppLaunchContextClass),
        [](gpointer kind, gpointer) {
            static_cast<GAppLaunchContextClass *>(kind)->get_startup_notify_id = tokenOf;
        },
        sizeof(GAppLaunchContext), nullptr, GTypeFlags(0));
    ObjectRef<GAppLaunchContext> context(
        static_cast<GAppLaunchContext *>(g_object_new(TYPE, nullptr)));
    // An application that asks for no sign of its start gets the token by these alone.
    for (const char *variable : ACTIVATION_VARIABLES)
        g_app_launch_context_setenv(context.get(), variable, token.c_str());
    return context;
}

bool start(GDesktopAppInfo *application, GList *uris, GAppLaunchContext *context,
           GSpawnChildSetupFunc setUp, gpointer argument)
{
    return g_desktop_app_info_launch_uris_as_manager(application, uris, context, FLAGS, setUp,
                                                     argument, nullptr, nullptr, nullptr);
}

/// Returns the application without its activation over the bus, which passes on no working folder.
/// Returns null when the application's file is gone.
ObjectRef<GDesktopAppInfo> asProgram(GDesktopAppInfo *application)
{
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> file(g_key_file_new(),
                                                                      &g_key_file_unref);
    const char *name = g_desktop_app_info_get_filename(application);
    if (!name || !g_key_file_load_from_file(file.get(), name, G_KEY_FILE_NONE, nullptr))
        return nullptr;
    return ObjectRef<GDesktopAppInfo>(g_desktop_app_info_new_from_keyfile(file.get()));
}

void addId(std::vector<std::string> &ids, GAppInfo *application)
{
    const char *id = application ? g_app_info_get_id(application) : nullptr;
    if (id && std::ranges::find(ids, id) == ids.end())
        ids.emplace_back(id);
}

} // namespace

ObjectRef<GDesktopAppInfo> installedApplication(const std::string &id)
{
    if (id.empty())
        return nullptr;
    const std::string name = id.ends_with(SUFFIX) ? id : id + std::string(SUFFIX);
    return ObjectRef<GDesktopAppInfo>(g_desktop_app_info_new(name.c_str()));
}

std::vector<std::string> folderApplications()
{
    std::vector<std::string> ids;
    const ObjectRef<GAppInfo> preferred(g_app_info_get_default_for_type(FOLDER_TYPE, FALSE));
    addId(ids, preferred.get());
    GList *all = g_app_info_get_all_for_type(FOLDER_TYPE);
    for (GList *item = all; item; item = item->next)
        addId(ids, G_APP_INFO(item->data));
    g_list_free_full(all, g_object_unref);
    return ids;
}

bool isFileManager(GDesktopAppInfo *application)
{
    const char *categories = g_desktop_app_info_get_categories(application);
    return categories && std::string_view(categories).find("FileManager") != std::string_view::npos;
}

bool launch(GAppInfo *application, const std::string &uri, const std::string &activationToken)
{
    std::string argument = uri;
    GList uris{argument.data(), nullptr, nullptr};
    const ObjectRef<GAppLaunchContext> context = contextWith(activationToken);
    if (!G_IS_DESKTOP_APP_INFO(application))
        return g_app_info_launch_uris(application, &uris, context.get(), nullptr);
    GDesktopAppInfo *const desktop = G_DESKTOP_APP_INFO(application);
    // A request over the bus must be sent before this process may end.
    const ObjectRef<GDBusConnection> bus(g_desktop_app_info_get_boolean(desktop, "DBusActivatable")
                                             ? g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)
                                             : nullptr);
    const bool isStarted = start(desktop, &uris, context.get(), detach, nullptr);
    if (bus)
        g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
    return isStarted;
}

bool launchIn(GDesktopAppInfo *application, const std::string &folder,
              const std::string &activationToken)
{
    std::string argument = folder;
    const auto program = asProgram(application);
    return program && start(program.get(), nullptr, contextWith(activationToken).get(), detachIn,
                            argument.data());
}

bool startProgram(const std::vector<std::string> &arguments, const std::string &activationToken,
                  const std::string &folder)
{
    std::vector<std::string> texts = arguments;
    std::vector<char *> argv;
    argv.reserve(texts.size() + 1);
    for (std::string &text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);
    const ObjectRef<GAppLaunchContext> context = contextWith(activationToken);
    const StringList environment(context ? g_app_launch_context_get_environment(context.get())
                                         : nullptr);
    return g_spawn_async(folder.empty() ? nullptr : folder.c_str(), argv.data(), environment.get(),
                         FLAGS, detach, nullptr, nullptr, nullptr);
}

} // namespace quillon
