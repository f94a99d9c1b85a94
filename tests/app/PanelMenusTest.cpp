#include "app/panel/PanelMenus.h"

#include "app/panel/MenuButton.h"
#include "app/widgets/QuillonStyle.h"
#include "tests/app/SearchPanelFixture.h"

#include <QApplication>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Qt::StringLiterals;

class SearchPanelMouse : public SearchPanel
{
protected:
    QPoint middle(int row)
    {
        const QListView &table = view_.tableView();
        return table.visualRect(table.model()->index(row, 0)).center();
    }
    static QMenu *menu() { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); }
    static QStringList entries()
    {
        QStringList texts;
        for (const QAction *action : menu()->actions())
            texts << action->text();
        return texts;
    }
    static void choose(int index)
    {
        menu()->setActiveAction(menu()->actions().at(index));
        QTest::keyClick(menu(), Qt::Key_Return);
    }
};

TEST_F(SearchPanelMouse, opensTheRowThatIsClicked)
{
    type("ab");
    answer();
    view_.show();
    QTest::mouseClick(view_.tableView().viewport(), Qt::LeftButton, {}, middle(2));
    QTest::mouseClick(view_.tableView().viewport(), Qt::LeftButton, Qt::AltModifier, middle(1));
    actions_.runAll();
    EXPECT_THAT(source_.used, ElementsAre("/ab/3", "/ab/2"));
    EXPECT_THAT(done(), ElementsAre("new /ab/3", "copied /ab/2"));
    EXPECT_THAT(delegate_.asked, ElementsAre("close", "close"));
}

TEST_F(SearchPanelMouse, offersTheEntriesOfItsMenu)
{
    appear();
    const Texts asked{"preferences", "rebuild", "keys", "feedback", "updates", "terminate"};
    for (int i = 0; i < 6; ++i) {
        press(Qt::Key_F10);
        QTest::keyClick(&view_.menuButton(), Qt::Key_Down);
        ASSERT_TRUE(menu());
        EXPECT_EQ(entries(), QStringList({u"Preferences…      \tCtrl+,"_s, u"Rebuild Now"_s,
                                          u"Keys      \tF1"_s, u"Send Feedback…"_s,
                                          u"Check for Updates…"_s, u"Quit      \tCtrl+Q"_s}));
        for (const QAction *action : menu()->actions())
            EXPECT_TRUE(action->shortcut().isEmpty());
        choose(i);
        EXPECT_FALSE(menu());
        EXPECT_THAT(delegate_.takeAsked(), ElementsAre(asked[static_cast<std::size_t>(i)]));
    }
    QTest::mouseClick(&view_.menuButton(), Qt::LeftButton);
    ASSERT_TRUE(menu());
    panel().viewDidDisappear();
    EXPECT_FALSE(menu());
    EXPECT_THAT(delegate_.asked, IsEmpty());

    delegate_.isWholeBuild = false;
    press(Qt::Key_F10);
    QTest::keyClick(&view_.menuButton(), Qt::Key_Down);
    ASSERT_TRUE(menu());
    EXPECT_EQ(entries().size(), 4) << "neither feedback nor updates";
    menu()->close();
    press(Qt::Key_F1);
    EXPECT_THAT(delegate_.asked, ElementsAre("keys"));
}

TEST_F(SearchPanelMouse, offersTheActionsOfARowWithTheirKeys)
{
    EXPECT_TRUE(actionList_.saveActions(
        {{{.shift = true, .command = true}, ActionType::showInFinder, ActionTarget::selectedRow},
         {{}, ActionType("Sing", false), ActionTarget::selectedRow},
         {{.option = true}, ActionType::openApplication, ActionTarget("Cut & Paste")}}));
    type("ab");
    answer();
    appear();
    answer();
    QTest::mouseClick(view_.tableView().viewport(), Qt::RightButton, {}, middle(1));
    EXPECT_EQ(selected(), 1);
    EXPECT_THAT(source_.used, IsEmpty());
    QWidget *rows = view_.tableView().viewport();
    QContextMenuEvent request(QContextMenuEvent::Mouse, middle(1), rows->mapToGlobal(middle(1)));
    QApplication::sendEvent(rows, &request);
    ASSERT_TRUE(menu());
    EXPECT_EQ(entries(), QStringList({u"Show      \tCtrl+Shift+Return"_s,
                                      u"Open in Cut && Paste      \tAlt+Return"_s, QString(),
                                      u"Keep on top      \tCtrl+D"_s, u"Leave this folder out…"_s,
                                      u"Properties"_s}));
    // Rows that come meanwhile do not change what was chosen.
    source_.answers["ab"] = {"/other"};
    panel().indexChanged();
    answer();
    choose(0);
    actions_.runAll();
    EXPECT_THAT(source_.used, ElementsAre("/ab/2"));
    EXPECT_THAT(done(), ElementsAre("new /ab/2"));

    EXPECT_THAT(delegate_.takeAsked(), ElementsAre("close"));
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(menu());
    QTest::keyClick(menu(), Qt::Key_Escape);
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    choose(4);
    EXPECT_THAT(delegate_.takeAsked(), ElementsAre("leave out /ab/2"));
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    choose(5);
    actions_.runAll();
    EXPECT_THAT(delegate_.asked, ElementsAre("close"));
    EXPECT_THAT(done(), ElementsAre("properties /ab/2"));
    EXPECT_THAT(source_.used, ElementsAre("/ab/2")) << "looking at it is no use";
}

TEST_F(SearchPanelMouse, keepsARowOnTopAndForgetsIt)
{
    source_.mostUsed = {"/a", "/b", "/c"};
    appear();
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    const QStringList ofUsed = entries();
    const auto keep = ofUsed.indexOf(u"Keep on top      \tCtrl+D"_s);
    ASSERT_EQ(ofUsed.at(keep + 1), u"Forget this folder      \tShift+Delete"_s);
    EXPECT_TRUE(menu()->actions().at(keep)->isCheckable());
    EXPECT_FALSE(menu()->actions().at(keep)->isChecked());
    choose(static_cast<int>(keep));
    EXPECT_THAT(rows(), ElementsAre("/b", "/a", "/c"));
    EXPECT_EQ(selected(), 0) << "the row itself stays selected";
    EXPECT_EQ(view_.heading(), u"Kept on top · Most used"_s);

    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_THAT(rows(), ElementsAre("/b", "/c", "/a"));
    const SearchResultsModel &model = view_.searchResults();
    EXPECT_EQ(model.data(model.index(1), Qt::AccessibleTextRole), u"c, in /, kept on top"_s);
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    EXPECT_TRUE(menu()->actions().at(keep)->isChecked());
    choose(static_cast<int>(keep));
    EXPECT_THAT(rows(), ElementsAre("/b", "/a", "/c"));
    EXPECT_EQ(selected(), 2);

    press(Qt::Key_Home);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_THAT(rows(), ElementsAre("/a", "/c"));
    EXPECT_EQ(selected(), 0) << "the next one can be forgotten at once";
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    choose(static_cast<int>(keep) + 1);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(source_.kept, IsEmpty());
}

TEST_F(SearchPanelMouse, showsThatADiskIsAwayAsSoonAsItIs)
{
    type("ab");
    answer();
    appear();
    answer();
    const SearchResultsModel &model = view_.searchResults();
    const auto spoken = [&] { return model.data(model.index(0), Qt::AccessibleTextRole); };
    EXPECT_EQ(spoken(), u"1, in /ab"_s);
    source_.away = "/ab";
    panel().indexChanged();
    answer();
    EXPECT_EQ(spoken(), u"1, in /ab, not there now"_s);
    EXPECT_FALSE(view_.grab().isNull());
}

TEST_F(SearchPanelMouse, leavesTheRowsOfAQueryWhereOneIsKept)
{
    source_.kept = {"/ab/2"};
    type("ab");
    answer();
    appear();
    answer();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_THAT(source_.kept, ElementsAre("/ab/2", "/ab/3"));
    answer();
    EXPECT_THAT(rows(), ElementsAre("/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 2);

    // A row that was never used is not forgotten, and a selected text is cut out.
    field().end(false);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(background_.size(), 0U);
    EXPECT_EQ(field().text(), u"ab"_s);
    press(Qt::Key_Down);
    field().selectAll();
    press(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_TRUE(field().text().isEmpty());
    EXPECT_THAT(source_.kept, ElementsAre("/ab/2", "/ab/3"));
}

TEST_F(SearchPanelMouse, hasNoMenuWhereThereIsNoRow)
{
    type("no such");
    answer();
    appear();
    press(Qt::Key_Menu);
    EXPECT_FALSE(menu());
}

TEST_F(SearchPanelMouse, showsTheUpdateButtonWhileThereIsAnUpdate)
{
    appear();
    EXPECT_FALSE(view_.updateButton().isVisible());
    const int width = field().width();
    delegate_.hasUpdate = true;
    panel().updateUpdateButton();
    EXPECT_EQ(view_.updateButton().width(), 108);
    QTest::mouseClick(&view_.updateButton(), Qt::LeftButton);
    EXPECT_THAT(delegate_.asked, ElementsAre("updates"));
    delegate_.hasUpdate = false;
    panel().viewDidDisappear();
    panel().viewWillAppear();
    EXPECT_FALSE(view_.updateButton().isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return field().width() == width; }));
}

TEST_F(SearchPanelMouse, turnsTheRowsByTheWheelWhereverThePointerIs)
{
    type("many");
    answer();
    appear();
    answer();
    for (QWidget *place :
         std::initializer_list<QWidget *>{view_.tableView().viewport(), &field()}) {
        const int before = view_.tableView().verticalScrollBar()->value();
        QWheelEvent turn(QPointF(20, 20), place->mapToGlobal(QPointF(20, 20)), {}, {0, -120},
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&turn);
        QApplication::instance()->notify(place, &turn);
        EXPECT_GT(view_.tableView().verticalScrollBar()->value(), before);
    }
    EXPECT_EQ(selected(), 0);
}

TEST_F(SearchPanelMouse, givesARowAwayAsAFile)
{
    source_.answers["ab"] = {"/caf\xe9 #1%/ü"};
    type("ab");
    answer();
    const SearchResultsModel &model = view_.searchResults();
    EXPECT_TRUE(model.flags(model.index(0)).testFlag(Qt::ItemIsDragEnabled));
    EXPECT_FALSE(model.supportedDragActions().testFlag(Qt::MoveAction)) << "a slip moves nothing";
    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(0)}));
    EXPECT_EQ(data->data(u"text/uri-list"_s), "file:///caf%E9%20%231%25/%C3%BC\r\n");
    EXPECT_EQ(data->data(u"text/plain"_s), "/caf\xe9 #1%/ü");
}

} // namespace

} // namespace quillon
