#include "platform/linux/windows/DesktopWindowSystem.h"

#include "platform/linux/windows/Wayland.h"
#include "platform/linux/windows/XcbCalls.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QWindow>

#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

namespace {

/// The source of a request for the keyboard: a program, which adds the time of the user's action,
/// or the user directly, for whom no time counts.
constexpr std::uint32_t SOURCE_APPLICATION = 1;
constexpr std::uint32_t SOURCE_USER = 2;

/// Returns null when Qt does not run on X11.
xcb_connection_t *connection()
{
    auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t root(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

/// Returns the X server's time of the user's action, which follows "_TIME" in the token. Returns
/// zero, which means now, when the launcher gives none.
std::uint32_t timeOf(std::string_view token)
{
    constexpr std::string_view MARK = "_TIME";
    const std::size_t mark = token.rfind(MARK);
    std::uint32_t time = XCB_CURRENT_TIME;
    if (mark != std::string_view::npos)
        std::from_chars(token.data() + mark + MARK.size(), token.data() + token.size(), time);
    return time;
}

/// Ends the launcher's busy sign. The text is sent in pieces, the last of which ends with a zero.
void completeStartup(xcb_connection_t *x, xcb_window_t window, std::string_view token)
{
    std::string text = "remove: ID=\"";
    for (const char byte : token) {
        if (byte == '"' || byte == '\\')
            text += '\\';
        text += byte;
    }
    text += "\"";
    xcb_client_message_event_t piece{};
    piece.response_type = XCB_CLIENT_MESSAGE;
    piece.format = 8;
    piece.window = window;
    piece.type = xcbAtom(x, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t following = xcbAtom(x, "_NET_STARTUP_INFO");
    for (std::size_t sent = 0; sent <= text.size(); sent += sizeof piece.data) {
        std::ranges::fill(piece.data.data8, std::uint8_t{0});
        text.copy(reinterpret_cast<char *>(piece.data.data8), sizeof piece.data, sent);
        xcb_send_event(x, 0, root(x), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&piece));
        piece.type = following;
    }
}

/// Returns the rows of pixels that a rectangle with round corners covers.
std::vector<xcb_rectangle_t> roundedShape(int width, int height, int radius)
{
    std::vector<xcb_rectangle_t> rows;
    const auto add = [&](int inset, int top, int count) {
        rows.push_back({static_cast<std::int16_t>(inset), static_cast<std::int16_t>(top),
                        static_cast<std::uint16_t>(width - 2 * inset),
                        static_cast<std::uint16_t>(count)});
    };
    for (int row = 0; row < radius; ++row) {
        const double fromCentre = radius - row - 0.5;
        const auto inset = static_cast<int>(
            std::lround(radius - std::sqrt(radius * radius - fromCentre * fromCentre)));
        add(inset, row, 1);
        add(inset, height - 1 - row, 1);
    }
    add(0, radius, height - 2 * radius);
    return rows;
}

/// Returns this program's window with that number, or null.
QWindow *ownWindow(std::uintptr_t window)
{
    const auto windows = QGuiApplication::topLevelWindows();
    const auto found = std::ranges::find_if(
        windows, [&](QWindow *each) { return each->handle() && each->winId() == window; });
    return found == windows.end() ? nullptr : *found;
}

/// On Wayland the toolkit uses the token that it finds in the environment.
void activateOnWayland(std::uintptr_t window, const std::string &token)
{
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
    if (QWindow *own = ownWindow(window))
        own->requestActivate();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

/// Returns whether there is an X display that accepts this process.
bool isX11Reachable()
{
    xcb_connection_t *x = xcb_connect(nullptr, nullptr);
    const bool isReached = xcb_connection_has_error(x) == 0;
    xcb_disconnect(x);
    return isReached;
}

} // namespace

std::optional<std::string> DesktopWindowSystem::platforms()
{
    // A Wayland window that is not a panel can neither choose its place nor stay above the others.
    if (wayland::hasPanels())
        return "wayland;xcb";
    if (isX11Reachable())
        return "xcb";
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return "wayland";
    return std::nullopt;
}

bool DesktopWindowSystem::makePanel(std::uintptr_t window)
{
    QWindow *own = ownWindow(window);
    return own && wayland::makePanel(*own);
}

void DesktopWindowSystem::setPanelTop(std::uintptr_t window, int top)
{
    if (QWindow *own = ownWindow(window))
        wayland::setPanelTop(*own, top);
}

void DesktopWindowSystem::keepOutOfTaskbar(std::uintptr_t window)
{
    auto *x = connection();
    if (!x)
        return;
    const std::array states{xcbAtom(x, "_NET_WM_STATE_SKIP_TASKBAR"),
                            xcbAtom(x, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(x, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window),
                        xcbAtom(x, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(),
                        states.data());
    xcb_flush(x);
}

bool DesktopWindowSystem::isComposited() const
{
    auto *x = connection();
    if (!x)
        return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    // A compositing manager owns this selection for its X screen. All of Qt's screens are parts of
    // the first X screen.
    const auto cookie = xcb_get_selection_owner(x, xcbAtom(x, "_NET_WM_CM_S0"));
    const auto reply = xcbReply(xcb_get_selection_owner_reply(x, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void DesktopWindowSystem::setShadowMargin(std::uintptr_t window, int margin)
{
    auto *x = connection();
    if (!x)
        return;
    // The order is left, right, top, bottom.
    std::array<std::uint32_t, 4> extents{};
    extents.fill(static_cast<std::uint32_t>(margin));
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window),
                        xcbAtom(x, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(),
                        extents.data());
    xcb_flush(x);
}

void DesktopWindowSystem::cutCorners(std::uintptr_t window, int width, int height, int radius)
{
    auto *x = connection();
    if (!x)
        return;
    const auto id = static_cast<xcb_window_t>(window);
    // The toolkit's own mask is made of pixels that a high scale enlarges.
    const std::vector<xcb_rectangle_t> shape = roundedShape(width, height, radius);
    if (radius > 0)
        xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                             id, 0, 0, static_cast<std::uint32_t>(shape.size()), shape.data());
    else
        xcb_shape_mask(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, id, 0, 0, XCB_PIXMAP_NONE);
    xcb_flush(x);
}

std::uintptr_t DesktopWindowSystem::activeWindow() const
{
    // Without X11, what the X server says concerns the few programs that still use it.
    return connection() ? windows_.activeId() : 0;
}

void DesktopWindowSystem::activate(std::uintptr_t window)
{
    windows_.activate(static_cast<std::uint32_t>(window));
}

void DesktopWindowSystem::activate(std::uintptr_t window, const std::string &activationToken)
{
    auto *x = connection();
    if (!x) {
        activateOnWayland(window, activationToken);
        return;
    }
    // The toolkit gives the time of its own last event, which may be long ago. A window manager
    // that prevents windows from taking the keyboard would refuse such a request.
    const auto id = static_cast<xcb_window_t>(window);
    const std::uint32_t time = timeOf(activationToken);
    tellWindowManager(x, root(x), id, xcbAtom(x, "_NET_ACTIVE_WINDOW"),
                      time == XCB_CURRENT_TIME ? SOURCE_USER : SOURCE_APPLICATION, time);
    completeStartup(x, id, activationToken);
    xcb_flush(x);
}

std::string DesktopWindowSystem::requestActivationToken()
{
    return wayland::requestActivationToken();
}

} // namespace quillon
