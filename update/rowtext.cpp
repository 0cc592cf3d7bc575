#include "update/rowtext.h"

#include <QCoreApplication>

namespace
{

constexpr int shownSystemVersionLength = 8;

QString oneDecimal(double value)
{
    return QString::number(value, 'f', 1);
}

} // namespace

bool rowtext::hasReadout(const ScreenDevice &screen)
{
    return screen.type.contains(QLatin1String("SCREEN"));
}

QString rowtext::readout(const ScreenDevice &screen)
{
    //: Supply voltage and ambient light
    return QCoreApplication::translate("MonitorUpdateWidget", "%1 V\n%2 Lux")
        .arg(oneDecimal(screen.supplyVoltage), oneDecimal(screen.ambientLux));
}

QString rowtext::description(const ScreenDevice &screen)
{
    //: A mark of the hardware, like (PO)
    const QString lsFlag = screen.lsFlag ? QCoreApplication::translate("MonitorUpdateWidget", "(LS)")
                                         : QCoreApplication::translate("MonitorUpdateWidget", "(PO)");
    //: Marks the display that holds the settings of the system
    const QString server =
        screen.isServer ? QCoreApplication::translate("MonitorUpdateWidget", "[Server]") : QString();
    // All places are filled in one go: the texts come from the network and may hold a "%1" of their own.
    //: Serial number, (LS) or (PO), address, [Server] or nothing; versions of application, firmware and
    //: operating system. As narrow as it can be
    return QCoreApplication::translate("MonitorUpdateWidget", "%1 %2  IP = %3  %4\nAPP %5  FW %6  OS %7")
        .arg(screen.serial, lsFlag, displayAddress(screen.address), server, screen.applicationVersion,
             screen.firmwareVersion, screen.systemVersion.left(shownSystemVersionLength));
}
