#include "app/widgets/NoticeWindow.h"

#include "app/widgets/NoticeView.h"
#include "app/widgets/SetupWindow.h"

namespace quillon {

NoticeWindow::NoticeWindow(const QString &title, WindowSystem &windowSystem)
    : title_(title), windowSystem_(windowSystem)
{}

NoticeWindow::~NoticeWindow() = default;

void NoticeWindow::present(const Notice &notice)
{
    if (!window_) {
        view_ = new NoticeView;
        window_ = std::make_unique<SetupWindow>(title_, view_, windowSystem_);
    }
    view_->setNotice(notice);
    window_->present();
}

void NoticeWindow::update(const Notice &notice)
{
    if (isVisible())
        view_->setNotice(notice);
}

bool NoticeWindow::isVisible() const
{
    return window_ && window_->isVisible();
}

void NoticeWindow::hide()
{
    if (window_)
        window_->hide();
}

} // namespace quillon
