#include "app/widgets/FolderChooser.h"

#include "app/widgets/WriteFault.h"
#include "base/PathText.h"
#include "indexing/IncludeFolders.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QStandardPaths>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <string_view>

namespace quillon {

namespace {

/// Returns the path in a "file:" address as RFC 8089 has it; empty for other addresses. A QUrl
/// would lose bytes that are not UTF-8.
std::string localPath(const QByteArray &address)
{
    constexpr std::string_view SCHEME = "file://";
    if (!address.startsWith(SCHEME.data()))
        return {};
    const qsizetype slash = address.indexOf('/', static_cast<qsizetype>(SCHEME.size()));
    return slash < 0 ? std::string()
                     : QByteArray::fromPercentEncoding(address.mid(slash)).toStdString();
}

/// The folders that the user is likely to begin at.
QList<QUrl> places()
{
    QStringList folders{QDir::homePath()};
    for (const auto kind : {QStandardPaths::DesktopLocation, QStandardPaths::DocumentsLocation,
                            QStandardPaths::DownloadLocation, QStandardPaths::MusicLocation,
                            QStandardPaths::PicturesLocation, QStandardPaths::MoviesLocation})
        folders << QStandardPaths::writableLocation(kind);
    folders << QDir::rootPath();
    folders.removeDuplicates();
    QList<QUrl> urls;
    for (const QString &folder : folders)
        urls << QUrl::fromLocalFile(folder);
    return urls;
}

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

} // namespace

FolderChooser::FolderChooser(const QString &title, QWidget *over) : QFileDialog(over, title)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setFileMode(Directory);
    setDirectory(QDir::homePath());
    setSidebarUrls(places());
    // The desktop's own dialogs choose one folder at a time.
    setOptions(ShowDirsOnly | DontUseNativeDialog | ReadOnly);
    for (auto *view : findChildren<QAbstractItemView *>()) {
        if (view->objectName() == u"listView" || view->objectName() == u"treeView")
            view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }
    connect(this, &QFileDialog::accepted, this, [this] {
        std::vector<std::string> paths;
        for (const QString &file : selectedFiles())
            paths.emplace_back(withoutTrailingSlashes(QFile::encodeName(file).toStdString()));
        Q_EMIT foldersChosen(paths);
    });
}

std::vector<std::string> draggedPaths(const QMimeData &data)
{
    std::vector<std::string> paths;
    for (const QByteArray &line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
        std::string path = localPath(line.trimmed());
        if (!path.empty())
            paths.emplace_back(withoutTrailingSlashes(path));
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
