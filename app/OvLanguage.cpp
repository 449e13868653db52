#include "OvLanguage.h"

#include "OvQtCompat.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace {

const char* const kResourceDir = ":/i18n";
const char* const kName = "ovmeasure";
const char* const kPrefix = "ovmeasure_";

std::unique_ptr<QTranslator> theOwnTranslator;
std::unique_ptr<QTranslator> theQtTranslator;

} // namespace

// The translations live in a static library: their resource is registered by
// hand (outside any namespace, as Q_INIT_RESOURCE needs).
static void initResources()
{
    static bool done = false;
    if (!done) {
        Q_INIT_RESOURCE(ovtranslations);
        done = true;
    }
}

QString OvLanguage::install(const QString& aLanguage)
{
    initResources();
    for (auto* translator : { &theOwnTranslator, &theQtTranslator }) {
        if (*translator)
            QCoreApplication::removeTranslator(translator->get());
        translator->reset();
    }

    const QLocale locale = aLanguage.isEmpty() ? QLocale::system() : QLocale(aLanguage);
    // QLocale("xx") of an unknown code is the C locale: no translation.
    if (locale.language() == QLocale::C)
        return aLanguage.isEmpty() ? QStringLiteral("en") : QString();

    auto own = std::make_unique<QTranslator>();
    if (own->load(locale, QString::fromLatin1(kName), QStringLiteral("_"), QString::fromLatin1(kResourceDir))) {
        QCoreApplication::installTranslator(own.get());
        theOwnTranslator = std::move(own);
        auto qt = std::make_unique<QTranslator>();
        if (qt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), OvQtCompat::translationsPath())) {
            QCoreApplication::installTranslator(qt.get());
            theQtTranslator = std::move(qt);
        }
        return QFileInfo(theOwnTranslator->filePath()).completeBaseName().mid(int(qstrlen(kPrefix)));
    }
    // The first preferred language that is English, or none that is
    // translated, keeps the source texts.
    for (const QString& name : locale.uiLanguages()) {
        if (name.startsWith(QLatin1String("en")))
            return QStringLiteral("en");
    }
    return aLanguage.isEmpty() ? QStringLiteral("en") : QString();
}

QStringList OvLanguage::available()
{
    initResources();
    QStringList codes{ QStringLiteral("en") };
    const QStringList files = QDir(QString::fromLatin1(kResourceDir))
                                  .entryList({ QString::fromLatin1(kPrefix) + QStringLiteral("*.qm") });
    for (const QString& file : files)
        codes << QFileInfo(file).completeBaseName().mid(int(qstrlen(kPrefix)));
    codes.sort();
    return codes;
}
