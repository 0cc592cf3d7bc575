#include "ftp/ftplisting.h"
#include "ftp/qftp.h"
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
        // clazy:excludeall=connect-3arg-lambda
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
        connect(ftp, &QFtp::dataTransferProgress, [this](qint64 bytes, qint64 total) {
            ++progressCount;
            progress = {bytes, total};
            step("progress");
        });
        connect(ftp, &QFtp::readyRead, [this] { add("ready of %1", progress.second); });
        connect(ftp, &QFtp::rawCommandReply,
                [this](int code, const QString &text) { add("raw %1", text + QString::number(code)); });
    }

    QString log() const { return entries.join(QLatin1String(", ")); }

    QStringList entries;
    QPair<qint64, qint64> progress;
    int progressCount = 0;
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
    explicit MadeUpDevice(qint64 bytes) : length(bytes) { open(ReadOnly | Unbuffered); }
    qint64 size() const override { return length; }

    std::function<qint64(qint64)> make = [](qint64 count) { return count; };
    qint64 length;
    qint64 made = 0;

protected:
    qint64 readData(char * /*data*/, qint64 maxlen) override
    {
        const qint64 count = make(std::min(maxlen, length - made));
        made += std::max<qint64>(count, 0);
        return count;
    }
    qint64 writeData(const char * /*data*/, qint64 /*len*/) override { return -1; }
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
    void runsCommands_data();
    void runsCommands();
    void readsListings_data();
    void readsListings();
    void endsWhenTheSourceFails_data();
    void endsWhenTheSourceFails();
    void uploadsBeyondFourGigabytes();
    void waitsForTheLastData();
    void staysSmallUnderEndlessLines();
    void survivesAnEndAtEveryStep_data();
    void survivesAnEndAtEveryStep();
    void survivesRandomServers();
};

using Commands = std::function<void(QFtp *)>;
Q_DECLARE_METATYPE(Commands)

void TestFtp::runsCommands_data()
{
    QTest::addColumn<bool>("ipv6");
    QTest::addColumn<QByteArray>("answered"); // a verb and what the server says to it
    QTest::addColumn<Commands>("commands");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("log");
    const auto row = [](const char *answered, const Commands &commands, const char *lines, const char *log,
                        bool ipv6 = false) {
        QTest::addRow("%s %.8s", lines, answered)
            << ipv6 << QByteArray(answered) << commands << QByteArray(lines) << QString::fromLatin1(log);
    };
    const auto name = QStringLiteral("f");
    const Commands list = [](QFtp *ftp) { ftp->list(); };
    const Commands get = [name](QFtp *ftp) { ftp->get(name); };
    const Commands put = [name](QFtp *ftp) { ftp->put("abc", name); };
    const Commands active = [list, put](QFtp *ftp) {
        ftp->setTransferMode(QFtp::Active);
        list(ftp);
        put(ftp);
    };
    const Commands plain = [](QFtp *ftp) {
        ftp->cd(QStringLiteral("update"));
        ftp->remove(QStringLiteral("a %1"));
        ftp->mkdir(QStringLiteral("\u00fc"));
        ftp->rmdir(QStringLiteral("b"));
        ftp->rename(QStringLiteral("b"), QStringLiteral("c"));
        ftp->close();
    };
    row("", plain, "CWD update|DELE a %1|MKD \xfc|RMD b|RNFR b|RNTO c|QUIT|",
        "start 3, finished 3, start 4, finished 4, start 5, finished 5, start 6, finished 6, start 7, "
        "finished 7, start 8, state 5, state 0, finished 8, done 0");
    row("CWD 550 No folder\r\n", plain, "CWD update|",
        "start 3, failed 3, done 1, Changing directory failed:\nNo folder");
    row("", get, "TYPE I|SIZE f|PASV|RETR f|", "start 3, ready of 5, finished 3, done 0");
    row("SIZE 550 No\r\n", get, "TYPE I|SIZE f|PASV|RETR f|", "start 3, ready of 0, finished 3, done 0");
    row(
        "SIZE 200 Fine\r\n", [put, get](QFtp *ftp) { put(ftp), get(ftp); },
        "TYPE I|PASV|ALLO 3|STOR f|TYPE I|SIZE f|PASV|RETR f|",
        "start 3, finished 3, start 4, ready of 0, finished 4, done 0");
    row("ALLO 502 No\r\n", put, "TYPE I|PASV|ALLO 3|STOR f|", "start 3, finished 3, done 0");
    row("PASV 227 (127,0,0,1,0,1)\r\n", put, "TYPE I|PASV|",
        "start 3, failed 3, done 1, Uploading file failed:\nConnection refused for data connection");
    row("", active, "TYPE A|PORT *|LIST|TYPE I|PORT *|ALLO 3|STOR f|",
        "start 3, finished 3, start 4, list x, finished 4, start 5, finished 5, done 0");
    row("EPSV 500 What?\r\n", list, "TYPE A|EPSV|PASV|LIST|", "start 3, list x, finished 3, done 0", true);
    row("USER 230 Hello\r\n", get, "USER kwz|TYPE I|SIZE f|PASV|RETR f|",
        "start 3, ready of 5, finished 3, done 0");
    row(
        "SITE 227-(127,0,0,1,0,1)\r\n226 x\r\n227-y\r\n227 z\r\n",
        [](QFtp *ftp) { ftp->rawCommand(QStringLiteral(" SITE x \n")); }, "SITE x|",
        "start 3, raw (127,0,0,1,0,1)\r\n226 x\r\ny\r\nz227, finished 3, done 0");
}

void TestFtp::runsCommands()
{
    QFETCH(bool, ipv6);
    QFETCH(QByteArray, answered);
    QFETCH(Commands, commands);
    ScriptedFtpServer server(ipv6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost);
    if (ipv6 && !server.isListening())
        QSKIP("this machine has no IPv6");
    server.bytewise = true;
    if (!answered.isEmpty())
        server.answers[answered.left(4).trimmed()] = answered.mid(answered.indexOf(' ') + 1);
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    commands(&ftp);
    QCOMPARE(recorder.log(), QString());
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QByteArray lines;
    for (const QByteArray &line : qAsConst(server.lines))
        lines += (line.startsWith("PORT ") ? "PORT *" : line.chopped(2)) + '|';
    QTEST(lines.replace("USER kwz|PASS secret|", ""), "lines");
    QString log = recorder.log().remove(
        QStringLiteral("start 1, state 1, state 2, state 3, finished 1, start 2, state 4, finished 2, "));
    if (ftp.error() != QFtp::NoError)
        log += QLatin1String(", ") + ftp.errorString();
    QTEST(log, "log");
}

void TestFtp::readsListings_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("entry");
    // name, octal permissions, owner, group, size, date, type letters
    const auto row = [](const char *line, const char *entry) {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(entry);
    };
    row("lrwxrwxrwx 1 a b 7 Apr  4  2000 a -> b", "a 777 a b 7 2000-04-04T00:00:00 dl");
    row("-r--r----- 1 a b 5000000000 Mar  2 10:15 x y", "x y 440 a b 5000000000 2024-03-02T10:15:00 f");
    row("-rw------- 1 a b 1 may 14 10:15 last year", "last year 600 a b 1 2023-05-14T10:15:00 f");
    row("-rw------- 1 a b 1 Feb 29 10:15 leap", "leap 600 a b 1 2024-02-29T10:15:00 f");
    row("-rw------- 1 a b 1 Mrz 02 10:15 no month", "no month 600 a b 1  f");
    row("01-02-03  10:15AM       <DIR>          Images", "Images 0   0 2003-01-02T10:15:00 d");
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
        entry = QStringLiteral("%1 %2 %3 %4 %5 %6")
                    .arg(info->name(), QString::number(info->permissions(), 8), info->owner(), info->group(),
                         QString::number(info->size()), info->lastModified().toString(Qt::ISODate));
        entry += QLatin1String(info->isDir() ? " d" : " f") + QLatin1String(info->isSymLink() ? "l" : "");
    }
    QTEST(entry, "entry");
}

void TestFtp::endsWhenTheSourceFails_data()
{
    QTest::addColumn<qint64>("lastRead");
    QTest::newRow("shrinks") << qint64(0);
    QTest::newRow("fails") << qint64(-1);
    QTest::newRow("deleted") << qint64(1);
}

void TestFtp::endsWhenTheSourceFails()
{
    QFETCH(qint64, lastRead);
    ScriptedFtpServer server;
    QFtp ftp;
    Recorder recorder(&ftp);
    auto *source = new MadeUpDevice(10000000);
    source->setParent(&server);
    source->make = [=](qint64 count) {
        if (source->made < 100000)
            return count;
        if (lastRead > 0)
            source->deleteLater();
        return lastRead;
    };
    logIn(&ftp, server);
    ftp.put(source, QStringLiteral("f"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(recorder.entries.last(), QStringLiteral("done 1"));
    // The connection is as good as before.
    ftp.put("abc", QStringLiteral("g"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 2, bound);
    QCOMPARE(server.uploadedBytes, 3);
}

void TestFtp::uploadsBeyondFourGigabytes()
{
    constexpr qint64 size = (qint64(1) << 32) + 5;
    ScriptedFtpServer server;
    QFtp ftp;
    Recorder recorder(&ftp);
    MadeUpDevice device(size);
    bool isPaced = true;
    device.make = [&](qint64 count) {
        // The block before this one has left.
        isPaced = isPaced && count <= 16384 && recorder.progress == qMakePair(device.made, size);
        return count;
    };
    logIn(&ftp, server);
    ftp.put(&device, QStringLiteral("f"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, 12 * bound);
    QVERIFY(server.lines.contains("ALLO " + QByteArray::number(size) + "\r\n"));
    QVERIFY(isPaced);
    QCOMPARE(recorder.progress, qMakePair(size, size));
    QCOMPARE(server.uploadedBytes, size);
}

void TestFtp::waitsForTheLastData()
{
    ScriptedFtpServer server;
    server.answers["PORT"] = "200 Fine\r\n";
    QFtp ftp;
    Recorder recorder(&ftp);
    QBuffer sink;
    QVERIFY(sink.open(QIODevice::WriteOnly));
    server.takeOver = [&](const QByteArray &verb) {
        if (verb != "RETR")
            return false;
        // The client hears of the last reply before it hears of the connection.
        server.openActive(server.lines.at(server.lines.size() - 2).mid(5).trimmed());
        server.data->waitForConnected(bound);
        server.data->write("first ");
        server.data->flush();
        server.reply("150 Go\r\n226 Done\r\n200 Unasked\r\n");
        return true;
    };
    logIn(&ftp, server);
    ftp.setTransferMode(QFtp::Active);
    ftp.get(QStringLiteral("f"), &sink);
    QTRY_COMPARE_WITH_TIMEOUT(sink.data(), QByteArray("first "), bound);
    QTest::qWait(0);
    QCOMPARE(recorder.doneCount, 0);
    server.data->write("last");
    server.endData();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, bound);
    QCOMPARE(sink.data(), QByteArray("first last"));
}

void TestFtp::staysSmallUnderEndlessLines()
{
    ScriptedFtpServer server;
    int piecesLeft = 1500;
    const auto feed = [&] {
        if (server.control->bytesToWrite() == 0 && piecesLeft > 0)
            server.control->write(--piecesLeft > 0 ? QByteArray(65536, 'x') : "\r\n200 Fine\r\n");
    };
    server.takeOver = [&](const QByteArray &verb) {
        if (verb != "SITE")
            return false;
        connect(server.control, &QTcpSocket::bytesWritten, this, feed);
        feed();
        return true;
    };
    QFtp ftp;
    Recorder recorder(&ftp);
    logIn(&ftp, server);
    const qint64 before = residentBytes();
    ftp.rawCommand(QStringLiteral("SITE"));
    QTRY_COMPARE_WITH_TIMEOUT(recorder.doneCount, 1, 6 * bound);
    QCOMPARE(recorder.entries.last(), QStringLiteral("done 0"));
    QCOMPARE(piecesLeft, 0);
    QVERIFY(residentBytes() - before < qint64(16) * 1024 * 1024);
}

void TestFtp::survivesAnEndAtEveryStep_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QFtp::TransferMode>("mode");
    QTest::addColumn<QByteArray>("abortAt");
    const auto row = [](const char *end, QFtp::TransferMode mode, const char *abortAt) {
        QTest::addRow("%s %d %s", end, mode, abortAt) << QByteArray(end) << mode << QByteArray(abortAt);
    };
    row("delete", QFtp::Passive, "never");
    row("delete", QFtp::Active, "never");
    row("delete", QFtp::Passive, "STOR");
    row("delete", QFtp::Passive, "RETR");
    row("delete", QFtp::Passive, "NOOP");
    row("delete later", QFtp::Active, "never");
    row("reset", QFtp::Passive, "never");
}

void TestFtp::survivesAnEndAtEveryStep()
{
    QFETCH(QByteArray, end);
    QFETCH(QFtp::TransferMode, mode);
    QFETCH(QByteArray, abortAt);
    int endAt = 0;
    for (bool ended = true; ended; ++endAt) {
        ended = false;
        ScriptedFtpServer server;
        server.file = QByteArray(100000, 'a');
        QPointer<QFtp> ftp = new QFtp;
        Recorder recorder(ftp);
        int steps = 0;
        recorder.step = [&](const QByteArray &) {
            if (steps++ != endAt || ended)
                return;
            ended = true;
            const int signalsBefore = recorder.entries.size() + recorder.progressCount;
            if (end == "delete later")
                ftp->deleteLater();
            else if (end == "delete")
                delete ftp;
            else if (server.control)
                server.control->abort();
            QCOMPARE(recorder.entries.size() + recorder.progressCount, signalsBefore);
        };
        server.takeOver = [&](const QByteArray &verb) {
            if (verb == abortAt && verb == "NOOP") {
                // The client hears of the reset when it writes.
                server.control->abort();
                auto *socket = ftp->findChild<QTcpSocket *>(QStringLiteral("QFtpPI_socket"));
                socket->write("\r\n");
                socket->flush();
            }
            if (ftp && verb == abortAt)
                ftp->abort();
            if (ftp)
                recorder.step(verb);
            return server.control == nullptr || server.control->state() != QAbstractSocket::ConnectedState;
        };
        auto *file = new MadeUpDevice(40000);
        file->setParent(ftp);
        ftp->setTransferMode(mode);
        ftp->connectToHost(QStringLiteral("localhost"), server.serverPort());
        ftp->login();
        ftp->list();
        ftp->put(file, QStringLiteral("f"));
        ftp->get(QStringLiteral("f"));
        ftp->rawCommand(QStringLiteral("NOOP"));
        ftp->close();
        const auto isOver = [&] {
            const bool stopped =
                recorder.doneCount == 1 || recorder.entries.contains(QLatin1String("state 0"));
            return ftp == nullptr || (stopped && (!ended || end == "reset"));
        };
        QTRY_VERIFY2_WITH_TIMEOUT(isOver(), qPrintable(recorder.log()), bound);
        QTRY_VERIFY_WITH_TIMEOUT(
            ftp || !server.control || server.control->state() == QAbstractSocket::UnconnectedState, bound);
        delete ftp;
    }
    QVERIFY(endAt > 20);
}

void TestFtp::survivesRandomServers()
{
    const uint seed = qEnvironmentVariable("KELVORA_SEED", QStringLiteral("1")).toUInt();
    for (uint session = 0; session < 2000; ++session) {
        QRandomGenerator random(seed * 10000 + session);
        const auto dice = [&random](uint sides) { return random.bounded(sides); };
        ScriptedFtpServer server;
        server.file = QByteArray(static_cast<int>(dice(100000)), 'a');
        server.bytewise = dice(4) == 0;
        QBuffer device;
        device.setData(server.file);
        QPointer<QFtp> ftp = new QFtp;
        Recorder recorder(ftp);
        const uint nastiness = 10 + dice(200);
        server.takeOver = [&](const QByteArray &) {
            QByteArray noise;
            for (uint i = dice(200); i > 0; --i)
                noise += static_cast<char>(dice(3) != 0 ? "0123456 -\r\n(|,"[dice(14)] : dice(256));
            const uint kind = dice(nastiness);
            if (kind == 0)
                server.reply(noise);
            else if (kind == 1)
                server.reply(QByteArray::number(100 + dice(500)) + " odd\r\n");
            else if (kind == 2)
                server.reply("227 (127,0,0,1,0,1)\r\n");
            else if (kind == 3)
                server.reply("226 early\r\n");
            else if (kind == 4)
                server.control->abort();
            else if (kind == 5)
                server.control->disconnectFromHost();
            else if (kind == 6)
                server.endData(dice(2) == 0);
            return kind < 8 && dice(2) == 0;
        };
        const uint killAt = dice(200);
        const uint abortAt = dice(200);
        uint steps = 0;
        QString broken;
        QString running;
        // Every other signal comes between a command's start and its end.
        recorder.step = [&](const QByteArray &name) {
            const QString id = QString::fromLatin1(name).section(QLatin1Char(' '), 1);
            const bool starts = name.startsWith("start ");
            const bool ends = name.startsWith("finished ") || name.startsWith("failed ");
            const bool isOutside = starts || name.startsWith("done ");
            if (ends ? running != id : !name.startsWith("state ") && running.isEmpty() != isOutside)
                broken = recorder.log() + QLatin1String(", ") + QString::fromLatin1(name);
            if (starts || ends)
                running = starts ? id : QString();
            if (++steps == killAt)
                dice(2) != 0 ? ftp->deleteLater() : delete ftp;
            else if (steps == abortAt)
                ftp->abort();
        };
        logIn(ftp, server);
        const Commands all[] = {[&](QFtp *client) { client->put(&device, QStringLiteral("f")); },
                                [](QFtp *client) { client->get(QStringLiteral("f")); },
                                [](QFtp *client) { client->list(); },
                                [](QFtp *client) { client->setTransferMode(QFtp::Active); },
                                [](QFtp *client) { client->rawCommand(QStringLiteral("HELP")); },
                                [](QFtp *client) { client->close(); },
                                [&](QFtp *client) { logIn(client, server); }};
        for (uint i = dice(6); i > 0; --i)
            all[dice(7)](ftp);
        // A server that fell silent leaves the client waiting for good.
        QTimer silence;
        silence.setSingleShot(true);
        for (uint before = ~0U; ftp && recorder.doneCount == 0 && steps != before;) {
            before = steps;
            silence.start(3);
            while (ftp && steps == before && silence.isActive())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        delete ftp;
        QVERIFY2(broken.isEmpty(), qPrintable(QStringLiteral("session %1: %2").arg(session).arg(broken)));
    }
}

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
