// The Quillon application. A map of the code:
//
//   base/              tools that know no system: locks, task queues, texts, values
//   results/           the rows of an answer
//   platform/          services of the system as interfaces; platform/linux/ implements them, a
//                      room for each: disk, settings, watching, bus, applications, session,
//                      windows, hotkey, filemanagers, updates
//   prefs/             typed settings over the defaults store, bookmarks of the folders to search
//   indexing/          what is indexed (SearchBaseFinder), what is skipped, the crawl, the watcher
//   matching/          the tree of all paths, fuzzy scores and ranking, use counts
//   core/              SearchBase: the index that ties the three above together
//   actions/           the user's actions: what Return does with the chosen row
//   launcher/          the small programs: "quillon", the command that starts this application or
//                      reaches the running one; "open", which finds applications by name
//   fetcher/           "fetch-feed", which fetches the list of releases for app/update/
//   shortcut/          the global shortcut: among the settings, and bound to the panel
//   app/               this folder: AppDelegate joins the objects to a program, SetUpFlow shows
//                      what comes before the panel and builds the index, WindowTracker knows the
//                      windows, DesktopServices holds the platform's services, SearchEngine the
//                      index and what searches it
//   app/panel/         the search panel
//   app/setup/         the question about the file manager, the first set-up, the rebuild window
//   app/preferences/   the preferences window
//   app/update/        newer releases and feedback
//   app/widgets/       what the windows share
//
// Start: the command looks for a running instance on the session bus and hands it the request
// (launcher/StartCommand); without one it turns into this program. main() waits for settings that
// can be used (SettingsGate). Then it makes an AppDelegate, which builds every object. SetUpFlow
// decides what the user sees first and begins the build on a background queue.
//
// The hot key: HotKey (a grab, or the desktop's portal) -> QLNShortcutBinder, which keeps the
// stored shortcut bound -> AppDelegate -> SearchWindow.
//
// A keystroke: SearchPanelView's field -> LightningSearchViewController (Debouncer, 50 ms) ->
// PanelSearch, which asks PanelSource on a background queue (SearchBaseSource -> SearchBase ->
// FuzzyMatch) -> back on the main queue, dropped when the text has changed since ->
// SearchResultsModel -> LightningSearchTableRowView (RowText, RowLayout, IconSource).
//
// Return: LightningSearchViewController counts the use (RecentAccessScore), takes the action that
// is bound to the keys held (ActionModelFinder), has the window hidden and hands both to
// ActionRunner, which asks FileManager, Workspace or ProcessRunner on a queue of its own.
//
// A change on the disk: FSEventStream (platform/linux/watching/) -> SearchBaseWatcher on the event
// queue (Coalesce, 3 s) -> SearchBase::update, which crawls there and applies on the main queue.

#include "app/AppDelegate.h"
#include "app/SettingsGate.h"
#include "app/Translations.h"
#include "app/widgets/QuillonStyle.h"
#include "platform/linux/applications/GioWorkspace.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/bus/SoleInstance.h"
#include "platform/linux/session/BoundedOutput.h"
#include "platform/linux/session/BusRemoteControl.h"
#include "platform/linux/session/OwnProcess.h"
#include "platform/linux/session/PortalAppearance.h"
#include "platform/linux/session/ProgramEnd.h"
#include "platform/linux/session/QtTaskQueues.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/settings/SettingsFileChanges.h"
#include "platform/linux/settings/UserCacheFile.h"
#include "platform/linux/windows/DesktopWindowSystem.h"

#include <QApplication>
#include <QIcon>
#include <QSessionManager>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;

/// The longest time that the end of the program may take. The kernel needs more time to clear up.
constexpr auto LONGEST_END = 80ms;

/// Returns the arguments that tell Qt which display to use, or nothing when there is no display, in
/// which case Qt would crash. They are arguments and not a variable, since every program that
/// Quillon starts would inherit a variable.
std::optional<std::vector<std::string>> displayArguments()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return std::vector<std::string>{};
    const auto platforms = quillon::DesktopWindowSystem::platforms();
    return platforms ? std::optional(std::vector<std::string>{"-platform", *platforms})
                     : std::nullopt;
}

/// Hands the request over when another start was faster, although no instance was running when this
/// one began. Returns the exit status.
int handOver(const quillon::RemoteControl::Request &request)
{
    quillon::BusRunningInstance instance(request.activationToken);
    if (request.action == "background" ||
        instance.request(request.action) == quillon::RunningInstance::Outcome::done)
        return EXIT_SUCCESS;
    std::fputs("quillon: the running instance does not answer\n", stderr);
    return EXIT_FAILURE;
}

/// Waits until the settings can be used. Returns the exit status if the start ends here.
std::optional<int> awaitSettings(const quillon::RemoteControl::Request &request)
{
    const std::string file = quillon::standardDefaultsPath();
    quillon::JsonDefaultsStore settings(file);
    if (quillon::SettingsGate::isOpen(settings, file))
        return std::nullopt;
    quillon::SettingsFileChanges changes(file);
    const quillon::LaunchToken none;
    quillon::GioWorkspace workspace(none);
    quillon::DesktopWindowSystem windowSystem;
    quillon::SettingsGate gate({settings, changes, workspace, windowSystem}, file);

    quillon::PortalAppearance appearance;
    appearance.onChange(
        [&appearance] { quillon::QuillonStyle::preferDark(appearance.prefersDark()); });

    quillon::PoolTaskQueue unused(1);
    quillon::BusRemoteControl remote(unused);
    const auto perform = [&gate](const quillon::RemoteControl::Request &asked) {
        asked.action == "quit" ? gate.quit() : gate.present();
    };
    if (remote.claim({.perform = perform, .find = {}, .status = {}, .use = {}}) ==
        quillon::RemoteControl::Claim::taken)
        return handOver(request);
    return gate.wait() ? std::nullopt : std::optional(EXIT_FAILURE);
}

/// Checks without a session bus whether another instance is running. Returns false when one is.
bool isFirstWithoutBus(quillon::SoleInstance &sole, const std::string &action)
{
    const bool isFirst = sole.claim();
    if (isFirst)
        std::fputs("quillon: no session bus; a second start will not reach this one\n", stderr);
    else if (action != "background")
        std::fputs("quillon: it runs already, and without a session bus it cannot be reached\n",
                   stderr);
    return isFirst;
}

int run(std::vector<std::string> arguments, const quillon::RemoteControl::Request &request)
{
    // Qt needs both as long as the application lives.
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    auto argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);

    const quillon::ProgramEnd end(LONGEST_END);
    // Its claim ends when the display has given the shortcut back.
    quillon::SoleInstance sole;
    // The index of the last run is read while the toolkit starts.
    const quillon::UserCacheFile keptIndex(quillon::standardIndexPath());
    auto keptTree = std::async(quillon::IndexKeeper::read, std::cref(keptIndex));
    QApplication application(argc, argv.data());
    QApplication::setStyle(new quillon::QuillonStyle); // the application's, which deletes it
    quillon::translateApplication(application);
    QApplication::setApplicationName(QStringLiteral("quillon"));
    QApplication::setDesktopFileName(QStringLiteral("org.quillon.Quillon"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/quillon/icon.svg")));
    // "Start at login" decides whether the next session has the program, and not what ran last.
    QObject::connect(
        &application, &QGuiApplication::saveStateRequest, &application,
        [](QSessionManager &session) { session.setRestartHint(QSessionManager::RestartNever); });

    if (const auto status = awaitSettings(request))
        return *status;
    const quillon::BoundedOutput output(fileno(stdout));
    quillon::AppDelegate delegate(std::move(keptTree));
    quillon::BusRemoteControl remote(delegate.backgroundQueue());
    auto handlers = delegate.remoteHandlers();
    handlers.lost = [&sole] { sole.claim(); };
    const auto claim = remote.claim(std::move(handlers));
    if (claim == quillon::RemoteControl::Claim::taken)
        return handOver(request);
    // An instance that was started without this bus, or that lost it, would keep the shortcut.
    if (claim == quillon::RemoteControl::Claim::owner)
        quillon::SoleInstance::endOther();
    if (claim == quillon::RemoteControl::Claim::unavailable &&
        !isFirstWithoutBus(sole, request.action))
        return request.action == "background" ? EXIT_SUCCESS : EXIT_FAILURE;

    delegate.applicationDidFinishLaunching(request);
    return QApplication::exec();
}

} // namespace

/// The only argument, if there is one, is the request: an action of RemoteControl, or "background"
/// for a start that shows nothing.
int main(int argc, char **argv)
{
    quillon::OwnProcess::keepHeapSmall();
    Q_INIT_RESOURCE(quillon);
    const auto display = displayArguments();
    if (!display) {
        std::fputs("quillon: no display to show the panel on\n", stderr);
        return EXIT_FAILURE;
    }
    std::vector<std::string> arguments(argv, argv + argc);
    arguments.insert(arguments.end(), display->begin(), display->end());
    // Otherwise the toolkit would use the token for a window that is never shown.
    const std::string token = quillon::takeActivationToken();
    return run(std::move(arguments),
               {.action = argc > 1 ? argv[1] : "activate", .activationToken = token});
}
