// The simulated boat as a process of a test, with what a test needs to talk about its files and addresses.
#pragma once

#include "tests/support/files.h"
#include "tests/support/text.h"

#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// The address of the device with this host number, as the boat network has it.
inline QHostAddress boatAddress(int host)
{
    return QHostAddress(qEnvironmentVariable("KELVORA_BOAT_PREFIX", "127.0.0."_s) + QString::number(host));
}

class Boat
{
public:
    explicit Boat(const QString &options)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start("/usr/bin/python3"_s,
                      (QStringLiteral(BOATSIM " --state-dir ") + state.path() + " "_s + options)
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        waitFor("boat ready");
    }
    ~Boat()
    {
        process.kill();
        process.waitForFinished();
    }

    /// All that happened so far, one line each.
    QByteArray log() { return heard += process.readAllStandardOutput(); }
    void waitFor(const QByteArray &event) { QTRY_VERIFY_WITH_TIMEOUT(log().contains(event), 10000); }

private:
    QTemporaryDir state;
    QProcess process;
    QByteArray heard;
};
