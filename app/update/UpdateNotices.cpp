#include "app/update/UpdateNotices.h"

namespace quillon {

QString UpdateNotices::failure(NoUpdate reason)
{
    switch (reason) {
    case NoUpdate::unreachable:
        return tr("The server that knows of new versions cannot be reached. Is this computer "
                  "online?");
    case NoUpdate::tooSlow:
        return tr("The server that knows of new versions did not answer in time. Try again later.");
    case NoUpdate::insecure:
        return tr("The connection to the server that knows of new versions is not secure, so "
                  "nothing was taken from it. A network that wants you to log in first can be the "
                  "reason.");
    case NoUpdate::refused:
        return tr("The server that knows of new versions has no answer just now. Try again later.");
    case NoUpdate::notGenuine:
        return tr("The answer was not signed by the makers of Quillon, so it was ignored. A "
                  "network that wants you to log in first can be the reason.");
    default:
        return tr("This version of Quillon does not understand the answer.");
    }
}

Notice UpdateNotices::checking(const std::string &runningVersion)
{
    return {.title = tr("Checking for updates…"),
            .text = tr("You have version %1.").arg(QString::fromStdString(runningVersion)),
            .dismissal = tr("&Close")};
}

Notice UpdateNotices::update(const UpdateItem &item, const std::string &runningVersion,
                             const OpenLink &openLink)
{
    Notice notice{
        .title = tr("Quillon %1 is available").arg(QString::fromStdString(item.version)),
        .text = tr("You have version %1. Quillon installs nothing by itself: “Download” opens the "
                   "page of the new version in your web browser.")
                    .arg(QString::fromStdString(runningVersion)),
        .dismissal = tr("&Later"),
        .primary = Notice::Choice{tr("&Download"), [=] { openLink(item.link); }}};
    if (!item.notes.empty())
        notice.aside = Notice::Choice{tr("&What’s New"), [=] { openLink(item.notes); }, true};
    return notice;
}

Notice UpdateNotices::noUpdate(NoUpdate reason, const std::string &runningVersion)
{
    const QString version = QString::fromStdString(runningVersion);
    if (reason == NoUpdate::upToDate) {
        return {.title = tr("Quillon is up to date"),
                .text = tr("Version %1 is the newest one.").arg(version),
                .dismissal = tr("&Close")};
    }
    if (reason == NoUpdate::notConfigured) {
        return {.title = tr("This Quillon does not look for updates"),
                .text = tr("You have version %1. New versions come the way this one was installed, "
                           "usually with the updates of your system.")
                            .arg(version),
                .dismissal = tr("&Close")};
    }
    return {.title = tr("Quillon could not check for updates"),
            .text = failure(reason),
            .dismissal = tr("&Close")};
}

Notice UpdateNotices::noBrowser(const std::string &place)
{
    return {.title = tr("No web browser was found"),
            .text = tr("The page is here: %1").arg(QString::fromStdString(place)),
            .dismissal = tr("&Close")};
}

} // namespace quillon
