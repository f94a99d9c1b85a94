#pragma once

#include "app/widgets/AnimatedWidget.h"

namespace quillon {

/// A thin bar that shows that work is in progress, but not how far it is.
class ProgressIndicator : public AnimatedWidget
{
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quillon
