// Types into the panel and waits after each key until its rows are painted. Prints the milliseconds
// from the press of each key to the first paint of the rows, one a line; "-" where the rows stayed.
//
// usage: panel_typing WINDOW HEADER KEYS    the panel with the keyboard; only what is painted below
//                                           its first HEADER pixels counts; "<" stands for
//                                           Backspace

#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Rows that have not been painted by then count as unchanged.
constexpr auto PATIENCE = 1000ms;
/// When nothing, not even an icon, has been painted for this long, the next key is pressed.
constexpr auto REST = 200ms;
constexpr xcb_keysym_t BACKSPACE = 0xff08;

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

class Panel
{
public:
    Panel(xcb_window_t window, int header) : x_(xcb_connect(nullptr, nullptr)), header_(header)
    {
        const auto *extension = xcb_get_extension_data(x_, &xcb_damage_id);
        if (xcb_connection_has_error(x_) != 0 || extension->present == 0) {
            std::fputs("panel_typing: no display that tells what is painted\n", stderr);
            std::exit(EXIT_FAILURE);
        }
        notify_ = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
        std::free(xcb_damage_query_version_reply(x_, xcb_damage_query_version(x_, 1, 1), nullptr));
        xcb_damage_create(x_, xcb_generate_id(x_), window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        xcb_flush(x_);
    }
    ~Panel() { xcb_disconnect(x_); }
    Panel(const Panel &) = delete;
    Panel &operator=(const Panel &) = delete;

    /// Returns 0 when no key types the symbol.
    xcb_keycode_t keyFor(xcb_keysym_t symbol) const
    {
        const auto *setup = xcb_get_setup(x_);
        const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
        const Reply<xcb_get_keyboard_mapping_reply_t> mapping(
            xcb_get_keyboard_mapping_reply(
                x_, xcb_get_keyboard_mapping(x_, setup->min_keycode, count), nullptr),
            &std::free);
        const std::span symbols(
            xcb_get_keyboard_mapping_keysyms(mapping.get()),
            static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(mapping.get())));
        for (std::size_t key = 0; key < count; ++key)
            if (symbols[key * mapping->keysyms_per_keycode] == symbol)
                return static_cast<xcb_keycode_t>(setup->min_keycode + key);
        return 0;
    }

    void press(xcb_keycode_t key)
    {
        for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE})
            xcb_test_fake_input(x_, static_cast<std::uint8_t>(type), key, XCB_CURRENT_TIME,
                                XCB_NONE, 0, 0, 0);
        xcb_flush(x_);
    }

    /// Returns when the rows are next painted, or nothing when that does not happen in time.
    std::optional<Clock::time_point> nextPaint(Clock::time_point deadline)
    {
        do {
            while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(x_), &std::free}) {
                if ((event->response_type & 0x7fU) != notify_)
                    continue;
                const auto &damage =
                    *reinterpret_cast<const xcb_damage_notify_event_t *>(event.get());
                if (damage.area.y + damage.area.height > header_)
                    return Clock::now();
            }
            std::this_thread::sleep_for(100us);
        } while (Clock::now() < deadline);
        return std::nullopt;
    }

    void waitForRest()
    {
        while (nextPaint(Clock::now() + REST)) {
        }
    }

private:
    xcb_connection_t *x_;
    int header_;
    std::uint8_t notify_ = 0;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fputs("usage: panel_typing WINDOW HEADER KEYS\n", stderr);
        return EXIT_FAILURE;
    }
    Panel panel(static_cast<xcb_window_t>(std::strtoul(argv[1], nullptr, 0)), std::atoi(argv[2]));
    panel.waitForRest();
    for (const char letter : std::string_view(argv[3])) {
        const auto key =
            panel.keyFor(letter == '<' ? BACKSPACE : static_cast<xcb_keysym_t>(letter));
        if (key == 0) {
            std::fprintf(stderr, "panel_typing: no key types \"%c\"\n", letter);
            return EXIT_FAILURE;
        }
        const auto start = Clock::now();
        panel.press(key);
        if (const auto painted = panel.nextPaint(start + PATIENCE))
            std::printf("%.2f\n",
                        std::chrono::duration<double, std::milli>(*painted - start).count());
        else
            std::puts("-");
        panel.waitForRest();
    }
    return EXIT_SUCCESS;
}
