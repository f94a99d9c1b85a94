#pragma once

#include "shortcut/QLNHotKey.h"
#include "shortcut/QLNShortcut.h"

#include <QObject>

#include <optional>

namespace quillon {

class QLNShortcutMonitor;

/// Keeps the stored shortcut registered as the hot key whenever it changes. Main thread only. The
/// monitor and the service outlive it.
class QLNShortcutBinder : public QObject
{
    Q_OBJECT

public:
    QLNShortcutBinder(QLNShortcutMonitor &monitor, HotKey &service);

    /// Registers what is stored now and follows it from here on. A key that cannot be had is
    /// complained of on standard error.
    void start();
    /// Gives the key back while another one is recorded. Each call is followed by a resume().
    void pause();
    void resume();

    /// Returns the outcome for the stored shortcut. It is absent while there is nothing to register
    /// or no answer.
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
