#pragma once

#include "platform/DefaultsChanges.h"
#include "shortcut/QLNShortcut.h"

#include <QObject>

#include <optional>

namespace quillon {

class DefaultsStore;

/// Reads and writes the shortcut in the settings and reports when it changes, whoever wrote it.
/// Main thread only. The store and its changes outlive it.
class QLNShortcutMonitor : public QObject
{
    Q_OBJECT

public:
    QLNShortcutMonitor(DefaultsStore &defaults, DefaultsChanges &changes);

    /// The shortcut is absent while none is set. A value that is no shortcut counts as none and is
    /// reported once on standard error.
    const std::optional<QLNShortcut> &shortcut() const { return shortcut_; }
    /// An absent shortcut removes the stored one. Returns false when the change could not be
    /// written; the former shortcut stays then.
    bool store(const std::optional<QLNShortcut> &shortcut);

Q_SIGNALS:
    void changed();

private:
    std::optional<QLNShortcut> read();
    void refresh();

    DefaultsStore &defaults_;
    std::optional<QLNShortcut> shortcut_;
    std::string complainedOf_;
    const DefaultsReceiver receiver_;
};

} // namespace quillon
