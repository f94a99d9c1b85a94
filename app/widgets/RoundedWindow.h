#pragma once

#include <QWidget>

namespace quillon {

class WindowSystem;

/// A frameless window with round corners and a hairline around its content, and with a soft shadow
/// if the desktop blends windows.
class RoundedWindow : public QWidget
{
    Q_OBJECT

public:
    RoundedWindow(WindowSystem &windowSystem, Qt::WindowFlags flags);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    /// Sets the only widget inside. The window takes its size.
    void setContent(QWidget *content);
    /// It is called before each showing, since the desktop may have begun or stopped to blend
    /// windows.
    void fitToCompositing();
    WindowSystem &windowSystem() { return windowSystem_; }
    /// Moves the window there. It is called before each showing.
    void placeAt(QPoint topLeft);
    /// Returns the area of the window without its shadow.
    QRect panelRect() const { return rect().marginsRemoved(contentsMargins()); }

private:
    void paintShadow(QPainter &painter);

    WindowSystem &windowSystem_;
    QPoint place_;
};

} // namespace quillon
