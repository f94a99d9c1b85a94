#include "app/setup/BuildSearchBaseViewController.h"

#include "app/setup/ProgressIndicator.h"
#include "app/widgets/ElidedLabel.h"
#include "app/widgets/SetupWindow.h"
#include "platform/linux/session/QtTaskQueues.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/windows/DesktopWindowSystem.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/Mnemonics.h"
#include "tests/support/PlainWindowSystem.h"
#include "tests/support/SpokenLanguage.h"

#include <QAbstractButton>
#include <QProcess>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>

namespace quillon {

namespace {

using testing::StartsWith;

} // namespace

/// The window over a real index of a real tree, with the settings in a real file.
class RebuildWindowTest : public testing::Test, protected BuildSearchBaseDelegate
{
protected:
    RebuildWindowTest()
    {
        base.includeFolders({disk.makeFolder("tree")});
        for (int i = 0; i < 40; ++i)
            disk.makeFolder("tree/a rather long name of a folder " + std::to_string(i) + "/below");
        store.set("enable-beta-updates", {true});
    }
    void SetUp() override
    {
        window.present();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void searchBaseRebuildFinished() override { ++finished; }
    void searchBaseRebuildStopped() override { ++stopped; }
    void typedDuringBuild(const QString &text) override { typed += text; }
    void terminate() override { ++terminated; }

    /// Returns the visible button with that text.
    QAbstractButton *button(const QString &text) const
    {
        const auto buttons = window.findChildren<QAbstractButton *>();
        const auto found = std::ranges::find_if(buttons, [&](const QAbstractButton *each) {
            return each->isVisible() && QString(each->text()).remove(u'&') == text;
        });
        return found == buttons.end() ? nullptr : *found;
    }
    void press(const QString &text) const
    {
        ASSERT_NE(button(text), nullptr) << text.toStdString();
        QTest::keyClick(button(text), Qt::Key_Space);
    }
    bool says(const QString &text) const
    {
        return std::ranges::any_of(window.findChildren<QLabel *>(), [&](const QLabel *label) {
            return label->isVisible() && label->text().contains(text);
        });
    }

    TemporaryFolder disk;
    JsonDefaultsStore store{disk.path("quillon/quillon.json")};
    SearchBaseOver<PosixFolderLister> base;
    ManualTaskQueue background;
    ManualTaskQueue main;
    SearchBaseBuilder builder{{.searchBase = base.searchBase,
                               .searchBaseFinder = base.finder,
                               .background = background,
                               .main = main}};
    PlainWindowSystem windowSystem;
    BuildSearchBaseViewController *controller = new BuildSearchBaseViewController(
        {.searchBase = base.searchBase, .builder = builder, .defaults = store, .main = main},
        *this);
    SetupWindow window{QStringLiteral("Rebuild Quillon Search"), controller, windowSystem};
    ElidedLabel *statusLabel = window.findChild<ElidedLabel *>(QStringLiteral("statusLabel"));
    ProgressIndicator *progress = window.findChild<ProgressIndicator *>();
    int finished = 0;
    int stopped = 0;
    QString typed;
    int terminated = 0;
};

TEST_F(RebuildWindowTest, givesNoLetterToTwoControls)
{
    for (const QString &language : {QStringLiteral("en"), QStringLiteral("de")}) {
        const SpokenLanguage spoken({language});
        auto *view = new BuildSearchBaseViewController(
            {.searchBase = base.searchBase, .builder = builder, .defaults = store, .main = main},
            *this);
        SetupWindow spokenWindow(QString(), view, windowSystem);
        spokenWindow.present();
        EXPECT_EQ(contestedMnemonics(spokenWindow), QStringList()) << language.toStdString();
        view->stopSearchButtonClicked();
        EXPECT_EQ(contestedMnemonics(spokenWindow), QStringList()) << language.toStdString();
    }
}

TEST_F(RebuildWindowTest, saysWhatTheSearchBaseSaysUntilItIsBuilt)
{
    const QSize size = window.size();
    builder.start();
    EXPECT_TRUE(progress->isAnimating());
    background.runAll();
    std::vector<std::string> lines;
    while (!main.isEmpty()) {
        EXPECT_EQ(finished, 0);
        main.runNext();
        lines.push_back(statusLabel->text().toStdString());
        EXPECT_EQ(window.size(), size) << lines.back();
    }
    EXPECT_EQ(lines.front(), "Starting search with " + disk.path("tree"));
    EXPECT_EQ(lines[1], "Scanning " + disk.path("tree"));
    EXPECT_THAT(lines[2], StartsWith("Processing " + disk.path("tree")));
    EXPECT_EQ(lines.back(), "Added 81 items");
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(progress->isAnimating());
    EXPECT_TRUE(says(QStringLiteral("81 folders so far")));
}

TEST_F(RebuildWindowTest, drawsALongLineWithoutItsMiddle)
{
    const QSize size = window.size();
    statusLabel->setText(QString(4000, u'w'));
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), size);
    EXPECT_EQ(statusLabel->text().size(), 4000);
}

TEST_F(RebuildWindowTest, buildsOnWhenItIsHidden)
{
    builder.start();
    press(QStringLiteral("Continue in Background"));
    EXPECT_FALSE(window.isVisible());
    background.runAll();
    main.runAll();
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(base.searchBase.count(), 81U);
    window.present();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(RebuildWindowTest, erasesEverySettingAndQuitsOnceThatIsConfirmed)
{
    builder.start();
    press(QStringLiteral("Stop…"));
    EXPECT_TRUE(says(QStringLiteral("erase every setting for good")));
    press(QStringLiteral("Continue"));
    EXPECT_TRUE(store.contains("enable-beta-updates"));

    press(QStringLiteral("Stop…"));
    EXPECT_TRUE(button(QStringLiteral("Continue"))->hasFocus());
    press(QStringLiteral("Erase All and Quit"));
    EXPECT_FALSE(store.contains("enable-beta-updates"));
    EXPECT_EQ(disk.readFile("quillon/quillon.json"), "{\n}\n");
    EXPECT_EQ(terminated, 0) << "not at once";
    main.runAll();
    EXPECT_EQ(terminated, 1);
}

TEST_F(RebuildWindowTest, stopsTheBuildAloneAndKeepsTheSettings)
{
    builder.start();
    press(QStringLiteral("Stop…"));
    press(QStringLiteral("Stop"));
    EXPECT_EQ(stopped, 1);
    EXPECT_TRUE(store.contains("enable-beta-updates"));
    background.runAll();
    main.runAll();
    EXPECT_TRUE(builder.isCancelled());
    EXPECT_LT(base.searchBase.count(), 81U);
    EXPECT_EQ(terminated, 0);
}

TEST_F(RebuildWindowTest, handsOnWhatIsTypedInIt)
{
    QTest::keyClicks(window.focusWidget(), QStringLiteral("har"));
    EXPECT_EQ(typed, QStringLiteral("har"));
    controller->stopSearchButtonClicked();
    QTest::keyClicks(window.focusWidget(), QStringLiteral("x"));
    EXPECT_EQ(typed, QStringLiteral("har")) << "a question waits for its answer";
}

TEST_F(RebuildWindowTest, keepsAQuestionUntilItIsAnswered)
{
    builder.start();
    press(QStringLiteral("Stop…"));
    background.runAll();
    main.runAll();
    ASSERT_FALSE(builder.isBuilding());
    EXPECT_EQ(finished, 0);
    EXPECT_TRUE(says(QStringLiteral("erase every setting for good")));
    press(QStringLiteral("Continue"));
    EXPECT_EQ(finished, 1);
}

/// Stands in for a compositor on a real X server.
class BlendingWindowSystem : public DesktopWindowSystem
{
public:
    bool isComposited() const override { return isBlending; }
    bool isBlending = true;
};

TEST_F(RebuildWindowTest, tellsCompositorsHowWideItsOwnShadowIs)
{
    BlendingWindowSystem system;
    SetupWindow shadowed(QStringLiteral("shadowed"), new SetupView, system);
    const auto extents = [&] {
        QProcess xprop;
        xprop.start(QStringLiteral("xprop"),
                    {QStringLiteral("-id"), QString::number(shadowed.winId()),
                     QStringLiteral("_GTK_FRAME_EXTENTS")});
        xprop.waitForFinished();
        return QString::fromUtf8(xprop.readAllStandardOutput()).trimmed().section(u'=', 1);
    };
    shadowed.present();
    const QString margin = QString::number(shadowed.contentsMargins().left());
    EXPECT_GT(shadowed.contentsMargins().left(), 0);
    EXPECT_EQ(extents(), QStringLiteral(" %1, %1, %1, %1").arg(margin));
    shadowed.hide();
    system.isBlending = false;
    shadowed.present();
    EXPECT_EQ(extents(), QStringLiteral(" 0, 0, 0, 0"));
}

TEST_F(RebuildWindowTest, staysWhenTheSettingsCannotBeErased)
{
    FakeDefaultsStore full({{"enable-beta-updates", {true}}});
    full.failWrites();
    auto *view = new BuildSearchBaseViewController(
        {.searchBase = base.searchBase, .builder = builder, .defaults = full, .main = main}, *this);
    window.close();
    SetupWindow other(QStringLiteral("other"), view, windowSystem);
    other.present();
    view->stopSearchButtonClicked();
    for (auto *each : other.findChildren<QAbstractButton *>()) {
        if (each->isVisible() && each->text() == QStringLiteral("&Erase All and Quit"))
            each->click();
    }
    main.runAll();
    EXPECT_EQ(terminated, 0);
    EXPECT_TRUE(std::ranges::any_of(other.findChildren<QLabel *>(), [](const QLabel *label) {
        return label->isVisible() &&
               label->text() == QStringLiteral("The settings could not be erased.");
    }));
}

} // namespace quillon
