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

/// An object on a message bus and one of its interfaces.
struct BusObject
{
    std::string service;
    std::string path;
    std::string interface;
};

/// One message bus, joined when it is first needed and again after it went away. Any thread; a
/// call blocks until it is answered or its deadline has passed.
class BusConnection
{
public:
    /// Tells where the bus listens; absent when it cannot be found out.
    using Address = std::function<std::optional<std::string>(Deadline)>;

    explicit BusConnection(Address address);
    BusConnection(const BusConnection &) = delete;
    BusConnection &operator=(const BusConnection &) = delete;
    ~BusConnection() = default;

    /// The session bus of the user.
    static BusConnection session();

    /// False when there is no such bus, or it cannot be joined in time.
    bool isReachable(Deadline deadline) { return connection(deadline) != nullptr; }

    enum class Activation
    {
        never,
        /// Starts the program behind the service when it does not run.
        allowed
    };

    /// Calls a method with a tuple of arguments, null for none; floating arguments are consumed.
    /// Returns the tuple it answers, null when the call failed or was not answered in time.
    VariantRef call(const BusObject &object, const std::string &method, GVariant *arguments,
                    Deadline deadline, Activation activation = Activation::never);
    /// A property's value; null when there is none.
    VariantRef property(const BusObject &object, const std::string &name, Deadline deadline);

    /// Starts the program behind the service unless it runs. False when there is none or it does
    /// not come in time.
    bool start(const std::string &service, Deadline deadline);
    bool hasOwner(const std::string &service, Deadline deadline);
    /// The process that owns the service.
    std::optional<pid_t> process(const std::string &service, Deadline deadline);

private:
    /// Null when the bus cannot be joined in time.
    ObjectRef<GDBusConnection> connection(Deadline deadline);

    const Address address_;
    Mutex mutex_;
    ObjectRef<GDBusConnection> connection_ GUARDED_BY(mutex_);
};

} // namespace quillon
