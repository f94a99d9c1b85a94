#include "app/Translations.h"

#include <QLibraryInfo>
#include <QTranslator>

/// This is outside the namespace, where the resource compiler puts the function that it calls.
static void initializeCatalogues()
{
    Q_INIT_RESOURCE(catalogues);
}

namespace quillon {

namespace {

/// The English texts that are shown differ from the texts in the sources, so English has a
/// catalogue too.
constexpr const char *FALLBACK = "en";

bool install(QCoreApplication &application, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(&application);
    // A catalogue of a language serves all countries.
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
        // If the toolkit's translations are not installed, its buttons are in English.
        install(application, QStringLiteral("qtbase_") + language,
                QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        // Numbers and times are written as in the texts around them.
        QLocale::setDefault(QLocale(language));
        return;
    }
}

} // namespace quillon
