#pragma once

#include <QObject>

#include <string>
#include <vector>

class QMimeData;
class QWidget;

namespace quillon {

class FolderPicker;
struct RefusedFolder;

/// Asks for folders, several at once, from the home folder on: in the desktop's own dialog if that
/// can choose several, otherwise in the toolkit's. The program does not wait.
class FolderChooser : public QObject
{
    Q_OBJECT

public:
    /// The picker outlives this object, which deletes itself when the user has answered.
    FolderChooser(FolderPicker &picker, const QString &title, QWidget *over);

Q_SIGNALS:
    /// Absolute paths, without a slash at the end.
    void foldersChosen(const std::vector<std::string> &paths);

private:
    void openToolkitDialog(const QString &title, QWidget *over);
};

/// The absolute paths of the local files that are dragged, byte for byte, without a slash at the
/// end; whether they are folders is not looked at.
std::vector<std::string> draggedPaths(const QMimeData &data);

/// Returns a line for each folder, which says why the folder cannot be searched.
QString refusalText(const std::vector<RefusedFolder> &refused);

} // namespace quillon
