#pragma once

#include "actions/ActionModel.h"
#include "base/Mutex.h"

#include <optional>
#include <string>
#include <vector>

namespace quillon {

class DefaultsStore;

/// Reads and changes the user's list of actions in the store, which outlives this object.
///
/// Every operation reads or writes the store, but the list is parsed only when the stored text is
/// another one than at the last read. Safe from every thread, but changes are not atomic, so one
/// thread should make them all. A change returns false when it could not be stored.
class ActionModelFinder
{
public:
    explicit ActionModelFinder(DefaultsStore &store);

    /// Returns the stored actions in their order, or the built-in ones while nothing readable is
    /// stored. Never empty: where the user has emptied the list, plain Return shows the folder.
    std::vector<ActionModel> loadActions() const;
    /// Replaces the whole list. Also false when a text of the actions is not UTF-8.
    bool saveActions(const std::vector<ActionModel> &actions);
    static bool containsAction(const ActionModel &action, const std::vector<ActionModel> &actions);
    /// Appends the action unless the list holds an equal one. Does not check whether another action
    /// has the same keys.
    bool addAction(const ActionModel &action);
    /// Removes every action equal to this one.
    bool removeAction(const ActionModel &action);
    /// Puts the new action where the old one is.
    bool replaceAction(const ActionModel &before, const ActionModel &after);
    /// Moves the action by so many places, towards the end where positive, as far as the list goes.
    bool moveAction(const ActionModel &action, int places);
    /// Makes the built-in actions hold again.
    bool restoreBuiltInActions();
    /// Returns whether nothing readable is stored, so that the built-in actions hold.
    bool areBuiltIn() const;
    /// Returns the first action in the list that is bound to exactly these keys; absent when there
    /// is none.
    std::optional<ActionModel> actionFor(ActionShortcutFlags flags) const;
    /// Returns the titles of the assignable combinations that no action uses, in the order of their
    /// menu.
    std::vector<std::string> availableShortcutTitles() const;

private:
    /// The result is absent when nothing readable is stored.
    std::optional<std::vector<ActionModel>> storedActions() const;

    DefaultsStore &store_;
    mutable Mutex mutex_;
    /// What was read last, and the actions in it; absent where they are not readable.
    mutable std::optional<std::string> stored_ GUARDED_BY(mutex_);
    mutable std::optional<std::vector<ActionModel>> decoded_ GUARDED_BY(mutex_);
};

} // namespace quillon
