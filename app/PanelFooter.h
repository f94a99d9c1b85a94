#pragma once

#include "app/PanelPalette.h"

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
    };

    explicit PanelFooter(QWidget *parent);

    void setPalette(const PanelPalette &palette);
    void setHints(std::vector<Hint> hints);
    void setStatus(const QString &status);
    QString status() const { return status_; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    PanelPalette palette_ = PanelPalette::light();
    std::vector<Hint> hints_;
    QString status_;
};

} // namespace quillon
