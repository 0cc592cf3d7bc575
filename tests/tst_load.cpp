// The whole window under load, here for seconds: it answers while it is flooded, and nothing gathers in it.
#include "app/mainwindow.h"
#include "discovery/udphbclient.h"
#include "tests/support/answers.h"
#include "tests/support/displays.h"
#include "tests/support/files.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/memory.h"
#include "tests/support/text.h"

#include <QAbstractEventDispatcher>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace
{

constexpr qint64 littleMemory = 2'000'000; // what the allocator and the toolkit's caches may take later on

// A sanitizer makes a window ten times as slow: with more rows a starved machine takes longer to build them
// than silent displays are remembered.
constexpr int datagramsPerMs = isSanitized ? 1 : 10, senderCount = isSanitized ? 40 : 200;
constexpr int settleMs = 1500, floodMs = 5000, probeMs = 10;

// The last display leaves so often, and for so long; it is forgotten after 7 s.
constexpr int displayCount = 3, packageBytes = 1'000'000, beatMs = 40, awayEveryMs = 14000, awayMs = 10000;

// Returns how many it has sent when it is told to stop.
int flood(const std::atomic<bool> &stop)
{
    std::vector<QUdpSocket> senders(senderCount);
    for (size_t number = 0; number < senderCount; ++number)
        senders[number].bind(PlayedDisplay::addressOf(static_cast<int>(number)));
    QElapsedTimer elapsed;
    elapsed.start();
    int sent = 0;
    while (!stop) {
        for (; !stop && sent < elapsed.elapsed() * datagramsPerMs; ++sent)
            senders[static_cast<size_t>(sent % senderCount)].writeDatagram(
                HeartbeatBytes::device(sent % 2 == 0 ? Screen : Eink, "S"), QHostAddress::LocalHost,
                protocol::heartbeatPort);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return sent;
}

// What must not gather.
QString holdings(const QWidget &window)
{
    const auto objects = window.findChildren<QObject *>();
    int timers = 0;
    for (QObject *object : objects)
        timers += QAbstractEventDispatcher::instance()->registeredTimers(object).size();
    const int descriptors = QDir("/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
    qInfo() << residentMemory() / 1000 << "kB";
    return "%1 objects, %2 timers, %3 descriptors"_s.arg(objects.size()).arg(timers).arg(descriptors);
}

} // namespace

class TestLoad : public QObject
{
    Q_OBJECT

private slots:
    // Ten thousand heartbeats a second from two hundred senders.
    void answersUnderHeartbeats()
    {
        Mainwindow window;
        window.show();
        std::atomic<bool> stop = false;
        auto sent = std::async(std::launch::async, flood, std::cref(stop));
        const auto end = qScopeGuard([&] { stop = true; });
        elapsed.start();
        QTRY_VERIFY(elapsed.elapsed() > settleMs);
        const qint64 memory = residentMemory();
        qint64 longestWaitMs = 0;
        QElapsedTimer sinceProbe;
        sinceProbe.start();
        QTimer probe;
        connect(&probe, &QTimer::timeout, [&] { longestWaitMs = qMax(longestWaitMs, sinceProbe.restart()); });
        probe.start(probeMs);
        QTRY_VERIFY_WITH_TIMEOUT(elapsed.elapsed() > floodMs, 2 * floodMs);
        stop = true;
        QTRY_COMPARE(window.findChild<udpHBClient *>()->screens().size(), senderCount);
        if (isSanitized)
            return;
        QVERIFY2(longestWaitMs <= 250 + probeMs, qPrintable(QString::number(longestWaitMs)));
        QVERIFY2(residentMemory() - memory < littleMemory, "memory");
        QVERIFY2(sent.get() > floodMs * datagramsPerMs * 4 / 5, "a trickle");
    }

    // Displays beat 50 times as fast as usual, one of them comes and goes, and they are updated all the time.
    void gathersNothing()
    {
        const auto end = qRound64(qEnvironmentVariable("KELVORA_SOAK_MINUTES", "0.45"_s).toDouble() * 60000);
        write(package, QByteArray(packageBytes, 'k'));
        Mainwindow window;
        window.show();
        QTimer heart;
        connect(&heart, &QTimer::timeout, this, [&] {
            for (int at = elapsed.elapsed() % awayEveryMs < awayMs ? 1 : 0; at < displayCount; ++at)
                displays[at].udp.writeDatagram(HeartbeatBytes::device(Screen, "S"), QHostAddress::LocalHost,
                                               protocol::heartbeatPort);
        });
        heart.start(beatMs);
        elapsed.start();

        update(window, qMin<qint64>(60000, end / 2));
        const qint64 memory = residentMemory();
        const QString before = holdings(window);
        update(window, end);

        QCOMPARE(holdings(window), before);
        QVERIFY2(isSanitized || residentMemory() - memory < littleMemory, "memory");
    }

private:
    // At least once, and until a display has come back after the last upload: the rows are new, so that
    // moments are comparable.
    void update(const Mainwindow &window, qint64 untilMs)
    {
        const auto rows = [&] { return window.findChildren<QCheckBox *>().size(); };
        QTRY_COMPARE_WITH_TIMEOUT(rows(), displayCount, 2 * awayEveryMs);
        QPushButton *start = button(*window.findChild<QTabWidget *>()->widget(0), "&Start Update"_s);
        do {
            displays[displayCount - 1].lines.clear();
            start->click();
            typeFile(window.findChild<QFileDialog *>(), package);
            QTRY_VERIFY_WITH_TIMEOUT(start->isVisible(), 20000);
            QCOMPARE(displays[displayCount - 1].uploadedBytes, packageBytes);
        } while (elapsed.elapsed() < untilMs);
        QTRY_COMPARE_WITH_TIMEOUT(rows(), displayCount - 1, 2 * awayEveryMs);
        QTRY_COMPARE_WITH_TIMEOUT(rows(), displayCount, 2 * awayEveryMs);
    }

    QTemporaryDir folder;
    const QString package = folder.filePath("screen-update.tar.gz"_s);
    PlayedDisplay displays[displayCount]{PlayedDisplay(0), PlayedDisplay(1), PlayedDisplay(2)};
    QElapsedTimer elapsed;
};

QTEST_MAIN(TestLoad)
#include "tst_load.moc"
