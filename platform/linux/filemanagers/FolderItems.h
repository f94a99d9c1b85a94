#pragma once

#include <string>
#include <vector>

namespace quillon {

/// The paths of the items in a folder, without those that file managers hide, in no order; those
/// that are folders or lead to one end with "/". Empty as well when the folder cannot be read.
std::vector<std::string> folderItems(const std::string &folder);

} // namespace quillon
