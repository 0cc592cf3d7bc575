// An FTP client with a scripted server of its own: what a test queues in words, and what the client then
// signals.
#pragma once

#include "ftp/qftp.h"
#include "tests/support/scriptedftpserver.h"
#include "tests/support/text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QProcess>
#include <QTemporaryFile>

constexpr int waitMs = 60000;
constexpr int largeBytes = 32 << 20;

// Without the pauses between looks that QTest::qWaitFor() makes.
inline bool waitUntil(const std::function<bool()> &isSo, int milliseconds = waitMs)
{
    const QDeadlineTimer end(milliseconds);
    QTimer wake;
    wake.start(20);
    while (!isSo() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return isSo();
}

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
                server.answers[answer.left(verbEnd)] = answer.mid(verbEnd + 1) + "\r\n";
        // Without a context object: signals out of a destructor would be heard as well.
        // clazy:excludeall=connect-3arg-lambda
        connect(ftp, &QFtp::stateChanged, [this](int state) { note("state %1", state); });
        connect(ftp, &QFtp::commandStarted, [this] { progress = {}, step("start"); });
        connect(ftp, &QFtp::commandFinished, [this](int id, bool error) {
            const bool isWhole = progress.second == 0 || progress.first == progress.second;
            note(error ? "failed %1" : isWhole ? "finished %1" : "incomplete %1", id - loginId);
        });
        connect(ftp, &QFtp::done, [this](bool bad) { note("done %1", bad ? ftp->errorString() : "well"_s); });
        connect(ftp, &QFtp::listInfo, [this](const QUrlInfo &info) { note("list %1", info.name()); });
        connect(ftp, &QFtp::dataTransferProgress, [this](qint64 bytes, qint64 total) {
            progress = {bytes, total};
            // A source is asked for a block when the one before it has left.
            if (file && file->pos() - bytes > 16384)
                log += "a source is read ahead"_s;
            bytes == 0 ? note("of %1", total) : step("progress");
        });
        connect(ftp, &QFtp::readyRead, [this] { note("ready %1", progress.first); });
        connect(ftp, &QFtp::rawCommandReply,
                [this](int code, const QString &text) { note("raw %1", text + QString::number(code)); });
    }

    ~FtpSession() override { delete ftp; }

    /// Queues the commands that these words stand for, and prepares the trouble; a number says how many
    /// seconds all of it may take.
    void queue(const QByteArray &words)
    {
        const auto meanings = meaningsOfWords();
        const QByteArrayList each = words.trimmed().split(' ');
        for (const QByteArray &word : each)
            meanings.value(word, [&] { longestMs = 1000 * word.toInt(); })();
    }

    /// All signals; the last one says how it ended.
    QString outcome() const { return log.join(", "_s); }

    bool isDone() const { return log.value(log.size() - 1).startsWith("done "_s); }

    ScriptedFtpServer server;
    QPointer<QFtp> ftp = new QFtp;
    QStringList log;
    QPair<qint64, qint64> progress;
    int longestMs = 9000;
    /// Told of every signal.
    std::function<void(const QByteArray &)> step = [](const QByteArray &) {};

private:
    // Commands, and then what happens to them.
    QHash<QByteArray, std::function<void()>> meaningsOfWords()
    {
        return {
            {"connect",
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
            {"close", [this] { ftp->close(); }},
            {"list", [this] { ftp->list("update"_s); }},
            {"get", [this] { ftp->get("f"_s); }},
            {"get-file", [this] { ftp->get("f"_s, fileOf(0)); }},
            {"get-full", [this] { ftp->get("f"_s, opened(new QFile("/dev/full"_s, ftp), 0)); }},
            {"put", [this] { ftp->put("abc", "f"_s); }},
            {"put-empty", [this] { ftp->put(QByteArray(), "f"_s, QFtp::Ascii); }},
            {"put-closed", [this] { ftp->put(new QFile("/missing"_s, ftp), "f"_s); }},
            {"put-file", [this] { ftp->put(fileOf(server.file.size()), "f"_s); }},
            {"put-large", [this] { ftp->put(fileOf(largeBytes), "f"_s); }},
            {"put-huge", [this] { ftp->put(fileOf(qint64(largeBytes) * 64 + 5), "f"_s); }},
            {"put-stream", [this] { ftp->put(pausingStream("exit"_s), "f"_s); }},
            {"put-endless", [this] { ftp->put(pausingStream("exec sleep 999"_s), "f"_s); }},
            {"no-folder", [this] { server.listing = "x: No such file or directory\r\nhalf"; }},
            {"no-last-word", [this] { server.confirmAfterMs = -1; }},
            {"late-last-word", [this] { server.confirmAfterMs = 6000; }},
            {"abort-at-password", [this] { before("PASS", [this] { ftp->abort(); }); }},
            {"abort-at-site", [this] { before("SITE", [this] { ftp->abort(); }); }},
            // Is faster than the server at the port that PORT names.
            {"stranger", [this] { before("PORT", [this] { server.openActive("127.0.0.2"); }); }},
            {"sink-gone", [this] { server.onTheWay = [this] { delete file, server.endData("12345"); }; }},
            {"source-gone", [this] { midway([this] { delete file; }); }},
            {"source-shrinks", [this] { midway([this] { qobject_cast<QFile *>(file)->resize(0); }); }},
            {"abort-midway", [this] { midway([this] { ftp->abort(); }); }},
            {"cut-at-once", [this] { before("ALLO", [this] { server.endData(); }); }},
            {"cut", [this] { midway([this] { server.endData(); }); }},
            {"reset", [this] { midway([this] { server.data->abort(); }); }},
            {"cut-done", [this] { midway([this] { server.reply("226 Done\r\n"), server.endData(); }); }},
            {"endless", [this] { sendBehindEnd([this] { drip(); }); }},
            {"hang-up-abort", [this] { sendBehindEnd([this] { hangUp([this] { ftp->abort(); }); }); }},
            {"hang-up-done", [this] { sendBehindEnd([this] { hangUp([this] { server.endData(); }); }); }}};
    }

    void note(const char *text, const QVariant &value)
    {
        log += QString::fromLatin1(text).arg(value.toString());
        step(log.last().toLatin1());
    }

    // What happens at this verb, before the server answers.
    void before(const QByteArray &verb, const std::function<void()> &act)
    {
        server.takeOver = [=](const QByteArray &heard) { return heard == verb && (act(), false); };
    }

    // What happens in an upload, which a stream that pauses reaches only if it goes on.
    void midway(const std::function<void()> &act)
    {
        server.onTheWay = [=] {
            connect(server.data, &QTcpSocket::readyRead, this,
                    [=] { server.uploadedBytes > 200000 ? act() : void(); });
        };
    }

    QFile *fileOf(qint64 bytes) { return opened(new QTemporaryFile(ftp), bytes); }

    QFile *opened(QFile *sourceOrSink, qint64 bytes)
    {
        sourceOrSink->open(QIODevice::ReadWrite | QIODevice::Unbuffered);
        sourceOrSink->resize(bytes);
        file = sourceOrSink;
        return sourceOrSink;
    }

    QIODevice *pausingStream(const QString &end)
    {
        const QString half = "head -c 100500 /dev/zero; "_s;
        auto *const process = new QProcess(ftp);
        process->start("/bin/sh"_s, {"-c"_s, half + "sleep .1; "_s + half + end});
        file = process;
        return process;
    }

    // Of the control connection, and what happens when the client has seen that.
    void hangUp(const std::function<void()> &then) const
    {
        server.control->disconnectFromHost();
        connect(ftp, &QFtp::stateChanged, server.data, [=](int state) { state == 0 ? then() : void(); });
    }

    // The last reply comes behind the first data; then the data connection stays open, but for this.
    void sendBehindEnd(const std::function<void()> &then)
    {
        server.onTheWay = [=] {
            connect(ftp, &QFtp::readyRead, server.data, [=] {
                if (progress.first == server.file.size())
                    server.reply("226 Done\r\n"), then();
            });
            server.data->write(server.file);
        };
    }

    // The second drop comes later than a standstill would be put up with.
    void drip()
    {
        for (const int ms : {5000, 32000})
            QTimer::singleShot(ms, server.data, [this, one = ' ']() mutable {
                ftp->read(&one, 1), ftp->readAll(), server.data->write("6");
            });
    }

    int loginId = 0;
    QPointer<QIODevice> file;
};
