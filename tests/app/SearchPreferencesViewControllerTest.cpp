#include "app/preferences/search/SearchPreferencesViewController.h"

#include "app/preferences/search/AddExcludePatternSearchLocation.h"
#include "app/preferences/search/AddIncludeFilePatternViewController.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/PanelPalette.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/SegmentedControl.h"
#include "base/InlineTaskQueue.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "tests/support/FakeFolderPicker.h"
#include "tests/support/Patience.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractButton>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The disk, except for a folder that may not be read, whoever runs the tests.
class LockedFolder : public FolderIdentity
{
public:
    std::string locked;

    FolderPresence presence(const std::string &path) const override
    {
        return path == locked ? FolderPresence::unreadable : disk_.presence(path);
    }
    std::optional<FolderId> identify(const std::string &path) const override
    {
        return disk_.identify(path);
    }
    std::optional<std::string> find(const std::string &parent, const FolderId &id) const override
    {
        return disk_.find(parent, id);
    }

private:
    StatxFolderIdentity disk_;
};

} // namespace

/// The pane in a window of its own over a real index, with the settings in a real file. The queues
/// run their tasks at once.
class SearchPaneTest : public testing::Test
{
protected:
    SearchPaneTest()
    {
        disk.makeFolder("tree/alpha/old");
        disk.makeFolder("tree/beta");
        finder.bookmarks.add(tree);
        store.set("exclude-folder-patterns", {DefaultsArray{{std::string("_extras")}}});
        store.set("include-file-patterns", {DefaultsArray{{std::string("xcodeproj")}}});
    }
    void SetUp() override
    {
        builder.start();
        pane = std::make_unique<SearchPreferencesViewController>(
            SearchPreferencesViewController::Services{.searchBase = searchBase,
                                                      .builder = builder,
                                                      .searchBaseFinder = finder,
                                                      .folderIdentity = identity,
                                                      .folderLister = lister,
                                                      .folderPicker = folderPicker,
                                                      .background = queue,
                                                      .main = queue});
        QObject::connect(pane.get(), &SearchPreferencesViewController::rebuildRequested, pane.get(),
                         [this] {
                             ++rebuilds;
                             builder.start();
                         });
        pane->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(pane.get()));
    }

    std::vector<std::string> rows() const
    {
        std::vector<std::string> texts;
        for (int row = 0; row < pane->searchLocationsTableView->rowCount(); ++row)
            texts.push_back(pane->searchLocationsTableView->rowText(row).toStdString());
        return texts;
    }
    void choose(int entry) const
    {
        const auto menus = pane->findChildren<QMenu *>();
        menus.front()->actions().at(entry)->trigger();
    }
    static void type(const FormSheet &sheet, const QString &text)
    {
        auto *field = sheet.findChild<QLineEdit *>();
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    /// Does what Return does in the sheet.
    static void confirm(FormSheet &sheet) { sheet.confirmationButton().click(); }
    static std::string noteOf(const FormSheet &sheet)
    {
        return sheet.findChild<FormNote *>()->text().toStdString();
    }
    /// Returns the open sheet. A closed one is deleted a little later.
    template <typename Sheet>
    Sheet *sheet() const
    {
        const auto sheets = pane->findChildren<Sheet *>();
        const auto found = std::ranges::find_if(sheets, &QWidget::isVisible);
        return found == sheets.end() ? nullptr : *found;
    }
    bool says(const QString &text) const
    {
        return std::ranges::any_of(pane->findChildren<FormNote *>(), [&](const FormNote *note) {
            return note->isVisible() && note->text().contains(text);
        });
    }
    std::vector<std::string> patterns() const
    {
        return *store.stringArray("exclude-folder-patterns");
    }

    TemporaryFolder disk;
    const std::string tree = disk.makeFolder("tree");
    JsonDefaultsStore store{disk.path("settings/quillon.json")};
    LockedFolder identity;
    PosixFolderLister lister;
    FakeFolderPicker folderPicker;
    SearchBaseFinder finder{store, identity};
    SearchBaseLogger logger{store};
    FuzzyMatch matcher;
    InlineTaskQueue queue;
    SearchBase searchBase{
        nullptr, finder, matcher, {.folderLister = lister, .logger = logger, .mainQueue = queue}};
    SearchBaseBuilder builder{
        {.searchBase = searchBase, .searchBaseFinder = finder, .background = queue, .main = queue}};
    std::unique_ptr<SearchPreferencesViewController> pane;
    int rebuilds = 0;
};

TEST_F(SearchPaneTest, listsWhatIsSearchedInItsOrder)
{
    EXPECT_THAT(rows(), ElementsAre(tree + " – Include Folder, Recursive",
                                    "xcodeproj – Include Files with Extension",
                                    "_extras – Exclude Pattern"));
    EXPECT_TRUE(says(QStringLiteral("4 folders indexed · ")));
    EXPECT_TRUE(says(QStringLiteral("MB of memory · built at ")));
    EXPECT_FALSE(pane->rebuildFlagImage->isVisible());

    // Another program changes the settings.
    store.set("exclude-folder-patterns", {DefaultsArray{{std::string("wp")}}});
    pane->showStored();
    EXPECT_EQ(rows().back(), "wp – Exclude Pattern");
    EXPECT_TRUE(pane->rebuildFlagImage->isVisible());
}

TEST_F(SearchPaneTest, listsFoldersThatAreNotSearchedNowAndWhy)
{
    const auto isQuiet = [this](int row) {
        const QImage picture = pane->searchLocationsTableView->viewport()->grab().toImage();
        const QRect place = pane->searchLocationsTableView->visualRect(
            pane->searchLocationsTableView->model()->index(row, 0));
        for (int y = place.top(); y < place.bottom(); ++y) {
            for (int x = place.left() + 1; x < place.right(); ++x) {
                if (picture.pixelColor(x, y) == PanelPalette::light().text)
                    return false;
            }
        }
        return true;
    };
    pane->addFolders({disk.makeFolder("stick"), disk.makeFolder("theirs")});
    std::filesystem::remove(disk.path("stick"));
    identity.locked = disk.path("theirs");
    pane->showStored();
    EXPECT_EQ(rows()[0], disk.path("stick") + " – Include Folder, Recursive – not there now");
    EXPECT_EQ(rows()[1], disk.path("theirs") + " – Include Folder, Recursive – may not be read");
    EXPECT_EQ(rows()[2], tree + " – Include Folder, Recursive");
    EXPECT_TRUE(isQuiet(0));
    EXPECT_FALSE(isQuiet(2));

    disk.makeFolder("stick");
    pane->showStored();
    EXPECT_EQ(rows()[0], disk.path("stick") + " – Include Folder, Recursive") << "back again";
    std::filesystem::remove(disk.path("stick"));
    pane->showStored();
    for (int lost = 0; lost < 2; ++lost) {
        pane->searchLocationsTableView->selectRow(0);
        pane->searchLocationsSegmentedControl->segment(1)->click();
    }
    EXPECT_EQ(rows().front(), tree + " – Include Folder, Recursive");
    EXPECT_EQ(store.dictionary("qln-bookmarks")->size(), 1U);
}

TEST_F(SearchPaneTest, offersWhatCanBeAdded)
{
    QStringList texts;
    for (const QAction *action : pane->findChildren<QMenu *>().front()->actions())
        texts << action->text();
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Add Search Folder (recursive search)"),
                                  QStringLiteral("Exclude Folders Matching Pattern"),
                                  QStringLiteral("Include Files with Extension")}));
    choose(0);
    const std::string folder = disk.makeFolder("other");
    folderPicker.answer(std::vector{folder});
    EXPECT_TRUE(store.dictionary("qln-bookmarks")->contains(folder));
}

TEST_F(SearchPaneTest, removesTheSelectedLocation)
{
    QAbstractButton *remove = pane->searchLocationsSegmentedControl->segment(1);
    EXPECT_FALSE(remove->isEnabled());
    for (std::size_t left = 2; left < 3; --left) {
        pane->searchLocationsTableView->selectRow(static_cast<int>(left));
        remove->click();
        EXPECT_EQ(rows().size(), left);
    }
    EXPECT_TRUE(patterns().empty());
    EXPECT_TRUE(store.stringArray("include-file-patterns")->empty());
    EXPECT_TRUE(store.dictionary("qln-bookmarks")->empty());
    EXPECT_TRUE(pane->rebuildFlagImage->isVisible());
}

TEST_F(SearchPaneTest, flagsTheIndexUntilItIsRebuilt)
{
    pane->addFolders({disk.makeFolder("other")});
    EXPECT_TRUE(pane->rebuildFlagImage->isVisible());
    pane->rebuildButton->click();
    EXPECT_EQ(rebuilds, 1);
    EXPECT_FALSE(pane->rebuildFlagImage->isVisible());
    EXPECT_TRUE(says(QStringLiteral("5 folders indexed")));

    pane->searchLocationsTableView->selectRow(0);
    pane->searchLocationsSegmentedControl->segment(1)->click();
    EXPECT_TRUE(pane->rebuildFlagImage->isVisible());
    pane->addFolders({disk.path("other")});
    EXPECT_FALSE(pane->rebuildFlagImage->isVisible()) << "as it was";
}

TEST_F(SearchPaneTest, searchesHiddenFoldersWhereThatIsTicked)
{
    disk.makeFolder("tree/.config/in");
    pane->addFolders({disk.makeFolder("stick")});
    pane->rebuildButton->click();
    EXPECT_TRUE(says(QStringLiteral("5 folders indexed")));
    std::filesystem::remove(disk.path("stick"));
    pane->showStored();
    FormTable &table = *pane->searchLocationsTableView;
    EXPECT_EQ(table.isTicked(0), false);
    EXPECT_EQ(table.isTicked(1), false);
    EXPECT_EQ(table.isTicked(2), std::nullopt) << "an extension";

    table.setFocus();
    table.selectRow(0);
    QTest::keyClick(&table, Qt::Key_Space);
    EXPECT_EQ(table.isTicked(0), true) << "also for a folder that is away";
    QTest::keyClick(&table, Qt::Key_Space);
    EXPECT_EQ(table.isTicked(0), false);
    disk.makeFolder("stick");
    pane->showStored();
    EXPECT_FALSE(pane->rebuildFlagImage->isVisible());

    const QRect row = table.visualRect(table.model()->index(1, 0));
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, row.topLeft() + QPoint(20, 14));
    EXPECT_EQ(table.isTicked(1), false) << "the text only selects the row";
    EXPECT_EQ(table.selectedRow(), 1);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, row.bottomLeft() + QPoint(20, -14));
    EXPECT_EQ(table.isTicked(1), true);
    EXPECT_EQ(finder.bookmarks.namesWithHidden(), std::vector{tree});
    EXPECT_TRUE(pane->rebuildFlagImage->isVisible());
    pane->rebuildButton->click();
    EXPECT_TRUE(says(QStringLiteral("7 folders indexed")));
    pane->addFolders({disk.path("tree/.config")});
    EXPECT_TRUE(says(QStringLiteral("is searched already, as a part of")));
}

TEST_F(SearchPaneTest, takesDroppedFoldersByteForByte)
{
    const std::string strange = disk.makeFolder("caf\xe9 #1");
    disk.writeFile("file.txt");
    QMimeData data;
    const std::string start = "file://" + disk.path();
    data.setData(QStringLiteral("text/uri-list"),
                 QByteArray::fromStdString(start + "/caf%E9%20%231\r\n" + start +
                                           "/file.txt\r\nhttp://example.org/\r\n"));
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(pane.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(pane.get(), &drop);
    EXPECT_TRUE(store.dictionary("qln-bookmarks")->contains(strange));
    EXPECT_EQ(store.dictionary("qln-bookmarks")->size(), 2U);
    EXPECT_TRUE(says(QStringLiteral("/file.txt” is no folder.")));
}

TEST_F(SearchPaneTest, saysWhatAPatternHitsBeforeItIsAdded)
{
    choose(1);
    auto *add = sheet<AddExcludePatternSearchLocation>();
    ASSERT_NE(add, nullptr);
    EXPECT_EQ(add->focusWidget(), add->findChild<QLineEdit *>());
    confirm(*add);
    EXPECT_THAT(noteOf(*add), HasSubstr("Which text"));
    type(*add, QStringLiteral("_extras"));
    EXPECT_EQ(noteOf(*add), "“_extras” is listed already.");
    confirm(*add);
    EXPECT_THAT(patterns(), ElementsAre("_extras"));

    type(*add, QStringLiteral("alpha"));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return noteOf(*add).starts_with("Leaves out 2 of 4 indexed folders"); }, PATIENCE));
    EXPECT_THAT(noteOf(*add), HasSubstr("tree/alpha"));
    type(*add, QStringLiteral("no such name"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return noteOf(*add).starts_with("Nothing"); }, PATIENCE));
    type(*add, QStringLiteral("beta"));
    confirm(*add); // before the hits are known
    EXPECT_EQ(sheet<AddExcludePatternSearchLocation>(), nullptr);
    EXPECT_THAT(patterns(), ElementsAre("_extras", "beta"));
    EXPECT_EQ(rows().back(), "beta – Exclude Pattern");
    EXPECT_EQ(pane->searchLocationsTableView->selectedRow(), 3) << "what was added";
}

TEST_F(SearchPaneTest, leavesAFolderOutAtOnce)
{
    pane->leaveOut(disk.path("tree/alpha"));
    auto *add = sheet<AddExcludePatternSearchLocation>();
    ASSERT_NE(add, nullptr);
    EXPECT_EQ(add->findChild<QLineEdit *>()->text().toStdString(), disk.path("tree/alpha"));
    EXPECT_THAT(noteOf(*add), HasSubstr("Leaves out 2 of 4 indexed folders"));
    confirm(*add);
    EXPECT_EQ(pane->searchLocationsTableView->selectedRow(), 3);
    EXPECT_EQ(searchBase.count(), 2U);
    EXPECT_EQ(rebuilds, 0) << "without the window";
}

TEST_F(SearchPaneTest, addsAPatternThatLeavesNothingOnlyOnceThatWasSaid)
{
    choose(1);
    auto *add = sheet<AddExcludePatternSearchLocation>();
    type(*add, QStringLiteral("/tree/"));
    confirm(*add);
    EXPECT_THAT(noteOf(*add), HasSubstr("Leaves out everything that is indexed, 3 folders"));
    EXPECT_THAT(noteOf(*add), HasSubstr("/tree/alpha"));
    EXPECT_THAT(patterns(), ElementsAre("_extras"));
    EXPECT_EQ(add->confirmationButton().text(), QStringLiteral("&Add Anyway"));
    confirm(*add);
    EXPECT_THAT(patterns(), ElementsAre("_extras", "/tree/"));
}

TEST_F(SearchPaneTest, takesExtensionsWithoutTheirDot)
{
    choose(2);
    auto *add = sheet<AddIncludeFilePatternViewController>();
    ASSERT_NE(add, nullptr);
    confirm(*add);
    EXPECT_THAT(noteOf(*add), HasSubstr("Which extension"));
    for (const auto &[typed, fault] : {std::pair{"xcodeproj", "“xcodeproj” is listed already."},
                                       {"tar.gz", "Only what follows the last dot counts: “gz”."},
                                       {"a/b", "An extension holds no slash."}}) {
        type(*add, QString::fromLatin1(typed));
        EXPECT_EQ(noteOf(*add), fault);
        confirm(*add);
    }
    auto *field = add->findChild<QLineEdit *>();
    field->setText(QStringLiteral(".blend"));
    EXPECT_EQ(field->text(), QStringLiteral("blend"));
    EXPECT_THAT(noteOf(*add), HasSubstr("The dot is dropped"));
    confirm(*add);
    EXPECT_THAT(*store.stringArray("include-file-patterns"), ElementsAre("xcodeproj", "blend"));
    EXPECT_EQ(rows()[2], "blend – Include Files with Extension");
}

TEST_F(SearchPaneTest, saysWhatCouldNotBeStored)
{
    std::filesystem::remove_all(disk.path("settings"));
    disk.writeFile("settings"); // where a folder would be needed
    pane->addFolders({disk.makeFolder("other")});
    EXPECT_TRUE(says(QStringLiteral("could not be")));
}

} // namespace quillon
