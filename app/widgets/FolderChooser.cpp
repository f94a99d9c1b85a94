#include "app/widgets/FolderChooser.h"

#include "app/widgets/FileDialog.h"
#include "app/widgets/WriteFault.h"
#include "base/FileUri.h"
#include "base/PathText.h"
#include "indexing/IncludeFolders.h"
#include "platform/FolderPicker.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

QString refusalText(const RefusedFolder &refused)
{
    const auto text = [&refused](const char *source) {
        return QCoreApplication::translate("IncludeFolders", source)
            .arg(QString::fromStdString(refused.path));
    };
    using enum RefusedFolder::Reason;
    switch (refused.reason) {
    case isListed:
        return text(QT_TRANSLATE_NOOP("IncludeFolders", "“%1” is searched already."));
    case isNoFolder:
        return text(QT_TRANSLATE_NOOP("IncludeFolders", "“%1” is no folder."));
    case cannotBeRead:
        return text(
            QT_TRANSLATE_NOOP("IncludeFolders", "“%1” cannot be read, so it cannot be searched."));
    case isPackage:
        return text(QT_TRANSLATE_NOOP(
            "IncludeFolders", "“%1” counts as a single item: nothing in it would be found."));
    case isSearchedAsPart:
        return QCoreApplication::translate("IncludeFolders",
                                           "“%1” is searched already, as a part of “%2”.")
            .arg(QString::fromStdString(refused.path), QString::fromStdString(refused.around));
    case cannotBeStored:
        break;
    }
    return writeFault();
}

void openToolkitDialog(const QString &title, QWidget *over, const FoldersChosen &chosen)
{
    auto *dialog = new QFileDialog(over, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setDirectory(QDir::homePath());
    // The dialogs of the desktop that the toolkit knows choose one folder at a time.
    dialog->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog |
                       QFileDialog::ReadOnly);
    arrangeFileDialog(*dialog);
    for (auto *view : dialog->findChildren<QAbstractItemView *>()) {
        if (view->objectName() == u"listView" || view->objectName() == u"treeView")
            view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }
    QObject::connect(dialog, &QFileDialog::filesSelected, over, [chosen](const QStringList &files) {
        std::vector<std::string> paths;
        for (const QString &file : files)
            paths.emplace_back(withoutTrailingSlashes(QFile::encodeName(file).toStdString()));
        chosen(paths);
    });
    dialog->open();
}

} // namespace

void askForFolders(FolderPicker &picker, const QString &title, QWidget *over, FoldersChosen chosen)
{
    picker.pick(title.toStdString(), QDir::homePath().toStdString(), over->window()->winId(),
                [title, over = QPointer(over), chosen = std::move(chosen)](const auto &paths) {
                    if (!over)
                        return;
                    if (!paths)
                        openToolkitDialog(title, over, chosen);
                    else if (!paths->empty())
                        chosen(*paths);
                });
}

std::vector<std::string> draggedPaths(const QMimeData &data)
{
    std::vector<std::string> paths;
    for (const QByteArray &line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
        if (auto path = localPath(line.trimmed().toStdString()))
            paths.push_back(std::move(*path));
    }
    return paths;
}

QString refusalText(const std::vector<RefusedFolder> &refused)
{
    QStringList lines;
    for (const RefusedFolder &folder : refused)
        lines << refusalText(folder);
    return lines.join(u'\n');
}

} // namespace quillon
