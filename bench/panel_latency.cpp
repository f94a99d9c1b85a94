// Presses the hot key of a running Quillon again and again and waits until the panel's pixels stand
// on the screen. Prints the milliseconds of each showing, one a line; the first is the program's
// first ever if it has not been shown since its start.
//
// usage: panel_latency KEY_CODE COUNT    Ctrl+Alt and that key; nothing else moves on the screen

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto PATIENCE = 30s;
/// The time between two showings, in which the window manager settles.
constexpr auto REST = 300ms;
/// The key codes of the modifiers on every PC keyboard.
constexpr std::uint8_t CONTROL = 37;
constexpr std::uint8_t ALT = 64;

struct Area
{
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 1;
    std::uint16_t height = 1;
};

class Screen
{
public:
    Screen() : x_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(x_) != 0) {
            std::fputs("panel_latency: no display\n", stderr);
            std::exit(EXIT_FAILURE);
        }
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
    }
    ~Screen() { xcb_disconnect(x_); }
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    Area whole() const { return {0, 0, screen_->width_in_pixels, screen_->height_in_pixels}; }

    /// Returns the pixels of the area, with 32 bits each.
    std::vector<std::uint32_t> pixels(const Area &area) const
    {
        const auto cookie = xcb_get_image(x_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, area.x,
                                          area.y, area.width, area.height, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
            xcb_get_image_reply(x_, cookie, nullptr), &std::free);
        std::vector<std::uint32_t> pixels(std::size_t{area.width} * area.height);
        if (image)
            std::copy_n(xcb_get_image_data(image.get()),
                        std::min(pixels.size() * 4, std::size_t{image->length} * 4),
                        reinterpret_cast<std::uint8_t *>(pixels.data()));
        return pixels;
    }

    void key(std::uint8_t code, bool isDown)
    {
        xcb_test_fake_input(x_, isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME,
                            XCB_NONE, 0, 0, 0);
        xcb_flush(x_);
    }
    /// Returns when the display has handled what was sent.
    void sync() { std::free(xcb_get_input_focus_reply(x_, xcb_get_input_focus(x_), nullptr)); }

private:
    xcb_connection_t *x_;
    xcb_screen_t *screen_;
};

/// Returns how long the condition took to become true after the press, or nothing when it did not.
template <typename Condition>
std::optional<double> timePress(Screen &screen, std::uint8_t code, const Condition &isThere)
{
    screen.key(CONTROL, true);
    screen.key(ALT, true);
    screen.sync();
    const auto start = Clock::now();
    screen.key(code, true);
    std::optional<double> taken;
    while (!taken && Clock::now() - start < PATIENCE) {
        if (isThere())
            taken = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        else
            std::this_thread::sleep_for(100us);
    }
    for (const std::uint8_t key : {code, ALT, CONTROL})
        screen.key(key, false);
    screen.sync();
    std::this_thread::sleep_for(REST);
    return taken;
}

/// Returns a place where the two pictures differ, near the middle of all such places.
std::optional<Area> changedPlace(const Area &whole, const std::vector<std::uint32_t> &before,
                                 const std::vector<std::uint32_t> &after)
{
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; i < before.size(); ++i)
        if (before[i] != after[i])
            changed.push_back(i);
    if (changed.empty())
        return std::nullopt;
    const std::size_t middle = changed[changed.size() / 2];
    return Area{static_cast<std::int16_t>(middle % whole.width),
                static_cast<std::int16_t>(middle / whole.width)};
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: panel_latency KEY_CODE COUNT\n", stderr);
        return EXIT_FAILURE;
    }
    const auto code = static_cast<std::uint8_t>(std::atoi(argv[1]));
    Screen screen;
    // The first showing is timed with a picture of the whole screen, which also shows where the
    // others are to be looked for.
    const Area whole = screen.whole();
    const auto empty = screen.pixels(whole);
    const auto first = timePress(screen, code, [&] { return screen.pixels(whole) != empty; });
    const auto place = changedPlace(whole, empty, screen.pixels(whole));
    if (!first || !place) {
        std::fputs("panel_latency: the panel did not come\n", stderr);
        return EXIT_FAILURE;
    }
    std::printf("%.2f\n", *first);
    const auto shown = screen.pixels(*place);
    const auto isShown = [&] { return screen.pixels(*place) == shown; };
    for (int i = 1; i < std::atoi(argv[2]); ++i) {
        const bool isHidden = timePress(screen, code, [&] { return !isShown(); }).has_value();
        const auto taken = isHidden ? timePress(screen, code, isShown) : std::nullopt;
        if (!taken) {
            std::fputs("panel_latency: the panel did not follow the key\n", stderr);
            return EXIT_FAILURE;
        }
        std::printf("%.2f\n", *taken);
    }
    return EXIT_SUCCESS;
}
