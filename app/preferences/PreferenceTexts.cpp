#include "app/preferences/PreferenceTexts.h"

#include "app/widgets/KeyNames.h"

#include <QCoreApplication>

#include <algorithm>
#include <string_view>

namespace quillon {

namespace {

struct Words
{
    std::string_view title;
    const char *drawn;
};

constexpr Words WORDS[] = {
    {"New Window", QT_TRANSLATE_NOOP("PreferenceTexts", "New Window")},
    {"Existing Window", QT_TRANSLATE_NOOP("PreferenceTexts", "Existing Window")},
    {"By the whole path", QT_TRANSLATE_NOOP("PreferenceTexts", "By the whole path")},
    {"Names first", QT_TRANSLATE_NOOP("PreferenceTexts", "Names first")},
    {"Open in Default App", QT_TRANSLATE_NOOP("PreferenceTexts", "Open in Default App")},
    {"Show in Finder", QT_TRANSLATE_NOOP("PreferenceTexts", "Show in File Manager")},
    {"Show Parent in Finder", QT_TRANSLATE_NOOP("PreferenceTexts", "Show Parent in File Manager")},
    {"Copy Path to Clipboard", QT_TRANSLATE_NOOP("PreferenceTexts", "Copy Path to Clipboard")},
    {"Open Application", QT_TRANSLATE_NOOP("PreferenceTexts", "Open Application")},
    {"Execute Shell Command", QT_TRANSLATE_NOOP("PreferenceTexts", "Execute Shell Command")},
    {"the selected row", QT_TRANSLATE_NOOP("PreferenceTexts", "the selected row")},
};

QString translated(const char *text)
{
    return QCoreApplication::translate("PreferenceTexts", text);
}

} // namespace

QString drawnTitle(const std::string &title)
{
    const auto *words = std::ranges::find(WORDS, title, &Words::title);
    return words == std::end(WORDS) ? QString::fromStdString(title) : translated(words->drawn);
}

QList<FormTextRun> drawnDescription(const ActionModel &action)
{
    //: A sentence about the keys %1: what they do (%2), and to or with what (%3).
    const QString sentence = translated(QT_TRANSLATE_NOOP("PreferenceTexts", "%1 will %2 with %3"));
    QList<FormTextRun> runs;
    qsizetype from = 0;
    for (qsizetype at = sentence.indexOf(u'%'); at >= 0 && at + 1 < sentence.size();
         at = sentence.indexOf(u'%', from)) {
        if (at > from)
            runs << FormTextRun{.text = sentence.mid(from, at - from)};
        const QChar part = sentence.at(at + 1);
        if (part == u'1')
            runs << FormTextRun{.text = keyNames(action.flags, u'+'), .isBold = true};
        else if (part == u'2')
            runs << FormTextRun{.text = drawnTitle(action.actionType.key()), .isBold = true};
        else
            runs << FormTextRun{.text = drawnTitle(action.actionTarget.key())};
        from = at + 2;
    }
    if (from < sentence.size())
        runs << FormTextRun{.text = sentence.mid(from)};
    return runs;
}

} // namespace quillon
