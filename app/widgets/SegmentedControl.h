#pragma once

#include <QStringList>
#include <QWidget>

class QAbstractButton;
class QMenu;
class QPushButton;

namespace quillon {

/// A line of buttons that belong together, such as "Add" and "Remove" below a table.
class SegmentedControl : public QWidget
{
    Q_OBJECT

public:
    /// The segments' texts, with their mnemonics, from left to right.
    explicit SegmentedControl(const QStringList &segments, QWidget *parent = nullptr);

    /// Makes the segment open the menu instead of being clicked. The control does not own the menu.
    void setMenu(int segment, QMenu *menu);
    void setSegmentEnabled(int segment, bool enabled);
    QAbstractButton *segment(int number) const;

Q_SIGNALS:
    void segmentClicked(int segment);

private:
    QList<QPushButton *> buttons_;
};

} // namespace quillon
