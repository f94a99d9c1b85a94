#pragma once

#include "actions/ActionShortcutFlags.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// A kind of action. Two kinds are the same when their keys are.
class ActionType
{
public:
    ActionType(std::string key, bool requiresTarget);

    /// The title that is shown and stored.
    const std::string &key() const { return key_; }
    /// Returns whether the user has to name an application or an executable for the action.
    bool requiresTarget() const { return requiresTarget_; }

    friend bool operator==(const ActionType &a, const ActionType &b) { return a.key_ == b.key_; }

    // NOLINTBEGIN(readability-identifier-naming): read like the values of an enum
    static const ActionType openInDefaultApp;
    static const ActionType showInFinder;
    static const ActionType showParentInFinder;
    static const ActionType copyPathToClipboard;
    static const ActionType openApplication;
    static const ActionType executeShellCommand;
    /// The kinds above, in the order of their menu. They must not be read before main() begins.
    static const std::array<ActionType, 6> all;
    // NOLINTEND(readability-identifier-naming)

private:
    std::string key_;
    bool requiresTarget_;
};

/// The name of an application or the path of an executable, as the user typed it, which an action
/// needs besides the row.
class ActionTarget
{
public:
    /// Takes the key as it is stored and checks nothing.
    explicit ActionTarget(std::string key);
    /// Makes a target of what the user typed. Returns nothing for an empty text.
    static std::optional<ActionTarget> fromText(std::string text);

    const std::string &key() const { return key_; }

    friend bool operator==(const ActionTarget &, const ActionTarget &) = default;

    // NOLINTBEGIN(readability-identifier-naming): reads like the value of an enum
    /// No target of its own: the action works on the row itself.
    static const ActionTarget selectedRow;
    // NOLINTEND(readability-identifier-naming)

private:
    std::string key_;
};

/// A piece of styled text, as UTF-8.
struct TextRun
{
    std::string text;
    bool isBold = false;
    friend bool operator==(const TextRun &, const TextRun &) = default;
};

/// Says what happens to the selected row when Return is pressed together with some modifier keys.
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
