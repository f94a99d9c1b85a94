#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QSet>

#include <string>

namespace quillon {

class TaskQueue;
class Workspace;

/// Icons of the icon theme for files and folders. A slow disk never holds up a row: the plain
/// folder stands until the item's own icon is known. Main thread only.
class IconSource : public QObject
{
    Q_OBJECT

public:
    /// Items are looked at on the background queue, which must end before this object does; answers
    /// arrive through the main one.
    IconSource(Workspace &workspace, TaskQueue &background, TaskQueue &main);

    QIcon icon(const std::string &path);
    /// Forgets what was learned, for a change of the icon theme.
    void clear();

Q_SIGNALS:
    /// Icons given out before may be others now.
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
