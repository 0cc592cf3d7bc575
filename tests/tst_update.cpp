// The update pages against simulated displays and a simulated N6, over real FTP and UDP.

#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
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

constexpr int passiveMode = 2, activeMode = 0;
constexpr int longestTransferMs = 60000;
constexpr quint8 screenKind = 0x00, screen2Kind = 0x20, einkKind = 0x50, n6Kind = 0xC6;
constexpr int n6Host = 10, firstDisplayHost = 20;
constexpr qint64 gibibyte = Q_INT64_C(1) << 30;

QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}

QList<MonitorUpdateWidget *> rowsOf(const QWidget &page)
{
    return page.findChildren<MonitorUpdateWidget *>();
}

QString label(const QWidget *row)
{
    return row->findChild<QLabel *>()->text();
}

bool allSay(const QWidget &page, const QString &text)
{
    const auto rows = rowsOf(page);
    return std::all_of(rows.begin(), rows.end(), [&](const QWidget *row) { return label(row) == text; });
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
    auto *dialog = page.template findChild<QFileDialog *>();
    dialog->selectFile(path);
    static_cast<QDialog *>(dialog)->accept();
}

} // namespace

class TestUpdate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void updateFolderIsFound_data();
    void updateFolderIsFound();
    void packagesAreToldByTheirPath_data();
    void packagesAreToldByTheirPath();
    void rowTellsWhoTheDisplayIs_data();
    void rowTellsWhoTheDisplayIs();
    void pageListsTheDisplaysOfItsType();
    void tickDecidesAboutTheUpload();
    void barHoldsEverySize_data();
    void barHoldsEverySize();
    void twelveDisplaysAreUpdatedAtOnce();
    void anUpdateFollowsAnyEnd_data();
    void anUpdateFollowsAnyEnd();
    void rowsMayBeRebuiltFromTheirOwnSignal();
    void wrongFileIsRefused();
    void windowMayGoAtAnyTime_data();
    void windowMayGoAtAnyTime();
    void reportedPortModesAreNeverSentBack();
    void n6IsUpdatedFromAnyPath_data();
    void n6IsUpdatedFromAnyPath();
    void receiveUrl(const QUrl &url) { openedUrl = url; }

private:
    QString write(const QString &name, const QByteArray &bytes);

    QTemporaryDir folder;
    QUrl openedUrl;
};

QString TestUpdate::write(const QString &name, const QByteArray &bytes)
{
    QFile file(folder.filePath(name));
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    return written ? file.fileName() : QString();
}

void TestUpdate::initTestCase()
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
}

void TestUpdate::updateFolderIsFound_data()
{
    QTest::addColumn<QString>("dataHome");
    QTest::addColumn<QString>("downloads");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("messages");
    // Nothing can be created below a file, not even by root.
    QTest::newRow("data location writable") << "data"_s
                                            << "file/x"_s
                                            << "data"_s << 0;
    QTest::newRow("only downloads writable") << "file/x"_s
                                             << "downloads"_s
                                             << "file/x"_s << 1;
    QTest::newRow("neither writable") << "file/x"_s
                                      << "file/y"_s << QString() << 2;
}

void TestUpdate::updateFolderIsFound()
{
    QFETCH(const QString, dataHome);
    QFETCH(const QString, downloads);
    QFETCH(const QString, expected);
    QFETCH(const int, messages);
    write("file"_s, "");
    write("user-dirs.dirs"_s, "XDG_DOWNLOAD_DIR=\"" + folder.filePath(downloads).toUtf8() + "\"\n");
    const auto oldDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(dataHome)));
    if (messages >= 1)
        QTest::ignoreMessage(QtInfoMsg, "UpdateChecker: Could not mkpath to app data location");
    if (messages >= 2)
        QTest::ignoreMessage(QtInfoMsg, "UpdateChecker: Could not mkpath to download location");

    const QString name = QCoreApplication::applicationName();
    const QString found = UpdateChecker::updateDirectory().absolutePath();
    qputenv("XDG_DATA_HOME", oldDataHome);
    QCOMPARE(found,
             expected.isEmpty() ? QDir::tempPath() : folder.filePath(expected + "/Dokvane/firmware"_s));
    QCOMPARE(QCoreApplication::applicationName(), name);
    QCOMPARE(QDir(found).exists(), messages != 1);
    QCOMPARE(QDir(folder.filePath(downloads + "/firmware"_s)).exists(), messages == 1);
}

void TestUpdate::packagesAreToldByTheirPath_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::newRow("right name") << "SCREEN"_s
                                << "screen-update-1.tar.gz"_s << true;
    QTest::newRow("pattern in the folder") << "EINK"_s
                                           << "eink-update/x.bin"_s << true;
    QTest::newRow("newer type's package") << "SCREEN"_s
                                          << "screen2-update.tar.gz"_s << false;
    QTest::newRow("older type's package") << "SCREEN2"_s
                                          << "screen-update.tar.gz"_s << false;
    QTest::newRow("upper case") << "N6"_s
                                << "N6-UPDATE.tar.gz"_s << false;
    QTest::newRow("missing") << "N6"_s
                             << "missing/n6-update.tar.gz"_s << false;
    QTest::newRow("folder") << "N6"_s
                            << "n6-update.tar.gz/"_s << false;
}

void TestUpdate::packagesAreToldByTheirPath()
{
    QFETCH(const QString, type);
    QFETCH(const QString, name);
    QTemporaryDir packages;
    const QFileInfo package(packages.filePath(name));
    if (!name.startsWith("missing"_s))
        QVERIFY(QDir().mkpath(package.path()));
    QFile(package.filePath()).open(QIODevice::WriteOnly);
    QTEST(updatefile::isValid(package.filePath(), updatefile::pattern(type)), "valid");
}

void TestUpdate::rowTellsWhoTheDisplayIs_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("serial");
    QTest::addColumn<bool>("flags");
    QTest::addColumn<QString>("description");
    QTest::newRow("server with LS flag")
        << "192.168.1.31"_s
        << "0123456789"_s << true
        << "0123456789 (LS)  IP = 192.168.1.31  [Server]\nAPP 2.1.0  FW 1.4  OS 5.10.110"_s;
    QTest::newRow("mapped address") << "::ffff:10.0.0.2"_s
                                    << "1"_s << false
                                    << "1 (PO)  IP = 10.0.0.2  \nAPP 2.1.0  FW 1.4  OS 5.10.110"_s;
    QTest::newRow("hostile serial") << "10.0.0.2"_s
                                    << "%3%7%1"_s << false
                                    << "%3%7%1 (PO)  IP = 10.0.0.2  \nAPP 2.1.0  FW 1.4  OS 5.10.110"_s;
}

void TestUpdate::rowTellsWhoTheDisplayIs()
{
    QFETCH(const QString, address);
    QFETCH(const QString, serial);
    QFETCH(const bool, flags);
    ScreenDevice screen;
    screen.address = QHostAddress(address);
    screen.serial = serial;
    screen.firmwareVersion = "1.4"_s;
    screen.systemVersion = "5.10.110-kelvora"_s;
    screen.applicationVersion = "2.1.0"_s;
    screen.isServer = screen.lsFlag = flags;
    QTEST(rowtext::description(screen), "description");
    screen.supplyVoltage = 12.2;
    screen.ambientLux = 100000.06;
    QCOMPARE(rowtext::readout(screen), "12.2 V\n100000.1 Lux"_s);
}

void TestUpdate::pageListsTheDisplaysOfItsType()
{
    udpHBClient client(passiveMode);
    const MonitorUpdate screens(&client, "SCREEN"_s, nullptr), screen2s(&client, "SCREEN2"_s, nullptr),
        einks(&client, "EINK"_s, nullptr);
    client.processHeartbeat(heartbeat(screenKind, "A"), boatAddress(20));
    client.processHeartbeat(heartbeat(einkKind, "B"), boatAddress(21));
    client.processHeartbeat(heartbeat(screenKind, "C"), boatAddress(22));
    const auto rows = rowsOf(screens);
    QCOMPARE(rows.size(), 2);
    QVERIFY(rows.at(1)->findChild<QCheckBox *>()->text().startsWith("C (PO)"_s));
    QCOMPARE(label(rows.at(1)), "12.2 V\n0.0 Lux"_s);
    QCOMPARE(label(rowsOf(einks).at(0)), "---"_s);
    QCOMPARE(rowsOf(screen2s).size(), 0);
    QCOMPARE(label(&screens), "Select device for software update:"_s);
    QCOMPARE(label(&screen2s), "No screen2 devices available for update."_s);

    // A known display changes its row in place.
    client.processHeartbeat(heartbeat(screenKind, "D"), boatAddress(22));
    QCOMPARE(rowsOf(screens), rows);
    QVERIFY(rows.at(0)->findChild<QCheckBox *>()->text().startsWith("A (PO)"_s));
    QVERIFY(rows.at(1)->findChild<QCheckBox *>()->text().startsWith("D (PO)"_s));
}

void TestUpdate::tickDecidesAboutTheUpload()
{
    ScreenDevice screen;
    screen.address = boatAddress(99);
    screen.type = "SCREEN"_s;
    MonitorUpdateWidget row(&screen, nullptr);
    QSignalSpy started(&row, &MonitorUpdateWidget::updateStarted);
    row.findChild<QCheckBox *>()->setChecked(false);
    row.updateMonitor(write("screen-update"_s, "x"));
    QCOMPARE(label(&row), QString());
    row.updateCounter(screen);
    QCOMPARE(label(&row), "0.0 V\n0.0 Lux"_s);
    QVERIFY(started.isEmpty());

    // A file that cannot be opened is not counted as begun; its session ends all the same.
    row.findChild<QCheckBox *>()->setChecked(true);
    QSignalSpy complete(&row, &MonitorUpdateWidget::updateComplete);
    row.updateMonitor(folder.filePath("missing"_s));
    QCOMPARE(label(&row), "Downloading..."_s);
    QTRY_COMPARE(complete.size(), 1);
    QVERIFY(started.isEmpty());
}

void TestUpdate::barHoldsEverySize_data()
{
    QTest::addColumn<qint64>("done");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<int>("percent");
    QTest::newRow("small") << Q_INT64_C(16384) << Q_INT64_C(65536) << 25;
    QTest::newRow("largest int") << qint64(INT_MAX) << qint64(INT_MAX) << 100;
    QTest::newRow("beyond the largest int") << qint64(INT_MAX) + 1 << qint64(INT_MAX) + 1 << 100;
    QTest::newRow("2 of 8 GiB") << 2 * gibibyte << 8 * gibibyte << 25;
    QTest::newRow("1 of 4 EiB") << gibibyte * gibibyte << 4 * (gibibyte * gibibyte) << 25;
}

void TestUpdate::barHoldsEverySize()
{
    QFETCH(const qint64, done);
    QFETCH(const qint64, total);
    udpHBClient client(passiveMode);
    const ScreenDevice screen;
    MonitorUpdateWidget row(&screen, nullptr);
    N6Widget page(nullptr, &client);
    row.updateDataTransferProgress(done, total);
    page.updateDataTransferProgress(done, total);
    for (const QWidget *widget : {static_cast<QWidget *>(&row), static_cast<QWidget *>(&page)})
        QTEST(qRound(100.0 * widget->findChild<QProgressBar *>()->value() /
                     widget->findChild<QProgressBar *>()->maximum()),
              "percent");
}

void TestUpdate::twelveDisplaysAreUpdatedAtOnce()
{
    // Long enough for two silent displays to time out on the way; they and the thirteenth speak only through
    // the test.
    const QByteArray contents(1000000, 'u');
    QString options =
        "--no-n6 --no-gyro --screens 13 --heartbeat-interval 0.1 --silent screen-1 --silent screen-2 --silent screen-13"_s;
    for (int display = 1; display <= 12; ++display)
        options += " --ftp-fault screen-%1=slow:100000"_s.arg(display);
    SimulatedBoat boat(options);
    QTRY_VERIFY(boat.isReady());
    udpHBClient client(activeMode);
    MonitorUpdate page(&client, "SCREEN"_s, nullptr);
    page.show();
    QTRY_COMPARE(rowsOf(page).size(), 10);
    client.processHeartbeat(heartbeat(screenKind, "A"), boatAddress(firstDisplayHost));
    client.processHeartbeat(heartbeat(screenKind, "B"), boatAddress(firstDisplayHost + 1));
    const auto rows = rowsOf(page);
    QCOMPARE(rows.size(), 12);

    qint64 longestWaitMs = 0;
    QElapsedTimer sinceProbe;
    QTimer probe;
    connect(&probe, &QTimer::timeout, [&] { longestWaitMs = std::max(longestWaitMs, sinceProbe.restart()); });
    QSignalSpy removed(&client, &udpHBClient::screenRemoved), heard(&client, &udpHBClient::screenUpdated);
    choose(page, write("screen-update.tar.gz"_s, contents));
    sinceProbe.start();
    probe.start(10);
    for (const auto *row : rows)
        QTRY_VERIFY(row->findChild<QProgressBar *>()->value() > 0);
    QTRY_COMPARE_WITH_TIMEOUT(removed.size(), 2, longestTransferMs);
    client.processHeartbeat(heartbeat(screenKind, "C"), boatAddress(firstDisplayHost + 12));
    QCOMPARE(boat.storedCopies(contents), 0);
    QCOMPARE(rowsOf(page), rows);
    QTRY_COMPARE_WITH_TIMEOUT(boat.storedCopies(contents), 12, longestTransferMs);
    QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
    QVERIFY(heard.size() > 100);
    qInfo() << "longest wait of an event during twelve uploads:" << longestWaitMs << "ms";
    QVERIFY(longestWaitMs <= 100);
    client.listUpdated();
    QCOMPARE(rowsOf(page).size(), 11);
}

void TestUpdate::anUpdateFollowsAnyEnd_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QByteArray>("moment");
    QTest::addColumn<bool>("endsByItself");
    QTest::newRow("aborted at once") << "slow:200000"_s << QByteArray() << false;
    QTest::newRow("aborted while connecting") << "mute"_s << QByteArray("ftp-connect") << false;
    QTest::newRow("aborted after the login") << "slow:200000"_s << QByteArray("ftp-login") << false;
    QTest::newRow("connection dropped") << "drop:100000"_s << QByteArray("upload-broken") << false;
    QTest::newRow("connection refused") << "no-service"_s << QByteArray() << true;
    QTest::newRow("login refused") << "refused-login"_s << QByteArray("ftp-login-refused") << true;
    QTest::newRow("disk full") << "full"_s << QByteArray("upload-refused") << true;
}

void TestUpdate::anUpdateFollowsAnyEnd()
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
    QSignalSpy first(rows.at(0), &MonitorUpdateWidget::updateComplete),
        second(rows.at(1), &MonitorUpdateWidget::updateComplete),
        third(rows.at(2), &MonitorUpdateWidget::updateComplete);

    choose(page, file);
    if (!moment.isEmpty()) {
        QTRY_VERIFY(boat->log().contains("screen-2 " + moment) && boat->log().contains("screen-3 " + moment));
        QTRY_COMPARE(boat->storedCopies(contents), 1);
        QTRY_COMPARE(first.size(), 1);
    }
    if (!endsByItself) {
        const int firstEnded = first.size();
        const bool othersGoOn = second.isEmpty() && third.isEmpty();
        QVERIFY(othersGoOn);
        button(page, "&Abort Update"_s)->click();
        QVERIFY(allSay(page, "Aborted."_s));
        QCOMPARE(first.size(), firstEnded + 1);
        QCOMPARE(rows.at(1)->findChild<QProgressBar *>()->value(), -1);
    }
    QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
    QVERIFY(!button(page, "&Abort Update"_s)->isVisible());
    QCOMPARE(second.size(), 1);
    QCOMPARE(third.size(), 1);

    boat.reset();
    boat = std::make_unique<SimulatedBoat>(displays);
    QTRY_VERIFY(boat->isReady());
    choose(page, file);
    QTRY_COMPARE_WITH_TIMEOUT(boat->storedCopies(contents), 3, longestTransferMs);
    QTRY_VERIFY(button(page, "&Start Update"_s)->isVisible());
}

void TestUpdate::rowsMayBeRebuiltFromTheirOwnSignal()
{
    udpHBClient client(passiveMode);
    MonitorUpdate page(&client, "SCREEN"_s, nullptr);
    client.processHeartbeat(heartbeat(screenKind, "A"), boatAddress(98));
    const QString file = write("screen-update.tar.gz"_s, "x");
    for (const bool aborts : {false, true}) {
        const QPointer<MonitorUpdateWidget> row = rowsOf(page).at(0);
        connect(row, &MonitorUpdateWidget::updateComplete, &page, &MonitorUpdate::newMonitors);
        choose(page, file);
        if (aborts)
            button(page, "&Abort Update"_s)->click();
        QTRY_VERIFY(row.isNull());
        QCOMPARE(rowsOf(page).size(), 1);
    }
}

void TestUpdate::wrongFileIsRefused()
{
    udpHBClient client(passiveMode);
    MonitorUpdate displays(&client, "SCREEN"_s, nullptr);
    N6Widget instrument(nullptr, &client);
    client.processHeartbeat(heartbeat(n6Kind, "N6"), boatAddress(n6Host));
    displays.show();
    const QString file = write("screen2-update.tar.gz"_s, "x");
    const auto check = [&](auto &page) {
        QTest::ignoreMessage(QtDebugMsg,
                             QByteArray("Chosen screen update file: " + file.toUtf8()).constData());
        choose(page, file);
        const QPointer<QMessageBox> box = page.template findChild<QMessageBox *>();
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), "Firmware Update"_s);
        QCOMPARE(box->text(), "This is not a valid file."_s);
        QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Cancel));
        box->button(QMessageBox::Cancel)->click();
        QTRY_VERIFY(!box);
    };
    check(displays);
    check(instrument);
    QVERIFY(button(displays, "&Start Update"_s)->isVisible());
    QCOMPARE(instrument.findChild<QLabel *>("resultLabel"_s)->text(), QString());
}

void TestUpdate::windowMayGoAtAnyTime_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("while uploading") << "screen-update-n6-update.tar.gz"_s;
    QTest::newRow("with boxes open") << "other.tar.gz"_s;
    QTest::newRow("with dialogs open") << QString();
}

void TestUpdate::windowMayGoAtAnyTime()
{
    QFETCH(const QString, name);
    SimulatedBoat boat("--no-gyro --screens 1 --ftp-fault screen-1=slow:100000 --ftp-fault n6=slow:100000"_s);
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
        QTRY_COMPARE(window->findChildren<QFileDialog *>().size(), 2);
    } else {
        const QString file = write(name, QByteArray(500000, 'w'));
        choose(*displays, file);
        choose(*instrument, file);
    }
    if (name.contains("update"_s))
        QTRY_VERIFY(boat.log().count(" ftp-login ") == 2);
    window->close();
    window.reset();
    QTRY_COMPARE(boat.log().count(" ftp-disconnect "), boat.log().count(" ftp-connect "));
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void TestUpdate::reportedPortModesAreNeverSentBack()
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
        client.processHeartbeat(heartbeat(n6Kind, "N6", code, code), boatAddress(n6Host));
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

void TestUpdate::n6IsUpdatedFromAnyPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << "my n6-update of May.tar.gz"_s;
    QTest::newRow("non-Latin letters") << "n6-update Лодка 船.tar.gz"_s;
    QTest::newRow("200 characters") << QString(184, QLatin1Char('x')) + "n6-update.tar.gz"_s;
}

void TestUpdate::n6IsUpdatedFromAnyPath()
{
    QFETCH(const QString, name);
    SimulatedBoat boat(
        "--screens 0 --screen2s 0 --einks 0 --no-gyro --no-n6 --screens 1 --address screen-1=%1"_s.arg(
            boatAddress(n6Host).toString()));
    QTRY_VERIFY(boat.isReady());
    udpHBClient client(passiveMode);
    N6Widget page(nullptr, &client);
    const auto *result = page.findChild<QLabel *>("resultLabel"_s);
    const auto *bar = page.findChild<QProgressBar *>();
    auto *webButton = page.findChild<QPushButton *>("webButton"_s);
    QDesktopServices::setUrlHandler("http"_s, this, "receiveUrl");
    openedUrl.clear();
    QTest::mousePress(webButton, Qt::LeftButton);
    QVERIFY(openedUrl.isEmpty());
    const QHostAddress mapped("::ffff:"_s + boatAddress(n6Host).toString());
    client.processHeartbeat(heartbeat(n6Kind, "N6-1"), mapped);
    QTest::mousePress(webButton, Qt::LeftButton);
    QDesktopServices::unsetUrlHandler("http"_s);
    QCOMPARE(openedUrl, QUrl("http://%1/"_s.arg(boatAddress(n6Host).toString())));
    QCOMPARE(page.findChild<QLabel *>("label_serial"_s)->text(), "N6-1   (N6 Fjord)"_s);
    QCOMPARE(page.findChild<QLabel *>("label_version"_s)->text(), "2.1.0   (FW 1.4)"_s);

    const QByteArray contents = name.toUtf8() + QByteArray(300000, 'n');
    QTest::ignoreMessage(QtDebugMsg, "Updates started");
    QTest::ignoreMessage(QtDebugMsg, "Updates send");
    choose(page, write(name, contents));
    QCOMPARE(result->text(), "Downloading..."_s);
    QTRY_COMPARE_WITH_TIMEOUT(result->text(), "Updating..."_s, longestTransferMs);
    QCOMPARE(boat.storedCopies(contents), 1);
    QVERIFY(!bar->isTextVisible());

    // The status stays for the four seconds in which the instrument is busy, and goes with the next
    // heartbeat.
    QElapsedTimer sinceEnd;
    sinceEnd.start();
    while (!result->text().isEmpty() && sinceEnd.elapsed() < 6000) {
        client.processHeartbeat(heartbeat(n6Kind, "N6-1"), mapped);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    QVERIFY(result->text().isEmpty());
    QVERIFY(sinceEnd.elapsed() > 3900);
}

QTEST_MAIN(TestUpdate)
#include "tst_update.moc"
