#include "app/widgets/PanelPalette.h"

#include <QStyle>
#include <QStyleFactory>

#include <algorithm>
#include <cmath>
#include <memory>

namespace quillon {

namespace {

constexpr double READABLE = 4.5;

double luminance(const QColor &color)
{
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) +
           0.0722 * linear(color.blue());
}

/// Returns the colour between a and b, given b's share from 0 to 1.
QColor mixed(const QColor &a, const QColor &b, double share)
{
    const auto channel = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

/// Returns the weakest mix of the colour with full text that can be read on both backgrounds.
QColor readable(const QColor &color, const PanelPalette &palette)
{
    const auto isReadable = [&palette](const QColor &mix) {
        return std::min(contrast(mix, palette.background), contrast(mix, palette.tint)) >= READABLE;
    };
    QColor result = color;
    for (int tenths = 1; tenths <= 10 && !isReadable(result); ++tenths)
        result = mixed(color, palette.text, tenths / 10.0);
    return result;
}

bool hasColoursOfItsOwn(const QPalette &desktop)
{
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
    const QPalette standard = plain->standardPalette();
    const auto differs = [&](QPalette::ColorRole role) {
        return desktop.color(QPalette::Active, role) != standard.color(QPalette::Active, role);
    };
    return differs(QPalette::Window) || differs(QPalette::Base) || differs(QPalette::Highlight);
}

} // namespace

double contrast(const QColor &a, const QColor &b)
{
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

PanelPalette PanelPalette::light()
{
    return {.background = 0xfcfcfd,
            .text = 0x1c1f23,
            .quiet = 0x5c646e,
            .tint = 0xe3edfb,
            .accent = 0x1f5fbf,
            .hairline = 0xdcdfe4,
            .keyCap = 0xedeff2,
            .fault = 0xb3261e};
}

PanelPalette PanelPalette::dark()
{
    return {.background = 0x202327,
            .text = 0xeceff2,
            .quiet = 0xa2abb6,
            .tint = 0x2b3f5c,
            .accent = 0x8ab4f8,
            .hairline = 0x383d44,
            .keyCap = 0x30353b,
            .fault = 0xf2b8b5};
}

PanelPalette PanelPalette::forDesktop(const QPalette &desktop, bool prefersDark)
{
    if (!hasColoursOfItsOwn(desktop))
        return prefersDark ? dark() : light();

    const auto role = [&desktop](QPalette::ColorRole r) {
        return desktop.color(QPalette::Active, r);
    };
    PanelPalette palette;
    palette.background = role(QPalette::Base);
    palette.text = role(QPalette::Text);
    palette.hairline = mixed(palette.background, palette.text, 0.15);
    palette.keyCap = mixed(palette.background, palette.text, 0.08);
    // A tint has so little of the accent that selected text keeps its own three tones on it.
    const bool isDark = palette.isDark();
    palette.tint = mixed(palette.background, role(QPalette::Highlight), isDark ? 0.3 : 0.14);
    palette.quiet = readable(mixed(palette.text, palette.background, 0.4), palette);
    palette.accent = readable(role(QPalette::Highlight), palette);
    palette.fault = readable(isDark ? dark().fault : light().fault, palette);
    return palette;
}

PanelPalette PanelPalette::of(const QPalette &widgets)
{
    const auto role = [&widgets](QPalette::ColorRole r) {
        return widgets.color(QPalette::Active, r);
    };
    return {.background = role(QPalette::Window),
            .text = role(QPalette::WindowText),
            .quiet = role(QPalette::PlaceholderText),
            .tint = role(QPalette::Highlight),
            .accent = role(QPalette::Link),
            .hairline = role(QPalette::Mid),
            .keyCap = role(QPalette::Button),
            .fault = role(FAULT)};
}

bool PanelPalette::isDark() const
{
    return luminance(background) < luminance(text);
}

QPalette PanelPalette::controlsPalette() const
{
    QPalette palette;
    palette.setColor(QPalette::Window, background);
    // On a dark background edges are invisible, so what can be written into or ticked is an area of
    // another colour.
    palette.setColor(QPalette::Base, isDark() ? keyCap : background);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::PlaceholderText, quiet);
    palette.setColor(QPalette::Highlight, tint);
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::Button, keyCap);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Light, mixed(keyCap, background, 0.5));
    palette.setColor(QPalette::Midlight, mixed(keyCap, background, 0.25));
    palette.setColor(QPalette::Mid, hairline);
    palette.setColor(QPalette::Dark, mixed(keyCap, text, 0.35));
    palette.setColor(QPalette::Shadow, mixed(keyCap, text, 0.5));
    palette.setColor(QPalette::AlternateBase, mixed(background, keyCap, 0.5));
    palette.setColor(QPalette::BrightText, background);
    palette.setColor(QPalette::Link, accent);
    palette.setColor(FAULT, fault);
    palette.setColor(QPalette::ToolTipBase, keyCap);
    palette.setColor(QPalette::ToolTipText, text);
    const QColor faint = mixed(text, background, 0.55);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::PlaceholderText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

} // namespace quillon
