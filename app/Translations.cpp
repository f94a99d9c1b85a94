#include "app/Translations.h"

#include <QLibraryInfo>
#include <QTranslator>

/// Outside of the namespace, where the resource compiler puts what this calls.
static void initializeCatalogues()
{
    Q_INIT_RESOURCE(catalogues);
}

namespace quillon {

namespace {

/// What is drawn in English differs from the texts in the sources, so English is a catalogue as
/// well.
constexpr const char *FALLBACK = "en";

bool install(QCoreApplication &application, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(&application);
    // A catalogue of the language serves its every country.
    if (translator->load(name, folder) && application.installTranslator(translator))
        return true;
    delete translator;
    return false;
}

} // namespace

void translateApplication(QCoreApplication &application, const QStringList &languages)
{
    initializeCatalogues();
    for (QString language : languages + QStringList(QLatin1String(FALLBACK))) {
        language.replace(u'-', u'_');
        if (!install(application, QStringLiteral("quillon_") + language,
                     QStringLiteral(":/quillon/translations")))
            continue;
        // Whoever installed the toolkit without its translations reads English buttons.
        install(application, QStringLiteral("qtbase_") + language,
                QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        return;
    }
}

} // namespace quillon
