#include "app/connectionstate.h"
#include "app/icons.h"
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

void checkShown(const connectionState &strip, const char *icon, const char *text)
{
    QCOMPARE(strip.findChild<QLabel *>()->text(), QLatin1String(text));
    const auto pixels = [](const QIcon &shown) { return shown.pixmap(26).toImage(); };
    const QImage expected = pixels(builtinIcon(QLatin1String(icon)));
    QVERIFY(!expected.isNull());
    QCOMPARE(pixels(strip.findChild<QPushButton *>()->icon()), expected);
}

} // namespace

class TestApp : public QObject
{
    Q_OBJECT

private slots:
    void stripTellsWhatIsReachable()
    {
        udpHBClient client(2), withoutN6(2);
        const connectionState strip(nullptr, &client), stripWithoutN6(nullptr, &withoutN6);
        checkShown(strip, "error", "Not connected");
        client.processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        checkShown(strip, "ok", "N6 connection ok, no screens connected");
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "A"), at("127.0.0.21"));
        checkShown(strip, "ok", "Connection ok");
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "VK38").left(38), at("127.0.0.22"));
        client.processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        checkShown(strip, "warning", "Found Gen1 devices, contact support for suitable software");

        withoutN6.processHeartbeat(HeartbeatBytes::screen(0x00, "A"), at("127.0.0.21"));
        checkShown(stripWithoutN6, "warning", "Connection ok, but no N6 found");
        withoutN6.processHeartbeat(HeartbeatBytes::screen(0x00, "A", true), at("127.0.0.21"));
        checkShown(stripWithoutN6, "ok", "Connection ok");
    }

    void stripGivesAFirstVerdict()
    {
        udpHBClient client(2);
        const connectionState strip(nullptr, &client);
        const auto *text = strip.findChild<QLabel *>();
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_COMPARE_WITH_TIMEOUT(text->text(),
                                  QStringLiteral("Connection problem, check your network settings"), 8000);
        QVERIFY(elapsed.elapsed() >= 5500);
        // A conflict of servers shows at the next change that the client reports.
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "A", true), at("127.0.0.21"));
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "B", true), at("127.0.0.22"));
        QTRY_VERIFY_WITH_TIMEOUT(client.multipleServersDetected(), 5000);
        client.processHeartbeat(HeartbeatBytes::screen(0x20, "C"), at("127.0.0.23"));
        QCOMPARE(text->text(), QStringLiteral("Connection ok, but multiple servers configured"));
    }

    void windowLocksAndUnlocksItsPages()
    {
        QCoreApplication::setApplicationVersion(QStringLiteral("3.6"));
        const Mainwindow window;
        QVERIFY(window.windowTitle().endsWith(QLatin1String(" - v3.6")));
        const auto *tabs = window.findChild<QTabWidget *>();
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::screen(0x00, "A"), at("127.0.0.21"));
        QVERIFY(tabs->isTabEnabled(2) && !tabs->isTabEnabled(3) && !tabs->isTabEnabled(4));
        client->processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        QVERIFY(tabs->isTabEnabled(3) && tabs->isTabEnabled(4));
        client->processHeartbeat(HeartbeatBytes::screen(0x00, "TZ582").left(38), at("127.0.0.22"));
        client->processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        QVERIFY(!tabs->isEnabled());
    }
};

QTEST_MAIN(TestApp)
#include "tst_app.moc"
