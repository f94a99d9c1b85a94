#include "app/update/Feedback.h"

#include "app/update/FeedbackPage.h"
#include "app/update/UpdateNotices.h"
#include "platform/Workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace quillon {

namespace {

/// A snap is named SNAP_APPLICATION.desktop. It may read nothing below a hidden folder.
bool isSnap(const std::string &desktopId)
{
    return desktopId.find('_') != std::string::npos;
}

} // namespace

Feedback::Feedback(const Services &services, std::string address, std::string version)
    : services_(services),
      address_(std::move(address)),
      version_(std::move(version)),
      window_(QCoreApplication::translate("Feedback", "Quillon – Feedback"), services.windowSystem)
{}

void Feedback::open()
{
    if (address_.empty())
        openPage();
    else if (!services_.workspace.openLink(address_))
        window_.present(UpdateNotices::noBrowser(address_));
}

void Feedback::openPage()
{
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    auto page = writePage(caches + QStringLiteral("/quillon"), QStringLiteral("feedback.html"));
    if (!page || isSnap(services_.workspace.applicationToOpen(*page))) {
        const QString visible = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
        page = writePage(visible, QStringLiteral("quillon-feedback.html"));
    }
    if (!page) {
        window_.present(
            {.title = QCoreApplication::translate("Feedback", "The page could not be written"),
             .text = QCoreApplication::translate(
                 "Feedback", "There is no room on the disk, or your home folder is read-only."),
             .dismissal = QCoreApplication::translate("Feedback", "&Close")});
    } else if (!services_.workspace.open(*page)) {
        window_.present(UpdateNotices::noBrowser(*page));
    }
}

std::optional<std::string> Feedback::writePage(const QString &folder, const QString &name) const
{
    const QByteArray html = FeedbackPage::html(FeedbackPage::report(version_, services_.defaults));
    const QString path = QDir(folder).filePath(name);
    QSaveFile file(path);
    const bool isWritten = QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) &&
                           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                           file.write(html) == html.size() && file.flush() && file.commit();
    if (!isWritten)
        return std::nullopt;
    return QFile::encodeName(path).toStdString();
}

} // namespace quillon
