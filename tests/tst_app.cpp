#include "app/connectionstate.h"
#include "app/mainwindow.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

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

} // namespace

class TestApp : public QObject
{
    Q_OBJECT

private slots:
    void stripTellsWhatIsReachable_data();
    void stripTellsWhatIsReachable();
    void stripGivesAFirstVerdict();
    void windowLocksAndUnlocksItsPages();
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

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral("3.6"));
    TestApp test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
