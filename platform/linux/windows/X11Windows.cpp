#include "platform/linux/windows/X11Windows.h"

#include "platform/linux/windows/XcbCalls.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <span>
#include <thread>

#include <poll.h>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The number of owners of a dialogue that are followed. It also ends a circle of owners.
constexpr int LONGEST_TRANSIENCE = 8;
/// The longest part of a property that is read, in units of four bytes. Longer texts and lists are
/// cut off.
constexpr std::uint32_t LONGEST_PROPERTY = 16384;
/// The value that stands for every desktop.
constexpr std::uint32_t ALL_DESKTOPS = 0xFFFFFFFF;
/// The source of a request that window managers treat as the user's own, as from a pager.
constexpr std::uint32_t SOURCE_PAGER = 2;
/// The longest time between two attempts, since an answer may depend on more than the watched
/// properties.
constexpr auto LONGEST_SILENCE = 100ms;

/// The places of the atoms in the list of atoms.
enum Atom : std::size_t
{
    activeWindow,
    clientList,
    clientListStacking,
    closeWindow,
    currentDesktop,
    windowDesktop,
    windowName,
    processId,
    windowState,
    stateHidden,
    windowType,
    typeNormal,
    gtkObjectPath,
    gtkBusName,
};
constexpr auto ATOM_NAMES = std::to_array<std::string_view>(
    {"_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING", "_NET_CLOSE_WINDOW",
     "_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP", "_NET_WM_NAME", "_NET_WM_PID", "_NET_WM_STATE",
     "_NET_WM_STATE_HIDDEN", "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_NORMAL",
     "_GTK_WINDOW_OBJECT_PATH", "_GTK_UNIQUE_BUS_NAME"});

std::span<const std::uint32_t> words(const xcb_get_property_reply_t *property)
{
    if (!property || property->format != 32)
        return {};
    return {static_cast<const std::uint32_t *>(xcb_get_property_value(property)),
            property->value_len};
}

std::string text(const xcb_get_property_reply_t *property)
{
    if (!property || property->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(property)), property->value_len};
}

std::uint32_t firstWord(const xcb_get_property_reply_t *property, std::uint32_t otherwise)
{
    const auto found = words(property);
    return found.empty() ? otherwise : found.front();
}

bool contains(std::span<const std::uint32_t> words, std::uint32_t word)
{
    return std::ranges::find(words, word) != words.end();
}

/// Returns the second of the two texts in WM_CLASS, in lower case. Each text ends with a zero.
std::string classPart(const std::string &property)
{
    const std::size_t first = property.find('\0');
    if (first == std::string::npos)
        return {};
    const std::size_t second = property.find('\0', first + 1);
    std::string part = property.substr(first + 1, second - first - 1);
    for (char &letter : part)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return part;
}

} // namespace

/// A window together with what decides whether it is an ordinary one.
struct X11Windows::Description
{
    DesktopWindow window;
    bool isNormal = false;
    std::uint32_t desktop = ALL_DESKTOPS;
    std::uint32_t transientFor = 0;
};

X11Windows::X11Windows() : atoms_(ATOM_NAMES.size())
{
    int screen = 0;
    x_ = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(x_)) {
        xcb_disconnect(x_);
        x_ = nullptr;
        return;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(x_));
    for (; screen > 0 && screens.rem > 1; --screen)
        xcb_screen_next(&screens);
    root_ = screens.data->root;
    atoms_ = xcbAtoms(x_, ATOM_NAMES);
}

X11Windows::~X11Windows()
{
    if (x_)
        xcb_disconnect(x_);
}

bool X11Windows::isComplete() const
{
    return x_ != nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr;
}

std::vector<std::uint32_t> X11Windows::windowList(std::uint32_t property) const
{
    if (!x_)
        return {};
    const auto cookie =
        xcb_get_property(x_, 0, root_, property, XCB_ATOM_WINDOW, 0, LONGEST_PROPERTY);
    const auto answer = xcbReply(xcb_get_property_reply(x_, cookie, nullptr));
    const auto found = words(answer.get());
    return {found.begin(), found.end()};
}

std::vector<X11Windows::Description>
X11Windows::describe(const std::vector<std::uint32_t> &windows) const
{
    const std::array properties{xcb_atom_t{XCB_ATOM_WM_CLASS},
                                xcb_atom_t{XCB_ATOM_WM_TRANSIENT_FOR},
                                atoms_[windowName],
                                atoms_[processId],
                                atoms_[windowState],
                                atoms_[windowType],
                                atoms_[windowDesktop],
                                atoms_[gtkObjectPath],
                                atoms_[gtkBusName]};
    constexpr std::size_t COUNT = properties.size();
    // All requests are sent before we wait for the first answer.
    std::vector<std::array<xcb_get_property_cookie_t, COUNT>> cookies(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i)
        for (std::size_t p = 0; p < COUNT; ++p)
            cookies[i][p] = xcb_get_property(x_, 0, windows[i], properties[p], XCB_ATOM_ANY, 0,
                                             LONGEST_PROPERTY);

    std::vector<Description> descriptions;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        // A window that is gone has no properties, so its class is empty.
        std::array<XcbReply<xcb_get_property_reply_t>, COUNT> answers;
        for (std::size_t p = 0; p < COUNT; ++p)
            answers[p] = xcbReply(xcb_get_property_reply(x_, cookies[i][p], nullptr));
        const auto &[wmClass, transientFor, name, pid, state, type, desktop, path, bus] = answers;
        Description found;
        found.window.id = windows[i];
        found.window.windowClass = classPart(text(wmClass.get()));
        found.transientFor = firstWord(transientFor.get(), 0);
        found.window.title = text(name.get());
        found.window.process = static_cast<pid_t>(firstWord(pid.get(), 0));
        found.window.isMinimised = contains(words(state.get()), atoms_[stateHidden]);
        found.isNormal = contains(words(type.get()), atoms_[typeNormal]) ||
                         (words(type.get()).empty() && found.transientFor == 0);
        found.desktop = firstWord(desktop.get(), ALL_DESKTOPS);
        found.window.gtkObjectPath = text(path.get());
        found.window.gtkBusName = text(bus.get());
        descriptions.push_back(std::move(found));
    }
    return descriptions;
}

std::uint32_t X11Windows::activeId() const
{
    const auto active = windowList(atoms_[activeWindow]);
    return active.empty() ? 0 : active.front();
}

std::optional<DesktopWindow> X11Windows::active() const
{
    std::uint32_t id = activeId();
    for (int step = 0; id != 0 && step < LONGEST_TRANSIENCE; ++step) {
        Description found = std::move(describe({id}).front());
        if (found.isNormal && !found.window.windowClass.empty())
            return std::move(found.window);
        id = found.transientFor;
    }
    return std::nullopt;
}

std::vector<DesktopWindow> X11Windows::stacked() const
{
    std::vector<DesktopWindow> windows;
    if (!x_)
        return windows;
    const auto current = windowList(atoms_[currentDesktop]);
    for (Description &found : describe(windowList(atoms_[clientListStacking]))) {
        const bool isHere =
            found.desktop == ALL_DESKTOPS || current.empty() || found.desktop == current.front();
        if (found.isNormal && isHere)
            windows.push_back(std::move(found.window));
    }
    std::ranges::reverse(windows);
    return windows;
}

std::vector<std::uint32_t> X11Windows::clients() const
{
    return windowList(atoms_[clientList]);
}

std::string X11Windows::title(std::uint32_t window) const
{
    if (!x_)
        return {};
    return describe({window}).front().window.title;
}

pid_t X11Windows::process(std::uint32_t window) const
{
    return x_ ? describe({window}).front().window.process : 0;
}

std::optional<X11Windows::Box> X11Windows::box(std::uint32_t window) const
{
    if (!x_)
        return std::nullopt;
    const auto geometryCookie = xcb_get_geometry(x_, window);
    const auto originCookie = xcb_translate_coordinates(x_, window, root_, 0, 0);
    const auto geometry = xcbReply(xcb_get_geometry_reply(x_, geometryCookie, nullptr));
    const auto origin = xcbReply(xcb_translate_coordinates_reply(x_, originCookie, nullptr));
    if (!geometry || !origin)
        return std::nullopt;
    return Box{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

void X11Windows::tell(std::uint32_t window, std::uint32_t type, std::uint32_t first,
                      std::uint32_t second) const
{
    if (!x_ || window == 0)
        return;
    tellWindowManager(x_, root_, window, type, first, second);
    // Once the server answers a later request, this one has arrived, even if the program ends now.
    xcbReply(xcb_get_input_focus_reply(x_, xcb_get_input_focus(x_), nullptr));
}

void X11Windows::activate(std::uint32_t window) const
{
    tell(window, atoms_[activeWindow], SOURCE_PAGER, XCB_CURRENT_TIME);
}

bool X11Windows::activate(std::uint32_t window, Deadline deadline) const
{
    activate(window);
    return waitUntil(
        window, [&] { return activeId() == window; }, deadline);
}

void X11Windows::close(std::uint32_t window) const
{
    tell(window, atoms_[closeWindow], XCB_CURRENT_TIME, SOURCE_PAGER);
}

bool X11Windows::type(std::uint32_t window, const std::vector<Stroke> &strokes) const
{
    return x_ && X11Strokes(x_, root_).send(window, strokes);
}

bool X11Windows::press(std::uint32_t window, const Stroke &stroke) const
{
    return x_ && activeId() == window && X11Strokes(x_, root_).press(stroke);
}

void X11Windows::watch(std::uint32_t window, bool isWatched) const
{
    const std::uint32_t mask =
        isWatched ? std::uint32_t{XCB_EVENT_MASK_PROPERTY_CHANGE} : std::uint32_t{0};
    for (const std::uint32_t watched : {root_, window}) {
        if (watched != 0)
            xcb_change_window_attributes(x_, watched, XCB_CW_EVENT_MASK, &mask);
    }
    xcb_flush(x_);
}

bool X11Windows::waitUntil(std::uint32_t window, const std::function<bool()> &answer,
                           Deadline deadline) const
{
    if (!x_) {
        bool isSo = answer();
        for (; !isSo && !deadline.hasPassed(); isSo = answer())
            std::this_thread::sleep_for(deadline.atMost(LONGEST_SILENCE).remaining());
        return isSo;
    }
    watch(window, true);
    bool isSo = answer();
    while (!isSo && !deadline.hasPassed() && !xcb_connection_has_error(x_)) {
        bool hasChanged = false;
        while (const auto event = xcbReply(xcb_poll_for_event(x_)))
            hasChanged = true;
        pollfd display{xcb_get_file_descriptor(x_), POLLIN, 0};
        if (!hasChanged)
            poll(&display, 1,
                 static_cast<int>(deadline.atMost(LONGEST_SILENCE).remaining().count()));
        isSo = answer();
    }
    watch(window, false);
    while (const auto event = xcbReply(xcb_poll_for_event(x_))) {
    }
    return isSo;
}

} // namespace quillon
