#include "app/panel/RowLayout.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/QuillonStyle.h"
#include "tests/app/SearchPanelFixture.h"

#include <QComboBox>
#include <QImage>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>

#include <utility>

namespace quillon {

namespace {

using testing::IsEmpty;

/// Turns the layout of the whole program around while it lives.
class TurnedLayout
{
public:
    TurnedLayout() { QGuiApplication::setLayoutDirection(Qt::RightToLeft); }
    ~TurnedLayout() { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
    TurnedLayout(const TurnedLayout &) = delete;
    TurnedLayout &operator=(const TurnedLayout &) = delete;
};

/// Returns the first and the last column of the picture that has dark pixels, as the signs have
/// that are drawn on a control.
std::pair<int, int> darkColumns(const QImage &picture)
{
    constexpr int DARK = 190;
    std::pair<int, int> columns{picture.width(), -1};
    for (int x = 0; x < picture.width(); ++x)
        for (int y = 0; y < picture.height(); ++y)
            if (qGray(picture.pixel(x, y)) < DARK)
                columns = {std::min(columns.first, x), x};
    return columns;
}

QImage picture(QWidget &widget)
{
    widget.adjustSize();
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// Returns the places on the line where a click makes the widget send the signal, which are the
/// same distance apart from both ends in a mirrored widget.
template <typename Signal>
std::vector<int> placesThatAnswer(QWidget &clicked, const QSignalSpy &answers, int y, Signal turn)
{
    std::vector<int> places;
    for (int x = 0; x < clicked.width(); ++x) {
        const auto before = answers.count();
        QTest::mouseClick(&clicked, Qt::LeftButton, {}, {x, y});
        if (answers.count() > before)
            places.push_back(turn(x));
    }
    return places;
}

} // namespace

TEST(RightToLeft, mirrorsArrowsAndTicks)
{
    const auto pictures = [] {
        QComboBox list;
        list.addItem(QString());
        QMenu menu;
        QPushButton *button = pushButton({}, ButtonRank::control, nullptr);
        const std::unique_ptr<QPushButton> owner(button);
        button->setMenu(&menu);
        QMenu ticked;
        QAction *entry = ticked.addAction(QStringLiteral(" "));
        entry->setCheckable(true);
        entry->setChecked(true);
        return std::vector{picture(list), picture(*button), picture(ticked)};
    };
    const std::vector<QImage> plain = pictures();
    const TurnedLayout turned;
    const std::vector<QImage> mirrored = pictures();
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const auto [first, last] = darkColumns(plain[i]);
        const auto [mirroredFirst, mirroredLast] = darkColumns(mirrored[i]);
        ASSERT_LE(first, last) << i << " has no sign";
        EXPECT_NEAR(mirroredFirst, plain[i].width() - 1 - last, 1) << i;
        EXPECT_NEAR(mirroredLast, plain[i].width() - 1 - first, 1) << i;
    }
}

TEST(RightToLeft, takesClicksWhereTheTickIs)
{
    const auto places = [](bool isTurned) {
        FormTable table(QStringLiteral("Rows"));
        table.setRows({{{.text = QStringLiteral("/home"), .isBold = true}}});
        table.setTickBox(0, QStringLiteral("Hidden ones too"), false);
        table.resize(400, 200);
        table.show();
        const QSignalSpy toggled(&table, &FormTable::tickBoxToggled);
        const int y = table.rowViewportPosition(0) + table.rowHeight(0) - 16;
        const int last = table.viewport()->width() - 1;
        auto found = placesThatAnswer(*table.viewport(), toggled, y,
                                      [&](int x) { return isTurned ? last - x : x; });
        std::ranges::sort(found);
        return found;
    };
    const std::vector<int> plain = places(false);
    EXPECT_THAT(plain, testing::Not(IsEmpty()));
    const TurnedLayout turned;
    EXPECT_EQ(places(true), plain);
}

TEST(RightToLeft, putsTheFooterAround)
{
    const auto places = [](bool isTurned) {
        PanelFooter footer(nullptr);
        footer.resize(400, footer.height());
        footer.setHints({{.key = QStringLiteral("Return"), .meaning = QString(20, u'w')},
                         {.flags = {.option = true},
                          .key = QStringLiteral("Alt"),
                          .meaning = QString(20, u'w')}});
        footer.setNotice(QStringLiteral("notice"));
        std::vector<int> found;
        for (auto signal : {&PanelFooter::moreClicked, &PanelFooter::noticeClicked}) {
            const QSignalSpy clicked(&footer, signal);
            auto each = placesThatAnswer(footer, clicked, footer.height() / 2, [&](int x) {
                return isTurned ? footer.width() - 1 - x : x;
            });
            std::ranges::sort(each);
            found.insert(found.end(), each.begin(), each.end());
        }
        return found;
    };
    const std::vector<int> plain = places(false);
    EXPECT_THAT(plain, testing::Not(IsEmpty()));
    const TurnedLayout turned;
    EXPECT_EQ(places(true), plain);
}

TEST(RightToLeft, readsAPathFromItsRootWhateverTheScript)
{
    const QString names[] = {u"שלום"_s, u"plans"_s, u"עולם"_s, u"תודה"_s};
    std::string path;
    for (const QString &name : names)
        path += '/' + name.toStdString();
    const SearchBaseResult result(path, path, {{12, 4}}, SearchBaseResultType::standard);
    const RowText row = rowText(result);
    const QString drawn = RowLayout(row, QFont(), PanelPalette::light(), 10000).text();
    QTextLayout layout(drawn);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    qreal end = 0;
    for (const QString &name : names) {
        const auto start = static_cast<int>(drawn.indexOf(name));
        const qreal one = line.cursorToX(start + 1);
        EXPECT_GT(one, end) << name.toStdString();
        end = std::max(one, line.cursorToX(start + static_cast<int>(name.size()) - 1));
    }
}

} // namespace quillon
