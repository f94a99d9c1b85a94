#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QSet>

#include <string>

namespace quillon {

class TaskQueue;
class Workspace;

/// Icons of the icon theme for files and folders. A slow disk never delays a row: the plain folder
/// is shown until the item's own icon is known. Main thread only.
class IconSource : public QObject
{
    Q_OBJECT

public:
    /// The background queue asks the disk about the items, and must end before this object does.
    /// The answers come through the main queue.
    IconSource(Workspace &workspace, TaskQueue &background, TaskQueue &main);

    QIcon icon(const std::string &path);
    /// Forgets what was learned, for a change of the icon theme.
    void clear();

Q_SIGNALS:
    /// Icons that were returned before may have changed.
    void iconsChanged();

private:
    void learn(const std::string &path);

    Workspace &workspace_;
    TaskQueue &background_;
    TaskQueue &main_;
    QIcon folder_;
    QHash<QByteArray, QIcon> icons_;
    QSet<QByteArray> asked_;
};

} // namespace quillon
