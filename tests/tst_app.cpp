#include "app/connectionstate.h"
#include "app/mainwindow.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

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

QString nameOf(QWidget *widget)
{
    const QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(widget);
    const auto labels = seen->relations(QAccessible::Label);
    return labels.isEmpty() ? seen->text(QAccessible::Name) : labels.first().first->text(QAccessible::Name);
}

// What the Tab key stops at from the tabs on, until it is there again.
QString tabRound(QTabWidget *tabs)
{
    tabs->tabBar()->setFocus();
    QStringList names;
    do {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (!qobject_cast<QAbstractScrollArea *>(QApplication::focusWidget()))
            names += nameOf(QApplication::focusWidget()).section(QLatin1Char(' '), 0, 1);
    } while (!tabs->tabBar()->hasFocus() && names.size() < 20);
    return names.join(QLatin1Char('|'));
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
    void everyControlIsNamedAndReached();
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

void TestApp::everyControlIsNamedAndReached()
{
    Mainwindow window;
    auto *client = window.findChild<udpHBClient *>();
    client->processHeartbeat(HeartbeatBytes::n6("N6"), host(20));
    client->processHeartbeat(HeartbeatBytes::screen(0x00, "S1"), host(21));
    client->processHeartbeat(HeartbeatBytes::screen(0x00, "S2"), host(22));
    client->processHeartbeat(HeartbeatBytes::screen(0x20, "S3"), host(23));
    client->processHeartbeat(HeartbeatBytes::screen(0x50, "E1"), host(24));
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto *tabs = window.findChild<QTabWidget *>();
    QStringList rounds;
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        rounds += tabRound(tabs);
        const auto widgets = window.findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            const bool isShown = widget->isVisible() && !qobject_cast<QToolButton *>(widget);
            if (isShown && (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QProgressBar *>(widget)))
                QVERIFY2(!nameOf(widget).isEmpty(), widget->metaObject()->className());
        }
    }
    QCOMPARE(rounds, (QStringList{
                         QStringLiteral("S1 (PO)|S2 (PO)|Start Update|Screen Updates"),
                         QStringLiteral("S3 (PO)|Start Update|Screen2 Updates"),
                         QStringLiteral("E1 (PO)|Start Update|E-Ink Updates"),
                         QStringLiteral("Open Webinterface|Port 1|Port 2|Update N6|N6 Setup"),
                         QStringLiteral("Backup Settings|Restore Settings|Factory Reset|N6 Configuration"),
                     }));
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral("3.6"));
    TestApp test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
