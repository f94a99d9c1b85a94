#pragma once

#include <string>
#include <vector>

namespace quillon {

class FolderIdentity;

/// The absolute paths of folders named on the command line. Complains about each that cannot be
/// read, leaves it out and sets failed.
std::vector<std::string> readableFolders(const std::vector<std::string> &typed,
                                         const FolderIdentity &identity, bool &failed);

} // namespace quillon
