#pragma once

#include "app/widgets/NoticeWindow.h"
#include "app/widgets/SetupView.h"

class QHBoxLayout;
class QPushButton;

namespace quillon {

/// A notice as the window around it shows it.
class NoticeView : public SetupView
{
    Q_OBJECT

public:
    NoticeView();

    /// Replaces the notice that is shown. Its last button gets the focus.
    void setNotice(const Notice &notice);
    bool mayClose() override;

private:
    QHBoxLayout *buildButtons(const Notice &notice);
    void join(QPushButton &button, const Notice::Choice &choice);
    void announce();

    QWidget *contents_ = nullptr;
    std::function<void()> dismissed_;
};

} // namespace quillon
