#pragma once

#include <QObject>

#include <string>

class QWidget;

namespace quillon {

class WindowPlaces;

/// Shows a window again where the user left it, as long as a screen shows that place. Otherwise the
/// desktop places the window. Main thread only.
class WindowPlaceKeeper : public QObject
{
    Q_OBJECT

public:
    /// The window and the places outlive this object.
    WindowPlaceKeeper(QWidget &window, std::string name, WindowPlaces &places);
    /// Remembers the place of a window that is still shown.
    ~WindowPlaceKeeper() override;

    /// Restores the place. It is called before the window is shown and before anything makes the
    /// desktop know the window, since its frame counts only from the outset. Does nothing after the
    /// first time.
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
