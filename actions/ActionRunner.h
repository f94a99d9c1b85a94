#pragma once

#include "actions/ActionFailure.h"
#include "actions/ActionModel.h"
#include "actions/AppleScriptRunner.h"
#include "platform/ProcessRunner.h"
#include "results/SearchBaseResult.h"

#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace quillon {

class Clipboard;
class FileManager;
class FolderLister;
class Preferences;
class RecentItems;
class TaskQueue;
class Workspace;

/// Carries out an action on a row. When an executable of the user's ends, one line on the output
/// says what it wrote. When a program does not start, one line on the diagnostics says why.
class ActionRunner
{
public:
    struct Services
    {
        Workspace &workspace;
        FileManager &fileManager;
        Clipboard &clipboard;
        ProcessRunner &processRunner;
        /// It is asked why an item could not be opened.
        FolderLister &folderLister;
        /// What is opened is entered here, unless the settings say otherwise.
        RecentItems &recentItems;
    };
    /// It is called on any thread when an action has failed.
    using Failed = std::function<void(const ActionFailure &failure)>;
    /// It is called once an action has been carried out or has failed, on any thread. The output of
    /// a program of the user's is not waited for.
    using Ended = std::function<void(const std::optional<ActionFailure> &failure)>;
    struct Streams
    {
        std::FILE *output;
        std::FILE *diagnostics;
    };

    /// The actions run one after the other on the queue, which is serial and ends before this
    /// object does. The folder holds the program "open", which "Open Application" runs. The whole
    /// application shares the scripts.
    ActionRunner(const Services &services, const Preferences &preferences,
                 const AppleScriptRunner &appleScriptRunner, TaskQueue &queue,
                 std::string programsFolder, Streams streams = {stdout, stderr});

    /// It is set before the first action.
    void onFailure(Failed failed) { failed_ = std::move(failed); }

    /// Returns what the action does to the row. A row from the front file manager window is opened
    /// or selected as the settings say, whatever the action.
    ActionType typeFor(const ActionModel &action, const SearchBaseResult &result) const;
    /// Queues what typeFor() says, except that a path is copied at once. Main thread only.
    void runAction(const ActionModel &action, const SearchBaseResultRef &result,
                   const Ended &ended = nullptr);
    /// Queues the file manager's window about the row's item.
    void showProperties(const SearchBaseResultRef &result);

private:
    void perform(const ActionModel &action, const SearchBaseResultRef &result, const Ended &ended);
    // Each returns false when the item was not opened or shown.
    bool openInDefaultApp(const std::string &path);
    bool showInFinder(const std::string &path);
    bool showParentInFinder(const std::string &path);
    void openApplication(const std::string &application, const SearchBaseResultRef &result,
                         const Ended &ended);
    void executeShellCommand(const std::string &executable, const SearchBaseResultRef &result,
                             const Ended &ended);
    void enterAsRecent(const std::string &path);
    /// Returns false when the program does not start.
    bool start(const ProcessRunner::Command &command, ProcessRunner::Ended ended);
    bool isForFileManager(const std::string &application) const;
    /// Returns why an item was not opened or shown.
    ActionFailure failureToOpen(const ActionType &type, const SearchBaseResultRef &result) const;

    Services services_;
    const Preferences &preferences_;
    const AppleScriptRunner &appleScriptRunner_;
    TaskQueue &queue_;
    std::string programsFolder_;
    Streams streams_;
    Failed failed_ = [](const ActionFailure &) {};
};

} // namespace quillon
