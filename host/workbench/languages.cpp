#include "workbench/languages.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace {

const QString prefix = QStringLiteral("extpoint_");
// The language that the sources are written in.
const QString sourceLanguage = QStringLiteral("en");

QString catalogues()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/../share/extpoint/translations");
}

bool install(const QLocale &locale, const QString &name, const QString &directory)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, name, QStringLiteral("_"), directory))
        return false;
    translator->setParent(QCoreApplication::instance());
    return QCoreApplication::installTranslator(translator.release());
}

} // namespace

bool Workbench::useLanguage(const QString &wanted)
{
    const QLocale locale = wanted.isEmpty() ? QLocale::system() : QLocale(wanted);
    // The system may have a language for texts and another one for numbers.
    const QLocale first(locale.uiLanguages().value(0));
    const bool isSource = first.language() == QLocale::English || first.language() == QLocale::C;
    if (!wanted.isEmpty()) {
        // A name that is none stands for "C".
        if (isSource ? !wanted.startsWith(sourceLanguage) : !install(locale, QStringLiteral("extpoint"), catalogues()))
            return false;
        QLocale::setDefault(locale);
    } else if (isSource || !install(locale, QStringLiteral("extpoint"), catalogues())) {
        return true;
    }
    // Dialogs that are half English look worse than those that are all of it.
    if (!isSource)
        (void)install(locale, QStringLiteral("qtbase"), QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    return true;
}

QStringList Workbench::languages()
{
    QStringList found { sourceLanguage };
    const QStringList files = QDir(catalogues()).entryList({ prefix + QLatin1String("*.qm") }, QDir::Files);
    for (const QString &file : files)
        found.append(file.mid(prefix.size()).section(QLatin1Char('.'), 0, 0));
    return found;
}
