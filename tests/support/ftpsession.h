// An FTP client with a scripted server of its own: what a test queues in words, and what the client then
// signals.
#pragma once

#include "ftp/qftp.h"
#include "tests/support/scriptedftpserver.h"
#include "tests/support/text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QPointer>

#include <algorithm>

constexpr int longestWaitMs = 10000;
constexpr qint64 largeBytes = qint64(32) << 20;

// Without the pauses between looks that QTRY_VERIFY makes.
inline bool waitUntil(const std::function<bool()> &isSo, int milliseconds = longestWaitMs)
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
    /// Makes so many bytes, or what it returns instead.
    std::function<qint64(qint64)> make = [](qint64 count) { return count; };
};

// Writes down what the client signals, with its ids counted from the last login.
class FtpSession : public QObject
{
public:
    /// What the server says instead of what it usually does: "VERB text|VERB text", the greeting without a
    /// verb.
    explicit FtpSession(const QByteArray &answers = {}, const QHostAddress &host = QHostAddress::LocalHost)
        : server(host)
    {
        const QByteArrayList each = answers.split('|');
        for (const QByteArray &answer : each)
            if (const int verbEnd = answer.indexOf(' '); verbEnd >= 0)
                server.answers[answer.left(verbEnd)] = answer.mid(verbEnd + 1);
        // Without a context object: signals out of a destructor would be heard as well.
        // clazy:excludeall=connect-3arg-lambda
        connect(ftp, &QFtp::stateChanged, [this](int state) { note("state %1", state); });
        connect(ftp, &QFtp::commandStarted, [this] {
            progress = {};
            step("start");
        });
        connect(ftp, &QFtp::commandFinished, [this](int id, bool error) {
            const bool isWhole = progress.first >= progress.second;
            note(error ? "failed %1" : isWhole ? "finished %1" : "incomplete %1", id - loginId);
        });
        connect(ftp, &QFtp::done, [this](bool error) { note("done %1", int(error)); });
        connect(ftp, &QFtp::listInfo, [this](const QUrlInfo &info) { note("list %1", info.name()); });
        connect(ftp, &QFtp::dataTransferProgress, [this](qint64 bytes, qint64 total) {
            progress = {bytes, total};
            bytes == 0 ? note("of %1", total) : step("progress");
        });
        connect(ftp, &QFtp::readyRead, [this] { note("ready %1", progress.first); });
        connect(ftp, &QFtp::rawCommandReply,
                [this](int code, const QString &text) { note("raw %1", text + QString::number(code)); });
    }

    ~FtpSession() override { delete ftp; }

    /// Queues the commands that these words stand for, and prepares the trouble.
    void queue(const QByteArray &words)
    {
        Meanings meanings = commands();
        meanings.insert(transfers());
        meanings.insert(troubles());
        const QByteArrayList each = words.trimmed().split(' ');
        for (const QByteArray &word : each)
            meanings.value(word)();
    }

    /// All signals.
    QString outcome() const { return log.join(", "_s); }

    bool isDone() const { return log.value(log.size() - 1).startsWith("done "_s); }

    ScriptedFtpServer server;
    QPointer<QFtp> ftp = new QFtp;
    QStringList log;
    QPair<qint64, qint64> progress;
    /// Told of every signal.
    std::function<void(const QByteArray &)> step = [](const QByteArray &) {};

private:
    using Meanings = QHash<QByteArray, std::function<void()>>;

    Meanings commands()
    {
        return {{"connect",
                 [this] { ftp->connectToHost(server.serverAddress().toString(), server.serverPort()); }},
                {"connect-boat", [this] { ftp->connectToHost("boat.invalid"_s, 2121); }},
                {"connect-closed", [this] { ftp->connectToHost("127.0.0.1"_s, 1); }},
                {"connect-nowhere", [this] { ftp->connectToHost("255.255.255.255"_s); }},
                {"proxy", [this] { ftp->setProxy("127.0.0.1"_s, server.serverPort()); }},
                {"no-proxy", [this] { ftp->setProxy(QString(), 0); }},
                {"login", [this] { loginId = ftp->login("kwz"_s, "secret"_s); }},
                {"guest", [this] { ftp->login(); }},
                {"active", [this] { ftp->setTransferMode(QFtp::Active); }},
                {"cd", [this] { ftp->cd("update"_s); }},
                {"mkdir", [this] { ftp->mkdir("\u00fc"_s); }},
                {"rmdir", [this] { ftp->rmdir("a %1"_s); }},
                {"rename", [this] { ftp->rename("b"_s, "c"_s); }},
                {"remove", [this] { ftp->remove("d"_s); }},
                {"raw", [this] { ftp->rawCommand(" SITE x \n"_s); }},
                {"close", [this] { ftp->close(); }}};
    }

    Meanings transfers()
    {
        const auto get = [this](QIODevice *sink) { ftp->get("f"_s, sink); };
        const auto put = [this](QIODevice *source) { ftp->put(source, "f"_s); };
        return {
            {"list", [this] { ftp->list("update"_s); }},
            {"get", [=] { get(nullptr); }},
            {"get-full-disk", [=] { get(new MadeUpDevice(0, ftp)); }},
            {"get-sink-gone", [=] { get(vanishingDevice()); }},
            {"put", [this] { ftp->put("abc", "f"_s); }},
            {"put-empty", [this] { ftp->put(QByteArray(), "f"_s, QFtp::Ascii); }},
            {"put-closed", [=] { put(new QFile("/missing"_s, ftp)); }},
            {"put-device", [=] { put(new MadeUpDevice(server.file.size(), ftp)); }},
            {"put-large", [=] { put(new MadeUpDevice(largeBytes, ftp)); }},
            {"put-huge", [=] { put(pacedSource((qint64(1) << 32) + 5)); }},
            {"put-shrinking", [=] { put(endingSource(0, [](QObject *) {})); }},
            {"put-failing", [=] { put(endingSource(-1, [](QObject *) {})); }},
            {"put-vanishing", [=] { put(endingSource(1, [](QObject *source) { source->deleteLater(); })); }},
            {"put-gone", [=] { put(vanishingDevice()); }},
            {"put-abort",
             [=] { put(endingSource(1, [this](QObject *) { QTimer::singleShot(0, ftp, &QFtp::abort); })); }},
            {"put-waiting", [=] { put(pausingStream()); }}};
    }

    Meanings troubles()
    {
        return {
            {"no-folder", [this] { server.listing = "x: No such file or directory\r\nhalf"; }},
            {"no-last-word", [this] { server.cutsByReset = true; }},
            {"late-last-word", [this] { server.confirmAfterMs = 6000; }},
            {"cut-at-once", [this] { server.cutAt = 0; }},
            {"cut", [this] { server.cutAt = largeBytes / 8; }},
            {"reset", [this] { server.cutAt = largeBytes / 8, server.cutsByReset = true; }},
            {"hang-up", [this] { insteadOf("", [this] { server.control->disconnectFromHost(); }); }},
            {"abort-at-password", [this] { before("PASS", [this] { ftp->abort(); }); }},
            {"deaf-port", [this] { insteadOf("PASV", [this] { nameDeafPort(); }); }},
            // Is faster than the server at the port that PORT names.
            {"stranger",
             [this] {
                 before("PORT", [this] { server.openActive(server.lines.last().mid(5), "127.0.0.2"); });
             }},
            {"late-connection", [this] { insteadOf("RETR", [this] { connectAfterLastWord(); }); }},
            {"endless", [this] { insteadOf("RETR", [this] { sendBehindLastWord([] {}); }); }},
            {"endless-lost",
             [this] { insteadOf("RETR", [this] { sendBehindLastWord([this] { hangUp(); }); }); }},
            {"dripping", [this] { insteadOf("RETR", [this] { sendBehindLastWord([this] { drip(); }); }); }}};
    }

    void note(const char *text, const QVariant &value)
    {
        log += QString::fromLatin1(text).arg(value.toString());
        step(log.last().toLatin1());
    }

    // What the server does at this verb.
    void insteadOf(const QByteArray &verb, const std::function<void()> &act)
    {
        server.takeOver = [=](const QByteArray &heard) { return heard == verb && (act(), true); };
    }

    void before(const QByteArray &verb, const std::function<void()> &act)
    {
        server.takeOver = [=](const QByteArray &heard) { return heard == verb && (act(), false); };
    }

    QIODevice *vanishingDevice() const
    {
        auto *const device = new MadeUpDevice(0, ftp);
        connect(ftp, &QFtp::dataTransferProgress, device, [device] { delete device; });
        return device;
    }

    // Expects to be asked for a block when the one before it has left.
    QIODevice *pacedSource(qint64 size)
    {
        auto *const source = new MadeUpDevice(size, ftp);
        source->make = [this, source](qint64 count) {
            return count <= 16384 && progress.first == source->pos() ? count : -1;
        };
        return source;
    }

    // In the middle of it something happens, and the last read may fail.
    QIODevice *endingSource(int lastRead, const std::function<void(QObject *)> &atLast) const
    {
        auto *source = new MadeUpDevice(10000000, ftp);
        source->make = [=](qint64 count) {
            if (source->pos() < 100000)
                return count;
            atLast(source);
            return qint64(lastRead);
        };
        return source;
    }

    // Pauses, goes on and pauses again; then the server does not wait for more of it.
    QIODevice *pausingStream()
    {
        auto *source = new MadeUpDevice(100000, ftp);
        source->isStream = true;
        source->make = [this, source, reads = 0](qint64 count) mutable {
            if (++reads == 2)
                QTimer::singleShot(0, source, &QIODevice::readyRead);
            else if (reads == 4)
                QTimer::singleShot(0, &server, [this] { server.endData("unasked"); });
            return reads % 2 == 0 ? 0 : count;
        };
        return source;
    }

    // The client hears of the last reply before it hears of the connection, which ends later still.
    void connectAfterLastWord()
    {
        connect(ftp, &QFtp::readyRead, &server, [this] { server.endData(); });
        server.openActive(server.lines.at(server.lines.size() - 2).mid(5));
        server.data->waitForConnected(longestWaitMs);
        server.data->write(server.file);
        server.reply("150 Go\r\n226 Done\r\n200 Unasked\r\n");
    }

    // It has as many connections waiting as the system keeps, so that one more is not even refused.
    void nameDeafPort()
    {
        auto *const deaf = new QTcpServer(&server);
        deaf->listen(server.serverAddress());
        deaf->pauseAccepting();
        for (int waiting = 0; waiting < 100; ++waiting)
            (new QTcpSocket(deaf))->connectToHost(deaf->serverAddress(), deaf->serverPort());
        server.reply("227 (" + server.passiveAddress(deaf->serverPort()) + ")\r\n");
    }

    // The last reply comes behind the first data; then the data connection stays open.
    void sendBehindLastWord(const std::function<void()> &then)
    {
        connect(ftp, &QFtp::readyRead, server.data, [this, then] {
            server.reply("226 Done\r\n");
            then();
        });
        server.reply("150 Go\r\n");
        server.data->write(server.file);
    }

    void hangUp()
    {
        server.control->disconnectFromHost();
        connect(ftp, &QFtp::stateChanged, server.data,
                [this](int state) { state == 0 ? ftp->abort() : void(); });
    }

    // Slowly, but never so slowly that it stands still.
    void drip()
    {
        QTimer::singleShot(18000, server.data, [this] { server.data->write("6"); });
        QTimer::singleShot(34000, server.data, [this] { server.endData(); });
    }

    int loginId = 0;
};
