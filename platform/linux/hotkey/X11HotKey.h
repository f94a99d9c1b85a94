#pragma once

#include "platform/HotKey.h"
#include "platform/linux/hotkey/X11Keyboard.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace quillon {

/// Grabs the key on the root windows of the X display that Qt runs on. A grab names key codes, so
/// it is made anew when the layout of the keyboard changes. A key that another program holds is
/// tried again from time to time.
class X11HotKey : public QObject, public HotKey, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// The time between two attempts, since nothing reports that another program has released a
    /// key.
    static constexpr std::chrono::milliseconds RETRY_INTERVAL{10'000};

    /// The connection is Qt's and outlives this object.
    explicit X11HotKey(xcb_connection_t *connection,
                       std::chrono::milliseconds retryInterval = RETRY_INTERVAL);
    ~X11HotKey() override;

    void grab(const KeyCombination &keys, Receiver receiver) override;
    void release() override;
    void onPressed(std::function<void()> pressed) override { pressed_ = std::move(pressed); }
    bool isPossible() const override { return true; }
    bool isSilent() const override { return true; }
    std::string keyName(std::uint32_t scanCode, std::uint32_t symbol) const override;

private:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;
    bool isOurs(const xcb_key_press_event_t &event) const;
    void keyPressed(const xcb_key_press_event_t &event);
    void keyReleased(const xcb_key_release_event_t &event);

    /// Grabs the keys of wanted_ on the keyboard as it is now.
    Outcome establish();
    bool grabAll();
    void ungrabAll();
    void readKeyboard();
    /// Grabs the keys again and reports the outcome if it has changed.
    void grabAgain();

    xcb_connection_t *x_;
    std::vector<xcb_window_t> roots_;
    X11Keyboard keyboard_;
    QTimer layoutChange_;
    /// The timer runs only while another program holds the key.
    QTimer retry_;

    std::optional<KeyCombination> wanted_;
    Receiver receiver_;
    Outcome outcome_ = Outcome::impossible;
    std::vector<KeyGrab> grabs_;
    std::function<void()> pressed_;
    /// The server's time, in milliseconds, at which the key was released. A repeated press follows
    /// it closely.
    std::optional<xcb_timestamp_t> released_;
};

} // namespace quillon
