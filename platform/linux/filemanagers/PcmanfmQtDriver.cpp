#include "platform/linux/GioPointers.h"
#include "platform/linux/filemanagers/LocationBarDriver.h"

namespace quillon {

namespace {

using namespace std::chrono_literals;

const std::string SHARED_NAME = "org.freedesktop.FileManager1";
constexpr auto ACTIVATION_LIMIT = 500ms;
constexpr std::uint32_t RETURN = 0xff0d;

/// A URI of the characters that every keyboard has within reach.
std::string typedUri(const std::string &path)
{
    const GString8 escaped(
        g_uri_escape_bytes(reinterpret_cast<const guint8 *>(path.data()), path.size(), "/"));
    return std::string("file://") + escaped.get();
}

/// LXQt's: its windows offer nothing but their keys.
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
    /// It answers under the shared name only, and only while it owns that.
    std::optional<std::string> commonName(Deadline deadline) override
    {
        auto &session = surroundings().session;
        const auto own = session.process(identity().busName, deadline);
        return own && session.process(SHARED_NAME, deadline) == own ? std::optional(SHARED_NAME)
                                                                    : std::nullopt;
    }

    bool show(const DesktopWindow &window, const std::string &folder, Deadline deadline) override
    {
        const X11Windows &windows = surroundings().windows;
        windows.activate(window.id);
        if (!windows.waitUntil(
                window.id, [&] { return windows.activeId() == window.id; },
                deadline.atMost(ACTIVATION_LIMIT)))
            return false;
        std::vector<X11Windows::Stroke> strokes{{.symbol = 'l', .withControl = true}};
        for (const char letter : typedUri(folder))
            strokes.push_back({.symbol = static_cast<std::uint8_t>(letter)});
        strokes.push_back({.symbol = RETURN});
        return windows.type(window.id, strokes);
    }
};

} // namespace

std::unique_ptr<ManagerDriver> makePcmanfmQtDriver(Surroundings surroundings)
{
    return std::make_unique<PcmanfmQtDriver>(surroundings);
}

} // namespace quillon
