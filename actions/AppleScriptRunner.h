#pragma once

#include "actions/AppleEvent.h"
#include "actions/AppleScript.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class FileManager;

/// Holds the three scripts for the file manager, compiled once, and calls them. One instance serves
/// the whole application.
///
/// A call takes as long as the file manager does, up to the limit that FileManager sets, so calls
/// belong on worker threads.
class AppleScriptRunner
{
public:
    static constexpr std::string_view OPEN_IN_EXISTING_FINDER_WINDOW = "openInExistingFinderWindow";
    static constexpr std::string_view GET_PATHS_IN_CURRENT_FINDER_WINDOW =
        "getPathsInCurrentFinderWindow";
    static constexpr std::string_view TEST_ACCESS_TO_FINDER = "testAccessToFinderAppleScript";

    explicit AppleScriptRunner(FileManager &fileManager);

    /// Handler OPEN_IN_EXISTING_FINDER_WINDOW. Argument: the path of a folder, which the front
    /// window then shows, or a new one where there is none or it is minimised. Result: nothing.
    const AppleScript openInExistingFinderWindowAppleScript;
    /// Handler GET_PATHS_IN_CURRENT_FINDER_WINDOW. Argument: any. Result: the paths of the items in
    /// the front window's folder, those of folders with a trailing slash.
    const AppleScript getPathsInCurrentFinderWindowAppleScript;
    /// Handler TEST_ACCESS_TO_FINDER: asks something harmless, so that a desktop that asks the user
    /// for consent does it now. Argument: any. Result: nothing.
    const AppleScript testAccessToFinderAppleScript;

    /// Calls a handler of the script on the calling thread. Absent on any failure, which is
    /// reported in no other way.
    static std::optional<AppleEventDescriptor>
    callHandler(const AppleScript &script, std::string_view handler,
                const std::vector<std::string> &arguments);

private:
    explicit AppleScriptRunner(const AppleScript::Operations &operations);
};

} // namespace quillon
