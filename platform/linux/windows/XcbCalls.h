#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace quillon {

struct FreeMemory
{
    void operator()(void *memory) const { std::free(memory); }
};
/// An X server's answer; null when there was none.
template <typename T>
using XcbReply = std::unique_ptr<T, FreeMemory>;
template <typename T>
XcbReply<T> xcbReply(T *memory)
{
    return XcbReply<T>(memory);
}

/// Returns the atom of a name. Asks the server, the only one of this process, once for each thread.
xcb_atom_t xcbAtom(xcb_connection_t *x, std::string_view name);

/// Sends the window manager a message about a window, with two words in it.
void tellWindowManager(xcb_connection_t *x, xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                       std::uint32_t first, std::uint32_t second);

} // namespace quillon
