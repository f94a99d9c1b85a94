#include "app/widgets/PanelPalette.h"

#include <QStyle>
#include <QStyleFactory>

#include <gtest/gtest.h>

#include <memory>

namespace quillon {

namespace {

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
}

} // namespace

TEST(PanelPalette, isReadableInEveryPalette)
{
    expectReadable(PanelPalette::light());
    expectReadable(PanelPalette::dark());
    for (const QRgb highlight : {0x3daee9U, 0xe95420U, 0xffd700U, 0x101010U, 0xffffffU}) {
        expectReadable(PanelPalette::forDesktop(desktop(0xffffff, 0x232629, highlight), false));
        expectReadable(PanelPalette::forDesktop(desktop(0x1b1e20, 0xfcfcfc, highlight), false));
    }
}

TEST(PanelPalette, takesTheDesktopsColoursWhereItHasSome)
{
    const PanelPalette own = PanelPalette::forDesktop(desktop(0x1b1e20, 0xfcfcfc, 0x3daee9), false);
    EXPECT_EQ(own.background, QColor(0x1b1e20));
    EXPECT_TRUE(own.isDark());

    const std::unique_ptr<QStyle> plain(QStyleFactory::create(u"Fusion"_qs));
    EXPECT_TRUE(PanelPalette::forDesktop(plain->standardPalette(), true).isDark());
    EXPECT_FALSE(PanelPalette::forDesktop(plain->standardPalette(), false).isDark());
}

} // namespace quillon
