#pragma once

#include "actions/ActionShortcutFlags.h"
#include "actions/ActionTarget.h"
#include "actions/ActionType.h"

#include <string>
#include <vector>

namespace quillon {

/// A piece of styled text, as UTF-8.
struct TextRun
{
    std::string text;
    bool isBold = false;
    friend bool operator==(const TextRun &, const TextRun &) = default;
};

/// What happens to the selected row when Return is pressed together with some modifier keys.
struct ActionModel
{
    ActionShortcutFlags flags;
    ActionType actionType;
    ActionTarget actionTarget;
    friend bool operator==(const ActionModel &, const ActionModel &) = default;

    /// Returns a sentence for a list of actions, such as "⌥-⇧-Return will Open Application with
    /// Terminal", with keys and kind in bold.
    std::vector<TextRun> description() const;
};

} // namespace quillon
