#pragma once

#include <string>
#include <vector>

namespace quillon {

class FolderIdentity;

/// Returns the absolute paths of folders named on the command line. A folder that cannot be read is
/// left out with a complaint, and failed is set.
std::vector<std::string> readableFolders(const std::vector<std::string> &typed,
                                         const FolderIdentity &identity, bool &failed);

} // namespace quillon
