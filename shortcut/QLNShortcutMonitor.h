#pragma once

#include "platform/DefaultsChanges.h"
#include "shortcut/QLNShortcut.h"

#include <QObject>

#include <optional>

namespace quillon {

class DefaultsStore;

/// Reads and writes the shortcut in the settings and reports when it changes, whoever wrote it.
/// Main thread only. The store and its changes outlive this object.
class QLNShortcutMonitor : public QObject
{
    Q_OBJECT

public:
    QLNShortcutMonitor(DefaultsStore &defaults, DefaultsChanges &changes);

    /// Returns nothing while no shortcut is set. A value that is not a shortcut counts as none and
    /// is reported once on standard error.
    const std::optional<QLNShortcut> &shortcut() const { return shortcut_; }
    /// Stores the shortcut, or removes the stored one when there is none. Returns false when the
    /// change could not be written; the former shortcut then stays.
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
