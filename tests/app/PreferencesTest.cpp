#include "app/preferences/ActionTable.h"
#include "app/preferences/AddActionViewController.h"
#include "app/preferences/PreferenceTexts.h"
#include "app/widgets/FormSheet.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/QLNShortcutView.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"
#include "tests/app/PreferencesSupport.h"
#include "tests/support/Mnemonics.h"
#include "tests/support/SpokenLanguage.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QCompleter>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QWindow>

#include <algorithm>
#include <ostream>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int ACTIONS_TAB = 2;
const char *const FIRST_KEYS_ACTION =
    R"({"flags":{"option":false,"shift":true,"command":false},)"
    R"("actionType":{"key":"Open Application","requiresTarget":true},)"
    R"("actionTarget":{"key":"Paint & Draw"}})";

QStringList items(const QComboBox &menu)
{
    QStringList texts;
    for (int i = 0; i < menu.count(); ++i)
        texts << menu.itemText(i);
    return texts;
}

} // namespace

TEST_F(PreferencesTest, hasAnOrdinaryWindowWithFourTabs)
{
    open();
    EXPECT_EQ(window().windowTitle(), u"Preferences"_s);
    EXPECT_FALSE(window().windowFlags().testFlag(Qt::FramelessWindowHint));
    QStringList tabs;
    for (int i = 0; i < window().tabView().count(); ++i)
        tabs << window().tabView().tabText(i).remove(u'&');
    EXPECT_EQ(tabs, QStringList({u"General"_s, u"Search"_s, u"Actions"_s, u"Advanced"_s}));
    EXPECT_GT(window().tabView().tabBar()->x(), 0) << "the words begin where the forms do";
    // A window manager that has only just begun may miss the first request.
    ASSERT_TRUE(QTest::qWaitFor(
        [this] {
            window().activateWindow();
            return window().isActiveWindow();
        },
        PATIENCE));
    QTest::keyClick(&window(), Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(window().tabView().currentWidget(), &advanced());
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(PreferencesTest, closesAnOpenListBeforeItself)
{
    open();
    QComboBox &menu = *general().openInFinderBehaviorButton;
    menu.showPopup();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(menu.view()->window()));
    QTest::keyClick(menu.view()->window()->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(menu.view()->isVisible());
    EXPECT_TRUE(window().isVisible());
    QTest::keyClick(window().windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(PreferencesTest, comesBackWhereItWasLeft)
{
    open();
    const QPoint place(40, 60);
    const QSize size = window().sizeHint() + QSize(24, 16);
    window().resize(size);
    window().move(place);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window().pos() == place && window().size() == size; },
                                PATIENCE));
    window().close();
    const auto left = places.place("preferences");
    ASSERT_TRUE(left);
    close();
    open();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return window().pos() == QPoint(left->left, left->top); }, PATIENCE))
        << window().x() << " " << window().y() << " instead of " << left->left << " " << left->top;
    EXPECT_EQ(window().size(), size);
    close();

    const QRect screen = QApplication::primaryScreen()->geometry();
    places.remember("preferences",
                    {.left = screen.right() - 8, .top = 0, .width = 600, .height = 400});
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.contains(window().geometry()); }, PATIENCE))
        << "a place that no screen shows any more is not taken";
}

TEST_F(PreferencesTest, writesWhatIsSetAtOnce)
{
    open();
    general().enableQuickSearchButton->click();
    EXPECT_EQ(store.boolean("finder-quick-search"), true);
    choose(*general().openInFinderBehaviorButton, 1);
    choose(*general().quickSearchPopUpButton, 1);
    EXPECT_THAT(file(), HasSubstr(R"("open-finder-behavior": "existing")"));
    EXPECT_THAT(file(), HasSubstr(R"("quick-search-behavior": "select")"));
    choose(*general().openInFinderBehaviorButton, 0);
    EXPECT_THAT(file(), HasSubstr(R"("open-finder-behavior": "new")"));
    choose(*general().matchOrderButton, 1);
    EXPECT_THAT(file(), HasSubstr(R"("match-order": "names")"));
    general().matchWordsButton->click();
    EXPECT_THAT(file(), HasSubstr(R"("match-words-in-order": true)"));
    general().desktopSearchButton->click();
    EXPECT_THAT(file(), HasSubstr(R"("hide-from-desktop-search": true)"));
    general().recentFilesButton->click();
    EXPECT_THAT(file(), HasSubstr(R"("hide-from-recent-files": true)"));
    general().enableQuickSearchButton->click();
    EXPECT_THAT(file(), HasSubstr(R"("finder-quick-search": false)"));
    EXPECT_FALSE(general().quickSearchPopUpButton->isEnabled()) << "it has no effect now";

    general().startAtLoginButton->click();
    EXPECT_TRUE(autostart.isOn);

    keyboard.keyNames = {{52, "z"}};
    general().shortcutView->startRecording();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Z, Qt::ControlModifier, 52, 0, 0);
    QApplication::sendEvent(general().shortcutView->focusProxy(), &press);
    EXPECT_THAT(file(), HasSubstr(R"("ShowQLNShortcut")"));

    window().tabView().setCurrentWidget(&advanced());
    advanced().includeBetasButton->click();
    EXPECT_THAT(file(), HasSubstr(R"("enable-beta-updates": true)"));
    EXPECT_THAT(faults(window()), IsEmpty());
}

TEST_F(PreferencesTest, givesNoLetterToTwoControls)
{
    for (const QString &language : {u"en"_s, u"de"_s}) {
        const SpokenLanguage spoken({language});
        open();
        for (int tab = 0; tab < window().tabView().count(); ++tab) {
            window().tabView().setCurrentIndex(tab);
            EXPECT_EQ(contestedMnemonics(window()), QStringList()) << language.toStdString();
        }
        const std::initializer_list<QAbstractButton *> buttons{
            actions().actionAddRemoveSegmentedControl->segment(0), advanced().forgetFoldersButton,
            advanced().resetButton};
        for (QAbstractButton *button : buttons) {
            button->click();
            const auto sheets = window().findChildren<FormSheet *>();
            const auto sheet = std::ranges::find_if(sheets, &QWidget::isVisible);
            ASSERT_NE(sheet, sheets.end());
            EXPECT_EQ(contestedMnemonics(**sheet), QStringList()) << language.toStdString();
            (*sheet)->close();
        }
    }
}

TEST_F(PreferencesTest, offersTheInstalledFileManagersAndTheDesktopsOwnFirst)
{
    writeByHand(R"({"file-manager": "gone"})");
    open();
    QComboBox &menu = *general().fileManagerButton;
    EXPECT_EQ(items(menu),
              QStringList({u"The desktop's default (Beta Files)"_s, u"Alpha Files"_s,
                           u"Beta Files"_s, u"Files (fm)"_s, u"Files (gamma.desktop)"_s,
                           u"gone.desktop (not installed)"_s}));
    EXPECT_EQ(menu.currentIndex(), 5);
    choose(menu, 1);
    EXPECT_EQ(store.string("file-manager"), "alpha.desktop");
    choose(menu, 0);
    EXPECT_FALSE(store.contains("file-manager"));
}

TEST_F(PreferencesTest, followsTheFileThatAnotherHandEdits)
{
    open();
    writeByHand(R"({"finder-quick-search": true, "open-finder-behavior": "existing",
                    "file-manager": "alpha", "enable-beta-updates": true, "match-order": "names",
                    "match-words-in-order": true, "hide-from-desktop-search": true,
                    "hide-from-recent-files": true, "qln-actions-list": "[]"})");
    EXPECT_TRUE(QTest::qWaitFor([this] { return general().enableQuickSearchButton->isChecked(); },
                                PATIENCE));
    EXPECT_EQ(general().openInFinderBehaviorButton->currentIndex(), 1);
    EXPECT_EQ(general().matchOrderButton->currentIndex(), 1);
    EXPECT_FALSE(general().matchWordsButton->isChecked());
    EXPECT_FALSE(general().desktopSearchButton->isChecked());
    EXPECT_FALSE(general().recentFilesButton->isChecked());
    EXPECT_EQ(general().fileManagerButton->currentText(), u"Alpha Files"_s);
    EXPECT_TRUE(advanced().includeBetasButton->isChecked());
    EXPECT_EQ(actions().actionsTableView->rowText(0),
              u"Return will Show in File Manager with the selected row"_s);
}

TEST_F(PreferencesTest, saysBesideAControlThatNothingWasStored)
{
    breakTheDisk();
    autostart.isWorking = false;
    open();
    testing::internal::CaptureStderr();
    general().enableQuickSearchButton->click();
    choose(*general().openInFinderBehaviorButton, 0);
    EXPECT_EQ(faults(general()), QStringList(writeFault()));
    EXPECT_FALSE(general().enableQuickSearchButton->isChecked()) << "shows what holds";
    general().startAtLoginButton->click();
    EXPECT_EQ(faults(general()).size(), 2);
    EXPECT_FALSE(general().startAtLoginButton->isChecked());
    advanced().includeBetasButton->click();
    EXPECT_EQ(faults(advanced()), QStringList(writeFault()));
    window().tabView().setCurrentIndex(ACTIONS_TAB);
    actions().actionsTableView->selectRow(0);
    actions().actionAddRemoveSegmentedControl->segment(1)->click();
    EXPECT_EQ(faults(actions()), QStringList(writeFault()));
    EXPECT_EQ(actions().actionsTableView->rowCount(), 4);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Not a directory"));
}

class ActionPaneTest : public PreferencesTest
{
protected:
    void SetUp() override { open(ACTIONS_TAB); }

    FormTable &table() { return *actions().actionsTableView; }
    QAbstractButton &segment(int number)
    {
        return *actions().actionAddRemoveSegmentedControl->segment(number);
    }
    AddActionViewController &sheet()
    {
        if (actions().addActionViewController() == nullptr)
            segment(0).click();
        return *actions().addActionViewController();
    }
    QStringList rows()
    {
        QStringList texts;
        for (int row = 0; row < table().rowCount(); ++row)
            texts << table().rowText(row);
        return texts;
    }
    /// The list of applications below the sheet's field, and its rows.
    QAbstractItemView *list() { return sheet().parametersTextField->completer()->popup(); }
    QStringList offered()
    {
        QStringList texts;
        for (int row = 0; row < list()->model()->rowCount(); ++row)
            texts << list()->model()->index(row, 0).data().toString();
        return texts;
    }
    static void press(AddActionViewController &sheet, const QString &text)
    {
        for (auto *button : sheet.findChildren<QPushButton *>()) {
            if (button->text().remove(u'&') == text)
                return button->click();
        }
        FAIL() << "no button " << text.toStdString();
    }
};

TEST_F(ActionPaneTest, listsTheActionsInTheirOrder)
{
    EXPECT_EQ(rows(), QStringList({u"Return will Open in Default App with the selected row"_s,
                                   u"Ctrl+Return will Show Parent in File Manager with the "
                                   "selected row"_s,
                                   u"Alt+Return will Copy Path to Clipboard with the "
                                   "selected row"_s,
                                   u"Alt+Shift+Return will Open Application with Terminal"_s}));
    EXPECT_EQ(drawnDescription(actions().actionTable->actions()[3]),
              QList<FormTextRun>({{.text = u"Alt+Shift+Return"_s, .isBold = true},
                                  {.text = u" will "_s},
                                  {.text = u"Open Application"_s, .isBold = true},
                                  {.text = u" with "_s},
                                  {.text = u"Terminal"_s}}));
    EXPECT_EQ(table().rowIdentifier(), u"ActionTableViewRowIdentifier"_s);
    EXPECT_FALSE(store.contains("qln-actions-list")) << "showing them writes nothing";
}

TEST_F(ActionPaneTest, selectsRowsByTheKeyboardFromTheFirstOn)
{
    table().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(table().selectedRow(), std::nullopt);
    for (const auto &[key, row] :
         {std::pair{Qt::Key_Down, 0}, {Qt::Key_Down, 1}, {Qt::Key_End, 3}, {Qt::Key_Home, 0}}) {
        QTest::keyClick(&table(), key);
        EXPECT_EQ(table().selectedRow(), row);
    }
}

TEST_F(ActionPaneTest, removesEveryActionEqualToTheSelectedOne)
{
    EXPECT_FALSE(segment(1).isEnabled()) << "nothing is selected";
    actions().actionTable->removeSelected();
    EXPECT_FALSE(store.contains("qln-actions-list"));
    const std::string one = FIRST_KEYS_ACTION;
    writeByHand("{\"qln-actions-list\": \"[" +
                QString::fromStdString(one + "," + one).replace(u"\""_s, u"\\\""_s).toStdString() +
                "]\"}");
    ASSERT_TRUE(QTest::qWaitFor([this] { return table().rowCount() == 2; }, PATIENCE));
    table().selectRow(1);
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(rows(), QStringList(u"Return will Show in File Manager with the selected row"_s))
        << "what an emptied list means";
    EXPECT_EQ(store.data("qln-actions-list"), "[]");
}

TEST_F(ActionPaneTest, movesAndChangesTheSelectedActionAndSetsTheListBack)
{
    const QStringList builtIn = rows();
    EXPECT_FALSE(segment(2).isEnabled()) << "nothing is selected";
    EXPECT_FALSE(actions().restoreButton->isEnabled()) << "as Quillon came";
    table().selectRow(0);
    EXPECT_FALSE(segment(3).isEnabled()) << "it is the first";
    segment(4).click();
    EXPECT_EQ(rows(), QStringList({builtIn[1], builtIn[0], builtIn[2], builtIn[3]}));
    EXPECT_EQ(table().selectedRow(), 1);
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&table(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(table().selectedRow(), 3);
    EXPECT_FALSE(segment(4).isEnabled()) << "it is the last";
    QTest::keyClick(&table(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(rows(), QStringList({builtIn[1], builtIn[2], builtIn[0], builtIn[3]}));

    table().selectRow(3);
    segment(2).click();
    AddActionViewController *change = actions().addActionViewController();
    ASSERT_NE(change, nullptr);
    EXPECT_EQ(change->shortcutButton->currentText(), u"Alt+Shift+Return"_s);
    EXPECT_EQ(change->actionButton->currentText(), u"Open Application"_s);
    EXPECT_EQ(change->parametersTextField->text(), u"Terminal"_s);
    choose(*change->shortcutButton, 1);
    choose(*change->actionButton, 5);
    change->parametersTextField->setText(u"~/bin/tool"_s);
    press(*change, u"Done"_s);
    EXPECT_EQ(rows()[3], u"Shift+Return will Execute Shell Command with "_s + QDir::homePath() +
                             u"/bin/tool"_s);
    EXPECT_EQ(table().selectedRow(), 3);

    actions().restoreButton->click();
    const auto sheets = window().findChildren<FormSheet *>();
    const auto ask = std::ranges::find_if(sheets, &QWidget::isVisible);
    ASSERT_NE(ask, sheets.end());
    (*ask)->confirmationButton().click();
    EXPECT_EQ(rows(), builtIn);
    EXPECT_FALSE(store.contains("qln-actions-list"));
    EXPECT_FALSE(actions().restoreButton->isEnabled());
}

TEST_F(ActionPaneTest, addsWhatTheSheetSays)
{
    EXPECT_EQ(items(*sheet().shortcutButton),
              QStringList({u"Shift+Return"_s, u"Ctrl+Shift+Return"_s}));
    EXPECT_EQ(sheet().shortcutButton->currentIndex(), 0);
    EXPECT_EQ(items(*sheet().actionButton),
              QStringList({u"Open in Default App"_s, u"Show in File Manager"_s,
                           u"Show Parent in File Manager"_s, u"Copy Path to Clipboard"_s,
                           u"Open Application"_s, u"Execute Shell Command"_s}));
    QLineEdit &field = *sheet().parametersTextField;
    EXPECT_TRUE(field.isReadOnly());
    EXPECT_EQ(field.text(), u"the selected row"_s);
    choose(*sheet().actionButton, 5);
    EXPECT_FALSE(field.isReadOnly());
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(field.placeholderText(), u"/Users/me/scripts/my-script.sh"_s);
    choose(*sheet().actionButton, 4);
    EXPECT_EQ(field.placeholderText(), u"Sublime Text"_s);

    ASSERT_TRUE(QTest::qWaitFor([this] { return sheet().isActiveWindow(); }, PATIENCE));
    field.setText(u"Nonsense"_s);
    EXPECT_EQ(faults(sheet()), QStringList(u"No application of this name is installed."_s));
    field.clear();
    press(sheet(), u"Choose…"_s);
    EXPECT_EQ(offered(), QStringList({u"Alpha Files"_s, u"Beta Files"_s, u"Files (fm)"_s,
                                      u"Files (gamma.desktop)"_s, u"Paint & Draw"_s}));
    for (int row = 0; row < 3; ++row)
        QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(field.text(), u"files.desktop"_s) << "which no other one is called";
    EXPECT_THAT(faults(sheet()), IsEmpty());
    press(sheet(), u"Choose…"_s);
    QTest::keyClicks(list(), u"dRaw"_s);
    EXPECT_EQ(offered(), QStringList(u"Paint & Draw"_s)) << "what is typed replaces the text";
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_FALSE(list()->isVisible());
    EXPECT_TRUE(sheet().isVisible()) << "Return was for the list";
    EXPECT_EQ(field.text(), u"Paint & Draw"_s);
    EXPECT_THAT(faults(sheet()), IsEmpty());
    press(sheet(), u"Done"_s);
    EXPECT_EQ(rows().last(), u"Shift+Return will Open Application with Paint & Draw"_s);
    EXPECT_THAT(*store.data("qln-actions-list"), HasSubstr(FIRST_KEYS_ACTION));
}

TEST_F(ActionPaneTest, staysOpenWhileAPartIsMissing)
{
    choose(*sheet().actionButton, 4);
    press(sheet(), u"Done"_s);
    EXPECT_TRUE(sheet().isVisible());
    EXPECT_EQ(faults(sheet()).size(), 1);
    EXPECT_FALSE(store.contains("qln-actions-list"));
    press(sheet(), u"Cancel"_s);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    ActionModelFinder finder(store);
    for (const ActionShortcutFlags flags : allShortcutFlags())
        finder.addAction({.flags = flags,
                          .actionType = ActionType::showInFinder,
                          .actionTarget = ActionTarget::selectedRow});
    EXPECT_EQ(sheet().shortcutButton->count(), 0) << "every combination is taken";
    const std::string before = file();
    press(sheet(), u"Done"_s);
    EXPECT_TRUE(sheet().isVisible());
    EXPECT_EQ(file(), before);
}

struct ProgramRow
{
    const char *name;
    const char *target;
    const char *warning;

    friend std::ostream &operator<<(std::ostream &out, const ProgramRow &row)
    {
        return out << row.name;
    }
};

class ProgramWarning : public ActionPaneTest, public testing::WithParamInterface<ProgramRow>
{};

TEST_P(ProgramWarning, standsBesideTheFieldAndRefusesNothing)
{
    folder.writeFile("text");
    const std::string script = folder.writeFile("script");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    const QString target = QString::fromLatin1(GetParam().target)
                               .replace(u"DIR"_s, QString::fromStdString(folder.path()));
    choose(*sheet().actionButton, 5);
    sheet().parametersTextField->setText(target);
    const QString warning = QString::fromLatin1(GetParam().warning);
    EXPECT_EQ(faults(sheet()), warning.isEmpty() ? QStringList() : QStringList(warning));
    press(sheet(), u"Done"_s);
    EXPECT_EQ(rows().last(), u"Shift+Return will Execute Shell Command with "_s + target);
}

const ProgramRow PROGRAM_ROWS[] = {
    {"program", "DIR/script", ""},
    {"missing", "DIR/missing", "There is no such file."},
    {"noProgram", "DIR/text", "This file may not be run."},
    {"folder", "DIR", "This is a folder, not a program."},
};
INSTANTIATE_TEST_SUITE_P(Rows, ProgramWarning, testing::ValuesIn(PROGRAM_ROWS),
                         [](const auto &row) { return row.param.name; });

} // namespace quillon
