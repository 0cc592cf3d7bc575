// What startup_tool is compared with: an empty tab widget of the same size.

#include "benchmarks/firstpaint.h"

#include <QApplication>
#include <QTabWidget>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QTabWidget window;
    for (int i = 1; i <= 5; ++i)
        window.addTab(new QWidget, QStringLiteral("Tab %1").arg(i));
    window.resize(900, 640);
    new FirstPaint(&window);
    window.show();
    return QApplication::exec();
}
