#pragma once

#include "actions/ActionModel.h"
#include "app/panel/PanelFooter.h"
#include "results/SearchBaseResult.h"

#include <vector>

namespace quillon {

class ActionRunner;

/// Returns the keys of the actions and in a word or two what they do, in the order of the list. An
/// action is left out when an earlier one with the same keys hides it.
std::vector<PanelFooter::Hint> actionHints(const std::vector<ActionModel> &actions);

/// Returns the hints for a row. For an item of the front file manager window every action does the
/// same, so there is one hint, for plain Return if that is bound.
std::vector<PanelFooter::Hint> rowHints(const std::vector<ActionModel> &actions,
                                        const ActionRunner &runner, const SearchBaseResult &row);

} // namespace quillon
