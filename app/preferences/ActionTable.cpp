#include "app/preferences/ActionTable.h"

#include "app/preferences/PreferenceTexts.h"
#include "app/widgets/FormTable.h"

#include <algorithm>
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

std::optional<ActionModel> ActionTable::selectedAction() const
{
    const auto row = tableView_.selectedRow();
    return row ? std::optional(actions_.at(static_cast<std::size_t>(*row))) : std::nullopt;
}

bool ActionTable::removeSelected()
{
    const auto action = selectedAction();
    const bool isStored = !action || finder_.removeAction(*action);
    reload();
    return isStored;
}

bool ActionTable::moveSelected(int places)
{
    const auto action = selectedAction();
    if (!action)
        return true;
    const bool isStored = finder_.moveAction(*action, places);
    reload();
    show(*action);
    return isStored;
}

bool ActionTable::restoreBuiltIn()
{
    const bool isStored = finder_.restoreBuiltInActions();
    reload();
    return isStored;
}

void ActionTable::actionStored(const ActionModel &action)
{
    reload();
    show(action);
}

void ActionTable::show(const ActionModel &action)
{
    const auto found = std::ranges::find(actions_, action);
    if (found != actions_.end())
        tableView_.showRow(static_cast<int>(found - actions_.begin()));
}

} // namespace quillon
