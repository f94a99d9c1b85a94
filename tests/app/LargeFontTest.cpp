#include "app/panel/SearchPanelView.h"
#include "app/widgets/FileDialog.h"
#include "app/widgets/FormTable.h"
#include "tests/app/SearchPanelFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

namespace quillon {

namespace {

/// Gives what is made while it lives large letters.
class LargeFont
{
public:
    LargeFont()
    {
        QFont large = usual_;
        large.setPointSizeF(usual_.pointSizeF() * 3);
        QApplication::setFont(large);
    }
    ~LargeFont() { QApplication::setFont(usual_); }
    LargeFont(const LargeFont &) = delete;
    LargeFont &operator=(const LargeFont &) = delete;

private:
    const QFont usual_ = QApplication::font();
};

} // namespace

TEST(InALargeFont, tickBoxesGrowWithTheirWords)
{
    const auto sizes = [] {
        const QCheckBox box(QStringLiteral("words"));
        FormTable table(QStringLiteral("Rows"));
        table.resize(600, 600);
        table.setRows({{{.text = QStringLiteral("/home")}}});
        const int without = table.rowHeight(0);
        table.setTickBox(0, QStringLiteral("Hidden ones too"), false);
        return std::vector{box.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &box),
                           table.rowHeight(0) - without};
    };
    const std::vector<int> usual = sizes();
    const LargeFont font;
    const std::vector<int> large = sizes();
    EXPECT_GT(large[0], usual[0]);
    EXPECT_GE(large[1], QFontMetrics(QApplication::font()).height()) << "the words fit in the row";
}

TEST(InALargeFont, dialogsForFilesStayOnTheScreen)
{
    const LargeFont font;
    QFileDialog dialog;
    arrangeFileDialog(dialog);
    const QSize screen = dialog.screen()->availableSize();
    EXPECT_EQ(dialog.size().boundedTo(screen), dialog.size());
}

TEST_F(SearchPanel, holdsTheWordOfTheUpdateButtonInALargeFont)
{
    const LargeFont font;
    SearchPanelView view(icons_);
    EXPECT_GE(view.updateButton().width(), view.updateButton().sizeHint().width());
}

} // namespace quillon
