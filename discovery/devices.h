// The records that the tool keeps of the devices of a boat: plain values, copied freely into signals and
// pages.
#pragma once

#include <QElapsedTimer>
#include <QHostAddress>
#include <QLatin1String>
#include <QMetaType>
#include <QString>

/// The types of displays.
namespace displaytype
{
constexpr QLatin1String screen("SCREEN", 6);
constexpr QLatin1String screen2("SCREEN2", 7);
constexpr QLatin1String eink("EINK", 4);
} // namespace displaytype

/// One display as its latest heartbeat described it. Two heartbeats belong to the same display when their
/// sender addresses are equal.
struct ScreenDevice {
    QHostAddress address;       ///< sender of the heartbeat, the record's identity
    QElapsedTimer lastSeen;     ///< started when the heartbeat was accepted
    QString serial;             ///< at most 16 bytes on the wire
    QString type;               ///< a displaytype
    QString firmwareVersion;    ///< empty for "EINK"
    QString systemVersion;      ///< shown as "OS"
    QString applicationVersion; ///< shown as "APP"
    double supplyVoltage = 0.0; ///< volts, not negative, two decimals; NaN for "EINK", which reports none
    double ambientLux = 0.0;    ///< lux, not negative, two decimals
    bool isServer = false;      ///< holds the system's settings; never set for "EINK"
    bool lsFlag = false;        ///< shown as "(LS)" when set, "(PO)" otherwise
};
Q_DECLARE_METATYPE(ScreenDevice)

/// The N6, the central instrument and settings server; a client keeps exactly one.
struct N6Device {
    QHostAddress address;   ///< null while offline
    QElapsedTimer lastSeen; ///< started when the heartbeat was accepted
    QString serial;         ///< names the instrument in a factory reset
    QString firmwareVersion;
    QString systemVersion;
    QString applicationVersion;
    double supplyVoltage = 0.0; ///< volts, not negative, two decimals; may be NaN
    int model = 0;              ///< see n6ModelName()
    int port1Mode = 0;          ///< code of serial port 1, see n6commands.h
    int port2Mode = 0;          ///< code of serial port 2, see n6commands.h
    bool online = false;        ///< a heartbeat was accepted and has not timed out
};

/// The gyro sensor; a client keeps exactly one. It reports no firmware version.
struct GyroDevice {
    QHostAddress address;   ///< null while offline
    QElapsedTimer lastSeen; ///< started when the heartbeat was accepted
    QString serial;
    QString systemVersion;
    QString applicationVersion;
    double supplyVoltage = 0.0; ///< volts, not negative, two decimals; may be NaN
    int status = 0;             ///< the sensor's own signed 8-bit status
    bool online = false;        ///< a heartbeat was accepted and has not timed out
};

/// The display name of an N6 model number (1 to 5); "Unknown" for any other number.
QString n6ModelName(int model);

/// An address as a user reads it: IPv4 addresses that were mapped into IPv6 lose their "::ffff:" prefix.
QString displayAddress(const QHostAddress &address);
