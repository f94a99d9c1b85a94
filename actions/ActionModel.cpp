#include "actions/ActionModel.h"

#include <utility>

namespace quillon {

ActionType::ActionType(std::string key, bool requiresTarget)
    : key_(std::move(key)), requiresTarget_(requiresTarget)
{}

const ActionType ActionType::openInDefaultApp("Open in Default App", false);
const ActionType ActionType::showInFinder("Show in Finder", false);
const ActionType ActionType::showParentInFinder("Show Parent in Finder", false);
const ActionType ActionType::copyPathToClipboard("Copy Path to Clipboard", false);
const ActionType ActionType::openApplication("Open Application", true);
const ActionType ActionType::executeShellCommand("Execute Shell Command", true);
const std::array<ActionType, 6> ActionType::all{openInDefaultApp,   showInFinder,
                                                showParentInFinder, copyPathToClipboard,
                                                openApplication,    executeShellCommand};

const ActionTarget ActionTarget::selectedRow("the selected row");

ActionTarget::ActionTarget(std::string key) : key_(std::move(key)) {}

std::optional<ActionTarget> ActionTarget::fromText(std::string text)
{
    if (text.empty())
        return std::nullopt;
    return ActionTarget(std::move(text));
}

std::vector<TextRun> ActionModel::description() const
{
    return {{.text = flags.title(), .isBold = true},
            {.text = " will "},
            {.text = actionType.key(), .isBold = true},
            {.text = " with "},
            {.text = actionTarget.key()}};
}

} // namespace quillon
