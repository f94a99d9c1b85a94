#include "app/SettingsGate.h"

#include "base/DefaultsStore.h"
#include "platform/Workspace.h"
#include "prefs/Preferences.h"

#include <QStringList>

#include <cstdio>
#include <utility>

namespace quillon {

namespace {

QString drawn(const std::string &text)
{
    return QString::fromStdString(text);
}

} // namespace

bool SettingsGate::isOpen(DefaultsStore &defaults, const std::string &file)
{
    // The store itself says on standard error that it cannot read the file.
    if (defaults.fault())
        return false;
    const auto choices = Preferences(defaults).wrongChoices();
    for (const WrongChoice &choice : choices)
        std::fprintf(stderr, "quillon: %s: %s\n", file.c_str(), choice.description().c_str());
    return choices.empty();
}

SettingsGate::SettingsGate(const Services &services, std::string file)
    : services_(services),
      file_(std::move(file)),
      window_(tr("Quillon – Settings"), services.windowSystem),
      receiver_(services.changes.onChange([this] { look(); }))
{}

bool SettingsGate::wait()
{
    look();
    if (!isOpen_)
        loop_.exec();
    window_.hide();
    return isOpen_;
}

void SettingsGate::look()
{
    if (isBeginningAnew_)
        return;
    if (const auto fault = services_.defaults.fault())
        return show(unreadable(*fault));
    const auto choices = Preferences(services_.defaults).wrongChoices();
    if (!choices.empty())
        return show(wrong(choices));
    isOpen_ = true;
    loop_.quit();
}

void SettingsGate::show(Notice notice)
{
    const bool isNew = notice.text != notice_.text;
    notice_ = std::move(notice);
    if (!window_.isVisible())
        present();
    else if (isNew)
        window_.update(notice_);
}

Notice SettingsGate::unreadable(const DefaultsFault &fault)
{
    // The German texts of the parser end with a blank.
    const QString reason = drawn(fault.reason).trimmed();
    const QString what = fault.line == 0
                             ? tr("%1 cannot be read: %2.").arg(drawn(fault.file), reason)
                             : tr("There is a mistake in line %2, column %3 of %1: %4.")
                                   .arg(drawn(fault.file), QString::number(fault.line),
                                        QString::number(fault.column), reason);
    return {.title = tr("The settings cannot be read"),
            .text = what + QStringLiteral("\n\n") +
                    tr("Quillon starts as soon as the file is right. If you begin anew instead, "
                       "the file gets another name and Quillon starts with its set-up."),
            .dismissal = tr("&Quit"),
            .dismissed = [this] { quit(); },
            .primary = opening(),
            .aside = Notice::Choice{tr("Begin &Anew"), [this] { beginAnew(); }, true}};
}

Notice SettingsGate::wrong(const std::vector<WrongChoice> &choices)
{
    QString text;
    for (const WrongChoice &choice : choices) {
        QStringList permitted;
        for (const std::string &each : choice.permitted)
            permitted << tr("“%1”").arg(drawn(each));
        text +=
            tr("“%1” is “%2”, and has to be one of these: %3.")
                .arg(drawn(choice.key), drawn(choice.value), permitted.join(QStringLiteral(", "))) +
            QStringLiteral("\n\n");
    }
    return {.title = tr("A setting is wrong"),
            .text = text + tr("Quillon starts as soon as this is right in %1.").arg(drawn(file_)),
            .dismissal = tr("&Quit"),
            .dismissed = [this] { quit(); },
            .primary = opening()};
}

Notice::Choice SettingsGate::opening()
{
    return {tr("&Open the File"), [this] { openFile(); }, true};
}

void SettingsGate::openFile()
{
    if (services_.workspace.open(file_))
        return;
    Notice notice = notice_;
    notice.text =
        tr("No program opens the file by itself. Open it in a text editor: %1").arg(drawn(file_));
    show(notice);
}

void SettingsGate::beginAnew()
{
    const auto kept = services_.defaults.beginAnew();
    if (kept && kept->empty())
        return look();
    Notice notice = notice_;
    if (kept) {
        isBeginningAnew_ = true;
        notice = {.title = tr("Your former settings are kept"),
                  .text =
                      tr("They are in %1. Quillon now starts with its set-up.").arg(drawn(*kept)),
                  .dismissal = tr("&Continue"),
                  .dismissed = [this] {
                      isBeginningAnew_ = false;
                      look();
                  }};
    } else {
        notice.text = tr("%1 could not be renamed, so nothing was changed.").arg(drawn(file_));
    }
    show(notice);
}

} // namespace quillon
