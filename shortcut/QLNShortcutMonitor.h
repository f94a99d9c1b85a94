#pragma once

#include "platform/DefaultsChanges.h"
#include "shortcut/QLNShortcut.h"

#include <QObject>

#include <optional>

namespace quillon {

class DefaultsStore;

/// The shortcut among the settings, and the news that it is another one, whoever wrote it. Main
/// thread only; store and changes outlive it.
class QLNShortcutMonitor : public QObject
{
    Q_OBJECT

public:
    QLNShortcutMonitor(DefaultsStore &defaults, DefaultsChanges &changes);

    /// Absent while none is set. A value that is no shortcut counts as none and is complained of
    /// once on standard error.
    const std::optional<QLNShortcut> &shortcut() const { return shortcut_; }
    /// Absent removes it. False when it could not be brought to the disk; the former one stays.
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
