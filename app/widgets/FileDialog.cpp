#include "app/widgets/FileDialog.h"

#include "app/widgets/PanelMetrics.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QScreen>
#include <QSplitter>
#include <QStandardPaths>
#include <QTreeView>
#include <QUrl>

namespace quillon {

namespace {

/// The size in the usual font.
constexpr QSize DIALOG_SIZE(760, 480);
constexpr int PLACES_WIDTH = 160;

/// Returns the folders that the user is likely to begin at.
QList<QUrl> places()
{
    QStringList folders{QDir::homePath()};
    for (const auto kind : {QStandardPaths::DesktopLocation, QStandardPaths::DocumentsLocation,
                            QStandardPaths::DownloadLocation, QStandardPaths::MusicLocation,
                            QStandardPaths::PicturesLocation, QStandardPaths::MoviesLocation})
        folders << QStandardPaths::writableLocation(kind);
    folders << QDir::rootPath();
    folders.removeDuplicates();
    folders.removeIf([](const QString &folder) { return !QDir(folder).exists(); });
    QList<QUrl> urls;
    for (const QString &folder : folders)
        urls << QUrl::fromLocalFile(folder);
    return urls;
}

} // namespace

void arrangeFileDialog(QFileDialog &dialog)
{
    dialog.setSidebarUrls(places());
    const double scale =
        static_cast<double>(metrics::textWidth(dialog.fontMetrics(), metrics::FORM_TEXT)) /
        metrics::FORM_TEXT;
    // A small screen holds all of it.
    dialog.resize((DIALOG_SIZE * scale).boundedTo(dialog.screen()->availableSize() * 3 / 4));
    if (auto *splitter = dialog.findChild<QSplitter *>()) {
        const int places = static_cast<int>(PLACES_WIDTH * scale);
        splitter->setSizes({places, dialog.width() - places});
    }
    // The last column is the time, which the toolkit would cut.
    if (auto *files = dialog.findChild<QTreeView *>(QStringLiteral("treeView")))
        files->header()->setStretchLastSection(true);
}

} // namespace quillon
