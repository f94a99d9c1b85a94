#pragma once

#include "actions/ActionModel.h"
#include "actions/AppleScriptRunner.h"
#include "platform/ProcessRunner.h"
#include "results/SearchBaseResult.h"

#include <cstdio>
#include <string>
#include <vector>

namespace quillon {

class Clipboard;
class FileManager;
class Preferences;
class TaskQueue;
class Workspace;

/// Carries out an action on a row. Nobody is told how it went, but for a line after an executable
/// of the user's, on the output when it has ended; and one on the diagnostics about a program that
/// does not start.
class ActionRunner
{
public:
    struct Services
    {
        Workspace &workspace;
        FileManager &fileManager;
        Clipboard &clipboard;
        ProcessRunner &processRunner;
    };
    struct Streams
    {
        std::FILE *output;
        std::FILE *diagnostics;
    };

    /// The actions run on the queue, which must be serial, one after the other; it ends before this
    /// object does. The folder holds the program "open", which serves "Open Application". The
    /// scripts are the ones that all the application shares.
    ActionRunner(const Services &services, const Preferences &preferences,
                 const AppleScriptRunner &appleScriptRunner, TaskQueue &queue,
                 std::string programsFolder, Streams streams = {stdout, stderr});

    /// What the action comes to for the row: one of the front file manager window is opened or
    /// selected as the settings say, whatever the action.
    ActionType typeFor(const ActionModel &action, const SearchBaseResult &result) const;
    /// Queues the action, as typeFor() says; copying a path is done at once. Main thread only.
    void runAction(const ActionModel &action, const SearchBaseResultRef &result);

private:
    void perform(const ActionModel &action, const SearchBaseResult &result);
    void openInDefaultApp(const std::string &path);
    void showInFinder(const std::string &path);
    void showParentInFinder(const std::string &path);
    void openApplication(const std::string &application, const std::string &path);
    void executeShellCommand(const std::string &executable, const std::string &path);
    void start(const ProcessRunner::Command &command, ProcessRunner::Ended ended);

    Services services_;
    const Preferences &preferences_;
    const AppleScriptRunner &appleScriptRunner_;
    TaskQueue &queue_;
    std::string programsFolder_;
    Streams streams_;
};

} // namespace quillon
