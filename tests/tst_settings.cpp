// clazy:excludeall=non-pod-global-static
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
#include <QSettings>
#include <QUdpSocket>
#include <QtTest>

namespace
{

const QString backupComplete = "1 Backup download complete!"_s,
              backupUncreated = "3 Unable to create backup!"_s,
              restoreComplete = "1 Backup upload complete!"_s;
const QString backup = "backupButton"_s, restore = "restoreButton"_s, factory = "factoryButton"_s;
constexpr int n6Host = 10, otherHost = 11, displayHost = 20;
// Shorter than usual; a transfer may take longer in all.
constexpr ArchiveTransfer::Patience patience{5000, 100000}, usualPatience;
static_assert(usualPatience.forBytesMs == 30'000 && usualPatience.forConfirmationMs == 300'000);
constexpr int longerMs = 6500, dropBytes = 5;
// In which a transfer ends, or has been tried 15 times.
constexpr int longestTransferMs = 30000;
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

    /// Sends what it has in drops.
    void drip()
    {
        onTheWay = [this] {
            auto *drops = new QTimer(data);
            QObject::connect(drops, &QTimer::timeout, data, [this, at = 0]() mutable {
                data->write(file.mid(at, dropBytes));
                at += dropBytes;
                if (at >= file.size())
                    data->disconnectFromHost();
            });
            drops->start(longerMs * dropBytes / file.size());
        };
    }
};

using Play = std::function<void(PlayedN6 &)>;
const Play asUsual = [](PlayedN6 &) {};
const Play endless = [](PlayedN6 &n6) {
    n6.answers["SIZE"] = "213 10\r\n";
    n6.drip();
};
const Play plain = [](PlayedN6 &n6) { n6.file = "plain"; };
const Play confirmLate = [](PlayedN6 &n6) { n6.confirmAfterMs = longerMs; };
const Play hangUpAtOnce = [](PlayedN6 &n6) {
    n6.takeOver = [&](auto) { return n6.reply("421 Busy\r\n"), n6.control->disconnectFromHost(), true; };
};
// In the middle of a transfer it neither reads nor writes any more.
const Play fallSilent = [](PlayedN6 &n6) {
    n6.onTheWay = [&] { n6.data->disconnect(), n6.data->setReadBufferSize(1); };
};
const Play confirmAPart = [](PlayedN6 &n6) {
    n6.onTheWay = [&] { QObject::connect(n6.data, &QTcpSocket::readyRead, &n6, [&] { n6.endData(); }); };
};

Play has(const QByteArrayList &archives)
{
    return [=](PlayedN6 &n6) { n6.has(archives); };
}

Play answering(const QByteArray &verb, const QByteArray &reply)
{
    return [=](PlayedN6 &n6) { n6.answers[verb] = reply; };
}

const Play noHelp = answering("HELP", "502 No\r\n");

// While the user is asked, after the first copy, at the begin of a session, in the transfer.
enum When { Asked, Copied, Begun, Moving };

// What the N6 does; how that ends, which commands are sent, and in how many sessions. Then what else
// happens, and the backup that is there in the end, unless it is the older one.
struct Transfer {
    const char *name;
    Play play;
    QStringList boxes;
    QString sent;
    int sessions = 1;
    QByteArray saved = {};
    When when = Asked;
    std::function<void()> happens = [] {};
};

} // namespace
Q_DECLARE_METATYPE(Transfer)

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
        client.reset(new udpHBClient(udpHBClient::Passive));
        window.reset(new QWidget);
        page = new ServerWidget(window.data(), client.data());
        page->findChild<ArchiveTransfer *>()->setPatience(patience);
        commands.reset(new QUdpSocket);
        QVERIFY(commands->bind(QHostAddress(QHostAddress::AnyIPv4), protocol::commandPort));
        hear(n6Host, "N6-1");
        connect(&beat, &QTimer::timeout, this, &TestSettings::heartbeat, Qt::UniqueConnection);
        beat.start(1000);
    }

    void cleanup()
    {
        delete page;
        QVERIFY(window->findChildren<QDialog *>().isEmpty());
    }

    void backsUp_data()
    {
        const Play fullDisk = [this](PlayedN6 &) { QFile::link("/dev/full"_s, part); };
        const Play closedFolder = [this](PlayedN6 &) { QVERIFY(QDir().mkdir(part)); };
        const Play growing = has({"none", "", gzip().left(5), gzip().chopped(1), gzip()}),
                   never = has({"none"}), soon = has({"none", gzip()}),
                   cut = answering("SIZE", "213 100\r\n"),
                   muchTalk = answering("PASS", "230-" + QByteArray(1000000, 'x') + "\r\n230 In\r\n"),
                   noEnd = answering("PASS", "230-" + QByteArray(3000000, 'x'));
        const auto replaced = [this] { hear(n6Host, "N6-2"); };
        const auto moved = [this] { hear(otherHost, "N6-1"); };
        const auto several = [this] {
            client->processHeartbeat(HeartbeatBytes::device(Screen, "S", true), boatAddress(displayHost));
            QTRY_VERIFY(client->multipleServersDetected());
        };
        const QString none, one = "10:07"_s, two = "10:07 10:07"_s, there = "11:07 11:07"_s;
        const QStringList complete{"1 Backup download complete!"_s}, unable{"2 Backup download failed!"_s},
            failed{"3 Backup download failed!"_s}, uncreated{backupUncreated};
        const QByteArray own = gzip(), others = gzip() + gzip();
        addRows<Transfer>({
            {"all goes well", asUsual, complete, two, 1, own},
            {"the archive is no gzip stream", plain, complete, two, 1, "plain"},
            {"the archive is being written", growing, complete, two, 5, own},
            {"the archive comes in drops", &PlayedN6::drip, complete, two, 1, own},
            {"the archive never appears", never, unable, two, 15},
            {"the archive ends early", cut, failed, two},
            {"the archive has no end", endless, failed, two},
            {"the N6 knows no HELP", noHelp, failed, two},
            {"the N6 has another client", hangUpAtOnce, failed, two, 0},
            {"the N6 hangs up", hangUp, failed, two},
            {"the N6 has no such service", &PlayedN6::close, failed, two, 0},
            {"the N6 falls silent", fallSilent, failed, two},
            {"the N6 talks a lot", muchTalk, complete, two, 1, own},
            {"the N6 talks without end", noEnd, failed, two},
            {"the disk is full", fullDisk, failed, two},
            {"the folder is closed", closedFolder, uncreated, two, 0},
            {"another N6 comes while the user is asked", soon, failed, none, 0, {}, Asked, another},
            {"a second server comes while the user is asked", soon, failed, none, 0, {}, Asked, several},
            {"another N6 comes before the archive", soon, complete, one, 2, own, Copied, another},
            {"another N6 takes its address", soon, failed, one, 0, {}, Copied, replaced},
            {"the N6 moves while the user is asked", never, complete, there, 0, others, Asked, moved},
            {"the N6 moves before the archive is there", never, complete, one, 0, others, Copied, moved},
            {"the N6 moves on the way", fallSilent, complete, two, 1, others, Begun, moved},
            {"the page goes while the user is asked", soon, {}, none, 0, {}, Asked, gone},
            {"the page goes on the way", asUsual, {}, two, 1, {}, Moving, gone},
        });
    }
    void backsUp() { askFor(backup); }

    void restores_data()
    {
        const Play emptyFile = [this](PlayedN6 &) { write(target, QByteArray()); };
        const Play unreadable = [this](PlayedN6 &) {
            QVERIFY(QFile::remove(target) && QFile::link("/proc/self/mem"_s, target));
        };
        const Play refusal = answering("STOR", "552 Full\r\n");
        const QString none, both = "10:08 10:08"_s;
        const QStringList stored{"1 Backup upload complete!"_s}, unstored{"3 Settings upload failed!"_s};
        addRows<Transfer>({
            {"all goes well", asUsual, stored, both},
            {"the N6 takes long to confirm", confirmLate, stored, both},
            {"the file is empty", emptyFile, unstored, none, 0},
            {"the file cannot be read", unreadable, unstored, none, 0},
            {"the N6 knows no HELP", noHelp, unstored, none},
            {"the N6 refuses the file", refusal, unstored, none},
            {"the N6 hangs up", hangUp, unstored, none},
            {"the N6 confirms a part of it", confirmAPart, unstored, none},
            {"the N6 falls silent", fallSilent, unstored, none},
            {"another N6 comes while the user is asked", asUsual, unstored, none, 0, {}, Asked, another},
            {"another N6 comes on the way", asUsual, unstored, none, 1, {}, Begun, another},
            {"the page goes on the way", asUsual, {}, none, 1, {}, Moving, gone},
        });
    }
    void restores() { askFor(restore); }

    void resets_data()
    {
        const QString none, one = "10:0f"_s, both = "10:0f 10:0f"_s;
        const QStringList notice{"2 Factory Reset"_s};
        addRows<Transfer>({
            {"all goes well", asUsual, notice, both, 0},
            {"another N6 comes while the user is asked", asUsual, notice, none, 0, {}, Asked, another},
            {"another N6 comes between copies", asUsual, notice, one, 0, {}, Copied, another},
            {"the page goes while the user is asked", asUsual, notice, none, 0, {}, Asked, gone},
        });
    }
    void resets() { askFor(factory); }

    void dialogsKeepFoldersAndCompleteNames()
    {
        const PlayedN6 n6;
        const QDir home(folder->path());
        QVERIFY(home.mkdir("sub"_s));
        const QString old = write(home.filePath("Old 1.2.26.tar.gz"_s), older);
        using Row = std::tuple<QString, QString, QString>;
        // Where the dialog opens, and a name that is typed there; the last but one is another file's.
        for (const auto &[opened, typed, saved] : {Row{home.path(), "sub/x.tar.gz"_s, "sub/x.tar.gz"_s},
                                                   {home.filePath("sub"_s), "1.2.26"_s, "1.2.26.tar.gz"_s},
                                                   {home.path(), "Old 1.2.26"_s, "new.tar.gz"_s}}) {
            Answers answers(home.filePath(typed));
            QString seen, offered;
            answers.answer = [&](QDialog *shown) {
                if (const auto *dialog = qobject_cast<QFileDialog *>(shown); dialog && seen.isEmpty()) {
                    seen = dialog->directory().path();
                    offered = dialog->findChild<QLineEdit *>()->text();
                }
                // Asked whether to replace the older one, the user says no and then types another name.
                if (shown->windowTitle() == "Save As"_s && qobject_cast<QMessageBox *>(shown) != nullptr) {
                    answers.file = home.filePath("new"_s);
                    answers.boxes.clear();
                }
                return false;
            };
            click(backup);
            QTRY_COMPARE(answers.boxes, QStringList(backupComplete));
            QCOMPARE(seen, opened);
            QVERIFY(offered.startsWith("kelvora-settings-backup-20"_s) &&
                    !offered.contains(QLatin1Char(':')));
            QCOMPARE(contents(home.filePath(saved)), gzip());
        }
        QCOMPARE(contents(old), older);
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
        n6.confirmAfterMs = 2000;
        Answers answers(target);
        answers.answer = [&](QDialog *box) {
            if (qobject_cast<QMessageBox *>(box) && answers.boxes.size() == 1)
                page->startRestore();
            return false;
        };
        click(restore);
        QTRY_VERIFY_WITH_TIMEOUT(answers.boxes.size() == 1 && !QApplication::activeModalWidget(), 10000);
        heartbeat();
        QVERIFY(!control(restore)->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList({restoreComplete, restoreComplete}), 10000);
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
        click(factory);
        waitForSecondCopies();
        QCOMPARE(received(), QString());
    }

private:
    QPushButton *control(const QString &name) const { return page->findChild<QPushButton *>(name); }
    // The folder's name holds a tag; no title is cut off; a page that is locked does not lock its dialogs.
    void checkReadable(const QDialog *shown) const
    {
        QCOMPARE(shown->parentWidget(), window.data());
        if (const auto *text = shown->findChild<QLabel *>("qt_msgbox_label"_s)) {
            const int title = shown->fontMetrics().horizontalAdvance(shown->windowTitle());
            QVERIFY(text->textFormat() == Qt::PlainText && shown->width() > title + 100);
        }
    }
    /// Presses this button, lets the row's N6 play, and compares what comes of it.
    void askFor(const QString &action)
    {
        QFETCH(const Transfer, row);
        PlayedN6 n6, other(otherHost);
        other.file = gzip() + gzip();
        // More than the system takes at once; on the disk it is a hole.
        QVERIFY(QFile::resize(target, 50000000));
        row.play(n6);
        const QByteArray before = contents(target);
        Answers answers(target);
        bool hasHappened = false;
        const auto happens = [&] {
            row.happens();
            hasHappened = true;
        };
        answers.answer = [&](QDialog *shown) {
            checkReadable(shown);
            if (row.when == Asked && !hasHappened)
                happens();
            return page.isNull();
        };
        if (row.when == Copied)
            connect(commands.data(), &QUdpSocket::readyRead, &n6, happens);
        if (row.when == Begun)
            connect(&n6, &QTcpServer::newConnection, &n6, happens);
        if (row.when == Moving)
            n6.onTheWay = happens;
        click(action);
        QTRY_VERIFY_WITH_TIMEOUT(hasHappened && answers.boxes == row.boxes, longestTransferMs);
        QTRY_VERIFY(!n6.isTaken() && !other.isTaken() && window->findChildren<QDialog *>().isEmpty());
        QCOMPARE(n6.lines.count("USER kwz"), row.sessions);
        QVERIFY(row.saved.isNull() || n6.lines.count("QUIT") == row.sessions);
        QVERIFY(contents(target) == (row.saved.isNull() ? before : row.saved));
        QVERIFY(row.sent != "10:08 10:08"_s || n6.uploadedBytes == before.size());
        QVERIFY(!QFileInfo(part).isFile() && !QFileInfo(part).isSymLink());
        waitForSecondCopies();
        QCOMPARE(received(), row.sent);
        if (!page)
            return;
        heartbeat();
        QCOMPARE(page->findChild<QLabel *>("label_CurrentServer"_s)->text(),
                 "Current server:  "_s + QString::fromLatin1(serial));
        for (const QString &name : {backup, restore, factory})
            QCOMPARE(control(name)->isEnabled(), !row.boxes.contains(backupUncreated));
    }

    void click(const QString &name) const { control(name)->click(); }
    void hear(int host, const QByteArray &name)
    {
        speaker = host;
        serial = name;
        heartbeat();
    }
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

    // The N6 hangs up in the middle of a transfer. That is told, not waited for.
    const Play hangUp = [this](PlayedN6 &n6) {
        page->findChild<ArchiveTransfer *>()->setPatience({100000, 100000});
        n6.onTheWay = [&] { n6.control->abort(); };
    };
    // What befalls a transfer.
    const std::function<void()> gone = [this] { delete page; }, another = [this] { hear(otherHost, "N6-2"); };

    QScopedPointer<QTemporaryDir> folder;
    QString target, part;
    QScopedPointer<udpHBClient> client;
    QScopedPointer<QWidget> window;
    QPointer<ServerWidget> page;
    QScopedPointer<QUdpSocket> commands;
    QTimer beat;
    int speaker = n6Host;
    QByteArray serial;
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
