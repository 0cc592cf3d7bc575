#include "ftp/qftp.h"

#include "ftp/networksession.h"
#include "ftp/qftppi.h"

#include <QIODevice>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <deque>
#include <optional>
#include <utility>

namespace
{

constexpr quint16 standardPort = 21;

// Ids are unique in the whole process, so that a slot may serve several clients.
int nextId()
{
    static std::atomic<int> last{0};
    return ++last;
}

// Binds no arguments, so that a name with a "%1" in it stays as it is.
QString line(const char *word, const QString &argument)
{
    return QLatin1String(word) + QLatin1Char(' ') + argument + QLatin1String("\r\n");
}

QString typeLine(QFtp::TransferType type)
{
    return type == QFtp::Binary ? QStringLiteral("TYPE I\r\n") : QStringLiteral("TYPE A\r\n");
}

QString dataConnectionLine(QFtp::TransferMode mode)
{
    return mode == QFtp::Passive ? QStringLiteral("PASV\r\n") : QStringLiteral("PORT\r\n");
}

// The proxy logs in at the real host, which it is told with the user's name.
QString proxyUserLine(const QString &userLine, const QString &host, quint16 port)
{
    QString text = userLine.trimmed() + QLatin1Char('@') + host;
    if (port != 0 && port != standardPort)
        text += QLatin1Char(':') + QString::number(port);
    return text + QLatin1String("\r\n");
}

QString failureText(QFtp::Command command, const QString &text)
{
    switch (command) {
    case QFtp::ConnectToHost:
        return QFtp::tr("Connecting to host failed:\n%1").arg(text);
    case QFtp::Login:
        return QFtp::tr("Login failed:\n%1").arg(text);
    case QFtp::List:
        return QFtp::tr("Listing directory failed:\n%1").arg(text);
    case QFtp::Cd:
        return QFtp::tr("Changing directory failed:\n%1").arg(text);
    case QFtp::Get:
        return QFtp::tr("Downloading file failed:\n%1").arg(text);
    case QFtp::Put:
        return QFtp::tr("Uploading file failed:\n%1").arg(text);
    case QFtp::Remove:
        return QFtp::tr("Removing file failed:\n%1").arg(text);
    case QFtp::Mkdir:
        return QFtp::tr("Creating directory failed:\n%1").arg(text);
    case QFtp::Rmdir:
        return QFtp::tr("Removing directory failed:\n%1").arg(text);
    default:
        return text;
    }
}

} // namespace

struct QFtp::Request {
    Request(Command kind, QStringList lines) : command(kind), rawCmds(std::move(lines)) {}

    Command command;
    /// For ConnectToHost and SetProxy host and port, else the lines to send.
    QStringList rawCmds;
    bool is_ba = false;
    QByteArray data;
    QPointer<QIODevice> device;
    int id = 0;
};

struct QFtp::Private {
    QFtpPI *pi;
    std::deque<Request> pending;
    State state = Unconnected;
    TransferMode transferMode = Passive;
    Error error = NoError;
    QString errorString = tr("Unknown error");
    QString host;
    quint16 port = 0;
    QString proxyHost;
    quint16 proxyPort = 0;
    bool close_waitForStateChange = false;
};

QFtp::QFtp(QObject *parent) : QObject(parent), d(std::make_unique<Private>())
{
    d->pi = new QFtpPI(this);
    connect(d->pi, &QFtpPI::connectState, this, &QFtp::_q_piConnectState);
    connect(d->pi, &QFtpPI::finished, this, &QFtp::_q_piFinished);
    connect(d->pi, QOverload<int, const QString &>::of(&QFtpPI::error), this, &QFtp::_q_piError);
    connect(d->pi, &QFtpPI::rawFtpReply, this, &QFtp::_q_piFtpReply);
    const QFtpDTP *const dtp = &d->pi->dataTransfer();
    connect(dtp, &QFtpDTP::readyRead, this, &QFtp::readyRead);
    connect(dtp, &QFtpDTP::dataTransferProgress, this, &QFtp::dataTransferProgress);
    connect(dtp, &QFtpDTP::listInfo, this, &QFtp::listInfo);
}

QFtp::~QFtp()
{
    // The farewell to the server must not come back as signals of an object that is half gone.
    d->pi->disconnect(this);
    d->pi->dataTransfer().disconnect(this);
    if (!d->pending.empty())
        d->pi->abort();
    delete d->pi;
}

int QFtp::connectToHost(const QString &host, quint16 port)
{
    d->pi->setTransferConnectionExtended(true);
    return enqueue({ConnectToHost, {host, QString::number(port)}});
}

int QFtp::login(const QString &user, const QString &password)
{
    return enqueue({Login,
                    {line("USER", user.isNull() ? QStringLiteral("anonymous") : user),
                     line("PASS", password.isNull() ? QStringLiteral("anonymous@") : password)}});
}

int QFtp::close()
{
    return enqueue({Close, {QStringLiteral("QUIT\r\n")}});
}

int QFtp::setTransferMode(TransferMode mode)
{
    d->transferMode = mode;
    d->pi->setTransferConnectionExtended(true);
    return enqueue({SetTransferMode, {}});
}

int QFtp::setProxy(const QString &host, quint16 port)
{
    return enqueue({SetProxy, {host, QString::number(port)}});
}

int QFtp::list(const QString &dir)
{
    return enqueue({List,
                    {typeLine(Ascii), dataConnectionLine(d->transferMode),
                     dir.isEmpty() ? QStringLiteral("LIST\r\n") : line("LIST", dir)}});
}

int QFtp::cd(const QString &dir)
{
    return enqueue({Cd, {line("CWD", dir)}});
}

int QFtp::get(const QString &file, QIODevice *dev, TransferType type)
{
    Request request{
        Get, {typeLine(type), line("SIZE", file), dataConnectionLine(d->transferMode), line("RETR", file)}};
    request.device = dev;
    return enqueue(std::move(request));
}

int QFtp::put(const QByteArray &data, const QString &file, TransferType type)
{
    Request request{Put,
                    {typeLine(type), dataConnectionLine(d->transferMode),
                     line("ALLO", QString::number(data.size())), line("STOR", file)}};
    request.is_ba = true;
    request.data = data;
    return enqueue(std::move(request));
}

int QFtp::put(QIODevice *dev, const QString &file, TransferType type)
{
    QStringList lines{typeLine(type), dataConnectionLine(d->transferMode)};
    if (dev && !dev->isSequential())
        lines += line("ALLO", QString::number(dev->size()));
    lines += line("STOR", file);
    Request request{Put, lines};
    request.device = dev;
    return enqueue(std::move(request));
}

int QFtp::remove(const QString &file)
{
    return enqueue({Remove, {line("DELE", file)}});
}

int QFtp::mkdir(const QString &dir)
{
    return enqueue({Mkdir, {line("MKD", dir)}});
}

int QFtp::rmdir(const QString &dir)
{
    return enqueue({Rmdir, {line("RMD", dir)}});
}

int QFtp::rename(const QString &oldName, const QString &newName)
{
    return enqueue({Rename, {line("RNFR", oldName), line("RNTO", newName)}});
}

int QFtp::rawCommand(const QString &command)
{
    return enqueue({RawCommand, {command.trimmed() + QLatin1String("\r\n")}});
}

int QFtp::enqueue(Request request)
{
    request.id = nextId();
    const int id = request.id;
    d->pending.push_back(std::move(request));
    // The caller has to know the id before commandStarted() tells it.
    if (d->pending.size() == 1)
        QTimer::singleShot(0, this, &QFtp::_q_startNextCommand);
    return id;
}

qint64 QFtp::bytesAvailable() const
{
    return d->pi->dataTransfer().bytesAvailable();
}

qint64 QFtp::read(char *data, qint64 maxlen)
{
    return d->pi->dataTransfer().read(data, maxlen);
}

QByteArray QFtp::readAll()
{
    return d->pi->dataTransfer().readAll();
}

int QFtp::currentId() const
{
    return d->pending.empty() ? 0 : d->pending.front().id;
}

QFtp::Command QFtp::currentCommand() const
{
    return d->pending.empty() ? None : d->pending.front().command;
}

QIODevice *QFtp::currentDevice() const
{
    return d->pending.empty() ? nullptr : d->pending.front().device.data();
}

bool QFtp::hasPendingCommands() const
{
    return d->pending.size() > 1;
}

void QFtp::clearPendingCommands()
{
    while (d->pending.size() > 1)
        d->pending.pop_back();
}

QFtp::State QFtp::state() const
{
    return d->state;
}

QFtp::Error QFtp::error() const
{
    return d->error;
}

QString QFtp::errorString() const
{
    return d->errorString;
}

void QFtp::abort()
{
    if (d->pending.empty())
        return;
    clearPendingCommands();
    d->pi->abort();
}

void QFtp::_q_startNextCommand()
{
    const QPointer<QFtp> self = this;
    // Commands that need no server end at once: a loop, so that a long row of them does not nest.
    while (!d->pending.empty()) {
        d->error = NoError;
        d->errorString = tr("Unknown error");
        d->pi->dataTransfer().resetTransfer();
        const int id = currentId();
        emit commandStarted(id);
        if (!self || currentId() != id || !carryOut(d->pending.front()) || !finishCommand(false))
            return;
    }
}

// True when the command is over already; false while it runs, and when a slot may have ended it or this
// object.
bool QFtp::carryOut(const Request &request)
{
    switch (request.command) {
    case SetTransferMode:
        return true;
    case SetProxy:
        d->proxyHost = request.rawCmds.at(0);
        d->proxyPort = request.rawCmds.at(1).toUShort();
        return true;
    case ConnectToHost:
        startConnecting(request.rawCmds.at(0), request.rawCmds.at(1).toUShort());
        return false;
    default:
        sendLines(request);
        return false;
    }
}

void QFtp::startConnecting(const QString &host, quint16 port)
{
    copyNetworkSession(this, d->pi);
    if (d->proxyHost.isEmpty()) {
        d->pi->connectToHost(host, port);
        return;
    }
    d->host = host;
    d->port = port;
    d->pi->connectToHost(d->proxyHost, d->proxyPort);
}

void QFtp::sendLines(const Request &request)
{
    const QPointer<QFtp> self = this;
    QStringList lines = request.rawCmds;
    if (request.command == Login && !d->proxyHost.isEmpty())
        lines.first() = proxyUserLine(lines.first(), d->host, d->port);
    else if (request.command == Put)
        startUpload(request);
    else if (request.command == Get && request.device)
        d->pi->dataTransfer().setDevice(request.device);
    else if (request.command == Close)
        _q_piConnectState(Closing);
    if (self)
        d->pi->sendCommands(lines);
}

void QFtp::startUpload(const Request &request)
{
    QFtpDTP *const dtp = &d->pi->dataTransfer();
    if (request.is_ba) {
        dtp->setData(&request.data);
        dtp->setBytesTotal(request.data.size());
        return;
    }
    QIODevice *const device = request.device;
    if (!device || !(device->isOpen() || device->open(QIODevice::ReadOnly))) {
        dtp->setDevice(nullptr);
        dtp->setBytesTotal(0);
        return;
    }
    dtp->setDevice(device);
    connect(device, &QObject::destroyed, dtp, &QFtpDTP::dataReadyRead, Qt::UniqueConnection);
    if (device->isSequential()) {
        connect(device, &QIODevice::readyRead, dtp, &QFtpDTP::dataReadyRead, Qt::UniqueConnection);
        connect(device, &QIODevice::readChannelFinished, dtp, &QFtpDTP::dataReadyRead, Qt::UniqueConnection);
    }
    dtp->setBytesTotal(device->isSequential() ? 0 : device->size());
}

void QFtp::_q_piFinished(const QString & /*text*/)
{
    if (d->pending.empty())
        return;
    // The user is told of the closed connection before the close is over.
    if (currentCommand() == Close && d->state != Unconnected) {
        d->close_waitForStateChange = true;
        return;
    }
    if (finishCommand(false))
        _q_startNextCommand();
}

void QFtp::_q_piError(int code, const QString &text)
{
    if (d->pending.empty()) {
        qWarning("QFtpPrivate::_q_piError was called without pending command!");
        return;
    }
    const Command command = currentCommand();
    const QString sent = d->pi->currentCommand();
    // A server that cannot tell the size, or needs no room made, can still transfer the file.
    if (command == Get && sent.startsWith(QLatin1String("SIZE "))) {
        d->pi->dataTransfer().setBytesTotal(0);
        return;
    }
    if (command == Put && sent.startsWith(QLatin1String("ALLO ")))
        return;
    d->error = static_cast<Error>(code);
    d->errorString = failureText(command, text);
    d->pi->clearPendingCommands();
    clearPendingCommands();
    if (finishCommand(true))
        _q_startNextCommand();
}

// True when another command is to be started now.
bool QFtp::finishCommand(bool failed)
{
    const QPointer<QFtp> self = this;
    const int id = currentId();
    emit commandFinished(id, failed);
    if (!self || currentId() != id)
        return false;
    d->pending.pop_front();
    if (!d->pending.empty())
        return true;
    emit done(failed);
    return false;
}

void QFtp::_q_piConnectState(int connectState)
{
    const QPointer<QFtp> self = this;
    d->state = static_cast<State>(connectState);
    emit stateChanged(connectState);
    if (!self.isNull() && std::exchange(d->close_waitForStateChange, false))
        _q_piFinished(tr("Connection closed"));
}

void QFtp::_q_piFtpReply(int code, const QString &text)
{
    if (currentCommand() != RawCommand)
        return;
    d->pi->markReplyRaw();
    emit rawCommandReply(code, text);
}
