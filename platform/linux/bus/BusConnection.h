#pragma once

#include "base/Mutex.h"
#include "platform/linux/bus/Deadline.h"
#include "platform/linux/bus/GioPointers.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace quillon {

/// Names an object on a message bus and one of its interfaces.
struct BusObject
{
    std::string service;
    std::string path;
    std::string interface;
};

/// One message bus, which is joined when it is first needed and again after it went away. Safe from
/// every thread. A call blocks until it is answered or its deadline has passed.
class BusConnection
{
public:
    /// Returns the address of the bus, or nothing when it cannot be found.
    using Address = std::function<std::optional<std::string>(Deadline)>;

    explicit BusConnection(Address address);
    BusConnection(const BusConnection &) = delete;
    BusConnection &operator=(const BusConnection &) = delete;
    ~BusConnection() = default;

    /// Makes a connection to the session bus of the user.
    static BusConnection session();

    /// Returns false when there is no such bus, or it cannot be joined in time.
    bool isReachable(Deadline deadline) { return connection(deadline) != nullptr; }

    enum class Activation
    {
        never,
        /// A call starts the program behind the service when it is not running.
        allowed
    };

    /// Calls a method with a tuple of arguments, null for none, and consumes floating arguments.
    /// Returns the tuple of the answer, or null when the call failed or was not answered in time.
    VariantRef call(const BusObject &object, const std::string &method, GVariant *arguments,
                    Deadline deadline, Activation activation = Activation::never);
    /// Returns the value of a property, or null when there is none.
    VariantRef property(const BusObject &object, const std::string &name, Deadline deadline);

    /// Starts the program behind the service unless it is running. Returns false when there is no
    /// such program, or when it does not appear in time.
    bool start(const std::string &service, Deadline deadline);
    bool hasOwner(const std::string &service, Deadline deadline);
    /// Returns the process that owns the service.
    std::optional<pid_t> process(const std::string &service, Deadline deadline);

private:
    /// Returns null when the bus cannot be joined in time.
    ObjectRef<GDBusConnection> connection(Deadline deadline);

    const Address address_;
    Mutex mutex_;
    ObjectRef<GDBusConnection> connection_ GUARDED_BY(mutex_);
};

} // namespace quillon
