#include "ftp/ftplisting.h"
#include "ftp/qftp.h"
#include "tests/support/scriptedftpserver.h"
#include "tests/support/text.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>

namespace
{

constexpr int bound = 10000;
constexpr qint64 largeBytes = qint64(32) << 20;

// Without the pauses between looks that QTRY_VERIFY makes.
bool waitUntil(const std::function<bool()> &isSo, int milliseconds = bound)
{
    const QDeadlineTimer end(milliseconds);
    QTimer wake;
    wake.start(20);
    while (!isSo() && !end.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return isSo();
}

// A device that makes its bytes and takes none.
class MadeUpDevice : public QIODevice
{
public:
    explicit MadeUpDevice(qint64 bytes, QObject *parent = nullptr) : QIODevice(parent), length(bytes)
    {
        open(ReadWrite | Unbuffered);
        setErrorString("Disk full"_s);
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
            server.answers[answer.left(answer.indexOf(' '))] = answer.mid(answer.indexOf(' ') + 1);
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
        const auto file = "f"_s;
        const QHash<QByteArray, std::function<void()>> commands{
            {"connect", [&] { ftp->connectToHost(server.serverAddress().toString(), server.serverPort()); }},
            {"connect-boat", [&] { ftp->connectToHost("boat"_s, 2121); }},
            {"proxy", [&] { ftp->setProxy("127.0.0.1"_s, server.serverPort()); }},
            {"no-proxy", [&] { ftp->setProxy(QString(), 0); }},
            {"login", [&] { loginId = ftp->login("kwz"_s, "secret"_s); }},
            {"guest", [&] { ftp->login(); }},
            {"active", [&] { ftp->setTransferMode(QFtp::Active); }},
            {"cd", [&] { ftp->cd("update"_s); }},
            {"remove", [&] { ftp->remove("a %1"_s); }},
            {"mkdir", [&] { ftp->mkdir("\u00fc"_s); }},
            {"rmdir", [&] { ftp->rmdir("b"_s); }},
            {"rename", [&] { ftp->rename("b"_s, "c"_s); }},
            {"raw", [&] { ftp->rawCommand(" SITE x \n"_s); }},
            {"list", [&] { ftp->list(); }},
            {"get", [&] { ftp->get(file); }},
            {"get-sink-gone",
             [&] {
                 auto *const sink = new MadeUpDevice(0, ftp);
                 connect(ftp, &QFtp::dataTransferProgress, sink, [sink] { delete sink; });
                 ftp->get(file, sink);
             }},
            {"get-full-disk", [&] { ftp->get(file, new MadeUpDevice(0, ftp)); }},
            {"nowhere", [&] { ftp->connectToHost("255.255.255.255"_s); }},
            {"mute", [&] { server.cutsByReset = true; }},
            {"hangup", [&] { on("", [this] { return server.control->disconnectFromHost(), true; }); }},
            {"put", [&] { ftp->put("abc", file); }},
            {"put-closed", [&] { ftp->put(new QFile("/missing"_s, ftp), file); }},
            {"put-large", [&] { ftp->put(new MadeUpDevice(largeBytes, ftp), file); }},
            {"put-huge", [&] { putPaced((qint64(1) << 32) + 5); }},
            {"put-empty", [&] { ftp->put(QByteArray(), file); }},
            {"slow", [&] { server.confirmAfterMs = 6000; }},
            {"abort-at-pass", [&] { on("PASS", [this] { return ftp->abort(), false; }); }},
            {"passive-stor", [&] { on("STOR", [this] { return sendPassive(); }); }},
            {"endless", [&] { on("RETR", [this] { return sendEndless(false); }); }},
            {"endless-lost", [&] { on("RETR", [this] { return sendEndless(true); }); }},
            {"cut", [&] { server.cutAt = largeBytes / 8; }},
            {"cut-early", [&] { server.cutAt = 0; }},
            {"reset", [&] { server.cutAt = largeBytes / 8, server.cutsByReset = true; }},
            // Is faster than the server at the port that PORT names.
            {"stranger",
             [&] {
                 on("PORT",
                    [this] { return server.openActive(server.lines.last().mid(5), "127.0.0.2"), false; });
             }},
            {"put-device", [&] { ftp->put(new MadeUpDevice(server.file.size(), ftp), file); }},
            {"put-shrinking", [&] { putUntil(0, [](QObject *) {}); }},
            {"put-failing", [&] { putUntil(-1, [](QObject *) {}); }},
            {"put-vanishing", [&] { putUntil(1, [](QObject *source) { source->deleteLater(); }); }},
            {"put-waiting", [&] { putStream(); }},
            {"put-abort", [&] { putUntil(1, [&](QObject *) { QTimer::singleShot(0, ftp, &QFtp::abort); }); }},
            {"late", [&] { on("RETR", [this] { return sendLate(); }); }},
            {"close", [&] { ftp->close(); }}};
        const QByteArrayList each = words.split(' ');
        for (const QByteArray &word : each)
            commands[word]();
    }

    /// The signals, and how far the transfer came.
    QString outcome() const
    {
        return log.join(", "_s) + " %1/%2"_s.arg(isDone() ? progress.first : -1).arg(progress.second);
    }

    bool isDone() const { return log.value(log.size() - 1).startsWith("done "_s); }

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

    // What the server does at this verb; false: and what it usually does.
    void on(const QByteArray &verb, const std::function<bool()> &act)
    {
        server.takeOver = [=](const QByteArray &heard) { return heard == verb && act(); };
    }

    // Whole blocks, each when the one before it has left.
    void putPaced(qint64 size)
    {
        auto *const source = new MadeUpDevice(size, ftp);
        source->make = [this, source, size](qint64 count) {
            if (count != std::min<qint64>(16384, size - source->pos()) ||
                progress != qMakePair(source->pos(), size))
                log += "not paced"_s;
            return count;
        };
        ftp->put(source, "f"_s);
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
        ftp->put(source, "f"_s);
    }

    // A stream that pauses, goes on and pauses again; then the server does not wait for more of it.
    void putStream()
    {
        auto *source = new MadeUpDevice(100000, ftp);
        source->isStream = true;
        source->make = [this, source, reads = 0](qint64 count) mutable {
            if (++reads == 2)
                QTimer::singleShot(0, source, &QIODevice::readyRead);
            if (reads < 4)
                return reads == 2 ? 0 : count;
            QTimer::singleShot(0, &server, [this] {
                if (server.data)
                    server.data->write("unasked");
                server.endData();
            });
            return qint64(0);
        };
        ftp->put(source, "f"_s);
    }

    // The client hears of the last reply before it hears of the connection, which ends later still.
    bool sendLate()
    {
        connect(ftp, &QFtp::readyRead, &server, [this] { server.endData(); });
        server.openActive(server.lines.at(server.lines.size() - 2).mid(5));
        server.data->waitForConnected(bound);
        server.data->write(server.file);
        server.reply("150 Go\r\n226 Done\r\n200 Unasked\r\n");
        return true;
    }

    // Names the port that takes the upload once more instead of taking it.
    bool sendPassive() const
    {
        const quint16 port = server.data->localPort();
        server.reply("227 (127,0,0,1," + QByteArray::number(port >> 8) + ',' +
                     QByteArray::number(port & 255) + ")\r\n");
        return true;
    }

    // The data connection stays open; the control connection may end, whereupon the client aborts.
    bool sendEndless(bool isLost)
    {
        connect(ftp, &QFtp::readyRead, server.data, [this, isLost] {
            server.reply("226 Done\r\n");
            if (isLost)
                server.control->disconnectFromHost();
        });
        connect(ftp, &QFtp::stateChanged, server.data, [this](int state) {
            if (state == QFtp::Unconnected)
                ftp->abort();
        });
        server.reply("150 Go\r\n");
        server.data->write(server.file);
        return true;
    }

    int loginId = 0;
};

// What the server says by verb ("" is the greeting), what is queued, and what comes of it.
struct Dialogue {
    QByteArray answered, words;
    QString lines, log;
    bool ipv6 = false;
};

} // namespace
Q_DECLARE_METATYPE(Dialogue)

class TestFtp : public QObject
{
    Q_OBJECT

private slots:
    void runsCommands_data()
    {
        QTest::addColumn<Dialogue>("row");
        const char *const usual = " 220 Ready\r\n", *const get = "TYPE I|SIZE f|PASV|RETR f",
                          *const getEnded = "TYPE I|SIZE f|PASV|RETR f|ABOR",
                          *const put = "TYPE I|PASV|ALLO 3|STOR f",
                          *const putLarge = "TYPE I|PASV|ALLO 33554432|STOR f",
                          *const putEnded = "TYPE I|PASV|ALLO 10000000|STOR f|ABOR";
        const QByteArray getFailed = "failed 1, done 1, Downloading file failed:\n",
                         putFailed = "failed 1, done 1, Uploading file failed:\n",
                         ended = "The data connection ended before all of the file ",
                         putCut = putFailed + ended + "was sent",
                         noData = "Connection refused for data connection",
                         unwilling = "state 1, state 2, state 3, state 0, failed -1, done 1, "
                                     "Connecting to host failed:\nConnection refused to host 127.0.0.1";
        const auto row = [](const QByteArray &answered, const QByteArray &words, const char *lines,
                            const QByteArray &log, bool ipv6 = false) {
            if (!ipv6 || QTcpServer().listen(QHostAddress::LocalHostIPv6))
                QTest::addRow("%s %.8s", words.data(), answered.data())
                    << Dialogue{answered, words, QString::fromLatin1(lines), QString::fromLatin1(log), ipv6};
        };
        row(usual, "cd remove mkdir rmdir rename", "CWD update|DELE a %1|MKD \xfc|RMD b|RNFR b|RNTO c",
            "finished 1, finished 2, finished 3, finished 4, finished 5, done 0");
        row(usual, "close", "QUIT", "state 5, state 0, finished 1, done 0");
        row("CWD 550 No\r\n", "cd remove", "CWD update", "failed 1, done 1, Changing directory failed:\nNo");
        row("SIZE 550 No\r\n", "get", get, "ready of 0, finished 1, done 0");
        row("SIZE 213 5000000000\r\n", "get", get,
            "ready of 5000000000, " + getFailed + ended + "had arrived");
        row("SIZE 200 Fine\r\n", "put get", "TYPE I|PASV|ALLO 3|STOR f|TYPE I|SIZE f|PASV|RETR f",
            "finished 1, ready of 0, finished 2, done 0");
        row(usual, "get-full-disk", getEnded, getFailed + "Disk full");
        row(usual, "get-sink-gone", getEnded, getFailed + "The file to download into is gone");
        row("ALLO 502 No\r\n", "put", put, "finished 1, done 0");
        row("PASV 227 (127,0,0,1,0,1)\r\n", "put", "TYPE I|PASV", putFailed + noData);
        for (const char *const words : {"put-shrinking", "put-failing", "put-vanishing"})
            row(usual, words, putEnded, putFailed + "The file to upload cannot be read");
        row("STOR 150 Go\r\n|ABOR 226 Done\r\n225 Nothing\r\n", "put-abort", putEnded, putFailed + "Aborted");
        row(usual, "put-closed", "", putFailed + "No such file or directory");
        row(usual, "cut put-large", putLarge, putCut);
        row("STOR 150 Go\r\n226 Done\r\n", "cut put-large", putLarge, putCut);
        row("STOR 150 Go\r\n226 Done\r\n", "cut-early put", put, putCut);
        row("PASV 227 Nowhere\r\n|STOR 150 Go\r\n226 Done\r\n", "put", put, putCut);
        row("PASV 227 (255,255,255,255,0,1)\r\n", "put", "TYPE I|PASV", putFailed + noData);
        row(usual, "passive-stor put", put, putCut);
        row(usual, "stranger active list", "TYPE A|PORT|LIST", "finished 1, list x, finished 2, done 0");
        row(usual, "put-huge", "TYPE I|PASV|ALLO 4294967301|STOR f", "finished 1, done 0");
        row(usual, "put-waiting", "TYPE I|PASV|STOR f", "finished 1, done 0");
        row(usual, "slow put-waiting", "TYPE I|PASV|STOR f", "finished 1, done 0");
        row(usual, "abort-at-pass", "ABOR", "done 0");
        row("STOR 150 Go\r\n|ABOR 426 Cut off\r\n226 Aborted\r\n", "put-abort", putEnded,
            putFailed + "Cut off");
        row("PORT 200 Fine\r\n", "late active get", "TYPE I|SIZE f|PORT|RETR f",
            "finished 1, ready of 5, finished 2, done 0");
        row(usual, "active put", "TYPE I|PORT|ALLO 3|STOR f", "finished 1, finished 2, done 0");
        row("EPSV 500 What?\r\n", "list", "TYPE A|EPSV|PASV|LIST", "list x, finished 1, done 0", true);
        row("EPRT 500 What?\r\n", "active list", "TYPE A|EPRT",
            "finished 1, failed 2, done 1, Listing directory failed:\n" + noData, true);
        row("USER 230 Hello\r\n", "raw", "USER kwz|SITE x", "raw Fine200, finished 1, done 0");
        row("SITE 227-(127,0,0,1,0,1)\r\n226 x\r\n227-y\r\n227 z\r\n", "raw", "SITE x",
            "raw (127,0,0,1,0,1)\r\n226 x\r\ny\r\nz227, finished 1, done 0");
        row(usual, "proxy connect-boat guest no-proxy", "USER anonymous@boat:2121|PASS anonymous@",
            "finished 1, state 0, state 1, state 2, state 3, finished 2, state 4, finished 3, finished 4, "
            "done 0");
        // Where nobody answers.
        row(" 421 Too many\r\n220 Ready\r\n", "cd", "", unwilling);
        row(usual, "hangup cd", "", unwilling);
        row(usual, "nowhere", "",
            "state 0, state 1, state 2, state 0, failed 1, done 1, Connecting to host failed:\n"
            "Connection timed out to host 255.255.255.255");
        row("PORT 200 Fine\r\n|STOR 150 Go\r\n", "active put", "TYPE I|PORT|ALLO 3|STOR f",
            "finished 1, failed 2, done 1, Uploading file failed:\n" + noData);
        row("ALLO 200 Fine\r\n", "reset put-large", putLarge, putCut);
        row("SIZE 213 5000000000\r\n", "mute get", get,
            "ready of 5000000000, " + getFailed + ended + "had arrived");
        row(usual, "endless get", get, "ready of 5, " + getFailed + "The data connection timed out");
        row(usual, "endless-lost get", get, "ready of 5, state 0, " + getFailed + "Aborted");
        row("ABOR 150 Later\r\n", "mute put-abort", putEnded, putFailed + "Aborted");
    }

    void runsCommands()
    {
        QFETCH(const Dialogue, row);
        Session session(row.ipv6, row.answered);
        session.server.bytewise = true;
        QElapsedTimer clock;
        clock.start();
        for (int round = 0; round < 20 && clock.elapsed() < 1000; ++round) {
            session.server.lines.clear();
            session.log.clear();
            // A failure leaves a connection as good as before.
            const bool isLoggedIn =
                session.ftp->error() != QFtp::NoError && session.ftp->state() == QFtp::LoggedIn;
            session.queue((isLoggedIn ? "login " : "connect login ") + row.words);
            QCOMPARE(session.log, QStringList());
            QVERIFY2(waitUntil([&] { return session.isDone(); }, 25 * bound), qPrintable(session.outcome()));
            QString lines = QString::fromLatin1(session.server.lines.join('|'));
            lines.remove(QRegularExpression(QStringLiteral(
                "USER kwz\\|PASS secret\\|?| 127,0,0,1,\\d+,\\d+(?=\\||$)| \\|2\\|::1\\|\\d+\\|")));
            QCOMPARE(lines, row.lines);
            QString log = session.log.join(", "_s);
            log.remove(QRegularExpression(
                "^((state 0, )?state 1, state 2, state 3, finished -1, )?state 4, finished 0, "_s));
            if (session.ftp->error() != QFtp::NoError)
                log += ", "_s + session.ftp->errorString();
            QCOMPARE(log, row.log);
        }
    }

    void readsListings()
    {
        QLocale::setDefault(QLocale(QLocale::German));
        // name, octal permissions, owner, group, size, date, type letters
        for (const auto &[line, expected] : QVector<QPair<QString, QString>>{
                 {"lrwxrwxrwx 1 a b 7 Apr  4  2000 a -> b"_s, "a 777 a b 7 2000-04-04T00:00:00 dl"_s},
                 {"-r--r----- 1 a b 5000000000 Mar  2 10:15 x y"_s,
                  "x y 440 a b 5000000000 2024-03-02T10:15:00 f"_s},
                 {"-rw------- 1 a b 1 may 14 10:15 last year"_s,
                  "last year 600 a b 1 2023-05-14T10:15:00 f"_s},
                 {"-rw------- 1 a b 1 Feb 29 10:15 leap"_s, "leap 600 a b 1 2024-02-29T10:15:00 f"_s},
                 {"-rw------- 1 a b 1 Mrz 02 10:15 no month"_s, "no month 600 a b 1  f"_s},
                 {"01-02-03  10:15AM       <DIR>          Images"_s, "Images 0   0 2003-01-02T10:15:00 d"_s},
                 {"-rw------- 1 a b 1 Apr 14 2000   x \r\n"_s, "x  600 a b 1 2000-04-14T00:00:00 f"_s},
                 {"-rw------- 1 a  1 Apr 14 2000 no group"_s, "no group 600 a  1 2000-04-14T00:00:00 f"_s},
                 {" -rw------- 1 a b 1 Apr 14 2000 late"_s, "nothing"_s},
                 {"srwxr-xr-x 1 a b 1 Apr 14 2000 socket"_s, "nothing"_s}}) {
            const auto info = ftplisting::parseLine(line, QDateTime(QDate(2024, 3, 1), QTime(12, 0)));
            const QString entry =
                !info
                    ? "nothing"_s
                    : "%1 %2 %3 %4 %5 %6 %7%8"_s.arg(
                          info->name(), QString::number(info->permissions(), 8), info->owner(), info->group(),
                          QString::number(info->size()), info->lastModified().toString(Qt::ISODate),
                          info->isDir() ? "d"_s : "f"_s, info->isSymLink() ? "l"_s : ""_s);
            QCOMPARE(entry, expected);
        }
        QLocale::setDefault(QLocale::c());
    }

    // Both once took time that grew with a power of their length.
    void readsManyPiecesAndBlanksInTime()
    {
        QElapsedTimer clock;
        Session session;
        session.server.file = QByteArray(10000000, 'a');
        session.queue("connect login get");
        QVERIFY(waitUntil([&] { return session.isDone(); }));
        clock.start();
        std::array<char, 100> piece;
        qint64 readBytes = 0;
        while (const qint64 count = session.ftp->read(piece.data(), piece.size()))
            readBytes += count;
        QCOMPARE(readBytes, qint64(session.server.file.size()));
        const QString start = "drwxr-xr-x 1"_s;
        for (int blanks = 0; blanks < 1000; ++blanks)
            ftplisting::parseLine(start + QString(blanks, QLatin1Char(' ')) +
                                  QString(1000 - blanks, QLatin1Char('1')));
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
    }

    void staysSmallUnderEndlessLines()
    {
        Session session;
        session.server.answers["SITE"].fill('x', 100000000).append("\r\n200 Fine\r\n");
        session.queue("connect login raw");
        QTRY_VERIFY_WITH_TIMEOUT(session.isDone(), 6 * bound);
        QCOMPARE(session.log.last(), "done 0"_s);
#ifndef __SANITIZE_ADDRESS__
        // At its peak this process held the answer, the server's socket a copy of it, and the client little.
        QFile status("/proc/self/status"_s);
        const bool isKnown = status.open(QIODevice::ReadOnly);
        const QRegularExpression peak("VmHWM:\\s+(\\d+)"_s);
        QVERIFY(!isKnown || peak.match(QString::fromLatin1(status.readAll())).captured(1).toInt() < 230000);
#endif
    }
};

QTEST_GUILESS_MAIN(TestFtp)
#include "tst_ftp.moc"
