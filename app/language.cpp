#include "app/language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

// A static library's resources are left out of the program unless something names them. The toolkit's macro
// declares a global function, hence no namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(translations);
}

void language::load(const QString &name)
{
    registerResources();
    auto *own = new QTranslator(qApp);
    if (!own->load(name.isEmpty() ? QLocale::system() : QLocale(name), QStringLiteral("kelvoratool"),
                   QStringLiteral("_"), QStringLiteral(":/translations")))
        return;
    // What the toolkit has beyond the texts that ours repeats, where it is installed: in the same language.
    auto *toolkit = new QTranslator(qApp);
    if (toolkit->load(QStringLiteral("qtbase_") + own->language(),
                      QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(toolkit);
    // The latest is asked first.
    QCoreApplication::installTranslator(own);
}
