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
        /// One of the controls of a form: as high as they are, and from edge to edge.
        control,
    };

    PanelButton(const QString &text, Rank rank, QWidget *parent);

    void setPanelPalette(const PanelPalette &palette);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// The coloured area.
    QRectF body() const;
    /// What the button stands out with, pressed or under the pointer included.
    QColor fill() const;

    Rank rank_;
    PanelPalette palette_ = PanelPalette::light();
};

} // namespace quillon
