#pragma once

#include "app/panel/PanelSource.h"

#include <QCoreApplication>
#include <QString>

#include <string>
#include <string_view>

namespace quillon {

struct ActionFailure;

/// The texts of the panel about the index and about the rows that it could not open.
class PanelTexts
{
    Q_DECLARE_TR_FUNCTIONS(PanelTexts)

public:
    /// A short line and what to do.
    struct Message
    {
        QString title;
        QString sentence;
    };
    /// Says why there are no rows for the query and what to do about it.
    static Message message(const PanelSource::State &state, const QString &query);
    /// Says in a word or two how much is indexed and which folders are missing, or that the
    /// settings could not be written.
    static QString status(const PanelSource::State &state);
    /// Says what went wrong with a row and what to do about it.
    static Message failure(const ActionFailure &failure);
    /// Says that the path is not there now, since the include folder that holds it is away.
    static Message away(const std::string &path, const std::string &folder);
    /// Returns the name of the disk that holds an include folder that is away, as far as the path
    /// tells it: the name of the mount point where desktops mount disks, else the folder's own.
    static QString diskName(std::string_view folder);
    /// Return the title of a window that shows a failure, and the text of the button that closes
    /// it.
    static QString failureWindow();
    static QString dismissal();
};

} // namespace quillon
