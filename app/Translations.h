#pragma once

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace quillon {

/// Shows the application, and the toolkit's own texts, in the first of the languages that has a
/// catalogue, or in English when none has. A language is named as in "de" or "de-AT". It is called
/// before the first window is made. Main thread only.
void translateApplication(QCoreApplication &application,
                          const QStringList &languages = QLocale::system().uiLanguages());

} // namespace quillon
