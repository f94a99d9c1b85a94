#include "platform/linux/bus/SoleInstance.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quillon {

namespace {

std::string display()
{
    for (const char *name : {"WAYLAND_DISPLAY", "DISPLAY"}) {
        const char *value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return value;
    }
    return {};
}

} // namespace

bool SoleInstance::claim()
{
    // The kernel keeps names that begin with a null byte apart from the file system, and drops them
    // with the process that has bound them.
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string name = "org.quillon.Quillon-" + std::to_string(getuid()) + '-' + display();
    name.resize(std::min(name.size(), sizeof address.sun_path - 1));
    std::ranges::copy(name, address.sun_path + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    socket_ = Descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    return bind(socket_.get(), reinterpret_cast<const sockaddr *>(&address), length) == 0 ||
           errno != EADDRINUSE;
}

} // namespace quillon
