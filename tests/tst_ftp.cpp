#include "ftp/ftplisting.h"
#include "ftp/qftp.h"
#include "ftp/replyreader.h"
#include "tests/support/scriptedftpserver.h"

#include <QBuffer>
#include <QFile>
#include <QPointer>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr int bound = 10000;

// Writes down what a client signals; ids count from the client's first command.
class Recorder : public QObject
{
public:
    explicit Recorder(QFtp *ftp)
    {
        // Without a context object: signals out of a destructor would be heard as well.
        connect(ftp, &QFtp::stateChanged, [this](int state) { add("state %1", state); });
        connect(ftp, &QFtp::commandStarted, [this](int id) {
            if (firstId == 0)
                firstId = id;
            add("start %1", id - firstId + 1);
        });
        connect(ftp, &QFtp::commandFinished,
                [this](int id, bool error) { add(error ? "failed %1" : "finished %1", id - firstId + 1); });
        connect(ftp, &QFtp::done, [this](bool error) {
            ++doneCount;
            add("done %1", error);
        });
        connect(ftp, &QFtp::listInfo, [this](const QUrlInfo &info) { add("list %1", info.name()); });
        connect(ftp, &QFtp::readyRead, [this] { add("ready%1", QString()); });
        connect(ftp, &QFtp::rawCommandReply, [this](int code, const QString &) { add("raw %1", code); });
        connect(ftp, &QFtp::dataTransferProgress, [this](qint64 bytes, qint64 total) {
            progress += {bytes, total};
            step("progress");
        });
    }

    QString log() const { return entries.join(QLatin1String(", ")); }

    QStringList entries;
    QList<QPair<qint64, qint64>> progress;
    int doneCount = 0;
    std::function<void(const QByteArray &)> step = [](const QByteArray &) {};

private:
    template <typename Value>
    void add(const char *text, const Value &value)
    {
        entries += QString::fromLatin1(text).arg(value);
        step(entries.last().toLatin1());
    }

    int firstId = 0;
};

void logIn(QFtp *ftp, const ScriptedFtpServer &server)
{
    ftp->connectToHost(server.serverAddress().toString(), server.serverPort());
    ftp->login(QStringLiteral("kwz"), QStringLiteral("secret"));
}

// A device that makes its bytes, and tells of every read.
class MadeUpDevice : public QIODevice
{
public:
    explicit MadeUpDevice(qint64 bytes) : length(bytes) { open(ReadWrite | Unbuffered); }
    qint64 size() const override { return length; }
    bool isSequential() const override { return sequential; }
    bool atEnd() const override { return made >= length; }

    std::function<qint64(char *, qint64)> make;
    bool sequential = false;
    qint64 length;
    qint64 made = 0;

protected:
    qint64 readData(char *data, qint64 maxlen) override
    {
        const qint64 count = make ? make(data, maxlen) : std::min({maxlen, length - made, qint64(1) << 20});
        made += std::max<qint64>(count, 0);
        return count;
    }
    qint64 writeData(const char *, qint64) override
    {
        setErrorString(QStringLiteral("No space"));
        return -1;
    }
};

// 0 where a sanitizer keeps what was freed.
qint64 residentBytes()
{
#ifdef __SANITIZE_ADDRESS__
    return 0;
#endif
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    return statm.readAll().split(' ').value(1).toLongLong() * 4096;
}

} // namespace

class TestFtp : public QObject
{
    Q_OBJECT

private slots:
    void readsReplies_data();
    void readsReplies();
    void readsListings_data();
    void readsListings();
    void sendsTheLinesOfEachCommand_data();
    void sendsTheLinesOfEachCommand();
    void tellsHowCommandsFare_data();
    void tellsHowCommandsFare();
    void uploadsInBlocks();
    void endsWhenTheSourceFails_data();
    void endsWhenTheSourceFails();
    void countsBeyondFourGigabytes();
    void readsAllThatCameUnnoticed();
    void holdsTheLastReplyUntilTheDataIsThere();
    void staysSmallUnderEndlessLines();
    void survivesDeletionAtEveryStep_data();
    void survivesDeletionAtEveryStep();
    void survivesRandomServers();
};

void TestFtp::readsReplies_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("replies");
    const QByteArray tooLong(70000, 'x');
    const auto row = [](const char *name, const QByteArray &bytes, const QString &replies) {
        QTest::newRow(name) << bytes << replies.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    };
    row("one line", "220 Ready\r\n", QStringLiteral("220 Ready"));
    row("several lines", "230-Hello\r\n dear\r\n231 guest\r\n230-and\r\n230 bye\r\n",
        QStringLiteral("230 Hello\r\n dear\r\n231 guest\r\nand\r\nbye"));
    row("lines that are no replies", "\r\n22\r\n620 x\r\n260 x\r\n2a0 x\r\nhello\r\n220 Ready\n",
        QStringLiteral("220 Ready\n"));
    row("code alone opens a long reply", "220\r\n220 Ready\r\n", QStringLiteral("220 220\r\nReady"));
    row("too long a line", "220 " + tooLong + "\r\n331 next\r\n", QStringLiteral("331 next"));
    row("line of just the longest length", "220 " + tooLong.left(65536 - 6) + "\r\n",
        QLatin1String("220 ") + QString::fromLatin1(tooLong.left(65536 - 6)));
    row("too long a text", "220-" + tooLong.left(40000) + "\r\n" + tooLong.left(40000) + "\r\n220 end\r\n",
        QLatin1String("220 ") + QString::fromLatin1(tooLong.left(40000)) + QLatin1String("\r\nend"));
    row("no line end yet", "220 Ready", QString());
}

void TestFtp::readsReplies()
{
    QFETCH(QByteArray, bytes);
    FtpReplyReader reader;
    QStringList replies;
    for (const char byte : qAsConst(bytes)) {
        reader.append(QByteArray(1, byte));
        while (const auto reply = reader.next())
            replies += QString::number(100 * reply->digits[0] + 10 * reply->digits[1] + reply->digits[2]) +
                       QLatin1Char(' ') + reply->text;
    }
    QTEST(replies, "replies");
}

void TestFtp::readsListings_data()
{
    QTest::addColumn<QString>("line");
    // name, type letters, octal permissions, owner, group, size, date
    QTest::addColumn<QString>("entry");
    const auto row = [](const char *line, const char *entry) {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(entry);
    };
    row("drwxr-xr-x   3 root  staff  4096 Apr 14 2000 pub\r\n",
        "pub d 755 root staff 4096 2000-04-14T00:00:00");
    row("lrwxrwxrwx 1 a b 7 Apr  4  2000 a -> b", "a dl 777 a b 7 2000-04-04T00:00:00");
    row("-r--r----- 1 a b 5000000000 Mar  2 10:15 x y", "x y f 440 a b 5000000000 2024-03-02T10:15:00");
    row("-rw------- 1 a b 1 may 14 10:15 last year", "last year f 600 a b 1 2023-05-14T10:15:00");
    row("-rw------- 1 a b 1 Feb 29 10:15 leap", "leap f 600 a b 1 2024-02-29T10:15:00");
    row("-rw------- 1 a b 1 Mrz 02 10:15 no month", "no month f 600 a b 1 ");
    row("01-02-03  10:15AM       <DIR>          Images", "Images d 0   0 2003-01-02T10:15:00");
    row("12-31-99  01:05PM   12 a.lnk", "a.lnk fl 0   12 1999-12-31T13:05:00");
    row("total 12", "nothing");
    row("srwxr-xr-x 1 a b 1 Apr 14 2000 socket", "nothing");
}

void TestFtp::readsListings()
{
    QFETCH(QString, line);
    QLocale::setDefault(QLocale(QLocale::German));
    const auto info = ftplisting::parseLine(line, QDateTime(QDate(2024, 3, 1), QTime(12, 0)));
    QLocale::setDefault(QLocale::c());
    QString entry = QStringLiteral("nothing");
    if (info) {
        const QString types = QLatin1String(info->isDir() ? "d" : "") +
                              QLatin1String(info->isFile() ? "f" : "") +
                              QLatin1String(info->isSymLink() ? "l" : "");
        entry = QStringList{info->name(),
                            types,
                            QString::number(info->permissions(), 8),
                            info->owner(),
                            info->group(),
                            QString::number(info->size()),
                            info->lastModified().toString(Qt::ISODate)}
                    .join(QLatin1Char(' '));
    }
    QTEST(entry, "entry");
}

using Commands = std::function<void(QFtp *)>;
Q_DECLARE_METATYPE(Commands)

void TestFtp::sendsTheLinesOfEachCommand_data()
{
    QTest::addColumn<bool>("ipv6");
    QTest::addColumn<QByteArray>("refused");
    QTest::addColumn<Commands>("commands");
    QTest::addColumn<QByteArray>("lines");
    const auto row = [](const char *name, const Commands &commands, const char *lines, bool ipv6 = false,
                        const char *refused = "") {
        QTest::newRow(name) << ipv6 << QByteArray(refused) << commands << QByteArray(lines);
    };
    const auto file = QStringLiteral("f");
    row(
        "plain ones",
        [](QFtp *ftp) {
            ftp->cd(QStringLiteral("update"));
            ftp->remove(QStringLiteral("a %1"));
            ftp->mkdir(QStringLiteral("\u00fc"));
            ftp->rmdir(QStringLiteral("b"));
            ftp->rename(QStringLiteral("b"), QStringLiteral("c"));
            ftp->rawCommand(QStringLiteral(" SITE x \n"));
            ftp->close();
        },
        "CWD update|DELE a %1|MKD \xfc|RMD b|RNFR b|RNTO c|SITE x|QUIT|");
    const Commands transfers = [file](QFtp *ftp) {
        auto *device = new QBuffer(ftp);
        device->setData("abcde");
        ftp->list();
        ftp->get(file, nullptr, QFtp::Ascii);
        ftp->put(device, file);
        ftp->put("abc", file, QFtp::Ascii);
    };
    row("passive", transfers,
        "TYPE A|PASV|LIST|TYPE A|SIZE f|PASV|RETR f|TYPE I|PASV|ALLO 5|STOR f|TYPE A|PASV|ALLO 3|STOR f|");
    row("passive over IPv6", transfers,
        "TYPE A|EPSV|LIST|TYPE A|SIZE f|EPSV|RETR f|TYPE I|EPSV|ALLO 5|STOR f|TYPE A|EPSV|ALLO 3|STOR f|",
        true);
    const Commands active = [](QFtp *ftp) {
        ftp->setTransferMode(QFtp::Active);
        ftp->list(QStringLiteral("dir"));
        ftp->put("abc", QStringLiteral("g"));
    };
    row("active", active, "TYPE A|PORT *|LIST dir|TYPE I|PORT *|ALLO 3|STOR g|");
    row("active over IPv6", active, "TYPE A|EPRT *|LIST dir|TYPE I|EPRT *|ALLO 3|STOR g|", true);
    row(
        "no EPSV", [](QFtp *ftp) { ftp->list(); }, "TYPE A|EPSV|PASV|", true, "EPSV");
    row("no EPRT", active, "TYPE A|EPRT *|", true, "EPRT");
}

void TestFtp::sendsTheLinesOfEachCommand()
{
    QFETCH(bool, ipv6);
    QFETCH(QByteArray, refused);
    QFETCH(Commands, commands);
    ScriptedFtpServer server(ipv6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost);
    if (ipv6 && !server.isListening())
        QSKIP("this machine has no IPv6");
    server.file = "12345";
    server.listing = "-rw------- 1 a b 1 Apr 14 2000 x\r\n";
    if (!refused.isEmpty()) {
        server.answers[refused] = "500 What?\r\n";
        server.answers["PASV"] = "421 Enough\r\n";
    }
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    commands(&ftp);
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(recorder.entries.last(), QLatin1String(refused.isEmpty() ? "done 0" : "done 1"));
    QCOMPARE(server.lines.mid(0, 2), (QByteArrayList{"USER kwz\r\n", "PASS secret\r\n"}));
    QByteArray lines;
    for (const QByteArray &line : server.lines.mid(2)) {
        const bool namesPort = line.startsWith("PORT ") || line.startsWith("EPRT |2|::1|");
        lines += (namesPort ? line.left(5) + '*' : line.chopped(2)) + '|';
    }
    QTEST(lines, "lines");
}

void TestFtp::tellsHowCommandsFare_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<Commands>("commands");
    QTest::addColumn<QString>("log");
    QTest::addColumn<QString>("errorString");
    const auto row = [](const char *name, const char *verb, const char *answer, const Commands &commands,
                        const char *log, const char *errorString = "Unknown error") {
        QTest::newRow(name) << QByteArray(verb) << QByteArray(answer) << commands << QString::fromLatin1(log)
                            << QString::fromLatin1(errorString);
    };
    const auto name = QStringLiteral("f");
    const Commands put = [name](QFtp *ftp) {
        ftp->put("abc", name);
        ftp->close();
    };
    row(
        "a failure drops what waits", "CWD", "550 No such folder\r\n",
        [put](QFtp *ftp) {
            ftp->cd(QStringLiteral("x"));
            put(ftp);
        },
        "start 3, failed 3, done 1", "Changing directory failed:\nNo such folder");
    row(
        "superfluous is a failure", "MKD", "202 Had it\r\n", [name](QFtp *ftp) { ftp->mkdir(name); },
        "start 3, failed 3, done 1", "Creating directory failed:\nHad it");
    row("no room needed", "ALLO", "502 No\r\n", put,
        "start 3, finished 3, start 4, state 5, state 0, finished 4, done 0");
    row(
        "size unknown", "SIZE", "550 No\r\n", [name](QFtp *ftp) { ftp->get(name); },
        "start 3, ready, finished 3, done 0");
    row(
        "listing says it is missing", "", "220 Ready\r\n",
        [](QFtp *ftp) { ftp->list(QStringLiteral("missing")); }, "start 3, failed 3, done 1",
        "Listing directory failed:\nmissing: No such file or directory\r\n");
    row("data port closed", "PASV", "227 (127,0,0,1,0,1)\r\n", put, "start 3, failed 3, done 1",
        "Uploading file failed:\nConnection refused for data connection");
    row(
        "raw", "SITE", "227 (127,0,0,1,0,1)\r\n", [](QFtp *ftp) { ftp->rawCommand(QStringLiteral("SITE")); },
        "start 3, raw 227, finished 3, done 0");
    row(
        "already logged in", "USER", "230 Hello\r\n", [](QFtp *ftp) { ftp->setTransferMode(QFtp::Passive); },
        "start 3, finished 3, done 0");
}

void TestFtp::tellsHowCommandsFare()
{
    QFETCH(QByteArray, verb);
    QFETCH(QByteArray, answer);
    QFETCH(Commands, commands);
    ScriptedFtpServer server;
    server.bytewise = true;
    server.answers[verb] = answer;
    server.file = "12345";
    server.listing = "-rw------- 1 a b 1 Apr 14 2000 x\r\n";
    server.takeOver = [&](const QByteArray &) {
        if (!server.lines.isEmpty() && server.lines.last() == "LIST missing\r\n")
            server.listing = "missing: No such file or directory\r\n";
        return false;
    };
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    commands(&ftp);
    QCOMPARE(recorder.log(), QString());
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QFETCH(QString, log);
    QCOMPARE(recorder.log(),
             QStringLiteral("start 1, state 1, state 2, state 3, finished 1, start 2, state 4, "
                            "finished 2, ") +
                 log);
    QTEST(ftp.errorString(), "errorString");
    QCOMPARE(ftp.error() == QFtp::NoError, recorder.entries.last() == QLatin1String("done 0"));
}

void TestFtp::uploadsInBlocks()
{
    ScriptedFtpServer server;
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    ftp.put(QByteArray(), QStringLiteral("empty"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(recorder.progress.size(), 2);
    recorder.progress.clear();

    MadeUpDevice device(40000);
    QList<qint64> reads;
    device.make = [&](char *data, qint64 maxlen) {
        // The block before this one has left.
        reads += recorder.progress.last().first;
        const qint64 count = std::min(maxlen, device.length - device.made);
        std::fill_n(data, count, static_cast<char>('a' + reads.size()));
        return count;
    };
    ftp.put(&device, QStringLiteral("f"));
    server.takeOver = [&](const QByteArray &verb) {
        // What a server sends back is not for the source.
        if (verb == "ALLO")
            server.data->write("junk");
        return false;
    };
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 2, bound);
    QCOMPARE(device.errorString(), MadeUpDevice(0).errorString());
    QCOMPARE(reads, (QList<qint64>{0, 16384, 32768, 40000}));
    QCOMPARE(server.uploaded, QByteArray(16384, 'b') + QByteArray(16384, 'c') + QByteArray(7232, 'd'));
    for (const auto &progress : qAsConst(recorder.progress))
        QCOMPARE(progress.second, 40000);
    QCOMPARE(recorder.progress.last().first, 40000);
}

void TestFtp::endsWhenTheSourceFails_data()
{
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("shrinks") << false;
    QTest::newRow("fails") << false;
    QTest::newRow("has nothing though not at its end") << false;
    QTest::newRow("deleted") << false;
    QTest::newRow("cannot be opened") << false;
    QTest::newRow("sequential") << true;
    QTest::newRow("sequential, deleted while it is waited for") << false;
}

void TestFtp::endsWhenTheSourceFails()
{
    const QByteArray row = QTest::currentDataTag();
    ScriptedFtpServer server;
    QFtp ftp;
    Recorder recorder(&ftp);
    QPointer<MadeUpDevice> source = new MadeUpDevice(1000000);
    source->sequential = row.startsWith("sequential");
    source->make = [&](char *, qint64 maxlen) -> qint64 {
        if (source->made < 100000)
            return maxlen;
        if (row == "fails")
            return -1;
        if (row == "shrinks")
            source->length = source->made;
        else if (row == "deleted")
            source->deleteLater();
        else if (row == "sequential")
            QTimer::singleShot(0, source, [&] {
                source->make = [](char *, qint64) -> qint64 { return -1; };
                emit source->readChannelFinished();
            });
        else if (source->sequential)
            source->deleteLater();
        return row == "deleted" ? maxlen : 0;
    };
    QFile unreadable(QStringLiteral("/nowhere/at/all"));
    logIn(&ftp, server);
    ftp.put(row == "cannot be opened" ? static_cast<QIODevice *>(&unreadable) : source, QStringLiteral("f"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QTEST(recorder.entries.last() == QLatin1String("done 0"), "succeeds");
    // The connection is as good as before.
    ftp.put("abc", QStringLiteral("g"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 2, bound);
    QCOMPARE(server.uploaded, QByteArray("abc"));
    delete source;
}

void TestFtp::countsBeyondFourGigabytes()
{
    constexpr qint64 size = (qint64(1) << 32) + 5;
    ScriptedFtpServer server;
    server.keepsUploads = false;
    server.answers["SIZE"] = "213 " + QByteArray::number(size) + "\r\n";
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    ftp.get(QStringLiteral("f"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(recorder.progress.last(), qMakePair(qint64(0), size));

    const qint64 before = residentBytes();
    MadeUpDevice device(size);
    ftp.put(&device, QStringLiteral("f"));
    qint64 lastDone = 0;
    recorder.step = [&](const QByteArray &) {
        for (const auto &progress : qAsConst(recorder.progress))
            QVERIFY(progress.first >= std::exchange(lastDone, progress.first) && progress.second == size);
        recorder.progress.clear();
    };
    recorder.progress.clear();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 2, 12 * bound);
    QVERIFY(server.lines.contains("ALLO " + QByteArray::number(size) + "\r\n"));
    QCOMPARE(lastDone, size);
    QCOMPARE(server.uploadedBytes, size);
    QVERIFY(residentBytes() - before < 32 * 1024 * 1024);
}

void TestFtp::readsAllThatCameUnnoticed()
{
    ScriptedFtpServer server;
    QFtp ftp;
    Recorder recorder(&ftp);
    QBuffer sink;
    QVERIFY(sink.open(QIODevice::WriteOnly));
    logIn(&ftp, server);
    ftp.setTransferMode(QFtp::Active);
    ftp.get(QStringLiteral("f"), &sink);
    server.takeOver = [&](const QByteArray &verb) {
        if (verb == "RETR") {
            // All of it is there before the client hears of the connection.
            if (!server.data->waitForConnected(bound))
                return false;
            server.data->write("first ");
            server.data->flush();
            server.reply("150 Go\r\n226 Done\r\n");
        }
        return verb == "RETR";
    };
    bool nested = false;
    recorder.step = [&](const QByteArray &name) {
        if (name != "progress" || recorder.progress.last().first == 0 || std::exchange(nested, true))
            return;
        server.data->write("last");
        server.endData();
        QTRY_VERIFY_WITH_TIMEOUT(!server.data, bound);
    };
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(sink.data(), QByteArray("first last"));
}

void TestFtp::holdsTheLastReplyUntilTheDataIsThere()
{
    ScriptedFtpServer server;
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    server.takeOver = [&](const QByteArray &verb) {
        if (verb == "RETR") {
            server.data->write("first ");
            server.reply("150 Go\r\n226 Done\r\n200 Unasked\r\n");
        }
        return verb == "RETR";
    };
    ftp.get(QStringLiteral("f"));
    QTRY_VERIFY_WITH_TIMEOUT(recorder.entries.contains(QLatin1String("ready")), bound);
    QTest::qWait(0);
    QCOMPARE(recorder.doneCount, 0);
    server.data->write("last");
    server.endData();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(ftp.readAll(), QByteArray("first last"));
}

void TestFtp::staysSmallUnderEndlessLines()
{
    constexpr int flood = 100000000;
    const QByteArray piece(65536, 'x');
    ScriptedFtpServer server;
    const auto feed = [&](QTcpSocket *socket, const QByteArray &end) {
        auto sent = std::make_shared<qint64>(0);
        connect(socket, &QTcpSocket::bytesWritten, this, [&piece, sent, socket, end] {
            if (socket->bytesToWrite() > 0 || *sent >= flood)
                return;
            *sent += socket->write(piece);
            if (*sent >= flood)
                socket->write(end);
        });
        socket->write(piece);
    };
    server.takeOver = [&](const QByteArray &verb) {
        if (verb == "SITE")
            feed(server.control, "\r\n200 Fine\r\n");
        if (verb == "LIST")
            feed(server.data, "\r\n-rw------- 1 a b 1 Apr 14 2000 x\r\n");
        return verb == "SITE";
    };
    server.answers["LIST"] = "150 Go\r\n226 Done\r\n";
    QFtp ftp;
    Recorder recorder(&ftp);
    connect(&ftp, &QFtp::listInfo, this, [&] { server.endData(); });
    logIn(&ftp, server);
    const qint64 before = residentBytes();
    ftp.rawCommand(QStringLiteral("SITE"));
    ftp.list();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, 6 * bound);
    QVERIFY(
        recorder.log().endsWith(QLatin1String("raw 200, finished 3, start 4, list x, finished 4, done 0")));
    QVERIFY(residentBytes() - before < 16 * 1024 * 1024);
}

void TestFtp::survivesDeletionAtEveryStep_data()
{
    QTest::addColumn<bool>("later");
    QTest::addColumn<bool>("active");
    QTest::addColumn<QByteArray>("abortAt");
    for (const bool later : {false, true}) {
        const QByteArray how = later ? "later, " : "at once, ";
        QTest::newRow((how + "passive").constData()) << later << false << QByteArray("never");
        QTest::newRow((how + "active").constData()) << later << true << QByteArray("never");
        QTest::newRow((how + "aborted upload").constData()) << later << false << QByteArray("STOR");
        QTest::newRow((how + "aborted download").constData()) << later << false << QByteArray("RETR");
    }
}

void TestFtp::survivesDeletionAtEveryStep()
{
    QFETCH(bool, later);
    QFETCH(bool, active);
    QFETCH(QByteArray, abortAt);
    int killAt = 0;
    for (bool killed = true; killed; ++killAt) {
        killed = false;
        ScriptedFtpServer server;
        server.file = QByteArray(100000, 'a');
        server.listing = "-rw------- 1 a b 1 Apr 14 2000 x\r\n";
        QPointer<QFtp> ftp = new QFtp;
        Recorder recorder(ftp);
        int steps = 0;
        recorder.step = [&](const QByteArray &name) {
            if (name == abortAt)
                ftp->abort();
            if (steps++ != killAt || killed)
                return;
            killed = true;
            if (later) {
                ftp->deleteLater();
                return;
            }
            const int signalsBefore = recorder.entries.size() + recorder.progress.size();
            delete ftp;
            QCOMPARE(recorder.entries.size() + recorder.progress.size(), signalsBefore);
        };
        server.takeOver = [&](const QByteArray &verb) {
            if (ftp)
                recorder.step(verb);
            return false;
        };
        auto *file = new MadeUpDevice(40000);
        file->setParent(ftp);
        if (active)
            ftp->setTransferMode(QFtp::Active);
        ftp->connectToHost(QStringLiteral("localhost"), server.serverPort());
        ftp->login();
        ftp->list();
        ftp->put(file, QStringLiteral("f"));
        ftp->get(QStringLiteral("f"));
        ftp->rawCommand(QStringLiteral("NOOP"));
        ftp->close();
        QTRY_VERIFY2_WITH_TIMEOUT(!ftp || (!killed && recorder.doneCount == 1), qPrintable(recorder.log()),
                                  bound);
        QTRY_VERIFY_WITH_TIMEOUT(!killed || !server.control ||
                                     server.control->state() == QAbstractSocket::UnconnectedState,
                                 bound);
        delete ftp;
    }
    QVERIFY(killAt > 20);
}

void TestFtp::survivesRandomServers()
{
    const uint seed = qEnvironmentVariable("KELVORA_SEED", QStringLiteral("1")).toUInt();
    for (uint session = 0; session < 2000; ++session) {
        QRandomGenerator random(seed * 10000 + session);
        const auto dice = [&random](uint sides) { return random.bounded(sides); };
        ScriptedFtpServer server;
        server.file = QByteArray(static_cast<int>(dice(100000)), 'a');
        server.listing = "-rw------- 1 a b 1 Apr 14 2000 x\r\nx: No such file or directory\r\n";
        server.bytewise = dice(4) == 0;
        QBuffer device;
        device.setData(server.file);
        QPointer<QFtp> ftp = new QFtp;
        Recorder recorder(ftp);
        const uint nastiness = 10 + dice(200);
        const auto misbehave = [&](const QByteArray &) {
            QByteArray noise;
            for (uint i = dice(200); i > 0; --i)
                noise += static_cast<char>(dice(3) ? "0123456 -\r\n(|,"[dice(14)] : dice(256));
            switch (dice(nastiness)) {
            case 0:
                server.reply(noise);
                return true;
            case 1:
                server.reply(noise + "\r\n");
                return false;
            case 2:
                server.reply(QByteArray::number(100 + dice(500)) + " odd\r\n");
                return dice(2) == 0;
            case 3:
                server.reply(dice(2) ? "226 early\r\n" : server.passiveReply());
                return false;
            case 4:
                dice(2) ? server.control->abort() : server.control->disconnectFromHost();
                return true;
            case 5:
                server.endData(dice(2) == 0);
                return false;
            case 6:
                server.reply("227 (127,0,0,1,0,1)\r\n");
                return true;
            case 7:
                return true;
            default:
                return false;
            }
        };
        server.takeOver = misbehave;
        const uint killAt = dice(200);
        const uint abortAt = dice(200);
        uint steps = 0;
        QString broken;
        QString running;
        recorder.step = [&](const QByteArray &name) {
            const QString id = QString::fromLatin1(name).section(QLatin1Char(' '), 1);
            const bool starts = name.startsWith("start ");
            const bool ends = name.startsWith("finished ") || name.startsWith("failed ");
            if (starts                     ? !running.isEmpty()
                : ends                     ? running != id
                : name.startsWith("done ") ? !running.isEmpty() || ftp->currentId() != 0
                                           : !name.startsWith("state ") && running.isEmpty())
                broken = recorder.log() + QLatin1String(", ") + QString::fromLatin1(name);
            if (starts || ends)
                running = starts ? id : QString();
            if (++steps == killAt)
                dice(2) ? ftp->deleteLater() : delete ftp;
            else if (steps == abortAt)
                ftp->abort();
        };
        logIn(ftp, server);
        for (uint i = dice(6); ftp && i > 0; --i) {
            const Commands all[] = {
                [&](QFtp *client) { client->put(&device, QStringLiteral("f")); },
                [](QFtp *client) { client->get(QStringLiteral("f")); },
                [](QFtp *client) { client->list(); },
                [](QFtp *client) { client->setTransferMode(QFtp::Active); },
                [](QFtp *client) { client->rawCommand(QStringLiteral("HELP")); },
                [&](QFtp *client) {
                    client->close();
                    logIn(client, server);
                },
            };
            all[dice(6)](ftp);
        }
        // A server that fell silent leaves the client waiting for good.
        QTimer silence;
        silence.setSingleShot(true);
        for (uint before = steps; ftp && recorder.doneCount == 0; before = steps) {
            silence.start(3);
            while (ftp && steps == before && silence.isActive())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (steps == before)
                break;
        }
        delete ftp;
        QVERIFY2(broken.isEmpty(), qPrintable(QStringLiteral("session %1: %2").arg(session).arg(broken)));
    }
}

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
