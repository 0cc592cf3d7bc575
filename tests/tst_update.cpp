// The update pages against simulated displays and a simulated N6, over real FTP and UDP.

#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/simulatedboat.h"
#include "update/monitorupdate.h"
#include "update/monitorupdatewidget.h"
#include "update/n6widget.h"
#include "update/rowtext.h"
#include "update/updatechecker.h"
#include "update/updatefile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
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

QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}

QList<MonitorUpdateWidget *> rowsOf(const QWidget &page)
{
    return page.findChildren<MonitorUpdateWidget *>();
}

QString label(const QWidget *parent, const QString &name = QString())
{
    return parent->findChild<QLabel *>(name)->text();
}

QPushButton *button(const QWidget &page, const QString &text)
{
    const auto buttons = page.findChildren<QPushButton *>();
    return *std::find_if(buttons.begin(), buttons.end(), [&](auto *each) { return each->text() == text; });
}

// How long this thread has worked; what other programs did meanwhile is no fault of the window.
qint64 busyMs()
{
    QFile statistics("/proc/thread-self/schedstat"_s);
    return statistics.open(QIODevice::ReadOnly) ? statistics.readAll().split(' ').at(0).toLongLong() / 1000000
                                                : 0;
}

void hearScreen(udpHBClient &client, const QByteArray &serial, int host, quint8 kind = 0)
{
    client.processHeartbeat(HeartbeatBytes::screen(kind, serial), boatAddress(host));
}

template <typename Page>
void choose(Page &page, const QString &path)
{
    page.startClicked();
    auto *dialog = page.template findChild<QFileDialog *>();
    dialog->selectFile(path);
    static_cast<QDialog *>(dialog)->accept();
}

} // namespace

class TestUpdate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path())); }

    void updateFolderIsFound()
    {
        // Nothing can be created below a file, not even by root.
        write("file"_s, "");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
        const auto found = [this](const char *dataHome, const char *downloads) {
            write("user-dirs.dirs"_s,
                  "XDG_DOWNLOAD_DIR=\"" + QFile::encodeName(folder.path()) + downloads + "\"\n");
            qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()) + dataHome);
            return UpdateChecker::updateDirectory();
        };
        const QString name = QCoreApplication::applicationName();
        QCOMPARE(found("/data", "/down"), QDir(folder.filePath("data/Dokvane/firmware"_s)));
        QVERIFY(QDir(folder.filePath("data/Dokvane/firmware"_s)).exists());
        QTest::ignoreMessage(QtInfoMsg, "UpdateChecker: Could not mkpath to app data location");
        QCOMPARE(found("/file/x", "/down"), QDir(folder.filePath("file/x/Dokvane/firmware"_s)));
        QVERIFY(QDir(folder.filePath("down/firmware"_s)).exists());
        QTest::ignoreMessage(QtInfoMsg, "UpdateChecker: Could not mkpath to app data location");
        QTest::ignoreMessage(QtInfoMsg, "UpdateChecker: Could not mkpath to download location");
        QCOMPARE(found("/file/x", "/file/y"), QDir::temp());
        QCOMPARE(QCoreApplication::applicationName(), name);
        initTestCase();
    }

    void packagesAreToldByTheirPath()
    {
        const auto isPackage = [this](const QString &type, const QString &name) {
            return updatefile::isValid(write(name, "x"), updatefile::pattern(type));
        };
        QVERIFY(isPackage("SCREEN"_s, "screen-update-1.tar.gz"_s));
        QVERIFY(!isPackage("SCREEN"_s, "screen2-update.tar.gz"_s));
        QVERIFY(!isPackage("SCREEN2"_s, "screen-update.tar.gz"_s));
        QVERIFY(!isPackage("N6"_s, "N6-UPDATE.tar.gz"_s));
        QVERIFY(!updatefile::isValid(folder.filePath("missing-n6-update"_s), "n6-update"_s));
        QVERIFY(QDir(folder.path()).mkpath("eink-update"_s) && isPackage("EINK"_s, "eink-update/x.bin"_s));
        QVERIFY(!updatefile::isValid(folder.filePath("eink-update"_s), "eink-update"_s));
    }

    void rowTellsWhoTheDisplayIs()
    {
        ScreenDevice screen;
        screen.address = QHostAddress("::ffff:192.168.1.31"_s);
        screen.serial = "%3%7%1"_s;
        screen.firmwareVersion = "1.4"_s;
        screen.systemVersion = "5.10.110-kelvora"_s;
        screen.applicationVersion = "2.1.0"_s;
        screen.supplyVoltage = 12.2;
        screen.ambientLux = 100000.06;
        QCOMPARE(rowtext::readout(screen), "12.2 V\n100000.1 Lux"_s);
        const QString versions = "\nAPP 2.1.0  FW 1.4  OS 5.10.110"_s;
        QCOMPARE(rowtext::description(screen), "%3%7%1 (PO)  IP = 192.168.1.31  "_s + versions);
        screen.isServer = screen.lsFlag = true;
        QCOMPARE(rowtext::description(screen), "%3%7%1 (LS)  IP = 192.168.1.31  [Server]"_s + versions);
    }

    void pageListsTheDisplaysOfItsType()
    {
        udpHBClient client(passiveMode);
        const MonitorUpdate screens(&client, "SCREEN"_s, nullptr), screen2s(&client, "SCREEN2"_s, nullptr),
            einks(&client, "EINK"_s, nullptr);
        hearScreen(client, "A", 20);
        hearScreen(client, "B", 21, 0x50);
        hearScreen(client, "C", 22);
        const auto rows = rowsOf(screens);
        QCOMPARE(rows.size(), 2);
        QCOMPARE(label(rows.at(1)), "12.0 V\n0.0 Lux"_s);
        QCOMPARE(label(rowsOf(einks).at(0)), "---"_s);
        QCOMPARE(label(&screens), "Select device for software update:"_s);
        QCOMPARE(label(&screen2s), "No screen2 devices available for update."_s);
        hearScreen(client, "D", 22);
        QCOMPARE(rowsOf(screens), rows);
        QVERIFY(rows.at(0)->findChild<QCheckBox *>()->text().startsWith("A (PO)"_s));
        QVERIFY(rows.at(1)->findChild<QCheckBox *>()->text().startsWith("D (PO)"_s));
    }

    void tickDecidesAboutTheUpload()
    {
        ScreenDevice screen;
        screen.address = boatAddress(unusedHost);
        screen.type = "SCREEN"_s;
        MonitorUpdateWidget row(&screen, nullptr);
        const QSignalSpy started(&row, &MonitorUpdateWidget::updateStarted);
        row.findChild<QCheckBox *>()->setChecked(false);
        row.updateMonitor(write("screen-update"_s, "x"));
        QCOMPARE(label(&row), QString());
        row.updateCounter(screen);
        QCOMPARE(label(&row), "0.0 V\n0.0 Lux"_s);

        // A file that cannot be opened is not counted as begun; its session ends all the same.
        row.findChild<QCheckBox *>()->setChecked(true);
        const QSignalSpy complete(&row, &MonitorUpdateWidget::updateComplete);
        row.updateMonitor(folder.filePath("missing"_s));
        QCOMPARE(label(&row), "Downloading..."_s);
        QTRY_COMPARE(complete.size(), 1);
        QVERIFY(started.isEmpty());
    }

    void barHoldsEverySize()
    {
        udpHBClient client(passiveMode);
        const ScreenDevice screen;
        MonitorUpdateWidget row(&screen, nullptr);
        N6Widget page(nullptr, &client);
        for (const qint64 total :
             {Q_INT64_C(65536), qint64(INT_MAX), qint64(INT_MAX) + 1, Q_INT64_C(1) << 62}) {
            for (const int quarters : {1, 4}) {
                row.updateDataTransferProgress(total / 4 * quarters + total % 4, total);
                page.updateDataTransferProgress(total / 4 * quarters + total % 4, total);
                for (const QProgressBar *bar :
                     {row.findChild<QProgressBar *>(), page.findChild<QProgressBar *>()})
                    QCOMPARE(qRound(4.0 * bar->value() / bar->maximum()), quarters);
            }
        }
    }

    void twelveDisplaysAreUpdatedAtOnce()
    {
        // Long enough for two silent displays to time out on the way; they and the thirteenth speak only
        // through the test.
        const QByteArray contents(1000000, 'u');
        QString options = "--no-n6 --no-gyro --screens 13 --heartbeat-interval 0.1"_s;
        for (const int display : {1, 2, 13})
            options += " --silent screen-%1"_s.arg(display);
        for (int display = 1; display <= 12; ++display)
            options += " --ftp-fault screen-%1=slow:100000"_s.arg(display);
        SimulatedBoat boat(options);
        QTRY_VERIFY(boat.isReady());
        udpHBClient client(activeMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        page.show();
        QTRY_COMPARE(rowsOf(page).size(), 10);
        hearScreen(client, "A", firstDisplayHost);
        hearScreen(client, "B", firstDisplayHost + 1);
        const auto rows = rowsOf(page);
        QCOMPARE(rows.size(), 12);

        qint64 longestWaitMs = 0, longestWorkMs = 0, busyBeforeMs = 0;
        QElapsedTimer sinceProbe;
        QTimer probe;
        connect(&probe, &QTimer::timeout, [&] {
            longestWaitMs = qMax(longestWaitMs, sinceProbe.restart());
            longestWorkMs = qMax(longestWorkMs, busyMs() - busyBeforeMs);
            busyBeforeMs = busyMs();
        });
        const QSignalSpy removed(&client, &udpHBClient::screenRemoved),
            heard(&client, &udpHBClient::screenUpdated);
        choose(page, write("screen-update.tar.gz"_s, contents));
        sinceProbe.start();
        busyBeforeMs = busyMs();
        probe.start(10);
        for (const auto *row : rows)
            QTRY_VERIFY(row->findChild<QProgressBar *>()->value() > 0);
        QTRY_COMPARE_WITH_TIMEOUT(removed.size(), 2, longestTransferMs);
        hearScreen(client, "C", firstDisplayHost + 12);
        QCOMPARE(boat.storedCopies(contents), 0);
        QCOMPARE(rowsOf(page), rows);
        QTRY_COMPARE_WITH_TIMEOUT(boat.storedCopies(contents), 12, longestTransferMs);
        QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
        QVERIFY(heard.size() > 100);
        QVERIFY2(longestWorkMs <= 100, qPrintable(QString::number(longestWorkMs)));
        // A blocking wait would show here, with room for a busy machine.
        QVERIFY2(longestWaitMs <= 3000, qPrintable(QString::number(longestWaitMs)));
        // Again, since on a slow machine it is silent for too long by now.
        hearScreen(client, "C", firstDisplayHost + 12);
        emit client.listUpdated();
        QCOMPARE(rowsOf(page).size(), 11);
    }

    void anUpdateFollowsAnyEnd_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QByteArray>("moment");
        QTest::addColumn<bool>("endsByItself");
        QTest::newRow("aborted at once") << "slow:200000"_s << QByteArray() << false;
        QTest::newRow("aborted while connecting") << "mute"_s << QByteArray("ftp-connect") << false;
        QTest::newRow("connection dropped") << "drop:100000"_s << QByteArray("upload-broken") << false;
        QTest::newRow("connection refused") << "no-service"_s << QByteArray() << true;
        QTest::newRow("login refused") << "refused-login"_s << QByteArray("ftp-login-refused") << true;
        QTest::newRow("disk full") << "full"_s << QByteArray("upload-refused") << true;
    }

    void anUpdateFollowsAnyEnd()
    {
        QFETCH(const QString, fault);
        QFETCH(const QByteArray, moment);
        QFETCH(const bool, endsByItself);
        const QByteArray contents(500000, 'v');
        const QString file = write("screen-update.tar.gz"_s, contents);
        const QString displays = "--no-n6 --no-gyro --screens 3 --heartbeat-interval 0.2"_s;
        // The first display takes its update without trouble.
        auto boat = std::make_unique<SimulatedBoat>(
            displays + " --ftp-fault screen-2=%1 --ftp-fault screen-3=%1"_s.arg(fault));
        QTRY_VERIFY(boat->isReady());
        udpHBClient client(activeMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        page.show();
        QTRY_COMPARE(rowsOf(page).size(), 3);
        const auto rows = rowsOf(page);
        const QSignalSpy first(rows.at(0), &MonitorUpdateWidget::updateComplete),
            second(rows.at(1), &MonitorUpdateWidget::updateComplete),
            third(rows.at(2), &MonitorUpdateWidget::updateComplete);
        choose(page, file);
        if (!moment.isEmpty()) {
            QTRY_VERIFY(boat->log().contains("screen-2 " + moment) &&
                        boat->log().contains("screen-3 " + moment));
            QTRY_COMPARE_WITH_TIMEOUT(first.size(), 1, longestTransferMs);
        }
        if (!endsByItself) {
            const int firstEnded = first.size();
            QVERIFY(second.isEmpty() && third.isEmpty());
            button(page, "&Abort Update"_s)->click();
            for (const auto *row : rows) {
                QCOMPARE(label(row), "Aborted."_s);
                QCOMPARE(row->findChild<QProgressBar *>()->value(), -1);
            }
            QCOMPARE(first.size(), firstEnded + 1);
        }
        QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
        QVERIFY(!button(page, "&Abort Update"_s)->isVisible());
        QCOMPARE(second.size() + third.size(), 2);

        boat.reset();
        boat = std::make_unique<SimulatedBoat>(displays);
        QTRY_VERIFY(boat->isReady());
        choose(page, file);
        QTRY_COMPARE_WITH_TIMEOUT(boat->storedCopies(contents), 3, longestTransferMs);
        QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
    }

    void rowsMayBeRebuiltFromTheirOwnSignal()
    {
        udpHBClient client(passiveMode);
        MonitorUpdate page(&client, "SCREEN"_s, nullptr);
        hearScreen(client, "A", unusedHost);
        for (const bool aborts : {false, true}) {
            const QPointer<MonitorUpdateWidget> row = rowsOf(page).at(0);
            connect(row, &MonitorUpdateWidget::updateComplete, &page, &MonitorUpdate::newMonitors);
            choose(page, write("screen-update.tar.gz"_s, "x"));
            if (aborts)
                button(page, "&Abort Update"_s)->click();
            QTRY_VERIFY(row.isNull());
            QCOMPARE(rowsOf(page).size(), 1);
        }
    }

    void windowMayGoAtAnyTime_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("while uploading") << "screen-update-n6-update.tar.gz"_s;
        QTest::newRow("with boxes open") << "other.tar.gz"_s;
        QTest::newRow("with dialogs open") << QString();
    }

    void windowMayGoAtAnyTime()
    {
        QFETCH(const QString, name);
        SimulatedBoat boat(
            "--no-gyro --screens 1 --ftp-fault screen-1=slow:100000 --ftp-fault n6=slow:100000"_s);
        QTRY_VERIFY(boat.isReady());
        auto window = std::make_unique<QWidget>();
        auto *client = new udpHBClient(activeMode, window.get());
        auto *displays = new MonitorUpdate(client, "SCREEN"_s, window.get());
        auto *instrument = new N6Widget(window.get(), client);
        window->show();
        QTRY_VERIFY(client->n6Online() && !rowsOf(*displays).isEmpty());
        if (name.isEmpty()) {
            displays->startClicked();
            instrument->startClicked();
        } else {
            const QString file = write(name, QByteArray(500000, 'w'));
            choose(*displays, file);
            choose(*instrument, file);
        }
        if (name.contains("update"_s))
            QTRY_COMPARE(boat.log().count(" ftp-login "), 2);
        const auto boxes = window->findChildren<QMessageBox *>();
        QCOMPARE(boxes.size(), name == "other.tar.gz"_s ? 2 : 0);
        for (const QMessageBox *box : boxes)
            QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Cancel));
        window->close();
        window.reset();
        QTRY_COMPARE(boat.log().count(" ftp-disconnect "), boat.log().count(" ftp-connect "));
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
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
        QTest::ignoreMessage(QtDebugMsg, "Setting N6 Port1 mode to 6");
        QTest::ignoreMessage(QtDebugMsg, "Setting N6 Port2 mode to 1");
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

    void n6IsUpdatedFromAnyPath_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("blanks") << "my n6-update of May.tar.gz"_s;
        QTest::newRow("non-Latin letters") << "n6-update Лодка 船.tar.gz"_s;
        QTest::newRow("200 characters") << QString(184, QLatin1Char('x')) + "n6-update.tar.gz"_s;
    }

    void n6IsUpdatedFromAnyPath()
    {
        QFETCH(const QString, name);
        const QString address = boatAddress(n6Host).toString();
        // A display in the N6's place says nothing that could end the status early.
        SimulatedBoat boat("--no-n6 --no-gyro --screens 1 --address screen-1="_s + address);
        QTRY_VERIFY(boat.isReady());
        udpHBClient client(passiveMode);
        N6Widget page(nullptr, &client);
        auto *webButton = page.findChild<QPushButton *>("webButton"_s);
        QDesktopServices::setUrlHandler("http"_s, this, "receiveUrl");
        openedUrl.clear();
        QTest::mousePress(webButton, Qt::LeftButton);
        QVERIFY(openedUrl.isEmpty());
        const QHostAddress mapped("::ffff:"_s + address);
        client.processHeartbeat(HeartbeatBytes::n6("N6-1", 4), mapped);
        QTest::mousePress(webButton, Qt::LeftButton);
        QCOMPARE(openedUrl, QUrl("http://"_s + address + "/"_s));
        QCOMPARE(label(&page, "label_serial"_s), "N6-1   (N6 Fjord)"_s);
        QCOMPARE(label(&page, "label_version"_s), "3.6   (FW 1.4)"_s);

        const QByteArray contents = name.toUtf8() + QByteArray(300000, 'n');
        QTest::ignoreMessage(QtDebugMsg, "Updates started");
        QTest::ignoreMessage(QtDebugMsg, "Updates send");
        choose(page, write(name, contents));
        QCOMPARE(label(&page, "resultLabel"_s), "Downloading..."_s);
        QTRY_COMPARE_WITH_TIMEOUT(label(&page, "resultLabel"_s), "Updating..."_s, longestTransferMs);
        QElapsedTimer sinceEnd;
        sinceEnd.start();
        QCOMPARE(boat.storedCopies(contents), 1);
        // The status stays for the four seconds in which the instrument is busy, and goes with the next
        // heartbeat.
        const auto clearsWithHeartbeat = [&] {
            client.processHeartbeat(HeartbeatBytes::n6("N6-1", 4), mapped);
            return label(&page, "resultLabel"_s).isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(clearsWithHeartbeat(), 6000);
        QVERIFY(sinceEnd.elapsed() > 3900);
    }

    void receiveUrl(const QUrl &url) { openedUrl = url; }

private:
    QString write(const QString &name, const QByteArray &bytes)
    {
        QFile file(folder.filePath(name));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        return written ? file.fileName() : QString();
    }

    QTemporaryDir folder;
    QUrl openedUrl;
};

QTEST_MAIN(TestUpdate)
#include "tst_update.moc"
