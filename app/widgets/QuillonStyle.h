#pragma once

#include <QProxyStyle>

class QPushButton;

namespace quillon {

/// How much a push button stands out.
enum class ButtonRank
{
    /// It is one of the controls of a form, as high as the others and drawn from edge to edge.
    control,
    secondary,
    /// The primary button of a window is filled with the accent.
    primary,
};

/// Returns a push button that looks as its rank says. Return presses it while it has the keyboard,
/// outside of dialogs as well.
QPushButton *pushButton(const QString &text, ButtonRank rank, QWidget *parent);

/// The look of all windows: turns the desktop's palette into the program's and draws the toolkit's
/// controls in it. What is not drawn here looks as in Fusion.
class QuillonStyle : public QProxyStyle
{
    Q_OBJECT

public:
    QuillonStyle();

    /// Says whether a desktop without colours of its own wants dark ones. Every window is repainted
    /// when that changes the palette of the application, whose style is a QuillonStyle.
    static void preferDark(bool prefersDark);

    using QProxyStyle::polish;
    void polish(QPalette &palette) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *result) const override;

private:
    bool prefersDark_ = false;
};

} // namespace quillon
