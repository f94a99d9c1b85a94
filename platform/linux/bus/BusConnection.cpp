#include "platform/linux/bus/BusConnection.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillon {

namespace {

const BusObject BUS{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};

/// A thread waits on this loop while it joins a bus. Answers arrive only here.
class PrivateLoop
{
public:
    PrivateLoop() : context_(g_main_context_new()) { g_main_context_push_thread_default(context_); }
    PrivateLoop(const PrivateLoop &) = delete;
    PrivateLoop &operator=(const PrivateLoop &) = delete;
    ~PrivateLoop()
    {
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }

    /// Cancels the wait once the deadline has passed.
    void cancelAt(Deadline deadline, GCancellable *cancellable)
    {
        GSource *source = g_timeout_source_new(static_cast<guint>(deadline.remaining().count()));
        g_source_set_callback(
            source,
            [](gpointer data) -> gboolean {
                g_cancellable_cancel(G_CANCELLABLE(data));
                return G_SOURCE_REMOVE;
            },
            cancellable, nullptr);
        g_source_attach(source, context_);
        g_source_unref(source);
    }
    void step() { g_main_context_iteration(context_, TRUE); }

private:
    GMainContext *context_;
};

ObjectRef<GDBusConnection> join(const std::string &address, Deadline deadline)
{
    struct Outcome
    {
        bool isKnown = false;
        GDBusConnection *connection = nullptr;
    };
    PrivateLoop loop;
    Outcome outcome;
    const ObjectRef<GCancellable> cancellable(g_cancellable_new());
    loop.cancelAt(deadline, cancellable.get());
    g_dbus_connection_new_for_address(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, cancellable.get(),
        [](GObject *, GAsyncResult *result, gpointer data) {
            auto &known = *static_cast<Outcome *>(data);
            known.connection = g_dbus_connection_new_for_address_finish(result, nullptr);
            known.isKnown = true;
        },
        &outcome);
    while (!outcome.isKnown)
        loop.step();
    return ObjectRef<GDBusConnection>(outcome.connection);
}

} // namespace

BusConnection::BusConnection(Address address) : address_(std::move(address)) {}

BusConnection BusConnection::session()
{
    return BusConnection([](Deadline) -> std::optional<std::string> {
        const GString8 address(
            g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        return address ? std::optional<std::string>(address.get()) : std::nullopt;
    });
}

ObjectRef<GDBusConnection> BusConnection::connection(Deadline deadline)
{
    const MutexLock lock(mutex_);
    if (!connection_ || g_dbus_connection_is_closed(connection_.get())) {
        const auto address = address_(deadline);
        connection_ = address ? join(*address, deadline) : nullptr;
    }
    auto *connection = connection_.get();
    return ObjectRef<GDBusConnection>(connection ? G_DBUS_CONNECTION(g_object_ref(connection))
                                                 : nullptr);
}

VariantRef BusConnection::call(const BusObject &object, const std::string &method,
                               GVariant *arguments, Deadline deadline, Activation activation)
{
    const VariantRef owned(arguments ? g_variant_ref_sink(arguments) : nullptr);
    const auto bus = connection(deadline);
    const auto limit = deadline.remaining().count();
    if (!bus || limit == 0)
        return nullptr;
    const auto flags = activation == Activation::allowed ? G_DBUS_CALL_FLAGS_NONE
                                                         : G_DBUS_CALL_FLAGS_NO_AUTO_START;
    return VariantRef(g_dbus_connection_call_sync(
        bus.get(), object.service.c_str(), object.path.c_str(), object.interface.c_str(),
        method.c_str(), owned.get(), nullptr, flags,
        static_cast<int>(std::min<std::int64_t>(limit, std::numeric_limits<int>::max())), nullptr,
        nullptr));
}

VariantRef BusConnection::property(const BusObject &object, const std::string &name,
                                   Deadline deadline)
{
    const BusObject properties{object.service, object.path, "org.freedesktop.DBus.Properties"};
    const auto reply = call(
        properties, "Get", g_variant_new("(ss)", object.interface.c_str(), name.c_str()), deadline);
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(v)")))
        return nullptr;
    GVariant *value = nullptr;
    g_variant_get(reply.get(), "(v)", &value);
    return VariantRef(value);
}

bool BusConnection::start(const std::string &service, Deadline deadline)
{
    constexpr guint32 NO_FLAGS = 0;
    return call(BUS, "StartServiceByName", g_variant_new("(su)", service.c_str(), NO_FLAGS),
                deadline) != nullptr;
}

bool BusConnection::hasOwner(const std::string &service, Deadline deadline)
{
    const auto reply = call(BUS, "NameHasOwner", g_variant_new("(s)", service.c_str()), deadline);
    gboolean hasOwner = FALSE;
    if (reply)
        g_variant_get(reply.get(), "(b)", &hasOwner);
    return hasOwner != FALSE;
}

std::optional<pid_t> BusConnection::process(const std::string &service, Deadline deadline)
{
    const auto reply =
        call(BUS, "GetConnectionUnixProcessID", g_variant_new("(s)", service.c_str()), deadline);
    if (!reply)
        return std::nullopt;
    guint32 process = 0;
    g_variant_get(reply.get(), "(u)", &process);
    return static_cast<pid_t>(process);
}

} // namespace quillon
