#pragma once

#include <QLabel>

namespace quillon {

/// One line of plain text of any length in a given width. The middle of a text that is too long is
/// not drawn. text() is the whole text.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quillon
