#pragma once

#include "actions/ActionModel.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// The actions as one JSON array. Absent when a text of theirs is not UTF-8.
std::optional<std::string> encodeActions(const std::vector<ActionModel> &actions);
/// Absent unless the bytes are a JSON array of complete actions: a single one that lacks a member,
/// or has one of another type, makes all unreadable. Order of members is free, further ones are
/// ignored.
std::optional<std::vector<ActionModel>> decodeActions(std::string_view bytes);

} // namespace quillon
