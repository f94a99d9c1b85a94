#pragma once

#include "app/panel/PanelSource.h"

#include <QCoreApplication>
#include <QString>

namespace quillon {

/// What the panel says about the index.
class PanelTexts
{
    Q_DECLARE_TR_FUNCTIONS(PanelTexts)

public:
    /// What stands in place of the rows when there are none.
    struct Message
    {
        QString title;
        QString sentence;
    };
    /// Why there are no rows for the query and what to do about it.
    static Message message(const PanelSource::State &state, const QString &query);
    /// How much is indexed, in a word or two.
    static QString status(const PanelSource::State &state);
};

} // namespace quillon
