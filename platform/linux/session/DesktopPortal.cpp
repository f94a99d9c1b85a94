#include "platform/linux/session/DesktopPortal.h"

namespace quillon::portal {

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

} // namespace quillon::portal
