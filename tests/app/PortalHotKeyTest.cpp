#include "platform/linux/hotkey/PortalHotKey.h"

#include "tests/support/Patience.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace quillon {

using testing::IsEmpty;
using Outcome = HotKey::Outcome;

namespace {

const QString SERVICE = QStringLiteral("org.freedesktop.portal.Desktop");
const QString PORTAL_PATH = QStringLiteral("/org/freedesktop/portal/desktop");

const KeyCombination CTRL_ALT_SPACE{.control = true, .alt = true, .key = "space"};
const KeyCombination SUPER_COMMA{.super = true, .key = ","};

QString portalName(const char *name)
{
    return QStringLiteral("org.freedesktop.portal.") + QLatin1String(name);
}

/// The part of the desktop portal that grants keys, with a user who says yes or no, on a bus of the
/// test's own. It answers before the call returns, which a portal may do.
class FakeKeyPortal : public QDBusVirtualObject
{
public:
    FakeKeyPortal()
    {
        bus_.registerVirtualObject(PORTAL_PATH, this, QDBusConnection::SubPath);
        appear();
    }
    ~FakeKeyPortal() override
    {
        // A call that waits to be handled needs the connection on which it came, even to be
        // dropped.
        bus_.unregisterObject(PORTAL_PATH, QDBusConnection::UnregisterTree);
        QCoreApplication::sendPostedEvents(this);
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    void appear() { bus_.registerService(SERVICE); }
    void vanish() { bus_.unregisterService(SERVICE); }

    void activate(const QString &session, const QString &id)
    {
        auto signal = QDBusMessage::createSignal(PORTAL_PATH, portalName("GlobalShortcuts"),
                                                 QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong{1}
               << QVariantMap();
        bus_.send(signal);
    }
    void takeBack(const QString &session)
    {
        auto signal =
            QDBusMessage::createSignal(session, portalName("Session"), QStringLiteral("Closed"));
        signal << QVariantMap();
        bus_.send(signal);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        const QString member = message.member();
        if (member == QLatin1String("Register"))
            bus_.send(message.createReply());
        else if (member == QLatin1String("Get"))
            bus_.send(hasKeys ? message.createReply(QVariant::fromValue(QDBusVariant(1U)))
                              : message.createErrorReply(QDBusError::InvalidArgs, QString()));
        else if (member == QLatin1String("CreateSession"))
            makeSession(message);
        else if (member == QLatin1String("BindShortcuts"))
            bind(message);
        else if (member == QLatin1String("Close"))
            closed << message.path();
        return true;
    }

    bool hasKeys = true;
    bool saysYes = true;
    QStringList sessions;
    QStringList triggers;
    /// The sessions and the requests that were given up.
    QStringList closed;

private:
    static QString pathFor(const char *kind, const QDBusMessage &call, const QVariant &token)
    {
        return QStringLiteral("%1/%2/%3/%4")
            .arg(PORTAL_PATH, QLatin1String(kind), call.service().mid(1).replace(u'.', u'_'),
                 token.toString());
    }
    void makeSession(const QDBusMessage &call)
    {
        const auto options = qdbus_cast<QVariantMap>(call.arguments().at(0));
        const QString session =
            pathFor("session", call, options.value(QStringLiteral("session_handle_token")));
        sessions << session;
        respond(call, options, 0, {{QStringLiteral("session_handle"), session}});
    }
    void bind(const QDBusMessage &call)
    {
        const auto shortcuts = call.arguments().at(1).value<QDBusArgument>();
        shortcuts.beginArray();
        while (!shortcuts.atEnd()) {
            QString id;
            QVariantMap described;
            shortcuts.beginStructure();
            shortcuts >> id >> described;
            shortcuts.endStructure();
            triggers << described.value(QStringLiteral("preferred_trigger")).toString();
        }
        shortcuts.endArray();
        const auto options = qdbus_cast<QVariantMap>(call.arguments().at(3));
        respond(call, options, saysYes ? 0 : 1,
                {{QStringLiteral("shortcuts"), call.arguments().at(1)}});
    }
    void respond(const QDBusMessage &call, const QVariantMap &options, uint status,
                 const QVariantMap &results)
    {
        const QString request =
            pathFor("request", call, options.value(QStringLiteral("handle_token")));
        auto signal =
            QDBusMessage::createSignal(request, portalName("Request"), QStringLiteral("Response"));
        signal << status << results;
        bus_.send(signal);
        bus_.send(call.createReply(QVariant::fromValue(QDBusObjectPath(request))));
    }

    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("key-portal"));
};

} // namespace

class PortalHotKeyTest : public testing::Test
{
protected:
    void grab(const KeyCombination &keys)
    {
        hotKey.grab(keys, [this](Outcome outcome) { told.push_back(outcome); });
    }
    bool comesTo(const std::vector<Outcome> &outcomes)
    {
        return QTest::qWaitFor([&] { return told == outcomes; }, PATIENCE);
    }
    std::optional<FakeKeyPortal> portal{std::in_place};
    PortalHotKey hotKey{nullptr};
    std::vector<Outcome> told;
    int presses = 0;
};

TEST_F(PortalHotKeyTest, bindsTheKeyAndHearsOfItsPresses)
{
    hotKey.onPressed([this] { ++presses; });
    grab(CTRL_ALT_SPACE);
    EXPECT_THAT(told, IsEmpty()) << "nothing is waited for";
    ASSERT_TRUE(comesTo({Outcome::grabbed}));
    EXPECT_EQ(portal->triggers, QStringList{QStringLiteral("CTRL+ALT+space")});
    const QString session = portal->sessions[0];
    portal->activate(session, QStringLiteral("another"));
    portal->activate(QStringLiteral("/a/session/of/others"), QStringLiteral("toggle"));
    portal->activate(session, QStringLiteral("toggle"));
    portal->activate(session, QStringLiteral("toggle"));
    // Signals come in order, so with this one all have come.
    portal->takeBack(session);
    ASSERT_TRUE(comesTo({Outcome::grabbed, Outcome::refused}));
    EXPECT_EQ(presses, 2);
}

TEST_F(PortalHotKeyTest, bindsEachKeyInASessionOfItsOwn)
{
    grab(CTRL_ALT_SPACE);
    ASSERT_TRUE(comesTo({Outcome::grabbed}));
    grab(SUPER_COMMA);
    ASSERT_TRUE(comesTo({Outcome::grabbed, Outcome::grabbed}));
    ASSERT_EQ(portal->sessions.size(), 2);
    EXPECT_EQ(portal->closed, QStringList{portal->sessions[0]});
    EXPECT_EQ(portal->triggers.last(), QStringLiteral("LOGO+comma"));
    hotKey.release();
    ASSERT_TRUE(QTest::qWaitFor([this] { return portal->closed == portal->sessions; }, PATIENCE));
}

TEST_F(PortalHotKeyTest, bindsOnlyTheLastOfSeveralAskedForAtOnce)
{
    for (int i = 0; i < 3; ++i)
        grab(CTRL_ALT_SPACE);
    grab(SUPER_COMMA);
    ASSERT_TRUE(comesTo({Outcome::grabbed}));
    EXPECT_EQ(portal->triggers, QStringList{QStringLiteral("LOGO+comma")});
}

TEST_F(PortalHotKeyTest, tellsThatTheUserSaidNo)
{
    portal->saysYes = false;
    grab(CTRL_ALT_SPACE);
    ASSERT_TRUE(comesTo({Outcome::refused}));
    EXPECT_TRUE(hotKey.isPossible()) << "another key may be granted";
}

TEST_F(PortalHotKeyTest, tellsThatTheDesktopTookTheKeyBack)
{
    grab(CTRL_ALT_SPACE);
    ASSERT_TRUE(comesTo({Outcome::grabbed}));
    portal->takeBack(portal->sessions[0]);
    ASSERT_TRUE(comesTo({Outcome::grabbed, Outcome::refused}));
}

TEST_F(PortalHotKeyTest, asksAgainWhenThePortalIsStartedAgain)
{
    grab(CTRL_ALT_SPACE);
    ASSERT_TRUE(comesTo({Outcome::grabbed}));
    portal->vanish();
    portal->appear();
    ASSERT_TRUE(comesTo({Outcome::grabbed, Outcome::grabbed}));
    EXPECT_EQ(portal->sessions.size(), 2);
}

TEST_F(PortalHotKeyTest, isImpossibleWhereThePortalHasNoKeys)
{
    portal->hasKeys = false;
    EXPECT_TRUE(hotKey.isPossible()) << "not known yet";
    grab(CTRL_ALT_SPACE);
    ASSERT_TRUE(comesTo({Outcome::impossible}));
    EXPECT_FALSE(hotKey.isPossible());
    EXPECT_THAT(portal->sessions, IsEmpty());
}

TEST(PortalHotKeyWithoutAPortal, isImpossible)
{
    PortalHotKey hotKey(nullptr);
    std::optional<Outcome> told;
    hotKey.grab(CTRL_ALT_SPACE, [&told](Outcome outcome) { told = outcome; });
    ASSERT_TRUE(QTest::qWaitFor([&told] { return told.has_value(); }, PATIENCE));
    EXPECT_EQ(told, Outcome::impossible);
}

} // namespace quillon
