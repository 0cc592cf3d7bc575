// The tool's start as far as its first painted window, beside startup_empty.

#include "app/mainwindow.h"
#include "benchmarks/firstpaint.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KelvoraTool"));
    QCoreApplication::setApplicationVersion(QStringLiteral("3.6"));
    Mainwindow window;
    new FirstPaint(&window);
    window.show();
    return QApplication::exec();
}
