#include "platform/linux/bus/SoleInstance.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <string>

#include <poll.h>
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

/// The address of the claim. The kernel keeps names that begin with a null byte apart from the file
/// system, and drops them with the process that has bound them.
class Address
{
public:
    Address()
    {
        std::string name = "org.quillon.Quillon-" + std::to_string(getuid()) + '-' + display();
        name.resize(std::min(name.size(), sizeof address_.sun_path - 1));
        std::ranges::copy(name, address_.sun_path + 1);
        length_ = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    }

    const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&address_); }
    socklen_t length() const { return length_; }

private:
    sockaddr_un address_{.sun_family = AF_UNIX, .sun_path = {}};
    socklen_t length_ = 0;
};

} // namespace

bool SoleInstance::claim()
{
    const Address address;
    socket_ = Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (bind(socket_.get(), address.get(), address.length()) != 0)
        return errno != EADDRINUSE;
    // Nobody is answered. But whoever connects learns which process this is, and when it ends.
    listen(socket_.get(), SOMAXCONN);
    return true;
}

void SoleInstance::endOther()
{
    constexpr int PATIENCE = 2000; // milliseconds
    const Address address;
    const Descriptor other(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    ucred holder{};
    socklen_t size = sizeof holder;
    if (connect(other.get(), address.get(), address.length()) != 0 ||
        getsockopt(other.get(), SOL_SOCKET, SO_PEERCRED, &holder, &size) != 0 ||
        holder.uid != getuid() || holder.pid <= 0)
        return;
    kill(holder.pid, SIGTERM);
    // The connection hangs up when the process has ended.
    pollfd waiting{.fd = other.get(), .events = 0, .revents = 0};
    poll(&waiting, 1, PATIENCE);
}

} // namespace quillon
