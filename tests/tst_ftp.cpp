#include "ftp/ftplisting.h"
#include "ftp/qftp.h"
#include "tests/support/scriptedftpserver.h"

#include <QBuffer>
#include <QPointer>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr int bound = 10000;

// A device that makes its bytes and takes none.
class MadeUpDevice : public QIODevice
{
public:
    explicit MadeUpDevice(qint64 bytes, QObject *parent = nullptr) : QIODevice(parent), length(bytes)
    {
        open(ReadWrite | Unbuffered);
        setErrorString(QStringLiteral("Disk full"));
    }

    bool isSequential() const override { return isStream; }
    qint64 size() const override { return length; }
    qint64 readData(char * /*data*/, qint64 maxlen) override
    {
        return make(std::min(maxlen, length - pos()));
    }
    qint64 writeData(const char * /*data*/, qint64 /*len*/) override { return -1; }

    const qint64 length;
    bool isStream = false;
    /// Told of every read; returns what the read does.
    std::function<qint64(qint64)> make = [](qint64 count) { return count; };
};

// A client and its server. Writes down what the client signals, with its ids counted from the last login.
class Session : public QObject
{
public:
    explicit Session(bool ipv6 = false, const QByteArray &answered = " 220 Ready\r\n")
        : server(ipv6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost)
    {
        const QByteArrayList answers = answered.split('|');
        for (const QByteArray &answer : answers)
            server.answers[answer.left(4).trimmed()] = answer.mid(answer.indexOf(' ') + 1);
        // Without a context object: signals out of a destructor would be heard as well.
        // clazy:excludeall=connect-3arg-lambda
        connect(ftp, &QFtp::stateChanged, [this](int state) { note("state %1", state); });
        connect(ftp, &QFtp::commandStarted,
                [this](int id) { step("start " + QByteArray::number(id - loginId)); });
        connect(ftp, &QFtp::commandFinished,
                [this](int id, bool error) { note(error ? "failed %1" : "finished %1", id - loginId); });
        connect(ftp, &QFtp::done, [this](bool error) { note("done %1", int(error)); });
        connect(ftp, &QFtp::listInfo, [this](const QUrlInfo &info) { note("list %1", info.name()); });
        connect(ftp, &QFtp::dataTransferProgress, [this](qint64 bytes, qint64 total) {
            progress = {bytes, total};
            step("progress");
        });
        connect(ftp, &QFtp::readyRead, [this] { note("ready of %1", progress.second); });
        connect(ftp, &QFtp::rawCommandReply,
                [this](int code, const QString &text) { note("raw %1", text + QString::number(code)); });
    }

    ~Session() override { delete ftp; }

    /// Queues what these words stand for; "late" has the server send what is to be got late.
    void queue(const QByteArray &words)
    {
        const auto file = QStringLiteral("f");
        const QHash<QByteArray, std::function<void()>> commands{
            {"connect", [&] { ftp->connectToHost(server.serverAddress().toString(), server.serverPort()); }},
            {"connect-boat", [&] { ftp->connectToHost(QStringLiteral("boat"), 2121); }},
            {"proxy", [&] { ftp->setProxy(QStringLiteral("127.0.0.1"), server.serverPort()); }},
            {"no-proxy", [&] { ftp->setProxy(QString(), 0); }},
            {"login", [&] { loginId = ftp->login(QStringLiteral("kwz"), QStringLiteral("secret")); }},
            {"guest", [&] { ftp->login(); }},
            {"active", [&] { ftp->setTransferMode(QFtp::Active); }},
            {"cd", [&] { ftp->cd(QStringLiteral("update")); }},
            {"remove", [&] { ftp->remove(QStringLiteral("a %1")); }},
            {"mkdir", [&] { ftp->mkdir(QStringLiteral("\u00fc")); }},
            {"rmdir", [&] { ftp->rmdir(QStringLiteral("b")); }},
            {"rename", [&] { ftp->rename(QStringLiteral("b"), QStringLiteral("c")); }},
            {"raw", [&] { ftp->rawCommand(QStringLiteral(" SITE x \n")); }},
            {"list", [&] { ftp->list(); }},
            {"get", [&] { ftp->get(file); }},
            {"get-full-disk", [&] { ftp->get(file, new MadeUpDevice(0, ftp)); }},
            {"put", [&] { ftp->put("abc", file); }},
            {"put-device", [&] { ftp->put(new MadeUpDevice(server.file.size(), ftp), file); }},
            {"put-shrinking", [&] { putUntil(0, [](QObject *) {}); }},
            {"put-failing", [&] { putUntil(-1, [](QObject *) {}); }},
            {"put-vanishing", [&] { putUntil(1, [](QObject *source) { source->deleteLater(); }); }},
            {"put-waiting", [&] { putStream(); }},
            {"put-abort", [&] { putUntil(1, [&](QObject *) { QTimer::singleShot(0, ftp, &QFtp::abort); }); }},
            {"late",
             [&] {
                 server.takeOver = [this](const QByteArray &verb) { return verb == "RETR" && sendLate(); };
                 connect(ftp, &QFtp::readyRead, &server, [this] { server.endData(); });
             }},
            {"close", [&] { ftp->close(); }}};
        const QByteArrayList each = words.split(' ');
        for (const QByteArray &word : each)
            commands[word]();
    }

    bool isDone() const { return log.value(log.size() - 1).startsWith(QLatin1String("done ")); }

    ScriptedFtpServer server;
    QPointer<QFtp> ftp = new QFtp;
    QStringList log;
    QPair<qint64, qint64> progress;
    /// Told of every signal.
    std::function<void(const QByteArray &)> step = [](const QByteArray &) {};

private:
    void note(const char *text, const QVariant &value)
    {
        log += QString::fromLatin1(text).arg(value.toString());
        step(log.last().toLatin1());
    }

    void putUntil(int lastRead, const std::function<void(QObject *)> &atLast) const
    {
        auto *source = new MadeUpDevice(10000000, ftp);
        source->make = [=](qint64 count) {
            if (source->pos() < 100000)
                return count;
            atLast(source);
            return qint64(lastRead);
        };
        ftp->put(source, QStringLiteral("f"));
    }

    // The server does not wait for more of a stream that has paused.
    void putStream()
    {
        auto *source = new MadeUpDevice(100000, ftp);
        source->isStream = true;
        source->make = [this, blocks = 3](qint64 count) mutable {
            if (--blocks >= 0)
                return count;
            QTimer::singleShot(0, &server, [this] {
                if (server.data)
                    server.data->write("unasked");
                server.endData();
            });
            return qint64(0);
        };
        ftp->put(source, QStringLiteral("f"));
    }

    // The client hears of the last reply before it hears of the connection, which ends later still.
    bool sendLate()
    {
        server.openActive(server.lines.at(server.lines.size() - 2).mid(5));
        server.data->waitForConnected(bound);
        server.data->write(server.file);
        server.reply("150 Go\r\n226 Done\r\n200 Unasked\r\n");
        return true;
    }

    int loginId = 0;
};

// One session with a server that mostly behaves. Tells of a signal out of order by the log up to it.
void playRandomly(quint32 seed, QString *broken)
{
    QRandomGenerator random(seed);
    const auto dice = [&random](int sides) { return random.bounded(sides); };
    // A server that fell silent leaves the client waiting for good.
    QTimer silence;
    silence.setSingleShot(true);
    silence.start(3);
    int steps = 0;
    const int killAt = dice(200);
    const int abortAt = dice(200);
    QByteArray running;
    Session session;
    ScriptedFtpServer &server = session.server;
    server.file = QByteArray(dice(100000), 'a');
    server.bytewise = dice(4) == 0;
    const int nastiness = 10 + dice(200);
    server.takeOver = [&](const QByteArray &) {
        QByteArray noise;
        for (int i = dice(200); i > 0; --i)
            noise += static_cast<char>(dice(3) != 0 ? "0123456 -\r\n(|,"[dice(14)] : dice(256));
        const QByteArrayList odd{noise, QByteArray::number(100 + dice(500)) + " odd\r\n",
                                 "227 (127,0,0,1,0,1)\r\n", "226 early\r\n"};
        const int kind = dice(nastiness);
        if (kind < odd.size())
            server.reply(odd.at(kind));
        else if (kind == 4)
            server.control->abort();
        else if (kind == 5)
            server.control->disconnectFromHost();
        else if (kind == 6)
            server.endData(dice(2) == 0);
        return kind < 8 && dice(2) == 0;
    };
    // Every other signal comes between a command's start and its end.
    session.step = [&](const QByteArray &name) {
        silence.start(3);
        const QByteArray id = name.mid(name.indexOf(' '));
        const bool starts = name.startsWith("start ");
        const bool ends = name.startsWith("finished ") || name.startsWith("failed ");
        const bool isOutside = starts || name.startsWith("done ");
        if (ends ? running != id : !name.startsWith("state ") && running.isEmpty() != isOutside)
            *broken = session.log.join(QLatin1Char(','));
        if (starts || ends)
            running = starts ? id : QByteArray();
        if (++steps == killAt)
            dice(2) != 0 ? session.ftp->deleteLater() : delete session.ftp;
        else if (steps == abortAt)
            session.ftp->abort();
    };
    const QByteArrayList commands{"put-device", "get", "list", "active", "raw", "close", "connect login"};
    session.queue("connect login");
    for (int i = dice(6); i > 0; --i)
        session.queue(commands.at(dice(7)));
    while (session.ftp && !session.isDone() && silence.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace

class TestFtp : public QObject
{
    Q_OBJECT

private slots:
    void runsCommands_data();
    void runsCommands();
    void survivesAnEndAtEveryStep_data() { runsCommands_data(); }
    void survivesAnEndAtEveryStep();
    void survivesRandomServers();
    void readsListings_data();
    void readsListings();
    void uploadsBeyondFourGigabytes();
    void staysSmallUnderEndlessLines();
    void transfersWhole_data();
    void transfersWhole();
};

void TestFtp::runsCommands_data()
{
    QTest::addColumn<bool>("ipv6");
    QTest::addColumn<QByteArray>("answered"); // verbs ("" is the greeting) and what the server says
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("log");
    const char *const usual = " 220 Ready\r\n";
    const auto row = [](const char *answered, const char *words, const char *lines, const char *log,
                        bool ipv6 = false) {
        if (!ipv6 || QTcpServer().listen(QHostAddress::LocalHostIPv6))
            QTest::addRow("%s %.8s", words, answered)
                << ipv6 << QByteArray(answered) << QByteArray(words) << QString::fromLatin1(lines)
                << QString::fromLatin1(log);
    };
    row(usual, "cd remove mkdir rmdir rename close", "CWD update|DELE a %1|MKD \xfc|RMD b|RNFR b|RNTO c|QUIT",
        "finished 1, finished 2, finished 3, finished 4, finished 5, state 5, state 0, finished 6, done 0");
    row("CWD 550 No\r\n", "cd remove", "CWD update", "failed 1, done 1, Changing directory failed:\nNo");
    row("SIZE 550 No\r\n", "get", "TYPE I|SIZE f|PASV|RETR f", "ready of 0, finished 1, done 0");
    row("SIZE 213 5000000000\r\n", "get", "TYPE I|SIZE f|PASV|RETR f",
        "ready of 5000000000, finished 1, done 0");
    row("SIZE 200 Fine\r\n", "put get", "TYPE I|PASV|ALLO 3|STOR f|TYPE I|SIZE f|PASV|RETR f",
        "finished 1, ready of 0, finished 2, done 0");
    row(usual, "get-full-disk", "TYPE I|SIZE f|PASV|RETR f",
        "failed 1, done 1, Downloading file failed:\nDisk full");
    row("ALLO 502 No\r\n", "put", "TYPE I|PASV|ALLO 3|STOR f", "finished 1, done 0");
    row("PASV 227 (127,0,0,1,0,1)\r\n", "put", "TYPE I|PASV",
        "failed 1, done 1, Uploading file failed:\nConnection refused for data connection");
    for (const char *const words : {"put-shrinking", "put-failing", "put-vanishing"})
        row(usual, words, "TYPE I|PASV|ALLO 10000000|STOR f",
            "failed 1, done 1, Uploading file failed:\nThe file to upload cannot be read");
    row(usual, "put-waiting", "TYPE I|PASV|STOR f", "finished 1, done 0");
    row("STOR 150 Go\r\n|ABOR 426 Cut off\r\n226 Aborted\r\n", "put-abort",
        "TYPE I|PASV|ALLO 10000000|STOR f|ABOR", "failed 1, done 1, Uploading file failed:\nCut off");
    row("PORT 200 Fine\r\n", "late active get", "TYPE I|SIZE f|PORT|RETR f",
        "finished 1, ready of 5, finished 2, done 0");
    row(usual, "active list put", "TYPE A|PORT|LIST|TYPE I|PORT|ALLO 3|STOR f",
        "finished 1, list x, finished 2, finished 3, done 0");
    row("EPSV 500 What?\r\n", "list", "TYPE A|EPSV|PASV|LIST", "list x, finished 1, done 0", true);
    row("EPRT 500 What?\r\n", "active list", "TYPE A|EPRT",
        "finished 1, failed 2, done 1, Listing directory failed:\nConnection refused for data connection",
        true);
    row("USER 230 Hello\r\n", "get", "USER kwz|TYPE I|SIZE f|PASV|RETR f", "ready of 5, finished 1, done 0");
    row("SITE 227-(127,0,0,1,0,1)\r\n226 x\r\n227-y\r\n227 z\r\n", "raw", "SITE x",
        "raw (127,0,0,1,0,1)\r\n226 x\r\ny\r\nz227, finished 1, done 0");
    row(usual, "proxy connect-boat guest no-proxy", "USER anonymous@boat:2121|PASS anonymous@",
        "finished 1, state 0, state 1, state 2, state 3, finished 2, state 4, "
        "finished 3, finished 4, done 0");
}

void TestFtp::runsCommands()
{
    QFETCH(bool, ipv6);
    QFETCH(QByteArray, answered);
    QFETCH(QByteArray, words);
    Session session(ipv6, answered);
    session.server.bytewise = true;
    for (int round = 0; round < 20; ++round) {
        session.server.lines.clear();
        session.log.clear();
        // A failure leaves the connection as good as before.
        session.queue((session.ftp->error() == QFtp::NoError ? "connect login " : "login ") + words);
        QCOMPARE(session.log, QStringList());
        QTRY_VERIFY_WITH_TIMEOUT(session.isDone(), bound);
        QString lines = QString::fromLatin1(session.server.lines.join('|'));
        lines.remove(QRegularExpression(QStringLiteral(
            "USER kwz\\|PASS secret\\|?| 127,0,0,1,\\d+,\\d+(?=\\||$)| \\|2\\|::1\\|\\d+\\|")));
        QTEST(lines, "lines");
        QString log = session.log.join(QLatin1String(", "));
        log.remove(QRegularExpression(
            QStringLiteral("^((state 0, )?state 1, state 2, state 3, finished -1, )?state 4, finished 0, ")));
        if (session.ftp->error() != QFtp::NoError)
            log += QLatin1String(", ") + session.ftp->errorString();
        QTEST(log, "log");
    }
}

void TestFtp::survivesAnEndAtEveryStep()
{
    QFETCH(bool, ipv6);
    QFETCH(QByteArray, answered);
    QFETCH(QByteArray, words);
    // What happens at a step, and what at the next.
    const QVector<QByteArrayList> ends{{"delete"}, {"reset"}, {"abort", "delete"}, {"reset abort", "delete"}};
    for (const QByteArrayList &end : ends) {
        int endAt = 0;
        for (int steps = 1; endAt <= steps; ++endAt) {
            steps = 0;
            Session session(ipv6, answered);
            session.server.file = QByteArray(100000, 'a');
            session.queue("connect login " + words);
            QPointer<QFtp> &ftp = session.ftp;
            QTcpSocket *&control = session.server.control;
            const auto isCut = [&] {
                return control == nullptr || control->state() != QTcpSocket::ConnectedState;
            };
            session.step = [&](const QByteArray &) {
                const QByteArray action = end.value(steps++ - endAt);
                if (action.contains("reset") && control != nullptr)
                    control->abort();
                if (action.contains("abort") && ftp)
                    ftp->abort();
                if (action == "delete") {
                    const int stepsBefore = steps;
                    delete ftp;
                    QCOMPARE(steps, stepsBefore);
                }
            };
            session.server.takeOver = [&, usual = session.server.takeOver](const QByteArray &verb) {
                if (ftp)
                    session.step(verb);
                return isCut() || usual(verb);
            };
            const auto isOver = [&] {
                const bool isLost = steps > endAt && !ftp.isNull() && ftp->state() == QFtp::Unconnected;
                return ftp ? session.isDone() || isLost : isCut();
            };
            QTRY_VERIFY2_WITH_TIMEOUT(isOver(), qPrintable(session.log.join(QLatin1Char(','))), bound);
        }
        QVERIFY(endAt > 15);
    }
}

void TestFtp::survivesRandomServers()
{
    const uint seed = qEnvironmentVariable("KELVORA_SEED", QStringLiteral("1")).toUInt();
    for (uint number = 0; number < 2000; ++number) {
        QString broken;
        playRandomly(seed * 10000 + number, &broken);
        QVERIFY2(broken.isEmpty(), qPrintable(QStringLiteral("session %1: %2").arg(number).arg(broken)));
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
        // Whole blocks, each when the one before it has left.
        isPaced = isPaced && count == std::min<qint64>(16384, size - device.pos()) &&
                  session.progress == qMakePair(device.pos(), size);
        return count;
    };
    session.queue("connect login");
    session.ftp->put(&device, QStringLiteral("f"));
    QTRY_VERIFY_WITH_TIMEOUT(session.isDone(), 12 * bound);
    QVERIFY(session.server.lines.contains("ALLO " + QByteArray::number(size)));
    QVERIFY(isPaced);
    QCOMPARE(session.progress, qMakePair(size, size));
    QCOMPARE(session.server.uploadedBytes, size);
}

void TestFtp::staysSmallUnderEndlessLines()
{
    Session session;
    session.server.answers["SITE"].fill('x', 100000000).append("\r\n200 Fine\r\n");
    session.queue("connect login raw");
    QTRY_VERIFY_WITH_TIMEOUT(session.isDone(), 6 * bound);
    QCOMPARE(session.log.last(), QStringLiteral("done 0"));
#ifndef __SANITIZE_ADDRESS__
    // At its peak this process held the answer, the server's socket a copy of it, and the client little.
    QFile status(QStringLiteral("/proc/self/status"));
    const bool isKnown = status.open(QIODevice::ReadOnly);
    const QRegularExpression peak(QStringLiteral("VmHWM:\\s+(\\d+)"));
    QVERIFY(!isKnown || peak.match(QString::fromLatin1(status.readAll())).captured(1).toInt() < 230000);
#endif
}

void TestFtp::transfersWhole_data()
{
    QTest::addColumn<QString>("command"); // its address, port and folder left open
    QTest::addColumn<bool>("ipv6");
    QTest::addColumn<QByteArray>("words");
    const auto pyftpdlib = QStringLiteral("/usr/bin/python3 -m pyftpdlib -w -i %1 -p %2 -d %3");
    const auto vsftpd = QStringLiteral(
        "vsftpd %3/options -olisten_address=%1 -olisten_port=%2 -oanon_root=%3 "
        "-osecure_chroot_dir=%3 -olisten=YES -olisten_ipv6=NO -obackground=NO -orun_as_launching_user=YES "
        "-oftp_username=nobody -oanonymous_enable=YES -oanon_upload_enable=YES -oanon_world_readable_only=NO "
        "-owrite_enable=YES -oallow_writeable_chroot=YES -oseccomp_sandbox=NO");
    QTest::newRow("pyftpdlib, passive") << pyftpdlib << false << QByteArray("guest");
    QTest::newRow("pyftpdlib, passive, IPv6") << pyftpdlib << true << QByteArray("guest");
    QTest::newRow("pyftpdlib, active, IPv6") << pyftpdlib << true << QByteArray("active guest");
    QTest::newRow("vsftpd, passive") << vsftpd << false << QByteArray("guest");
    QTest::newRow("vsftpd, active") << vsftpd << false << QByteArray("active guest");
}

// Against servers of the distribution.
void TestFtp::transfersWhole()
{
    QFETCH(QString, command);
    QFETCH(bool, ipv6);
    QFETCH(QByteArray, words);
    Session session(ipv6);
    if (!session.server.isListening())
        QSKIP("this machine has no IPv6");
    const QString host = session.server.serverAddress().toString();
    const quint16 port = session.server.serverPort();
    session.server.close();
    const QTemporaryDir folder;
    // Empty: without a file of its own, a server would read this machine's.
    QVERIFY(QFile(folder.filePath(QStringLiteral("options"))).open(QIODevice::WriteOnly));
    QStringList arguments = command.arg(host).arg(port).arg(folder.path()).split(QLatin1Char(' '));
    QProcess server;
    server.start(arguments.takeFirst(), arguments);
    // A Python without the library ends at once.
    const auto isMissing = [&] { return server.state() == QProcess::NotRunning; };
    const auto isUp = [&] {
        QTcpSocket socket;
        socket.connectToHost(host, port);
        return socket.waitForConnected();
    };
    QTRY_VERIFY(isMissing() || isUp());
    if (isMissing())
        QSKIP("the server is not installed");

    QByteArray bytes(5000001, Qt::Uninitialized);
    QRandomGenerator(1).generate(bytes.begin(), bytes.end());
    QBuffer source(&bytes);
    QBuffer sink;
    QVERIFY(sink.open(QIODevice::WriteOnly));
    session.ftp->connectToHost(host, port);
    qint64 uploaded = 0;
    session.step = [&](const QByteArray &) { uploaded = std::max(uploaded, session.progress.first); };
    session.queue(words);
    session.ftp->put(&source, QStringLiteral("image"));
    session.ftp->put(QByteArray(), QStringLiteral("empty"));
    session.ftp->list();
    session.ftp->get(QStringLiteral("image"), &sink);
    session.ftp->close();
    QTRY_VERIFY_WITH_TIMEOUT(session.isDone(), bound);
    QVERIFY2(session.log.contains(QLatin1String("done 0")), qPrintable(session.ftp->errorString()));
    QVERIFY(session.log.contains(QLatin1String("list image")));
    QVERIFY(session.log.contains(QLatin1String("list empty")));
    QFile stored(folder.filePath(QStringLiteral("image")));
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QVERIFY(stored.readAll() == bytes);
    QCOMPARE(uploaded, qint64(bytes.size()));
    QVERIFY(sink.data() == bytes);
    server.kill();
    server.waitForFinished();
}

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
