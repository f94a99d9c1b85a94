#pragma once

#include "app/widgets/PanelPalette.h"

#include <QAbstractButton>

namespace quillon {

/// The three dots that open the panel's menu.
class MenuButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit MenuButton(QWidget *parent);

    void setPanelPalette(const PanelPalette &palette);
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    PanelPalette palette_ = PanelPalette::light();
};

} // namespace quillon
