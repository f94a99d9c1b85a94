#pragma once

#include "platform/Notifications.h"

#include <QObject>

#include <functional>
#include <unordered_map>

class QDBusMessage;
class QDBusPendingCallWatcher;

namespace quillon {

/// Shows notifications through the desktop's server for them, org.freedesktop.Notifications on the
/// session bus.
class BusNotifications : public QObject, public Notifications
{
    Q_OBJECT

public:
    BusNotifications();

    void show(const Notification &notification, std::function<void()> unavailable) override;

private Q_SLOTS:
    void actionInvoked(uint id, const QString &key);
    void notificationClosed(uint id, uint reason);

private:
    using Answered = std::function<void(const QDBusPendingCallWatcher &)>;

    void call(const QDBusMessage &message, Answered answered);
    void send(const Notification &notification, bool readsMarkup,
              std::function<void()> unavailable);

    /// The actions that the notifications still on the screen offer, by the server's numbers for
    /// them.
    std::unordered_map<uint, std::function<void()>> choices_;
};

} // namespace quillon
