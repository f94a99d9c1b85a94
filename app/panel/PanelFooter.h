#pragma once

#include "app/widgets/PanelPalette.h"

#include <QWidget>

#include <vector>

namespace quillon {

/// The bottom line of the panel: keys that work on the selected row at the left, the state of the
/// index at the right.
class PanelFooter : public QWidget
{
public:
    struct Hint
    {
        QString key;
        QString meaning;
        /// More about it, shown while the pointer rests on it.
        QString toolTip;
    };

    explicit PanelFooter(QWidget *parent);

    void setPalette(const PanelPalette &palette);
    /// As many as there is room for are shown, from the first on.
    void setHints(std::vector<Hint> hints);
    const std::vector<Hint> &hints() const { return hints_; }
    void setStatus(const QString &status);
    QString status() const { return status_; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// A hint that is shown, and where.
    struct Place
    {
        const Hint &hint;
        QRect key;
        QRect meaning;
    };
    std::vector<Place> places() const;
    QRect line() const;

    PanelPalette palette_ = PanelPalette::light();
    std::vector<Hint> hints_;
    QString status_;
};

} // namespace quillon
