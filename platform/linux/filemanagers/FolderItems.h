#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Returns the paths of the items in a folder, without those that file managers hide, in no
/// particular order. Paths of folders, and of links to folders, end with "/". The list is also
/// empty when the folder cannot be read.
std::vector<std::string> folderItems(const std::string &folder);

} // namespace quillon
