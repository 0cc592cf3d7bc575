// Ten thousand datagrams a second from two hundred senders: the window answers, and takes no more memory.
// KELVORA_FLOOD_SECONDS makes it longer than a test run wants.

#include "app/mainwindow.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/memory.h"

#include <QScopeGuard>
#include <QTest>
#include <QUdpSocket>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace
{

constexpr int senderCount = 200, datagramsPerMs = 10, probeMs = 50;

QHostAddress loopback(int host)
{
    return QHostAddress(0x7F000000U + static_cast<quint32>(host));
}

QByteArray datagram(bool isHeartbeat, int number)
{
    const DeviceKind kinds[] = {Screen, Screen2, Eink};
    if (isHeartbeat)
        return HeartbeatBytes::device(kinds[number % 3], "S");
    QByteArray junk(300, '\xFF');
    junk[number % 3] = static_cast<char>(number % 251);
    junk[38] = static_cast<char>(number % 256);
    return junk;
}

// Returns how many it has sent when it is told to stop.
int flood(bool isHeartbeat, const std::atomic<bool> &stop)
{
    std::vector<QUdpSocket> senders(senderCount);
    for (int number = 0; number < senderCount; ++number)
        senders[static_cast<size_t>(number)].bind(loopback(0x100 + number));
    QElapsedTimer elapsed;
    elapsed.start();
    int sent = 0;
    while (!stop) {
        for (; !stop && sent < elapsed.elapsed() * datagramsPerMs; ++sent)
            senders[static_cast<size_t>(sent % senderCount)].writeDatagram(
                datagram(isHeartbeat, sent), loopback(1), protocol::heartbeatPort);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return sent;
}

} // namespace

class TestFlood : public QObject
{
    Q_OBJECT

private slots:
    void windowStaysResponsive_data()
    {
        QTest::addColumn<bool>("isHeartbeat");
        QTest::newRow("under junk") << false;
#ifndef __SANITIZE_ADDRESS__ // At ten times the cost of a heartbeat, so many are more than a window can take.
        QTest::newRow("under heartbeats") << true;
#endif
    }

    void windowStaysResponsive()
    {
        QFETCH(const bool, isHeartbeat);
        const int seconds = qEnvironmentVariable("KELVORA_FLOOD_SECONDS", QStringLiteral("5")).toInt();
        Mainwindow window;
        window.show();
        std::atomic<bool> stop = false;
        auto sent = std::async(std::launch::async, flood, isHeartbeat, std::cref(stop));
        const auto end = qScopeGuard([&] { stop = true; });
        QElapsedTimer sinceProbe;
        qint64 settledMemory = 0, longestWaitMs = 0;
        QTimer probe;
        probe.setTimerType(Qt::PreciseTimer);
        connect(&probe, &QTimer::timeout, &probe,
                [&] { longestWaitMs = qMax(longestWaitMs, sinceProbe.restart() - probeMs); });
        QTimer::singleShot(1500, &probe, [&] {
            settledMemory = residentMemory();
            sinceProbe.start();
            probe.start(probeMs);
        });
        QElapsedTimer flooded;
        flooded.start();
        QTRY_VERIFY_WITH_TIMEOUT(flooded.elapsed() / 1000 >= seconds, seconds * 2000);
        stop = true;
        const auto *client = window.findChild<udpHBClient *>();
        QTRY_COMPARE(client->screens().size(), isHeartbeat ? senderCount : 0);
#ifndef __SANITIZE_ADDRESS__ // Which keeps what was freed, and slows everything down.
        QVERIFY2(longestWaitMs <= 250, qPrintable(QString::number(longestWaitMs)));
        const qint64 grown = residentMemory() - settledMemory;
        QVERIFY2(grown < 2'000'000, qPrintable(QString::number(grown)));
        QVERIFY2(sent.get() > seconds * 1000 * datagramsPerMs * 4 / 5, "a trickle");
#endif
    }
};

QTEST_MAIN(TestFlood)
#include "tst_flood.moc"
