// Ten thousand datagrams a second from two hundred senders: the window answers, and takes no more memory.
// KELVORA_FLOOD_SECONDS makes it longer than a test run wants.

#include "app/mainwindow.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"

#include <QFile>
#include <QTest>
#include <QThread>
#include <QUdpSocket>

#include <atomic>
#include <memory>
#include <vector>

namespace
{

QHostAddress host(int number)
{
    return QHostAddress(0x7F000000U + static_cast<quint32>(number));
}

qint64 residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').at(1).toLongLong() * 4;
}

// Sends about ten thousand datagrams a second from two hundred addresses of this machine, in a thread of its
// own.
class Flood : public QThread
{
public:
    explicit Flood(bool validHeartbeats) : valid(validHeartbeats) {}

    ~Flood() override
    {
        stop = true;
        wait();
    }

    std::atomic<int> sent = 0;

protected:
    void run() override
    {
        std::vector<std::unique_ptr<QUdpSocket>> senders;
        for (int number = 0; number < 200; ++number) {
            senders.push_back(std::make_unique<QUdpSocket>());
            senders.back()->bind(host(0x100 + number));
        }
        const DeviceKind kinds[] = {Screen, Screen2, Eink};
        QByteArray junk(300, '\xFF');
        QElapsedTimer elapsed;
        elapsed.start();
        while (!stop) {
            for (; !stop && sent < elapsed.elapsed() * 10; ++sent) {
                const int number = sent % 200;
                junk[sent % 3] = static_cast<char>(sent % 251);
                junk[38] = static_cast<char>(sent % 256);
                const QByteArray whole =
                    HeartbeatBytes::device(kinds[number % 3], QByteArray::number(number));
                senders[static_cast<size_t>(number)]->writeDatagram(valid ? whole : junk, host(1),
                                                                    protocol::heartbeatPort);
            }
            usleep(1000);
        }
    }

private:
    bool valid;
    std::atomic<bool> stop = false;
};

} // namespace

class Flooded : public QObject
{
    Q_OBJECT

private slots:
    void staysResponsive_data();
    void staysResponsive();
};

void Flooded::staysResponsive_data()
{
    QTest::addColumn<bool>("valid");
    QTest::newRow("junk") << false;
    QTest::newRow("heartbeats") << true;
}

void Flooded::staysResponsive()
{
    QFETCH(bool, valid);
#ifdef __SANITIZE_ADDRESS__
    if (valid)
        QSKIP("at ten times the cost of a heartbeat, so many of them are more than a window can take");
#endif
    constexpr int probeMs = 50;
    [[maybe_unused]] constexpr int longestWaitMs = 250;
    const int seconds = qEnvironmentVariableIsSet("KELVORA_FLOOD_SECONDS")
                            ? qEnvironmentVariableIntValue("KELVORA_FLOOD_SECONDS")
                            : 5;
    Mainwindow window;
    window.show();
    auto *client = window.findChild<udpHBClient *>();
    int accepted = 0;
    connect(client, &udpHBClient::screenUpdated, this,
            [&] { ++accepted; }); // clazy:exclude=lambda-in-connect

    QElapsedTimer sinceProbe;
    qint64 worstWait = 0;
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    connect(&probe, &QTimer::timeout, this,
            [&] { worstWait = qMax(worstWait, sinceProbe.restart() - probeMs); });
    QElapsedTimer flooded;
    flooded.start();
    Flood flood(valid);
    flood.start();
    QTRY_VERIFY_WITH_TIMEOUT(flooded.elapsed() > 1500, 5000);
    const qint64 settled = residentKilobytes();
    sinceProbe.start();
    probe.start(probeMs);
    QTRY_VERIFY_WITH_TIMEOUT(flooded.elapsed() > qint64(seconds) * 1000, seconds * 2000);

    const qint64 grown = residentKilobytes() - settled;
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed, and slows everything down
    QVERIFY2(worstWait <= longestWaitMs, qPrintable(QString::number(worstWait)));
    QVERIFY2(grown < 2048, qPrintable(QString::number(grown)));
    QVERIFY2(flood.sent > seconds * 8000, qPrintable(QString::number(flood.sent)));
#endif
    QTRY_COMPARE_WITH_TIMEOUT(client->screens().size(), valid ? 200 : 0, 5000);
    qInfo("%d sent, %d accepted, longest wait %lld ms, %lld KiB more", flood.sent.load(), accepted, worstWait,
          grown);
}

QTEST_MAIN(Flooded)
#include "tst_flood.moc"
