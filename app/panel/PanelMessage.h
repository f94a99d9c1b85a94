#pragma once

#include "app/widgets/PanelPalette.h"

#include <QWidget>

namespace quillon {

/// What stands in place of the rows when there are none: a short line in bold and a quieter one
/// that says what to do.
class PanelMessage : public QWidget
{
public:
    explicit PanelMessage(QWidget *parent);

    void setPalette(const PanelPalette &palette);
    void setMessage(const QString &title, const QString &sentence);
    QString title() const { return title_; }
    QString sentence() const { return sentence_; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    PanelPalette palette_ = PanelPalette::light();
    QString title_;
    QString sentence_;
};

} // namespace quillon
