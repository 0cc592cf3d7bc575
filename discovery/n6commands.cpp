#include "discovery/n6commands.h"

#include <algorithm>

namespace
{

constexpr char backupCode = 0x07;
constexpr char restoreCode = 0x08;
constexpr char factoryResetCode = 0x0F;
constexpr char port1ModeCode = '0';
constexpr char port2ModeCode = '1';
constexpr int factoryResetLength = 17;

} // namespace

const QVector<N6PortMode> &n6PortModes(N6Port port)
{
    // The codes are the N6's own: the same mode bears different numbers on its two ports.
    static const QVector<N6PortMode> port1 = {{QStringLiteral("NMEA0183"), 0},
                                              {QStringLiteral("NMEA0183-HS"), 6},
                                              {QStringLiteral("Seatalk"), 4},
                                              {QStringLiteral("Nexus FDX"), 5}};
    static const QVector<N6PortMode> port2 = {{QStringLiteral("NMEA0183"), 0},
                                              {QStringLiteral("B&G Fastnet"), 1},
                                              {QStringLiteral("NMEA0183-HS"), 2}};
    return port == N6Port::Port1 ? port1 : port2;
}

int n6PortModeCode(N6Port port, const QString &name)
{
    const auto &modes = n6PortModes(port);
    const auto found =
        std::find_if(modes.begin(), modes.end(), [&](const auto &mode) { return mode.name == name; });
    return found == modes.end() ? 0 : found->code;
}

int n6PortModeIndex(N6Port port, int code)
{
    const auto &modes = n6PortModes(port);
    const auto found =
        std::find_if(modes.begin(), modes.end(), [&](const auto &mode) { return mode.code == code; });
    return found == modes.end() ? -1 : static_cast<int>(found - modes.begin());
}

QByteArray n6BackupCommand()
{
    return QByteArray(1, backupCode);
}

QByteArray n6RestoreCommand()
{
    return QByteArray(1, restoreCode);
}

QByteArray n6FactoryResetCommand(const QString &serial)
{
    QByteArray datagram(1, factoryResetCode);
    datagram += serial.toLatin1();
    if (datagram.size() < factoryResetLength)
        datagram.append(factoryResetLength - datagram.size(), '\0');
    return datagram;
}

QByteArray n6PortModeCommand(N6Port port, int code)
{
    QByteArray datagram(1, port == N6Port::Port1 ? port1ModeCode : port2ModeCode);
    datagram += static_cast<char>(code);
    return datagram;
}
