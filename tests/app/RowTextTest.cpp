#include "results/RowText.h"

#include "app/panel/RowLayout.h"

#include <QFont>
#include <QFontMetricsF>
#include <QtMath>

#include <gmock/gmock.h>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;

SearchBaseResult result(const std::string &text, std::vector<TextRange> ranges,
                        SearchBaseResultType type = SearchBaseResultType::standard)
{
    return {text, text, std::move(ranges), type};
}

struct TextRow
{
    const char *name;
    std::string bytes;
    std::vector<TextRange> ranges;
    QString text;
    QString lastComponent;
    QStringList matches;
};

std::ostream &operator<<(std::ostream &out, const TextRow &row)
{
    return out << row.name;
}

} // namespace

class RowTextTable : public testing::TestWithParam<TextRow>
{};

TEST_P(RowTextTable, countsCharactersAndMarksWhatIsNoText)
{
    const TextRow &expected = GetParam();
    const RowText row = rowText(result(expected.bytes, expected.ranges));
    EXPECT_EQ(row.text, expected.text);
    EXPECT_EQ(row.text.mid(row.nameStart), expected.lastComponent);
    QStringList matches;
    for (const RowText::Span &span : row.matches)
        matches << row.text.mid(span.start, span.length);
    EXPECT_EQ(matches, expected.matches);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RowTextTable,
    testing::Values(
        TextRow{
            "plain", "/home/a/harbour", {{8, 3}}, u"/home/a/harbour"_s, u"harbour"_s, {u"har"_s}},
        TextRow{"umlautsCountOnce",
                "/\u00fcber/gr\u00fcn",
                {{6, 4}},
                u"/über/grün"_s,
                u"grün"_s,
                {u"grün"_s}},
        TextRow{"beyondTheBasicPlane",
                "/\U0001F600\U0001F600ab/cd",
                {{3, 2}},
                u"/\U0001F600\U0001F600ab/cd"_s,
                u"cd"_s,
                {u"ab"_s}},
        TextRow{"anInvalidByteIsOne",
                "/a\xff\xfe/b\xe2\x82x",
                {{5, 4}},
                u"/a\uFFFD\uFFFD/b\uFFFD\uFFFDx"_s,
                u"b\uFFFD\uFFFDx"_s,
                {u"b\uFFFD\uFFFDx"_s}},
        TextRow{"overlongAndSurrogates",
                "\xc0\xaf\xed\xa0\x80z",
                {{5, 1}},
                u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz"_s,
                u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz"_s,
                {u"z"_s}},
        TextRow{"linesAndDirections",
                "/a\nb\u202egpj.exe",
                {},
                u"/a\uFFFDb\uFFFDgpj.exe"_s,
                u"a\uFFFDb\uFFFDgpj.exe"_s,
                {}},
        TextRow{"trailingSlash", "/home/alex/", {}, u"/home/alex/"_s, u"alex/"_s, {}},
        TextRow{"root", "/", {}, u"/"_s, u"/"_s, {}},
        TextRow{"rangesThatOverlapAreJoined",
                "/abcdef",
                {{3, 4}, {1, 3}, {1, 1}},
                u"/abcdef"_s,
                u"abcdef"_s,
                {u"abcdef"_s}},
        TextRow{"rangesBeyondTheEnd",
                "/ab",
                {{1, 9}, {12, 3}},
                u"/ab"_s,
                u"ab"_s,
                {u"ab"_s, QString()}}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(RowText, isReadOutNameFirst)
{
    EXPECT_EQ(spokenText(result("/home/alex/harbour\nplans", {})),
              u"harbour\uFFFDplans, in /home/alex"_s);
    EXPECT_EQ(spokenText(result("/home", {})), u"home, in /"_s);
    EXPECT_EQ(spokenText(result("/", {})), u"/"_s);
    EXPECT_EQ(spokenText(result("50 % of %2.txt", {}, SearchBaseResultType::inFrontFinder)),
              u"50 % of %2.txt, in the front window"_s);
}

TEST(RowLayout, losesTheBeginningAndNeverTheEnd)
{
    const std::string path =
        "/home/alex/first folder/second folder/third folder/a name of some length";
    const RowText row = rowText(result(path, {{5, 6}, {63, 4}}));
    const QFont font;
    const qreal full = RowLayout(row, font, PanelPalette::light(), 10000).width();
    EXPECT_EQ(RowLayout(row, font, PanelPalette::light(), full).text(), row.text);

    for (int width = qFloor(full) - 1; width > 40; width -= 7) {
        const RowLayout layout(row, font, PanelPalette::light(), width);
        const QString text = layout.text();
        EXPECT_LE(layout.width(), width) << text.toStdString();
        EXPECT_TRUE(text.startsWith(QChar(0x2026))) << text.toStdString();
        EXPECT_TRUE(row.text.endsWith(text.section(QChar(0x2026), -1))) << text.toStdString();
        // No more text is left out than necessary.
        EXPECT_GT(layout.width(), width - 3 * QFontMetricsF(font).maxWidth()) << text.toStdString();
    }
}

TEST(RowLayout, keepsTheMatchedLettersOfTheParentsInView)
{
    const RowText row = rowText(
        result("/home/alex/Work/a folder with a long name/another one of them/plans", {{11, 4}}));
    const QFont font;
    const qreal full = RowLayout(row, font, PanelPalette::light(), 10000).width();
    EXPECT_EQ(RowLayout(row, font, PanelPalette::light(), full * 0.93).text().left(1), u"…"_s);
    const QString text = RowLayout(row, font, PanelPalette::light(), full * 0.5).text();
    EXPECT_TRUE(text.startsWith(u"…Work…"_s)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(u"/plans"_s)) << text.toStdString();
    const QString least = RowLayout(row, font, PanelPalette::light(), full * 0.07).text();
    EXPECT_TRUE(u"…/plans"_s.endsWith(least.mid(1))) << least.toStdString();
}

TEST(RowText, drawsTheHomeFolderAsATilde)
{
    const auto drawn = [](const char *path, std::vector<TextRange> ranges) {
        const RowText row = rowText(result(path, std::move(ranges)), "/home/alex");
        QString text = row.text.left(row.nameStart) + u'|' + row.text.mid(row.nameStart);
        for (const RowText::Span &span : row.matches)
            text += u' ' + row.text.mid(span.start, span.length);
        return text;
    };
    EXPECT_EQ(drawn("/home/alex/Work/plans", {{11, 2}, {16, 2}}), u"~/Work/|plans Wo pl"_s);
    EXPECT_EQ(drawn("/home/alex/Work", {{1, 2}, {7, 1}, {9, 4}}), u"~/|Work ~/Wo"_s)
        << "the tilde stands for what matched in it";
    EXPECT_EQ(drawn("/home/alex", {}), u"/home/|alex"_s);
    EXPECT_EQ(drawn("/home/alexa/Work", {}), u"/home/alexa/|Work"_s);
    EXPECT_EQ(rowText(result("/usr/Work", {}), "/").text, u"/usr/Work"_s);
}

} // namespace quillon
