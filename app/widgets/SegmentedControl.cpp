#include "app/widgets/SegmentedControl.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace quillon {

SegmentedControl::SegmentedControl(const QStringList &segments, QWidget *parent) : QWidget(parent)
{
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(metrics::INSET);
    for (const QString &text : segments) {
        auto *button = pushButton(text, ButtonRank::control, this);
        const int number = static_cast<int>(buttons_.size());
        connect(button, &QPushButton::clicked, this,
                [this, number] { Q_EMIT segmentClicked(number); });
        line->addWidget(button);
        buttons_ << button;
    }
    line->addStretch();
    if (!buttons_.isEmpty())
        setFocusProxy(buttons_.first());
}

} // namespace quillon
