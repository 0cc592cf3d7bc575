// The simulated boat as a process of a test, and heartbeats that the test sends itself.
#pragma once

#include <QHostAddress>
#include <QProcess>
#include <QtEndian>
#include <QtTest>

/// The address of the device with this host number, as the boat network has it.
inline QHostAddress boatAddress(int host)
{
    return QHostAddress(qEnvironmentVariable("KELVORA_BOAT_PREFIX", QStringLiteral("127.0.0.")) +
                        QString::number(host));
}

/// A heartbeat of a device of this kind. The modes are those of an N6 (kind 0xC6), which is then an "N6
/// Fjord".
inline QByteArray heartbeat(quint8 kind, const QByteArray &serial, int port1Mode = 0, int port2Mode = 0)
{
    QByteArray datagram(38, '\0');
    datagram[0] = static_cast<char>(kind);
    datagram.replace(1, serial.size(), serial);
    datagram[17] = 1;
    datagram.replace(18, 3, "1.4");
    qToLittleEndian(12.2F, datagram.data() + 32);
    if (kind == 0xC6)
        datagram.replace(29, 3,
                         QByteArray(1, 4) + static_cast<char>(port1Mode) + static_cast<char>(port2Mode));
    return datagram + "\x10" + "5.10.110-kelvora" + "\x05" + "2.1.0";
}

class SimulatedBoat
{
public:
    explicit SimulatedBoat(const QString &options)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral("/usr/bin/python3"),
                      QStringList{QStringLiteral(BOATSIM)} + options.split(QLatin1Char(' ')));
    }
    ~SimulatedBoat()
    {
        process.terminate();
        process.waitForFinished();
    }
    /// All that happened so far, one line each.
    QByteArray log() { return heard += process.readAllStandardOutput(); }
    bool isReady() { return log().contains(" boat ready "); }
    /// How many devices stored a file of these contents.
    int storedCopies(const QByteArray &contents)
    {
        return log().count(" sha256=" +
                           QCryptographicHash::hash(contents, QCryptographicHash::Sha256).toHex());
    }

private:
    QProcess process;
    QByteArray heard;
};
