#include "actions/ActionFailure.h"

namespace quillon {

std::string description(const ActionFailure &failure)
{
    using enum ActionFailure::Reason;
    switch (failure.reason) {
    case itemGone:
        return "is not there";
    case itemAway:
        return "is not there now";
    case itemUnreachable:
        return "its disk does not answer";
    case noFileManager:
        return "there is no file manager to open it";
    case fileManagerFailed:
        return "the file manager did not open it";
    case noDefaultApplication:
        return "no application opens it";
    case applicationFailed:
        return "the application \"" + failure.target + "\" is not installed or does not start";
    case executableFailed:
        break;
    }
    return "the program \"" + failure.target + "\" does not exist or may not be run";
}

} // namespace quillon
