#include "actions/ActionModelFinder.h"

#include "actions/ActionListJson.h"
#include "base/DefaultsStore.h"
#include "prefs/PreferenceKeys.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

std::vector<ActionModel> defaultActions()
{
    return {
        {.flags = {},
         .actionType = ActionType::openInDefaultApp,
         .actionTarget = ActionTarget::selectedRow},
        {.flags = {.command = true},
         .actionType = ActionType::showParentInFinder,
         .actionTarget = ActionTarget::selectedRow},
        {.flags = {.option = true},
         .actionType = ActionType::copyPathToClipboard,
         .actionTarget = ActionTarget::selectedRow},
        {.flags = {.option = true, .shift = true},
         .actionType = ActionType::openApplication,
         .actionTarget = ActionTarget("Terminal")},
    };
}

} // namespace

ActionModelFinder::ActionModelFinder(DefaultsStore &store) : store_(store) {}

std::optional<std::vector<ActionModel>> ActionModelFinder::storedActions() const
{
    auto stored = store_.data(PreferenceKeys::ACTIONS_LIST);
    const MutexLock lock(mutex_);
    if (stored != stored_) {
        stored_ = std::move(stored);
        decoded_ = stored_ ? decodeActions(*stored_) : std::nullopt;
    }
    return decoded_;
}

std::vector<ActionModel> ActionModelFinder::loadActions() const
{
    auto stored = storedActions();
    if (!stored)
        return defaultActions();
    if (stored->empty())
        return {{.flags = {},
                 .actionType = ActionType::showInFinder,
                 .actionTarget = ActionTarget::selectedRow}};
    return std::move(*stored);
}

bool ActionModelFinder::saveActions(const std::vector<ActionModel> &actions)
{
    return store_.set(PreferenceKeys::ACTIONS_LIST, DefaultsValue::ofData(encodeActions(actions)));
}

bool ActionModelFinder::containsAction(const ActionModel &action,
                                       const std::vector<ActionModel> &actions)
{
    return std::ranges::find(actions, action) != actions.end();
}

bool ActionModelFinder::addAction(const ActionModel &action)
{
    std::vector<ActionModel> actions = loadActions();
    if (containsAction(action, actions))
        return true;
    actions.push_back(action);
    return saveActions(actions);
}

bool ActionModelFinder::removeAction(const ActionModel &action)
{
    std::vector<ActionModel> actions = loadActions();
    std::erase(actions, action);
    return saveActions(actions);
}

bool ActionModelFinder::replaceAction(const ActionModel &before, const ActionModel &after)
{
    std::vector<ActionModel> actions = loadActions();
    std::ranges::replace(actions, before, after);
    return saveActions(actions);
}

bool ActionModelFinder::moveAction(const ActionModel &action, int places)
{
    std::vector<ActionModel> actions = loadActions();
    const auto from = std::ranges::find(actions, action);
    if (from == actions.end())
        return true;
    const auto to =
        std::clamp<std::ptrdiff_t>(places, actions.begin() - from, actions.end() - from - 1);
    if (to == 0)
        return true;
    if (to > 0)
        std::rotate(from, from + 1, from + to + 1);
    else
        std::rotate(from + to, from, from + 1);
    return saveActions(actions);
}

bool ActionModelFinder::restoreBuiltInActions()
{
    return store_.remove(PreferenceKeys::ACTIONS_LIST);
}

bool ActionModelFinder::areBuiltIn() const
{
    return !storedActions();
}

std::optional<ActionModel> ActionModelFinder::actionFor(ActionShortcutFlags flags) const
{
    const std::vector<ActionModel> actions = loadActions();
    const auto found = std::ranges::find(actions, flags, &ActionModel::flags);
    if (found == actions.end())
        return std::nullopt;
    return *found;
}

std::vector<std::string> ActionModelFinder::availableShortcutTitles() const
{
    std::vector<std::string> used;
    for (const ActionModel &action : loadActions())
        used.push_back(action.flags.title());
    std::vector<std::string> available;
    for (const ActionShortcutFlags flags : allShortcutFlags()) {
        const std::string title = flags.title();
        if (std::ranges::find(used, title) == used.end())
            available.push_back(title);
    }
    return available;
}

} // namespace quillon
