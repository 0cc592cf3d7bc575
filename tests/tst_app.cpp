#include "app/connectionstate.h"
#include "app/mainwindow.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScopedPointer>
#include <QTabWidget>
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

QString enabledTabs(const QWidget &window)
{
    const auto *tabs = window.findChild<QTabWidget *>();
    QString all;
    for (int i = 0; i < tabs->count(); ++i)
        all += QLatin1Char(tabs->widget(i)->isEnabled() ? '1' : '0');
    return all;
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
        const quint8 kinds[] = {0x00, 0x20, 0x50};
        QByteArray junk(300, '\xFF');
        QElapsedTimer elapsed;
        elapsed.start();
        while (!stop) {
            for (; sent < elapsed.elapsed() * 10; ++sent) {
                const int number = sent % 200;
                junk[sent % 3] = static_cast<char>(sent % 251);
                junk[38] = static_cast<char>(sent % 256);
                const QByteArray whole =
                    HeartbeatBytes::screen(kinds[number % 3], QByteArray::number(number));
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

class TestApp : public QObject
{
    Q_OBJECT

private slots:
    void stripTellsWhatIsReachable_data();
    void stripTellsWhatIsReachable();
    void stripGivesAFirstVerdict();
    void windowLocksAndUnlocksItsPages();
    void staysResponsiveInAFlood_data();
    void staysResponsiveInAFlood();
};

void TestApp::stripTellsWhatIsReachable_data()
{
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("icon");
    // s: display, S: display that is the server, 6: N6, 1: first generation
    QTest::newRow("nothing") << ""
                             << "Not connected"
                             << "error";
    QTest::newRow("N6 alone") << "6"
                              << "N6 connection ok, no screens connected"
                              << "ok";
    QTest::newRow("display and N6") << "s6"
                                    << "Connection ok"
                                    << "ok";
    QTest::newRow("display that is the server") << "S"
                                                << "Connection ok"
                                                << "ok";
    QTest::newRow("displays alone") << "ss"
                                    << "Connection ok, but no N6 found"
                                    << "warning";
    QTest::newRow("first generation stays") << "s16s"
                                            << "Found Gen1 devices, contact support for suitable software"
                                            << "warning";
}

void TestApp::stripTellsWhatIsReachable()
{
    QFETCH(QString, heard);
    QFETCH(QString, text);
    QFETCH(QString, icon);
    udpHBClient client(2);
    connectionState strip(nullptr, &client);
    int number = 20;
    for (const QChar device : heard) {
        const bool old = device == QLatin1Char('1');
        const QByteArray screen = HeartbeatBytes::screen(0x00, old ? "VK38" : "A", device.isUpper());
        client.processHeartbeat(device == QLatin1Char('6') ? HeartbeatBytes::n6("N6")
                                                           : screen.left(old ? 38 : 99),
                                host(++number));
    }
    QCOMPARE(strip.findChild<QLabel *>()->text(), text);
    const auto pixels = [](const QIcon &shown) { return shown.pixmap(26).toImage(); };
    QVERIFY(!pixels(QIcon(QStringLiteral(":/icons/") + icon)).isNull());
    QCOMPARE(pixels(strip.findChild<QPushButton *>()->icon()),
             pixels(QIcon(QStringLiteral(":/icons/") + icon)));
}

void TestApp::stripGivesAFirstVerdict()
{
    udpHBClient client(2);
    connectionState strip(nullptr, &client);
    const auto *text = strip.findChild<QLabel *>();
    QElapsedTimer elapsed;
    elapsed.start();
    QTRY_COMPARE_WITH_TIMEOUT(text->text(), QStringLiteral("Connection problem, check your network settings"),
                              8000);
    QVERIFY(elapsed.elapsed() >= 5500);
    // A conflict of servers shows at the next change that the client reports.
    client.processHeartbeat(HeartbeatBytes::screen(0x00, "A", true), host(21));
    client.processHeartbeat(HeartbeatBytes::screen(0x00, "B", true), host(22));
    QTRY_VERIFY_WITH_TIMEOUT(client.multipleServersDetected(), 5000);
    client.processHeartbeat(HeartbeatBytes::screen(0x20, "C"), host(23));
    QCOMPARE(text->text(), QStringLiteral("Connection ok, but multiple servers configured"));
}

void TestApp::windowLocksAndUnlocksItsPages()
{
    Mainwindow window;
    auto *client = window.findChild<udpHBClient *>();
    QVERIFY(window.windowTitle().endsWith(QLatin1String(" - v3.6")));
    QCOMPARE(window.size(), QSize(900, 640));
    QCOMPARE(enabledTabs(window), QStringLiteral("11100"));
    client->processHeartbeat(HeartbeatBytes::screen(0x00, "A"), host(21));
    QCOMPARE(enabledTabs(window), QStringLiteral("11100"));
    client->processHeartbeat(HeartbeatBytes::n6("N6"), host(20));
    QCOMPARE(enabledTabs(window), QStringLiteral("11111"));
    window.show();
    window.resize(100, 100);
    QCOMPARE(window.size(), QSize(770, 500));
    const auto *logo = window.findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    QTRY_COMPARE(logo->iconSize(), QSize(770, 70));
    client->processHeartbeat(HeartbeatBytes::screen(0x00, "TZ582").left(38), host(22));
    client->processHeartbeat(HeartbeatBytes::n6("N6"), host(20));
    QCOMPARE(enabledTabs(window), QStringLiteral("00000"));
}

void TestApp::staysResponsiveInAFlood_data()
{
    QTest::addColumn<bool>("valid");
    QTest::newRow("junk") << false;
    QTest::newRow("heartbeats") << true;
}

void TestApp::staysResponsiveInAFlood()
{
    QFETCH(bool, valid);
    constexpr int probeMs = 50;
    constexpr int longestWaitMs = 250;
    const int seconds = qEnvironmentVariableIsSet("KELVORA_FLOOD_SECONDS")
                            ? qEnvironmentVariableIntValue("KELVORA_FLOOD_SECONDS")
                            : 5;
    Mainwindow window;
    window.show();
    auto *client = window.findChild<udpHBClient *>();
    int accepted = 0;
    connect(client, &udpHBClient::screenUpdated, this, [&] { ++accepted; });

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
    QTRY_VERIFY_WITH_TIMEOUT(flooded.elapsed() > seconds * 1000, seconds * 2000);

    QVERIFY2(worstWait <= longestWaitMs, qPrintable(QString::number(worstWait)));
    const qint64 grown = residentKilobytes() - settled;
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
    QVERIFY2(grown < 2048, qPrintable(QString::number(grown)));
#endif
    QVERIFY2(flood.sent > seconds * 8000, qPrintable(QString::number(flood.sent)));
    QCOMPARE(client->screens().size(), valid ? 200 : 0);
    qInfo("%d sent, %d accepted, longest wait %lld ms, %lld KiB more", flood.sent.load(), accepted, worstWait,
          grown);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral("3.6"));
    TestApp test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
