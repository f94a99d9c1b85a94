#include "app/panel/IconSource.h"

#include "app/panel/SearchPanelView.h"
#include "app/panel/SearchResultsTable.h"
#include "platform/linux/session/QtTaskQueues.h"
#include "tests/support/FakeWorkspace.h"

#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>

namespace quillon {

namespace {

std::vector<SearchBaseResultRef> rows(const std::vector<std::string> &paths)
{
    std::vector<SearchBaseResultRef> rows;
    for (const std::string &path : paths)
        rows.push_back(std::make_shared<SearchBaseResult>(path, path, std::vector<TextRange>{},
                                                          SearchBaseResultType::standard));
    return rows;
}

bool holdsDrawing(const QImage &image, const QRect &row)
{
    for (int y = row.top(); y < row.bottom(); ++y)
        for (int x = row.left(); x < row.right(); ++x)
            if (image.pixel(x, y) != image.pixel(row.right(), row.top()))
                return true;
    return false;
}

} // namespace

TEST(IconSource, aFileThatDoesNotAnswerHoldsUpNoRow)
{
    std::counting_semaphore<> answers(0);
    std::atomic<int> asked = 0;
    FakeWorkspace workspace;
    workspace.iconNamesOf = [&](const std::string &) {
        ++asked;
        answers.acquire();
        return std::vector<std::string>{"no-icon-theme-has-this", "inode-directory"};
    };
    MainTaskQueue main;
    PoolTaskQueue disk(1);
    IconSource icons(workspace, disk, main);
    SearchPanelView view(icons);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));

    const std::vector<std::string> paths{"/slow/one", "/slow/two", "/slow/three"};
    view.searchResults().setResults(rows(paths));
    ASSERT_TRUE(QTest::qWaitFor([&] { return asked == 1; }));
    const QImage drawn = view.tableView().viewport()->grab().toImage();
    for (int row = 0; row < 3; ++row)
        EXPECT_TRUE(
            holdsDrawing(drawn, view.tableView().visualRect(view.searchResults().index(row))))
            << row;
    const auto plain = icons.icon("/slow/one").cacheKey();
    EXPECT_EQ(icons.icon("/slow/two").cacheKey(), plain) << "the plain folder until it is known";

    int changes = 0;
    QObject::connect(&icons, &IconSource::iconsChanged, &icons, [&changes] { ++changes; });
    answers.release(3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes == 3; }));
    EXPECT_EQ(asked, 3) << "each is asked for once, however often it is drawn";
}

} // namespace quillon
