// Ten thousand datagrams a second from two hundred senders: the window answers, and takes no more memory.
// With a sanitizer it is a tenth of that, which a window ten times as slow can take.

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

#ifdef __SANITIZE_ADDRESS__
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif
constexpr int datagramsPerMs = isSanitized ? 1 : 10;
constexpr int senderCount = 200, probeMs = 50, settleMs = 1500, floodMs = 5000;

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
    void windowAnswersUnderJunk() { endure(false); }
    void windowAnswersUnderHeartbeats() { endure(true); }

private:
    static void endure(bool isHeartbeat)
    {
        Mainwindow window;
        window.show();
        std::atomic<bool> stop = false;
        auto sent = std::async(std::launch::async, flood, isHeartbeat, std::cref(stop));
        const auto end = qScopeGuard([&] { stop = true; });
        QElapsedTimer flooded, sinceProbe;
        flooded.start();
        QTRY_VERIFY(flooded.elapsed() > settleMs);
        const qint64 settledMemory = residentMemory();
        qint64 longestWaitMs = 0;
        QTimer probe;
        probe.setTimerType(Qt::PreciseTimer);
        connect(&probe, &QTimer::timeout, &probe,
                [&] { longestWaitMs = qMax(longestWaitMs, sinceProbe.restart() - probeMs); });
        sinceProbe.start();
        probe.start(probeMs);
        QTRY_VERIFY_WITH_TIMEOUT(flooded.elapsed() > floodMs, 2 * floodMs);
        stop = true;
        QTRY_COMPARE(window.findChild<udpHBClient *>()->screens().size(), isHeartbeat ? senderCount : 0);
        // A sanitizer keeps what was freed, and slows everything down.
        if (isSanitized)
            return;
        QVERIFY2(longestWaitMs <= 250, qPrintable(QString::number(longestWaitMs)));
        const qint64 grown = residentMemory() - settledMemory;
        QVERIFY2(grown < 2'000'000, qPrintable(QString::number(grown)));
        QVERIFY2(sent.get() > floodMs * datagramsPerMs * 4 / 5, "a trickle");
    }
};

QTEST_MAIN(TestFlood)
#include "tst_flood.moc"
