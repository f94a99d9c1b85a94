#include "platform/linux/session/BusNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace quillon {

namespace {

/// A server that takes longer counts as missing. Starting one may take a second or two.
constexpr int ANSWER_LIMIT = 5000; // milliseconds
constexpr int USUAL_TIME_ON_SCREEN = -1;
constexpr uint NO_FORMER_NOTIFICATION = 0;

QString serviceName()
{
    return QStringLiteral("org.freedesktop.Notifications");
}
QString objectPath()
{
    return QStringLiteral("/org/freedesktop/Notifications");
}
/// Names the one choice in what the server sends and receives.
QString choiceKey()
{
    return QStringLiteral("choice");
}

QDBusMessage methodCall(const QString &method)
{
    return QDBusMessage::createMethodCall(serviceName(), objectPath(), serviceName(), method);
}

} // namespace

BusNotifications::BusNotifications()
{
    auto bus = QDBusConnection::sessionBus();
    bus.connect(serviceName(), objectPath(), serviceName(), QStringLiteral("ActionInvoked"), this,
                SLOT(actionInvoked(uint, QString)));
    bus.connect(serviceName(), objectPath(), serviceName(), QStringLiteral("NotificationClosed"),
                this, SLOT(notificationClosed(uint, uint)));
}

void BusNotifications::show(const Notification &notification, std::function<void()> unavailable)
{
    // Servers that read markup expect the characters of the text to be escaped. The others show the
    // text as it is.
    call(methodCall(QStringLiteral("GetCapabilities")),
         [this, notification,
          unavailable = std::move(unavailable)](const QDBusPendingCallWatcher &answer) {
             const QDBusPendingReply<QStringList> capabilities = answer;
             if (capabilities.isError())
                 unavailable();
             else
                 send(notification, capabilities.value().contains(QStringLiteral("body-markup")),
                      unavailable);
         });
}

void BusNotifications::send(const Notification &notification, bool readsMarkup,
                            std::function<void()> unavailable)
{
    const QString text = QString::fromStdString(notification.text);
    QStringList actions;
    if (notification.choice)
        actions << choiceKey() << QString::fromStdString(notification.choice->text);
    auto message = methodCall(QStringLiteral("Notify"));
    message << QStringLiteral("Quillon") << NO_FORMER_NOTIFICATION
            << QStringLiteral("org.quillon.Quillon") << QString::fromStdString(notification.title)
            << (readsMarkup ? text.toHtmlEscaped() : text) << actions
            << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("org.quillon.Quillon")}}
            << USUAL_TIME_ON_SCREEN;
    call(message, [this, choice = notification.choice,
                   unavailable = std::move(unavailable)](const QDBusPendingCallWatcher &answer) {
        const QDBusPendingReply<uint> id = answer;
        if (id.isError())
            unavailable();
        else if (choice)
            choices_[id.value()] = choice->chosen;
    });
}

void BusNotifications::call(const QDBusMessage &message, Answered answered)
{
    auto *watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(message, ANSWER_LIMIT), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [answered = std::move(answered)](QDBusPendingCallWatcher *finished) {
                answered(*finished);
                finished->deleteLater();
            });
}

void BusNotifications::actionInvoked(uint id, const QString &key)
{
    const auto found = choices_.find(id);
    if (found == choices_.end() || key != choiceKey())
        return;
    const auto chosen = std::move(found->second);
    choices_.erase(found);
    chosen();
}

void BusNotifications::notificationClosed(uint id, uint)
{
    choices_.erase(id);
}

} // namespace quillon
