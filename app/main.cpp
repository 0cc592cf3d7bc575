#include "app/mainwindow.h"

#include <QApplication>
#include <QNetworkProxyFactory>

int main(int argc, char *argv[])
{
    // The boat is always reached directly. Otherwise the toolkit takes every socket to the proxy of a
    // computer's office, those for heartbeats too.
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    // Read by the toolkit while the application object is made.
    qputenv("QT_AUTO_SCREEN_SCALE_FACTOR", "1");
    // Laptops are often set to 150 %, which rounded to 200 % would make the window larger than their screen.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    // The icons have a second size for such screens.
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kelvora"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("kelvora.example"));
    QCoreApplication::setApplicationName(QStringLiteral("KelvoraTool"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELVORA_VERSION));
    Mainwindow window;
    window.show();
    return QApplication::exec();
}
