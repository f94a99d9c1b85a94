// The program "open" opens a file or folder with an application that is found by its name. It is in
// a folder of Quillon's own, which comes first on the PATH of the commands that "Open Application"
// runs.

#include "launcher/OpenCommand.h"
#include "platform/linux/applications/GioApplicationLauncher.h"
#include "platform/linux/applications/GioWorkspace.h"
#include "platform/linux/bus/ActivationToken.h"

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char **argv)
{
    quillon::LaunchToken token;
    token.set(quillon::takeActivationToken());
    quillon::GioApplicationLauncher launcher(token);
    quillon::GioWorkspace workspace(token);
    return quillon::OpenCommand(launcher, workspace, stderr)
        .run(std::vector<std::string>(argv + 1, argv + argc));
}
