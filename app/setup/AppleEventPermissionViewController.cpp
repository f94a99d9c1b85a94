#include "app/setup/AppleEventPermissionViewController.h"

#include "actions/AppleEventAccess.h"
#include "actions/AppleScriptRunner.h"
#include "app/widgets/PanelButton.h"
#include "app/widgets/PanelMetrics.h"
#include "platform/TaskQueue.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// For the answer of the file manager, and of whoever has to consent.
constexpr auto PATIENCE = 5000ms;

constexpr int TEXT_WIDTH = 456;
constexpr int MARGIN = 32;
constexpr int ICON = 48;
/// Between parts that belong together, and between those that do not.
constexpr int NEAR = 4;
constexpr int APART = 20;

QLabel *label(const QString &text, QPalette::ColorRole tone, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(tone);
    return label;
}

/// Of a width that reads well. Its height is fixed as well, because layouts inside a window with
/// margins of its own reckon the height of wrapped text too small.
QLabel *paragraph(const QString &text, QPalette::ColorRole tone, QWidget *parent)
{
    QLabel *paragraph = label(text, tone, parent);
    paragraph->setWordWrap(true);
    paragraph->setFixedSize(TEXT_WIDTH, paragraph->heightForWidth(TEXT_WIDTH));
    return paragraph;
}

void setWeight(QLabel *label, double size)
{
    QFont font = label->font();
    font.setWeight(QFont::DemiBold);
    font.setPointSizeF(font.pointSizeF() * size);
    label->setFont(font);
}

} // namespace

AppleEventPermissionViewController::AppleEventPermissionViewController(
    const Services &services, AppleEventPermissionViewDelegate *delegate)
    : services_(services), delegate_(delegate)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    column->setSpacing(APART);
    column->addWidget(buildHeading());
    column->addWidget(buildReason(
        tr("To show folders"),
        tr("When you open a folder, Quillon tells the file manager to show it: in a new window, in "
           "the one that is in front, or selected inside its parent, as you choose.")));
    column->addWidget(buildReason(
        tr("To search the window in front"),
        tr("When you bring up the panel over a window of the file manager, Quillon asks which "
           "folder it shows, so that the items you are looking at are found first. This is off "
           "until you switch on quick search.")));
    column->addWidget(paragraph(
        tr("What Quillon learns stays in the memory of this computer. If you allow it, it "
           "asks the file manager one harmless question now, so that a desktop that wants "
           "your consent asks for it now, too. Otherwise Quillon quits."),
        QPalette::PlaceholderText, this));
    column->addLayout(buildButtons());
}

QWidget *AppleEventPermissionViewController::buildHeading()
{
    auto *heading = new QWidget(this);
    auto *line = new QHBoxLayout(heading);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(APART);
    auto *icon = new QLabel(heading);
    icon->setPixmap(
        QIcon(QStringLiteral(":/quillon/icon.svg")).pixmap(QSize(ICON, ICON), devicePixelRatioF()));
    line->addWidget(icon);
    auto *title =
        label(tr("May Quillon talk to your file manager?"), QPalette::WindowText, heading);
    setWeight(title, 1.35);
    line->addWidget(title, 1);
    return heading;
}

QWidget *AppleEventPermissionViewController::buildReason(const QString &title,
                                                         const QString &sentence)
{
    auto *reason = new QWidget(this);
    auto *column = new QVBoxLayout(reason);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(NEAR);
    QLabel *heading = label(title, QPalette::WindowText, reason);
    setWeight(heading, 1.0);
    column->addWidget(heading);
    column->addWidget(paragraph(sentence, QPalette::WindowText, reason));
    return reason;
}

QLayout *AppleEventPermissionViewController::buildButtons()
{
    auto *line = new QHBoxLayout;
    line->setSpacing(NEAR);
    line->addStretch();
    disableButton_ = new PanelButton(tr("Quit"), PanelButton::Rank::secondary, this);
    connect(disableButton_, &QPushButton::clicked, this,
            &AppleEventPermissionViewController::disable);
    line->addWidget(disableButton_);
    enableButton_ = new PanelButton(tr("Allow"), PanelButton::Rank::primary, this);
    connect(enableButton_, &QPushButton::clicked, this,
            &AppleEventPermissionViewController::enable);
    line->addWidget(enableButton_);
    setFocusProxy(enableButton_);
    return line;
}

void AppleEventPermissionViewController::setPanelPalette(const PanelPalette &palette)
{
    setPalette(palette.widgetPalette());
    disableButton_->setPanelPalette(palette);
    enableButton_->setPanelPalette(palette);
}

void AppleEventPermissionViewController::enable()
{
    if (delegate_ == nullptr || isEnabling_)
        return;
    isEnabling_ = true;
    enableButton_->setEnabled(false);
    services_.access.enable();

    // Whichever comes first; this is gone when the second does.
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
    services_.main.postDelayed(PATIENCE, finish);
}

void AppleEventPermissionViewController::disable()
{
    if (delegate_ != nullptr)
        delegate_->terminate();
}

} // namespace quillon
