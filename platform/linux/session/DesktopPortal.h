#pragma once

#include <QDBusMessage>
#include <QString>

namespace quillon::portal {

/// Return the desktop portal's name on the session bus and the path of its object.
QString service();
QString path();
/// Returns "org.freedesktop.portal." and the name.
QString interfaceName(const QString &name);
/// Makes a call of a method of that object.
QDBusMessage methodCall(const QString &interface, const QString &method);

} // namespace quillon::portal
