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
