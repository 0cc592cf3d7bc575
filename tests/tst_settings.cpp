// The settings page against an N6 that the test plays, over real FTP and UDP.

#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "settings/gzipend.h"
#include "settings/serverwidget.h"
#include "tests/support/answers.h"
#include "tests/support/boat.h"
#include "tests/support/files.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedftpserver.h"
#include "tests/support/text.h"

#include <QLabel>
#include <QNetworkDatagram>
#include <QPushButton>
#include <QSettings>
#include <QUdpSocket>
#include <QtTest>

namespace
{

// Icon and title of the boxes in which a transfer ends.
const QString backupComplete = "1 Backup download complete!"_s, backupUnable = "2 Backup download failed!"_s,
              backupFailed = "3 Backup download failed!"_s, backupUncreated = "3 Unable to create backup!"_s,
              restoreComplete = "1 Backup upload complete!"_s, restoreFailed = "3 Settings upload failed!"_s;
constexpr int passiveMode = 2, n6Host = 10, otherHost = 11, displayHost = 20;
// Milliseconds in which the page hears of an end that the system reports, and of one that it has to wait for.
constexpr int soon = 8000, late = 60000;
const char *const older = "an older backup";

// The word "abab" as a gzip stream.
QByteArray gzip()
{
    return QByteArray::fromHex("1f8b08000000000002ff4b4c4a4c0200a60ad73604000000");
}

class PlayedN6 : public ScriptedFtpServer
{
public:
    explicit PlayedN6(int host = n6Host)
    {
        close();
        listen(boatAddress(host), protocol::ftpPort);
        answers["HELP"] = "214-SIZE MDTM\r\n214 Help\r\n";
        file = gzip();
    }

    /// Whether it has a client.
    bool isTaken() const { return control != nullptr && control->state() == QAbstractSocket::ConnectedState; }

    /// In each session the next of these is there, and then the last one; "none": no archive.
    void has(const QByteArrayList &archives)
    {
        takeOver = [this, left = QByteArrayList(archives)](const QByteArray &verb) mutable {
            if (verb.isEmpty())
                file = left.size() > 1 ? left.takeFirst() : left.first();
            const bool isMissing = verb == "SIZE" && file == "none";
            if (isMissing)
                reply("550 No such file\r\n");
            return isMissing;
        };
    }

    /// Sends what it has in pieces, some seconds apart.
    void drip(int pieces)
    {
        onTheWay = [this, length = file.size() / pieces] {
            for (int at = 0, ms = 0; at < file.size(); at += length, ms += 9000)
                QTimer::singleShot(ms, data, [this, at, length] {
                    data->write(file.mid(at, length));
                    if (at + length >= file.size())
                        data->disconnectFromHost();
                });
        };
    }
};

const auto hangUpAtOnce = [](PlayedN6 &n6) {
    n6.takeOver = [&](auto) { return n6.reply("421 Busy\r\n"), n6.control->disconnectFromHost(), true; };
};

// In the middle of a transfer; the silent one neither reads nor writes any more.
const auto hangUpOnTheWay = [](PlayedN6 &n6) { n6.onTheWay = [&] { n6.control->abort(); }; };
const auto fallSilent = [](PlayedN6 &n6) {
    n6.onTheWay = [&] { n6.data->disconnect(), n6.data->setReadBufferSize(1); };
};
const auto confirmAPart = [](PlayedN6 &n6) {
    n6.onTheWay = [&] { QObject::connect(n6.data, &QTcpSocket::readyRead, &n6, [&] { n6.endData(); }); };
};

// What the N6 does, and how the page ends.
struct Transfer {
    const char *name;
    QString box;
    std::function<void(PlayedN6 &)> play;
    int limit = soon;
    /// What the user types as a backup's name, and the name that it gets.
    QString typed = "x"_s, saved = "x.tar.gz"_s;
};

enum When { Asked, Copied, Fetched }; // while the user is asked, after the first copy, in the transfer

// What happens to a command, and what comes of it.
struct Target {
    const char *name;
    QString action;
    QByteArray heard; // the serial of an N6 that is heard from the host
    When when;
    QString sent, box;
    int host = otherHost;
};

} // namespace
Q_DECLARE_METATYPE(Transfer)
Q_DECLARE_METATYPE(Target)

// The network access manager forgets what belongs to a transfer that failed.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions() // NOLINT
{
    return "leak:libQt5Network.so";
}

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir(QDir::tempPath() + "/<h1>-XXXXXX"_s));
        target = write(folder->filePath("x.tar.gz"_s), older);
        part = target + ".part"_s;
        qputenv("HOME", QFile::encodeName(folder->path()));
        QCoreApplication::setOrganizationName("kelvora-test"_s);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder->filePath("config"_s));
        client.reset(new udpHBClient(passiveMode));
        page = new ServerWidget(nullptr, client.data());
        commands.reset(new QUdpSocket);
        QVERIFY(commands->bind(QHostAddress(QHostAddress::AnyIPv4), protocol::commandPort));
        speaker = n6Host;
        serial = "N6-1";
        connect(&beat, &QTimer::timeout, this, &TestSettings::heartbeat, Qt::UniqueConnection);
        beat.start(1000);
        heartbeat();
    }
    void cleanup() { delete page; }

    void backups_data()
    {
        using N6 = PlayedN6;
        const QByteArrayList growing{"none", "", gzip().left(5), gzip().chopped(1), gzip()};
        addRows<Transfer>({
            {"the archive is there", backupComplete, [](N6 &) {}},
            {"the archive is no gzip stream", backupComplete, [](N6 &n6) { n6.file = "plain"; }},
            {"the archive is still being written", backupComplete, [=](N6 &n6) { n6.has(growing); }},
            {"the name has its ending", backupComplete, [](N6 &) {}, soon, "x.tar.gz"_s},
            {"the name is a date", backupComplete, [](N6 &) {}, soon, "1.2.26"_s, "1.2.26.tar.gz"_s},
            {"the name is an older one's", backupComplete, [](N6 &) {}, soon, "Old 1.2.26"_s, "new.tar.gz"_s},
            {"the archive never appears", backupUnable, [](N6 &n6) { n6.has({"none"}); }, late},
            {"the archive comes in drops", backupComplete, [](N6 &n6) { n6.drip(5); }, late},
            {"the archive ends early", backupFailed, [](N6 &n6) { n6.answers["SIZE"] = "213 100\r\n"; }},
            {"the archive has no end", backupFailed,
             [](N6 &n6) {
                 n6.answers["SIZE"] = "213 100\r\n";
                 n6.file.fill('x', 1000);
                 n6.drip(2);
             }},
            {"the N6 has no help to offer", backupFailed, [](N6 &n6) { n6.answers["HELP"] = "502 No\r\n"; }},
            {"the N6 has a client already", backupFailed, hangUpAtOnce},
            {"the N6 hangs up on the way", backupFailed, hangUpOnTheWay},
            {"the N6 has no such service", backupFailed, &N6::close},
            {"the N6 falls silent", backupFailed, fallSilent, late},
            {"the N6 talks without end", backupFailed,
             [](N6 &n6) { n6.answers["PASS"] = "230-" + QByteArray(3000000, 'x'); }},
            {"the disk is full", backupFailed, [this](N6 &) { QFile::link("/dev/full"_s, part); }},
            {"the folder is closed", backupUncreated, [this](N6 &) { QVERIFY(QDir().mkdir(part)); }},
        });
    }

    void backups()
    {
        QFETCH(const Transfer, row);
        target = folder->filePath(row.saved);
        const QString old = write(folder->filePath("Old 1.2.26.tar.gz"_s), older);
        PlayedN6 n6;
        row.play(n6);
        Answers answers(folder->filePath(row.typed));
        answers.answer = [&](QDialog *shown) {
            // Asked whether to replace the older one, the user says no and then types another name.
            if (shown->windowTitle() == "Save As"_s && qobject_cast<QMessageBox *>(shown) != nullptr) {
                answers.file = folder->filePath("new"_s);
                answers.boxes.clear();
            }
            // The folder's name holds a tag; no title is cut off.
            if (auto *text = shown->findChild<QLabel *>("qt_msgbox_label"_s)) {
                const int title = shown->fontMetrics().horizontalAdvance(shown->windowTitle());
                [&] { QVERIFY(text->textFormat() == Qt::PlainText && shown->width() > title + 100); }();
            }
            return false;
        };
        click("backupButton"_s);
        QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(row.box), row.limit);
        QTRY_VERIFY(!n6.isTaken() && page->findChildren<QDialog *>().isEmpty());
        QCOMPARE(contents(target), row.box == backupComplete ? n6.file : QByteArray(older));
        QCOMPARE(contents(old), older);
        QVERIFY(QFileInfo(part).isDir() || (!QFileInfo(part).isSymLink() && !QFileInfo::exists(part)));
        QCOMPARE(received(), "10:07 10:07"_s);
        heartbeat();
        QCOMPARE(button("backupButton"_s)->isEnabled(), row.box != backupUncreated);
    }

    void restores_data()
    {
        using N6 = PlayedN6;
        const auto unreadable = [this](N6 &) {
            QVERIFY(QFile::remove(target) && QFile::link("/proc/self/mem"_s, target));
        };
        addRows<Transfer>({
            {"the N6 takes it", restoreComplete, [](N6 &) {}},
            {"the N6 takes long to confirm", restoreComplete, [](N6 &n6) { n6.confirmAfterMs = 33000; },
             late},
            {"the file is empty", restoreFailed, [this](N6 &) { write(target, QByteArray()); }},
            {"the file cannot be read", restoreFailed, unreadable},
            {"the N6 has no help to offer", restoreFailed, [](N6 &n6) { n6.answers["HELP"] = "502 No\r\n"; }},
            {"the N6 refuses it", restoreFailed, [](N6 &n6) { n6.answers["STOR"] = "552 Full\r\n"; }},
            {"the N6 hangs up on the way", restoreFailed, hangUpOnTheWay},
            {"the N6 confirms a part of it", restoreFailed, confirmAPart},
            {"the N6 falls silent", restoreFailed, fallSilent, late},
        });
    }

    void restores()
    {
        QFETCH(const Transfer, row);
        // More than the system takes at once; on the disk it is a hole.
        QVERIFY(QFile::resize(target, 50000000));
        PlayedN6 n6;
        row.play(n6);
        Answers answers(target);
        // The end of a transfer is told apart from the next heartbeat.
        answers.answer = [this](QDialog *shown) {
            if (qobject_cast<QMessageBox *>(shown))
                beat.stop();
            return false;
        };
        click("restoreButton"_s);
        QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(row.box), row.limit);
        QTRY_VERIFY(!n6.isTaken());
        const bool isComplete = row.box == restoreComplete;
        QVERIFY(!isComplete || n6.uploadedBytes == contents(target).size());
        QCOMPARE(n6.lines.isEmpty(), contents(target).isEmpty());
        waitForSecondCopies();
        QCOMPARE(received(), isComplete ? "10:08 10:08"_s : QString());
        QVERIFY(!button("restoreButton"_s)->isEnabled());
        heartbeat();
        QVERIFY(button("restoreButton"_s)->isEnabled());
    }

    void onlyTheInstrumentThatWasMeantIsCommanded_data()
    {
        const QString reset = "factoryButton"_s, restore = "restoreButton"_s, backup = "backupButton"_s, none,
                      notice = "2 Factory Reset"_s;
        addRows<Target>({
            {"a reset", reset, "", Asked, "10:0f 10:0f"_s, notice},
            {"a reset, another N6 while asked", reset, "N6-2", Asked, none, notice},
            {"a reset, another N6 between the copies", reset, "N6-2", Copied, "10:0f"_s, notice},
            {"a restore, another N6 while asked", restore, "N6-2", Asked, none, restoreFailed},
            {"a restore, another N6 on the way", restore, "N6-2", Fetched, none, restoreFailed},
            {"a backup, another N6 while asked", backup, "N6-2", Asked, none, backupFailed},
            {"a backup, several servers while asked", backup, "several", Asked, none, backupFailed},
            {"a backup, another N6 on the way", backup, "N6-2", Copied, "10:07"_s, backupComplete},
            {"a backup, another N6 at its address", backup, "N6-2", Copied, "10:07"_s, backupFailed, n6Host},
            {"a backup, the N6 moves while asked", backup, "N6-1", Asked, "11:07 11:07"_s, backupComplete},
            {"a backup, the N6 moves before it", backup, "N6-1", Copied, "10:07"_s, backupComplete},
            {"a backup, the N6 moves on the way", backup, "N6-1", Fetched, "10:07 10:07"_s, backupComplete},
        });
    }

    void onlyTheInstrumentThatWasMeantIsCommanded()
    {
        QFETCH(const Target, row);
        const bool moves = row.heard == serial;
        PlayedN6 n6, other(otherHost);
        moves ? fallSilent(n6) : n6.has({"none", gzip()});
        other.file = moves ? gzip() : QByteArray("another N6's");
        Answers answers(row.action == "backupButton"_s ? folder->filePath("x"_s) : target);
        const auto hear = [&] {
            if (row.heard == "several") {
                client->processHeartbeat(HeartbeatBytes::device(Screen, "S", true), boatAddress(displayHost));
                QTRY_VERIFY(client->multipleServersDetected());
                return;
            }
            speaker = row.host;
            serial = row.heard;
            heartbeat();
        };
        answers.answer = [&](QDialog *) {
            if (row.when == Asked && !row.heard.isEmpty())
                hear();
            return false;
        };
        if (row.when == Copied)
            connect(commands.data(), &QUdpSocket::readyRead, this, hear);
        if (row.when == Fetched)
            connect(&n6, &QTcpServer::newConnection, this, hear);
        click(row.action);
        QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(row.box), soon);
        waitForSecondCopies();
        QCOMPARE(received(), row.sent);
        QCOMPARE(contents(target), row.box == backupComplete ? gzip() : QByteArray(older));
    }

    void onlyAConfirmedFileIsReplaced()
    {
        const PlayedN6 n6;
        const QDir dir(folder->path());
        QVERIFY(dir.mkpath("a.part"_s) && dir.mkpath("a"_s));
        const QStringList olds{write(dir.filePath("a/x.tar.gz"_s), "1"), write(dir.filePath("a/x"_s), "2")};
        for (const QString &chosen : {"a.part/x.tar.gz"_s, "a/x.part"_s}) {
            const Answers answers;
            page->downloadFile(dir.filePath(chosen));
            QTRY_COMPARE(answers.boxes, QStringList(backupUncreated));
        }
        QCOMPARE(contents(olds[0]) + contents(olds[1]), QByteArray("12"));
    }

    void aBoxLeavesTheNextTransferAlone()
    {
        PlayedN6 n6;
        n6.confirmAfterMs = 3000;
        Answers answers(target);
        answers.answer = [&](QDialog *box) {
            if (qobject_cast<QMessageBox *>(box) && answers.boxes.size() == 1)
                page->startRestore();
            return false;
        };
        click("restoreButton"_s);
        QTRY_VERIFY_WITH_TIMEOUT(answers.boxes.size() == 1 && !QApplication::activeModalWidget(), 10000);
        heartbeat();
        QVERIFY(!button("restoreButton"_s)->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList({restoreComplete, restoreComplete}), 10000);
    }

    void thePageMayGoAtAnyTime_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<bool>("isInBox"); // not on the way
        QTest::newRow("a backup on the way") << "backupButton"_s << false;
        QTest::newRow("a restore on the way") << "restoreButton"_s << false;
        QTest::newRow("a dialog") << "backupButton"_s << true;
        QTest::newRow("a box") << "factoryButton"_s << true;
    }

    void thePageMayGoAtAnyTime()
    {
        QFETCH(const QString, action);
        QFETCH(const bool, isInBox);
        // The window of boxes and dialogs outlives the page.
        QWidget window;
        page->setParent(&window);
        PlayedN6 n6;
        bool isUnderWay = false;
        n6.onTheWay = [&] { isUnderWay = true; };
        Answers answers(target);
        answers.answer = [&](QDialog *) {
            if (isInBox)
                delete page;
            return isInBox;
        };
        click(action);
        if (!isInBox) {
            QTRY_VERIFY(isUnderWay);
            delete page;
        }
        QVERIFY(!page && window.findChildren<QDialog *>().isEmpty());
        QTRY_VERIFY(!n6.isTaken());
        QCOMPARE(contents(target), older);
        QVERIFY(!QFileInfo::exists(part));
    }

    void tellsWhetherAGzipStreamHasItsEnd()
    {
        const auto isMissing = [](const QByteArray &bytes) {
            GzipEnd end;
            for (const char byte : bytes)
                end.feed(&byte, 1);
            return end.isMissing();
        };
        for (int length = 0; length < gzip().size(); ++length)
            QVERIFY(isMissing(gzip().left(length)));
        for (const QByteArray &whole :
             {gzip(), gzip() + gzip(), gzip() + '\0', gzip() + QByteArray(512, '\0'), QByteArray("plain")})
            QVERIFY(!isMissing(whole));
        QVERIFY(isMissing(gzip() + gzip().chopped(1)));
    }

    // The last one, since no dialog opens after the end of the program.
    void endOfTheProgramIsNoReset()
    {
        Answers answers;
        answers.answer = [](QDialog *) {
            QCoreApplication::quit();
            return true;
        };
        click("factoryButton"_s);
        waitForSecondCopies();
        QCOMPARE(received(), QString());
    }

private:
    QPushButton *button(const QString &name) const { return page->findChild<QPushButton *>(name); }
    void click(const QString &name) const { button(name)->click(); }
    void heartbeat()
    {
        // An instrument that has moved would be filtered as a copy of itself, were its software the same.
        const QByteArray software = speaker == n6Host ? "3.6" : "3.7";
        client->processHeartbeat(HeartbeatBytes::n6(serial, 1, 0, 0, software), boatAddress(speaker));
    }
    void waitForSecondCopies()
    {
        bool isOver = false;
        QTimer::singleShot(2 * protocol::commandRepeatMs, this, [&] { isOver = true; });
        QTRY_VERIFY(isOver);
    }
    /// The commands that came: whereto and the first byte.
    QString received() const
    {
        QStringList each;
        while (commands->hasPendingDatagrams()) {
            const QNetworkDatagram command = commands->receiveDatagram();
            each += command.destinationAddress().toString().section(QLatin1Char('.'), 3) + QLatin1Char(':') +
                    QString::fromLatin1(command.data().left(1).toHex());
        }
        return each.join(QLatin1Char(' '));
    }

    QScopedPointer<QTemporaryDir> folder;
    QString target, part;
    QScopedPointer<udpHBClient> client;
    QPointer<ServerWidget> page;
    QScopedPointer<QUdpSocket> commands;
    QTimer beat;
    int speaker = n6Host;
    QByteArray serial;
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
