#include "actions/ActionRunner.h"

#include "base/TaskQueue.h"
#include "platform/Clipboard.h"
#include "platform/FileManager.h"
#include "platform/Workspace.h"
#include "prefs/Preferences.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

/// Replaces each occurrence of the first character in the text by a backslash and the second.
struct Escape
{
    char character;
    char letter;
};

std::string escaped(std::string_view text, std::initializer_list<Escape> escapes)
{
    std::string result;
    for (const char character : text) {
        const auto *escape = std::ranges::find(escapes, character, &Escape::character);
        if (escape == escapes.end())
            result += character;
        else
            (result += '\\') += escape->letter;
    }
    return result;
}

std::string onOneLine(std::string_view text)
{
    return escaped(text, {{'\\', '\\'}, {'"', '"'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}});
}

/// In one write, so that lines of several threads do not mix.
void writeLine(std::FILE *stream, std::string line)
{
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stream);
    std::fflush(stream);
}

/// The absolute path without its last component, by its text alone.
std::string parentOf(const std::string &path)
{
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t slash = end == std::string::npos ? end : path.rfind('/', end);
    if (slash == std::string::npos)
        return "/";
    const std::size_t parentEnd = path.find_last_not_of('/', slash);
    return parentEnd == std::string::npos ? "/" : path.substr(0, parentEnd + 1);
}

} // namespace

ActionRunner::ActionRunner(const Services &services, const Preferences &preferences,
                           const AppleScriptRunner &appleScriptRunner, TaskQueue &queue,
                           std::string programsFolder, Streams streams)
    : services_(services),
      preferences_(preferences),
      appleScriptRunner_(appleScriptRunner),
      queue_(queue),
      programsFolder_(std::move(programsFolder)),
      streams_(streams)
{}

ActionType ActionRunner::typeFor(const ActionModel &action, const SearchBaseResult &result) const
{
    if (result.type() != SearchBaseResultType::inFrontFinder)
        return action.actionType;
    const auto &behavior = preferences_.quickSearchBehavior.selected();
    return behavior == Preferences::QuickSearchBehavior::select ? ActionType::showParentInFinder
                                                                : ActionType::openInDefaultApp;
}

void ActionRunner::runAction(const ActionModel &action, const SearchBaseResultRef &result)
{
    if (typeFor(action, *result) == ActionType::copyPathToClipboard)
        services_.clipboard.setString(result->path());
    else
        queue_.post([this, action, result] { perform(action, *result); });
}

void ActionRunner::perform(const ActionModel &action, const SearchBaseResult &result)
{
    const std::string &path = result.path();
    const ActionType type = typeFor(action, result);
    if (type == ActionType::openInDefaultApp)
        openInDefaultApp(path);
    else if (type == ActionType::openApplication)
        openApplication(action.actionTarget.key(), path);
    else if (type == ActionType::showInFinder)
        showInFinder(path);
    else if (type == ActionType::showParentInFinder)
        showParentInFinder(path);
    else if (type == ActionType::executeShellCommand)
        executeShellCommand(action.actionTarget.key(), path);
}

void ActionRunner::openInDefaultApp(const std::string &path)
{
    Workspace &workspace = services_.workspace;
    const auto isForFileManager = [this](const std::string &application) {
        // Whoever names a file manager in the settings wants it in place of any other one.
        const FileManager &fileManager = services_.fileManager;
        return application == fileManager.application() || fileManager.isFileManager(application);
    };
    if (workspace.isFolder(path) && isForFileManager(workspace.applicationToOpen(path)))
        showInFinder(path);
    else
        workspace.open(path);
}

void ActionRunner::showInFinder(const std::string &path)
{
    const std::string folder = services_.workspace.resolvingSymlinks(path);
    const auto &behavior = preferences_.openInFinderBehavior.selected();
    if (behavior == Preferences::OpenInFinder::newWindow)
        services_.fileManager.openNewWindow(folder);
    else
        AppleScriptRunner::callHandler(appleScriptRunner_.openInExistingFinderWindowAppleScript,
                                       AppleScriptRunner::OPEN_IN_EXISTING_FINDER_WINDOW, {folder});
}

void ActionRunner::showParentInFinder(const std::string &path)
{
    const Workspace &workspace = services_.workspace;
    services_.fileManager.select(workspace.resolvingSymlinks(path),
                                 workspace.resolvingSymlinks(parentOf(path)));
}

void ActionRunner::openApplication(const std::string &application, const std::string &path)
{
    // Quotes alone are escaped, on purpose: the shell expands dollar signs and backquotes.
    const std::string command =
        "open -a \"" + application + "\" \"" + escaped(path, {{'"', '"'}}) + "\"";
    start({.executable = "/bin/bash", .arguments = {"-c", command}, .firstOnPath = programsFolder_},
          [](const ProcessRunner::Output &) {});
}

void ActionRunner::executeShellCommand(const std::string &executable, const std::string &path)
{
    start({.executable = executable, .arguments = {path}},
          [stream = streams_.output](const ProcessRunner::Output &output) {
              writeLine(stream, "Shell script result: (\"" + onOneLine(output.standardOutput) +
                                    "\", \"" + onOneLine(output.standardError) + "\")");
          });
}

void ActionRunner::start(const ProcessRunner::Command &command, ProcessRunner::Ended ended)
{
    if (const auto failure = services_.processRunner.run(command, std::move(ended)))
        writeLine(streams_.diagnostics, "quillon: " + onOneLine(*failure));
}

} // namespace quillon
