#pragma once

#include "results/SearchBaseResult.h"

#include <string>

namespace quillon {

/// The reason why an action failed.
struct ActionFailure
{
    enum class Reason
    {
        /// Nothing is at the row's path any more.
        itemGone,
        /// The folder of the search that holds the row's item is away.
        itemAway,
        /// The disk or the share that holds the row's item does not answer.
        itemUnreachable,
        noFileManager,
        /// The file manager did not do what it was asked for.
        fileManagerFailed,
        /// No application opens this kind of item.
        noDefaultApplication,
        /// The application that the action names is not installed or does not start.
        applicationFailed,
        /// The executable that the action names does not exist or may not be run.
        executableFailed,
    };

    Reason reason;
    SearchBaseResultRef result;
    /// The application or the executable as the action names it; empty for the other reasons.
    std::string target = {};
    /// A use of the row was counted.
    bool isUse = true;
};

/// Returns the reason in English, for standard error, as a sentence whose subject is the item.
std::string description(const ActionFailure &failure);

} // namespace quillon
