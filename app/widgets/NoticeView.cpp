#include "app/widgets/NoticeView.h"

#include "app/widgets/QuillonStyle.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillon {

NoticeView::NoticeView()
{
    column(this, 0, MARGIN);
}

void NoticeView::setNotice(const Notice &notice)
{
    if (contents_) {
        // The old contents are not deleted at once, since one of their buttons may have caused this
        // call.
        contents_->setParent(nullptr);
        contents_->deleteLater();
    }
    dismissed_ = notice.dismissed;
    contents_ = new QWidget(this);
    QVBoxLayout *parts = column(contents_, APART);
    parts->addWidget(heading(notice.title, contents_));
    QLabel *text = paragraph(notice.text, QPalette::WindowText, contents_);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    parts->addWidget(text);
    parts->addLayout(buildButtons(notice));
    layout()->addWidget(contents_);
    contents_->show();
    setAccessibleName(notice.title + u' ' + notice.text);
    if (isVisible()) {
        setFocus();
        announce();
    }
}

QHBoxLayout *NoticeView::buildButtons(const Notice &notice)
{
    QHBoxLayout *buttons = line(NEAR);
    const auto add = [&](const QString &text, ButtonRank rank) {
        auto *button = pushButton(text, rank, contents_);
        buttons->addWidget(button);
        setFocusProxy(button);
        return button;
    };
    if (notice.aside)
        join(*add(notice.aside->text, ButtonRank::secondary), *notice.aside);
    buttons->addStretch();
    using enum ButtonRank;
    connect(add(notice.dismissal, notice.primary ? secondary : primary), &QPushButton::clicked,
            this, [this] { window()->close(); });
    if (notice.primary)
        join(*add(notice.primary->text, primary), *notice.primary);
    return buttons;
}

void NoticeView::join(QPushButton &button, const Notice::Choice &choice)
{
    connect(&button, &QPushButton::clicked, this, [this, choice] {
        if (!choice.keepsWindow)
            window()->hide();
        choice.choose();
    });
}

bool NoticeView::mayClose()
{
    if (dismissed_)
        dismissed_();
    return true;
}

void NoticeView::announce()
{
    // The window is the same one, so nothing else would make a screen reader read it again.
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quillon
