#pragma once

#include <QAbstractButton>

namespace quillon {

/// The three dots that open the panel's menu.
class MenuButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit MenuButton(QWidget *parent);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quillon
