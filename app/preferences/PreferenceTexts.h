#pragma once

#include "actions/ActionModel.h"
#include "app/widgets/FormTable.h"

#include <QList>
#include <QString>

#include <string>

namespace quillon {

// The settings name the choices and actions for another system. These are the words that the user
// reads. What is stored never depends on them.

/// Returns the text for the title of a choice or the key of a kind of action. An unknown one stays
/// as it is.
QString drawnTitle(const std::string &title);
/// Returns ActionModel::description() in these words, with keys and kind in bold.
QList<FormTextRun> drawnDescription(const ActionModel &action);

} // namespace quillon
