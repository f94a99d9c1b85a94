#include "app/panel/PanelMessage.h"
#include "app/panel/SearchIndicator.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/WriteFault.h"
#include "tests/app/SearchPanelFixture.h"

#include <QAbstractButton>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using namespace Qt::StringLiterals;

TEST_F(SearchPanel, searchesOnceWhenTypingSettles)
{
    type("abc");
    background_.runNext();
    EXPECT_TRUE(background_.isEmpty()) << "\"ab\" was passed on the way";
    main_.runAll();
    EXPECT_THAT(rows(), ElementsAre("/abc"));
}

TEST_F(SearchPanel, showsTheMostUsedFoldersForTextsTooShortToSearch)
{
    panel();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used"));
    type("ab");
    answer();
    QTest::keyClick(&field(), Qt::Key_Backspace);
    ASSERT_TRUE(QTest::qWaitFor([this] { return rows().front() == "/most"; }));
    EXPECT_TRUE(background_.isEmpty()) << "one character is never searched";
    EXPECT_EQ(selected(), 0);
}

TEST_F(SearchPanel, dropsAnAnswerToAnOlderText)
{
    type("ab");
    background_.runAll();
    type("abc");
    main_.runAll();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used"));
    answer();
    EXPECT_THAT(rows(), ElementsAre("/abc"));
}

TEST_F(SearchPanel, returnWaitsForTheAnswerToTheTypedText)
{
    type("ab");
    answer();
    QTest::keyClicks(&field(), u"c"_s);
    press(Qt::Key_Return);
    EXPECT_THAT(source_.used, IsEmpty()) << "the rows are still those of \"ab\"";
    answer();
    actions_.runAll();
    EXPECT_THAT(done(), ElementsAre("new /abc"));
    EXPECT_THAT(delegate_.asked, ElementsAre("close"));
}

TEST_F(SearchPanel, forgetsAnEarlyReturnWhenTypingGoesOn)
{
    type("ab");
    press(Qt::Key_Return);
    type("abc");
    answer();
    EXPECT_THAT(rows(), ElementsAre("/abc"));
    EXPECT_THAT(source_.used, IsEmpty());

    type("ab");
    press(Qt::Key_Return);
    panel().viewDidDisappear();
    answer();
    EXPECT_THAT(source_.used, IsEmpty()) << "hidden, the panel opens nothing";
}

TEST_F(SearchPanel, spinsOnlyForSlowSearches)
{
    type("ab");
    EXPECT_FALSE(view_.activityIndicator().isAnimating());
    ASSERT_TRUE(QTest::qWaitFor([this] { return view_.activityIndicator().isAnimating(); }));
    answer();
    EXPECT_FALSE(view_.activityIndicator().isAnimating());
}

TEST_F(SearchPanel, stopsToSpinWithAnAnswerThatIsDropped)
{
    type("ab");
    ASSERT_TRUE(QTest::qWaitFor([this] { return view_.activityIndicator().isAnimating(); }));
    QTest::keyClicks(&field(), u"x"_s);
    answer();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used"));
    EXPECT_FALSE(view_.activityIndicator().isAnimating()) << "nothing is searched now";
}

TEST_F(SearchPanel, searchesAgainOnceTheFrontWindowIsKnown)
{
    type("ab");
    answer();
    panel().viewWillAppear();
    EXPECT_EQ(source_.refreshes, 0) << "no file manager is in front";
    EXPECT_FALSE(view_.activityIndicator().isAnimating());

    source_.isFileManagerInFront = true;
    panel().viewDidDisappear();
    panel().viewWillAppear();
    EXPECT_TRUE(view_.activityIndicator().isAnimating());
    answer();
    EXPECT_TRUE(view_.activityIndicator().isAnimating()) << "the window is still waited for";
    EXPECT_THAT(rows(), ElementsAre("/ab/1", "/ab/2", "/ab/3"));

    source_.answers["ab"].insert(source_.answers["ab"].begin(), "able");
    source_.fetched();
    EXPECT_FALSE(view_.activityIndicator().isAnimating());
    answer();
    EXPECT_THAT(rows(), ElementsAre("able", "/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 0);

    panel().viewWillAppear();
    panel().viewDidDisappear();
    EXPECT_FALSE(source_.fetched);
    EXPECT_FALSE(view_.activityIndicator().isAnimating());
}

TEST_F(SearchPanel, dropsAnAnswerThatANewerSearchForTheSameTextOvertook)
{
    source_.isFileManagerInFront = true;
    type("ab");
    background_.runNext();
    const auto early = [this] { main_.runNext(); };
    panel().viewWillAppear();
    source_.answers["ab"] = {"able", "/ab/1"};
    source_.fetched();
    early();
    EXPECT_THAT(rows(), ElementsAre("/most", "/used")) << "a newer answer is on its way";
    answer();
    EXPECT_THAT(rows(), ElementsAre("able", "/ab/1"));
}

TEST_F(SearchPanel, keepsTheRowsThatTheUserIsChoosingFromWhenTheIndexChanges)
{
    type("ab");
    answer();
    source_.answers["ab"].insert(source_.answers["ab"].begin(), "/ab/0");
    press(Qt::Key_Down);
    panel().indexChanged();
    answer();
    EXPECT_THAT(rows(), ElementsAre("/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 1);

    panel().viewWillAppear();
    answer();
    EXPECT_THAT(rows(), ElementsAre("/ab/0", "/ab/1", "/ab/2", "/ab/3"));
    EXPECT_EQ(selected(), 0);
}

TEST_F(SearchPanel, saysWhyThereAreNoRows)
{
    source_.mostUsed.clear();
    source_.current = {.count = 12, .isBuilding = true, .hasLocations = true};
    panel();
    PanelMessage &message = view_.message();
    EXPECT_EQ(message.title(), u"Indexing your folders…"_s);
    EXPECT_TRUE(message.sentence().startsWith(u"12 folders"_s));

    // The index of the last run serves as well as any while it is compared with the disk.
    source_.current.isComparing = true;
    panel().indexChanged();
    EXPECT_EQ(message.title(), u"Type a part of a folder’s name"_s);
    EXPECT_EQ(view_.footer().status(), u"Checking for changes: 12 folders"_s);

    source_.current.isBuilding = source_.current.isComparing = false;
    panel().indexChanged();
    EXPECT_EQ(message.title(), u"Type a part of a folder’s name"_s);
    EXPECT_EQ(view_.footer().status(), u"12 folders"_s);
    type("qwzx");
    answer();
    EXPECT_EQ(message.title(), u"No folder matches “qwzx”"_s);
    EXPECT_FALSE(message.isHidden());

    type("ab");
    answer();
    EXPECT_TRUE(message.isHidden());

    source_.current = {.count = 0, .away = {"/media/disk", "/media/stick"}};
    type("qwzx");
    answer();
    EXPECT_EQ(message.title(), u"The folders to search are away"_s);
    EXPECT_TRUE(message.sentence().contains(u"/media/disk"_s));
    EXPECT_FALSE(message.homeFolderButton().isVisibleTo(&message));
}

TEST_F(SearchPanel, offersTheHomeFolderOnlyWhereNoRowStandsAndNoFolderIsNamed)
{
    source_.mostUsed.clear();
    source_.current = {.count = 0, .away = {"/media/disk"}};
    panel();
    press(Qt::Key_Return);
    EXPECT_EQ(source_.homeFolderAdded, 0) << "the folder is merely away";

    source_.current = {.count = 0, .hasLocations = false};
    panel().indexChanged();
    press(Qt::Key_Return);
    EXPECT_EQ(source_.homeFolderAdded, 1);
    view_.message().homeFolderButton().click();
    EXPECT_EQ(source_.homeFolderAdded, 2);
    source_.current.isWriteRefused = true;
    view_.message().homeFolderButton().click();
    EXPECT_EQ(view_.message().sentence(), writeFault());
    view_.message().preferencesButton().click();
    EXPECT_THAT(delegate_.takeAsked(), ElementsAre("preferences"));

    type("ab");
    answer();
    press(Qt::Key_Return);
    EXPECT_THAT(done(), ElementsAre("new /ab/1"));
    EXPECT_EQ(source_.homeFolderAdded, 3) << "Return opens the row";
}

TEST_F(SearchPanel, offersTheDesktopsPlacesWhereNothingWasUsedYet)
{
    source_.offered = {"/home/u", "/home/u/Documents"};
    appear();
    EXPECT_EQ(view_.heading(), u"Most used"_s);
    EXPECT_EQ(rows(), Texts({"/most", "/used"}));
    panel().viewDidDisappear();

    source_.mostUsed = {};
    appear();
    answer();
    EXPECT_EQ(rows(), source_.offered);
    EXPECT_EQ(view_.heading(), u"Places"_s);
    type("ab");
    answer();
    EXPECT_EQ(view_.heading(), QString());
}

TEST_F(SearchPanel, takesTheHeightOfItsRowsOnceTypingHasSettled)
{
    appear();
    const int row = metrics::rowHeight(view_.fontMetrics());
    const auto height = [this] { return view_.minimumSizeHint().height(); };
    const int most = view_.greatestHeight();
    type("many");
    answer();
    ASSERT_TRUE(QTest::qWaitFor([&] { return height() == most; })) << "eight rows of 25";
    type("abc");
    answer();
    EXPECT_EQ(height(), most) << "the user may be typing on";
    ASSERT_TRUE(QTest::qWaitFor([&] { return height() == most - 7 * row; }));
    type("no such");
    answer();
    ASSERT_TRUE(QTest::qWaitFor([&] { return height() == most - 3 * row; })) << "a message";
}

TEST_F(SearchPanel, typesOnWhatWasTypedBeforeItCameUp)
{
    appear();
    type("old text");
    panel().typeAhead(u"ha"_s);
    panel().typeAhead(u"r"_s);
    panel().windowDidBecomeKey();
    QTest::keyClicks(&field(), u"b"_s);
    EXPECT_EQ(field().text(), u"harb"_s);
    EXPECT_TRUE(panel().isInUse());
    field().selectAll();
    EXPECT_FALSE(panel().isInUse()) << "the next letter replaces the text";
}

TEST_F(SearchPanel, selectsTheRowThatTheAnswerNames)
{
    source_.selectedRows["ab"] = 2;
    type("ab");
    press(Qt::Key_Return);
    answer();
    actions_.runAll();
    EXPECT_THAT(done(), ElementsAre("new /ab/3")) << "Return came before the answer";
    EXPECT_EQ(selected(), 2);

    press(Qt::Key_Up);
    panel().viewWillAppear();
    EXPECT_EQ(selected(), 2) << "before the search has ended anew";
    source_.selectedRows.clear();
    answer();
    EXPECT_EQ(selected(), 0) << "the path is gone by now";
}

} // namespace

} // namespace quillon
