// Builds heartbeat datagrams byte by byte, by offsets of its own, so that it checks the decoder.
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QtEndian>

enum DeviceKind : quint8 { Screen = 0x00, Screen2 = 0x20, Eink = 0x50, Gyro = 0x72, N6 = 0xC6 };

struct HeartbeatBytes {
    quint8 kind = Screen;
    QByteArray serial = "S1";
    quint8 serverFlag = 0; ///< the status of a gyro
    QByteArray application = "2.1.0", system = "5.1.2-rt", firmware = "1.4";
    double lux = 0.0;
    float volts = 12.0F;
    quint8 lsFlag = 0, valid = 1;

    QByteArray build() const
    {
        QByteArray bytes = char(kind) + serial.leftJustified(16, '\0', true) + char(valid) +
                           firmware.leftJustified(6, '\0', true) + QByteArray(12, '\0') + char(lsFlag) +
                           char(serverFlag);
        qToLittleEndian(lux, bytes.data() + 24);
        qToLittleEndian(volts, bytes.data() + 32);
        for (const QByteArray &version : {system, application})
            bytes += static_cast<char>(version.size()) + version;
        return bytes;
    }

    static QByteArray device(DeviceKind kind, const QByteArray &serial, bool isServer = false)
    {
        return HeartbeatBytes{kind, serial, quint8(isServer ? 1 : 0)}.build();
    }

    static QByteArray firstGeneration() { return device(Screen, "VK38").left(38); }

    /// An N6 writes its model and port modes over the light.
    static QByteArray n6(const QByteArray &serial = "N6", int model = 1, int port1 = 0, int port2 = 0,
                         const QByteArray &application = "3.6")
    {
        const char modes[] = {char(model), char(port1), char(port2)};
        return HeartbeatBytes{N6, serial, 0, application}.build().replace(29, 3, modes, 3);
    }
};

inline QHostAddress at(const char *address)
{
    return QHostAddress(QLatin1String(address));
}
