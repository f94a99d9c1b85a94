#pragma once

#include <functional>
#include <string>
#include <vector>

class QMimeData;
class QString;
class QWidget;

namespace quillon {

class FolderPicker;
struct RefusedFolder;

/// Receives the absolute paths of folders, without a slash at the end.
using FoldersChosen = std::function<void(const std::vector<std::string> &paths)>;

/// Asks for folders, several at once, from the home folder on: in the desktop's own dialog if that
/// can choose several, otherwise in the toolkit's. Returns at once. The receiver is called at most
/// once: not when the user cancels, nor after the widget is destroyed, nor after the picker was
/// asked again, which replaces the dialog.
void askForFolders(FolderPicker &picker, const QString &title, QWidget *over, FoldersChosen chosen);

/// Returns the absolute paths of the local files that are dragged, byte for byte, without a slash
/// at the end. They may be paths of anything.
std::vector<std::string> draggedPaths(const QMimeData &data);

/// Returns a line for each folder, which says why the folder cannot be searched.
QString refusalText(const std::vector<RefusedFolder> &refused);

} // namespace quillon
