#pragma once

#include "app/widgets/PanelPalette.h"

#include <QTabWidget>

namespace quillon {

/// Panes below a line of plain words. The word of the pane in front is underlined.
class FormTabView : public QTabWidget
{
    Q_OBJECT

public:
    explicit FormTabView(QWidget *parent = nullptr);

    void setPanelPalette(const PanelPalette &palette);

protected:
    /// Draws neither a frame nor a line.
    void paintEvent(QPaintEvent *) override {}

private:
    class Bar;
    class Space;

    Bar *bar_;
};

} // namespace quillon
