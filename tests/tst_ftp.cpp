// What comes of commands, with servers of every kind and slots that interfere, and what the client's parts
// make of lines.
#include "ftp/ftplisting.h"
#include "ftp/passivereply.h"
#include "ftp/replyreader.h"
#include "tests/support/disturbedsession.h"
#include "tests/support/ftpsession.h"
#include "tests/support/memory.h"
#include "tests/support/rows.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QTest>

#include <tuple>
#include <utility>

namespace
{

// What is queued, the lines that the server then hears, what the client signals, and what the server says.
struct Dialogue {
    const char *name;
    QByteArray words, lines, log, answers = {};
    bool ipv6 = false;
};

QString described(const QUrlInfo &info)
{
    const QString letters = "d"_s.repeated(int(info.isDir())) + "f"_s.repeated(int(info.isFile())) +
                            "l"_s.repeated(int(info.isSymLink())) + "r"_s.repeated(int(info.isReadable())) +
                            "w"_s.repeated(int(info.isWritable())) + "x"_s.repeated(int(info.isExecutable()));
    return "%1 %2 %3 %4 %5 %6 %7"_s.arg(info.name(), QString::number(info.permissions(), 8), info.owner(),
                                        info.group(), QString::number(info.size()),
                                        info.lastModified().toString(Qt::ISODate), letters);
}

} // namespace
Q_DECLARE_METATYPE(Dialogue)

class TestFtp : public QObject
{
    Q_OBJECT

private slots:
    // The first, for its command is to be the first of the process.
    void tellsWhatIsQueued()
    {
        QFtp ftp;
        QFile file;
        ftp.abort();
        QCOMPARE(ftp.put(&file, "f"_s), 1);
        QCOMPARE(ftp.mkdir("a"_s), 2);
        ftp.mkdir("b"_s);
        QVERIFY(ftp.hasPendingCommands() && ftp.currentDevice() == &file);
        QVERIFY(ftp.currentId() == 1 && ftp.currentCommand() == QFtp::Put);
        ftp.clearPendingCommands();
        QVERIFY(!ftp.hasPendingCommands() && ftp.bytesAvailable() == 0);
        QCOMPARE(ftp.errorString(), "Unknown error"_s);
    }

    void runsCommands_data()
    {
        const QByteArray get = "TYPE I|SIZE f|PASV|RETR f", put = "TYPE I|PASV|ALLO 3|STOR f",
                         putLarge = "TYPE I|PASV|ALLO 33554432|STOR f", putStream = "TYPE I|PASV|STOR f",
                         putEnded = putLarge + "|ABOR", abortLarge = "no-last-word abort-midway put-large",
                         getFailed = "failed 1, done Downloading file failed:\n",
                         putFailed = "failed 1, done Uploading file failed:\n",
                         cut = "The data connection ended before all of the file ",
                         getCut = getFailed + cut + "had arrived", putCut = putFailed + cut + "was sent",
                         unreadable = putFailed + "The file to upload cannot be read",
                         ofLarge = "of 33554432, ", listFailed = "done Listing directory failed:\n",
                         closedPort = "227 (127,0,0,1,0,1)", aborted = ofLarge + putFailed + "Aborted",
                         listRefused = listFailed + "Connection refused for data connection",
                         notFound = "done Connecting to host failed:\n",
                         refused = notFound + "Connection refused to host 127.0.0.1",
                         noHost = "state 0, state 1, state 2, state 0, failed 1, ";
        addRows<Dialogue>({
            {"no command transfers a file", "cd mkdir rmdir rename remove",
             "CWD update|MKD \xfc|RMD a %1|RNFR b|RNTO c|DELE d",
             "finished 1, finished 2, finished 3, finished 4, finished 5"},
            {"nothing can follow a close", "close cd", "QUIT",
             "state 5, state 0, finished 1, failed 2, done Changing directory failed:\nNot connected"},
            {"the server calls a first line superfluous", "put cd", "TYPE I",
             "of 3, " + putFailed + "So what", "TYPE 202 So what"},
            {"the password is wrong", "", "", "failed 0, done Login failed:\nNo", "PASS 530 No"},
            {"no password is wanted", "raw", "USER kwz|SITE x", "raw Fine200, finished 1", "USER 230 Hello"},
            {"a reply has odd lines", "raw", "SITE x", "raw w\r\n226 x\r\n22\r\ny\r\nz230, finished 1",
             "SITE 099 a\r\n600 a\r\n160 a\r\n1/0 a\r\n10:\r\n10\r\n230-w\r\n226 x\r\n22\r\n230-y\r\n230 z"},
            {"it goes through a proxy and then without", "proxy connect-boat guest no-proxy",
             "USER anonymous@boat.invalid:2121|PASS anonymous@",
             "finished 1, state 0, state 1, state 2, state 3, finished 2, state 4, finished 3, finished 4"},
            // Transfers that go well.
            {"the second text is empty", "put put-empty", put + "|TYPE A|PASV|ALLO 0|STOR f",
             "of 3, finished 1, of 0, of 0, finished 2"},
            {"the size is no number", "get", get, "ready 5, finished 1", "SIZE 200 Fine"},
            {"the size is negative", "get", get, "of 0, ready 5, finished 1", "SIZE 213 -7"},
            {"the server knows neither room nor size", "put get", put + '|' + get,
             "of 3, finished 1, of 0, ready 5, finished 2", "ALLO 502 No|SIZE 550 No"},
            {"over 2 GiB", "60 put-huge", "TYPE I|PASV|ALLO 2147483653|STOR f", "of 2147483653, finished 1"},
            {"the stream pauses", "late-last-word put-stream", putStream, "of 0, finished 1"},
            {"the stream is cut off", "no-last-word cut-done put-endless", putStream, "of 0, finished 1"},
            {"a stranger connects before the server", "stranger active list put",
             "TYPE A|PORT|LIST update|TYPE I|PORT|ALLO 3|STOR f",
             "finished 1, list x, finished 2, of 3, finished 3"},
            {"hang-up behind the last word", "hang-up-done get", get, "of 5, ready 5, state 0, finished 1"},
            {"the server has IPv6", "list", "TYPE A|EPSV|LIST update", "list x, finished 1", {}, true},
            // Transfers that do not.
            {"the server has IPv6, but knows PASV", "list", "TYPE A|EPSV|PASV", "failed 1, " + listRefused,
             "EPSV 500 What?|PASV " + closedPort, true},
            {"the server has IPv6, but knows PORT", "active list", "TYPE A|EPRT",
             "finished 1, failed 2, " + listRefused, "EPRT 500 What?", true},
            {"the folder is missing", "no-folder list", "TYPE A|PASV|LIST update",
             "failed 1, " + listFailed + "x: No such file or directory\r\n"},
            {"the file is too short", "get", get, "of 7000000000, ready 5, " + getCut, "SIZE 213 7000000000"},
            {"the disk is full", "get-full", get + "|ABOR", "of 5, " + getFailed + "No space left on device"},
            {"the sink vanishes", "sink-gone get-file", get + "|ABOR",
             "of 5, " + getFailed + "The file to download into is gone"},
            {"the source is missing", "put-closed", "", putFailed + "No such file or directory"},
            {"the source shrinks", "source-shrinks put-large", putEnded, ofLarge + unreadable},
            {"the source vanishes", "source-gone put-endless", putStream + "|ABOR", "of 0, " + unreadable},
            {"the upload is cut off", "cut put-large", putLarge, ofLarge + putCut},
            {"the cut upload is called done", "no-last-word cut-done put-large", putLarge, ofLarge + putCut},
            {"the upload is cut off at once", "cut-at-once put", put, "of 3, " + putCut, "STOR 150 Go"},
            {"the upload is reset", "no-last-word reset put-large", putLarge, ofLarge + putCut},
            {"no port is named", "put", put, "of 3, " + putCut, "PASV 227 No|STOR 150 Go\r\n226 Done"},
            {"a port comes for a go-ahead", "put", put, "of 3, " + putCut, "STOR " + closedPort},
            {"the server never connects", "22 active list", "TYPE A|PORT|LIST update",
             "finished 1, failed 2, " + listRefused, "PORT 200 Fine|LIST 150 Go"},
            {"the data has no end", "80 endless get", get,
             "of 5, ready 5, ready 6, ready 7, " + getFailed + "The data connection timed out"},
            // Aborts.
            {"hang-up behind the last word, and abort", "hang-up-abort get", get,
             "of 5, ready 5, state 0, " + getFailed + "Aborted"},
            {"a log-in is aborted too late", "abort-at-password cd", "ABOR", ""},
            {"a raw command is aborted late", "abort-at-site raw", "SITE x|ABOR", "raw Fine200, finished 1"},
            {"an upload is aborted", abortLarge, putEnded, ofLarge + putFailed + "Cut off",
             "ABOR 426 Cut off\r\n226 Aborted"},
            {"an upload is aborted too late", abortLarge, putEnded, aborted, "ABOR 226 Done\r\n225 Nothing"},
            {"an abort finds nothing to cut off", abortLarge, putEnded, aborted, "ABOR 225 Nothing"},
            {"an abort has no last word", abortLarge, putEnded, aborted, "ABOR 150 Later"},
            // No connection.
            {"the server has too many clients", "cd", "",
             "state 1, state 2, state 3, state 0, failed -1, " + refused, " 421 Too many\r\n220 Ready"},
            {"the host has no server", "connect-closed", "", noHost + refused},
            {"there is no way to the host", "connect-nowhere", "",
             noHost + notFound + "Connection timed out to host 255.255.255.255"},
            {"the host is unknown", "connect-boat", "",
             "state 0, state 1, state 0, failed 1, " + notFound + "Host boat.invalid not found"},
        });
    }

    void runsCommands()
    {
        QFETCH(Dialogue, row);
        FtpSession session(row.answers, row.ipv6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost);
        if (!session.server.isListening())
            QSKIP("this machine has no IPv6");
        const QRegularExpression usual(
            "^((state 0, )?state 1, state 2, state 3, finished -1, )?(state 4, finished 0, )?|(, )?done well"_s),
            logInAndPorts(R"(USER kwz\|PASS secret\|?| 127,0,0,1,\d+,\d+(?=\||$)| \|2\|::1\|\d+\|)"_s);
        const QDeadlineTimer end(1000);
        for (int round = 0; round < 20 && !end.hasExpired(); ++round) {
            session.server.lines.clear();
            session.log.clear();
            // A failure leaves a connection as good as before.
            const bool isLoggedIn =
                session.ftp->error() != QFtp::NoError && session.ftp->state() == QFtp::LoggedIn && !row.ipv6;
            session.queue((isLoggedIn ? "login " : "connect login ") + row.words);
            QCOMPARE(session.log, QStringList());
            const int longestMs = isSanitized ? 5 * waitMs : session.longestMs;
            QVERIFY2(waitUntil([&] { return session.isDone(); }, longestMs), qPrintable(session.outcome()));
            const QString lines = QString::fromLatin1(session.server.lines.join('|'));
            QCOMPARE(QString(lines).remove(logInAndPorts), QString::fromLatin1(row.lines));
            QCOMPARE(session.outcome().remove(usual), QString::fromLatin1(row.log));
        }
    }

    // What arrives while a slot runs an event loop waits in the system, but for a little.
    void holdsLittleWhileASlotRuns()
    {
        FtpSession session;
        session.ftp->setProperty("_q_networksession", 7);
        session.server.file.fill('a', 20000000);
        session.queue("connect login get-file");
        session.step = [&](const QByteArray &signal) {
            if (signal != "progress")
                return;
            session.server.control->write(session.server.file);
            for (const auto &[name, most] : {std::pair("QFtpPI_socket"_s, qint64(16384)),
                                             std::pair("QFtpDTP Passive state socket"_s, qint64(65536))}) {
                const auto *const socket = session.ftp->findChild<QTcpSocket *>(name);
                QTRY_COMPARE(socket->bytesAvailable(), most);
                QCOMPARE(socket->property("_q_networksession"), QVariant(7));
            }
            delete session.ftp;
        };
        QVERIFY(waitUntil([&] { return session.server.lines.contains("ABOR"); }));
    }

    void readsWhereTheServerListens()
    {
        for (const auto &[code, text, expected] : std::initializer_list<std::tuple<int, QString, QString>>{
                 {227, "Entering (10,0,0,5,4,1)."_s, "10.0.0.5:1025"_s},
                 {227, "1,1,1,1,256,0"_s, ""_s},
                 {227, "123456,1,1,1,1,255,255"_s, "1.1.1.1:65535"_s},
                 {227, "1,1,1,1,1,123456"_s, ""_s},
                 {229, "Extended (!!!65535!"_s, "::1:65535"_s},
                 {229, "(|||65536|)"_s, ""_s},
                 {200, "1,1,1,1,1,1 (|||6446|)"_s, ""_s}}) {
            const auto server = announcedEndpoint({code, text}, QHostAddress::LocalHostIPv6);
            QCOMPARE(server ? "%1:%2"_s.arg(server->host).arg(server->port) : ""_s, expected);
        }
        QCOMPARE(portLine(QHostAddress("1.20.255.4"_s), 65534), "PORT 1,20,255,4,255,254\r\n"_s);
        QCOMPARE(portLine(QHostAddress("fe80::1%eth0"_s), 256), "EPRT |2|fe80::1|256|\r\n"_s);
    }

    void readsListings()
    {
        QLocale::setDefault(QLocale(QLocale::German));
        const QString longest = "-rw------- 1 a b 1 Apr 14 2000 "_s + QString(993, QLatin1Char('n'));
        // name, octal permissions, owner, group, size, date, letters of types and of what anyone may do
        for (const auto &[line, expected] : std::initializer_list<QPair<QString, QString>>{
                 {"lrwxrwxrwx 1 a b 7 Apr  4  2000 a -> b"_s, "a 777 a b 7 2000-04-04T00:00:00 dlrwx"_s},
                 {"drwxr-xr-x 3 root staff 4096 Apr 14  2000 a -> b"_s,
                  "a -> b 755 root staff 4096 2000-04-14T00:00:00 drwx"_s},
                 {"---x--x--x 1 a b 5000000000 Mar  2 12:00 x y"_s,
                  "x y 111 a b 5000000000 2024-03-02T12:00:00 fx"_s},
                 {"--w-----w- 1 a b 1 mar  2 12:01 old"_s, "old 202 a b 1 2023-03-02T12:01:00 fw"_s},
                 {"-r--r----- 1 a b 1 Feb 29 10:15 leap"_s, "leap 440 a b 1 2024-02-29T10:15:00 fr"_s},
                 {"-rw------- 1 a b 1 Mrz 02 10:15 no month"_s, "no month 600 a b 1  frw"_s},
                 {"-rw------- 1 a b 1 Apr 14 2000   x \n"_s, "x  600 a b 1 2000-04-14T00:00:00 frw"_s},
                 {"-rw------- 1 a  1 Apr  4 2000 no group"_s, "no group 600 a  1 2000-04-04T00:00:00 frw"_s},
                 {"01-02-03  10:15AM       <DIR>          Images"_s, "Images 0   0 2003-01-02T10:15:00 d"_s},
                 {"12-31-70  11:59PM  12  a.LNK\r\n"_s, "a.LNK 0   12 2070-12-31T23:59:00 fl"_s},
                 {"12-31-71  11:59PM  12  b"_s, "b 0   12 1971-12-31T23:59:00 f"_s},
                 {" -rw------- 1 a b 1 Apr 14 2000 late"_s, "nothing"_s},
                 {"srwxr-xr-x 1 a b 1 Apr 14 2000 socket"_s, "nothing"_s},
                 {longest, longest.right(993) + " 600 a b 1 2000-04-14T00:00:00 frw"_s},
                 {longest + "n"_s, "nothing"_s}}) {
            const auto info = ftplisting::parseLine(line, QDateTime(QDate(2024, 3, 1), QTime(12, 0)));
            QCOMPARE(info ? described(*info) : "nothing"_s, expected);
        }
        QLocale::setDefault(QLocale::c());
        const auto parsed = [](const QString &of) { return ftplisting::parseLine(of).value_or(QUrlInfo()); };
        const QUrlInfo later = parsed("01-02-03  10:15AM 1 b"_s), larger = parsed("01-02-02  10:15AM 2 a"_s);
        QVERIFY(later == later && later != larger && QUrlInfo::lessThan(later, larger, QUrlInfo::BySize));
        QVERIFY(QUrlInfo::lessThan(larger, later, QUrlInfo::ByName));
        QVERIFY(QUrlInfo::lessThan(larger, later, QUrlInfo::ByDate));
    }

    void staysSmallUnderEndlessLines()
    {
        FtpReplyReader reader;
        const qint64 before = residentMemory();
        for (int part = 0; part < 6000; ++part, reader.next())
            reader.append(QByteArray("200 ").repeated(4096));
        QVERIFY(isSanitized || residentMemory() < before + 10000000);
        std::optional<FtpReply> reply;
        // In pieces, as a network may deliver it.
        for (const char *const piece : {"\r\n2", "20 Fi", "ne\r", "\n"}) {
            reader.append(piece);
            reply = reader.next();
        }
        QCOMPARE(reply.value_or(FtpReply()).text, "Fine"_s);
    }

    void survivesEveryStep_data()
    {
        QTest::addColumn<QByteArray>("words");
        QTest::addColumn<QByteArray>("actions");
        for (const char *const words :
             {"list get put raw close", "active list get put raw close", "put-file", "put-empty",
              "put-stream", "source-gone put-large", "get-full", "sink-gone get-file",
              "proxy connect-boat guest no-proxy", "cd remove put-closed"}) {
            for (const char *const actions :
                 {"loop", "loop-delete", "loop-later", "abort", "abort-close-later", "delete", "reset",
                  "abort,,delete", "reset-abort,delete"})
                QTest::addRow("slots do '%s' while the client does '%s'", actions, words)
                    << QByteArray(words) << QByteArray(actions);
        }
    }

    void survivesEveryStep()
    {
        QFETCH(QByteArray, words);
        QFETCH(QByteArray, actions);
        DisturbedSession undisturbed(words, actions);
        QVERIFY2(waitUntil([&] { return undisturbed.isOver(); }), qPrintable(undisturbed.outcome()));
        QVERIFY(undisturbed.steps > 10);
        for (int at = 0; at <= undisturbed.steps; at += at < 30 ? 1 : at / 2) {
            DisturbedSession session(words, actions, at);
            QVERIFY2(waitUntil([&] { return session.isOver(); }), qPrintable(session.outcome()));
            // To a server the end of the data is the end of the file.
            const bool isWhole = session.server.uploadedBytes == session.server.file.size();
            QVERIFY(isWhole || !session.endsBeforeAbort);
            QVERIFY(isWhole || words != "put-file" || !session.log.contains("finished 1"_s));
            if (actions == "loop")
                QCOMPARE(session.outcome(), undisturbed.outcome());
        }
    }
};

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
