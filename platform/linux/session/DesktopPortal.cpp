#include "platform/linux/session/DesktopPortal.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace quillon {

namespace {

constexpr uint SUCCESS = 0;
constexpr uint CANCELLED = 1;

/// Returns a text that no other request of this process has.
QString newToken()
{
    static int last = 0;
    return QStringLiteral("quillon%1").arg(++last);
}

QString requestInterface()
{
    return portal::interfaceName(QStringLiteral("Request"));
}

} // namespace

namespace portal {

QString service()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString path()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString interfaceName(const QString &name)
{
    return QStringLiteral("org.freedesktop.portal.") + name;
}

QDBusMessage methodCall(const QString &interface, const QString &method)
{
    return QDBusMessage::createMethodCall(service(), path(), interface, method);
}

QDBusMessage versionCall(const QString &interface)
{
    auto call =
        methodCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    return call << interface << QStringLiteral("version");
}

} // namespace portal

PortalRequest::PortalRequest(const QDBusConnection &bus, QDBusMessage call, QVariantMap options,
                             Finished finished, QObject *parent)
    : QObject(parent), bus_(bus), finished_(std::move(finished))
{
    const QString token = newToken();
    options.insert(QStringLiteral("handle_token"), token);
    // The answer may come before the call returns, so we listen for it under its known name first.
    QString sender = bus_.baseService().mid(1);
    sender.replace(u'.', u'_');
    path_ = QStringLiteral("%1/request/%2/%3").arg(portal::path(), sender, token);
    bus_.connect(portal::service(), path_, requestInterface(), QStringLiteral("Response"), this,
                 SLOT(responded(QDBusMessage)));
    auto *watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call << options), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](const QDBusPendingCallWatcher *sent) {
                if (sent->isError())
                    finish(Outcome::failed, {});
            });
}

PortalRequest::~PortalRequest()
{
    if (!finished_)
        return;
    auto close = QDBusMessage::createMethodCall(portal::service(), path_, requestInterface(),
                                                QStringLiteral("Close"));
    close.setAutoStartService(false);
    bus_.send(close);
}

void PortalRequest::responded(const QDBusMessage &response)
{
    const QVariantList arguments = response.arguments();
    if (arguments.size() != 2)
        return finish(Outcome::failed, {});
    const uint code = arguments[0].toUInt();
    if (code == SUCCESS)
        finish(Outcome::done, qdbus_cast<QVariantMap>(arguments[1]));
    else
        finish(code == CANCELLED ? Outcome::cancelled : Outcome::ended, {});
}

void PortalRequest::finish(Outcome outcome, const QVariantMap &results)
{
    deleteLater();
    // The receiver may delete this request.
    if (const Finished finished = std::exchange(finished_, nullptr))
        finished(outcome, results);
}

} // namespace quillon
