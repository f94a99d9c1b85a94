#pragma once

#include <QCheckBox>

namespace quillon {

/// A box to tick among the controls of a form. It is drawn in the tones of the window's palette, so
/// that an empty box can also be seen on a dark background.
class FormCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit FormCheckBox(const QString &text, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor tone(QPalette::ColorRole role) const { return palette().color(QPalette::Active, role); }
};

} // namespace quillon
