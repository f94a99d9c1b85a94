#include "platform/linux/filemanagers/DesktopFileManager.h"

#include "platform/linux/filemanagers/Accessibility.h"
#include "platform/linux/filemanagers/FolderItems.h"
#include "tests/support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A file manager as far as the bus sees it.
class FakeManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum class Manner
    {
        answers,
        hangs
    };

    explicit FakeManager(const QString &name, Manner manner = Manner::answers)
        : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)), manner_(manner)
    {
        bus_.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                            QDBusConnection::ExportAllSlots);
        bus_.registerService(name);
    }
    ~FakeManager() override { QDBusConnection::disconnectFromBus(bus_.name()); }

    std::vector<std::string> selected;
    std::vector<std::string> described;
    QString lastToken;

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name is the interface's
    void ShowItemProperties(const QStringList &uris, const QString &token)
    {
        lastToken = token;
        for (const QString &uri : uris)
            described.push_back(uri.toStdString());
    }
    // NOLINTNEXTLINE(readability-identifier-naming): the name is the interface's
    void ShowItems(const QStringList &uris, const QString &token)
    {
        lastToken = token;
        for (const QString &uri : uris)
            selected.push_back(uri.toStdString());
        setDelayedReply(manner_ == Manner::hangs);
    }

private:
    QDBusConnection bus_;
    Manner manner_;
};

/// An application that is opened by a call on the bus.
class FakeApplication : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FakeApplication(const QString &name)
        : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
        bus_.registerObject(QChar(u'/') + QString(name).replace(u'.', u'/'), this,
                            QDBusConnection::ExportAllSlots);
        bus_.registerService(name);
    }
    ~FakeApplication() override { QDBusConnection::disconnectFromBus(bus_.name()); }

    QStringList opened;
    QVariantMap sender;

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name is the interface's
    void Open(const QStringList &uris, const QVariantMap &platformData)
    {
        opened = uris;
        sender = platformData;
    }

private:
    QDBusConnection bus_;
};

namespace {

const QString OWN_NAME = QStringLiteral("org.xfce.Thunar");
const QString SHARED_NAME = QStringLiteral("org.freedesktop.FileManager1");

/// A desktop without windows, whose file manager is a script that records how it is started.
class DesktopFileManagerTest : public testing::Test
{
protected:
    DesktopFileManagerTest()
    {
        install("thunar", "thunar %U", "FileManager;");
        install("editor", "true %U");
        home_.writeFile("config/mimeapps.list",
                        "[Default Applications]\ninode/directory=editor.desktop\n"
                        "[Added Associations]\ninode/directory=editor.desktop;thunar.desktop;\n");
        const QByteArray path =
            QByteArray::fromStdString(home_.path("bin")) + ':' + qgetenv("PATH");
        qputenv("PATH", path);
        qputenv("HOME", QByteArray::fromStdString(home_.path()));
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(home_.path("data")));
        qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(home_.path("config")));
        qputenv("XDG_DATA_DIRS", "/nonexistent");
        qunsetenv("DISPLAY");
    }

    /// Installs an application for folders. A program that is named without a folder is made here
    /// and records how it is started.
    void install(const std::string &id, const std::string &command,
                 const std::string &categories = {})
    {
        const std::string program = command.substr(0, command.find(' '));
        if (!program.starts_with('/')) {
            const std::string script = home_.writeFile(
                "bin/" + program, "#!/bin/sh\nprintf '%s\\n' \"$*\" >>\"$HOME/started\"\n");
            std::filesystem::permissions(script, std::filesystem::perms::owner_all);
        }
        home_.writeFile("data/applications/" + id + ".desktop",
                        "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=" + command +
                            "\nCategories=" + categories + "\nMimeType=inode/directory;\n");
    }

    /// Runs the call on a thread of its own, as the program does, and serves the bus meanwhile.
    bool run(const std::function<bool(DesktopFileManager &)> &call,
             const std::string &choice = "thunar")
    {
        bool answer = false;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            DesktopFileManager manager([choice] { return std::optional(choice); }, token_);
            answer = call(manager);
        }));
        thread->start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return thread->isFinished(); }, 60000));
        return answer;
    }

    /// Waits for a start with this argument, and returns the arguments of each start.
    std::string startedWith(const std::string &argument)
    {
        const auto isThere = [&] {
            return home_.readFile("started").find(argument) != std::string::npos;
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere, 20000)) << argument;
        return home_.readFile("started");
    }

    TemporaryFolder home_;
    LaunchToken token_;
};

TEST_F(DesktopFileManagerTest, asksTheUsersManagerThoughAnotherOneOwnsTheSharedName)
{
    FakeManager other(SHARED_NAME);
    FakeManager own(OWN_NAME);
    const std::string item = home_.makeFolder("a b/it's \"100%\" \xff\n\xc3\xbc");
    EXPECT_TRUE(run([&](auto &manager) { return manager.select(item, home_.path("a b")); }));
    EXPECT_THAT(other.selected, IsEmpty());
    EXPECT_THAT(own.selected, ElementsAre("file://" + home_.path("a%20b/it's%20%22100%25%22%20%FF"
                                                                 "%0A%C3%BC")));
}

TEST_F(DesktopFileManagerTest, asksTheOwnerOfTheSharedNameOnlyIfItIsWhatTheUserWants)
{
    FakeManager owner(SHARED_NAME);
    const std::string item = home_.makeFolder("folder/item");
    const auto select = [&](auto &manager) { return manager.select(item, home_.path("folder")); };
    // Both are there before the first question, since GLib learns only some time later of those
    // that come afterwards.
    install("other", "other %f", "FileManager;");
    install("owner", QCoreApplication::applicationFilePath().toStdString() + " %f");
    EXPECT_TRUE(run(select, "other"));
    startedWith(home_.path("folder") + "\n");
    EXPECT_THAT(owner.selected, IsEmpty());

    EXPECT_TRUE(run(select, "owner"));
    EXPECT_THAT(owner.selected, ElementsAre("file://" + item));
}

TEST_F(DesktopFileManagerTest, asksTheUsersManagerForPropertiesOrElseAnyOther)
{
    const std::string item = home_.makeFolder("a b");
    const auto show = [&](auto &manager) { return manager.showProperties(item); };
    FakeManager other(SHARED_NAME);
    EXPECT_TRUE(run(show));
    EXPECT_THAT(other.described, ElementsAre("file://" + home_.path("a%20b")));
    FakeManager own(OWN_NAME);
    EXPECT_TRUE(run(show));
    EXPECT_EQ(other.described.size(), 1U);
    EXPECT_EQ(own.described.size(), 1U);
    EXPECT_FALSE(run([&](auto &manager) { return manager.showProperties(home_.path("gone")); }));
}

TEST_F(DesktopFileManagerTest, passesTheRightToTheKeyboardOn)
{
    token_.set("token");
    const std::string item = home_.makeFolder("folder/item");
    std::filesystem::remove(home_.path("bin/thunar"));
    const std::string script = home_.writeFile(
        "bin/thunar",
        "#!/bin/sh\necho \"$XDG_ACTIVATION_TOKEN,$DESKTOP_STARTUP_ID\" >>\"$HOME/started\"\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    EXPECT_TRUE(run([&](auto &manager) { return manager.openNewWindow(item); }));
    EXPECT_EQ(startedWith("\n"), "token,token\n");

    FakeManager own(OWN_NAME);
    const std::string folder = home_.path("folder");
    EXPECT_TRUE(run([&](auto &manager) { return manager.select(item, folder); }));
    EXPECT_EQ(std::exchange(own.lastToken, {}), QStringLiteral("token"));
    EXPECT_TRUE(run([&](auto &manager) { return manager.showProperties(item); }));
    EXPECT_EQ(own.lastToken, QStringLiteral("token"));
}

TEST_F(DesktopFileManagerTest, passesTheRightToTheKeyboardOnThroughTheBus)
{
    token_.set("token");
    home_.writeFile("data/applications/org.example.Manager.desktop",
                    "[Desktop Entry]\nType=Application\nName=Manager\nExec=true %u\n"
                    "DBusActivatable=true\nStartupNotify=true\nMimeType=inode/directory;\n"
                    "Categories=FileManager;\n");
    FakeApplication application(QStringLiteral("org.example.Manager"));
    const std::string folder = home_.makeFolder("folder");
    EXPECT_TRUE(
        run([&](auto &manager) { return manager.openNewWindow(folder); }, "org.example.Manager"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !application.opened.isEmpty(); }, 60000));
    EXPECT_EQ(application.opened,
              QStringList(QStringLiteral("file://") + QString::fromStdString(folder)));
    EXPECT_EQ(application.sender.value(QStringLiteral("desktop-startup-id")).toString(),
              QStringLiteral("token"));
}

TEST_F(DesktopFileManagerTest, probesTheUsersManager)
{
    const auto probe = [](auto &manager) { return manager.probe(); };
    FakeManager other(SHARED_NAME);
    EXPECT_FALSE(run(probe)) << "it does not run";
    FakeManager own(OWN_NAME);
    EXPECT_TRUE(run(probe));
}

TEST_F(DesktopFileManagerTest, startsTheProgramThatTheApplicationNames)
{
    std::filesystem::create_directory(home_.path("opt"));
    std::filesystem::rename(home_.path("bin/thunar"), home_.path("opt/thunar"));
    install("thunar", home_.path("opt/thunar") + " %U", "FileManager;");
    const std::string folder = home_.makeFolder("folder");
    EXPECT_TRUE(run([&](auto &manager) { return manager.openNewWindow(folder); }));
    EXPECT_EQ(startedWith(folder), folder + "\n") << "its path, as this one wants it";
}

TEST_F(DesktopFileManagerTest, turnsToTheCommandWhenTheManagerHangs)
{
    FakeManager hanging(OWN_NAME, FakeManager::Manner::hangs);
    const std::string item = home_.makeFolder("folder/item");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(run([&](auto &manager) { return manager.select(item, home_.path("folder")); }));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4s) << "3 s and a busy machine";
    startedWith(home_.path("folder") + "\n");
}

TEST_F(DesktopFileManagerTest, opensFoldersWithoutABus)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    const std::string folder = home_.makeFolder("two\nlines \xff");
    DesktopFileManager manager([] { return std::optional<std::string>("thunar.desktop"); }, token_);
    EXPECT_TRUE(manager.openInFrontWindow(folder)) << "in a new window: there are none";
    EXPECT_EQ(startedWith(folder), folder + "\n");
    EXPECT_FALSE(manager.openNewWindow(home_.path("gone")));
    EXPECT_FALSE(manager.select(home_.path("gone"), home_.path()));
    manager.noteFrontWindow();
    EXPECT_FALSE(manager.isFrontmost());
    EXPECT_THAT(manager.frontWindowItems(), IsEmpty());
}

TEST_F(DesktopFileManagerTest, findsNothingInWindowsWithoutAnAccessibilityBus)
{
    const std::string config = home_.writeFile(
        "bus.conf", "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                    "<policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                    "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
    QProcess bus;
    bus.start(QStringLiteral("dbus-daemon"),
              {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
               QStringLiteral("--config-file=") + QString::fromStdString(config)});
    ASSERT_TRUE(bus.waitForReadyRead(20000));
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readAllStandardOutput().trimmed());

    BusConnection session = BusConnection::session();
    const Deadline deadline(20s);
    EXPECT_TRUE(session.hasOwner("org.freedesktop.DBus", deadline));
    Accessibility accessibility(session);
    const X11Windows windows;
    DesktopWindow window;
    window.process = 1;
    window.title = "folder";
    EXPECT_FALSE(accessibility.frame(window, windows, deadline));
    EXPECT_FALSE(deadline.hasPassed());
    bus.terminate();
    EXPECT_TRUE(bus.waitForFinished(20000));
}

TEST_F(DesktopFileManagerTest, takesNoEditorForAFileManager)
{
    std::optional<std::string> choice;
    const DesktopFileManager manager([&choice] { return choice; }, token_);
    EXPECT_EQ(manager.application(), "thunar.desktop") << "though the editor is the default";
    EXPECT_TRUE(manager.isFileManager("thunar.desktop"));
    EXPECT_FALSE(manager.isFileManager("editor.desktop"));
    EXPECT_FALSE(manager.isFileManager("not-installed.desktop"));
    choice = "editor";
    EXPECT_EQ(manager.application(), "editor.desktop") << "the user says so";
    EXPECT_EQ(manager.standardApplication(), "thunar.desktop");
    choice = "not-installed.desktop";
    EXPECT_EQ(manager.application(), "thunar.desktop");
}

TEST_F(DesktopFileManagerTest, listsWhatAFolderShows)
{
    home_.makeFolder("tree/folder");
    home_.makeFolder("tree/.dotted");
    home_.writeFile("tree/file\n\xff");
    home_.writeFile("tree/unwanted");
    home_.makeFolder("tree/unwanted too");
    home_.writeFile("tree/.hidden", "unwanted\nunwanted too\nfold\n");
    std::filesystem::create_symlink("folder", home_.path("tree/link"));
    std::filesystem::create_symlink("nowhere", home_.path("tree/dangling"));
    EXPECT_THAT(folderItems(home_.path("tree")),
                UnorderedElementsAre(home_.path("tree/folder/"), home_.path("tree/link/"),
                                     home_.path("tree/file\n\xff"), home_.path("tree/dangling")));
    EXPECT_THAT(folderItems(home_.path("gone")), IsEmpty());
}

} // namespace

} // namespace quillon

#include "DesktopFileManagerTest.moc"
