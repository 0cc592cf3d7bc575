#include "app/connectionstate.h"
#include "app/icons.h"
#include "app/mainwindow.h"
#include "app/verdict.h"
#include "discovery/udphbclient.h"
#include "tests/support/answers.h"
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

void checkShown(const connectionState &strip, const char *icon, const char *text)
{
    QCOMPARE(strip.findChild<QLabel *>()->text(), QLatin1String(text));
    const auto pixels = [](const QIcon &shown) { return shown.pixmap(26).toImage(); };
    const QImage expected = pixels(builtinIcon(QLatin1String(icon)));
    QVERIFY(!expected.isNull());
    QCOMPARE(pixels(strip.findChild<QPushButton *>()->icon()), expected);
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
    void verdictFollowsWhatIsKnown()
    {
        using Row = std::tuple<Reachable, ConnectionQuality, const char *>;
        const auto good = ConnectionQuality::Good, warning = ConnectionQuality::Warning;
        // Displays, the N6, a server and several of them.
        for (const auto &[known, quality, text] :
             {Row{{false, false, true, true},
                  ConnectionQuality::Error,
                  "Connection problem, check your network settings"},
              Row{{false, true, true, true}, good, "N6 connection ok, no screens connected"},
              Row{{true, true, true, true}, warning, "Connection ok, but multiple servers configured"},
              Row{{true, false, true, false}, good, "Connection ok"},
              Row{{true, true, false, false}, warning, "Connection ok, but no N6 found"}}) {
            const Verdict verdict = verdictOn(known);
            QCOMPARE(verdict.text, QLatin1String(text));
            QVERIFY(verdict.quality == quality);
        }
    }

    void stripTellsWhatIsReachable()
    {
        udpHBClient client(2);
        const connectionState strip(nullptr, &client);
        checkShown(strip, "error", "Not connected");
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "A"), at("127.0.0.21"));
        checkShown(strip, "warning", "Connection ok, but no N6 found");
        client.processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        checkShown(strip, "ok", "Connection ok");
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "VK38").left(38), at("127.0.0.22"));
        client.processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        checkShown(strip, "warning", "Found Gen1 devices, contact support for suitable software");
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

    // A first-generation device that is heard under an open box must not leave the user before a locked box.
    void boxesStayUsableWhenPagesAreLocked()
    {
        const Mainwindow window;
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        Answers answers;
        QStringList usable;
        answers.answer = [&](QDialog *shown) {
            client->processHeartbeat(HeartbeatBytes::screen(0x00, "VK38").left(38), at("127.0.0.22"));
            if (shown->isEnabled())
                usable += shown->windowTitle();
            shown->reject();
            return true;
        };
        for (const char *name : {"backupButton", "restoreButton", "factoryButton"}) {
            window.findChild<QTabWidget *>()->setEnabled(true);
            window.findChild<QPushButton *>(QLatin1String(name))->click();
        }
        QCOMPARE(usable.join(QLatin1Char('|')),
                 QStringLiteral("Save As|Choose file to Restore|Factory Reset"));
    }

    void everyControlIsNamedAndReached()
    {
        Mainwindow window;
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::n6("N6"), at("127.0.0.20"));
        client->processHeartbeat(HeartbeatBytes::screen(0x00, "S1"), at("127.0.0.21"));
        client->processHeartbeat(HeartbeatBytes::screen(0x00, "S2"), at("127.0.0.22"));
        client->processHeartbeat(HeartbeatBytes::screen(0x20, "S3"), at("127.0.0.23"));
        client->processHeartbeat(HeartbeatBytes::screen(0x50, "E1"), at("127.0.0.24"));
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
                const bool isShown = widget->isVisible() && qobject_cast<QToolButton *>(widget) == nullptr;
                if (isShown &&
                    (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QProgressBar *>(widget)))
                    QVERIFY2(!nameOf(widget).isEmpty(), widget->metaObject()->className());
            }
        }
        QCOMPARE(rounds,
                 (QStringList{
                     QStringLiteral("S1 (PO)|S2 (PO)|Start Update|Screen Updates"),
                     QStringLiteral("S3 (PO)|Start Update|Screen2 Updates"),
                     QStringLiteral("E1 (PO)|Start Update|E-Ink Updates"),
                     QStringLiteral("Open Webinterface|Port 1|Port 2|Update N6|N6 Setup"),
                     QStringLiteral("Backup Settings|Restore Settings|Factory Reset|N6 Configuration"),
                 }));
    }
};

QTEST_MAIN(TestApp)
#include "tst_app.moc"
