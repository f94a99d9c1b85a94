#include "platform/linux/applications/GioWorkspace.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/bus/BusRunningInstance.h"
#include "platform/linux/session/BoundedOutput.h"
#include "platform/linux/session/BusRemoteControl.h"
#include "platform/linux/session/PortalAppearance.h"
#include "platform/linux/session/QtTaskQueues.h"
#include "tests/support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <latch>
#include <memory>

#include <unistd.h>

namespace quillon {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString PORTAL_PATH = QStringLiteral("/org/freedesktop/portal/desktop");
const QString SETTINGS = QStringLiteral("org.freedesktop.portal.Settings");
const QString APPEARANCE = QStringLiteral("org.freedesktop.appearance");

QVariant colorScheme(uint scheme)
{
    return QVariant::fromValue(QDBusVariant(scheme));
}

} // namespace

/// The part of the desktop portal that reports settings, on a bus of the test's own.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(uint scheme) : scheme_(scheme)
    {
        bus_.registerObject(PORTAL_PATH, this, QDBusConnection::ExportAllSlots);
        bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~FakePortal() override { QDBusConnection::disconnectFromBus(bus_.name()); }

    void change(uint scheme)
    {
        auto signal =
            QDBusMessage::createSignal(PORTAL_PATH, SETTINGS, QStringLiteral("SettingChanged"));
        signal << APPEARANCE << QStringLiteral("color-scheme") << colorScheme(scheme);
        bus_.send(signal);
    }

public Q_SLOTS:
    QDBusVariant Read(const QString &, const QString &) // NOLINT(readability-identifier-naming)
    {
        return QDBusVariant(colorScheme(scheme_));
    }

private:
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
    uint scheme_;
};

TEST(PortalAppearance, followsTheDesktopsColourScheme)
{
    FakePortal portal(1);
    int changes = 0;
    PortalAppearance appearance;
    EXPECT_FALSE(appearance.prefersDark()) << "the answer is not waited for";
    appearance.onChange([&changes] { ++changes; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return appearance.prefersDark(); }));
    portal.change(1);
    portal.change(2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !appearance.prefersDark(); }));
    EXPECT_EQ(changes, 2);
}

class BusRemoteControlTest : public testing::Test
{
protected:
    /// Asks from another thread, as another process would, while the loop answers here.
    static void ask(const std::function<void(RunningInstance &)> &questions,
                    const std::string &activationToken = {})
    {
        const std::unique_ptr<QThread> other(QThread::create([&] {
            BusRunningInstance instance(activationToken);
            questions(instance);
        }));
        other->start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return other->isFinished(); }, 60000));
    }

    PoolTaskQueue background_{2};
};

TEST_F(BusRemoteControlTest, handsOverTheActionsItKnowsWithTheRightToTheKeyboard)
{
    std::vector<std::string> requests;
    BusRemoteControl remote(background_);
    const auto note = [&](const RemoteControl::Request &request) {
        requests.push_back(request.action + " " + request.activationToken);
    };
    ASSERT_EQ(remote.claim({.perform = note, .find = nullptr, .status = nullptr, .use = nullptr}),
              RemoteControl::Claim::owner);
    ask(
        [](RunningInstance &instance) {
            EXPECT_TRUE(instance.isRunning());
            for (const char *action : {"toggle", "no such action", "activate", "rebuild"})
                EXPECT_EQ(instance.request(action), RunningInstance::Outcome::done);
        },
        "launcher_TIME42");
    ask([](RunningInstance &instance) {
        EXPECT_EQ(instance.request("show"), RunningInstance::Outcome::done);
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return requests.size() >= 4; }, 60000));
    EXPECT_THAT(requests, ElementsAre("toggle launcher_TIME42", "activate launcher_TIME42",
                                      "rebuild launcher_TIME42", "show "));
}

TEST(ActivationToken, isWaylandsFirstAndGoesToNobodyElse)
{
    EXPECT_EQ(activationToken(), "");
    qputenv("DESKTOP_STARTUP_ID", "launcher_TIME42");
    EXPECT_EQ(activationToken(), "launcher_TIME42");
    qputenv("XDG_ACTIVATION_TOKEN", "no text: \xff");
    EXPECT_EQ(activationToken(), "launcher_TIME42");
    qputenv("XDG_ACTIVATION_TOKEN", "token");
    EXPECT_EQ(takeActivationToken(), "token");
    EXPECT_EQ(activationToken(), "");
}

TEST_F(BusRemoteControlTest, answersFromTheBackground)
{
    const RemoteMatch match{"/caf\xe9", -0.5, {{0, 2}, {4, 3}}};
    BusRemoteControl remote(background_);
    const auto find = [&](const RemoteQuery &query) -> RemoteAnswer {
        EXPECT_NE(QThread::currentThread(), qApp->thread());
        EXPECT_EQ(query.settings, "/settings");
        EXPECT_EQ(query.limit, 7U);
        EXPECT_EQ(query.order, query.text == "nothing" ? "names" : "");
        EXPECT_EQ(query.words, query.text == "nothing");
        if (query.text == "later")
            return std::nullopt;
        return query.text == "\xff" ? std::vector{match, match} : std::vector<RemoteMatch>{};
    };
    const auto status = [] { return std::string(R"({"state":"Bücher"})"); };
    std::vector<std::string> used;
    const auto use = [&used](const std::string &settings, const std::string &path) {
        EXPECT_NE(QThread::currentThread(), qApp->thread());
        used.push_back(path);
        return settings == "/settings";
    };
    const auto open = [this](const std::string &, const std::string &path, const auto &receive) {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        background_.post([=] { receive(path == "/caf\xe9" ? "" : "kein „Ordner“"); });
    };
    ASSERT_EQ(remote.claim({.perform = [](const auto &) {},
                            .find = find,
                            .status = status,
                            .use = use,
                            .open = open}),
              RemoteControl::Claim::owner);
    ask([&](RunningInstance &instance) {
        EXPECT_EQ(instance.status(), status());
        EXPECT_EQ(instance.use("/settings", "/caf\xe9"), RunningInstance::Outcome::done);
        EXPECT_EQ(instance.use("/others", "/docs"), RunningInstance::Outcome::notRunning);
        EXPECT_EQ(instance.open("/settings", "/caf\xe9").outcome, RunningInstance::Outcome::done);
        EXPECT_EQ(instance.open("/settings", "/caf\xe9").fault, "");
        EXPECT_EQ(instance.open("/settings", "/docs").fault, "kein „Ordner“");
        EXPECT_EQ(instance.find({"/settings", "\xff", 7, ""}),
                  RemoteAnswer(std::vector{match, match}));
        EXPECT_EQ(instance.find({"/settings", "nothing", 7, "names", true}),
                  RemoteAnswer(std::vector<RemoteMatch>{}));
        EXPECT_EQ(instance.find({"/settings", "later", 7, ""}), std::nullopt);
    });
    EXPECT_THAT(used, ElementsAre("/caf\xe9", "/docs"));
}

TEST_F(BusRemoteControlTest, reachesNobodyOnceTheOwnerIsGone)
{
    BusRunningInstance instance;
    EXPECT_EQ(instance.request("show"), RunningInstance::Outcome::notRunning);
    EXPECT_FALSE(instance.isRunning());
    EXPECT_EQ(instance.find({"/settings", "a", 1, ""}), std::nullopt);
    EXPECT_EQ(instance.status(), std::nullopt);
    EXPECT_EQ(instance.use("/settings", "/docs"), RunningInstance::Outcome::notRunning);
    EXPECT_EQ(instance.open("/settings", "/docs").outcome, RunningInstance::Outcome::notRunning);
}

TEST(PoolTaskQueue, withOneThreadKeepsTheOrder)
{
    std::vector<int> order;
    PoolTaskQueue queue(1);
    std::latch done(1);
    for (int i = 0; i < 100; ++i)
        queue.post([&order, i] { order.push_back(i); });
    queue.post([&done] { done.count_down(); });
    done.wait();
    EXPECT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(PoolTaskQueue, finishesWithoutTheTasksThatWait)
{
    PoolTaskQueue queue(1);
    std::latch started(1);
    std::latch released(1);
    std::atomic<bool> hasRunOn = false;
    queue.post([&] {
        started.count_down();
        released.wait();
    });
    queue.post([&] { hasRunOn = true; });
    started.wait();
    EXPECT_FALSE(queue.finish(1ms)) << "the first task hangs";
    released.count_down();
    EXPECT_TRUE(queue.finish(20s));
    EXPECT_FALSE(hasRunOn);
}

TEST(TaskQueues, delaysRunInTheOrderOfTheirDeadlines)
{
    std::vector<int> order;
    MainTaskQueue queue;
    queue.postDelayed(30ms, [&] { order.push_back(3); });
    queue.postDelayed(5ms, [&] { order.push_back(1); });
    queue.postDelayed(5ms, [&] { order.push_back(2); });
    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(GioWorkspace, knowsFoldersIconsAndLinks)
{
    const TemporaryFolder tree;
    tree.makeFolder("real");
    const std::string file = tree.writeFile("notes.txt", "text");
    std::filesystem::create_directory_symlink("real", tree.path("link"));
    const LaunchToken none;
    const GioWorkspace workspace(none);

    EXPECT_THAT(workspace.iconNames(tree.path("real")), Contains("folder"));
    EXPECT_THAT(workspace.iconNames(file), Contains("text-x-generic"));
    EXPECT_THAT(workspace.iconNames(tree.path("none")), IsEmpty());
    EXPECT_TRUE(workspace.isFolder(tree.path("link")));
    EXPECT_FALSE(workspace.isFolder(file));
    EXPECT_EQ(workspace.resolvingSymlinks(tree.path("link")),
              std::filesystem::canonical(tree.path("real")));
    EXPECT_EQ(workspace.resolvingSymlinks(tree.path("none")), tree.path("none"));
}

TEST(GioWorkspace, opensLinksWithTheApplicationForTheirKind)
{
    const TemporaryFolder home;
    const std::string script = home.writeFile(
        "browser", "#!/bin/sh\nprintf '%s' \"$* $XDG_ACTIVATION_TOKEN\" >\"$0.new\"\n"
                   "mv \"$0.new\" \"$0.opened\"\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    home.writeFile("data/applications/browser.desktop",
                   "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + script +
                       " %u\nMimeType=x-scheme-handler/https;\n");
    home.writeFile("config/mimeapps.list",
                   "[Default Applications]\nx-scheme-handler/https=browser.desktop\n");
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(home.path("data")));
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(home.path("config")));
    qputenv("XDG_DATA_DIRS", "/nonexistent");

    LaunchToken token;
    token.set("token");
    GioWorkspace workspace(token);
    const std::string address = "https://example.org/a%20b?c=d&e=f#g";
    EXPECT_TRUE(workspace.openLink(address));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return std::filesystem::exists(home.path("browser.opened")); }, 60000));
    EXPECT_EQ(home.readFile("browser.opened"), address + " token");
    for (const char *other : {"gopher://example.org/", "example.org", ""})
        EXPECT_FALSE(workspace.openLink(other)) << other;
}

TEST(BoundedOutput, neverWaitsForWhoReads)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    {
        const BoundedOutput output(ends[1]);
        std::printf("first line\n");
        std::array<char, 11> line{};
        ASSERT_EQ(read(ends[0], line.data(), line.size()), 11);
        EXPECT_EQ(std::string(line.data(), line.size()), "first line\n");
        // This is far more than the pipe and the buffer hold together.
        for (int i = 0; i < 100'000; ++i)
            std::printf("line %d that nobody reads\n", i);
    }
    // The writing end stays open, since a thread may still use it.
    close(ends[0]);
}

} // namespace quillon

#include "DesktopServicesTest.moc"
