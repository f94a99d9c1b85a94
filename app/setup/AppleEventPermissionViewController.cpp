#include "app/setup/AppleEventPermissionViewController.h"

#include "actions/AppleEventAccess.h"
#include "actions/AppleScriptRunner.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "base/TaskQueue.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time for the answer of the file manager, and of the user if the system asks.
constexpr auto ANSWER_TIME = 5000ms;

} // namespace

AppleEventPermissionViewController::AppleEventPermissionViewController(
    const Services &services, AppleEventPermissionDelegate *delegate)
    : services_(services), delegate_(delegate)
{
    QVBoxLayout *parts = column(this, APART, MARGIN);
    parts->addWidget(heading(tr("May Quillon talk to your file manager?"), this));
    parts->addWidget(
        paragraph(tr("Quillon opens the folders you choose in your file manager and, if you switch "
                     "that on, searches its front window. What it learns stays on this computer. "
                     "Your desktop may ask, too."),
                  QPalette::WindowText, this));
    faultLabel_ = paragraph({}, QPalette::WindowText, this);
    faultLabel_->hide();
    parts->addWidget(faultLabel_);
    parts->addLayout(buildButtons());
}

QLayout *AppleEventPermissionViewController::buildButtons()
{
    QHBoxLayout *buttons = line(NEAR);
    buttons->addStretch();
    disableButton_ = pushButton(tr("Quit"), ButtonRank::secondary, this);
    connect(disableButton_, &QPushButton::clicked, this,
            &AppleEventPermissionViewController::disable);
    buttons->addWidget(disableButton_);
    enableButton_ = pushButton(tr("Allow"), ButtonRank::primary, this);
    connect(enableButton_, &QPushButton::clicked, this,
            &AppleEventPermissionViewController::enable);
    buttons->addWidget(enableButton_);
    setFocusProxy(enableButton_);
    return buttons;
}

void AppleEventPermissionViewController::enable()
{
    if (delegate_ == nullptr || isEnabling_)
        return;
    if (!services_.access.enable() && faultLabel_->isHidden()) {
        setParagraph(faultLabel_, writeFault());
        faultLabel_->show();
        return;
    }
    isEnabling_ = true;
    enableButton_->setEnabled(false);

    // The first of two calls finishes. This object is deleted by the time of the second.
    const auto finish = [self = QPointer(this)] {
        if (self)
            self->delegate_->permissionFinished();
    };
    services_.background.post(
        [&runner = services_.appleScriptRunner, &main = services_.main, finish] {
            AppleScriptRunner::callHandler(runner.testAccessToFinderAppleScript,
                                           AppleScriptRunner::TEST_ACCESS_TO_FINDER, {""});
            main.post(finish);
        });
    services_.main.postDelayed(ANSWER_TIME, finish);
}

void AppleEventPermissionViewController::disable()
{
    if (delegate_ != nullptr)
        delegate_->terminate();
}

} // namespace quillon
