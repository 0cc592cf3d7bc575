// The update pages against displays that the test plays, over real FTP and UDP.

#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/answers.h"
#include "tests/support/displays.h"
#include "tests/support/files.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/rows.h"
#include "tests/support/text.h"
#include "update/monitorupdate.h"
#include "update/monitorupdatewidget.h"
#include "update/n6widget.h"
#include "update/transferbar.h"
#include "update/updatechecker.h"
#include "update/updatefile.h"
#include "update/upload.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QNetworkDatagram>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QtTest>

#include <climits>

namespace
{

constexpr int longestTransferMs = 60000;
const char *const wholeSession = "USER kwz|PASS kwz|CWD update|TYPE I|PASV|ALLO 500000|STOR image|QUIT";
constexpr Upload::Patience usualPatience;
static_assert(usualPatience.forReplyMs == 180'000 && usualPatience.forConfirmationMs == 600'000);

QList<MonitorUpdateWidget *> rowsOf(const QWidget &page)
{
    return page.findChildren<MonitorUpdateWidget *>();
}

template <typename Page>
void choose(Page &page, const QString &path)
{
    page.startClicked();
    typeFile(page.window()->template findChildren<QFileDialog *>().constLast(), path);
}

// A page that has heard displays, whose rows it shows.
struct Displays {
    explicit Displays(int count)
    {
        page.show();
        for (int number = 0; number < count; ++number) {
            played.push_back(std::make_unique<PlayedDisplay>(number));
            hear(number);
        }
    }

    void hear(int number)
    {
        client.processHeartbeat(HeartbeatBytes::device(Screen, "S"), PlayedDisplay::addressOf(number));
    }
    MonitorUpdateWidget *row(int number) const { return rowsOf(page).at(number); }
    QString told(int number) const { return row(number)->findChild<QLabel *>()->text(); }
    QPushButton *start() const { return button(page, "&Start Update"_s); }
    QPushButton *abort() const { return button(page, "&Abort Update"_s); }

    udpHBClient client{udpHBClient::Passive};
    MonitorUpdate page{&client, "SCREEN"_s, nullptr};
    std::vector<std::unique_ptr<PlayedDisplay>> played;
};

// What a display does, how far the session comes, how long the tool waits for it, and whether the user does
// not.
struct End {
    const char *name;
    std::function<void(PlayedDisplay &)> play;
    QByteArray reached;
    Upload::Patience patience = {};
    bool isAborted = false;
};

} // namespace
Q_DECLARE_METATYPE(End)

class TestUpdate : public QObject
{
    Q_OBJECT

public slots:
    void open(const QUrl &url) { opened = url; }

private slots:
    void init()
    {
        for (const char *home : {"HOME", "XDG_DATA_HOME"})
            qputenv(home, QFile::encodeName(folder.path()));
    }

    void packagesAreToldByTheirPath()
    {
        using Row = std::tuple<const char *, const char *, bool>;
        QVERIFY(QDir(folder.path()).mkpath("eink-update"_s));
        for (const auto &[type, name, isPackage] :
             {Row{"EINK", "eink-update/x.bin", true}, Row{"EINK", "eink-update", false},
              Row{"SCREEN", "screen-update-1.tar.gz", true}, Row{"SCREEN", "screen2-update.tar.gz", false},
              Row{"SCREEN2", "screen-update.tar.gz", false}}) {
            const QString file = write(folder.filePath(QLatin1String(name)), "x");
            QCOMPARE(updatefile::isValid(file, updatefile::pattern(QLatin1String(type))), isPackage);
        }
    }

    void packagesAreLookedForWhereTheUserMayWrite()
    {
        const QString closed = "/proc/none"_s, kept = folder.filePath("Downloads/firmware"_s);
        QCOMPARE(UpdateChecker::updateDirectory().path(), folder.filePath("Dokvane/firmware"_s));
        QVERIFY(QDir(folder.filePath("Dokvane/firmware"_s)).exists() && !QDir(kept).exists());
        qputenv("XDG_DATA_HOME", closed.toLatin1());
        QCOMPARE(UpdateChecker::updateDirectory().path(), closed + "/Dokvane/firmware"_s);
        QVERIFY(QDir(kept).exists());
        qputenv("HOME", closed.toLatin1());
        QCOMPARE(UpdateChecker::updateDirectory().path(), QDir::tempPath());
    }

    void barHoldsEverySize()
    {
        QProgressBar bar;
        for (const qint64 total : {qint64(4), qint64(INT_MAX), qint64(INT_MAX) + 1, Q_INT64_C(1) << 62}) {
            transferbar::show(&bar, total / 4, total);
            QCOMPARE(qRound(4.0 * bar.value() / bar.maximum()), 1);
        }
        transferbar::show(&bar, 0, 0);
        QVERIFY2(bar.maximum() > bar.minimum() && bar.value() < 0, "busy for good");
    }

    void rowsSayWhatTheirDisplaysSay()
    {
        udpHBClient client(udpHBClient::Passive);
        const MonitorUpdate screens(&client, "SCREEN"_s, nullptr), einks(&client, "EINK"_s, nullptr);
        const auto heading = [&] { return screens.findChild<QLabel *>()->text(); };
        QCOMPARE(heading(), "No screen devices available for update."_s);
        const auto hear = [&](quint8 kind, quint8 flag, double lux, const char *from) {
            client.processHeartbeat(
                HeartbeatBytes{kind, "R&S %1", flag, "2", "5.10.110-rt", "1.4", lux, 12.3F, flag}.build(),
                at(from));
        };
        hear(Eink, 1, 0, "10.0.0.2");
        hear(Screen, 0, 9.04, "::ffff:10.0.0.1");
        const auto *box = rowsOf(screens).at(0)->findChild<QCheckBox *>();
        const auto *readout = rowsOf(screens).at(0)->findChild<QLabel *>();
        QCOMPARE(heading(), "Select device for software update:"_s);
        QCOMPARE(box->text(), "R&&S %1 (PO)  IP = 10.0.0.1  \nAPP 2  FW 1.4  OS 5.10.110"_s);
        QCOMPARE(readout->text(), "12.3 V\n9.0 Lux"_s);
        hear(Screen, 1, 9.06, "::ffff:10.0.0.1");
        QCOMPARE(box->text(), "R&&S %1 (LS)  IP = 10.0.0.1  [Server]\nAPP 2  FW 1.4  OS 5.10.110"_s);
        QVERIFY(box->toolTip().contains("R&amp;S %1 (LS)"_s));
        QCOMPARE(readout->text(), "12.3 V\n9.1 Lux"_s);
        QCOMPARE(rowsOf(einks).at(0)->findChild<QLabel *>()->text(), "---"_s);
        // Long serials and versions fit into these places, in this font.
        QVERIFY(box->font().pixelSize() == 12 && readout->font().pixelSize() == 12);
        QCOMPARE(box->parentWidget()->size(), QSize(690, 37));
        QCOMPARE(box->geometry(), QRect(10, 2, 290, 36));
        QCOMPARE(readout->geometry(), QRect(580, 1, 100, 36));
        QCOMPARE(rowsOf(screens).at(0)->findChild<QProgressBar *>()->geometry(), QRect(300, 4, 270, 32));
        QCOMPARE(button(screens, "&Start Update"_s)->geometry(), QRect(720, 26, 150, 40));
    }

    void rowsStayWithTheirDisplays()
    {
        Displays boat(0);
        QList<QPointer<MonitorUpdateWidget>> built;
        const auto box = [&](int row) { return boat.row(row)->findChild<QCheckBox *>(); };
        const auto isKept = [&] {
            return box(0)->isChecked() && !box(1)->isChecked() && boat.page.focusWidget() == box(1);
        };
        // Building 250 lists of up to 250 rows would hold the window for seconds.
        for (int display = 0; display < 250; ++display) {
            boat.hear(display);
            built += rowsOf(boat.page).constLast();
            if (display == 1) {
                box(1)->setFocus();
                box(1)->click();
            }
        }
        QVERIFY(!built.contains(nullptr) && isKept());
        choose(boat.page, write(package, "x"));
        boat.abort()->click();
        emit boat.client.listUpdated();
        QVERIFY(built.constFirst().isNull() && isKept());
        boat.client.processHeartbeat(HeartbeatBytes::device(Eink, "E"), PlayedDisplay::addressOf(0));
        QCOMPARE(rowsOf(boat.page).size(), 249);
    }

    void dialogsBelongToTheWindowAndFreezeTheList()
    {
        udpHBClient client(udpHBClient::Passive);
        QWidget window;
        auto *page = new MonitorUpdate(&client, "SCREEN"_s, &window);
        const QList<QUrl> usual = QFileDialog().sidebarUrls();
        page->startClicked();
        auto *dialog = window.findChild<QFileDialog *>();
        QCOMPARE(dialog->nameFilters(), QStringList("Kelvora Instrument Update (*screen-update*.tar.gz)"_s));
        QVERIFY(dialog->fileMode() == QFileDialog::ExistingFile);
        QCOMPARE(dialog->sidebarUrls().constFirst(), QUrl::fromLocalFile(dialog->directory().path()));
        QCOMPARE(dialog->sidebarUrls().constLast(), QUrl::fromLocalFile(QDir::homePath()));
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A"), at("127.0.0.1"));
        // As a first-generation device makes the window do.
        page->setEnabled(false);
        QVERIFY(dialog->isEnabled() && rowsOf(*page).isEmpty());
        dialog->reject();
        QVERIFY(dialog->sidebarUrls() == usual && rowsOf(*page).size() == 1);
        choose(*page, write(folder.filePath("other.tar.gz"_s), "x"));
        QCOMPARE(window.findChild<QMessageBox *>()->text(), "This is not a valid file."_s);
        page->startClicked();
        delete page;
        QTRY_VERIFY(window.findChildren<QDialog *>().isEmpty());
    }

    void displaysMayGoWhileTheyAreUpdated()
    {
        Displays boat(13);
        boat.row(12)->findChild<QCheckBox *>()->click();
        // Long enough for all to time out on the way.
        for (auto &display : boat.played)
            display->confirmAfterMs = 9500;
        const auto rows = rowsOf(boat.page);
        choose(boat.page, write(package, QByteArray(1000000, 'u')));
        QTRY_VERIFY_WITH_TIMEOUT(boat.client.screens().isEmpty(), 9400);
        QCOMPARE(rowsOf(boat.page), rows);
        QVERIFY(boat.abort()->isVisible() && !boat.start()->isVisible());
        QCOMPARE(boat.told(0) + boat.told(12), "Downloading..."_s);
        QCOMPARE(boat.row(0)->findChild<QProgressBar *>()->value(), 1000000);
        QTRY_VERIFY_WITH_TIMEOUT(boat.start()->isVisible(), longestTransferMs);
        for (const auto &display : boat.played)
            QCOMPARE(display->uploadedBytes, display == boat.played.back() ? 0 : 1000000);
        emit boat.client.listUpdated();
        QVERIFY(rowsOf(boat.page).isEmpty());
        boat.hear(12);
        QVERIFY2(boat.row(0)->isTicked(), "its choice went with it");
    }

    void anUpdateFollowsAnyEnd_data()
    {
        // Slow answers are no silence: together they take longer than one may.
        const auto silentAt = [](const QByteArray &verb, const QByteArray &reply = {}) {
            return [=](PlayedDisplay &display) {
                display.answers[verb] = reply;
                display.takeOver = [&](const QByteArray &heard) {
                    const bool isSlow = QByteArrayList{"", "PASS", "CWD", "TYPE"}.contains(heard);
                    if (isSlow)
                        QTimer::singleShot(600, &display, [&] { display.reply("230 Fine\r\n"); });
                    return isSlow;
                };
            };
        };
        const auto answering = [](const QByteArray &verb, const QByteArray &reply) {
            return [=](PlayedDisplay &display) { display.answers[verb] = reply; };
        };
        const auto drop = [](PlayedDisplay &display) {
            display.onTheWay = [&] { display.control->abort(); };
        };
        const Upload::Patience shortForReplies{1000, 100000}, shortForConfirmation{100000, 1000};
        addRows<End>({
            {"refused at the greeting", answering("", "421 Busy\r\n"), {}},
            {"connection refused", &PlayedDisplay::close, {}},
            {"connection dropped", drop, "STOR"},
            {"disk full", answering("STOR", "452 Full\r\n"), "STOR"},
            {"silent before the file", silentAt("STOR"), "STOR", shortForReplies},
            {"silent after the file", silentAt("STOR", "150 Go\r\n"), "STOR", shortForConfirmation},
            {"silent after the confirmation", silentAt("QUIT"), "QUIT", shortForReplies},
            {"aborted while connecting", answering("", ""), {}, {}, true},
            {"aborted in the middle", answering("STOR", ""), "STOR", {}, true},
        });
    }

    void anUpdateFollowsAnyEnd()
    {
        QFETCH(const End, row);
        Displays boat(2);
        row.play(*boat.played[1]);
        boat.row(1)->findChild<Upload *>()->setPatience(row.patience);
        const QSignalSpy first(boat.row(0), &MonitorUpdateWidget::updateComplete),
            second(boat.row(1), &MonitorUpdateWidget::updateComplete);
        choose(boat.page, write(package, QByteArray(500000, 'v')));
        // The first display takes its update without trouble.
        QTRY_COMPARE(first.size(), 1);
        QCOMPARE(boat.told(0), "Updating..."_s);
        if (row.isAborted)
            boat.abort()->click();
        QTRY_VERIFY(boat.start()->isVisible());
        QCOMPARE(second.size(), 1);
        QVERIFY(boat.played[1]->lines.join().contains(row.reached));
        QCOMPARE(boat.told(1), row.isAborted ? "Aborted."_s : "Updating..."_s);

        for (auto &display : boat.played) {
            display.reset();
            display = std::make_unique<PlayedDisplay>(&display - boat.played.data());
        }
        boat.played[1]->confirmAfterMs = 500;
        choose(boat.page, package);
        // It is over when both displays have it, and no sooner.
        QTRY_VERIFY(boat.start()->isVisible());
        for (const auto &display : boat.played)
            QCOMPARE(display->lines.join('|'), QByteArray(wholeSession));
    }

    void rowsMayBeRebuiltFromTheirOwnSignal()
    {
        Displays boat(0);
        boat.hear(0);
        for (const bool aborts : {false, true}) {
            const QPointer<MonitorUpdateWidget> row = boat.row(0);
            connect(row, &MonitorUpdateWidget::updateComplete, &boat.page, &MonitorUpdate::newMonitors);
            row->updateDataTransferProgress(1, 1);
            choose(boat.page, write(package, "x"));
            QVERIFY(row->findChild<QProgressBar *>()->value() < 0);
            if (aborts)
                boat.abort()->click();
            QTRY_VERIFY(row.isNull());
            QCOMPARE(rowsOf(boat.page).size(), 1);
        }
    }

    void n6PageOpensItsPagesAndNeverSendsReportedModesBack()
    {
        QUdpSocket n6;
        QVERIFY(n6.bind(at("127.0.0.10"), protocol::commandPort));
        udpHBClient client(udpHBClient::Passive);
        N6Widget page(nullptr, &client);
        auto *port1 = page.findChild<QComboBox *>("comboBox_port1"_s);
        auto *port2 = page.findChild<QComboBox *>("comboBox_port2"_s);
        QDesktopServices::setUrlHandler("http"_s, this, "open");
        page.openWebinterface();
        QVERIFY(opened.isEmpty() && !port1->isEnabled() && !port2->isEnabled());
        const QMap<int, int> port1Indices{{-1, -1}, {0, 0}, {6, 1}, {4, 2}, {5, 3}};
        for (int code = -128; code < 128; ++code) {
            const int before = port1->currentIndex();
            client.processHeartbeat(HeartbeatBytes::n6("N6", 1, code, code), at("127.0.0.10"));
            QCOMPARE(port1->currentIndex(), port1Indices.value(code, before));
            QCOMPARE(port2->currentIndex(), code >= 0 && code <= 2 ? code : -1);
        }
        QStringList told;
        for (const char *name : {"label_serial", "label_version", "label_model"})
            told += page.findChild<QLabel *>(QLatin1String(name))->text();
        QCOMPARE(told, QStringList({"N6   (N6 Larch)"_s, "3.6   (FW 1.4)"_s, "127.0.0.10"_s}));
        page.openWebinterface();
        QCOMPARE(opened, QUrl("http://127.0.0.10/"_s));
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
    const QString package = folder.filePath("screen-update.tar.gz"_s);
    QUrl opened;
};

QTEST_MAIN(TestUpdate)
#include "tst_update.moc"
