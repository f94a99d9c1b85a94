#pragma once

#include <QList>
#include <QStringList>
#include <QWidget>

class QPushButton;

namespace quillon {

/// A line of buttons that belong together, such as "Add" and "Remove" below a table.
class SegmentedControl : public QWidget
{
    Q_OBJECT

public:
    /// The segments' texts, with their mnemonics, from left to right.
    explicit SegmentedControl(const QStringList &segments, QWidget *parent = nullptr);

    QPushButton *segment(int number) const { return buttons_.at(number); }

Q_SIGNALS:
    void segmentClicked(int segment);

private:
    QList<QPushButton *> buttons_;
};

} // namespace quillon
