#include "platform/linux/hotkey/PortalHotKey.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <algorithm>
#include <array>

namespace quillon {

/// A key as the portal is asked for it: an id and the texts that describe the key.
struct PortalShortcut
{
    QString id;
    QVariantMap options;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.options;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.options;
    argument.endStructure();
    return argument;
}

namespace {

QString shortcutId()
{
    return QStringLiteral("toggle");
}
QString interfaceName()
{
    return portal::interfaceName(QStringLiteral("GlobalShortcuts"));
}
QString sessionInterface()
{
    return portal::interfaceName(QStringLiteral("Session"));
}

/// Returns the key in the desktops' syntax for shortcuts, such as "CTRL+ALT+space".
QString trigger(const KeyCombination &keys)
{
    QString text;
    for (const auto &[isHeld, name] :
         {std::pair{keys.control, "CTRL+"}, std::pair{keys.alt, "ALT+"},
          std::pair{keys.shift, "SHIFT+"}, std::pair{keys.super, "LOGO+"}})
        text += QLatin1String(isHeld ? name : "");
    std::array<char, 64> symbol{};
    xkb_keysym_get_name(symbolNamed(keys.key), symbol.data(), symbol.size());
    return text + QLatin1String(symbol.data());
}

} // namespace

PortalHotKey::PortalHotKey(xcb_connection_t *connection)
    // The connection is a new one, so that the portal learns the program's name before anything
    // else.
    : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                         QStringLiteral("quillon-hot-key")))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    if (connection)
        keyboard_.emplace(connection);
    if (!bus_.isConnected()) {
        probe_ = Probe::failed;
        return;
    }
    bus_.connect(portal::service(), portal::path(), interfaceName(), QStringLiteral("Activated"),
                 this, SLOT(activated(QDBusMessage)));
    auto *portals = new QDBusServiceWatcher(portal::service(), bus_,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(portals, &QDBusServiceWatcher::serviceUnregistered, this, &PortalHotKey::portalGone);
    connect(portals, &QDBusServiceWatcher::serviceRegistered, this, &PortalHotKey::portalCame);
    registerApplication();
    probe();
}

PortalHotKey::~PortalHotKey()
{
    PortalHotKey::release();
    QDBusConnection::disconnectFromBus(bus_.name());
}

void PortalHotKey::registerApplication()
{
    // By this call, newer portals identify programs outside a sandbox. Older ones answer with an
    // error that does not matter.
    auto call = portal::methodCall(QStringLiteral("org.freedesktop.host.portal.Registry"),
                                   QStringLiteral("Register"));
    call << QStringLiteral("org.quillon.Quillon") << QVariantMap();
    bus_.asyncCall(call);
}

void PortalHotKey::probe()
{
    auto *watcher =
        new QDBusPendingCallWatcher(bus_.asyncCall(portal::versionCall(interfaceName())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                probe_ = reply.isValid() ? Probe::answered : Probe::failed;
                finished->deleteLater();
                if (wanted_)
                    makeSession();
            });
}

void PortalHotKey::grab(const KeyCombination &keys, Receiver receiver)
{
    release();
    wanted_ = keys;
    receiver_ = std::move(receiver);
    if (probe_ != Probe::pending)
        makeSession();
}

void PortalHotKey::portalGone()
{
    isPortalLost_ = true;
    delete request_;
    session_.clear();
}

void PortalHotKey::portalCame()
{
    // Our own calls start the first portal.
    if (!std::exchange(isPortalLost_, false))
        return;
    registerApplication();
    probe();
}

void PortalHotKey::release()
{
    delete request_;
    closeSession();
    wanted_.reset();
    receiver_ = nullptr;
}

std::string PortalHotKey::keyName(std::uint32_t scanCode, std::uint32_t symbol) const
{
    return keyboard_ ? keyboard_->keyName(scanCode) : nameOfSymbol(xkb_keysym_to_lower(symbol));
}

void PortalHotKey::makeSession()
{
    if (probe_ == Probe::failed)
        return report(Outcome::impossible);
    if (symbolNamed(wanted_->key) == XKB_KEY_NoSymbol)
        return report(Outcome::noSuchKey);
    request(
        portal::methodCall(interfaceName(), QStringLiteral("CreateSession")),
        {{QStringLiteral("session_handle_token"), QStringLiteral("quillon%1").arg(++sessions_)}},
        &PortalHotKey::sessionMade);
}

void PortalHotKey::sessionMade(const QVariantMap &results)
{
    session_ = results.value(QStringLiteral("session_handle")).toString();
    if (session_.isEmpty())
        return report(Outcome::refused);
    bus_.connect(portal::service(), session_, sessionInterface(), QStringLiteral("Closed"), this,
                 SLOT(sessionClosed(QDBusMessage)));
    bindKeys();
}

void PortalHotKey::bindKeys()
{
    const QList<PortalShortcut> shortcuts{
        {.id = shortcutId(),
         .options = {{QStringLiteral("description"),
                      QCoreApplication::translate("HotKey", "Show or hide the search panel")},
                     {QStringLiteral("preferred_trigger"), trigger(*wanted_)}}}};
    auto call = portal::methodCall(interfaceName(), QStringLiteral("BindShortcuts"));
    call << QDBusObjectPath(session_) << QVariant::fromValue(shortcuts) << QString();
    request(call, {}, &PortalHotKey::keysBound);
}

void PortalHotKey::keysBound(const QVariantMap &results)
{
    const auto bound =
        qdbus_cast<QList<PortalShortcut>>(results.value(QStringLiteral("shortcuts")));
    const bool isBound = std::ranges::any_of(
        bound, [](const PortalShortcut &shortcut) { return shortcut.id == shortcutId(); });
    if (!isBound)
        closeSession();
    report(isBound ? Outcome::grabbed : Outcome::refused);
}

void PortalHotKey::activated(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    const bool isOurs = arguments.size() >= 2 && !session_.isEmpty() &&
                        qvariant_cast<QDBusObjectPath>(arguments[0]).path() == session_ &&
                        arguments[1].toString() == shortcutId();
    if (isOurs && pressed_)
        pressed_();
}

void PortalHotKey::sessionClosed(const QDBusMessage &signal)
{
    if (signal.path() != session_)
        return;
    session_.clear();
    delete request_;
    report(Outcome::refused);
}

void PortalHotKey::request(const QDBusMessage &call, const QVariantMap &options,
                           void (PortalHotKey::*answered)(const QVariantMap &results))
{
    request_ = new PortalRequest(
        bus_, call, options,
        [this, answered](PortalRequest::Outcome, const QVariantMap &results) {
            request_.clear();
            (this->*answered)(results);
        },
        this);
}

void PortalHotKey::closeSession()
{
    if (session_.isEmpty())
        return;
    bus_.disconnect(portal::service(), session_, sessionInterface(), QStringLiteral("Closed"), this,
                    SLOT(sessionClosed(QDBusMessage)));
    bus_.send(QDBusMessage::createMethodCall(portal::service(), session_, sessionInterface(),
                                             QStringLiteral("Close")));
    session_.clear();
}

void PortalHotKey::report(Outcome outcome)
{
    // The receiver may grab or release, which changes the member, so a copy is called.
    if (const Receiver receiver = receiver_)
        receiver(outcome);
}

} // namespace quillon
