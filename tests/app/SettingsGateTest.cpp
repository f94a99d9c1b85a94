#include "app/SettingsGate.h"

#include "platform/linux/settings/JsonDefaultsStore.h"
#include "tests/support/FakeDefaultsChanges.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/Patience.h"
#include "tests/support/PlainWindowSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

#include <functional>

namespace quillon {

namespace {

using testing::ElementsAre;

constexpr const char *GOOD = R"({"ShowQLNShortcut": "Ctrl+Alt+Space"})";
constexpr const char *TRAILING_COMMA = "{\n  \"ShowQLNShortcut\": \"Ctrl+Alt+Space\",\n}\n";

} // namespace

/// The window over a real settings file.
class SettingsGateTest : public testing::Test
{
protected:
    /// Writes the file, waits at the gate, and meanwhile does the steps one after the other.
    /// Returns whether the start may continue.
    bool waitOver(const char *text, const std::vector<std::function<void()>> &steps)
    {
        folder.writeFile("quillon.json", text);
        store.emplace(file);
        if (SettingsGate::isOpen(*store, file))
            return true;
        SettingsGate gate({*store, changes, workspace, system}, file);
        QObject here;
        for (const auto &step : steps)
            QTimer::singleShot(0, &here, step);
        QTimer::singleShot(PATIENCE, &here, [&gate] {
            ADD_FAILURE() << "still waiting after the last step";
            gate.quit();
        });
        return gate.wait();
    }
    static QWidget *window()
    {
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (each->isVisible())
                return each;
        }
        return nullptr;
    }
    static void press(const char *text)
    {
        for (auto *button : window()->findChildren<QPushButton *>()) {
            if (button->isVisible() &&
                QString(button->text()).remove(u'&') == QString::fromUtf8(text))
                return button->click();
        }
        ADD_FAILURE() << "no button " << text;
    }
    static std::string said()
    {
        std::string text;
        for (const auto *label : window()->findChildren<QLabel *>())
            if (label->isVisible())
                text += label->text().toStdString() + '\n';
        return text;
    }
    std::function<void()> mend(const char *text)
    {
        return [this, text] {
            folder.writeFile("quillon.json", text);
            changes.tell();
        };
    }

    TemporaryFolder folder;
    const std::string file = folder.path("quillon.json");
    std::optional<JsonDefaultsStore> store;
    FakeDefaultsChanges changes;
    FakeWorkspace workspace;
    PlainWindowSystem system;
};

TEST_F(SettingsGateTest, saysWhereAMistakeIsAndGoesOnWhenItIsMended)
{
    EXPECT_TRUE(waitOver(
        TRAILING_COMMA,
        {[this] {
             EXPECT_THAT(said(), testing::HasSubstr("line 3, column 1 of " + file));
             press("Open the File");
             EXPECT_EQ(workspace.opened, std::vector{file});
         },
         mend(R"({"open-finder-behavior": "tab"})"),
         [] { EXPECT_THAT(said(), testing::HasSubstr("“new”, “existing”")); }, mend(GOOD)}));
    EXPECT_EQ(folder.readFile("quillon.json"), GOOD);
    EXPECT_EQ(window(), nullptr);
}

TEST_F(SettingsGateTest, beginsAnewWithTheFormerFileKept)
{
    std::string kept;
    EXPECT_TRUE(waitOver(TRAILING_COMMA, {[] { press("Begin Anew"); },
                                          [&] {
                                              kept = said();
                                              press("Continue");
                                          }}));
    const std::size_t name = kept.find("quillon.json.bad-");
    ASSERT_NE(name, std::string::npos) << kept;
    EXPECT_EQ(folder.readFile(kept.substr(name, kept.find(". ", name) - name)), TRAILING_COMMA);
    EXPECT_TRUE(store->set("enable-beta-updates", {true}));
}

TEST_F(SettingsGateTest, changesNothingWhenTheUserQuits)
{
    EXPECT_FALSE(waitOver(TRAILING_COMMA, {[] { press("Quit"); }}));
    EXPECT_FALSE(waitOver(TRAILING_COMMA, {[] { window()->close(); }}));
    EXPECT_EQ(folder.readFile("quillon.json"), TRAILING_COMMA);
    EXPECT_TRUE(waitOver(GOOD, {}));
}

} // namespace quillon
