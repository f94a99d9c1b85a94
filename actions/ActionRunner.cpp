#include "actions/ActionRunner.h"

#include "base/PathText.h"
#include "base/TaskQueue.h"
#include "platform/Clipboard.h"
#include "platform/FileManager.h"
#include "platform/FolderLister.h"
#include "platform/RecentItems.h"
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

/// Writes the line in one call, so that the lines of several threads do not mix.
void writeLine(std::FILE *stream, std::string line)
{
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stream);
    std::fflush(stream);
}

/// Returns the absolute path without its last component, without asking the disk.
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

void ActionRunner::runAction(const ActionModel &action, const SearchBaseResultRef &result,
                             const Ended &ended)
{
    const Ended end = [this, ended](const std::optional<ActionFailure> &failure) {
        if (failure)
            failed_(*failure);
        if (ended)
            ended(failure);
    };
    if (typeFor(action, *result) == ActionType::copyPathToClipboard) {
        services_.clipboard.setString(result->path());
        end(std::nullopt);
    } else {
        queue_.post([this, action, result, end] { perform(action, result, end); });
    }
}

void ActionRunner::perform(const ActionModel &action, const SearchBaseResultRef &result,
                           const Ended &ended)
{
    const std::string &path = result->path();
    const ActionType type = typeFor(action, *result);
    // The folder may have come back since the row was shown.
    if (!result->awayFolder().empty() &&
        services_.folderLister.kind(path) == FolderLister::Kind::nothing)
        return ended(ActionFailure{.reason = ActionFailure::Reason::itemAway, .result = result});
    if (type == ActionType::openApplication)
        return openApplication(action.actionTarget.key(), result, ended);
    if (type == ActionType::executeShellCommand)
        return executeShellCommand(action.actionTarget.key(), result, ended);
    bool isDone = true;
    if (type == ActionType::openInDefaultApp)
        isDone = openInDefaultApp(path);
    else if (type == ActionType::showInFinder)
        isDone = showInFinder(path);
    else if (type == ActionType::showParentInFinder)
        isDone = showParentInFinder(path);
    if (!isDone)
        return ended(failureToOpen(type, result));
    if (type == ActionType::openInDefaultApp ||
        (type == ActionType::showInFinder && services_.workspace.isFolder(path)))
        enterAsRecent(path);
    ended(std::nullopt);
}

void ActionRunner::enterAsRecent(const std::string &path)
{
    if (!preferences_.hideFromRecentFiles.value())
        services_.recentItems.add(path);
}

bool ActionRunner::isForFileManager(const std::string &application) const
{
    // A file manager that is named in the settings replaces the default application for folders.
    const FileManager &fileManager = services_.fileManager;
    return application == fileManager.application() || fileManager.isFileManager(application);
}

bool ActionRunner::openInDefaultApp(const std::string &path)
{
    Workspace &workspace = services_.workspace;
    if (workspace.isFolder(path) && isForFileManager(workspace.applicationToOpen(path)))
        return showInFinder(path);
    return workspace.open(path);
}

bool ActionRunner::showInFinder(const std::string &path)
{
    // A file manager cannot show a file, but it can select one in its folder.
    if (!services_.workspace.isFolder(path))
        return showParentInFinder(path);
    const std::string folder = services_.workspace.resolvingSymlinks(path);
    if (preferences_.openInFinderBehavior.selected() == Preferences::OpenInFinder::newWindow)
        return services_.fileManager.openNewWindow(folder);
    return AppleScriptRunner::callHandler(appleScriptRunner_.openInExistingFinderWindowAppleScript,
                                          AppleScriptRunner::OPEN_IN_EXISTING_FINDER_WINDOW,
                                          {folder})
        .has_value();
}

bool ActionRunner::showParentInFinder(const std::string &path)
{
    const Workspace &workspace = services_.workspace;
    return services_.fileManager.select(workspace.resolvingSymlinks(path),
                                        workspace.resolvingSymlinks(parentOf(path)));
}

void ActionRunner::openApplication(const std::string &application,
                                   const SearchBaseResultRef &result, const Ended &ended)
{
    // Only quotes are escaped, on purpose: the shell expands dollar signs and backquotes.
    const std::string command =
        "open -a \"" + application + "\" \"" + escaped(result->path(), {{'"', '"'}}) + "\"";
    const auto end = [this, application, result, ended](const ProcessRunner::Output &output) {
        if (output.isSuccess) {
            enterAsRecent(result->path());
            return ended(std::nullopt);
        }
        const bool isGone =
            services_.folderLister.kind(result->path()) == FolderLister::Kind::nothing;
        using enum ActionFailure::Reason;
        ended(ActionFailure{.reason = isGone ? itemGone : applicationFailed,
                            .result = result,
                            .target = isGone ? "" : application});
    };
    const bool isStarted = start(
        {.executable = "/bin/bash", .arguments = {"-c", command}, .firstOnPath = programsFolder_},
        end);
    if (!isStarted)
        end({.standardOutput = "", .standardError = "", .isSuccess = false});
}

void ActionRunner::executeShellCommand(const std::string &executable,
                                       const SearchBaseResultRef &result, const Ended &ended)
{
    const bool isStarted =
        start({.executable = executable, .arguments = {result->path()}},
              [stream = streams_.output](const ProcessRunner::Output &output) {
                  writeLine(stream, "Shell script result: (\"" + onOneLine(output.standardOutput) +
                                        "\", \"" + onOneLine(output.standardError) + "\")");
              });
    if (isStarted)
        ended(std::nullopt);
    else
        ended(ActionFailure{.reason = ActionFailure::Reason::executableFailed,
                            .result = result,
                            .target = executable});
}

bool ActionRunner::start(const ProcessRunner::Command &command, ProcessRunner::Ended ended)
{
    const auto failure = services_.processRunner.run(command, std::move(ended));
    if (failure)
        writeLine(streams_.diagnostics, "quillon: " + onOneLine(*failure));
    return !failure;
}

void ActionRunner::showProperties(const SearchBaseResultRef &result)
{
    queue_.post([this, result] {
        const std::string item(withoutTrailingSlashes(result->path()));
        if (services_.fileManager.showProperties(item))
            return;
        ActionFailure failure = failureToOpen(ActionType::showInFinder, result);
        failure.isUse = false;
        failed_(failure);
    });
}

ActionFailure ActionRunner::failureToOpen(const ActionType &type,
                                          const SearchBaseResultRef &result) const
{
    using enum ActionFailure::Reason;
    const auto reason = [&] {
        const FolderLister::Kind kind = services_.folderLister.kind(result->path());
        if (kind == FolderLister::Kind::nothing)
            return itemGone;
        if (kind == FolderLister::Kind::unknown)
            return itemUnreachable;
        if (type == ActionType::openInDefaultApp && !services_.workspace.isFolder(result->path()))
            return noDefaultApplication;
        return services_.fileManager.application().empty() ? noFileManager : fileManagerFailed;
    };
    return {.reason = reason(), .result = result};
}

} // namespace quillon
