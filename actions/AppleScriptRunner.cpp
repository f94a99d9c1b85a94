#include "actions/AppleScriptRunner.h"

#include "platform/FileManager.h"

#include <utility>

namespace quillon {

namespace {

constexpr const char *OPEN_IN_EXISTING_FINDER_WINDOW_SOURCE =
    "on openInExistingFinderWindow(filePath)\n"
    "    tell application \"Finder\"\n"
    "        if not (exists Finder window 1) or (get collapsed of the front Finder window) then\n"
    "            make new Finder window\n"
    "        end if\n"
    "        \n"
    "        set posixFile to (filePath as POSIX file)\n"
    "        set the target of the front Finder window to folder posixFile\n"
    "        activate\n"
    "    end tell\n"
    "end openInExistingFinderWindow";

constexpr const char *GET_PATHS_IN_CURRENT_FINDER_WINDOW_SOURCE =
    "on getPathsInCurrentFinderWindow(arg1)\n"
    "    tell application \"Finder\"\n"
    "        set all_items to items of the front Finder window as alias list\n"
    "        set paths_list to {}\n"
    "        \n"
    "        repeat with file_item in all_items\n"
    "            set my_path to get POSIX path of file_item\n"
    "            copy my_path to the end of paths_list\n"
    "        end repeat\n"
    "        \n"
    "        return paths_list\n"
    "    end tell\n"
    "end getPathsInCurrentFinderWindow";

constexpr const char *TEST_ACCESS_TO_FINDER_SOURCE = "on testAccessToFinderAppleScript(filePath)\n"
                                                     "    tell application \"Finder\"\n"
                                                     "        get front Finder window\n"
                                                     "    end tell\n"
                                                     "end testAccessToFinderAppleScript";

AppleEventDescriptor listOf(std::vector<std::string> texts)
{
    AppleEventDescriptor list = AppleEventDescriptor::list();
    for (std::string &text : texts)
        list.insert(AppleEventDescriptor(std::move(text)), 0);
    return list;
}

std::optional<AppleEventDescriptor> nothingIf(bool isDone)
{
    return isDone ? std::optional(AppleEventDescriptor()) : std::nullopt;
}

/// Returns what the file manager does for each handler.
AppleScript::Operations operationsOver(FileManager &fileManager)
{
    AppleScript::Operations operations;
    operations.emplace(
        AppleScriptRunner::OPEN_IN_EXISTING_FINDER_WINDOW, [&fileManager](const AppleEvent &event) {
            const AppleEventDescriptor *arguments = event.parameter(AppleEvent::DIRECT_OBJECT);
            const auto folder = arguments->at(1).stringValue();
            return nothingIf(folder && fileManager.openInFrontWindow(*folder));
        });
    operations.emplace(AppleScriptRunner::GET_PATHS_IN_CURRENT_FINDER_WINDOW,
                       [&fileManager](const AppleEvent &) {
                           return std::optional(listOf(fileManager.frontWindowItems()));
                       });
    operations.emplace(
        AppleScriptRunner::TEST_ACCESS_TO_FINDER,
        [&fileManager](const AppleEvent &) { return nothingIf(fileManager.probe()); });
    return operations;
}

} // namespace

AppleScriptRunner::AppleScriptRunner(FileManager &fileManager)
    : AppleScriptRunner(operationsOver(fileManager))
{}

AppleScriptRunner::AppleScriptRunner(const AppleScript::Operations &operations)
    : openInExistingFinderWindowAppleScript(OPEN_IN_EXISTING_FINDER_WINDOW_SOURCE, operations),
      getPathsInCurrentFinderWindowAppleScript(GET_PATHS_IN_CURRENT_FINDER_WINDOW_SOURCE,
                                               operations),
      testAccessToFinderAppleScript(TEST_ACCESS_TO_FINDER_SOURCE, operations)
{}

std::optional<AppleEventDescriptor>
AppleScriptRunner::callHandler(const AppleScript &script, std::string_view handler,
                               const std::vector<std::string> &arguments)
{
    AppleEvent event{.eventClass = std::string(AppleEvent::SCRIPTING_CLASS),
                     .eventId = std::string(AppleEvent::SUBROUTINE_ID)};
    event.parameters.emplace(AppleEvent::SUBROUTINE_NAME,
                             AppleEventDescriptor(std::string(handler)));
    event.parameters.emplace(AppleEvent::DIRECT_OBJECT, listOf(arguments));
    return script.executeAppleEvent(event);
}

} // namespace quillon
