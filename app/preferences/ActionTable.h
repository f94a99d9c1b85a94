#pragma once

#include "actions/ActionModelFinder.h"
#include "app/preferences/AddActionViewController.h"

#include <QObject>

#include <vector>

namespace quillon {

class FormTable;

/// The user's actions in their stored order, as the rows of a table.
class ActionTable : public QObject, public AddActionDelegate
{
    Q_OBJECT

public:
    /// The table belongs to the pane and outlives this, as does the store.
    ActionTable(FormTable &table, DefaultsStore &defaults, QObject *parent);

    static const QString actionRowIdentifier; // NOLINT(readability-identifier-naming)

    /// Shows what is stored now.
    void reload();
    /// Removes every stored action equal to the one of the selected row. Nothing happens without a
    /// selected row. False when it could not be stored.
    bool removeSelected();

    void actionAdded() override { reload(); }

    FormTable &tableView() { return tableView_; }
    const std::vector<ActionModel> &actions() const { return actions_; }

private:
    FormTable &tableView_;
    ActionModelFinder finder_;
    std::vector<ActionModel> actions_;
};

} // namespace quillon
