// clazy:excludeall=non-pod-global-static
// The settings page against an N6 that the test plays, over real FTP and UDP.

#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "settings/serverwidget.h"
#include "tests/support/answers.h"
#include "tests/support/displays.h"
#include "tests/support/files.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/rows.h"
#include "tests/support/text.h"

#include <QLabel>
#include <QNetworkDatagram>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

// The network access manager forgets what belongs to a transfer that failed. All of that hangs together with
// the socket that it would listen with.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" Q_DECL_EXPORT const char *__lsan_default_suppressions()
{
    return "leak:QTcpServer::QTcpServer";
}

namespace
{

const QString backupComplete = "1 Backup download complete!"_s, uncreated = "3 Unable to create backup!"_s,
              restored = "1 Backup upload complete!"_s;
const QString backup = "backupButton"_s, restore = "restoreButton"_s, factory = "factoryButton"_s;
const char *const n6Host = "127.0.0.10", *const otherHost = "127.0.0.11", *const older = "an older backup";
// Shorter than usual; a transfer may take longer in all, the longest when it is tried 15 times.
constexpr ArchiveTransfer::Patience patience{5000, 100000};
constexpr int longerMs = 6500, longestTransferMs = 27000;

// The word "abab" as a gzip stream.
const auto gzip = QByteArray::fromHex("1f8b08000000000002ff4b4c4a4c0200a60ad73604000000"), pair = gzip + gzip;

const auto twice = [](const QString &told) { return told + " "_s + told; };

struct PlayedN6 : ScriptedFtpServer {
    explicit PlayedN6(const char *host = n6Host, const QByteArray &archive = gzip)
        : ScriptedFtpServer(at(host), protocol::ftpPort)
    {
        answers["HELP"] = "214-SIZE MDTM\r\n214 Help\r\n";
        file = archive;
    }
};

const Play asUsual = [](ScriptedFtpServer &) {};
// With two pauses.
const Play pause = [](ScriptedFtpServer &n6) {
    n6.onTheWay = [&] {
        n6.data->write(n6.file.left(5));
        QTimer::singleShot(longerMs / 2, n6.data, [&] { n6.data->write(n6.file.mid(5)); });
        QTimer::singleShot(longerMs, n6.data, [&] { n6.endData(); });
    };
};
const Play confirmLate = [](ScriptedFtpServer &n6) { n6.confirmAfterMs = longerMs; };
// In the middle of a transfer it neither reads nor writes any more.
const Play fallSilent = [](ScriptedFtpServer &n6) {
    n6.onTheWay = [&] { n6.data->disconnect(), n6.data->setReadBufferSize(1); };
};
const Play confirmAPart = [](ScriptedFtpServer &n6) {
    n6.onTheWay = [&] { QObject::connect(n6.data, &QTcpSocket::readyRead, &n6, [&] { n6.endData(); }); };
};

// All of the archive comes, but no end.
Play unending(const QByteArray &size)
{
    return [=](ScriptedFtpServer &n6) {
        n6.answers["SIZE"] = size;
        n6.onTheWay = [&] { n6.data->write(n6.file); };
    };
}

// In each session the next of these is there, and then the last one; "none": no archive.
Play has(const QByteArrayList &archives)
{
    return [=](ScriptedFtpServer &n6) {
        n6.takeOver = [&n6, left = archives](const QByteArray &verb) mutable {
            if (verb.isEmpty())
                n6.file = left.size() > 1 ? left.takeFirst() : left.first();
            return verb == "SIZE" && n6.file == "none" && (n6.reply("550 No such file\r\n"), true);
        };
    };
}

// While the user is asked, who then answers or does not; after the first copy of the command; in the
// transfer; while its end is told.
enum When { Asked, Unanswered, Copied, Moving, Told };

// What the N6 does; how that ends, which commands are sent, and in how many sessions. Then what else
// happens, and the backup that is there in the end, unless it is the older one.
struct Transfer {
    const char *name;
    Play play;
    QString boxes, sent;
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
        window.reset(new QWidget);
        client.reset(new udpHBClient(udpHBClient::Passive));
        page = new ServerWidget(window.data(), client.data());
        page->findChild<ArchiveTransfer *>()->setPatience(patience);
        // In a boat without an N6 a display may keep the settings.
        for (const bool isServer : {false, true, false}) {
            client->processHeartbeat(HeartbeatBytes::device(Screen, "S", isServer), at("127.0.0.20"));
            QVERIFY(isServer ? control(backup)->isEnabled() : client->serverAddress().isNull());
        }
        commands.reset(new QUdpSocket);
        QVERIFY(commands->bind(QHostAddress(QHostAddress::AnyIPv4), protocol::commandPort));
        hear(n6Host, "N6-\xc3\xa9");
        connect(&beat, &QTimer::timeout, this, &TestSettings::heartbeat, Qt::UniqueConnection);
        beat.start(1000);
    }

    void backsUp_data()
    {
        const QByteArray padded = pair + '\0';
        const Play fullDisk = [this](ScriptedFtpServer &) { QFile::link("/dev/full"_s, part); };
        const Play closedFolder = [this](ScriptedFtpServer &) { QVERIFY(QDir().mkdir(part)); };
        const Play growing = has({"none", "", gzip.left(5), gzip.chopped(1), pair.chopped(1), padded}),
                   never = has({"none"}), soon = has({"none", gzip}), cut = answering("SIZE", "213 100\r\n"),
                   noEnd = patiently(answering("PASS", "230-" + QByteArray(3000000, 'x')));
        const auto replaced = [this] { hear(n6Host, "N6-2"); };
        const auto moved = [this] { hear(otherHost, "N6-\xc3\xa9"); };
        const auto canceled = [] { qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject(); };
        const auto several = [this] {
            client->processHeartbeat(HeartbeatBytes::device(Screen, "S", true), at("127.0.0.20"));
            QTRY_VERIFY(client->multipleServersDetected());
        };
        const QString none, one = "10:07"_s, two = "10:07 10:07"_s, there = "11:07 11:07"_s;
        const QString unable{"2 Backup download failed!"_s}, failed{"3 Backup download failed!"_s};
        addRows<Transfer>({
            {"all goes well", asUsual, backupComplete, two, 1, gzip},
            {"the archive is no gzip stream", has({"plain"}), backupComplete, two, 1, "plain"},
            {"the archive is being written", growing, backupComplete, two, 6, padded},
            {"the archive comes with pauses", pause, backupComplete, two, 1, gzip},
            {"the archive never appears", never, unable, two, 15},
            {"the archive ends early", cut, failed, two},
            {"the archive is too long", patiently(unending("213 10\r\n")), failed, two},
            {"the N6 knows no HELP", answering("HELP", "502 No\r\n"), failed, two},
            {"the N6 has no such service", &ScriptedFtpServer::close, failed, two, 0},
            {"the N6 tells no size, and the end does not come", unending("200 Fine\r\n"), failed, two},
            {"the N6 talks without end", noEnd, failed, two},
            {"the disk is full", fullDisk, failed, two},
            {"the folder is closed", closedFolder, uncreated, two, 0},
            {"another N6 comes while the user is asked", soon, failed, none, 0, {}, Asked, another},
            {"a second server comes while the user is asked", soon, failed, none, 0, {}, Asked, several},
            {"another N6 comes before the archive", soon, backupComplete, one, 2, gzip, Copied, another},
            {"another N6 takes its address", soon, failed, one, 0, {}, Copied, replaced},
            {"the N6 moves while the user is asked", never, backupComplete, there, 0, pair, Asked, moved},
            {"the N6 moves before the archive is there", never, backupComplete, one, 0, pair, Copied, moved},
            {"the N6 moves on the way", patiently(fallSilent), backupComplete, two, 1, pair, Moving, moved},
            {"another begins as its end is told", asUsual, twice(backupComplete), twice(two), 2, gzip, Told,
             [this] { page->startBackup(); }},
            {"the user cancels", soon, {}, none, 0, {}, Unanswered, canceled},
            {"the page goes while the user is asked", soon, {}, none, 0, {}, Unanswered, gone},
            {"the page goes on the way", asUsual, {}, two, 1, {}, Moving, gone},
        });
    }
    void backsUp() { askFor(backup); }

    void restores_data()
    {
        const Play emptyFile = [this](ScriptedFtpServer &) { QFile::resize(target, 0); };
        const auto again = [this] { page->startRestore(); };
        const QString none, both = "10:08 10:08"_s, unstored = "3 Settings upload failed!"_s;
        addRows<Transfer>({
            {"the N6 takes long to confirm", confirmLate, restored, both},
            {"the file is empty", emptyFile, unstored, none, 0},
            {"the N6 has no room", answering("done", "552 Full\r\n"), unstored, none},
            {"the N6 hangs up", patiently(hangUp), unstored, none},
            {"the N6 confirms a part of it", confirmAPart, unstored, none},
            {"the N6 falls silent", fallSilent, unstored, none},
            {"another N6 comes while the user is asked", asUsual, unstored, none, 0, {}, Asked, another},
            {"another N6 comes on the way", asUsual, unstored, none, 1, {}, Moving, another},
            {"another begins as its end is told", asUsual, twice(restored), twice(both), 2, {}, Told, again},
            {"the page goes on the way", asUsual, {}, none, 1, {}, Moving, gone},
        });
    }
    void restores() { askFor(restore); }

    void dialogsKeepFoldersAndOlderFiles()
    {
        const PlayedN6 n6;
        const QDir home(folder->path());
        QVERIFY(home.mkdir("sub"_s) && home.mkdir("a"_s) && home.mkdir("a.part"_s));
        write(home.filePath("Old 1.2.26.tar.gz"_s), older);
        write(home.filePath("a/x.tar.gz"_s), older);
        using Row = std::tuple<QString, QString, QString, QString>;
        // Where the dialog opens, a name that is typed there, the file that this means, and what the user is
        // told.
        for (const auto &[opened, typed, file, told] :
             {Row{""_s, "sub/x.tar.gz"_s, "sub/x.tar.gz"_s, backupComplete},
              {"/sub"_s, "1.2.26.gz"_s, "1.2.26.gz.tar.gz"_s, backupComplete},
              // Asked whether to replace the older one, the user says no and then types another name.
              {""_s, "Old 1.2.26"_s, "Old 1.2.26.tar.gz"_s, "2 Save As "_s + backupComplete},
              // No one has been asked about the file that this would replace.
              {""_s, "a.part/x.tar.gz"_s, "a/x.tar.gz"_s, uncreated}}) {
            Answers answers(home.filePath(typed));
            QString offered;
            answers.answer = [&](QDialog *shown) {
                const auto *dialog = qobject_cast<QFileDialog *>(shown);
                const QStringList kinds("Kelvora Settings Backup (*.tar.gz)"_s);
                if (dialog != nullptr && dialog->nameFilters() == kinds && offered.isEmpty())
                    offered = dialog->directory().filePath(dialog->findChild<QLineEdit *>()->text());
                if (!answers.boxes.isEmpty())
                    answers.file = home.filePath("new"_s);
                return false;
            };
            control(backup)->click();
            QTRY_COMPARE(answers.boxes.join(u' '), told);
            QVERIFY(offered.startsWith(home.path() + opened + "/kelvora-settings-backup-20"_s) &&
                    !offered.contains(u':'));
            QCOMPARE(contents(home.filePath(file)), told == backupComplete ? gzip : QByteArray(older));
        }
    }

    void resets_data()
    {
        const QString none, one = "10:0f4e362de9000000000000000000000000"_s, notice = "2 Factory Reset"_s;
        const auto ended = [] { QCoreApplication::quit(); };
        addRows<Transfer>({
            {"all goes well", asUsual, notice, twice(one), 0},
            {"another N6 comes while the user is asked", asUsual, notice, none, 0, {}, Asked, another},
            {"another N6 comes after the first copy", asUsual, notice, one, 0, {}, Copied, another},
            {"the page goes while the user is asked", asUsual, notice, none, 0, {}, Unanswered, gone},
            // The last one, since no dialog opens after the end of the program.
            {"the program ends while the user is asked", asUsual, notice, none, 0, {}, Unanswered, ended},
        });
    }
    void resets() { askFor(factory); }

private:
    QPushButton *control(const QString &name) const { return page->findChild<QPushButton *>(name); }
    /// Presses this button, lets the row's N6 play, and compares what comes of it.
    void askFor(const QString &action)
    {
        QFETCH(const Transfer, row);
        PlayedN6 n6, other(otherHost, pair);
        // More than the system takes at once; on the disk it is a hole.
        QVERIFY(QFile::resize(target, 50000000));
        row.play(n6);
        const QByteArray before = contents(target);
        Answers answers(target);
        bool hasHappened = false, isReadable = true, isLocked = true;
        const auto happens = [&] {
            if (!std::exchange(hasHappened, true))
                row.happens();
        };
        answers.answer = [&](QDialog *shown) {
            // The folder's name holds a tag; no title is cut off; a locked page does not lock its dialogs.
            const auto *box = qobject_cast<QMessageBox *>(shown);
            const int title = shown->fontMetrics().horizontalAdvance(shown->windowTitle());
            isReadable &=
                shown->parentWidget() == window.data() &&
                (box == nullptr || (box->textFormat() == Qt::PlainText && box->width() > title + 100));
            if (row.when < Copied || (row.when == Told && box != nullptr))
                happens();
            return row.when == Unanswered;
        };
        if (row.when == Moving)
            n6.onTheWay = [&, play = n6.onTheWay] {
                if (play)
                    play();
                happens();
            };
        connect(&n6, &QTcpServer::newConnection, &n6, [&] {
            heartbeat();
            // A backup that has been tried in vain would give way to another one.
            const bool isOpen = action == backup && row.when != Told && n6.lines.contains("USER kwz");
            isLocked &= control(restore)->isEnabled() == isOpen;
        });
        control(action)->click();
        if (row.when == Copied)
            happens();
        QTRY_VERIFY_WITH_TIMEOUT(hasHappened && answers.boxes.join(u' ') == row.boxes, longestTransferMs);
        QVERIFY(isReadable && isLocked);
        QCOMPARE(received(), row.sent);
        QCOMPARE(answers.boxes.join(u' '), row.boxes);
        QTRY_VERIFY(!n6.isTaken() && !other.isTaken() && window->findChildren<QDialog *>().isEmpty());
        QCOMPARE(n6.lines.count("USER kwz"), row.sessions);
        QVERIFY(row.saved.isNull() || n6.lines.count("QUIT") == row.sessions);
        QVERIFY(contents(target) == (row.saved.isNull() ? before : row.saved));
        QVERIFY(row.sent != "10:08 10:08"_s || n6.uploadedBytes == before.size());
        // Where the dialog was, for the next one.
        QCOMPARE(QSettings().contains("Dialogs/settings"_s), row.when != Unanswered && action != factory);
        QVERIFY(!QFileInfo(part).isFile() && !QFileInfo(part).isSymLink());
        if (!page)
            return;
        const auto *label = page->findChild<QLabel *>("label_CurrentServer"_s);
        QCOMPARE(label->text(), "Current server:  "_s + QString::fromUtf8(serial));
        QCOMPARE(label->textFormat(), Qt::PlainText);
        for (const QString &name : {backup, restore, factory})
            QCOMPARE(control(name)->isEnabled(), row.boxes != uncreated);
        const auto timers = page->findChildren<QTimer *>();
        for (const QTimer *timer : timers)
            QVERIFY2(!timer->isActive(), "what has ended is waited for");
    }

    void hear(const char *host, const QByteArray &name)
    {
        speaker = host;
        serial = name;
        heartbeat();
    }
    void heartbeat()
    {
        // An instrument that has moved would be filtered as a copy of itself, were its software the same.
        client->processHeartbeat(HeartbeatBytes::n6(serial, 1, 0, 0, speaker), at(speaker));
    }
    /// The commands that came, second copies included: whereto and what.
    QString received()
    {
        // Second copies and another attempt, which comes after a second, come sooner than this heartbeat.
        QSignalSpy beats(&beat, &QTimer::timeout);
        beat.start(1300);
        QString all;
        while (QTest::qWaitFor([&] { return !beats.isEmpty(); }) && commands->hasPendingDatagrams()) {
            const QNetworkDatagram command = commands->receiveDatagram();
            const QString hex = QString::fromLatin1(command.data().toHex());
            all += command.destinationAddress().toString().section(u'.', 3) + ":"_s + hex + " "_s;
        }
        return all.trimmed();
    }

    /// Played to a user who would wait for longer than this test does.
    Play patiently(const Play &play) const
    {
        return [this, play](ScriptedFtpServer &n6) {
            page->findChild<ArchiveTransfer *>()->setPatience({100000, 100000});
            play(n6);
        };
    }

    // What befalls a transfer.
    const std::function<void()> gone = [this] { delete page; }, another = [this] { hear(otherHost, "N6-2"); };

    QScopedPointer<QTemporaryDir> folder;
    QString target, part;
    QScopedPointer<udpHBClient> client;
    QScopedPointer<QWidget> window;
    QPointer<ServerWidget> page;
    QScopedPointer<QUdpSocket> commands;
    QTimer beat;
    const char *speaker = n6Host;
    QByteArray serial;
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
