#include "platform/linux/settings/SettingsFileChanges.h"

#include "platform/linux/settings/SettingsFile.h"

#include <QFileInfo>

#include <chrono>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// An editor that writes in place empties the file first. The read that follows reports a mistake
/// only once the file has rested, and the timer may be early by a twentieth.
constexpr std::chrono::milliseconds SETTLING = SettingsFile::WRITING_TIME * 1ms + 50ms;

QString nearestFolder(const QString &path)
{
    QFileInfo folder(QFileInfo(path).absolutePath());
    while (!folder.isDir() && !folder.isRoot())
        folder = QFileInfo(folder.absolutePath());
    return folder.filePath();
}

} // namespace

SettingsFileChanges::SettingsFileChanges(const std::string &path)
    : path_(QString::fromStdString(path))
{
    settling_.setSingleShot(true);
    settling_.setInterval(SETTLING);
    connect(&settling_, &QTimer::timeout, this, &SettingsFileChanges::tell);
    // The first of several changes starts the timer, so that changes of a file that never rests are
    // still reported.
    const auto changed = [this] {
        if (!settling_.isActive())
            settling_.start();
    };
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, changed);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, changed);
    watch();
}

void SettingsFileChanges::watch()
{
    // A replaced file is another file under the same name, so all watches are set anew.
    if (const QStringList former = watcher_.files() + watcher_.directories(); !former.isEmpty())
        watcher_.removePaths(former);
    QStringList places{nearestFolder(path_)};
    if (const QFileInfo file(path_); file.exists()) {
        places << path_;
        // The folder to which a link leads is watched too, since the file in it is replaced.
        if (const QString folder = QFileInfo(file.canonicalFilePath()).path(); folder != places[0])
            places << folder;
    }
    watcher_.addPaths(places);
}

void SettingsFileChanges::tell()
{
    // The file is watched before it is read, so that a change in between is reported too.
    watch();
    report();
}

} // namespace quillon
