#pragma once

#include <QCoreApplication>
#include <QString>

#include <string>

namespace quillon {

class DefaultsStore;

/// A page for the web browser that says what to send and gathers what is worth knowing about this
/// Quillon. Nothing of the user's own words is in it: no paths, names of folders, patterns,
/// commands or keys, only numbers and values that the program itself defines. In English where it
/// is for those who read the feedback.
class FeedbackPage
{
    Q_DECLARE_TR_FUNCTIONS(FeedbackPage)

public:
    /// Main thread only. Version, system, desktop and settings, a line for each.
    static QString report(const std::string &version, DefaultsStore &defaults);
    /// The page, as HTML in UTF-8, around a report.
    static QByteArray html(const QString &report);

private:
    static QString instructions();
};

} // namespace quillon
