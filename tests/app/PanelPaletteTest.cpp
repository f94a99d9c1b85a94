#include "app/widgets/PanelPalette.h"

#include "app/widgets/QuillonStyle.h"

#include <QApplication>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace quillon {

namespace {

using namespace Qt::StringLiterals;

QPalette desktop(QColor base, QColor text, QColor highlight)
{
    QPalette palette;
    palette.setColor(QPalette::Window, base);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Highlight, highlight);
    return palette;
}

void expectReadable(const PanelPalette &palette)
{
    for (const QColor &ground : {palette.background, palette.tint}) {
        EXPECT_GE(contrast(palette.text, ground), 4.5);
        EXPECT_GE(contrast(palette.quiet, ground), 4.5);
        EXPECT_GE(contrast(palette.accent, ground), 4.5);
        EXPECT_GE(contrast(palette.fault, ground), 4.5);
    }
    EXPECT_GE(contrast(palette.text, palette.keyCap), 4.5);
    const QPalette widgets = palette.controlsPalette();
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::PlaceholderText})
        EXPECT_GE(contrast(widgets.color(role), widgets.color(QPalette::Window)), 4.5);
    EXPECT_GE(contrast(widgets.color(QPalette::Text), widgets.color(QPalette::Base)), 4.5);
    EXPECT_GE(
        contrast(widgets.color(QPalette::HighlightedText), widgets.color(QPalette::Highlight)),
        4.5);
}

std::vector<PanelPalette> palettes()
{
    std::vector<PanelPalette> all{PanelPalette::light(), PanelPalette::dark()};
    for (const QRgb highlight : {0x3daee9U, 0xe95420U, 0xffd700U, 0x101010U, 0xffffffU}) {
        all.push_back(PanelPalette::forDesktop(desktop(0xffffff, 0x232629, highlight), false));
        all.push_back(PanelPalette::forDesktop(desktop(0x1b1e20, 0xfcfcfc, highlight), false));
    }
    return all;
}

/// Returns the contrast between the background inside a button and its letters, as they are drawn.
double drawnContrast(QPushButton &button)
{
    const QImage image = button.grab(button.rect().adjusted(12, 12, -12, -12)).toImage();
    std::map<QRgb, int> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++pixels[image.pixel(x, y)];
    const QColor ground =
        std::ranges::max_element(pixels, {}, [](const auto &pixel) { return pixel.second; })->first;
    double best = 1;
    for (const auto &pixel : pixels)
        best = std::max(best, contrast(ground, pixel.first));
    return best;
}

} // namespace

TEST(PanelPalette, isReadableInEveryPalette)
{
    for (const PanelPalette &palette : palettes())
        expectReadable(palette);
}

TEST(PanelPalette, isReadableOnEveryButton)
{
    for (const PanelPalette &palette : palettes()) {
        for (const auto rank : {ButtonRank::primary, ButtonRank::secondary}) {
            const std::unique_ptr<QPushButton> button(pushButton(u"HHHH"_s, rank, nullptr));
            QFont font;
            font.setPixelSize(24);
            font.setBold(true);
            button->setFont(font);
            button->setPalette(palette.controlsPalette());
            button->resize(button->sizeHint());
            EXPECT_GE(drawnContrast(*button), 4.5);
            button->setDown(true);
            EXPECT_GE(drawnContrast(*button), 4.5) << "pressed";
        }
    }
}

TEST(PanelPalette, takesTheDesktopsColoursWhereItHasSome)
{
    const PanelPalette own = PanelPalette::forDesktop(desktop(0x1b1e20, 0xfcfcfc, 0x3daee9), false);
    EXPECT_EQ(own.background, QColor(0x1b1e20));
    EXPECT_TRUE(own.isDark());

    const std::unique_ptr<QStyle> plain(QStyleFactory::create(u"Fusion"_s));
    EXPECT_TRUE(PanelPalette::forDesktop(plain->standardPalette(), true).isDark());
    EXPECT_FALSE(PanelPalette::forDesktop(plain->standardPalette(), false).isDark());
}

TEST(PanelPalette, turnsDarkInEveryWindowWithTheDesktop)
{
    const QWidget window;
    const auto tones = [&window] { return PanelPalette::of(window.palette()); };
    EXPECT_EQ(tones().background, PanelPalette::light().background);
    QuillonStyle::preferDark(true);
    QApplication::processEvents();
    EXPECT_EQ(tones().background, PanelPalette::dark().background);
    EXPECT_EQ(tones().fault, PanelPalette::dark().fault);
    EXPECT_EQ(tones().hairline, PanelPalette::dark().hairline);
    QuillonStyle::preferDark(false);
    QApplication::processEvents();
    EXPECT_EQ(tones().background, PanelPalette::light().background);
}

} // namespace quillon
