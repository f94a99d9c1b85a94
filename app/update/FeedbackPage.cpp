#include "app/update/FeedbackPage.h"

#include "actions/ActionModelFinder.h"
#include "base/DefaultsStore.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/Preferences.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QStringList>
#include <QSysInfo>

#include <algorithm>
#include <array>

namespace quillon {

namespace {

QString line(std::string_view name, const QStringList &values)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) +
           QStringLiteral(": ") + values.join(QStringLiteral(", "));
}

QString notSet()
{
    return QStringLiteral("not set");
}

/// Stands for a value that the program does not know, since such a value may hold anything.
QString somethingElse()
{
    return QStringLiteral("something else");
}

/// Returns the variable of the session if it looks like one.
QString sessionVariable(const char *name)
{
    static const QRegularExpression WORDS(QStringLiteral("^[A-Za-z0-9:._-]{1,64}$"));
    const QString value = qEnvironmentVariable(name);
    return WORDS.match(value).hasMatch() ? value : QStringLiteral("unknown");
}

QStringList systemLines()
{
    QStringList lines{
        line("Qt", {QString::fromLatin1(qVersion())}),
        line("system", {QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture()}),
        line("desktop", {sessionVariable("XDG_CURRENT_DESKTOP"),
                         sessionVariable("XDG_SESSION_TYPE"), QGuiApplication::platformName()})};
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QSize size = screen->size();
        lines += line("screen", {QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()),
                                 QStringLiteral("factor %1").arg(screen->devicePixelRatio())});
    }
    return lines;
}

QString boolean(const DefaultsStore &defaults, std::string_view key)
{
    const auto value = defaults.boolean(key);
    return !value ? notSet() : *value ? QStringLiteral("true") : QStringLiteral("false");
}

/// Returns the stored choice, which is one of the words that the program itself writes.
QString choice(const DefaultsStore &defaults, const PreferencesSelectList &list)
{
    if (!defaults.contains(list.key()))
        return notSet();
    const std::vector<std::string> keys = list.keys();
    const auto value = std::ranges::find(keys, defaults.string(list.key()).value_or(""));
    return value == keys.end() ? somethingElse() : QString::fromStdString(*value);
}

/// Returns the number of elements in the list or dictionary.
QString count(const DefaultsStore &defaults, std::string_view key)
{
    if (!defaults.contains(key))
        return notSet();
    if (const auto list = defaults.stringArray(key))
        return QString::number(list->size());
    if (const auto dictionary = defaults.dictionary(key))
        return QString::number(dictionary->size());
    return somethingElse();
}

QString fileManager(const DefaultsStore &defaults)
{
    static constexpr std::array KNOWN = {"nautilus", "nemo",    "caja",
                                         "thunar",   "dolphin", "pcmanfm"};
    if (!defaults.contains(PreferenceKeys::FILE_MANAGER))
        return notSet();
    const QString id =
        QString::fromStdString(defaults.string(PreferenceKeys::FILE_MANAGER).value_or(""));
    for (const char *name : KNOWN) {
        if (id.contains(QLatin1String(name), Qt::CaseInsensitive))
            return QString::fromLatin1(name);
    }
    return somethingElse();
}

/// Returns the number of actions of each kind.
QStringList actions(DefaultsStore &defaults)
{
    if (!defaults.contains(PreferenceKeys::ACTIONS_LIST))
        return {notSet()};
    const std::vector<ActionModel> actions = ActionModelFinder(defaults).loadActions();
    QStringList texts;
    for (const ActionType &type : ActionType::all) {
        const auto number = std::ranges::count(actions, type, &ActionModel::actionType);
        texts += QStringLiteral("%1 %2").arg(number).arg(QString::fromStdString(type.key()));
    }
    return texts;
}

QStringList settingsLines(DefaultsStore &defaults)
{
    using Keys = PreferenceKeys;
    const Preferences preferences(defaults);
    QStringList lines;
    for (const std::string_view key : {Keys::BOOKMARKS, Keys::EXCLUDE_FOLDER_PATTERNS,
                                       Keys::INCLUDE_FILE_PATTERNS, Keys::RECENT_ACCESS_SCORE_DATA})
        lines += line(key, {count(defaults, key)});
    for (const PreferencesSelectList *list :
         {&preferences.quickSearchBehavior, &preferences.openInFinderBehavior,
          &preferences.matchOrder})
        lines += line(list->key(), {choice(defaults, *list)});
    for (const std::string_view key :
         {Keys::FINDER_QUICK_SEARCH, Keys::ENABLE_BETA_UPDATES, Keys::PREEMPTIVE_APPLE_EVENT_ACCESS,
          Keys::DEBUG_LOG_FS_EVENTS})
        lines += line(key, {boolean(defaults, key)});
    lines += line(Keys::ACTIONS_LIST, actions(defaults));
    lines += line(Keys::FILE_MANAGER, {fileManager(defaults)});
    lines += line(Keys::SHORTCUT,
                  {defaults.contains(Keys::SHORTCUT) ? QStringLiteral("set") : notSet()});
    return lines;
}

constexpr const char *PAGE = R"(<!DOCTYPE html>
<html>
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>%1</title>
<style>
:root { color-scheme: light dark; --quiet: #5c646e; --tint: #e3edfb; }
@media (prefers-color-scheme: dark) { :root { --quiet: #a2abb6; --tint: #2b3f5c; } }
body { font: 1rem/1.5 sans-serif; max-width: 44rem; margin: 3rem auto; padding: 0 1.25rem; }
pre { background: var(--tint); padding: 1rem; border-radius: 8px; white-space: pre-wrap; }
.quiet { color: var(--quiet); }
</style>
</head>
<body>
<h1>%1</h1>
%2
<pre>%3</pre>
</body>
</html>
)";

} // namespace

QString FeedbackPage::report(const std::string &version, DefaultsStore &defaults)
{
    QStringList lines{line("Quillon", {QString::fromStdString(version)})};
    lines += systemLines();
    lines += settingsLines(defaults);
    return lines.join(u'\n');
}

QString FeedbackPage::instructions()
{
    const QString paragraph = QStringLiteral("<p>%1</p>\n");
    QString html = paragraph.arg(
        tr("Thank you for taking the time. Whoever you have Quillon from takes your feedback: for "
           "a package, the bug tracker of your system's distribution.")
            .toHtmlEscaped());
    html += QStringLiteral("<ul>\n");
    for (const QString &item : {tr("What did you do, step by step?"), tr("What happened?"),
                                tr("What did you expect instead?"),
                                tr("For a wish: what would you like to be able to do?")})
        html += QStringLiteral("<li>%1</li>\n").arg(item.toHtmlEscaped());
    html += QStringLiteral("</ul>\n");
    html += paragraph.arg(
        tr("If something went wrong, add the following lines. They tell the version, the system "
           "and the settings, and nothing of your own: no names of folders, no patterns, no "
           "commands.")
            .toHtmlEscaped());
    html +=
        QStringLiteral("<p class=\"quiet\">%1</p>\n")
            .arg(
                tr("Nothing has been sent. This page is a file on your computer.").toHtmlEscaped());
    return html;
}

QByteArray FeedbackPage::html(const QString &report)
{
    return QString::fromUtf8(PAGE)
        .arg(tr("Feedback on Quillon").toHtmlEscaped(), instructions(), report.toHtmlEscaped())
        .toUtf8();
}

} // namespace quillon
