#pragma once

#include "actions/ActionShortcutFlags.h"
#include "core/SearchBaseResult.h"

namespace quillon {

class TaskQueue;
class Workspace;

/// Carries out on a result what the user bound to the keys pressed. Main thread only.
class ActionRunner
{
public:
    /// The actions run on the queue, which must be serial, one after the other.
    ActionRunner(Workspace &workspace, TaskQueue &queue);

    /// False when nothing is bound to these modifiers.
    bool hasAction(ActionShortcutFlags flags) const;
    /// Queues the action bound to the modifiers; nothing when there is none. An action that fails
    /// says so in one line on standard error.
    void runAction(ActionShortcutFlags flags, const SearchBaseResultRef &result);

private:
    Workspace &workspace_;
    TaskQueue &queue_;
};

} // namespace quillon
