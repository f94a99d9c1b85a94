// The command "quillon". The application links the whole desktop, which takes longer to load than a
// key press may take. So this command links only the bus, and turns into the application if none is
// running. A map of the code is at the top of app/main.cpp.

#include "launcher/StartCommand.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/bus/OwnPrograms.h"

#include <cstdio>

int main(int argc, char **argv)
{
    quillon::BusRunningInstance instance(quillon::activationToken());
    const auto becomeApplication = [](const std::string &action) {
        const std::string application =
            quillon::ownProgramFolder() + "/" QUILLON_PROGRAMS_FROM_BIN "/quillon";
        return quillon::becomeProgram(application, {"quillon", action});
    };
    return quillon::StartCommand(instance, becomeApplication, stderr).run(argc, argv);
}
