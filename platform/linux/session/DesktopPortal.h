#pragma once

#include <QDBusMessage>
#include <QString>

namespace quillon::portal {

/// The desktop portal's name on the session bus and its object.
QString service();
QString path();
/// "org.freedesktop.portal." and the name.
QString interfaceName(const QString &name);
/// A call of a method of that object.
QDBusMessage methodCall(const QString &interface, const QString &method);

} // namespace quillon::portal
