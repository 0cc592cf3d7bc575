// The window as a whole: what it tells, what it locks, and how the keyboard gets around in it.

#include "app/connectionstate.h"
#include "app/icons.h"
#include "app/mainwindow.h"
#include "app/verdict.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/text.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

namespace
{

QImage pixels(const QIcon &icon)
{
    return icon.pixmap(26).toImage();
}

// The strip's icon and text.
QString shown(const connectionState &strip)
{
    const QImage icon = pixels(strip.findChild<QPushButton *>()->icon());
    QString text = ": "_s + strip.findChild<QLabel *>()->text();
    for (const QString &name : {"ok"_s, "warning"_s, "error"_s}) {
        if (!icon.isNull() && icon == pixels(builtinIcon(name)))
            text.prepend(name);
    }
    return text;
}

// As a screen reader says it.
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
    void windowTellsAndUnlocksWhatIsReachable()
    {
        QCoreApplication::setApplicationVersion("3.6"_s);
        Mainwindow window;
        QVERIFY(window.windowTitle().endsWith(" - v3.6"_s));
        QCOMPARE(window.windowIcon().availableSizes().size(), 6);
        QVERIFY(window.minimumSize() == QSize(770, 500) && window.size() == QSize(900, 640));
        const auto &strip = *window.findChild<connectionState *>();
        QVERIFY(strip.height() == 50 && strip.findChild<QLabel *>()->font().pixelSize() == 16);
        const auto *tabs = window.findChild<QTabWidget *>();
        auto *client = window.findChild<udpHBClient *>();
        const auto hear = [&](const QByteArray &datagram, const char *from) {
            client->processHeartbeat(datagram, at(from));
            QString unlocked;
            for (int page = 0; page < tabs->count(); ++page)
                unlocked += tabs->isEnabled() && tabs->isTabEnabled(page) ? QString::number(page) : QString();
            return unlocked;
        };
        QCOMPARE(shown(strip), "error: Not connected"_s);
        QCOMPARE(hear(HeartbeatBytes::device(Screen, "A"), "127.0.0.21"), "012"_s);
        QCOMPARE(shown(strip), "warning: Connection ok, but no N6 found"_s);
        QCOMPARE(hear(HeartbeatBytes::n6(), "127.0.0.20"), "01234"_s);
        QCOMPARE(shown(strip), "ok: Connection ok"_s);
        QCOMPARE(hear(HeartbeatBytes::firstGeneration(), "127.0.0.22"), QString());
        QCOMPARE(hear(HeartbeatBytes::n6(), "127.0.0.20"), QString());
        QCOMPARE(shown(strip), "warning: Found Gen1 devices, contact support for suitable software"_s);
    }

    void verdictFollowsWhatIsKnown()
    {
        using Row = std::tuple<Reachable, ConnectionQuality, const char *>;
        const auto error = ConnectionQuality::Error, good = ConnectionQuality::Good,
                   warning = ConnectionQuality::Warning;
        // Displays, the N6, a server and several of them; the first that fits decides.
        for (const auto &[known, quality, text] :
             {Row{{false, false, true, true}, error, "Connection problem, check your network settings"},
              Row{{false, true, true, true}, good, "N6 connection ok, no screens connected"},
              Row{{true, true, true, true}, warning, "Connection ok, but multiple servers configured"},
              Row{{true, false, true, false}, good, "Connection ok"},
              Row{{true, true, false, false}, warning, "Connection ok, but no N6 found"}}) {
            QCOMPARE(verdictOn(known).text, QLatin1String(text));
            QVERIFY(verdictOn(known).quality == quality);
        }
    }

    void stripGivesAFirstVerdict()
    {
        udpHBClient client(udpHBClient::Passive);
        const connectionState strip(nullptr, &client);
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_VERIFY_WITH_TIMEOUT(strip.findChild<QLabel *>()->text() != "Not connected"_s, 8000);
        QVERIFY(elapsed.elapsed() >= 5500);
        QCOMPARE(shown(strip), "error: Connection problem, check your network settings"_s);
        // A conflict of servers shows at the next change that the client reports.
        client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.21"));
        QTRY_VERIFY_WITH_TIMEOUT(client.multipleServersDetected(), 5000);
        client.processHeartbeat(HeartbeatBytes::device(Screen2, "C"), at("127.0.0.23"));
        QCOMPARE(shown(strip), "warning: Connection ok, but multiple servers configured"_s);
    }

    void everyControlIsNamedAndReached()
    {
        Mainwindow window;
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        quint32 address = 0x7F000015;
        for (const DeviceKind kind : {Screen, Screen, Screen2, Eink})
            client->processHeartbeat(HeartbeatBytes::device(kind, "S"), QHostAddress(address++));
        window.show();
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *tabs = window.findChild<QTabWidget *>();
        QStringList rounds;
        for (int page = 0; page < tabs->count(); ++page) {
            tabs->setCurrentIndex(page);
            rounds += tabRound(tabs);
        }
        QCOMPARE(rounds.join("; "_s),
                 "S (PO)|S (PO)|Start Update|Screen Updates; S (PO)|Start Update|Screen2 Updates; "
                 "S (PO)|Start Update|E-Ink Updates; Open Webinterface|Port 1|Port 2|Update N6|N6 Setup; "
                 "Backup Settings|Restore Settings|Factory Reset|N6 Configuration"_s);
        const auto bars = window.findChildren<QProgressBar *>();
        for (QWidget *bar : bars)
            QVERIFY(!nameOf(bar).isEmpty());
    }
};

QTEST_MAIN(TestApp)
#include "tst_app.moc"
