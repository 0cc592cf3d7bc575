#include "ftp/qftp.h"

#include "ftp/networksession.h"
#include "ftp/qftppi.h"

#include <QIODevice>
#include <QPointer>
#include <QStringList>

#include <atomic>
#include <deque>
#include <utility>
#include <variant>

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
    enum class Stage { Queued, Aborted, Running };
    using Device = QPointer<QIODevice>;

    Request(Command kind, QStringList lines) : command(kind), rawCmds(std::move(lines)) {}

    Command command;
    /// For ConnectToHost and SetProxy host and port, else the lines to send.
    QStringList rawCmds;
    /// What is uploaded, or downloaded into.
    std::variant<std::monostate, QByteArray, Device> data;
    Stage stage = Stage::Queued;
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
    connect(d->pi, &QFtpPI::dataArrived, this, &QFtp::readyRead);
    connect(d->pi, &QFtpPI::dataTransferProgress, this, &QFtp::dataTransferProgress);
    connect(d->pi, &QFtpPI::listInfo, this, &QFtp::listInfo);
}

QFtp::~QFtp()
{
    // The farewell to the server must not come back as signals of an object that is half gone.
    d->pi->disconnect(this);
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
    if (dev)
        request.data = Request::Device(dev);
    return enqueue(std::move(request));
}

int QFtp::put(const QByteArray &data, const QString &file, TransferType type)
{
    Request request{Put,
                    {typeLine(type), dataConnectionLine(d->transferMode),
                     line("ALLO", QString::number(data.size())), line("STOR", file)}};
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
    request.data = Request::Device(dev);
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
        d->pi->post(this, [this] { _q_startNextCommand(); });
    return id;
}

qint64 QFtp::bytesAvailable() const
{
    return d->pi->bytesAvailable();
}

qint64 QFtp::read(char *data, qint64 maxlen)
{
    return d->pi->read(data, maxlen);
}

QByteArray QFtp::readAll()
{
    return d->pi->readAll();
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
    if (d->pending.empty())
        return nullptr;
    const auto *const device = std::get_if<Request::Device>(&d->pending.front().data);
    return device ? device->data() : nullptr;
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
    Request &current = d->pending.front();
    if (current.stage == Request::Stage::Queued)
        current.stage = Request::Stage::Aborted;
    d->pi->abort();
}

void QFtp::_q_startNextCommand()
{
    const QPointer<QFtp> self = this;
    // Commands that need no server end at once: a loop, so that a long row of them does not nest.
    while (!d->pending.empty()) {
        d->error = NoError;
        d->errorString = tr("Unknown error");
        d->pi->prepareNoTransfer();
        emit commandStarted(currentId());
        if (!self)
            return;
        const Start start = carryOut();
        const bool isOver = start == Start::Done || start == Start::Failed;
        if (!isOver || finishCommand(start == Start::Failed) != End::OthersWait)
            return;
    }
}

QFtp::Start QFtp::carryOut()
{
    const Request &request = d->pending.front();
    if (request.stage == Request::Stage::Aborted)
        return fail(UnknownError, tr("Aborted"));
    switch (request.command) {
    case SetTransferMode:
        return Start::Done;
    case SetProxy:
        d->proxyHost = request.rawCmds.at(0);
        d->proxyPort = request.rawCmds.at(1).toUShort();
        return Start::Done;
    case ConnectToHost:
        return startConnecting(request.rawCmds.at(0), request.rawCmds.at(1).toUShort());
    default:
        return sendLines();
    }
}

QFtp::Start QFtp::startConnecting(const QString &host, quint16 port)
{
    copyNetworkSession(this, d->pi);
    d->pending.front().stage = Request::Stage::Running;
    if (d->proxyHost.isEmpty()) {
        d->pi->connectToHost(host, port);
    } else {
        d->host = host;
        d->port = port;
        d->pi->connectToHost(d->proxyHost, d->proxyPort);
    }
    return Start::Running;
}

QFtp::Start QFtp::sendLines()
{
    const QPointer<QFtp> self = this;
    const Command command = currentCommand();
    QStringList lines = d->pending.front().rawCmds;
    QString reason;
    if (command == Login && !d->proxyHost.isEmpty())
        lines.first() = proxyUserLine(lines.first(), d->host, d->port);
    else if (command == Put || command == Get || command == List)
        reason = prepareTransfer();
    else if (command == Close)
        _q_piConnectState(Closing);
    // Either may have called a slot that has aborted the command or deleted the client.
    if (!self)
        return Start::Deleted;
    if (d->pending.front().stage == Request::Stage::Aborted)
        reason = tr("Aborted");
    if (!reason.isNull())
        return fail(UnknownError, reason);
    d->pending.front().stage = Request::Stage::Running;
    d->pi->sendCommands(lines);
    return Start::Running;
}

// Returns why there can be no transfer; null otherwise.
QString QFtp::prepareTransfer()
{
    const Command command = currentCommand();
    const Request &request = d->pending.front();
    const auto *const given = std::get_if<Request::Device>(&request.data);
    if (command == List) {
        d->pi->prepareListing();
    } else if (command == Get) {
        if (given && !*given)
            return tr("The file to download into is gone");
        d->pi->prepareDownload(given ? given->data() : nullptr);
    } else if (const auto *const bytes = std::get_if<QByteArray>(&request.data)) {
        d->pi->prepareUpload(*bytes);
    } else {
        QIODevice *const source = given ? given->data() : nullptr;
        if (!source)
            return tr("There is no file to upload");
        if (!source->isReadable() && (source->isOpen() || !source->open(QIODevice::ReadOnly)))
            return source->errorString();
        d->pi->prepareUpload(source);
    }
    return {};
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
    finishAndGoOn(false);
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
        d->pi->forgetSize();
        return;
    }
    if (command == Put && sent.startsWith(QLatin1String("ALLO ")))
        return;
    fail(code, text);
    finishAndGoOn(true);
}

QFtp::Start QFtp::fail(int code, const QString &text)
{
    d->error = static_cast<Error>(code);
    d->errorString = failureText(currentCommand(), text);
    d->pi->clearPendingCommands();
    clearPendingCommands();
    return Start::Failed;
}

void QFtp::finishAndGoOn(bool failed)
{
    if (finishCommand(failed) == End::OthersWait)
        _q_startNextCommand();
}

QFtp::End QFtp::finishCommand(bool failed)
{
    const QPointer<QFtp> self = this;
    emit commandFinished(currentId(), failed);
    if (!self)
        return End::Deleted;
    d->pending.pop_front();
    if (!d->pending.empty())
        return End::OthersWait;
    emit done(failed);
    return End::QueueEmpty;
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
