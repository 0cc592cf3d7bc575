// The simulated boat as a test's own N6, with what a test needs to talk about its files and addresses.
#pragma once

#include "discovery/udphbclient.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

inline QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromLatin1(text, static_cast<int>(length));
}

inline QString n6Address()
{
    return qEnvironmentVariable("KELVORA_BOAT_PREFIX", "127.0.0."_s) + "10"_s;
}

inline QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

// Kind 0xC6 is an N6, 0 a display that claims to be the server.
inline void heartbeat(udpHBClient &client, char kind = '\xC6', const QString &host = n6Address())
{
    QByteArray datagram(41, '\0');
    datagram[0] = kind;
    datagram.replace(1, 11, "N6-30001234");
    datagram[17] = 1;
    datagram[37] = kind == 0 ? '\1' : '\0';
    client.processHeartbeat(datagram, QHostAddress(host));
}

// The simulated N6. It sends no heartbeat unasked: the tests say when one arrives.
class Boat
{
public:
    explicit Boat(const QString &options = QString())
    {
        simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const QString fixed =
            "--screens 0 --screen2s 0 --einks 0 --no-gyro --heartbeat-interval 3600 --state-dir "_s;
        simulator.start(QStringLiteral(BOATSIM),
                        (fixed + state.path() + " "_s + options).split(QLatin1Char(' '), Qt::SkipEmptyParts));
        waitFor("boat ready");
        write(archive(), "the N6's own");
    }
    ~Boat()
    {
        simulator.kill();
        simulator.waitForFinished();
    }

    QString archive() const { return state.path() + "/n6/media/kelvora-server-settings.tar.gz"_s; }
    void send(int signal) { ::kill(static_cast<pid_t>(simulator.processId()), signal); }
    QByteArray log() { return seen += simulator.readAllStandardOutput(); }
    void waitFor(const QByteArray &line) { QTRY_VERIFY_WITH_TIMEOUT(log().contains(line), 10000); }
    double secondsOf(const QByteArray &event)
    {
        const int start = seen.lastIndexOf('\n', log().indexOf(event)) + 1;
        return seen.mid(start, seen.indexOf(' ', start) - start).toDouble();
    }

private:
    QTemporaryDir state;
    QProcess simulator;
    QByteArray seen;
};
