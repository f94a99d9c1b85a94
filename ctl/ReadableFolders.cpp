#include "ctl/ReadableFolders.h"

#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "platform/linux/disk/PatientFolders.h"
#include "platform/linux/disk/StatxFolderIdentity.h"

#include <utility>

namespace quillon {

std::vector<std::string> readableFolders(const std::vector<std::string> &typed, bool &failed)
{
    const StatxFolderIdentity disk;
    const PatientFolderIdentity identity(disk);
    std::vector<std::string> folders;
    for (const std::string &name : typed) {
        std::string path = absolutePath(name);
        if (identity.isFolder(path) && identity.isReadable(path)) {
            folders.push_back(std::move(path));
        } else {
            complain(name + ": is no folder that can be read");
            failed = true;
        }
    }
    return folders;
}

} // namespace quillon
