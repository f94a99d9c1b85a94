#include "platform/linux/bus/BusRunningInstance.h"

#include "platform/linux/bus/BusNames.h"
#include "platform/linux/disk/Descriptor.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <poll.h>
#include <sys/syscall.h>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto BUS_TIMEOUT = 3000ms;
/// The instance may have to be started, and a file manager after it.
constexpr auto OPEN_TIMEOUT = 30s;
constexpr const char *ANSWER = "(a(ayda(xx)))";

BusObject object(const char *interface)
{
    return {BusNames::SERVICE, BusNames::OBJECT, interface};
}

GVariant *bytes(const std::string &text)
{
    return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, text.data(), text.size(), 1);
}

/// GIO would start a bus where there is none, and we would be alone on it.
bool hasBus()
{
    const char *folder = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    return std::getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr ||
           (folder != nullptr && std::filesystem::exists(std::string(folder) + "/bus", error));
}

/// Returns the token under both its names, as other programs send it.
GVariant *platformData(const std::string &activationToken)
{
    GVariantBuilder data;
    g_variant_builder_init(&data, G_VARIANT_TYPE_VARDICT);
    if (!activationToken.empty()) {
        for (const char *key : {BusNames::ACTIVATION_TOKEN, BusNames::STARTUP_ID})
            g_variant_builder_add(&data, "{sv}", key,
                                  g_variant_new_string(activationToken.c_str()));
    }
    return g_variant_builder_end(&data);
}

/// Waits for the end of a process, whatever its parent.
class ProcessEnd
{
public:
    explicit ProcessEnd(pid_t process)
        : descriptor_(static_cast<int>(syscall(SYS_pidfd_open, process, 0)))
    {}

    /// Returns false when the process has not ended in time, and true at once when it is gone.
    bool await(Deadline deadline) const
    {
        pollfd end{.fd = descriptor_.get(), .events = POLLIN, .revents = 0};
        return !descriptor_ || poll(&end, 1, static_cast<int>(deadline.remaining().count())) == 1;
    }

private:
    Descriptor descriptor_;
};

RemoteMatch readMatch(GVariant *match)
{
    const VariantRef path(g_variant_get_child_value(match, 0));
    const VariantRef score(g_variant_get_child_value(match, 1));
    const VariantRef ranges(g_variant_get_child_value(match, 2));
    RemoteMatch read;
    gsize length = 0;
    const auto *first =
        static_cast<const char *>(g_variant_get_fixed_array(path.get(), &length, 1));
    read.path.assign(first, length);
    read.score = g_variant_get_double(score.get());
    for (gsize i = 0; i < g_variant_n_children(ranges.get()); ++i) {
        gint64 location = 0;
        gint64 count = 0;
        g_variant_get_child(ranges.get(), i, "(xx)", &location, &count);
        read.ranges.emplace_back(location, count);
    }
    return read;
}

} // namespace

BusRunningInstance::BusRunningInstance(std::string activationToken)
    : activationToken_(std::move(activationToken))
{}

bool BusRunningInstance::isRunning()
{
    return bus_.hasOwner(BusNames::SERVICE, Deadline(BUS_TIMEOUT));
}

RunningInstance::Outcome BusRunningInstance::request(const std::string &action)
{
    const Deadline deadline(BUS_TIMEOUT);
    const auto process = bus_.process(BusNames::SERVICE, deadline);
    if (!process)
        return bus_.isReachable(deadline) ? Outcome::notRunning : Outcome::noBus;
    const ProcessEnd end(*process);
    const bool isReopening = action == "activate";
    GVariant *data = platformData(activationToken_);
    GVariant *arguments =
        isReopening ? g_variant_new("(@a{sv})", data)
                    : g_variant_new("(s@av@a{sv})", action.c_str(),
                                    g_variant_new_array(G_VARIANT_TYPE_VARIANT, nullptr, 0), data);
    const auto reply = bus_.call(object(BusNames::APPLICATION),
                                 isReopening ? "Activate" : "ActivateAction", arguments, deadline);
    // An instance that was about to end does not answer either, and is gone soon.
    if (!reply)
        return isRunning() ? Outcome::notAnswering : Outcome::notRunning;
    // A start right afterwards must not find the instance that is about to end.
    if (action == "quit" && !end.await(deadline))
        return Outcome::notAnswering;
    return Outcome::done;
}

RemoteAnswer BusRunningInstance::find(const RemoteQuery &query)
{
    if (!hasBus())
        return std::nullopt;
    // A service that nobody owns answers with an error at once.
    const auto reply =
        bus_.call(object(BusNames::SEARCH), BusNames::FIND,
                  g_variant_new("(@ay@ayusb)", bytes(query.settings), bytes(query.text),
                                guint32{query.limit}, query.order.c_str(), gboolean{query.words}),
                  Deadline(BUS_TIMEOUT));
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE(ANSWER)))
        return std::nullopt;
    const VariantRef matches(g_variant_get_child_value(reply.get(), 0));
    std::vector<RemoteMatch> read;
    for (gsize i = 0; i < g_variant_n_children(matches.get()); ++i) {
        const VariantRef match(g_variant_get_child_value(matches.get(), i));
        read.push_back(readMatch(match.get()));
    }
    return read;
}

std::optional<std::string> BusRunningInstance::status()
{
    if (!hasBus())
        return std::nullopt;
    const auto reply =
        bus_.call(object(BusNames::SEARCH), BusNames::STATUS, nullptr, Deadline(BUS_TIMEOUT));
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(s)")))
        return std::nullopt;
    const VariantRef text(g_variant_get_child_value(reply.get(), 0));
    return g_variant_get_string(text.get(), nullptr);
}

RunningInstance::Outcome BusRunningInstance::use(const std::string &settings,
                                                 const std::string &path)
{
    if (!hasBus())
        return Outcome::noBus;
    const auto reply =
        bus_.call(object(BusNames::SEARCH), BusNames::USE,
                  g_variant_new("(@ay@ay)", bytes(settings), bytes(path)), Deadline(BUS_TIMEOUT));
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(b)")))
        return isRunning() ? Outcome::notAnswering : Outcome::notRunning;
    gboolean isCounted = FALSE;
    g_variant_get(reply.get(), "(b)", &isCounted);
    return isCounted != FALSE ? Outcome::done : Outcome::notRunning;
}

RunningInstance::Opened BusRunningInstance::open(const std::string &settings,
                                                 const std::string &path)
{
    if (!hasBus())
        return {Outcome::noBus};
    const auto reply = bus_.call(object(BusNames::SEARCH), BusNames::OPEN,
                                 g_variant_new("(@ay@ay)", bytes(settings), bytes(path)),
                                 Deadline(OPEN_TIMEOUT), BusConnection::Activation::allowed);
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(s)"))) {
        if (isRunning())
            return {Outcome::notAnswering};
        return {bus_.isReachable(Deadline(BUS_TIMEOUT)) ? Outcome::notRunning : Outcome::noBus};
    }
    const VariantRef fault(g_variant_get_child_value(reply.get(), 0));
    return {Outcome::done, g_variant_get_string(fault.get(), nullptr)};
}

} // namespace quillon
