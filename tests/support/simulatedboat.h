// The simulated boat as a process of a test.
#pragma once

#include <QHostAddress>
#include <QProcess>
#include <QtTest>

/// The address of the device with this host number, as the boat network has it.
inline QHostAddress boatAddress(int host)
{
    return QHostAddress(qEnvironmentVariable("KELVORA_BOAT_PREFIX", QStringLiteral("127.0.0.")) +
                        QString::number(host));
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
