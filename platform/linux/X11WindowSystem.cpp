#include "platform/linux/X11WindowSystem.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace quillon {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

/// Null where Qt does not run on X11.
xcb_connection_t *connection()
{
    auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t *x, std::string_view name)
{
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr),
                                               &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

void X11WindowSystem::keepOutOfTaskbar(std::uintptr_t window)
{
    auto *x = connection();
    if (!x)
        return;
    const std::array states{atom(x, "_NET_WM_STATE_SKIP_TASKBAR"),
                            atom(x, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(x, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window),
                        atom(x, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
    xcb_flush(x);
}

bool X11WindowSystem::isComposited() const
{
    auto *x = connection();
    if (!x)
        return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    // A compositing manager owns this selection for its screen; Qt's screens share the first one.
    const auto cookie = xcb_get_selection_owner(x, atom(x, "_NET_WM_CM_S0"));
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, cookie, nullptr), &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

std::uintptr_t X11WindowSystem::activeWindow() const
{
    return windows_.activeId();
}

void X11WindowSystem::activate(std::uintptr_t window)
{
    windows_.activate(static_cast<std::uint32_t>(window));
}

} // namespace quillon
