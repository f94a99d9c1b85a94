#pragma once

#include "platform/HotKey.h"
#include "shortcut/QLNShortcut.h"

#include <QObject>

#include <optional>

namespace quillon {

/// Keeps a key combination registered with the desktop as long as this object lives. The service
/// outlives it and serves only one object at a time.
class QLNHotKey
{
public:
    /// Each press calls pressed. The outcome is reported as by HotKey::grab().
    QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
              HotKey::Receiver receiver);
    ~QLNHotKey();
    QLNHotKey(const QLNHotKey &) = delete;
    QLNHotKey &operator=(const QLNHotKey &) = delete;

private:
    HotKey &service_;
};

class QLNShortcutMonitor;

/// Keeps the stored shortcut registered as the hot key, also after it changes. Main thread only.
/// The monitor and the service outlive this object.
class QLNShortcutBinder : public QObject
{
    Q_OBJECT

public:
    QLNShortcutBinder(QLNShortcutMonitor &monitor, HotKey &service);

    /// Registers the stored shortcut and follows its changes from now on. Prints a complaint to
    /// standard error when a key cannot be had.
    void start();
    /// Releases the key while another one is recorded. Each call is followed by a resume().
    void pause();
    void resume();

    /// Returns the outcome for the stored shortcut, or nothing while there is nothing to register
    /// or no answer yet.
    std::optional<HotKey::Outcome> outcome() const { return outcome_; }

Q_SIGNALS:
    void pressed();
    void outcomeChanged();

private:
    void bind();
    void setOutcome(std::optional<HotKey::Outcome> outcome);

    QLNShortcutMonitor &monitor_;
    HotKey &service_;
    bool isStarted_ = false;
    int pauses_ = 0;
    std::optional<QLNHotKey> hotKey_;
    std::optional<HotKey::Outcome> outcome_;
    /// The keys for which hotKey_ is registered, or was before a pause.
    std::optional<QLNShortcut> bound_;
};

} // namespace quillon
