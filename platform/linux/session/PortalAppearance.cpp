#include "platform/linux/session/PortalAppearance.h"

#include "platform/linux/session/DesktopPortal.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quillon {

namespace {

constexpr uint DARK_PREFERRED = 1;

QString interfaceName()
{
    return portal::interfaceName(QStringLiteral("Settings"));
}
QString group()
{
    return QStringLiteral("org.freedesktop.appearance");
}
QString key()
{
    return QStringLiteral("color-scheme");
}

} // namespace

PortalAppearance::PortalAppearance()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portal::service(), portal::path(), interfaceName(),
                QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));

    auto call = portal::methodCall(interfaceName(), QStringLiteral("Read"));
    call << group() << key();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (reply.isValid())
                    setColorScheme(reply.value().variant());
                finished->deleteLater();
            });
}

void PortalAppearance::settingChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.size() == 3 && arguments[0] == group() && arguments[1] == key())
        setColorScheme(arguments[2]);
}

void PortalAppearance::setColorScheme(const QVariant &value)
{
    // The answer is wrapped in one more variant than the signal's value.
    QVariant scheme = value;
    while (scheme.canConvert<QDBusVariant>())
        scheme = scheme.value<QDBusVariant>().variant();
    const bool prefersDark = scheme.toUInt() == DARK_PREFERRED;
    if (prefersDark == prefersDark_)
        return;
    prefersDark_ = prefersDark;
    if (changed_)
        changed_();
}

} // namespace quillon
