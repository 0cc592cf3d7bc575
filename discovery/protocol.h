// Every number and fixed text of the boat's network protocol that more than one file needs, on one screen.
#pragma once

#include <QHostAddress>
#include <QLatin1String>
#include <QtGlobal>

namespace protocol
{

// UDP: the devices listen for requests, the tool for heartbeats, and the N6 for commands.
constexpr quint16 requestPort = 4019;
constexpr quint16 heartbeatPort = 4020;
constexpr quint16 commandPort = 4021;
constexpr int requestTtl = 3;

/// The group to which requests go and on which devices announce themselves: 239.255.75.82.
inline QHostAddress multicastGroup()
{
    return QHostAddress(0xEFFF4B52U);
}

// How long silence may last, in milliseconds; each is compared with "more than".
constexpr int tickIntervalMs = 1000;
constexpr int requestRepeatMs = 4000;
constexpr int deviceTimeoutMs = 7000;
constexpr int trafficWatchdogMs = 8000;
constexpr int multipleServersConfirmMs = 2500;

/// The second copy of a backup, restore or reset command follows after this time, against the loss of the
/// first.
constexpr int commandRepeatMs = 100;

// FTP service of every device, for firmware and settings alike.
constexpr quint16 ftpPort = 21;
constexpr QLatin1String ftpUser("kwz", 3);
constexpr QLatin1String ftpPassword("kwz", 3);

} // namespace protocol
