#include "platform/linux/BusRemoteControl.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariant>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

constexpr int SEND_TIMEOUT_MILLISECONDS = 3000;
constexpr std::array<std::string_view, 3> ACTIONS{"toggle", "show", "quit"};

QString busName()
{
    return QStringLiteral("org.quillon.Quillon");
}
QString objectPath()
{
    return QStringLiteral("/org/quillon/Quillon");
}
QString interfaceName()
{
    return QStringLiteral("org.freedesktop.Application");
}

} // namespace

/// What stands on the bus; Qt reads the method signatures off it.
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject *parent, RemoteControl::Handler handler)
        : QDBusAbstractAdaptor(parent), handler_(std::move(handler))
    {}

    // The names are those of the interface. NOLINTBEGIN(readability-identifier-naming)
public Q_SLOTS:
    void Activate(const QVariantMap &) { handler_("show"); }
    /// Nothing is opened from outside; asking for it brings the panel up.
    void Open(const QStringList &, const QVariantMap &) { handler_("show"); }
    void ActivateAction(const QString &action, const QVariantList &, const QVariantMap &)
    {
        const std::string name = action.toStdString();
        if (std::ranges::find(ACTIONS, name) != ACTIONS.end())
            handler_(name);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    RemoteControl::Handler handler_;
};

BusRemoteControl::~BusRemoteControl()
{
    if (!isOwner_)
        return;
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterObject(objectPath());
    bus.unregisterService(busName());
}

RemoteControl::Claim BusRemoteControl::claim(Handler handler)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Claim::unavailable;
    // The object stands before the name does: whoever sees the name is answered.
    new ApplicationAdaptor(&object_, std::move(handler));
    bus.registerObject(objectPath(), &object_, QDBusConnection::ExportAdaptors);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(busName(), QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    isOwner_ = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    if (isOwner_)
        return Claim::owner;
    bus.unregisterObject(objectPath());
    return reply.isValid() ? Claim::taken : Claim::unavailable;
}

bool BusRemoteControl::send(const std::string &action)
{
    // A connection of its own: the shared one delivers nothing before the Qt loop runs, and would
    // stay that way for a program that goes on to make its application object only now.
    const QString connection = QStringLiteral("quillon-request");
    bool isAnswered = false;
    {
        const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection);
        if (bus.isConnected()) {
            auto call = QDBusMessage::createMethodCall(busName(), objectPath(), interfaceName(),
                                                       QStringLiteral("ActivateAction"));
            call.setAutoStartService(false);
            call << QString::fromStdString(action) << QVariantList() << QVariantMap();
            const auto reply = bus.call(call, QDBus::Block, SEND_TIMEOUT_MILLISECONDS);
            isAnswered = reply.type() == QDBusMessage::ReplyMessage;
        }
    }
    QDBusConnection::disconnectFromBus(connection);
    return isAnswered;
}

} // namespace quillon

#include "BusRemoteControl.moc"
