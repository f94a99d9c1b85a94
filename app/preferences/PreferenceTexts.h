#pragma once

#include "actions/ActionModel.h"
#include "app/widgets/FormTable.h"

#include <QList>
#include <QString>

#include <string>

namespace quillon {

// The choices and actions are named in the settings for another system. These are their words as
// the user reads them; what is stored never depends on them.

/// The text for the title of a choice or the key of a kind of action. An unknown one stays as it
/// is.
QString drawnTitle(const std::string &title);
/// ActionModel::description() in these words, keys and kind in bold.
QList<FormTextRun> drawnDescription(const ActionModel &action);

} // namespace quillon
