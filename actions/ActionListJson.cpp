#include "actions/ActionListJson.h"

#include <nlohmann/json.hpp>

namespace quillon {

namespace {

/// Writes the members of an object in the order in which they were put in.
using Json = nlohmann::ordered_json;

Json toJson(const ActionModel &action)
{
    return {{"flags",
             {{"option", action.flags.option},
              {"shift", action.flags.shift},
              {"command", action.flags.command}}},
            {"actionType",
             {{"key", action.actionType.key()},
              {"requiresTarget", action.actionType.requiresTarget()}}},
            {"actionTarget", {{"key", action.actionTarget.key()}}}};
}

/// The member; the null value when it is missing or the value is no object.
const Json &member(const Json &object, const char *name)
{
    static const Json NOTHING;
    const auto found = object.find(name);
    return found == object.end() ? NOTHING : *found;
}

std::optional<ActionShortcutFlags> flagsFrom(const Json &json)
{
    const Json &option = member(json, "option");
    const Json &shift = member(json, "shift");
    const Json &command = member(json, "command");
    if (!option.is_boolean() || !shift.is_boolean() || !command.is_boolean())
        return std::nullopt;
    return ActionShortcutFlags{
        .option = option.get<bool>(), .shift = shift.get<bool>(), .command = command.get<bool>()};
}

std::optional<ActionModel> actionFrom(const Json &json)
{
    const auto flags = flagsFrom(member(json, "flags"));
    const Json &type = member(json, "actionType");
    const Json &typeKey = member(type, "key");
    const Json &requiresTarget = member(type, "requiresTarget");
    const Json &targetKey = member(member(json, "actionTarget"), "key");
    if (!flags || !typeKey.is_string() || !requiresTarget.is_boolean() || !targetKey.is_string())
        return std::nullopt;
    return ActionModel{.flags = *flags,
                       .actionType =
                           ActionType(typeKey.get<std::string>(), requiresTarget.get<bool>()),
                       .actionTarget = ActionTarget(targetKey.get<std::string>())};
}

} // namespace

std::optional<std::string> encodeActions(const std::vector<ActionModel> &actions)
{
    Json array = Json::array();
    for (const ActionModel &action : actions)
        array.push_back(toJson(action));
    try {
        return array.dump();
    } catch (const Json::type_error &) {
        return std::nullopt;
    }
}

std::optional<std::vector<ActionModel>> decodeActions(std::string_view bytes)
{
    const Json array = Json::parse(bytes, nullptr, false);
    if (!array.is_array())
        return std::nullopt;
    std::vector<ActionModel> actions;
    for (const Json &element : array) {
        auto action = actionFrom(element);
        if (!action)
            return std::nullopt;
        actions.push_back(std::move(*action));
    }
    return actions;
}

} // namespace quillon
