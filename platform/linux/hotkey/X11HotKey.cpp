#include "platform/linux/hotkey/X11HotKey.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// Loading a layout makes a handful of events, which come within this time.
constexpr auto LAYOUT_SETTLING = 50ms;
/// A key that is held is released and pressed again within this time, in milliseconds.
constexpr xcb_timestamp_t REPEAT_GAP = 1;
/// A grab distinguishes these modifiers. The state also holds buttons and the layout.
constexpr unsigned ALL_MODIFIERS = 0xFF;

} // namespace

X11HotKey::X11HotKey(xcb_connection_t *connection, std::chrono::milliseconds retryInterval)
    : x_(connection), keyboard_(connection)
{
    const xcb_setup_t *setup = xcb_get_setup(x_);
    for (auto screen = xcb_setup_roots_iterator(setup); screen.rem > 0; xcb_screen_next(&screen))
        roots_.push_back(screen.data->root);
    layoutChange_.setSingleShot(true);
    layoutChange_.setInterval(LAYOUT_SETTLING);
    connect(&layoutChange_, &QTimer::timeout, this, &X11HotKey::readKeyboard);
    retry_.setSingleShot(true);
    retry_.setTimerType(Qt::VeryCoarseTimer);
    retry_.setInterval(retryInterval);
    connect(&retry_, &QTimer::timeout, this, &X11HotKey::grabAgain);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKey::~X11HotKey()
{
    X11HotKey::release();
}

void X11HotKey::grab(const KeyCombination &keys, Receiver receiver)
{
    release();
    wanted_ = keys;
    outcome_ = establish();
    receiver_ = std::move(receiver);
    // The receiver may grab or release, which changes the member, so a copy is called.
    if (const Receiver current = receiver_)
        current(outcome_);
}

void X11HotKey::release()
{
    ungrabAll();
    retry_.stop();
    wanted_.reset();
    receiver_ = nullptr;
    released_.reset();
}

std::string X11HotKey::keyName(std::uint32_t scanCode, std::uint32_t) const
{
    return keyboard_.keyName(scanCode);
}

HotKey::Outcome X11HotKey::establish()
{
    retry_.stop();
    grabs_ = keyboard_.grabsFor(*wanted_);
    if (grabs_.empty())
        return Outcome::noSuchKey;
    if (grabAll())
        return Outcome::grabbed;
    retry_.start();
    return Outcome::inUse;
}

bool X11HotKey::grabAll()
{
    // All requests are sent before we wait for the first answer.
    std::vector<xcb_void_cookie_t> cookies;
    for (const xcb_window_t root : roots_)
        for (const KeyGrab &grab : grabs_)
            cookies.push_back(xcb_grab_key_checked(x_, 1, root, grab.modifiers, grab.keyCode,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    bool isWhole = true;
    for (const xcb_void_cookie_t cookie : cookies) {
        const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(
            xcb_request_check(x_, cookie), &std::free);
        isWhole = isWhole && !error;
    }
    // A key that works only without NumLock would be worse than none.
    if (!isWhole)
        ungrabAll();
    return isWhole;
}

void X11HotKey::ungrabAll()
{
    for (const xcb_window_t root : roots_)
        for (const KeyGrab &grab : grabs_)
            xcb_ungrab_key(x_, grab.keyCode, root, grab.modifiers);
    grabs_.clear();
    xcb_flush(x_);
}

void X11HotKey::readKeyboard()
{
    keyboard_ = X11Keyboard(x_);
    if (wanted_)
        grabAgain();
}

void X11HotKey::grabAgain()
{
    ungrabAll();
    const Outcome former = std::exchange(outcome_, establish());
    if (const Receiver receiver = receiver_; receiver && outcome_ != former)
        receiver(outcome_);
}

bool X11HotKey::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if (keyboard_.isChangedBy(*event))
        layoutChange_.start();
    else if (event->response_type == XCB_KEY_PRESS)
        keyPressed(*static_cast<const xcb_key_press_event_t *>(message));
    else if (event->response_type == XCB_KEY_RELEASE)
        keyReleased(*static_cast<const xcb_key_release_event_t *>(message));
    // Qt then notes the time of the event. Without that time, the window manager may refuse the
    // keyboard to the window that is shown.
    return false;
}

bool X11HotKey::isOurs(const xcb_key_press_event_t &event) const
{
    return std::ranges::find(roots_, event.event) != roots_.end() &&
           std::ranges::any_of(grabs_, [&event](const KeyGrab &grab) {
               return grab.keyCode == event.detail &&
                      grab.modifiers == (event.state & ALL_MODIFIERS);
           });
}

void X11HotKey::keyPressed(const xcb_key_press_event_t &event)
{
    if (!isOurs(event))
        return;
    const bool isRepeated = released_ && event.time - *released_ <= REPEAT_GAP;
    released_.reset();
    if (!isRepeated && pressed_)
        pressed_();
}

void X11HotKey::keyReleased(const xcb_key_release_event_t &event)
{
    // The modifiers may have been released before the key.
    if (std::ranges::any_of(grabs_,
                            [&event](const KeyGrab &grab) { return grab.keyCode == event.detail; }))
        released_ = event.time;
}

} // namespace quillon
