#pragma once

#include <optional>
#include <string>

namespace quillon {

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

} // namespace quillon
