#pragma once

#include "actions/ActionModel.h"
#include "app/panel/PanelFooter.h"
#include "results/SearchBaseResult.h"

#include <vector>

namespace quillon {

class ActionRunner;

/// The keys that the actions are bound to and in a word or two what they do, in the order of the
/// list. An action that an earlier one with the same keys hides is left out.
std::vector<PanelFooter::Hint> actionHints(const std::vector<ActionModel> &actions);

/// The hints for a row. With an item of the front file manager window every action comes to the
/// same, so there is one, for plain Return if that is bound.
std::vector<PanelFooter::Hint> rowHints(const std::vector<ActionModel> &actions,
                                        const ActionRunner &runner, const SearchBaseResult &row);

} // namespace quillon
