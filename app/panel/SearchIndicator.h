#pragma once

#include "app/widgets/AnimatedWidget.h"

namespace quillon {

/// The symbol on the left of the field: a magnifying glass, or a spinner while a search takes its
/// time.
class SearchIndicator : public AnimatedWidget
{
    Q_OBJECT

public:
    explicit SearchIndicator(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quillon
