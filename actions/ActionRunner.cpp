#include "actions/ActionRunner.h"

#include "platform/TaskQueue.h"
#include "platform/Workspace.h"

#include <cstdio>

namespace quillon {

ActionRunner::ActionRunner(Workspace &workspace, TaskQueue &queue)
    : workspace_(workspace), queue_(queue)
{}

bool ActionRunner::hasAction(ActionShortcutFlags flags) const
{
    return flags == ActionShortcutFlags{};
}

void ActionRunner::runAction(ActionShortcutFlags flags, const SearchBaseResultRef &result)
{
    if (!hasAction(flags))
        return;
    queue_.post([&workspace = workspace_, result] {
        const std::string &path = result->path();
        // A file keeps the name it is reached by: its type may depend on it.
        if (!workspace.open(workspace.isFolder(path) ? workspace.resolvingSymlinks(path) : path))
            std::fprintf(stderr, "quillon: nothing opens %s\n", path.c_str());
    });
}

} // namespace quillon
