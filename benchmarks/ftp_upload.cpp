// Uploads over loopback to a server that throws everything away: how fast, beside curl with the same server
// and file, and with how much memory. Run without arguments; every measured client is a process of its own.
#include "ftp/qftp.h"
#include "tests/support/scriptedftpserver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTextStream>
#include <QVector>

#include <algorithm>
#include <array>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr qint64 gibibyte = qint64(1) << 30;
constexpr qint64 mebibyte = qint64(1) << 20;
constexpr qint64 parallelFileBytes = 32 * mebibyte;
constexpr int pairs = 20;
constexpr int parallelUploads = 100;
constexpr double wantedThroughputRatio = 1.0;
constexpr double wantedProcessorRatio = 1.0;
constexpr qint64 wantedBytesPerUpload = qint64(64) * 1024;
constexpr std::size_t sinkBytes = std::size_t(64) * 1024;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

// Each server has one client at a time.
QHostAddress serverAddress(int number)
{
    return QHostAddress(QStringLiteral("127.0.1.%1").arg(number + 1));
}

// Takes what the server is sent. Reads as the usual servers do, and is faster than they are, for it stores
// nothing: in a thread, for an event loop would be slower than the clients.
class Sink : public QTcpServer
{
public:
    explicit Sink(ScriptedFtpServer *ftpServer) : server(ftpServer)
    {
        listen(server->serverAddress());
        server->answers["EPSV"] = "229 Extended (|||" + QByteArray::number(serverPort()) + "|)\r\n";
        server->answers["PASV"] = "227 Passive (" + server->passiveAddress(serverPort()) + ")\r\n";
        server->answers["STOR"] = "150 Go\r\n";
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        std::thread([this, data = static_cast<int>(descriptor)] {
            fcntl(data, F_SETFL, 0); // waits for what comes, as the toolkit's sockets never do
            std::array<char, sinkBytes> buffer;
            while (recv(data, buffer.data(), buffer.size(), 0) > 0)
                continue;
            ::close(data);
            QMetaObject::invokeMethod(this, [this] { server->reply("226 Done\r\n"); });
        }).detach();
    }

private:
    ScriptedFtpServer *const server;
};

// As many as there may be clients, in a process of their own.
int serve()
{
    QObject servers;
    quint16 port = 0;
    for (int number = 0; number < parallelUploads; ++number) {
        auto *const server = new ScriptedFtpServer(serverAddress(number), port);
        server->setParent(&servers);
        (new Sink(server))->setParent(server);
        port = server->serverPort();
    }
    out() << port << '\n';
    out().flush();
    return QCoreApplication::exec();
}

struct Cost {
    double seconds = 0;
    double processorSeconds = 0;
    qint64 peakBytes = 0;
    bool succeeded = false;
};

Cost run(const QStringList &command)
{
    QVector<QByteArray> texts;
    for (const QString &word : command)
        texts += word.toLocal8Bit();
    QVector<char *> words;
    for (QByteArray &text : texts)
        words += text.data();
    words += nullptr;

    QElapsedTimer timer;
    timer.start();
    const pid_t child = fork();
    if (child == 0) {
        execv(words.first(), words.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {static_cast<double>(timer.nsecsElapsed()) / 1e9,
            seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss * 1024,
            WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

struct Client {
    QStringList command;
    QVector<double> times;
    QVector<double> loads;
};

bool compareWithCurl(quint16 port, const QString &self, const QString &file)
{
    const QString curl = QStandardPaths::findExecutable(QStringLiteral("curl"));
    if (curl.isEmpty()) {
        out() << "curl is not installed\n";
        return false;
    }
    const QString number = QString::number(port);
    Client ours{{self, QStringLiteral("client"), number, file, QStringLiteral("1")}, {}, {}};
    Client theirs{{curl, QStringLiteral("-s"), QStringLiteral("-T"), file,
                   QStringLiteral("ftp://%1:%2/x").arg(serverAddress(0).toString()).arg(port)},
                  {},
                  {}};
    Client bare{{self, QStringLiteral("bare"), number, file}, {}, {}};
    run(theirs.command); // brings the file into the memory
    out() << "pair    ours s  (CPU s)    curl s  (CPU s)    bare s  (CPU s)\n";
    for (int pair = 1; pair <= pairs; ++pair) {
        out() << QString::asprintf("%4d", pair);
        for (Client *const client : {&ours, &theirs, &bare}) {
            const Cost cost = run(client->command);
            if (!cost.succeeded) {
                out() << " an upload failed\n";
                return false;
            }
            client->times += cost.seconds;
            client->loads += cost.processorSeconds;
            out() << QString::asprintf("  %8.3f  (%5.3f)", cost.seconds, cost.processorSeconds);
        }
        out() << '\n';
        out().flush();
    }
    const double throughput = median(theirs.times) / median(ours.times);
    const double processor = median(ours.loads) / median(theirs.loads);
    out() << QString::asprintf(
        "medians, ours / curl: throughput %.2f (at least %.1f), CPU %.2f (at most %.1f)\n", throughput,
        wantedThroughputRatio, processor, wantedProcessorRatio);
    return throughput >= wantedThroughputRatio && processor <= wantedProcessorRatio;
}

bool measureMemory(quint16 port, const QString &self, QTemporaryFile *file)
{
    const auto peak = [&](qint64 fileBytes, int uploads) {
        file->resize(fileBytes);
        return run({self, QStringLiteral("client"), QString::number(port), file->fileName(),
                    QString::number(uploads)});
    };
    const Cost idle = peak(mebibyte, 0);
    const Cost small = peak(mebibyte, 1);
    const Cost large = peak(gibibyte, 1);
    const Cost many = peak(parallelFileBytes, parallelUploads);
    const qint64 each = (many.peakBytes - idle.peakBytes) / parallelUploads;
    out() << "peak memory in KiB: idle " << idle.peakBytes / 1024 << ", 1 MiB " << small.peakBytes / 1024
          << ", 1 GiB " << large.peakBytes / 1024 << ", " << parallelUploads << " at once "
          << many.peakBytes / 1024 << " (" << each / 1024 << " each, at most " << wantedBytesPerUpload / 1024
          << ")\n";
    return small.succeeded && large.succeeded && many.succeeded && each <= wantedBytesPerUpload;
}

int measure(const QString &self)
{
    QProcess server;
    server.start(self, {QStringLiteral("serve")});
    server.waitForReadyRead();
    const quint16 port = server.readLine().trimmed().toUShort();
    QTemporaryFile file;
    const bool isReady = file.open() && file.resize(gibibyte);
    const bool isFast = isReady && compareWithCurl(port, self, file.fileName());
    const bool isSmall = isReady && measureMemory(port, self, &file);
    server.kill();
    server.waitForFinished();
    return isFast && isSmall ? 0 : 1;
}

int upload(quint16 port, const QString &fileName, int uploads)
{
    int running = uploads;
    bool failed = false;
    for (int i = 0; i < uploads; ++i) {
        auto *const ftp = new QFtp(QCoreApplication::instance());
        auto *const file = new QFile(fileName, ftp);
        if (!file->open(QIODevice::ReadOnly))
            return 1;
        // The event loop below ends before these locals do. clazy:excludeall=lambda-in-connect
        QObject::connect(ftp, &QFtp::done, ftp, [&](bool error) {
            failed = failed || error;
            if (--running == 0)
                QCoreApplication::quit();
        });
        ftp->connectToHost(serverAddress(i).toString(), port);
        ftp->login();
        ftp->put(file, QStringLiteral("image"));
        ftp->close();
    }
    if (uploads > 0)
        QCoreApplication::exec();
    return failed ? 1 : 0;
}

int connectTo(quint16 port)
{
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    if (connection < 0)
        return -1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(serverAddress(0).toIPv4Address());
    const int noDelay = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
    return connect(connection, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 ? connection : -1;
}

// The same blocks by system calls alone, each sent for itself.
int uploadBare(quint16 port, const QString &fileName)
{
    QTcpSocket control;
    control.connectToHost(serverAddress(0), port);
    const auto ask = [&](const QByteArray &command) {
        control.write(command);
        while (!control.canReadLine() && control.waitForReadyRead()) {
        }
        return control.readLine();
    };
    ask({}); // the greeting
    const int data = connectTo(ask("EPSV\r\n").split('|').value(3).toUShort());
    ask("STOR x\r\n");
    const int source = open(fileName.toLocal8Bit().constData(), O_RDONLY);
    if (data < 0 || source < 0)
        return 1;
    std::array<char, 16384> block;
    ssize_t count = 0;
    while ((count = read(source, block.data(), block.size())) > 0) {
        if (write(data, block.data(), static_cast<std::size_t>(count)) != count)
            return 1;
    }
    close(data);
    return count == 0 && ask({}).startsWith("226") ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && arguments.at(1) == QLatin1String("client"))
        return upload(arguments.at(2).toUShort(), arguments.at(3), arguments.at(4).toInt());
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("bare"))
        return uploadBare(arguments.at(2).toUShort(), arguments.at(3));
    if (arguments.size() == 2 && arguments.at(1) == QLatin1String("serve"))
        return serve();
    return measure(QCoreApplication::applicationFilePath());
}
