#pragma once

#include "platform/linux/windows/XcbCalls.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillon {

/// Sends strokes through the keyboard of an X display, as the keyboard is when this object is made.
class X11Strokes
{
public:
    /// One keystroke. The symbol of an ASCII letter is the letter.
    struct Stroke
    {
        std::uint32_t symbol = 0;
        bool withControl = false;
    };

    X11Strokes(xcb_connection_t *x, xcb_window_t root);

    // Both return false, and have done nothing, when the keyboard lacks a symbol.

    /// Sends the strokes to this window alone, whatever the user does meanwhile. GTK ignores such
    /// strokes.
    bool send(xcb_window_t window, const std::vector<Stroke> &strokes) const;
    /// Makes the display treat the stroke as one on the keyboard itself, so that it reaches the
    /// window that has the keyboard. Returns false also while the user holds a key that would
    /// change the stroke.
    bool press(const Stroke &stroke) const;

private:
    struct Key
    {
        std::uint8_t code = 0;
        /// The modifiers and the layout, as events carry them.
        std::uint16_t state = 0;
    };
    std::optional<Key> find(std::uint32_t symbol) const;
    /// Returns the modifiers and the layout that are in force now, as events carry them. Returns
    /// nothing when the server does not say.
    std::optional<std::uint16_t> heldState() const;

    xcb_connection_t *x_;
    xcb_window_t root_;
    std::uint8_t firstCode_;
    XcbReply<xcb_get_keyboard_mapping_reply_t> mapping_;
};

} // namespace quillon
