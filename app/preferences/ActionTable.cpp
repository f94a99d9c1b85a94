#include "app/preferences/ActionTable.h"

#include "app/preferences/PreferenceTexts.h"
#include "app/widgets/FormTable.h"

#include <utility>

namespace quillon {

// NOLINTNEXTLINE(readability-identifier-naming)
const QString ActionTable::actionRowIdentifier = QStringLiteral("ActionTableViewRowIdentifier");

ActionTable::ActionTable(FormTable &table, DefaultsStore &defaults, QObject *parent)
    : QObject(parent), tableView_(table), finder_(defaults)
{
    reload();
}

void ActionTable::reload()
{
    std::vector<ActionModel> stored = finder_.loadActions();
    if (stored == actions_)
        return;
    actions_ = std::move(stored);
    QList<QList<FormTextRun>> rows;
    for (const ActionModel &action : actions_)
        rows << drawnDescription(action);
    tableView_.setRows(rows);
}

bool ActionTable::removeSelected()
{
    const auto row = tableView_.selectedRow();
    if (!row)
        return true;
    const bool isStored = finder_.removeAction(actions_.at(static_cast<std::size_t>(*row)));
    reload();
    return isStored;
}

} // namespace quillon
