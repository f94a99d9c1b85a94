#include "platform/linux/session/BusNotifications.h"

#include "tests/support/Patience.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace quillon {

using testing::ElementsAre;

namespace {

const QString NAME = QStringLiteral("org.freedesktop.Notifications");
const QString SERVER_PATH = QStringLiteral("/org/freedesktop/Notifications");

/// A server for notifications on a bus of the test's own.
class FakeServer : public QDBusVirtualObject
{
public:
    FakeServer()
    {
        bus_.registerVirtualObject(SERVER_PATH, this);
        bus_.registerService(NAME);
    }
    ~FakeServer() override
    {
        bus_.unregisterObject(SERVER_PATH);
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.member() == QLatin1String("GetCapabilities"))
            bus_.send(message.createReply(capabilities));
        else if (isFull)
            bus_.send(message.createErrorReply(QDBusError::LimitsExceeded, QString()));
        else {
            shown.push_back(message.arguments());
            bus_.send(message.createReply(static_cast<uint>(shown.size())));
        }
        return true;
    }
    void signal(const char *name, uint id, const QVariant &argument)
    {
        auto signal = QDBusMessage::createSignal(SERVER_PATH, NAME, QLatin1String(name));
        signal << id << argument;
        bus_.send(signal);
    }

    QStringList capabilities;
    bool isFull = false;
    QList<QVariantList> shown;

private:
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("notifications"));
};

} // namespace

class BusNotificationsTest : public testing::Test
{
protected:
    void show(const Notifications::Notification &notification)
    {
        notifications.show(notification, [this] { ++unavailable; });
    }
    bool comesToShow(qsizetype count)
    {
        return QTest::qWaitFor([&] { return server->shown.size() == count; }, PATIENCE);
    }

    std::optional<FakeServer> server{std::in_place};
    BusNotifications notifications;
    int unavailable = 0;
};

TEST_F(BusNotificationsTest, reachTheServerOfTheDesktop)
{
    show({.title = "“a<b>” is gone", .text = "R&D is <b>gone</b>"});
    ASSERT_TRUE(comesToShow(1));
    const QVariantList sent = server->shown.front();
    ASSERT_EQ(sent.size(), 8);
    EXPECT_EQ(sent[3].toString(), QStringLiteral("“a<b>” is gone"));
    EXPECT_EQ(sent[4].toString(), QStringLiteral("R&D is <b>gone</b>"));
    EXPECT_EQ(sent[5].toStringList(), QStringList());

    server->capabilities = {QStringLiteral("body-markup")};
    show({.title = "a<b>", .text = "R&D is <b>gone</b>"});
    ASSERT_TRUE(comesToShow(2));
    EXPECT_EQ(server->shown.back()[3].toString(), QStringLiteral("a<b>"));
    EXPECT_EQ(server->shown.back()[4].toString(),
              QStringLiteral("R&amp;D is &lt;b&gt;gone&lt;/b&gt;"));
    EXPECT_EQ(unavailable, 0);
}

TEST_F(BusNotificationsTest, carryOutWhatTheUserChooses)
{
    std::vector<std::string> chosen;
    for (const std::string name : {"first", "second", "third"}) {
        show(
            {name, "", Notifications::Choice{"Do " + name, [&, name] { chosen.push_back(name); }}});
        ASSERT_TRUE(comesToShow(name == "first" ? 1 : name == "second" ? 2 : 3));
    }
    const QStringList actions = server->shown[1][5].toStringList();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[1], QStringLiteral("Do second"));
    // Signals come in order, so this last one comes when the others have had their effect.
    server->signal("NotificationClosed", 1, 2U);
    server->signal("ActionInvoked", 1, actions[0]);
    server->signal("ActionInvoked", 2, QStringLiteral("default"));
    server->signal("ActionInvoked", 2, actions[0]);
    server->signal("ActionInvoked", 2, actions[0]);
    server->signal("ActionInvoked", 3, actions[0]);
    ASSERT_TRUE(QTest::qWaitFor([&] { return chosen.size() >= 2; }, PATIENCE));
    EXPECT_THAT(chosen, ElementsAre("second", "third"));
}

TEST_F(BusNotificationsTest, sayWhereNothingIsShown)
{
    server->isFull = true;
    show({.title = "a", .text = "b"});
    EXPECT_TRUE(QTest::qWaitFor([this] { return unavailable == 1; }, PATIENCE));
    server.reset();
    show({.title = "a", .text = "b"});
    EXPECT_EQ(unavailable, 1) << "nothing is waited for";
    EXPECT_TRUE(QTest::qWaitFor([this] { return unavailable == 2; }, PATIENCE));
}

} // namespace quillon
