#include "actions/ActionTarget.h"

#include <utility>

namespace quillon {

const ActionTarget ActionTarget::selectedRow("the selected row");

ActionTarget::ActionTarget(std::string key) : key_(std::move(key)) {}

std::optional<ActionTarget> ActionTarget::fromText(std::string text)
{
    if (text.empty())
        return std::nullopt;
    return ActionTarget(std::move(text));
}

} // namespace quillon
