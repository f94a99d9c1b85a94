#pragma once

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace quillon {

/// Has the application speak the first of the languages that there is a catalogue for, its toolkit
/// included; English when there is none. A language is named as in "de" or "de-AT". Before the
/// first window is made; main thread only.
void translateApplication(QCoreApplication &application,
                          const QStringList &languages = QLocale::system().uiLanguages());

} // namespace quillon
