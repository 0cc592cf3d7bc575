#include "app/commandline.h"
#include "app/language.h"
#include "app/logfile.h"
#include "app/mainwindow.h"

#include <QApplication>
#include <QNetworkProxyFactory>
#include <QOperatingSystemVersion>

int main(int argc, char *argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("Kelvora"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("kelvora.example"));
    QCoreApplication::setApplicationName(QStringLiteral("KelvoraTool"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELVORA_VERSION));
    // The toolkit's own options are still among these.
    const commandline::Options asked = commandline::parse(commandline::asciiArguments(argc, argv));
    if (asked.wantsHelp || asked.wantsVersion) {
        const QCoreApplication withoutDisplay(argc, argv);
        language::load(asked.language);
        commandline::answer(asked);
    }
    // The boat is always reached directly. Otherwise the toolkit takes every socket to the proxy of a
    // computer's office, those for heartbeats too.
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    // Read by the toolkit while the application object is made.
    qputenv("QT_AUTO_SCREEN_SCALE_FACTOR", "1");
    // Laptops with Windows are often set to 150 %, which rounded to 200 % would make the window larger than
    // their screen. Other systems tell a scale from the screen's size in millimetres, which is none that was
    // chosen.
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows)
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
            Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    // The icons have a second size for such screens.
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    LogFile log;
    const QApplication application(argc, argv);
    language::load(asked.language);
    const commandline::Options options = commandline::parse(QCoreApplication::arguments());
    if (!options.error.isEmpty())
        commandline::refuse(options.error);
    if (options.logFile && !log.start(*options.logFile))
        commandline::refuse(log.errorString());
    Mainwindow window;
    window.show();
    return QApplication::exec();
}
