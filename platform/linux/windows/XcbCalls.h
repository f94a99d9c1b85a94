#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

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

/// Asks the server for the atoms of all names at once. An atom that the server does not give is 0.
std::vector<xcb_atom_t> xcbAtoms(xcb_connection_t *x, std::span<const std::string_view> names);

/// Sends the window manager a message about a window, with two words in it.
void tellWindowManager(xcb_connection_t *x, xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                       std::uint32_t first, std::uint32_t second);

} // namespace quillon
