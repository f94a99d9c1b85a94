#pragma once

#include <QObject>

#include <string>

class QWidget;

namespace quillon {

class WindowPlaces;

/// Has a window come back where the user left it, as long as a screen shows that place; else where
/// the desktop puts it. Main thread only.
class WindowPlaceKeeper : public QObject
{
    Q_OBJECT

public:
    /// Window and places outlive this.
    WindowPlaceKeeper(QWidget &window, std::string name, WindowPlaces &places);
    /// Remembers the place of a window that is still shown.
    ~WindowPlaceKeeper() override;

    /// The call has to come before the window is shown, and before anything makes the desktop know
    /// of it: a frame counts into the place only from the outset. Does nothing after the first
    /// time.
    void restore();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void remember();

    QWidget &window_;
    const std::string name_;
    WindowPlaces &places_;
    bool isRestored_ = false;
};

} // namespace quillon
