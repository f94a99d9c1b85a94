#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace quillon {

namespace portal {

/// Return the desktop portal's name on the session bus and the path of its object.
QString service();
QString path();
/// Returns "org.freedesktop.portal." and the name.
QString interfaceName(const QString &name);
/// Makes a call of a method of that object.
QDBusMessage methodCall(const QString &interface, const QString &method);
/// Makes a call that asks for the version of an interface of that object.
QDBusMessage versionCall(const QString &interface);

} // namespace portal

/// A call of the desktop portal that the user may have to answer. The answer is a signal of an
/// object of its own. Closes the request when it is deleted before the answer came, and deletes
/// itself after the answer.
class PortalRequest : public QObject
{
    Q_OBJECT

public:
    enum class Outcome
    {
        done,
        /// The user cancelled the request.
        cancelled,
        /// The request ended in another way. Some portals report so when the user closes a dialog,
        /// and all when they could not show one.
        ended,
        /// The portal could not carry the request out, or there is no portal.
        failed,
    };
    using Finished = std::function<void(Outcome outcome, const QVariantMap &results)>;

    /// Sends the call, whose last argument, the options, is added here. The callback runs once.
    PortalRequest(const QDBusConnection &bus, QDBusMessage call, QVariantMap options,
                  Finished finished, QObject *parent);
    ~PortalRequest() override;

private Q_SLOTS:
    void responded(const QDBusMessage &response);

private:
    void finish(Outcome outcome, const QVariantMap &results);

    QDBusConnection bus_;
    QString path_;
    /// It is empty once it was called.
    Finished finished_;
};

} // namespace quillon
