#include "app/preferences/ForgetFoldersViewController.h"
#include "app/preferences/TreeDump.h"
#include "app/widgets/FormSheet.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"
#include "tests/app/PreferencesSupport.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>

#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int ADVANCED_TAB = 3;

/// Returns whether the function, run in a process of its own, returns true.
bool succeedsElsewhere(const std::function<bool()> &function)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(function() ? 0 : 1);
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

class AdvancedPaneTest : public PreferencesTest
{
protected:
    void SetUp() override
    {
        for (int i = 0; i < 200; ++i)
            folder.makeFolder("tree/folder " + std::to_string(i));
        base.includeFolders({folder.path("tree")});
        base.build();
        base.logger.log("a line of the log");
        open(ADVANCED_TAB);
        base.output.take();
    }
    template <typename Widget>
    Widget *child()
    {
        return window().findChild<Widget *>();
    }
    std::vector<std::string> dumps() const
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.path("dumps")))
            names.push_back(entry.path().filename());
        return names;
    }
};

TEST_F(AdvancedPaneTest, asksWhereTheIndexIsToBeWritten)
{
    advanced().dumpButton->click();
    auto *panel = child<QFileDialog>();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->windowTitle(), u"Dump File Location"_s);
    EXPECT_EQ(panel->labelText(QFileDialog::Accept), u"Save"_s);
    QStringList texts;
    for (const auto *label : panel->findChildren<QLabel *>())
        texts << label->text();
    EXPECT_TRUE(texts.contains(u"Choose where you want to save the file tree dump file"_s));
    const QString name = QFileInfo(panel->selectedFiles().value(0)).fileName();
    EXPECT_TRUE(QRegularExpression(u"^file_tree \\d{9,}\\.\\d+\\.txt$"_s).match(name).hasMatch())
        << name.toStdString();
    panel->reject();
    EXPECT_TRUE(background.isEmpty());
    EXPECT_EQ(base.output.take(), "");
}

TEST_F(AdvancedPaneTest, writesLogAndTreeAndSaysSo)
{
    folder.makeFolder("dumps");
    const std::string path = folder.path("dumps/tree.txt");
    advanced().dumpTo(QString::fromStdString(path));
    EXPECT_THAT(dumps(), IsEmpty()) << "not on the main thread";
    background.runAll();
    std::string log;
    for (const std::string &line : base.logger.recentLogItems())
        log += (log.empty() ? "" : "\n") + line;
    EXPECT_THAT(log, HasSubstr("a line of the log"));
    EXPECT_EQ(folder.readFile("dumps/tree.txt"),
              log + "\n\nFile Tree:\n\n" + base.searchBase.treeDescription());
    EXPECT_EQ(base.output.take(), "*** ADVANCED_PREFS dump tree start " + path +
                                      "\n*** ADVANCED_PREFS dump tree end\n");
    main.runAll();
    EXPECT_TRUE(advanced().dumpButton->isEnabled());
    EXPECT_EQ(child<QMessageBox>(), nullptr);
}

TEST_F(AdvancedPaneTest, leavesNoHalfFileOnAFullDisk)
{
    folder.writeFile("dumps/tree.txt", "what stood there");
    const QString path = QString::fromStdString(folder.path("dumps/tree.txt"));
    EXPECT_TRUE(succeedsElsewhere([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {.rlim_cur = 4096, .rlim_max = 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return !dumpTree(path, base.searchBase, base.logger).isEmpty();
    }));
    EXPECT_THAT(dumps(), ElementsAre("tree.txt"));
    EXPECT_EQ(folder.readFile("dumps/tree.txt"), "what stood there");
}

TEST_F(AdvancedPaneTest, saysInADialogThatAPlaceCannotBeWrittenTo)
{
    folder.writeFile("file");
    advanced().dumpTo(QString::fromStdString(folder.path("file/tree.txt")));
    background.runAll();
    main.runAll();
    auto *dialog = child<QMessageBox>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_THAT(dialog->text().toStdString(), HasSubstr("file/tree.txt"));
    EXPECT_FALSE(dialog->informativeText().isEmpty());
}

TEST_F(AdvancedPaneTest, outlivesAWindowThatIsClosedDuringADump)
{
    folder.makeFolder("dumps");
    advanced().dumpTo(QString::fromStdString(folder.path("dumps/tree.txt")));
    close();
    background.runAll();
    main.runAll();
    EXPECT_THAT(dumps(), ElementsAre("tree.txt"));
}

TEST_F(AdvancedPaneTest, showsTheLogAsItGrows)
{
    EXPECT_TRUE(advanced().logView->toPlainText().endsWith(u"a line of the log"_s));
    base.logger.log("another line");
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return advanced().logView->toPlainText().endsWith(u"another line"_s); },
        PATIENCE));
}

TEST_F(AdvancedPaneTest, forgetsTheSetUpOnceTheUserHasAgreed)
{
    writeByHand(R"({"ShowQLNShortcut": "Ctrl+Z", "qln-bookmarks": {"/a": "/a"},
                    "exclude-folder-patterns": [], "include-file-patterns": [],
                    "recent-access-score-data": {"/a": 3}, "kept-on-top": ["/a"], "open-finder-behavior": "existing"})");
    shortcutChanges.tell();
    use("/tmp/used", 2);
    advanced().resetButton->click();
    auto *sheet = child<FormSheet>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(store.contains("ShowQLNShortcut"));
    sheet->confirmationButton().click();
    EXPECT_EQ(file(), "{\n    \"open-finder-behavior\": \"existing\"\n}\n");
    EXPECT_FALSE(monitor.shortcut());
    EXPECT_THAT(score.topScores(10), IsEmpty()) << "a later use must not bring them back";
    EXPECT_EQ(setUps, 0);
    main.runAll();
    EXPECT_EQ(setUps, 1);
}

TEST_F(AdvancedPaneTest, doesNotBeginAnewWhenTheSetUpCouldNotBeForgotten)
{
    breakTheDisk();
    testing::internal::CaptureStderr();
    advanced().resetOnboardingStateClicked();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(faults(advanced()), QStringList(writeFault()));
    EXPECT_TRUE(main.isEmpty());
}

TEST_F(AdvancedPaneTest, forgetsOneFolderOrAll)
{
    use("/one", 3);
    use("/two", 2);
    use("/three", 1);
    kept.keep("/kept");
    kept.keep("/two");
    advanced().forgetFoldersButton->click();
    auto *sheet = child<ForgetFoldersViewController>();
    ASSERT_NE(sheet, nullptr);
    const auto listed = [sheet] {
        QStringList texts;
        for (int row = 0; row < sheet->usesTableView->rowCount(); ++row)
            texts << sheet->usesTableView->rowText(row);
        return texts;
    };
    EXPECT_EQ(listed(), QStringList({u"/kept – kept on top"_s, u"/two – kept on top, 2"_s,
                                     u"/one – 3"_s, u"/three – 1"_s}));
    using Segment = ForgetFoldersViewController::Segment;
    QAbstractButton *forget = sheet->forgetSegmentedControl->segment(Segment::forgetOne);
    QAbstractButton *release = sheet->forgetSegmentedControl->segment(Segment::releaseOne);
    EXPECT_FALSE(forget->isEnabled() || release->isEnabled());
    sheet->usesTableView->selectRow(0);
    EXPECT_TRUE(release->isEnabled());
    forget->click();
    EXPECT_EQ(sheet->usesTableView->selectedRow(), 0) << "the next one can be forgotten at once";
    release->click();
    EXPECT_EQ(listed(), QStringList({u"/one – 3"_s, u"/two – 2"_s, u"/three – 1"_s}));
    EXPECT_FALSE(release->isEnabled());
    kept.keep("/two");
    sheet->usesTableView->selectRow(1);
    forget->click();
    EXPECT_THAT(score.topScores(10), ElementsAre("/one", "/three"));
    EXPECT_THAT(kept.paths(), IsEmpty());
    EXPECT_EQ(store.dictionary("recent-access-score-data")->size(), 2U);
    kept.keep("/kept");
    sheet->forgetSegmentedControl->segment(Segment::forgetAll)->click();
    EXPECT_THAT(score.topScores(10), IsEmpty());
    EXPECT_THAT(kept.paths(), IsEmpty());
    EXPECT_EQ(sheet->usesTableView->rowCount(), 0);
}

} // namespace quillon
