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

    /// The handler OPEN_IN_EXISTING_FINDER_WINDOW takes the path of a folder and returns nothing.
    /// The front window then shows the folder, or a new window if there is none or it is minimised.
    const AppleScript openInExistingFinderWindowAppleScript;
    /// The handler GET_PATHS_IN_CURRENT_FINDER_WINDOW ignores its argument and returns the paths of
    /// the items in the front window's folder. The paths of folders end with a slash.
    const AppleScript getPathsInCurrentFinderWindowAppleScript;
    /// The handler TEST_ACCESS_TO_FINDER asks something harmless, so that a desktop that asks the
    /// user for consent does it now. It ignores its argument and returns nothing.
    const AppleScript testAccessToFinderAppleScript;

    /// Calls a handler of the script on the calling thread. Returns nothing on any failure, which
    /// is reported in no other way.
    static std::optional<AppleEventDescriptor>
    callHandler(const AppleScript &script, std::string_view handler,
                const std::vector<std::string> &arguments);

private:
    explicit AppleScriptRunner(const AppleScript::Operations &operations);
};

} // namespace quillon
