#pragma once

#include <QFileDialog>

#include <string>
#include <vector>

class QMimeData;

namespace quillon {

struct RefusedFolder;

/// Asks for folders, several at once, from the home folder on. The window below waits; the program
/// does not.
class FolderChooser : public QFileDialog
{
    Q_OBJECT

public:
    /// Deletes itself when it is closed.
    FolderChooser(const QString &title, QWidget *over);

Q_SIGNALS:
    /// Absolute paths, without a slash at the end.
    void foldersChosen(const std::vector<std::string> &paths);
};

/// The absolute paths of the local files that are dragged, byte for byte, without a slash at the
/// end; whether they are folders is not looked at.
std::vector<std::string> draggedPaths(const QMimeData &data);

/// Returns a line for each folder, which says why the folder cannot be searched.
QString refusalText(const std::vector<RefusedFolder> &refused);

} // namespace quillon
