#include "ftp/ftplisting.h"
#include "ftp/qftp.h"
#include "tests/support/scriptedftpserver.h"

#include <QBuffer>
#include <QFile>
#include <QPointer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr int bound = 10000;
const auto file = QStringLiteral("f");

// A client and its server. Writes down what the client signals, with its ids counted from the last login.
class Session : public QObject
{
public:
    explicit Session(const QHostAddress &address = QHostAddress::LocalHost) : server(address)
    {
        // Without a context object: signals out of a destructor would be heard as well.
        // clazy:excludeall=connect-3arg-lambda
        connect(ftp, &QFtp::stateChanged, [this](int state) { note("state %1", state); });
        connect(ftp, &QFtp::commandStarted, [this](int id) { note("start %1", id - loginId); });
        connect(ftp, &QFtp::commandFinished,
                [this](int id, bool error) { note(error ? "failed %1" : "finished %1", id - loginId); });
        connect(ftp, &QFtp::done, [this](bool error) {
            isDone = true;
            note("done %1", error);
        });
        connect(ftp, &QFtp::listInfo, [this](const QUrlInfo &info) { note("list %1", info.name()); });
        connect(ftp, &QFtp::dataTransferProgress, [this](qint64 bytes, qint64 total) {
            progress = {bytes, total};
            tell("progress");
        });
        connect(ftp, &QFtp::readyRead, [this] { note("ready of %1", progress.second); });
        connect(ftp, &QFtp::rawCommandReply,
                [this](int code, const QString &text) { note("raw %1", text + QString::number(code)); });
    }

    ~Session() override { delete ftp; }

    void logIn()
    {
        ftp->connectToHost(server.serverAddress().toString(), server.serverPort());
        loginId = ftp->login(QStringLiteral("kwz"), QStringLiteral("secret"));
    }

    ScriptedFtpServer server;
    QPointer<QFtp> ftp = new QFtp;
    QStringList log;
    QPair<qint64, qint64> progress;
    int signalCount = 0;
    int loginId = 0;
    bool isDone = false;
    std::function<void(const QByteArray &)> step = [](const QByteArray &) {};

private:
    template <typename Value>
    void note(const char *text, const Value &value)
    {
        log += QString::fromLatin1(text).arg(value);
        tell(log.last().toLatin1());
    }

    void tell(const QByteArray &name)
    {
        ++signalCount;
        step(name);
    }
};

// A device that makes its bytes, tells of every read, and takes no byte.
class MadeUpDevice : public QIODevice
{
public:
    explicit MadeUpDevice(qint64 bytes, QObject *parent = nullptr) : length(bytes)
    {
        setParent(parent);
        open(ReadWrite | Unbuffered);
        setErrorString(QStringLiteral("Disk full"));
    }

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

using Commands = std::function<void(Session &)>;
Q_DECLARE_METATYPE(Commands)

class TestFtp : public QObject
{
    Q_OBJECT

private slots:
    void runsCommands_data();
    void runsCommands();
    void readsListings_data();
    void readsListings();
    void uploadsBeyondFourGigabytes();
    void waitsForTheLastData();
    void staysSmallUnderEndlessLines();
    void survivesAnEndAtEveryStep_data();
    void survivesAnEndAtEveryStep();
    void survivesRandomServers();
};

void TestFtp::runsCommands_data()
{
    QTest::addColumn<bool>("ipv6");
    QTest::addColumn<QByteArray>("answered"); // a verb and what the server says to it
    QTest::addColumn<Commands>("commands");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("log");
    auto row = [number = 0](const char *answered, const Commands &commands, const char *lines,
                            const char *log, bool ipv6 = false) mutable {
        QTest::addRow("%d: %s %.8s", ++number, lines, answered)
            << ipv6 << QByteArray(answered) << commands << QByteArray(lines) << QString::fromLatin1(log);
    };
    const Commands list = [](Session &session) { session.ftp->list(); };
    const Commands get = [](Session &session) { session.ftp->get(file); };
    const Commands put = [](Session &session) { session.ftp->put("abc", file); };
    const Commands active = [list, put](Session &session) {
        session.ftp->setTransferMode(QFtp::Active);
        list(session);
        put(session);
    };
    const Commands plain = [](Session &session) {
        session.ftp->cd(QStringLiteral("update"));
        session.ftp->remove(QStringLiteral("a %1"));
        session.ftp->mkdir(QStringLiteral("\u00fc"));
        session.ftp->rmdir(QStringLiteral("b"));
        session.ftp->rename(QStringLiteral("b"), QStringLiteral("c"));
        session.ftp->close();
    };
    row("", plain, "CWD update|DELE a %1|MKD \xfc|RMD b|RNFR b|RNTO c|QUIT|",
        "start 1, finished 1, start 2, finished 2, start 3, finished 3, start 4, finished 4, start 5, "
        "finished 5, start 6, state 5, state 0, finished 6, done 0");
    row("CWD 550 No folder\r\n", plain, "CWD update|",
        "start 1, failed 1, done 1, Changing directory failed:\nNo folder");
    row("", get, "TYPE I|SIZE f|PASV|RETR f|", "start 1, ready of 5, finished 1, done 0");
    row("SIZE 550 No\r\n", get, "TYPE I|SIZE f|PASV|RETR f|", "start 1, ready of 0, finished 1, done 0");
    row("SIZE 213 5000000000\r\n", get, "TYPE I|SIZE f|PASV|RETR f|",
        "start 1, ready of 5000000000, finished 1, done 0");
    row(
        "SIZE 200 Fine\r\n", [put, get](Session &session) { put(session), get(session); },
        "TYPE I|PASV|ALLO 3|STOR f|TYPE I|SIZE f|PASV|RETR f|",
        "start 1, finished 1, start 2, ready of 0, finished 2, done 0");
    row(
        "", [](Session &session) { session.ftp->get(file, new MadeUpDevice(0, session.ftp)); },
        "TYPE I|SIZE f|PASV|RETR f|", "start 1, failed 1, done 1, Downloading file failed:\nDisk full");
    row("ALLO 502 No\r\n", put, "TYPE I|PASV|ALLO 3|STOR f|", "start 1, finished 1, done 0");
    row("PASV 227 (127,0,0,1,0,1)\r\n", put, "TYPE I|PASV|",
        "start 1, failed 1, done 1, Uploading file failed:\nConnection refused for data connection");
    row("", active, "TYPE A|PORT|LIST|TYPE I|PORT|ALLO 3|STOR f|",
        "start 1, finished 1, start 2, list x, finished 2, start 3, finished 3, done 0");
    row("EPSV 500 What?\r\n", list, "TYPE A|EPSV|PASV|LIST|", "start 1, list x, finished 1, done 0", true);
    row("EPRT 500 What?\r\n", active, "TYPE A|EPRT|",
        "start 1, finished 1, start 2, failed 2, done 1, "
        "Listing directory failed:\nConnection refused for data connection",
        true);
    row("USER 230 Hello\r\n", get, "USER kwz|TYPE I|SIZE f|PASV|RETR f|",
        "start 1, ready of 5, finished 1, done 0");
    row(
        "SITE 227-(127,0,0,1,0,1)\r\n226 x\r\n227-y\r\n227 z\r\n",
        [](Session &session) { session.ftp->rawCommand(QStringLiteral(" SITE x \n")); }, "SITE x|",
        "start 1, raw (127,0,0,1,0,1)\r\n226 x\r\ny\r\nz227, finished 1, done 0");
    row(
        "",
        [](Session &session) {
            session.ftp->setProxy(QStringLiteral("127.0.0.1"), session.server.serverPort());
            session.ftp->connectToHost(QStringLiteral("boat"), 2121);
            session.ftp->login();
            session.ftp->setProxy(QString(), 0);
        },
        "USER anonymous@boat:2121|PASS anonymous@|",
        "start 1, finished 1, start 2, state 0, state 1, state 2, state 3, finished 2, start 3, state 4, "
        "finished 3, start 4, finished 4, done 0");
    const Commands abortedPut = [](Session &session) {
        session.server.answers["STOR"] = "150 Go\r\n";
        session.step = [&session](const QByteArray &) {
            if (session.progress.first > 0)
                session.ftp->abort();
        };
        session.ftp->put(new MadeUpDevice(10000000, session.ftp), file);
    };
    row("ABOR 426 Cut off\r\n226 Aborted\r\n", abortedPut, "TYPE I|PASV|ALLO 10000000|STOR f|ABOR|",
        "start 1, failed 1, done 1, Uploading file failed:\nCut off");
    // The source shrinks, fails, or is deleted.
    for (const int lastRead : {0, -1, 1}) {
        const Commands cutShort = [lastRead](Session &session) {
            auto *source = new MadeUpDevice(10000000, session.ftp);
            source->make = [=](qint64 count) -> qint64 {
                if (source->made < 100000)
                    return count;
                if (lastRead > 0)
                    source->deleteLater();
                return lastRead;
            };
            session.ftp->put(source, file);
        };
        row("", cutShort, "TYPE I|PASV|ALLO 10000000|STOR f|",
            "start 1, failed 1, done 1, Uploading file failed:\nThe file to upload cannot be read");
    }
}

void TestFtp::runsCommands()
{
    QFETCH(bool, ipv6);
    QFETCH(QByteArray, answered);
    QFETCH(Commands, commands);
    Session session(ipv6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost);
    if (ipv6 && !session.server.isListening())
        QSKIP("this machine has no IPv6");
    session.server.bytewise = true;
    if (!answered.isEmpty())
        session.server.answers[answered.left(4).trimmed()] = answered.mid(answered.indexOf(' ') + 1);
    for (int round = 0; round < 20; ++round) {
        session.server.lines.clear();
        session.log.clear();
        session.progress = {};
        session.isDone = false;
        // A failure leaves the connection as good as before.
        if (session.ftp->error() == QFtp::NoError)
            session.logIn();
        else
            session.loginId = session.ftp->login(QStringLiteral("kwz"), QStringLiteral("secret"));
        commands(session);
        QCOMPARE(session.log, QStringList());
        QTRY_VERIFY_WITH_TIMEOUT(session.isDone, bound);
        QByteArray lines;
        for (const QByteArray &line : qAsConst(session.server.lines))
            lines += (line.startsWith("PORT ") || line.startsWith("EPRT ") ? line.left(4) : line) + '|';
        QTEST(lines.replace("USER kwz|PASS secret|", ""), "lines");
        QString log = session.log.join(QLatin1String(", "));
        log.remove(QRegularExpression(QStringLiteral("^(start -1, (state 0, )?state 1, state 2, state 3, "
                                                     "finished -1, )?start 0, state 4, finished 0, ")));
        if (session.ftp->error() != QFtp::NoError)
            log += QLatin1String(", ") + session.ftp->errorString();
        QTEST(log, "log");
    }
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

void TestFtp::uploadsBeyondFourGigabytes()
{
    constexpr qint64 size = (qint64(1) << 32) + 5;
    Session session;
    MadeUpDevice device(size);
    bool isPaced = true;
    device.make = [&](qint64 count) {
        // The block before this one has left.
        isPaced = isPaced && count == std::min<qint64>(16384, size - device.made) &&
                  session.progress == qMakePair(device.made, size);
        return count;
    };
    session.logIn();
    session.ftp->put(&device, file);
    QTRY_VERIFY_WITH_TIMEOUT(session.isDone, 12 * bound);
    QVERIFY(session.server.lines.contains("ALLO " + QByteArray::number(size)));
    QVERIFY(isPaced);
    QCOMPARE(session.progress, qMakePair(size, size));
    QCOMPARE(session.server.uploadedBytes, size);
}

void TestFtp::waitsForTheLastData()
{
    Session session;
    ScriptedFtpServer &server = session.server;
    server.answers["PORT"] = "200 Fine\r\n";
    server.takeOver = [&](const QByteArray &verb) {
        if (verb != "RETR")
            return false;
        // The client hears of the last reply before it hears of the connection.
        server.openActive(server.lines.at(server.lines.size() - 2).mid(5));
        server.data->waitForConnected(bound);
        server.data->write("first ");
        server.data->flush();
        server.reply("150 Go\r\n226 Done\r\n200 Unasked\r\n");
        return true;
    };
    QBuffer sink;
    QVERIFY(sink.open(QIODevice::WriteOnly));
    session.logIn();
    session.ftp->setTransferMode(QFtp::Active);
    session.ftp->get(file, &sink);
    QTRY_COMPARE_WITH_TIMEOUT(sink.data(), QByteArray("first "), bound);
    QTest::qWait(0);
    QVERIFY(!session.isDone);
    server.data->write("last");
    server.endData();
    QTRY_VERIFY_WITH_TIMEOUT(session.isDone, bound);
    QCOMPARE(sink.data(), QByteArray("first last"));
}

void TestFtp::staysSmallUnderEndlessLines()
{
    Session session;
    int piecesLeft = 1600;
    const auto feed = [&] {
        QTcpSocket *control = session.server.control;
        if (control->bytesToWrite() == 0 && piecesLeft > 0)
            control->write(--piecesLeft > 0 ? QByteArray(65536, 'x') : "\r\n200 Fine\r\n");
    };
    session.server.takeOver = [&](const QByteArray &verb) {
        if (verb != "SITE")
            return false;
        connect(session.server.control, &QTcpSocket::bytesWritten, this, feed);
        feed();
        return true;
    };
    session.logIn();
    const qint64 before = residentBytes();
    session.ftp->rawCommand(QStringLiteral("SITE"));
    QTRY_VERIFY_WITH_TIMEOUT(session.isDone, 6 * bound);
    QCOMPARE(session.log.last(), QStringLiteral("done 0"));
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
        Session session;
        QPointer<QFtp> &ftp = session.ftp;
        QTcpSocket *&control = session.server.control;
        session.server.file = QByteArray(100000, 'a');
        int steps = 0;
        session.step = [&](const QByteArray &) {
            if (steps++ != endAt || ended)
                return;
            ended = true;
            const int signalsBefore = session.signalCount;
            if (end == "delete later")
                ftp->deleteLater();
            else if (end == "delete")
                delete ftp;
            else if (control)
                control->abort();
            QCOMPARE(session.signalCount, signalsBefore);
        };
        const auto isCut = [&] { return !control || control->state() != QAbstractSocket::ConnectedState; };
        session.server.takeOver = [&](const QByteArray &verb) {
            if (verb == abortAt && verb == "NOOP") {
                // The client hears of the reset when it writes.
                control->abort();
                auto *socket = ftp->findChild<QTcpSocket *>(QStringLiteral("QFtpPI_socket"));
                socket->write("\r\n");
                socket->flush();
            }
            if (ftp && verb == abortAt)
                ftp->abort();
            if (ftp)
                session.step(verb);
            return isCut();
        };
        ftp->setTransferMode(mode);
        session.logIn();
        ftp->list();
        ftp->put(new MadeUpDevice(40000, ftp), file);
        ftp->get(file);
        ftp->rawCommand(QStringLiteral("NOOP"));
        ftp->close();
        const auto isOver = [&] {
            if (ended && end != "reset")
                return !ftp && isCut();
            return session.isDone || session.log.contains(QLatin1String("state 0"));
        };
        QTRY_VERIFY2_WITH_TIMEOUT(isOver(), qPrintable(session.log.join(QLatin1Char(','))), bound);
    }
    QVERIFY(endAt > 20);
}

void TestFtp::survivesRandomServers()
{
    const uint seed = qEnvironmentVariable("KELVORA_SEED", QStringLiteral("1")).toUInt();
    for (uint number = 0; number < 2000; ++number) {
        QRandomGenerator random(seed * 10000 + number);
        const auto dice = [&random](uint sides) { return random.bounded(sides); };
        Session session;
        ScriptedFtpServer &server = session.server;
        server.file = QByteArray(static_cast<int>(dice(100000)), 'a');
        server.bytewise = dice(4) == 0;
        const uint nastiness = 10 + dice(200);
        server.takeOver = [&](const QByteArray &) {
            QByteArray noise;
            for (uint i = dice(200); i > 0; --i)
                noise += static_cast<char>(dice(3) != 0 ? "0123456 -\r\n(|,"[dice(14)] : dice(256));
            const QByteArrayList odd{noise, QByteArray::number(100 + dice(500)) + " odd\r\n",
                                     "227 (127,0,0,1,0,1)\r\n", "226 early\r\n"};
            const uint kind = dice(nastiness);
            if (kind < 4)
                server.reply(odd.at(static_cast<int>(kind)));
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
        QByteArray running;
        // A server that fell silent leaves the client waiting for good.
        QTimer silence;
        silence.setSingleShot(true);
        silence.start(3);
        // Every other signal comes between a command's start and its end.
        session.step = [&](const QByteArray &name) {
            silence.start(3);
            const QByteArray id = name.mid(name.indexOf(' '));
            const bool starts = name.startsWith("start ");
            const bool ends = name.startsWith("finished ") || name.startsWith("failed ");
            const bool isOutside = starts || name.startsWith("done ");
            if (ends ? running != id : !name.startsWith("state ") && running.isEmpty() != isOutside)
                broken = session.log.join(QLatin1Char(','));
            if (starts || ends)
                running = starts ? id : QByteArray();
            if (++steps == killAt)
                dice(2) != 0 ? session.ftp->deleteLater() : delete session.ftp;
            else if (steps == abortAt)
                session.ftp->abort();
        };
        session.logIn();
        QBuffer device;
        device.setData(server.file);
        const std::function<void()> all[] = {[&] { session.ftp->put(&device, file); },
                                             [&] { session.ftp->get(file); },
                                             [&] { session.ftp->list(); },
                                             [&] { session.ftp->setTransferMode(QFtp::Active); },
                                             [&] { session.ftp->rawCommand(QStringLiteral("HELP")); },
                                             [&] { session.ftp->close(); },
                                             [&] { session.logIn(); }};
        for (uint i = dice(6); i > 0; --i)
            all[dice(7)]();
        while (session.ftp && !session.isDone && silence.isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        delete session.ftp;
        QVERIFY2(broken.isEmpty(), qPrintable(QStringLiteral("session %1: %2").arg(number).arg(broken)));
    }
}

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
