#include "discovery/devices.h"

#include <QCoreApplication>

QString n6ModelName(int model)
{
    switch (model) {
    case 1:
        return QStringLiteral("N6 Larch");
    case 2:
        return QStringLiteral("N6 Moss");
    case 3:
        return QStringLiteral("N6 Flint");
    case 4:
        return QStringLiteral("N6 Fjord");
    case 5:
        return QStringLiteral("N6 Heron");
    default:
        //: A model of the N6
        return QCoreApplication::translate("N6Device", "Unknown");
    }
}

QString displayAddress(const QHostAddress &address)
{
    return address.toString().remove(QLatin1String("::ffff:"));
}
