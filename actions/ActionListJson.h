#pragma once

#include "actions/ActionModel.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// Writes the actions as one JSON array in UTF-8. decodeActions() restores texts whose bytes are
/// not UTF-8.
std::string encodeActions(const std::vector<ActionModel> &actions);
/// Reads the actions. Returns nothing unless the bytes are a JSON array of complete actions: a
/// single action that lacks a member, or has a member of another type, makes the whole list
/// unreadable. The order of members is free, and unknown members are ignored.
std::optional<std::vector<ActionModel>> decodeActions(std::string_view bytes);

} // namespace quillon
