#include "actions/ActionModel.h"

namespace quillon {

std::vector<TextRun> ActionModel::description() const
{
    return {{.text = flags.title(), .isBold = true},
            {.text = " will "},
            {.text = actionType.key(), .isBold = true},
            {.text = " with "},
            {.text = actionTarget.key()}};
}

} // namespace quillon
