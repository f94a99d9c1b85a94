#pragma once

#include "app/panel/PanelSource.h"

#include <QCoreApplication>
#include <QString>

namespace quillon {

struct ActionFailure;

/// What the panel says about the index and about the rows that it could not open.
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
    /// Why there are no rows for the query and what to do about it.
    static Message message(const PanelSource::State &state, const QString &query);
    /// How much is indexed, in a word or two, and what is away.
    static QString status(const PanelSource::State &state);
    /// What went wrong with a row and what to do about it.
    static Message failure(const ActionFailure &failure);
    /// The title of a window that shows a failure, and the button that takes it away.
    static QString failureWindow();
    static QString dismissal();
};

} // namespace quillon
