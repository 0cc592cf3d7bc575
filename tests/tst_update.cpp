// The update pages against displays that the test plays, over real FTP and UDP.

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
#include "update/upload.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include <climits>

namespace
{

const char *const wholeSession = "USER kwz|PASS kwz|CWD update|TYPE I|PASV|ALLO 500000|STOR image|QUIT";

// A page in a window, that has heard displays whose rows it shows.
struct Displays {
    explicit Displays(int count = 0)
    {
        window.show();
        page->resize(900, 500);
        for (int number = 0; number < count; ++number) {
            played.push_back(std::make_unique<PlayedDisplay>(number));
            hear(number);
        }
    }

    void hear(int number, DeviceKind kind = Screen)
    {
        client.processHeartbeat(HeartbeatBytes::device(kind, "S"), PlayedDisplay::addressOf(number));
    }
    /// Starts an update with this package.
    void choose(const QString &path)
    {
        page->startClicked();
        typeFile(window.findChildren<QFileDialog *>().constLast(), path);
    }
    QList<MonitorUpdateWidget *> rows() const { return window.findChildren<MonitorUpdateWidget *>(); }
    QCheckBox *box(int row) const { return rows().at(row)->findChild<QCheckBox *>(); }
    QString told(int row) const { return rows().at(row)->findChild<QLabel *>()->text(); }
    int progress(int row) const { return rows().at(row)->findChild<QProgressBar *>()->value(); }
    QPushButton *start() const { return button(window, "&Start Update"_s); }
    QPushButton *abort() const { return button(window, "&Abort Update"_s); }

    udpHBClient client{udpHBClient::Passive};
    QWidget window;
    MonitorUpdate *page = new MonitorUpdate(&client, "SCREEN"_s, &window);
    std::vector<std::unique_ptr<PlayedDisplay>> played;
};

// However slow the machine is.
constexpr int longestUpdateMs = 30000;

// On the buttons, where they reach over the list.
constexpr QPoint lowestPress{795, 65};

enum Meanwhile { Waited, Aborted, Forgotten };

// What a display does, how far the session comes, how long the tool waits for it, and what happens to the
// display on the page.
struct End {
    const char *name;
    Play play;
    QByteArray reached;
    Upload::Patience patience = {};
    Meanwhile meanwhile = Waited;
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

    void packagesAreLookedForWhereTheUserMayWrite()
    {
        const QString closed = "/proc/none"_s, kept = folder.filePath("Downloads/firmware"_s);
        QCOMPARE(UpdateChecker::updateDirectory().path(), folder.filePath("Dokvane/firmware"_s));
        QVERIFY(QDir(folder.filePath("Dokvane/firmware"_s)).exists() && !QDir(kept).exists());
        qputenv("XDG_DATA_HOME", closed.toLatin1());
        QCOMPARE(UpdateChecker::updateDirectory().path(), closed + "/Dokvane/firmware"_s);
        QVERIFY(QDir(kept).exists() && QCoreApplication::applicationName() == "tst_update"_s);
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
        Displays boat;
        const MonitorUpdate einks(&boat.client, "EINK"_s, nullptr);
        const auto *heading = boat.page->findChild<QLabel *>();
        QCOMPARE(heading->text(), "No screen devices available for update."_s);
        boat.hear(0, Eink);
        QCOMPARE(einks.findChild<MonitorUpdateWidget *>()->findChild<QLabel *>()->text(), "---"_s);
        HeartbeatBytes heard{Screen, "R&S %1", 0, "2", "5.10.110-rt", "1.4", 9.04, 12.3F};
        boat.client.processHeartbeat(heard.build(), at("::ffff:10.0.0.1"));
        QCOMPARE(heading->text(), "Select device for software update:"_s);
        QCOMPARE(boat.box(0)->text(), "R&&S %1 (PO)  IP = 10.0.0.1  \nAPP 2  FW 1.4  OS 5.10.110"_s);
        QCOMPARE(boat.told(0), "12.3 V\n9.0 Lux"_s);
        const QRect headed = heading->geometry(), pressed = boat.start()->geometry();
        QVERIFY(headed.bottom() < 60 && headed.right() < pressed.x() && boat.page->rect().contains(pressed));
        // Side by side, in the middle of the row.
        const MonitorUpdateWidget &row = *boat.rows().constFirst();
        const auto parts = row.findChildren<QWidget *>();
        int end = 0;
        for (const QWidget *part : parts) {
            const int gap = part->x() - std::exchange(end, part->geometry().right() + 1);
            QVERIFY(gap >= 0 && gap <= 10 &&
                    qAbs(part->geometry().center().y() - row.rect().center().y()) < 3);
        }
        QCOMPARE(row.width() - end, 10);
        heard.serverFlag = heard.lsFlag = 1;
        heard.lux = 9.06;
        boat.client.processHeartbeat(heard.build(), at("::ffff:10.0.0.1"));
        QCOMPARE(boat.box(0)->text(), "R&&S %1 (LS)  IP = 10.0.0.1  [Server]\nAPP 2  FW 1.4  OS 5.10.110"_s);
        QVERIFY(boat.box(0)->toolTip().contains("R&amp;S %1 (LS)"_s));
        QCOMPARE(boat.told(0), "12.3 V\n9.1 Lux"_s);
    }

    void rowsStayWithTheirDisplays()
    {
        Displays boat(2);
        boat.box(1)->setFocus();
        boat.box(1)->click();
        const QPointer<MonitorUpdateWidget> first = boat.rows().constFirst();
        // Soon enough that no display is forgotten meanwhile.
        QTRY_COMPARE_WITH_TIMEOUT(boat.rows().at(1)->y() - first->y(), 46, 2000);
        // Behind the margins of the page and of the list, and its border of one pixel.
        QCOMPARE(first->mapTo(boat.page, QPoint()), QPoint(15, 65));
        boat.hear(2);
        QVERIFY2(first, "250 lists of up to 250 new rows would hold the window for seconds");
        // The last row that ends may go in its own signal.
        const QPointer<MonitorUpdateWidget> last = boat.rows().constLast();
        connect(last, &MonitorUpdateWidget::updateComplete, boat.page, &MonitorUpdate::newMonitors);
        boat.choose(write(package, "x"));
        boat.abort()->click();
        QVERIFY(last.isNull() && boat.box(0)->isChecked() && !boat.box(1)->isChecked());
        QCOMPARE(boat.page->focusWidget(), boat.box(1));
        boat.hear(0, Eink);
        QCOMPARE(boat.rows().size(), 2);
        boat.rows().constFirst()->updateMonitor("/no/package"_s);
        QVERIFY2(boat.start()->isVisible(), "an update without a file");
    }

    void dialogsBelongToTheWindowAndFreezeTheList()
    {
        Displays boat;
        const QList<QUrl> usual = QFileDialog().sidebarUrls();
        boat.page->startClicked();
        const QPointer<QFileDialog> dialog = boat.window.findChild<QFileDialog *>();
        QCOMPARE(dialog->nameFilters(), QStringList("Kelvora Instrument Update (*screen-update*.tar.gz)"_s));
        QVERIFY(dialog->fileMode() == QFileDialog::ExistingFile);
        QCOMPARE(dialog->sidebarUrls().constFirst(), QUrl::fromLocalFile(dialog->directory().path()));
        QCOMPARE(dialog->sidebarUrls().constLast(), QUrl::fromLocalFile(QDir::homePath()));
        boat.hear(0);
        // As a first-generation device makes the window do.
        boat.page->setEnabled(false);
        QVERIFY(dialog->isEnabled() && boat.rows().isEmpty());
        dialog->reject();
        QVERIFY(dialog->sidebarUrls() == usual && boat.rows().size() == 1 && boat.box(0)->text() != "---"_s);
        boat.choose(QCoreApplication::applicationFilePath());
        QCOMPARE(boat.window.findChild<QMessageBox *>()->text(), "This is not a valid file."_s);
        boat.page->startClicked();
        QTRY_VERIFY2(!dialog, "each one would stay until the end");
        delete boat.page;
        QTRY_VERIFY(boat.window.findChildren<QDialog *>().isEmpty());
    }

    void anUpdateFollowsAnyEnd_data()
    {
        const Upload::Patience shortForReplies{1000, 100000}, shortForConfirmation{100000, 1000};
        const Play confirmLate = [](ScriptedFtpServer &display) { display.confirmAfterMs = 8000; };
        addRows<End>({
            {"the display is busy", answering("", "421 Busy\r\n"), {}},
            {"the display refuses the file", answering("STOR", "553 No\r\n"), "STOR"},
            {"the display refuses the connection", &PlayedDisplay::close, {}},
            {"the display hangs up", hangUp, "STOR"},
            {"it is silent before the file", answering("STOR", ""), "STOR", shortForReplies},
            {"it is silent after the file", answering("STOR", "150 Go\r\n"), "STOR", shortForConfirmation},
            {"it is silent after the confirmation", answering("QUIT", ""), "QUIT", shortForReplies},
            {"the user aborts while it connects", answering("", ""), {}, {}, Aborted},
            {"the user aborts in the middle", answering("STOR", ""), "STOR", {}, Aborted},
            {"the display goes from the list", confirmLate, "STOR", {}, Forgotten},
        });
    }

    void anUpdateFollowsAnyEnd()
    {
        QFETCH(const End, row);
        Displays boat(3);
        PlayedDisplay &odd = *boat.played[1];
        row.play(odd);
        // Slow answers are no silence: together they take longer than one may.
        odd.takeOver = [&](const QByteArray &verb) {
            const bool isSlow = QByteArrayList{"PASS", "CWD", "TYPE"}.contains(verb);
            if (isSlow)
                QTimer::singleShot(600, &odd, [&] { odd.reply("230 Fine\r\n"); });
            return isSlow;
        };
        boat.box(2)->click();
        const auto rows = boat.rows();
        for (const int at : {0, 1})
            rows[at]->findChild<Upload *>()->setPatience(row.patience);
        const QSignalSpy firstEnds(rows[0], &MonitorUpdateWidget::updateComplete),
            ends(rows[1], &MonitorUpdateWidget::updateComplete);
        boat.start()->setFocus();
        boat.choose(write(package, QByteArray(500000, 'v')));
        QCOMPARE(boat.page->childAt(lowestPress), boat.abort());
        QCOMPARE(boat.told(1) + boat.told(2), "Downloading..."_s);
        // The first display takes its update without trouble.
        QTRY_COMPARE_WITH_TIMEOUT(boat.told(0), "Updating..."_s, longestUpdateMs);
        QCOMPARE(boat.progress(0), 500000);
        QTRY_VERIFY_WITH_TIMEOUT(odd.lines.join().contains(row.reached), longestUpdateMs);
        if (row.meanwhile == Aborted)
            boat.abort()->click();
        if (row.meanwhile == Forgotten)
            QTRY_VERIFY_WITH_TIMEOUT(boat.client.screens().isEmpty(), 9400);
        QTRY_VERIFY_WITH_TIMEOUT(boat.start()->isVisible(), longestUpdateMs);
        // The next press does not meet something else.
        QVERIFY(boat.window.focusWidget() == boat.start() && boat.page->childAt(lowestPress) == boat.start());
        QVERIFY((boat.progress(0) < 0) == (row.meanwhile == Aborted));
        QVERIFY(ends.size() == 1 && (row.meanwhile == Aborted || firstEnds.size() == 1));
        QCOMPARE(boat.told(1), row.meanwhile == Aborted ? "Aborted."_s : "Updating..."_s);
        QCOMPARE(boat.rows(), rows);

        for (auto &display : boat.played) {
            display.reset();
            display = std::make_unique<PlayedDisplay>(&display - boat.played.data());
        }
        boat.played[1]->confirmAfterMs = 500;
        boat.choose(package);
        QVERIFY(boat.progress(0) < 0);
        // It is over when both displays have it, and no sooner.
        QTRY_VERIFY_WITH_TIMEOUT(boat.start()->isVisible(), longestUpdateMs);
        for (const auto &display : boat.played)
            QCOMPARE(display->lines.join('|'), QByteArray(display == boat.played[2] ? "" : wholeSession));
        if (row.meanwhile != Forgotten)
            return;
        boat.hear(2);
        QVERIFY2(boat.rows().size() == 1 && boat.box(0)->isChecked(), "its choice went with it");
    }

    void n6PageShowsWhatItsN6Says()
    {
        udpHBClient client(udpHBClient::Passive);
        N6Widget page(nullptr, &client);
        auto *port1 = page.findChild<QComboBox *>("comboBox_port1"_s);
        auto *port2 = page.findChild<QComboBox *>("comboBox_port2"_s);
        QDesktopServices::setUrlHandler("http"_s, this, "open");
        page.openWebinterface();
        QVERIFY(opened.isEmpty() && !port1->isEnabled() && !port2->isEnabled());
        QVERIFY(page.findChild<QLabel *>("label_Alarm"_s)->isHidden());
        QCOMPARE(page.findChild<QLabel *>("resultLabel"_s)->text(), QString());
        const QMap<int, int> port1Indices{{-1, -1}, {0, 0}, {6, 1}, {4, 2}, {5, 3}};
        QStringList told;
        for (int code = -128; code < 128; ++code) {
            const int before = port1->currentIndex();
            client.processHeartbeat(HeartbeatBytes::n6("N6", code, code, code), at("127.0.0.10"));
            QCOMPARE(port1->currentIndex(), port1Indices.value(code, before));
            QCOMPARE(port2->currentIndex(), code >= 0 && code <= 2 ? code : -1);
            told += page.findChild<QLabel *>("label_serial"_s)->text().remove("N6   "_s);
        }
        told.removeDuplicates();
        QCOMPARE(told.join(u' '), "(Unknown) (N6 Larch) (N6 Moss) (N6 Flint) (N6 Fjord) (N6 Heron)"_s);
        page.findChild<QPushButton *>("webButton"_s)->click();
        QCOMPARE(opened, QUrl("http://127.0.0.10/"_s));
        QWheelEvent notch({}, {}, {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(port1, &notch);
        QVERIFY2(!notch.isAccepted(), "what lies behind may scroll");
    }

private:
    // Packages are told by their whole path.
    QTemporaryDir folder{QDir::tempPath() + "/screen-update-XXXXXX"_s};
    const QString package = folder.filePath("x.tar.gz"_s);
    QUrl opened;
};

QTEST_MAIN(TestUpdate)
#include "tst_update.moc"
