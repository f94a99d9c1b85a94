#include "platform/linux/session/PortalFolderPicker.h"

#include "tests/support/Patience.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using Paths = std::optional<std::vector<std::string>>;

/// The part of the desktop portal that shows file dialogs, on a bus of the test's own. A dialog
/// stays open until the test answers it.
class FakeDialogPortal : public QDBusVirtualObject
{
public:
    FakeDialogPortal()
    {
        bus_.registerVirtualObject(portal::path(), this, QDBusConnection::SubPath);
        bus_.registerService(portal::service());
    }
    ~FakeDialogPortal() override
    {
        // A call that waits to be handled needs the connection on which it came.
        bus_.unregisterObject(portal::path(), QDBusConnection::UnregisterTree);
        QCoreApplication::sendPostedEvents(this);
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        const QVariantList arguments = message.arguments();
        if (message.member() == u"Get") {
            bus_.send(message.createReply(QVariant::fromValue(QDBusVariant(version))));
        } else if (message.member() == u"OpenFile") {
            title = arguments.at(1).toString();
            options = qdbus_cast<QVariantMap>(arguments.at(2));
            dialogs << QStringLiteral("%1/request/%2/%3")
                           .arg(portal::path(), message.service().mid(1).replace(u'.', u'_'),
                                options.value(QStringLiteral("handle_token")).toString());
            bus_.send(message.createReply(QVariant::fromValue(QDBusObjectPath(dialogs.last()))));
        } else if (message.member() == u"Close") {
            closed << message.path();
        }
        return true;
    }
    void answer(uint response, const QStringList &uris)
    {
        auto signal = QDBusMessage::createSignal(dialogs.last(),
                                                 portal::interfaceName(QStringLiteral("Request")),
                                                 QStringLiteral("Response"));
        signal << response << QVariantMap{{QStringLiteral("uris"), uris}};
        bus_.send(signal);
    }
    bool comesToShow(qsizetype count)
    {
        return QTest::qWaitFor([&] { return dialogs.size() == count; }, PATIENCE);
    }

    uint version = 4;
    QString title;
    QVariantMap options;
    /// The requests of the dialogs that were shown, and of those that were closed unanswered.
    QStringList dialogs;
    QStringList closed;

private:
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("dialog-portal"));
};

class PortalFolderPickerTest : public testing::Test
{
protected:
    void pick()
    {
        picker.pick("Choose", "/home/caf\xe9", 0,
                    [this](const Paths &paths) { received.push_back(paths); });
    }
    bool comesToReceive(std::size_t count)
    {
        return QTest::qWaitFor([&] { return received.size() == count; }, PATIENCE);
    }

    PortalFolderPicker picker;
    std::vector<Paths> received;
};

} // namespace

TEST_F(PortalFolderPickerTest, takesSeveralFoldersByteForByte)
{
    FakeDialogPortal portal;
    pick();
    ASSERT_TRUE(portal.comesToShow(1));
    EXPECT_EQ(portal.title, QStringLiteral("Choose"));
    EXPECT_EQ(portal.options.value(QStringLiteral("directory")), true);
    EXPECT_EQ(portal.options.value(QStringLiteral("multiple")), true);
    EXPECT_EQ(portal.options.value(QStringLiteral("current_folder")).toByteArray(),
              QByteArray("/home/caf\xe9\0", 11));
    portal.answer(0, {QStringLiteral("file:///srv/caf%E9%20%231/"), QStringLiteral("sftp://host/x"),
                      QStringLiteral("file:///")});
    ASSERT_TRUE(comesToReceive(1));
    EXPECT_THAT(received[0], Optional(ElementsAre("/srv/caf\xe9 #1", "/")));
    EXPECT_THAT(portal.closed, IsEmpty());
}

TEST_F(PortalFolderPickerTest, tellsACancelledDialogFromOneThatCannotBeShown)
{
    FakeDialogPortal portal;
    pick();
    ASSERT_TRUE(portal.comesToShow(1));
    portal.answer(1, {});
    ASSERT_TRUE(comesToReceive(1));
    EXPECT_THAT(received[0], Optional(IsEmpty()));
    pick();
    ASSERT_TRUE(portal.comesToShow(2));
    portal.answer(2, {});
    ASSERT_TRUE(comesToReceive(2));
    EXPECT_EQ(received[1], std::nullopt);
    pick();
    ASSERT_TRUE(portal.comesToShow(3));
    QTest::qWait(500); // The user looks at the dialog and closes it with Escape.
    portal.answer(2, {});
    ASSERT_TRUE(comesToReceive(3));
    EXPECT_THAT(received[2], Optional(IsEmpty()));
}

TEST_F(PortalFolderPickerTest, closesADialogThatIsOpenWhenAnotherIsAskedFor)
{
    FakeDialogPortal portal;
    pick();
    ASSERT_TRUE(portal.comesToShow(1));
    pick();
    ASSERT_TRUE(portal.comesToShow(2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !portal.closed.isEmpty(); }, PATIENCE));
    EXPECT_EQ(portal.closed, QStringList{portal.dialogs[0]});
    portal.answer(0, {QStringLiteral("file:///srv")});
    ASSERT_TRUE(comesToReceive(1));
    EXPECT_THAT(received[0], Optional(ElementsAre("/srv")));
}

TEST_F(PortalFolderPickerTest, hasNoDialogWithoutAPortalThatChoosesFolders)
{
    pick();
    ASSERT_TRUE(comesToReceive(1)) << "no portal";
    EXPECT_EQ(received[0], std::nullopt);
    FakeDialogPortal portal;
    portal.version = 2;
    pick();
    ASSERT_TRUE(comesToReceive(2)) << "one that chooses files";
    EXPECT_EQ(received[1], std::nullopt);
    EXPECT_THAT(portal.dialogs, IsEmpty());
}

} // namespace quillon
