#include "app/update/Updater.h"

#include "prefs/Preferences.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/PlainWindowSystem.h"
#include "tests/support/TimedTaskQueue.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>

#include <set>

namespace quillon {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Qt::StringLiterals;

const UpdateItem ITEM{.version = "1.4.0",
                      .link = "https://example.org/1.4.0",
                      .notes = "https://example.org/1.4.0/news"};

/// Makes the same calls as the real controller, and answers when a test says so.
class FakeUpdateController : public UpdateController
{
public:
    std::vector<FeedParameter> parameters;
    int checks = 0;

    void start(UpdateControllerDelegate &delegate) override { delegate_ = &delegate; }
    void checkInBackground() override { check(false); }
    void checkInteractively() override { check(true); }

    void find(const UpdateItem &item) { delegate_->didFindValidUpdate(item, takeInteractive()); }
    void findNone(NoUpdate reason) { delegate_->didNotFindUpdate(reason, takeInteractive()); }

private:
    void check(bool isInteractive)
    {
        ++checks;
        isInteractive_ = isInteractive_ || isInteractive;
        parameters = delegate_->feedParameters();
    }
    bool takeInteractive() { return std::exchange(isInteractive_, false); }

    UpdateControllerDelegate *delegate_ = nullptr;
    bool isInteractive_ = false;
};

} // namespace

class UpdaterTest : public testing::Test
{
protected:
    /// Returns null while none is shown.
    static QWidget *window()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowTitle() == u"Quillon – Updates")
                return widget;
        }
        return nullptr;
    }
    /// Returns what the window says: the title and the text.
    static QStringList texts()
    {
        QStringList texts;
        if (window()) {
            for (const auto *label : window()->findChildren<QLabel *>()) {
                if (!label->text().isEmpty())
                    texts += label->text();
            }
        }
        return texts;
    }
    static QStringList buttons()
    {
        QStringList texts;
        for (const auto *button : window()->findChildren<QAbstractButton *>())
            texts += button->text().remove(u'&');
        return texts;
    }
    static void press(const QString &text)
    {
        for (auto *button : window()->findChildren<QAbstractButton *>()) {
            if (button->text().remove(u'&') == text)
                return button->click();
        }
        FAIL() << "no button " << text.toStdString();
    }

    FakeDefaultsStore store;
    Preferences preferences{store};
    FakeUpdateController controller;
    FakeWorkspace workspace;
    PlainWindowSystem windowSystem;
    TimedTaskQueue queue;
    CapturedOutput log;
    Updater updater{{.updaterController = controller,
                     .enableBetaUpdates = preferences.enableBetaUpdates,
                     .workspace = workspace,
                     .windowSystem = windowSystem,
                     .main = queue},
                    "1.3.9",
                    log.stream()};
};

TEST_F(UpdaterTest, logsWhatItDoes)
{
    updater.startBackgroundPolling();
    EXPECT_EQ(log.take(), "Start background update polling...\n"
                          "Checking for updates in background...\n"
                          "Should check for betas? false\n");
    controller.find(ITEM);
    EXPECT_EQ(log.take(), "Found valid update\n");
    preferences.enableBetaUpdates.set(true);
    updater.checkInBackground();
    EXPECT_EQ(log.take(), "Checking for updates in background...\n"
                          "Should check for betas? true\n");
    controller.findNone(NoUpdate::notGenuine);
    EXPECT_EQ(log.take(), "Did not find an update\n");
    updater.checkInteractively();
    EXPECT_EQ(log.take(), "Checking for updates in foreground...\n"
                          "Should check for betas? true\n");
}

TEST_F(UpdaterTest, tellsTheFeedWhetherBetasCount)
{
    for (const bool wantsBetas : {false, true}) {
        preferences.enableBetaUpdates.set(wantsBetas);
        updater.checkInBackground();
        ASSERT_EQ(controller.parameters.size(), 1U);
        const FeedParameter &parameter = controller.parameters.front();
        EXPECT_EQ(parameter.key, "beta");
        EXPECT_EQ(parameter.value, wantsBetas ? "true" : "false");
        EXPECT_EQ(parameter.displayKey, "Enable beta updates");
        EXPECT_EQ(parameter.displayValue, "Yes");
    }
}

TEST_F(UpdaterTest, knowsWhatTheLastCheckFound)
{
    std::vector<bool> changes;
    updater.onChange([&] { changes.push_back(updater.hasUninstalledUpdate()); });
    EXPECT_FALSE(updater.hasUninstalledUpdate());
    controller.findNone(NoUpdate::upToDate);
    controller.find(ITEM);
    controller.find(ITEM);
    EXPECT_TRUE(updater.hasUninstalledUpdate());
    controller.findNone(NoUpdate::unreachable);
    EXPECT_FALSE(updater.hasUninstalledUpdate());
    EXPECT_THAT(changes, ElementsAre(true, false));
}

TEST_F(UpdaterTest, checksOnceADayAndSoonerWhenNobodyWasReached)
{
    updater.startBackgroundPolling();
    controller.findNone(NoUpdate::upToDate);
    queue.advance(24h - 1ms);
    EXPECT_EQ(controller.checks, 1);
    queue.advance(1ms);
    EXPECT_EQ(controller.checks, 2);
    controller.findNone(NoUpdate::unreachable);
    queue.advance(1h);
    EXPECT_EQ(controller.checks, 3);
    controller.find(ITEM);
    queue.advance(12h);
    updater.checkInteractively();
    controller.find(ITEM);
    EXPECT_EQ(controller.checks, 4);
    queue.advance(24h - 1ms);
    EXPECT_EQ(controller.checks, 4) << "a day after the check that the user asked for";
    queue.advance(1ms);
    EXPECT_EQ(controller.checks, 5);
}

TEST_F(UpdaterTest, checksNoMoreWhenThereIsNobodyToAsk)
{
    updater.startBackgroundPolling();
    controller.findNone(NoUpdate::notConfigured);
    queue.advance(1000h);
    EXPECT_EQ(controller.checks, 1);
}

TEST_F(UpdaterTest, showsNothingThatNobodyAskedFor)
{
    updater.startBackgroundPolling();
    controller.find(ITEM);
    EXPECT_EQ(window(), nullptr);

    updater.checkInteractively();
    ASSERT_NE(window(), nullptr);
    EXPECT_TRUE(updater.isWindowVisible());
    QTest::keyClick(window(), Qt::Key_Escape);
    EXPECT_EQ(window(), nullptr);
    controller.find(ITEM);
    EXPECT_EQ(window(), nullptr) << "dismissed before the answer";

    updater.checkInteractively();
    controller.findNone(NoUpdate::upToDate);
    const QStringList told = texts();
    updater.checkInBackground();
    controller.find(ITEM);
    EXPECT_EQ(texts(), told) << "the answer to another question";
}

TEST_F(UpdaterTest, offersTheUpdateToWhoeverAsked)
{
    updater.checkInteractively();
    EXPECT_EQ(texts().value(0), u"Checking for updates…");
    controller.find(ITEM);
    EXPECT_EQ(texts().value(0), u"Quillon 1.4.0 is available");
    EXPECT_TRUE(texts().value(1).contains(u"1.3.9"));
    EXPECT_EQ(buttons(), QStringList({u"What’s New"_s, u"Later"_s, u"Download"_s}));

    press(u"What’s New"_s);
    EXPECT_THAT(workspace.openedLinks, ElementsAre(ITEM.notes));
    ASSERT_NE(window(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    ASSERT_NE(window()->focusWidget(), nullptr);
    QTest::keyClick(window()->focusWidget(), Qt::Key_Return);
    EXPECT_THAT(workspace.openedLinks, ElementsAre(ITEM.notes, ITEM.link));
    EXPECT_EQ(window(), nullptr);
}

TEST_F(UpdaterTest, canBePutOffAndReachedByTheKeyboard)
{
    updater.checkInteractively();
    controller.find({.version = "1.4.0", .link = "https://example.org/", .notes = {}});
    EXPECT_EQ(buttons(), QStringList({u"Later"_s, u"Download"_s})) << "there are no notes";
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    QTest::keyClick(window()->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(window()->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(window(), nullptr);
    EXPECT_THAT(workspace.openedLinks, IsEmpty());
    EXPECT_TRUE(updater.hasUninstalledUpdate());
}

TEST_F(UpdaterTest, namesTheAddressWhenNothingOpensIt)
{
    workspace.hasBrowser = false;
    updater.checkInteractively();
    controller.find(ITEM);
    press(u"Download"_s);
    EXPECT_EQ(texts().value(0), u"No web browser was found");
    EXPECT_TRUE(texts().value(1).contains(QString::fromStdString(ITEM.link)));
}

TEST_F(UpdaterTest, saysWhyThereIsNone)
{
    std::set<QStringList> said;
    using enum NoUpdate;
    const auto reasons = {upToDate, notConfigured, unreachable, tooSlow,
                          insecure, refused,       notGenuine,  unreadable};
    for (const NoUpdate reason : reasons) {
        updater.checkInteractively();
        controller.findNone(reason);
        EXPECT_EQ(texts().size(), 2);
        EXPECT_EQ(buttons(), QStringList({u"Close"_s}));
        said.insert(texts());
    }
    EXPECT_EQ(said.size(), reasons.size()) << "each in words of its own";
}

} // namespace quillon
