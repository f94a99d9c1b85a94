#pragma once

#include "actions/ActionModel.h"

#include <optional>
#include <string>
#include <vector>

namespace quillon {

class DefaultsStore;

/// The user's actions.
///
/// Holds nothing: every operation reads the store or writes it. Safe from every thread, but
/// changes are not atomic; make them on one thread. False comes back from a change that could not
/// be stored. The store outlives this object.
class ActionModelFinder
{
public:
    explicit ActionModelFinder(DefaultsStore &store);

    /// The stored actions in their order; the built-in ones while nothing readable is stored. Never
    /// empty: a list that the user emptied leaves plain Return, which shows the folder.
    std::vector<ActionModel> loadActions() const;
    /// Replaces the whole list. Also false when a text of the actions is not UTF-8.
    bool saveActions(const std::vector<ActionModel> &actions);
    static bool containsAction(const ActionModel &action, const std::vector<ActionModel> &actions);
    /// Appends the action; writes nothing when an equal one is there. Whether another action has
    /// the same keys is not looked at.
    bool addAction(const ActionModel &action);
    /// Removes every action equal to this one.
    bool removeAction(const ActionModel &action);
    /// The action bound to exactly these keys, the first in the list; absent when there is none.
    std::optional<ActionModel> actionFor(ActionShortcutFlags flags) const;
    /// The titles of the assignable combinations that no action uses, in the order of their menu.
    std::vector<std::string> availableShortcutTitles() const;

private:
    DefaultsStore &store_;
};

} // namespace quillon
