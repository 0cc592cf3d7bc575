// The window as a whole: what it tells, what it locks, and how the keyboard gets around in it.

#include "app/connectionstate.h"
#include "app/icons.h"
#include "app/mainwindow.h"
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

// The strip's icon and text.
QString shown(const QWidget &window)
{
    const auto &strip = *window.findChild<connectionState *>();
    const auto pixels = [](const QIcon &icon) { return icon.pixmap(26).toImage(); };
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

} // namespace

class TestApp : public QObject
{
    Q_OBJECT

private slots:
    void windowTellsAndUnlocksWhatIsReachable()
    {
        QCoreApplication::setApplicationVersion("3.6"_s);
        const Mainwindow window;
        QVERIFY(window.windowTitle().endsWith(" - v3.6"_s));
        QCOMPARE(window.windowIcon().availableSizes().size(), 6);
        QVERIFY(window.minimumSize() == QSize(770, 500) && window.size() == QSize(900, 640));
        const auto &strip = *window.findChild<connectionState *>();
        QVERIFY(strip.height() == 50 && strip.findChild<QLabel *>()->font().pixelSize() == 16);
        QCOMPARE(shown(window), "error: Not connected"_s);
        const auto *tabs = window.findChild<QTabWidget *>();
        const char *const good = "ok: Connection ok",
                          *const alone = "warning: Connection ok, but no N6 found",
                          *const old = "warning: Found Gen1 devices, contact support for suitable software";
        using Row = std::tuple<QByteArray, const char *, const char *, const char *>;
        for (const auto &[datagram, from, unlocked, said] :
             {Row{HeartbeatBytes::device(Screen, "A"), "127.0.0.21", "012", alone},
              {HeartbeatBytes::device(Screen, "A", true), "127.0.0.21", "012", good},
              {HeartbeatBytes::device(Screen, "A"), "127.0.0.21", "012", alone},
              {HeartbeatBytes::n6(), "127.0.0.20", "01234", good},
              {HeartbeatBytes::firstGeneration(), "127.0.0.22", "", old},
              {HeartbeatBytes::n6(), "127.0.0.20", "", old}}) {
            window.findChild<udpHBClient *>()->processHeartbeat(datagram, at(from));
            QString open;
            for (int page = 0; page < tabs->count(); ++page)
                open += tabs->isEnabled() && tabs->isTabEnabled(page) ? QString::number(page) : QString();
            QCOMPARE(open, QLatin1String(unlocked));
            QCOMPARE(shown(window), QLatin1String(said));
        }
    }

    void stripGivesAFirstVerdict()
    {
        QWidget window;
        udpHBClient client(udpHBClient::Passive);
        const connectionState strip(&window, &client);
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_COMPARE_WITH_TIMEOUT(shown(window), "error: Connection problem, check your network settings"_s,
                                  8000);
        QVERIFY(elapsed.elapsed() >= 5500);
        client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        QCOMPARE(shown(window), "ok: N6 connection ok, no screens connected"_s);
        // A conflict of servers shows at the next change that the client reports.
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.21"));
        QTRY_VERIFY_WITH_TIMEOUT(client.multipleServersDetected(), 5000);
        client.processHeartbeat(HeartbeatBytes::device(Screen2, "C"), at("127.0.0.23"));
        QCOMPARE(shown(window), "warning: Connection ok, but multiple servers configured"_s);
    }

    void everyControlIsNamedAndReached()
    {
        Mainwindow window;
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        quint32 address = 0x7F000015;
        for (const DeviceKind kind : {Screen, Screen, Screen2, Eink})
            client->processHeartbeat(HeartbeatBytes::device(kind, "S"), QHostAddress(address++));
        // The key stops at those of these that are on the page that is open.
        QString stops;
        for (QWidget *at = &window; (at = at->nextInFocusChain()) != &window;) {
            const bool isStop = (at->focusPolicy() & Qt::TabFocus) != 0 && at->isEnabled() && !at->isHidden();
            if (isStop && !qobject_cast<QAbstractScrollArea *>(at))
                stops += nameOf(at).section(u' ', 0, 1) + u'|';
            QVERIFY(!qobject_cast<QProgressBar *>(at) || !nameOf(at).isEmpty());
        }
        QCOMPARE(stops,
                 "|Screen Updates|Open Webinterface|Port 1|Port 2|Update N6|Backup Settings|Restore Settings|"
                 "Factory Reset|S (PO)|S (PO)|Start Update|S (PO)|Start Update|S (PO)|Start Update|"_s);
    }
};

QTEST_MAIN(TestApp)
#include "tst_app.moc"
