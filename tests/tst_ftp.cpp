// What comes of commands, with servers of every kind, and what the client's parts make of lines.
#include "ftp/ftplisting.h"
#include "ftp/passivereply.h"
#include "ftp/replyreader.h"
#include "tests/support/files.h"
#include "tests/support/ftpsession.h"
#include "tests/support/rows.h"

#include <QBuffer>
#include <QElapsedTimer>
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
    const auto letterIf = [](bool isSo, QLatin1Char letter) { return isSo ? QString(letter) : QString(); };
    return "%1 %2 %3 %4 %5 %6 "_s.arg(info.name(), QString::number(info.permissions(), 8), info.owner(),
                                      info.group(), QString::number(info.size()),
                                      info.lastModified().toString(Qt::ISODate)) +
           letterIf(info.isDir(), QLatin1Char('d')) + letterIf(info.isFile(), QLatin1Char('f')) +
           letterIf(info.isSymLink(), QLatin1Char('l')) + letterIf(info.isReadable(), QLatin1Char('r')) +
           letterIf(info.isWritable(), QLatin1Char('w')) + letterIf(info.isExecutable(), QLatin1Char('x'));
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
        QVERIFY(!ftp.hasPendingCommands() && ftp.errorString() == "Unknown error"_s);
    }

    void runsCommands_data()
    {
        const QByteArray get = "TYPE I|SIZE f|PASV|RETR f", put = "TYPE I|PASV|ALLO 3|STOR f",
                         putLarge = "TYPE I|PASV|ALLO 33554432|STOR f", ofLarge = "of 33554432, ",
                         putEnded = "TYPE I|PASV|ALLO 10000000|STOR f|ABOR", ofMany = "of 10000000, ",
                         getFailed = "failed 1, done 1, Downloading file failed:\n",
                         putFailed = "failed 1, done 1, Uploading file failed:\n",
                         listFailed = "done 1, Listing directory failed:\n",
                         notFound = "done 1, Connecting to host failed:\n",
                         cutShort = "The data connection ended before all of the file ",
                         putCut = putFailed + cutShort + "was sent",
                         getCut = getFailed + cutShort + "had arrived",
                         noData = "Connection refused for data connection",
                         unreadable = "The file to upload cannot be read",
                         unwilling = "state 1, state 2, state 3, state 0, failed -1, " + notFound +
                                     "Connection refused to host 127.0.0.1";
        addRows<Dialogue>({
            {"commands without a transfer", "cd mkdir rmdir rename remove",
             "CWD update|MKD \xfc|RMD a %1|RNFR b|RNTO c|DELE d",
             "finished 1, finished 2, finished 3, finished 4, finished 5, done 0"},
            {"nothing can follow a close", "close cd", "QUIT",
             "state 5, state 0, finished 1, failed 2, done 1, Changing directory failed:\nNot connected"},
            {"the server refuses the folder", "mkdir cd", "MKD \xfc",
             "failed 1, done 1, Creating directory failed:\nNo", "MKD 550 No\r\n"},
            {"the server calls the folder superfluous", "rmdir cd", "RMD a %1",
             "failed 1, done 1, Removing directory failed:\nSo what", "RMD 202 So what\r\n"},
            {"the server refuses the password", "", "", "failed 0, done 1, Login failed:\nNo",
             "PASS 530 No\r\n"},
            {"the server needs no password", "raw", "USER kwz|SITE x", "raw Fine200, finished 1, done 0",
             "USER 230 Hello\r\n"},
            {"the server answers at length, with lines that are no replies in between", "raw", "SITE x",
             "raw w\r\n226 x\r\n22\r\ny\r\nz230, finished 1, done 0",
             "SITE 099 a\r\n600 a\r\n160 a\r\n1/0 a\r\n10: a\r\n10\r\n230-w\r\n226 x\r\n22\r\n"
             "230-y\r\n230 z\r\n"},
            {"through a proxy and then without", "proxy connect-boat guest no-proxy",
             "USER anonymous@boat.invalid:2121|PASS anonymous@",
             "finished 1, state 0, state 1, state 2, state 3, finished 2, state 4, finished 3, finished 4, "
             "done 0"},
            // Transfers that go well.
            {"an empty text", "put-empty", "TYPE A|PASV|ALLO 0|STOR f", "of 0, of 0, finished 1, done 0"},
            {"the server refuses the size", "get", get, "of 0, ready 5, finished 1, done 0",
             "SIZE 550 No\r\n"},
            {"the server answers without a size", "put get", put + '|' + get,
             "of 3, finished 1, ready 5, finished 2, done 0", "SIZE 200 Fine\r\n"},
            {"the server names a negative size", "get", get, "of 0, ready 5, finished 1, done 0",
             "SIZE 213 -7\r\n"},
            {"the server need not make room", "put", put, "of 3, finished 1, done 0", "ALLO 502 No\r\n"},
            {"more than 4 GiB, block by block", "put-huge", "TYPE I|PASV|ALLO 4294967301|STOR f",
             "of 4294967301, finished 1, done 0"},
            {"a stream that pauses, and a late last word", "late-last-word put-waiting", "TYPE I|PASV|STOR f",
             "of 0, finished 1, done 0"},
            {"the last word comes before most of the data", "dripping get", get,
             "of 5, ready 5, ready 6, finished 1, done 0"},
            {"the last word comes before the connection", "late-connection active get",
             "TYPE I|SIZE f|PORT|RETR f", "finished 1, of 5, ready 5, finished 2, done 0",
             "PORT 200 Fine\r\n"},
            {"the server connects", "active put", "TYPE I|PORT|ALLO 3|STOR f",
             "finished 1, of 3, finished 2, done 0"},
            {"a stranger connects before the server", "stranger active list", "TYPE A|PORT|LIST update",
             "finished 1, list x, finished 2, done 0"},
            {"IPv6", "list", "TYPE A|EPSV|LIST update", "list x, finished 1, done 0", {}, true},
            // Transfers that do not.
            {"IPv6 with a server that knows only PASV", "list", "TYPE A|EPSV|PASV",
             "failed 1, " + listFailed + noData, "EPSV 500 What?\r\n|PASV 227 (127,0,0,1,0,1)\r\n", true},
            {"IPv6 with a server that knows only PORT", "active list", "TYPE A|EPRT",
             "finished 1, failed 2, " + listFailed + noData, "EPRT 500 What?\r\n", true},
            {"the folder is missing", "no-folder list", "TYPE A|PASV|LIST update",
             "failed 1, " + listFailed + "x: No such file or directory\r\n"},
            {"the file is shorter than its size", "get", get, "of 5000000000, ready 5, " + getCut,
             "SIZE 213 5000000000\r\n"},
            {"the file is shorter, and no last word comes", "no-last-word get", get,
             "of 5000000000, ready 5, " + getCut, "SIZE 213 5000000000\r\n"},
            {"the disk is full", "get-full-disk", get + "|ABOR", "of 5, " + getFailed + "Disk full"},
            {"the sink vanishes", "get-sink-gone", get + "|ABOR",
             "of 5, " + getFailed + "The file to download into is gone"},
            {"there is no source", "put-closed", "", putFailed + "No such file or directory"},
            {"the source shrinks", "put-shrinking", putEnded, ofMany + putFailed + unreadable},
            {"the source fails", "put-failing", putEnded, ofMany + putFailed + unreadable},
            {"the source vanishes", "put-vanishing", putEnded, ofMany + putFailed + unreadable},
            {"the source vanishes before an upload", "put-gone", "TYPE I|PASV|ALLO 0|STOR f|ABOR",
             "of 0, " + putFailed + unreadable},
            {"an upload is cut off", "cut put-large", putLarge, ofLarge + putCut},
            {"an upload is cut off and called done", "cut put-large", putLarge, ofLarge + putCut,
             "STOR 150 Go\r\n226 Done\r\n"},
            {"an upload is cut off before it began", "cut-at-once put", put, "of 3, " + putCut,
             "STOR 150 Go\r\n226 Done\r\n"},
            {"the connection of an upload is reset", "reset put-large", putLarge, ofLarge + putCut,
             "ALLO 200 Fine\r\n"},
            {"the server names no port", "put", put, "of 3, " + putCut,
             "PASV 227 Nowhere\r\n|STOR 150 Go\r\n226 Done\r\n"},
            {"the server names a port instead of taking the data", "put", put, "of 3, " + putCut,
             "STOR 227 (127,0,0,1,0,1)\r\n"},
            {"the server's port is closed", "put", "TYPE I|PASV", "of 3, " + putFailed + noData,
             "PASV 227 (127,0,0,1,0,1)\r\n"},
            {"the server's port is deaf", "deaf-port put", "TYPE I|PASV", "of 3, " + putFailed + noData},
            {"the server never connects", "active list", "TYPE A|PORT|LIST update",
             "finished 1, failed 2, " + listFailed + noData, "PORT 200 Fine\r\n|LIST 150 Go\r\n"},
            {"the data has no end", "endless get", get,
             "of 5, ready 5, " + getFailed + "The data connection timed out"},
            {"the data has no end, and the server hangs up", "endless-lost get", get,
             "of 5, ready 5, state 0, " + getFailed + "Aborted"},
            // Aborts.
            {"a log-in is aborted too late", "abort-at-password cd", "ABOR", "done 0"},
            {"an upload is aborted", "put-abort", putEnded, ofMany + putFailed + "Cut off",
             "STOR 150 Go\r\n|ABOR 426 Cut off\r\n226 Aborted\r\n"},
            {"an upload is aborted and called done", "put-abort", putEnded, ofMany + putFailed + "Aborted",
             "STOR 150 Go\r\n|ABOR 226 Done\r\n225 Nothing\r\n"},
            {"no last word on an abort", "no-last-word put-abort", putEnded, ofMany + putFailed + "Aborted",
             "ABOR 150 Later\r\n"},
            // No connection.
            {"the server has too many clients", "cd", "", unwilling, " 421 Too many\r\n220 Ready\r\n"},
            {"the server hangs up at once", "hang-up cd", "", unwilling},
            {"the host has no server", "connect-closed", "",
             "state 0, state 1, state 2, state 0, failed 1, " + notFound +
                 "Connection refused to host 127.0.0.1"},
            {"the host is on no network", "connect-nowhere", "",
             "state 0, state 1, state 2, state 0, failed 1, " + notFound +
                 "Connection timed out to host 255.255.255.255"},
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
        session.server.bytewise = true;
        const QRegularExpression loggedIn(
            "^((state 0, )?state 1, state 2, state 3, finished -1, )?(state 4, finished 0, )?"_s),
            logInAndPorts(R"(USER kwz\|PASS secret\|?| 127,0,0,1,\d+,\d+(?=\||$)| \|2\|::1\|\d+\|)"_s);
        QElapsedTimer clock;
        clock.start();
        for (int round = 0; round < 20 && clock.elapsed() < 1000; ++round) {
            session.server.lines.clear();
            session.log.clear();
            // A failure leaves a connection as good as before.
            const bool isLoggedIn =
                session.ftp->error() != QFtp::NoError && session.ftp->state() == QFtp::LoggedIn && !row.ipv6;
            session.queue((isLoggedIn ? "login " : "connect login ") + row.words);
            QCOMPARE(session.log, QStringList());
            QVERIFY2(waitUntil([&] { return session.isDone(); }, 25 * longestWaitMs),
                     qPrintable(session.outcome()));
            const QString lines = QString::fromLatin1(session.server.lines.join('|'));
            QCOMPARE(QString(lines).remove(logInAndPorts), QString::fromLatin1(row.lines));
            if (session.ftp->error() != QFtp::NoError)
                session.log += session.ftp->errorString();
            QCOMPARE(session.outcome().remove(loggedIn), QString::fromLatin1(row.log));
        }
    }

    // What arrives while a slot runs an event loop waits in the system, but for a little.
    void holdsLittleWhileASlotRuns()
    {
        FtpSession session;
        session.ftp->setProperty("_q_networksession", 7);
        session.server.file.fill('a', 20000000);
        session.queue("connect login");
        QBuffer sink;
        QVERIFY(sink.open(QIODevice::WriteOnly));
        session.ftp->get("f"_s, &sink);
        session.step = [&](const QByteArray &signal) {
            if (signal != "progress")
                return;
            session.server.reply(session.server.file);
            for (const auto &[name, most] : {std::pair("QFtpPI_socket"_s, qint64(16384)),
                                             std::pair("QFtpDTP Passive state socket"_s, qint64(65536))}) {
                const auto *const socket = session.ftp->findChild<QTcpSocket *>(name);
                QTRY_COMPARE(socket->bytesAvailable(), most);
                QCOMPARE(socket->property("_q_networksession"), QVariant(7));
            }
            delete session.ftp;
        };
        QVERIFY(waitUntil([&] { return session.ftp.isNull(); }));
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
                 {"-r--r----- 1 a b 5000000000 Mar  2 10:15 x y"_s,
                  "x y 440 a b 5000000000 2024-03-02T10:15:00 fr"_s},
                 {"---x--x--x 1 a b 1 Mar  2 12:00 in a day"_s,
                  "in a day 111 a b 1 2024-03-02T12:00:00 fx"_s},
                 {"--w-----w- 1 a b 1 Mar  2 12:01 next day"_s,
                  "next day 202 a b 1 2023-03-02T12:01:00 fw"_s},
                 {"-rw------- 1 a b 1 may 14 10:15 last year"_s,
                  "last year 600 a b 1 2023-05-14T10:15:00 frw"_s},
                 {"-rw------- 1 a b 1 Feb 29 10:15 leap"_s, "leap 600 a b 1 2024-02-29T10:15:00 frw"_s},
                 {"-rw------- 1 a b 1 Mrz 02 10:15 no month"_s, "no month 600 a b 1  frw"_s},
                 {"-rw------- 1 a b 1 Apr  4 2000 early"_s, "early 600 a b 1 2000-04-04T00:00:00 frw"_s},
                 {"-rw------- 1 a b 1 Apr 14 2000   x \n"_s, "x  600 a b 1 2000-04-14T00:00:00 frw"_s},
                 {"-rw------- 1 a  1 Apr 14 2000 no group"_s, "no group 600 a  1 2000-04-14T00:00:00 frw"_s},
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
        const QUrlInfo later = *ftplisting::parseLine("01-02-03  10:15AM 1 b"_s),
                       larger = *ftplisting::parseLine("01-02-02  10:15AM 2 a"_s);
        QVERIFY(later == later && later != larger && QUrlInfo::lessThan(later, larger, QUrlInfo::BySize));
        QVERIFY(QUrlInfo::lessThan(larger, later, QUrlInfo::ByName));
        QVERIFY(QUrlInfo::lessThan(larger, later, QUrlInfo::ByDate));
    }

    // It once took time that grew with a power of their number.
    void rejectsBlanksInTime()
    {
        QElapsedTimer clock;
        clock.start();
        for (int blanks = 0; blanks < 1000; ++blanks)
            ftplisting::parseLine("drwxr-xr-x 1"_s + QString(blanks, QLatin1Char(' ')) +
                                  QString(1000 - blanks, QLatin1Char('1')));
        QVERIFY2(clock.elapsed() < longestWaitMs, qPrintable(QString::number(clock.elapsed())));
    }

    void staysSmallUnderEndlessLines()
    {
        FtpReplyReader reader;
        const QByteArray line = QByteArray("200 ").repeated(25000000);
        for (int at = 0; at < line.size(); at += 16384, reader.next())
            reader.append(line.mid(at, 16384));
        reader.append("\r\n220 Fine\r\n");
        QCOMPARE(reader.next().value().code, 220);
#ifndef __SANITIZE_ADDRESS__
        // At its peak this process held the line, and the reader little.
        const QRegularExpression peak(R"(VmHWM:\s+(\d+))"_s);
        QVERIFY(peak.match(QString::fromLatin1(contents("/proc/self/status"_s))).captured(1).toInt() <
                150000);
#endif
    }
};

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
