#include "platform/linux/session/BusRemoteControl.h"

#include "base/TaskQueue.h"
#include "platform/linux/bus/BusNames.h"
#include "platform/linux/session/SearchProviders.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QVariant>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

constexpr std::array<std::string_view, 5> ACTIONS{"toggle", "show", "preferences", "rebuild",
                                                  "quit"};

QString name(const char *text)
{
    return QString::fromLatin1(text);
}

/// Returns the token, preferably under the newer of its two names.
std::string activationToken(const QVariantMap &platformData)
{
    for (const char *key : {BusNames::ACTIVATION_TOKEN, BusNames::STARTUP_ID}) {
        const QString token = platformData.value(name(key)).toString();
        if (!token.isEmpty())
            return token.toStdString();
    }
    return {};
}

} // namespace

/// The interface on the bus. Qt reads the signatures of its methods.
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject *parent, std::function<void(const RemoteControl::Request &)> perform)
        : QDBusAbstractAdaptor(parent), perform_(std::move(perform))
    {}

    // The interface prescribes these names. NOLINTBEGIN(readability-identifier-naming)
public Q_SLOTS:
    void Activate(const QVariantMap &platformData) { pass("activate", platformData); }
    /// Other programs cannot have anything opened, so this counts as a second start.
    void Open(const QStringList &, const QVariantMap &platformData)
    {
        pass("activate", platformData);
    }
    void ActivateAction(const QString &action, const QVariantList &,
                        const QVariantMap &platformData)
    {
        const std::string name = action.toStdString();
        if (std::ranges::find(ACTIONS, name) != ACTIONS.end())
            pass(name, platformData);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    /// The caller is answered first, since showing a window takes longer than a request should.
    void pass(std::string action, const QVariantMap &platformData)
    {
        RemoteControl::Request request{std::move(action), activationToken(platformData)};
        QMetaObject::invokeMethod(
            this, [this, request = std::move(request)] { perform_(request); },
            Qt::QueuedConnection);
    }

    std::function<void(const RemoteControl::Request &)> perform_;
};

/// Hears from the bus library when the bus has ended.
class BusEnd : public QObject
{
    Q_OBJECT

public:
    BusEnd(QObject *parent, std::function<void()> lost) : QObject(parent), lost_(std::move(lost))
    {
        QDBusConnection::sessionBus().connect(QString(),
                                              QStringLiteral("/org/freedesktop/DBus/Local"),
                                              QStringLiteral("org.freedesktop.DBus.Local"),
                                              QStringLiteral("Disconnected"), this, SLOT(report()));
    }

public Q_SLOTS:
    void report() { lost_(); }

private:
    std::function<void()> lost_;
};

/// A RemoteMatch in the types that the bus carries.
struct BusMatch
{
    using Range = std::pair<qlonglong, qlonglong>;

    QByteArray path;
    double score = 0;
    QList<Range> ranges;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const BusMatch &match)
{
    argument.beginStructure();
    argument << match.path << match.score << match.ranges;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, BusMatch &match)
{
    argument.beginStructure();
    argument >> match.path >> match.score >> match.ranges;
    argument.endStructure();
    return argument;
}

namespace {

QList<BusMatch> toBus(const std::vector<RemoteMatch> &matches)
{
    QList<BusMatch> converted;
    converted.reserve(static_cast<qsizetype>(matches.size()));
    for (const RemoteMatch &match : matches) {
        converted.append({QByteArray::fromStdString(match.path), match.score, {}});
        for (const auto &[location, length] : match.ranges)
            converted.back().ranges.append({location, length});
    }
    return converted;
}

} // namespace

/// Answers questions of the user's other processes. The answers are sent from the background.
class SearchAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillon.Quillon.Search")

public:
    SearchAdaptor(QObject *parent, TaskQueue &background, RemoteControl::Handlers handlers)
        : QDBusAbstractAdaptor(parent), background_(background), handlers_(std::move(handlers))
    {
        qDBusRegisterMetaType<BusMatch::Range>();
        qDBusRegisterMetaType<QList<BusMatch::Range>>();
        qDBusRegisterMetaType<BusMatch>();
        qDBusRegisterMetaType<QList<BusMatch>>();
    }

    // The interface prescribes these names. NOLINTBEGIN(readability-identifier-naming)
public Q_SLOTS:
    QList<quillon::BusMatch> Find(const QByteArray &settings, const QByteArray &query, uint limit,
                                  const QString &order, bool words, const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        RemoteQuery asked{settings.toStdString(), query.toStdString(),
                          std::min(limit, RemoteQuery::MOST), order.toStdString(), words};
        background_.post([find = handlers_.find, asked = std::move(asked), message] {
            const RemoteAnswer answer = find(asked);
            QDBusConnection::sessionBus().send(
                answer ? message.createReply(QVariant::fromValue(toBus(*answer)))
                       : message.createErrorReply(name(BusNames::NOT_ANSWERED),
                                                  QStringLiteral("No index for these settings")));
        });
        return {};
    }
    QString Status(const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        background_.post([status = handlers_.status, message] {
            QDBusConnection::sessionBus().send(
                message.createReply(QString::fromStdString(status())));
        });
        return {};
    }
    bool Use(const QByteArray &settings, const QByteArray &path, const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        background_.post([use = handlers_.use, settings = settings.toStdString(),
                          path = path.toStdString(), message] {
            QDBusConnection::sessionBus().send(message.createReply(use && use(settings, path)));
        });
        return false;
    }
    QString Open(const QByteArray &settings, const QByteArray &path, const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        const auto reply = [message](const std::string &fault) {
            QDBusConnection::sessionBus().send(message.createReply(QString::fromStdString(fault)));
        };
        handlers_.open(settings.toStdString(), path.toStdString(), reply);
        return {};
    }
    // NOLINTEND(readability-identifier-naming)

private:
    TaskQueue &background_;
    const RemoteControl::Handlers handlers_;
};

BusRemoteControl::~BusRemoteControl()
{
    if (!isOwner_)
        return;
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterObject(name(BusNames::OBJECT));
    bus.unregisterService(name(BusNames::SERVICE));
}

RemoteControl::Claim BusRemoteControl::claim(Handlers handlers)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Claim::unavailable;
    // The object is registered before the name, so that a process that sees the name gets answers.
    addSearchProviders(object_, background_, handlers);
    new ApplicationAdaptor(&object_, handlers.perform);
    if (handlers.lost)
        new BusEnd(&object_, handlers.lost);
    if (handlers.find && handlers.status)
        new SearchAdaptor(&object_, background_, std::move(handlers));
    bus.registerObject(name(BusNames::OBJECT), &object_, QDBusConnection::ExportAdaptors);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(name(BusNames::SERVICE),
                                         QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    isOwner_ = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    if (isOwner_)
        return Claim::owner;
    bus.unregisterObject(name(BusNames::OBJECT));
    return reply.isValid() ? Claim::taken : Claim::unavailable;
}

} // namespace quillon

#include "BusRemoteControl.moc"
