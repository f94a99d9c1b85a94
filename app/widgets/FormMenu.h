#pragma once

#include <QComboBox>

namespace quillon {

/// A menu of choices among the controls of a form, at least as wide as its neighbours. It is drawn
/// in the tones of the window's palette.
class FormMenu : public QComboBox
{
    Q_OBJECT

public:
    explicit FormMenu(QWidget *parent);

    QSize sizeHint() const override;
    void showPopup() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quillon
