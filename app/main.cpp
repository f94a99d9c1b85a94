// The Quillon application. A map of the code:
//
//   platform/          services of the desktop, abstract; platform/linux/ implements them
//   prefs/             typed settings over the defaults store, bookmarks of the folders to search
//   indexing/          what is indexed (SearchBaseFinder), what is skipped, the crawl, the watcher
//   matching/          the tree of all paths, fuzzy scores and ranking, use counts
//   core/              SearchBase: the index that ties the three above together
//   actions/           the user's actions: what Return does with the chosen row
//   launcher/          the program "open", which finds applications by name
//   shortcut/          the global shortcut: among the settings, and bound to the panel
//   app/               this folder: the objects joined to a program; app/panel/ and its neighbours
//                      are the windows, app/widgets/ what they share
//
// Start: main() looks for a running instance on the session bus and hands it the request; without
// one it makes an AppDelegate, which builds every object, begins the build on a background queue
// and shows the panel.
//
// The hot key: HotKey (a grab, or the desktop's portal) -> QLNShortcutBinder, which keeps the
// stored shortcut bound -> AppDelegate -> SearchWindow.
//
// A keystroke: SearchPanelView's field -> LightningSearchViewController (Debouncer, 50 ms) ->
// PanelSource on a background queue (SearchBaseSource -> SearchBase -> FuzzyMatch) -> back on the
// main queue, dropped when the text has changed since -> SearchResultsModel ->
// LightningSearchTableRowView (RowText, RowLayout, IconSource).
//
// Return: LightningSearchViewController counts the use (RecentAccessScore), takes the action that
// is bound to the keys held (ActionModelFinder), has the window hidden and hands both to
// ActionRunner, which asks FileManager, Workspace or ProcessRunner on a queue of its own.
//
// A change on the disk: FSEventStream (platform/linux/watching/) -> SearchBaseWatcher on the event
// queue (Coalesce, 3 s) -> SearchBase::update, which crawls there and applies on the main queue.

#include "app/AppDelegate.h"
#include "app/Translations.h"
#include "platform/linux/BusRemoteControl.h"
#include "platform/linux/TerminationSignals.h"

#include <QApplication>
#include <QIcon>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

constexpr int USAGE_ERROR = 2;

struct Options
{
    bool toggle = false;
    bool show = false;
    bool quit = false;

    /// What a running instance is asked to do; a plain second start shows the panel.
    std::string action() const { return quit ? "quit" : toggle ? "toggle" : "show"; }
};

/// An exit status when there is nothing more to do.
std::optional<int> parse(int argc, char **argv, Options &options)
{
    CLI::App parser("Finds folders by a part of their name and opens them.", "quillon");
    parser.set_version_flag("--version", "quillon " QUILLON_VERSION);
    parser.add_flag("--toggle", options.toggle, "Show the panel, or hide it when it is shown");
    parser.add_flag("--show", options.show, "Show the panel");
    parser.add_flag("--quit", options.quit, "End the running instance");
    parser.require_option(0, 1);
    try {
        parser.parse(argc, argv);
    } catch (const CLI::Success &success) {
        return parser.exit(success);
    } catch (const CLI::ParseError &error) {
        std::fprintf(stderr, "quillon: %s\n", error.what());
        return USAGE_ERROR;
    }
    return std::nullopt;
}

/// A place that Qt can draw on; without one it would end the program with a core dump.
bool hasDisplay()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return true;
    // A native Wayland window may not place itself, so X11 goes first where there is a choice.
    if (!qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
        return true;
    }
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int run(int &argc, char **argv, const Options &options)
{
    QApplication application(argc, argv);
    quillon::translateApplication(application);
    QApplication::setApplicationName(QStringLiteral("quillon"));
    QApplication::setDesktopFileName(QStringLiteral("org.quillon.Quillon"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/quillon/icon.svg")));

    quillon::AppDelegate delegate;
    const quillon::TerminationSignals signals([&delegate] { delegate.terminate(); });
    quillon::BusRemoteControl remote;
    const auto claim =
        remote.claim([&delegate](const std::string &action) { delegate.perform(action); });
    if (claim == quillon::RemoteControl::Claim::taken)
        return remote.send(options.action()) ? EXIT_SUCCESS : EXIT_FAILURE;
    if (claim == quillon::RemoteControl::Claim::unavailable)
        std::fputs("quillon: no session bus; a second start will not reach this one\n", stderr);

    delegate.bindShortcut();
    // The bus starts the program for a request that it delivers afterwards.
    delegate.start(!qEnvironmentVariableIsSet("DBUS_STARTER_ADDRESS"));
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    Q_INIT_RESOURCE(quillon);
    Options options;
    if (const auto status = parse(argc, argv, options))
        return *status;
    // Before Qt touches the display: a request to a running instance takes no time.
    if (quillon::BusRemoteControl().send(options.action()))
        return EXIT_SUCCESS;
    if (options.quit) {
        std::fputs("quillon: nothing to quit, it is not running\n", stderr);
        return EXIT_FAILURE;
    }
    if (!hasDisplay()) {
        std::fputs("quillon: no display to show the panel on\n", stderr);
        return EXIT_FAILURE;
    }
    return run(argc, argv, options);
}
