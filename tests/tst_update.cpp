// The update pages against simulated displays and a simulated N6, over real FTP and UDP.

#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/boat.h"
#include "tests/support/files.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/scriptedftpserver.h"
#include "tests/support/text.h"
#include "update/monitorupdate.h"
#include "update/monitorupdatewidget.h"
#include "update/n6widget.h"
#include "update/transferbar.h"
#include "update/updatefile.h"
#include "update/upload.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QNetworkDatagram>
#include <QProgressBar>
#include <QPushButton>
#include <QUdpSocket>
#include <QtTest>

#include <algorithm>
#include <climits>

namespace
{

constexpr int activeMode = 0, passiveMode = 2;
constexpr int n6Host = 10, firstDisplayHost = 20, unusedHost = 98;
constexpr int longestTransferMs = 60000;
const QString displays = "--no-n6 --no-gyro --heartbeat-interval 0.2 --screens "_s;

QList<MonitorUpdateWidget *> rowsOf(const QWidget &page)
{
    return page.findChildren<MonitorUpdateWidget *>();
}

QPushButton *button(const QWidget &page, const QString &text)
{
    const auto buttons = page.findChildren<QPushButton *>();
    return *std::find_if(buttons.begin(), buttons.end(), [&](auto *each) { return each->text() == text; });
}

template <typename Page>
void choose(Page &page, const QString &path)
{
    page.startClicked();
    auto *dialog = page.window()->template findChildren<QFileDialog *>().constLast();
    dialog->selectFile(path);
    static_cast<QDialog *>(dialog)->accept();
}

} // namespace

class TestUpdate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path())); }

    void packagesAreToldByTheirPath()
    {
        QVERIFY(QDir(folder.path()).mkpath("eink-update"_s));
        const auto isPackage = [this](const QString &type, const QString &name) {
            return updatefile::isValid(write(folder.filePath(name), "x"), updatefile::pattern(type));
        };
        QVERIFY(isPackage("EINK"_s, "eink-update/x.bin"_s) && !isPackage("EINK"_s, "eink-update"_s));
        QVERIFY(isPackage("SCREEN"_s, "screen-update-1.tar.gz"_s));
        QVERIFY(!isPackage("SCREEN"_s, "screen2-update.tar.gz"_s));
        QVERIFY(!isPackage("SCREEN2"_s, "screen-update.tar.gz"_s));
    }

    void barHoldsEverySize()
    {
        QProgressBar bar;
        for (const qint64 total : {qint64(INT_MAX), qint64(INT_MAX) + 1, Q_INT64_C(1) << 62}) {
            transferbar::show(&bar, total / 4, total);
            QCOMPARE(qRound(4.0 * bar.value() / bar.maximum()), 1);
        }
        transferbar::show(&bar, 0, 0);
        QVERIFY2(bar.maximum() > bar.minimum(), "busy for good");
    }

    void rowsStayWithTheirDisplays()
    {
        udpHBClient client(passiveMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        QList<QPointer<MonitorUpdateWidget>> built;
        const auto box = [&page](int row) { return rowsOf(page).at(row)->findChild<QCheckBox *>(); };
        const auto isKept = [&] {
            return box(0)->isChecked() && !box(1)->isChecked() && page.focusWidget() == box(1);
        };
        // Building 250 lists of up to 250 rows would hold the window for seconds.
        for (quint32 display = 0; display < 250; ++display) {
            client.processHeartbeat(HeartbeatBytes::device(Screen, "R&S"),
                                    QHostAddress(0x7F000100U + display));
            built += rowsOf(page).constLast();
            if (display == 1) {
                box(1)->setFocus();
                box(1)->click();
            }
        }
        QVERIFY(!built.contains(nullptr) && isKept() && box(0)->shortcut().isEmpty());
        choose(page, write(folder.filePath("screen-update.tar.gz"_s), "x"));
        button(page, "&Abort Update"_s)->click();
        emit client.listUpdated();
        QVERIFY(built.constFirst().isNull() && isKept());
        client.processHeartbeat(HeartbeatBytes::device(Eink, "E"), QHostAddress(0x7F000100U));
        QCOMPARE(rowsOf(page).size(), 249);
    }

    void dialogsBelongToTheWindowAndFreezeTheList()
    {
        udpHBClient client(passiveMode);
        QWidget window;
        auto *page = new MonitorUpdate(&client, "SCREEN"_s, &window);
        const QList<QUrl> usual = QFileDialog().sidebarUrls();
        page->startClicked();
        auto *dialog = window.findChild<QFileDialog *>();
        QCOMPARE(dialog->sidebarUrls().constFirst(), QUrl::fromLocalFile(dialog->directory().path()));
        QCOMPARE(dialog->sidebarUrls().constLast(), QUrl::fromLocalFile(QDir::homePath()));
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A"), at("127.0.0.1"));
        // As a first-generation device makes the window do.
        page->setEnabled(false);
        QVERIFY(dialog->isEnabled() && rowsOf(*page).isEmpty());
        dialog->reject();
        QVERIFY(dialog->sidebarUrls() == usual && rowsOf(*page).size() == 1);
        page->startClicked();
        delete page;
        QTRY_VERIFY(window.findChildren<QFileDialog *>().isEmpty());
    }

    void uploadsEndByThemselves_data()
    {
        QTest::addColumn<QByteArray>("verb");
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("refused at the greeting") << QByteArray() << QByteArray("421 Busy\r\n");
        QTest::newRow("silent before the file") << QByteArray("STOR") << QByteArray();
        QTest::newRow("silent after the file") << QByteArray("STOR") << QByteArray("150 Go\r\n");
        QTest::newRow("silent after the confirmation") << QByteArray("QUIT") << QByteArray();
    }

    void uploadsEndByThemselves()
    {
        QFETCH(const QByteArray, verb);
        QFETCH(const QByteArray, reply);
        ScriptedFtpServer server(QHostAddress::LocalHost, protocol::ftpPort);
        server.takeOver = [&](const QByteArray &heard) {
            // Slow answers are no silence: together they take longer than one may.
            const bool isSlow = heard != verb && (heard.isEmpty() || heard == "PASS");
            if (isSlow)
                QTimer::singleShot(600, &server, [&server] { server.reply("230 Fine\r\n"); });
            else if (heard == verb)
                server.reply(reply);
            return isSlow || heard == verb;
        };
        Upload upload(nullptr);
        const bool isPatientAtLast = !reply.startsWith("150");
        upload.setPatience({isPatientAtLast ? 1000 : 100000, isPatientAtLast ? 100000 : 1000});
        const QSignalSpy ended(&upload, &Upload::ended);
        QVERIFY(upload.start("127.0.0.1"_s, write(folder.filePath("image"_s), "x")));
        QTRY_COMPARE(ended.size(), 1);
        QVERIFY(server.lines.join().contains(verb));
        QVERIFY(ended.at(0).at(0).toBool());
        QVERIFY(upload.abort() && !upload.abort());
    }

    void twelveDisplaysAreUpdatedAtOnce()
    {
        // Long enough for two silent displays to time out on the way, one of them unticked; they speak only
        // through the test.
        const QByteArray contents(1000000, 'u'), stored = "stored path=/update/image bytes=1000000 ";
        QString options = displays + "13 --silent screen-1 --silent screen-2"_s;
        for (int display = 1; display <= 13; ++display)
            options += " --ftp-fault screen-%1=slow:100000"_s.arg(display);
        Boat boat(options);
        udpHBClient client(activeMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        page.show();
        QTRY_COMPARE(rowsOf(page).size(), 11);
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A"), boatAddress(firstDisplayHost));
        client.processHeartbeat(HeartbeatBytes::device(Screen, "B"), boatAddress(firstDisplayHost + 1));
        const auto rows = rowsOf(page);
        QCOMPARE(rows.size(), 13);
        rows.constLast()->findChild<QCheckBox *>()->click();

        const QSignalSpy removed(&client, &udpHBClient::screenRemoved);
        const QString longName = QString(184, QLatin1Char('x')) + "screen-update Лодка 船.tar.gz"_s;
        choose(page, write(folder.filePath(longName), contents));
        QTRY_COMPARE_WITH_TIMEOUT(removed.size(), 2, longestTransferMs);
        QCOMPARE(boat.log().count(stored), 0);
        QCOMPARE(rowsOf(page), rows);
        QTRY_COMPARE_WITH_TIMEOUT(boat.log().count(stored), 12, longestTransferMs);
        QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
        emit client.listUpdated();
        QCOMPARE(rowsOf(page).size(), 11);
        client.processHeartbeat(HeartbeatBytes::device(Screen, "B"), boatAddress(firstDisplayHost + 1));
        QVERIFY2(rowsOf(page).constLast()->isTicked(), "its choice went with it");
    }

    void anUpdateFollowsAnyEnd_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QByteArray>("moment");
        QTest::newRow("aborted at once") << "slow:200000"_s << QByteArray();
        QTest::newRow("aborted while connecting") << "mute"_s << QByteArray("ftp-connect");
        QTest::newRow("connection dropped") << "drop:100000"_s << QByteArray("upload-broken");
        QTest::newRow("connection refused") << "no-service"_s << QByteArray();
        QTest::newRow("disk full") << "full"_s << QByteArray("upload-refused");
    }

    void anUpdateFollowsAnyEnd()
    {
        QFETCH(const QString, fault);
        QFETCH(const QByteArray, moment);
        const QString file = write(folder.filePath("screen-update.tar.gz"_s), QByteArray(500000, 'v'));
        // The first display takes its update without trouble.
        auto boat = std::make_unique<Boat>(displays + "2 --ftp-fault screen-2="_s + fault);
        udpHBClient client(activeMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        page.show();
        QTRY_COMPARE(rowsOf(page).size(), 2);
        const QSignalSpy first(rowsOf(page).at(0), &MonitorUpdateWidget::updateComplete),
            second(rowsOf(page).at(1), &MonitorUpdateWidget::updateComplete);
        choose(page, file);
        if (!moment.isEmpty()) {
            boat->waitFor("screen-2 " + moment);
            QTRY_COMPARE_WITH_TIMEOUT(first.size(), 1, longestTransferMs);
        }
        if (fault == "slow:200000"_s || fault == "mute"_s)
            button(page, "&Abort Update"_s)->click();
        QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
        QCOMPARE(second.size(), 1);

        boat.reset();
        boat = std::make_unique<Boat>(displays + "2 --ftp-fault screen-2=slow:200000"_s);
        choose(page, file);
        // It is over when both displays have it, and no sooner.
        QTRY_VERIFY_WITH_TIMEOUT(button(page, "&Start Update"_s)->isVisible(), longestTransferMs);
        QTRY_COMPARE_WITH_TIMEOUT(boat->log().count("stored path=/update/image bytes=500000 "), 2, 1000);
    }

    void rowsMayBeRebuiltFromTheirOwnSignal()
    {
        udpHBClient client(passiveMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A"), boatAddress(unusedHost));
        for (const bool aborts : {false, true}) {
            const QPointer<MonitorUpdateWidget> row = rowsOf(page).at(0);
            connect(row, &MonitorUpdateWidget::updateComplete, &page, &MonitorUpdate::newMonitors);
            row->updateDataTransferProgress(1, 1);
            choose(page, write(folder.filePath("screen-update.tar.gz"_s), "x"));
            QVERIFY(row->findChild<QProgressBar *>()->value() < 0);
            if (aborts)
                button(page, "&Abort Update"_s)->click();
            QTRY_VERIFY(row.isNull());
            QCOMPARE(rowsOf(page).size(), 1);
        }
    }

    void reportedPortModesAreNeverSentBack()
    {
        QUdpSocket n6;
        QVERIFY(n6.bind(boatAddress(n6Host), protocol::commandPort));
        udpHBClient client(passiveMode);
        N6Widget page(nullptr, &client);
        auto *port1 = page.findChild<QComboBox *>("comboBox_port1"_s);
        auto *port2 = page.findChild<QComboBox *>("comboBox_port2"_s);
        const QMap<int, int> port1Indices{{-1, -1}, {0, 0}, {6, 1}, {4, 2}, {5, 3}};
        for (int code = -128; code < 128; ++code) {
            const int before = port1->currentIndex();
            client.processHeartbeat(HeartbeatBytes::n6("N6", 1, code, code), boatAddress(n6Host));
            QCOMPARE(port1->currentIndex(), port1Indices.value(code, before));
            QCOMPARE(port2->currentIndex(), code >= 0 && code <= 2 ? code : -1);
        }
        QWheelEvent notch({}, {}, {}, QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(port1, &notch);
        QVERIFY2(!notch.isAccepted(), "what lies behind may scroll");
        for (const char *name : {"NMEA0183", "NMEA0183-HS", "Seatalk", "Nexus FDX"})
            port1->setCurrentText(QLatin1String(name));
        for (const char *name : {"NMEA0183", "B&G Fastnet", "NMEA0183-HS"})
            port2->setCurrentText(QLatin1String(name));
        // Nothing came before the choices: the first datagrams are those.
        const QByteArray choices("0\0000\0060\0040\0051\0001\0011\002", 14);
        QByteArray sent;
        while (sent.size() < choices.size() && (n6.hasPendingDatagrams() || n6.waitForReadyRead(5000)))
            sent += n6.receiveDatagram().data();
        QCOMPARE(sent, choices);
    }

private:
    QTemporaryDir folder;
};

QTEST_MAIN(TestUpdate)
#include "tst_update.moc"
