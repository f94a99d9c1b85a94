#pragma once

#include "actions/ActionModel.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The actions as one JSON array in UTF-8. Odd bytes of a text come back from decodeActions().
std::string encodeActions(const std::vector<ActionModel> &actions);
/// Absent unless the bytes are a JSON array of complete actions: one action that lacks a member, or
/// has one of another type, makes the whole list unreadable. The order of members is free, and
/// unknown members are ignored.
std::optional<std::vector<ActionModel>> decodeActions(std::string_view bytes);

} // namespace quillon
