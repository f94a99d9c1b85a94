#include "platform/linux/windows/X11Strokes.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <cstddef>
#include <span>

namespace quillon {

namespace {

/// The position of the layout's number in an event's state.
constexpr unsigned LAYOUT_SHIFT = 13;
constexpr std::uint32_t CONTROL = 0xffe3;
/// The modifiers that change a stroke. Caps Lock and Num Lock do not change one with Control.
constexpr unsigned CHANGING_MODIFIERS = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 |
                                        XCB_MOD_MASK_3 | XCB_MOD_MASK_4 | XCB_MOD_MASK_5;

} // namespace

X11Strokes::X11Strokes(xcb_connection_t *x, xcb_window_t root)
    : x_(x),
      root_(root),
      firstCode_(xcb_get_setup(x)->min_keycode),
      mapping_(xcbReply(xcb_get_keyboard_mapping_reply(
          x,
          xcb_get_keyboard_mapping(
              x, firstCode_,
              static_cast<std::uint8_t>(xcb_get_setup(x)->max_keycode - firstCode_ + 1)),
          nullptr)))
{}

std::optional<X11Strokes::Key> X11Strokes::find(std::uint32_t symbol) const
{
    if (!mapping_ || mapping_->keysyms_per_keycode == 0)
        return std::nullopt;
    const std::size_t columns = mapping_->keysyms_per_keycode;
    const std::span symbols(
        xcb_get_keyboard_mapping_keysyms(mapping_.get()),
        static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(mapping_.get())));
    // Each of the first two layouts has two columns, without and with Shift.
    for (std::size_t column = 0; column < std::min(columns, std::size_t{4}); ++column) {
        for (std::size_t row = 0; row * columns + column < symbols.size(); ++row) {
            if (symbols[row * columns + column] != symbol)
                continue;
            const auto layout = static_cast<unsigned>(column / 2) << LAYOUT_SHIFT;
            const auto shift = column % 2 != 0 ? unsigned{XCB_MOD_MASK_SHIFT} : 0U;
            return Key{static_cast<std::uint8_t>(firstCode_ + row),
                       static_cast<std::uint16_t>(layout | shift)};
        }
    }
    return std::nullopt;
}

bool X11Strokes::send(xcb_window_t window, const std::vector<Stroke> &strokes) const
{
    std::vector<xcb_key_press_event_t> events;
    for (const Stroke &stroke : strokes) {
        const auto key = find(stroke.symbol);
        if (!key)
            return false;
        xcb_key_press_event_t event{};
        event.detail = key->code;
        event.root = root_;
        event.event = window;
        event.same_screen = 1;
        event.state = key->state;
        if (stroke.withControl)
            event.state |= XCB_MOD_MASK_CONTROL;
        events.push_back(event);
    }
    for (xcb_key_press_event_t &event : events) {
        for (const auto type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
            event.response_type = static_cast<std::uint8_t>(type);
            xcb_send_event(x_, 0, window, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char *>(&event));
        }
    }
    xcb_flush(x_);
    return true;
}

std::optional<std::uint16_t> X11Strokes::heldState() const
{
    const auto pointer =
        xcbReply(xcb_query_pointer_reply(x_, xcb_query_pointer(x_, root_), nullptr));
    return pointer ? std::optional(pointer->mask) : std::nullopt;
}

bool X11Strokes::press(const Stroke &stroke) const
{
    const auto *extension = xcb_get_extension_data(x_, &xcb_test_id);
    const auto key = find(stroke.symbol);
    const auto control = find(CONTROL);
    const auto held = heldState();
    if (extension == nullptr || extension->present == 0 || !key || !control || !held ||
        (*held & CHANGING_MODIFIERS) != 0 || (key->state & XCB_MOD_MASK_SHIFT) != 0)
        return false;
    const auto fake = [this](int type, std::uint8_t code) {
        xcb_test_fake_input(x_, static_cast<std::uint8_t>(type), code, XCB_CURRENT_TIME, root_, 0,
                            0, 0);
    };
    if (stroke.withControl)
        fake(XCB_KEY_PRESS, control->code);
    fake(XCB_KEY_PRESS, key->code);
    fake(XCB_KEY_RELEASE, key->code);
    if (stroke.withControl)
        fake(XCB_KEY_RELEASE, control->code);
    xcb_flush(x_);
    return true;
}

} // namespace quillon
