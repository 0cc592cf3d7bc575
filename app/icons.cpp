#include "app/icons.h"

#include <QDir>

// A static library's resources are left out of the program unless something names them. The toolkit's macro
// declares a global function, hence no namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(kelvoratool);
}

QIcon builtinIcon(const QString &name)
{
    registerResources();
    return QIcon(QStringLiteral(":/icons/") + name);
}

QIcon applicationIcon()
{
    registerResources();
    QIcon icon;
    // Each size as it is drawn for it: scaled down from one, the small ones would be a blur.
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addFile(QStringLiteral(":/icons/app-%1").arg(size));
    return icon;
}
