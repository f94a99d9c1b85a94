#include "platform/linux/bus/GioPointers.h"
#include "platform/linux/filemanagers/LocationBarDriver.h"

#include <thread>

namespace quillon {

namespace {

using namespace std::chrono_literals;

const std::string SHARED_NAME = "org.freedesktop.FileManager1";
constexpr std::uint32_t RETURN = 0xff0d;
constexpr int IDLE_ANSWERS = 4;
/// A key takes longer to arrive than a message on the bus.
constexpr auto KEY_DELAY = 50ms;

/// Returns a URI of characters that can be typed on every keyboard.
std::string typedUri(const std::string &path)
{
    const GString8 escaped(
        g_uri_escape_bytes(reinterpret_cast<const guint8 *>(path.data()), path.size(), "/"));
    return std::string("file://") + escaped.get();
}

/// Drives pcmanfm-qt, LXQt's file manager, whose windows accept nothing but keys.
class PcmanfmQtDriver : public LocationBarDriver
{
public:
    explicit PcmanfmQtDriver(Surroundings surroundings)
        : LocationBarDriver({.desktopIds = {"pcmanfm-qt"},
                             .windowClass = "pcmanfm-qt",
                             .busName = "org.pcmanfm.PCManFM",
                             .newWindowCommand = {"pcmanfm-qt", "--new-window"}},
                            surroundings)
    {}

protected:
    /// It answers only under the shared name, while it owns that name.
    std::optional<std::string> commonName(Deadline deadline) override
    {
        auto &session = surroundings().session;
        const auto own = session.process(identity().busName, deadline);
        return own && session.process(SHARED_NAME, deadline) == own ? std::optional(SHARED_NAME)
                                                                    : std::nullopt;
    }

    bool selectByOwnMeans(const std::string &item, const std::string &, Deadline deadline) override
    {
        auto &session = surroundings().session;
        return !session.hasOwner(SHARED_NAME, deadline) &&
               !session.hasOwner(identity().busName, deadline) &&
               selectOnceStarted({"--daemon-mode"}, item, deadline);
    }

    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override
    {
        const X11Windows &windows = surroundings().windows;
        // The keys must reach no other program.
        if (surroundings().session.process(identity().busName, deadline) != window.process)
            return false;
        if (!windows.activate(window.id, deadline.atMost(ACTIVATION_LIMIT)))
            return false;
        if (!windows.type(window.id, {{.symbol = 'l', .withControl = true}}))
            return false;
        waitForKeys(deadline);
        std::vector<X11Windows::Stroke> strokes;
        for (const char letter : typedUri(folder))
            strokes.push_back({.symbol = static_cast<std::uint8_t>(letter)});
        strokes.push_back({.symbol = RETURN});
        return windows.type(window.id, strokes);
    }

private:
    /// Waits until the keys sent so far have taken effect. The program gives its entry the keyboard
    /// only once it is idle, which cannot be seen; but it does not answer the bus sooner.
    void waitForKeys(Deadline deadline)
    {
        const BusObject program{identity().busName, "/Application",
                                "org.freedesktop.DBus.Introspectable"};
        std::this_thread::sleep_for(deadline.atMost(KEY_DELAY).remaining());
        for (int i = 0; i < IDLE_ANSWERS; ++i)
            surroundings().session.call(program, "Introspect", nullptr, deadline);
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makePcmanfmQtDriver(Surroundings surroundings)
{
    return std::make_unique<PcmanfmQtDriver>(surroundings);
}

} // namespace quillon
