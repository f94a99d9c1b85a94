#pragma once

#include "actions/ActionModel.h"
#include "app/panel/PanelFooter.h"

#include <vector>

namespace quillon {

/// The keys that the actions are bound to and in a word or two what they do, in the order of the
/// list. An action that an earlier one with the same keys hides is left out.
std::vector<PanelFooter::Hint> actionHints(const std::vector<ActionModel> &actions);

} // namespace quillon
