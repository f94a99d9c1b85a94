#pragma once

#include "actions/ActionModelFinder.h"

#include <QObject>

#include <optional>
#include <vector>

namespace quillon {

class FormTable;

/// The user's actions in their stored order, as the rows of a table.
class ActionTable : public QObject
{
    Q_OBJECT

public:
    /// The table belongs to the pane and outlives this, as does the store.
    ActionTable(FormTable &table, DefaultsStore &defaults, QObject *parent);

    static const QString actionRowIdentifier; // NOLINT(readability-identifier-naming)

    /// Shows what is stored now.
    void reload();
    // Without a selected row these do nothing. False when it could not be stored.

    /// Removes every stored action equal to the one of the selected row.
    bool removeSelected();
    /// Moves the selected row by so many places.
    bool moveSelected(int places);
    /// Makes the built-in actions hold again.
    bool restoreBuiltIn();
    /// The action of the selected row.
    std::optional<ActionModel> selectedAction() const;
    bool areBuiltIn() const { return finder_.areBuiltIn(); }

    /// Shows what is stored now, and in it this action.
    void actionStored(const ActionModel &action);

    FormTable &tableView() { return tableView_; }
    const std::vector<ActionModel> &actions() const { return actions_; }

private:
    void show(const ActionModel &action);

    FormTable &tableView_;
    ActionModelFinder finder_;
    std::vector<ActionModel> actions_;
};

} // namespace quillon
