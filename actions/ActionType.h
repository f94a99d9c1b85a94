#pragma once

#include <array>
#include <string>

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

} // namespace quillon
