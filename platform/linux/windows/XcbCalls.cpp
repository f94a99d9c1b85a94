#include "platform/linux/windows/XcbCalls.h"

#include <map>
#include <string>

namespace quillon {

xcb_atom_t xcbAtom(xcb_connection_t *x, std::string_view name)
{
    // The question is a round trip, which a busy server delays, and an atom stays what it is.
    thread_local std::map<std::string, xcb_atom_t, std::less<>> known;
    if (const auto found = known.find(name); found != known.end())
        return found->second;
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = xcbReply(xcb_intern_atom_reply(x, cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return known.emplace(name, reply->atom).first->second;
}

std::vector<xcb_atom_t> xcbAtoms(xcb_connection_t *x, std::span<const std::string_view> names)
{
    std::vector<xcb_intern_atom_cookie_t> cookies;
    for (const std::string_view name : names)
        cookies.push_back(
            xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    std::vector<xcb_atom_t> atoms;
    for (const xcb_intern_atom_cookie_t cookie : cookies) {
        const auto reply = xcbReply(xcb_intern_atom_reply(x, cookie, nullptr));
        atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
    }
    return atoms;
}

void tellWindowManager(xcb_connection_t *x, xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                       std::uint32_t first, std::uint32_t second)
{
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window;
    request.type = type;
    request.data.data32[0] = first;
    request.data.data32[1] = second;
    xcb_send_event(x, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&request));
}

} // namespace quillon
