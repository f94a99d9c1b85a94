#pragma once

#include "app/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace quillon {

/// Has what is made while it lives speak the first of the languages that there is.
class SpokenLanguage
{
public:
    explicit SpokenLanguage(const QStringList &languages)
    {
        translateApplication(*qApp, languages);
    }
    ~SpokenLanguage()
    {
        QLocale::setDefault(locale_);
        const auto all = qApp->findChildren<QTranslator *>();
        for (QTranslator *translator : all)
            if (!before_.contains(translator))
                delete translator;
    }
    SpokenLanguage(const SpokenLanguage &) = delete;
    SpokenLanguage &operator=(const SpokenLanguage &) = delete;

private:
    const QLocale locale_;
    const QList<QTranslator *> before_ = qApp->findChildren<QTranslator *>();
};

} // namespace quillon
