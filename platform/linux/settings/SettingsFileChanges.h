#pragma once

#include "platform/DefaultsChanges.h"

#include <QFileSystemWatcher>
#include <QString>
#include <QTimer>

#include <string>

namespace quillon {

/// Reports changes of the settings file as the kernel reports them, so that nothing wakes up
/// without one. The file may be missing, be a symbolic link, and be written in place or replaced.
/// The report comes once an editor that saves in place has had time to write the file.
class SettingsFileChanges : public QObject, public DefaultsChanges
{
    Q_OBJECT

public:
    /// The path is absolute. Neither the file nor its folder need exist.
    explicit SettingsFileChanges(const std::string &path);

private:
    void watch();
    void tell();

    const QString path_;
    QFileSystemWatcher watcher_;
    QTimer settling_;
};

} // namespace quillon
