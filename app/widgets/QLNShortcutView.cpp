#include "app/widgets/QLNShortcutView.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "shortcut/QLNShortcutValidator.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillon {

namespace {

/// The keys that may be proposed. The first free one is.
constexpr const char *PROPOSALS[] = {"Ctrl+Alt+Space", "Alt+Super+Space", "Ctrl+Super+Space",
                                     "Ctrl+Alt+F"};

} // namespace

QLNShortcutView::QLNShortcutView(QLNShortcutMonitor &monitor, QLNShortcutBinder &binder,
                                 HotKey &service, QWidget *parent)
    : QWidget(parent),
      monitor_(monitor),
      binder_(binder),
      service_(service),
      button_(pushButton({}, ButtonRank::control, this)),
      message_(new FormNote({}, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::FORM_NEAR);
    buildButton();
    message_->setBuddy(button_);
    layout->addWidget(button_, 0, Qt::AlignLeft);
    layout->addWidget(message_);
    connect(&monitor_, &QLNShortcutMonitor::changed, this, &QLNShortcutView::showShortcut);
    connect(&binder_, &QLNShortcutBinder::outcomeChanged, this, &QLNShortcutView::showFault);
    showShortcut();
    showFault();
}

QLNShortcutView::~QLNShortcutView()
{
    stopRecording();
}

void QLNShortcutView::buildButton()
{
    button_->setToolTip(tr("Click, then press the keys that bring the panel up"));
    button_->setMinimumWidth(metrics::FORM_CONTROL);
    button_->installEventFilter(this);
    setFocusProxy(button_);
    connect(button_, &QPushButton::clicked, this, [this] {
        if (isRecording_)
            stopRecording();
        else
            startRecording();
    });
}

void QLNShortcutView::startRecording()
{
    if (isRecording_)
        return;
    if (!service_.isPossible()) {
        say(QLNShortcutValidator::words(QLNShortcutValidator::Fault::impossible, {}));
        return;
    }
    isRecording_ = true;
    // Neither our own key nor the window manager's may keep the press from us.
    binder_.pause();
    button_->setFocus();
    button_->grabKeyboard();
    say({});
    message_->setSentence(tr("Escape keeps the shortcut as it is, Backspace removes it."));
    button_->setAccessibleDescription(message_->text());
    showShortcut();
    Q_EMIT recordingChanged(true);
}

void QLNShortcutView::stopRecording()
{
    if (!isRecording_)
        return;
    isRecording_ = false;
    button_->releaseKeyboard();
    binder_.resume();
    showShortcut();
    showFault();
    Q_EMIT recordingChanged(false);
}

bool QLNShortcutView::recordAtOnce(const QKeyEvent &event)
{
    const bool isCombination =
        event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier) ||
        (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35);
    if (!isCombination || isRecording_ || !service_.isPossible() ||
        service_.keyName(event.nativeScanCode(), event.nativeVirtualKey()).empty())
        return false;
    startRecording();
    keyPressed(event);
    return true;
}

void QLNShortcutView::propose()
{
    if (monitor_.shortcut() || isRecording_)
        return;
    proposed_.reset();
    // Only one key can be tried at a time.
    binder_.pause();
    const QLNShortcutValidator validator(service_);
    for (const char *text : PROPOSALS) {
        const auto shortcut = QLNShortcut::fromText(text);
        if (!proposed_ && !validator.fault(*shortcut->keys))
            proposed_ = shortcut;
    }
    binder_.resume();
    showShortcut();
}

bool QLNShortcutView::isProposing() const
{
    return proposed_ && !monitor_.shortcut();
}

bool QLNShortcutView::storeProposed()
{
    return !isProposing() || monitor_.store(proposed_);
}

void QLNShortcutView::setSentence(const QString &sentence)
{
    sentence_ = sentence;
    showFault();
}

bool QLNShortcutView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != button_ || !isRecording_)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // A key that is a command elsewhere in the window is recorded here like any other.
        event->accept();
        return true;
    case QEvent::KeyPress:
        keyPressed(*static_cast<QKeyEvent *>(event));
        return true;
    case QEvent::KeyRelease:
        return true;
    case QEvent::FocusOut:
        stopRecording();
        return false;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void QLNShortcutView::hideEvent(QHideEvent *event)
{
    stopRecording();
    QWidget::hideEvent(event);
}

void QLNShortcutView::keyPressed(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held = event.modifiers();
    const bool isAlone = (held & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isAlone && event.key() == Qt::Key_Escape)
        return stopRecording();
    if (isAlone && event.key() == Qt::Key_Tab) {
        stopRecording();
        focusNextChild();
        return;
    }
    if (isAlone && event.key() == Qt::Key_Backspace)
        return store(std::nullopt);
    const std::string key = service_.keyName(event.nativeScanCode(), event.nativeVirtualKey());
    // This is a modifier. The key that goes with it is still to come.
    if (key.empty() || event.isAutoRepeat())
        return;
    choose({.control = held.testFlag(Qt::ControlModifier),
            .alt = held.testFlag(Qt::AltModifier),
            .shift = held.testFlag(Qt::ShiftModifier),
            .super = held.testFlag(Qt::MetaModifier),
            .key = key});
}

void QLNShortcutView::choose(const KeyCombination &keys)
{
    const QLNShortcut shortcut{.keys = keys};
    if (const auto fault = QLNShortcutValidator(service_).fault(keys))
        return say(QLNShortcutValidator::words(*fault, shortcut));
    store(shortcut);
}

void QLNShortcutView::store(const std::optional<QLNShortcut> &shortcut)
{
    const bool isStored = monitor_.store(shortcut);
    if (!shortcut)
        proposed_.reset();
    stopRecording();
    if (!isStored)
        say(writeFault());
}

void QLNShortcutView::showShortcut()
{
    const auto &shortcut = isProposing() ? proposed_ : monitor_.shortcut();
    QString text = tr("Record Shortcut");
    if (isRecording_)
        text = tr("Press the keys…");
    else if (shortcut && !shortcut->keys)
        text = tr("Bound by the desktop");
    else if (shortcut)
        text = shortcut->keyNames().join(u'+');
    button_->setText(text);
    button_->setAccessibleName(tr("Shortcut that shows the panel: %1").arg(text));
}

void QLNShortcutView::showFault()
{
    if (isRecording_)
        return;
    const auto outcome = binder_.outcome();
    const auto fault = outcome ? QLNShortcutValidator::fault(*outcome) : std::nullopt;
    const auto &shortcut = monitor_.shortcut();
    say(fault && shortcut ? QLNShortcutValidator::words(*fault, *shortcut) : QString());
}

void QLNShortcutView::say(const QString &fault)
{
    message_->setSentence(sentence_);
    message_->sayFault(fault);
    button_->setAccessibleDescription(fault);
}

} // namespace quillon
