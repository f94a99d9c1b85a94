#include "platform/linux/windows/X11WindowSystem.h"

#include "platform/linux/windows/XcbCalls.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace quillon {

namespace {

/// Who asks for the keyboard: a program, which tells when its user asked for that, or the user
/// directly, whatever the time.
constexpr std::uint32_t SOURCE_APPLICATION = 1;
constexpr std::uint32_t SOURCE_USER = 2;

/// Null where Qt does not run on X11.
xcb_connection_t *connection()
{
    auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t root(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

/// When the user asked, in the X server's time: what follows "_TIME" in the token. Zero, which
/// stands for now, where a launcher does not tell.
std::uint32_t timeOf(std::string_view token)
{
    constexpr std::string_view MARK = "_TIME";
    const std::size_t mark = token.rfind(MARK);
    std::uint32_t time = XCB_CURRENT_TIME;
    if (mark != std::string_view::npos)
        std::from_chars(token.data() + mark + MARK.size(), token.data() + token.size(), time);
    return time;
}

/// Ends the launcher's busy sign. The text travels in pieces, the last with a zero at its end.
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

/// Wayland takes the token as it is; the toolkit reads it where programs find theirs at the start.
void activateOnWayland(std::uintptr_t window, const std::string &token)
{
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
    for (QWindow *each : QGuiApplication::topLevelWindows()) {
        if (each->handle() && each->winId() == window)
            each->requestActivate();
    }
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

} // namespace

bool X11WindowSystem::isReachable()
{
    xcb_connection_t *x = xcb_connect(nullptr, nullptr);
    const bool isReached = xcb_connection_has_error(x) == 0;
    xcb_disconnect(x);
    return isReached;
}

void X11WindowSystem::keepOutOfTaskbar(std::uintptr_t window)
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

bool X11WindowSystem::isComposited() const
{
    auto *x = connection();
    if (!x)
        return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    // A compositing manager owns this selection for its screen; Qt's screens share the first one.
    const auto cookie = xcb_get_selection_owner(x, xcbAtom(x, "_NET_WM_CM_S0"));
    const auto reply = xcbReply(xcb_get_selection_owner_reply(x, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void X11WindowSystem::setShadowMargin(std::uintptr_t window, int margin)
{
    auto *x = connection();
    if (!x)
        return;
    // Left, right, top and bottom.
    std::array<std::uint32_t, 4> extents{};
    extents.fill(static_cast<std::uint32_t>(margin));
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window),
                        xcbAtom(x, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(),
                        extents.data());
    xcb_flush(x);
}

std::uintptr_t X11WindowSystem::activeWindow() const
{
    return windows_.activeId();
}

void X11WindowSystem::activate(std::uintptr_t window)
{
    windows_.activate(static_cast<std::uint32_t>(window));
}

void X11WindowSystem::activate(std::uintptr_t window, const std::string &activationToken)
{
    auto *x = connection();
    if (!x) {
        activateOnWayland(window, activationToken);
        return;
    }
    // The toolkit knows the time of the last event of its own alone, which may be long ago: window
    // managers that guard the keyboard would then refuse it.
    const auto id = static_cast<xcb_window_t>(window);
    const std::uint32_t time = timeOf(activationToken);
    tellWindowManager(x, root(x), id, xcbAtom(x, "_NET_ACTIVE_WINDOW"),
                      time == XCB_CURRENT_TIME ? SOURCE_USER : SOURCE_APPLICATION, time);
    completeStartup(x, id, activationToken);
    xcb_flush(x);
}

} // namespace quillon
