#include "app/setup/AppleEventPermissionCoordinator.h"

#include "app/widgets/RoundedWindow.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

namespace quillon {

/// An ordinary window, but for the controls that would close, minimise or resize it: window
/// managers put them on every frame that they draw, so it goes without one.
class AppleEventPermissionCoordinator::Window : public RoundedWindow
{
public:
    Window(const AppleEventPermissionViewController::Services &services, WindowSystem &windowSystem,
           AppleEventPermissionViewDelegate *delegate)
        : RoundedWindow(windowSystem, Qt::Window),
          permissionViewController_(new AppleEventPermissionViewController(services, delegate))
    {
        setWindowTitle(QStringLiteral("Quillon – Permissions"));
        setContent(permissionViewController_);
        permissionViewController_->setFocus();
        fitToCompositing();
        const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
        QRect frame = rect();
        frame.moveCenter(
            (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry().center());
        move(frame.topLeft());
    }

    void setPanelPalette(const PanelPalette &palette)
    {
        setFramePalette(palette);
        permissionViewController_->setPanelPalette(palette);
    }

protected:
    void closeEvent(QCloseEvent *event) override { event->ignore(); }
    void mousePressEvent(QMouseEvent *event) override
    {
        if (event->button() == Qt::LeftButton)
            windowHandle()->startSystemMove();
    }

private:
    AppleEventPermissionViewController *permissionViewController_;
};

AppleEventPermissionCoordinator::AppleEventPermissionCoordinator(
    const AppleEventPermissionViewController::Services &services, WindowSystem &windowSystem,
    AppleEventPermissionDelegate &delegate)
    : services_(services), windowSystem_(windowSystem), delegate_(delegate)
{}

AppleEventPermissionCoordinator::~AppleEventPermissionCoordinator() = default;

void AppleEventPermissionCoordinator::show(const PanelPalette &palette)
{
    if (window_ == nullptr) {
        window_ = std::make_unique<Window>(services_, windowSystem_, this);
        window_->setPanelPalette(palette);
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void AppleEventPermissionCoordinator::setPanelPalette(const PanelPalette &palette)
{
    if (window_ != nullptr)
        window_->setPanelPalette(palette);
}

QWidget *AppleEventPermissionCoordinator::window() const
{
    return window_.get();
}

void AppleEventPermissionCoordinator::permissionFinished()
{
    window_.reset();
    delegate_.permissionFinished();
}

void AppleEventPermissionCoordinator::terminate()
{
    delegate_.terminate();
}

} // namespace quillon
