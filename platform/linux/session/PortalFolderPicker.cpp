#include "platform/linux/session/PortalFolderPicker.h"

#include "base/FileUri.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QGuiApplication>

#include <utility>

namespace quillon {

namespace {

/// The first version whose dialogs can choose folders.
constexpr uint CHOOSES_FOLDERS = 3;
/// A portal that has to be started answers after a while. The user gets the toolkit's dialog when
/// the answer takes longer.
constexpr int VERSION_MILLISECONDS = 2000;

QString chooserInterface()
{
    return portal::interfaceName(QStringLiteral("FileChooser"));
}

/// GTK's portal reports a dialog that the user closes with Escape as one that could not be shown.
/// Nobody closes a dialog that soon after it was asked for.
constexpr qint64 SHORTEST_DIALOG_MILLISECONDS = 400;

/// Returns the name of the window for the portal, which is empty for a window that has none.
QString parentName(std::uintptr_t window)
{
    return QGuiApplication::platformName() == u"xcb" ? QStringLiteral("x11:%1").arg(window, 0, 16)
                                                     : QString();
}

} // namespace

void PortalFolderPicker::pick(const std::string &title, const std::string &folder,
                              std::uintptr_t window, Receiver receiver)
{
    delete question_;
    receiver_ = std::move(receiver);
    const auto call = portal::versionCall(chooserInterface());
    auto *watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, VERSION_MILLISECONDS), this);
    question_ = watcher;
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, title = QString::fromStdString(title), window,
             folder = QByteArray::fromStdString(folder)](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> version = *finished;
                if (version.isValid() && version.value().variant().toUInt() >= CHOOSES_FOLDERS)
                    showDialog(title, folder, window);
                else
                    receive(std::nullopt);
            });
}

void PortalFolderPicker::showDialog(const QString &title, const QByteArray &folder,
                                    std::uintptr_t window)
{
    auto call = portal::methodCall(chooserInterface(), QStringLiteral("OpenFile"));
    call << parentName(window) << title;
    // The bytes of a path end with a zero here.
    const QVariantMap options{{QStringLiteral("directory"), true},
                              {QStringLiteral("multiple"), true},
                              {QStringLiteral("current_folder"), folder + '\0'}};
    QElapsedTimer asked;
    asked.start();
    const auto finished = [this, asked](PortalRequest::Outcome outcome,
                                        const QVariantMap &results) {
        using enum PortalRequest::Outcome;
        const bool isNotShown = outcome == ended && asked.elapsed() < SHORTEST_DIALOG_MILLISECONDS;
        if (outcome == failed || isNotShown)
            return receive(std::nullopt);
        std::vector<std::string> paths;
        for (const QString &uri : results.value(QStringLiteral("uris")).toStringList())
            if (auto path = localPath(uri.toStdString()))
                paths.push_back(std::move(*path));
        receive(paths);
    };
    question_ = new PortalRequest(QDBusConnection::sessionBus(), call, options, finished, this);
}

void PortalFolderPicker::receive(const std::optional<std::vector<std::string>> &paths)
{
    // The receiver may ask again, which changes both members.
    question_.clear();
    if (const Receiver receiver = std::exchange(receiver_, nullptr))
        receiver(paths);
}

} // namespace quillon
