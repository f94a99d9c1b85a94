#pragma once

#include "app/widgets/PanelPalette.h"

#include <QPushButton>

namespace quillon {

/// A push button in the panel's tones. The primary one of a window is filled with the accent; one
/// that has a menu shows it.
class PanelButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Rank
    {
        primary,
        secondary,
        /// One of the controls of a form, as high as the others and drawn from edge to edge.
        control,
    };

    PanelButton(const QString &text, Rank rank, QWidget *parent);

    void setPanelPalette(const PanelPalette &palette);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Returns the coloured area.
    QRectF body() const;
    /// Returns the colour of that area, which depends on whether the button is pressed or under the
    /// pointer.
    QColor fill() const;

    Rank rank_;
    PanelPalette palette_ = PanelPalette::light();
};

} // namespace quillon
