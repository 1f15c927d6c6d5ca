// SPDX-License-Identifier: MIT
#include "Translations.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

using namespace Qt::StringLiterals;

void installTranslations(const QLocale &locale)
{
    auto program = std::make_unique<QTranslator>();
    if (!program->load(locale, u"vellora"_s, u"_"_s, u":/translations"_s)) {
        return;
    }
    // Qt's texts in the same language, and not in another of the user's languages.
    const QLocale language(program->language());
    auto qt = std::make_unique<QTranslator>();
    if (qt->load(language, u"qtbase"_s, u"_"_s,
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        qt->setParent(qApp);
        QCoreApplication::installTranslator(qt.release());
    }
    program->setParent(qApp);
    QCoreApplication::installTranslator(program.release());
    QGuiApplication::setLayoutDirection(language.textDirection());
}
