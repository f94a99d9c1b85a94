#include "ctl/ReadableFolders.h"

#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "platform/FolderIdentity.h"

#include <utility>

namespace quillon {

std::vector<std::string> readableFolders(const std::vector<std::string> &typed,
                                         const FolderIdentity &identity, bool &failed)
{
    std::vector<std::string> folders;
    for (const std::string &name : typed) {
        std::string path = absolutePath(name);
        if (identity.presence(path) == FolderPresence::there) {
            folders.push_back(std::move(path));
        } else {
            complain(name + ": is no folder that can be read");
            failed = true;
        }
    }
    return folders;
}

} // namespace quillon
