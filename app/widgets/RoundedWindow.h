#pragma once

#include "app/widgets/PanelPalette.h"

#include <QWidget>

namespace quillon {

class WindowSystem;

/// A frameless window with round corners and a hairline around what it shows, and with a soft
/// shadow where the desktop blends windows.
class RoundedWindow : public QWidget
{
    Q_OBJECT

public:
    RoundedWindow(WindowSystem &windowSystem, Qt::WindowFlags flags);

    void setFramePalette(const PanelPalette &palette);

protected:
    void paintEvent(QPaintEvent *event) override;

    /// The only widget inside; the window takes its size.
    void setContent(QWidget *content);
    /// This runs before each showing: the desktop may have begun or ceased to blend.
    void fitToCompositing();
    WindowSystem &windowSystem() { return windowSystem_; }
    /// The window without its shadow.
    QRect panelRect() const { return rect().marginsRemoved(contentsMargins()); }

private:
    void paintShadow(QPainter &painter);

    WindowSystem &windowSystem_;
    PanelPalette palette_ = PanelPalette::light();
};

} // namespace quillon
