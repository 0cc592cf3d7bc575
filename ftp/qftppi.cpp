#include "ftp/qftppi.h"

#include "ftp/farewell.h"
#include "ftp/networksession.h"
#include "ftp/qftp.h"

#include <QHostAddress>
#include <QLoggingCategory>
#include <QMetaEnum>
#include <QPointer>
#include <QTcpSocket>

#include <algorithm>
#include <utility>

namespace
{

constexpr qint64 readBufferBytes = qint64(16) * 1024;

// Between two computers of a boat a connection takes milliseconds; this leaves room for several lost packets.
constexpr int dataConnectionTimeoutMs = 15000;
// For the reply to a transfer that has ended before its time, or to an abort: the server has nothing left to
// do.
constexpr int replyTimeoutMs = 5000;

// For the next byte of a transfer that the server already calls complete.
constexpr int standstillTimeoutMs = 30000;

constexpr int codeSuperfluous = 202;
constexpr int codeFileStatus = 213;
constexpr int codeNoTransfer = 225;
constexpr int codeLoggedIn = 230;

Q_LOGGING_CATEGORY(ftpLog, "kelvora.ftp", QtWarningMsg)

bool isCommand(const QString &line, const char *name)
{
    return line.startsWith(QLatin1String(name));
}

// A superfluous command was not carried out.
bool isFailure(const FtpReply &reply)
{
    return reply.kind() == FtpReply::Kind::TransientFailure ||
           reply.kind() == FtpReply::Kind::PermanentFailure || reply.code == codeSuperfluous;
}

const char *nameOf(QFtpPI::State state)
{
    return QMetaEnum::fromType<QFtpPI::State>().valueToKey(static_cast<int>(state));
}

QString refusedDataText()
{
    return QFtpPI::tr("Connection refused for data connection");
}

QString abortedText()
{
    return QFtpPI::tr("Aborted");
}

} // namespace

QFtpPI::QFtpPI(QObject *parent) : QObject(parent), dtp(this, &events)
{
    makeCommandSocket();
    patience.setSingleShot(true);
    connect(&patience, &QTimer::timeout, this, [this] { events.post(this, [this] { patienceEnded(); }); });
    connect(&dtp, &QFtpDTP::bytesMoved, this, [this] { renewPatience(); });
    connect(&dtp, &QFtpDTP::connectState, this, &QFtpPI::dtpConnectState);
    connect(&dtp, &QFtpDTP::failed, this, &QFtpPI::abort);
    connect(&dtp, &QFtpDTP::readyRead, this, &QFtpPI::dataArrived);
    connect(&dtp, &QFtpDTP::dataTransferProgress, this, &QFtpPI::dataTransferProgress);
    connect(&dtp, &QFtpDTP::listInfo, this, &QFtpPI::listInfo);
}

QFtpPI::~QFtpPI()
{
    dtp.disconnect();
    if (isAborting() && isCommand(currentCmd, "STOR ") && dtp.isOpen())
        Farewell::take(std::move(commandSocket), dtp.takeSocket());
}

void QFtpPI::makeCommandSocket()
{
    commandSocket = std::make_unique<QTcpSocket>(this);
    const QTcpSocket *const socket = commandSocket.get();
    commandSocket->setObjectName(QStringLiteral("QFtpPI_socket"));
    commandSocket->setReadBufferSize(readBufferBytes);
    events.connectQueued(socket, &QTcpSocket::hostFound, this, [this] { hostFound(); });
    events.connectQueued(socket, &QTcpSocket::connected, this, [this] { connected(); });
    events.connectQueued(socket, &QTcpSocket::disconnected, this, [this] { connectionClosed(); });
    events.connectQueued(socket, &QTcpSocket::readyRead, this, [this] { readyRead(); });
    events.connectQueued(socket, &QTcpSocket::errorOccurred, this,
                         [this](QAbstractSocket::SocketError socketError) { error(socketError); });
}

void QFtpPI::changeState(State next)
{
    qCDebug(ftpLog, "%s -> %s", nameOf(state), nameOf(next));
    state = next;
    patience.stop();
}

bool QFtpPI::isAborting() const
{
    return state == State::AbortingLine || state == State::AbortingBetweenLines;
}

bool QFtpPI::isConnected() const
{
    return commandSocket->state() == QAbstractSocket::ConnectedState;
}

// Any -> Connecting
void QFtpPI::connectToHost(const QString &host, quint16 port)
{
    const QPointer<QFtpPI> self = this;
    const bool wasConnected = commandSocket->state() != QAbstractSocket::UnconnectedState;
    // What a session has left behind must not be taken for part of the next one.
    if (state != State::Unconnected || wasConnected || commandSocket->openMode() != QIODevice::NotOpen)
        makeCommandSocket();
    clearPendingCommands();
    replies.clear();
    repliesToSkip = 0;
    hostName = host;
    if (wasConnected)
        emit connectState(QFtp::Unconnected);
    if (!self)
        return;
    changeState(State::Connecting);
    emit connectState(QFtp::HostLookup);
    if (!self)
        return;
    copyNetworkSession(this, commandSocket.get());
    copyNetworkSession(this, &dtp);
    commandSocket->connectToHost(host, port);
}

// Idle -> Waiting; what the lines lead to is told by finished() or error().
bool QFtpPI::sendCommands(const QStringList &lines)
{
    if (!pendingCommands.isEmpty())
        return false;
    if (!isConnected() || state != State::Idle) {
        emit error(QFtp::NotConnected, tr("Not connected"));
        return true;
    }
    rawCommand = false;
    pendingCommands = lines;
    sendNextLine();
    return true;
}

// Any -> Idle, Unconnected
void QFtpPI::clearPendingCommands()
{
    pendingCommands.clear();
    currentCmd.clear();
    heldReply.reset();
    dtp.prepareNoTransfer();
    changeState(isConnected() ? State::Idle : State::Unconnected);
}

// Waiting -> AbortingLine; Idle, OpeningData, DrainingData -> AbortingBetweenLines. Connecting, Begin and an
// Idle that has nothing left to do stay, and end by themselves; a DrainingData without control connection is
// given up.
void QFtpPI::abort()
{
    if (state == State::DrainingData && !isConnected()) {
        dtp.abandon();
        events.post(this, [this] { giveUpDraining(abortReason()); });
        return;
    }
    if (isAborting() || !commandSocket->isOpen() ||
        commandSocket->state() == QAbstractSocket::UnconnectedState)
        return;
    commandSocket->write("ABOR\r\n");
    // A client that is going away has no later chance to send it.
    if (isConnected())
        commandSocket->flush();
    const bool isUnfinished = !pendingCommands.isEmpty() || dtp.transfer() != QFtpDTP::Transfer::None;
    const bool isBetweenLines = state == State::OpeningData || state == State::DrainingData ||
                                (state == State::Idle && !currentCmd.isEmpty() && isUnfinished);
    if (state != State::Waiting && !isBetweenLines) {
        ++repliesToSkip;
        return;
    }
    changeState(isBetweenLines ? State::AbortingBetweenLines : State::AbortingLine);
    // Replies may have come behind the one that was held.
    if (std::exchange(heldReply, std::nullopt))
        events.post(this, [this] { readReplies(); });
    // To a server, the end of the data would be the end of the file.
    dtp.abandon();
    patience.start(dtp.isOpen() ? Farewell::longestWaitMs : replyTimeoutMs);
}

QString QFtpPI::abortReason() const
{
    return dtp.hasError() ? dtp.errorMessage() : abortedText();
}

void QFtpPI::hostFound()
{
    emit connectState(QFtp::Connecting);
}

// Connecting -> Begin
void QFtpPI::connected()
{
    changeState(State::Begin);
    commandSocket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    emit connectState(QFtp::Connected);
}

// Any -> Unconnected. Only a reply that is held still ends its command: all that it waits for is data.
void QFtpPI::connectionClosed()
{
    const QPointer<QTcpSocket> closed = commandSocket.get();
    readReplies();
    if (!closed)
        return;
    closed->close();
    if (state == State::Begin) {
        reportUnreachable(QFtp::ConnectionRefused, tr("Connection refused to host %1").arg(hostName));
        return;
    }
    if (state != State::DrainingData) {
        dtp.abortConnection();
        changeState(State::Unconnected);
    }
    emit connectState(QFtp::Unconnected);
}

void QFtpPI::delayedCloseFinished()
{
    emit connectState(QFtp::Unconnected);
}

// Connecting -> Unconnected. A connection that was there tells of its end by itself.
void QFtpPI::error(QAbstractSocket::SocketError socketError)
{
    if (state != State::Connecting || commandSocket->state() != QAbstractSocket::UnconnectedState)
        return;
    if (socketError == QAbstractSocket::HostNotFoundError)
        reportUnreachable(QFtp::HostNotFound, tr("Host %1 not found").arg(hostName));
    else if (socketError == QAbstractSocket::ConnectionRefusedError)
        reportUnreachable(QFtp::ConnectionRefused, tr("Connection refused to host %1").arg(hostName));
    else
        reportUnreachable(QFtp::ConnectionRefused, tr("Connection timed out to host %1").arg(hostName));
}

// Connecting, Begin -> Unconnected
void QFtpPI::reportUnreachable(int code, const QString &text)
{
    const QPointer<QFtpPI> self = this;
    changeState(State::Unconnected);
    emit connectState(QFtp::Unconnected);
    if (self)
        emit error(code, text);
}

void QFtpPI::readyRead()
{
    readReplies();
}

void QFtpPI::readReplies()
{
    const QPointer<QTcpSocket> source = commandSocket.get();
    while (source && state != State::DrainingData) {
        if (const std::optional<FtpReply> reply = replies.next())
            handleReply(*reply);
        else if (source->bytesAvailable() > 0)
            replies.append(source->read(source->bytesAvailable()));
        else
            return;
    }
}

// Begin, Waiting, AbortingLine, AbortingBetweenLines -> what the handler of each makes of it. Any other
// stays: nobody waits for the reply.
void QFtpPI::handleReply(const FtpReply &reply)
{
    if (state == State::Begin) {
        handleGreeting(reply);
    } else if (repliesToSkip > 0) {
        if (reply.kind() != FtpReply::Kind::Preliminary)
            --repliesToSkip;
    } else if (state == State::Waiting) {
        handleAnswer(reply);
    } else if (isAborting()) {
        handleAnswerToAbort(reply);
    }
}

// Begin -> Begin, Idle
void QFtpPI::handleGreeting(const FtpReply &reply)
{
    if (reply.kind() == FtpReply::Kind::Completion) {
        changeState(State::Idle);
        emit finished(tr("Connected to host %1").arg(hostName));
    } else if (isFailure(reply)) {
        // The server may leave it to this side to end it. Whatever it says behind the refusal is not read.
        replies.clear();
        commandSocket->close();
    }
}

// Waiting -> Waiting, DrainingData, Idle, OpeningData
void QFtpPI::handleAnswer(const FtpReply &reply)
{
    const bool isLastWord = endsTransfer(reply);
    // A server's own connection may still wait to be accepted, with all the data in it.
    if (isLastWord)
        dtp.waitForConnection();
    // A transfer is complete only when its last bytes have come out of the data connection.
    if (isLastWord && dtp.isBusy()) {
        heldReply = reply;
        changeState(State::DrainingData);
        patience.start(standstillTimeoutMs);
    } else {
        takeAnswer(reply);
    }
}

bool QFtpPI::endsTransfer(const FtpReply &reply) const
{
    return reply.kind() == FtpReply::Kind::Completion && !isFailure(reply) && pendingCommands.isEmpty() &&
           dtp.transfer() != QFtpDTP::Transfer::None;
}

// AbortingLine, AbortingBetweenLines -> Idle. Two replies follow an ABOR behind a line: the line's and, to be
// skipped, its own. A server that sees nothing to cut off yet answers for both at once.
void QFtpPI::handleAnswerToAbort(const FtpReply &reply)
{
    const QPointer<QFtpPI> self = this;
    const bool answersLine = state == State::AbortingLine;
    if (answersLine)
        emit rawFtpReply(reply.code, reply.text);
    if (!self || reply.kind() == FtpReply::Kind::Preliminary)
        return;
    if (answersLine && reply.code != codeNoTransfer)
        ++repliesToSkip;
    const bool isCutOff = !answersLine || !pendingCommands.isEmpty() || !dtp.shortfall().isNull();
    if (isFailure(reply) || isCutOff) {
        endWithError(QFtp::UnknownError, isFailure(reply) && !dtp.hasError() ? reply.text : abortReason());
        return;
    }
    changeState(State::Idle);
    // The abort came too late for the log-in.
    if (reply.code == codeLoggedIn && !rawCommand)
        emit connectState(QFtp::LoggedIn);
    if (self && state == State::Idle)
        advance(reply.text);
}

// Waiting, DrainingData -> Waiting, Idle, OpeningData; or what abort() in a slot has made of it
void QFtpPI::takeAnswer(const FtpReply &reply)
{
    const QPointer<QFtpPI> self = this;
    if (reply.kind() != FtpReply::Kind::Preliminary)
        changeState(State::Idle);
    emit rawFtpReply(reply.code, reply.text);
    if (!self)
        return;
    if (!std::exchange(rawCommand, false))
        interpret(reply);
    if (self && state == State::Idle)
        conclude(reply);
}

// Idle -> Idle, OpeningData; Waiting, for a 1yz, stays, and so does what abort() in a slot has made of
// either.
void QFtpPI::interpret(const FtpReply &reply)
{
    if (isAborting())
        return;
    const std::optional<PassiveEndpoint> server = announcedEndpoint(reply, commandSocket->peerAddress());
    // Behind the last line nothing is left that a new data connection could be for.
    if (server && !pendingCommands.isEmpty()) {
        openDataConnection(*server);
    } else if (reply.code == codeLoggedIn) {
        if (isCommand(currentCmd, "USER ") && !pendingCommands.isEmpty() &&
            isCommand(pendingCommands.first(), "PASS "))
            pendingCommands.removeFirst();
        emit connectState(QFtp::LoggedIn);
    } else if (reply.code == codeFileStatus) {
        // A negative size is as good as none.
        if (isCommand(currentCmd, "SIZE "))
            dtp.setBytesTotal(std::max<qint64>(0, reply.text.simplified().toLongLong()));
    } else if (reply.kind() == FtpReply::Kind::Preliminary && isCommand(currentCmd, "STOR ")) {
        dtp.waitForConnection();
        dtp.writeData();
    }
}

// Idle -> Idle, Waiting: the line has its last reply.
void QFtpPI::conclude(const FtpReply &reply)
{
    const QString shortfall = pendingCommands.isEmpty() ? dtp.shortfall() : QString();
    if (isFailure(reply)) {
        if (fallBack() == Fallback::PlainForm)
            sendNextLine();
        else
            reportFailure(QFtp::UnknownError, reply.text);
    } else if (dtp.hasError() || !shortfall.isNull()) {
        reportFailure(QFtp::UnknownError, dtp.hasError() ? dtp.errorMessage() : shortfall);
    } else {
        advance(reply.text);
    }
}

// Old servers know only the plain forms.
QFtpPI::Fallback QFtpPI::fallBack()
{
    if (isCommand(currentCmd, "EPSV"))
        pendingCommands.prepend(QStringLiteral("PASV\r\n"));
    else if (isCommand(currentCmd, "EPRT"))
        pendingCommands.prepend(QStringLiteral("PORT\r\n"));
    else
        return Fallback::Nothing;
    transferConnectionExtended = false;
    return Fallback::PlainForm;
}

// Idle -> Idle, Waiting. The command goes on unless whoever hears of the failure ends it.
void QFtpPI::reportFailure(int code, const QString &text)
{
    const QPointer<QFtpPI> self = this;
    dtp.clearError();
    emit error(code, text);
    if (self && state == State::Idle && !currentCmd.isEmpty())
        advance(QString());
}

// Idle -> Waiting with the next line; Idle, at the end of the command, stays, and finished() may start
// another.
void QFtpPI::advance(const QString &text)
{
    if (!pendingCommands.isEmpty()) {
        sendNextLine();
        return;
    }
    currentCmd.clear();
    dtp.endTransfer();
    emit finished(text);
}

// Idle, OpeningData -> Waiting; Idle, with an error, when the data connection's line cannot be completed.
void QFtpPI::sendNextLine()
{
    currentCmd = pendingCommands.takeFirst();
    if (completeLine() == Line::NoAddressToTell) {
        refuseDataConnection();
        return;
    }
    changeState(State::Waiting);
    if (pendingCommands.isEmpty() && dtp.isAwaitingServer())
        patience.start(dataConnectionTimeoutMs);
    else if (dtp.isCutShort())
        patience.start(replyTimeoutMs);
    if (isConnected())
        commandSocket->write(currentCmd.toLatin1());
}

// The lines that open a data connection depend on this side's address.
QFtpPI::Line QFtpPI::completeLine()
{
    const QHostAddress local = commandSocket->localAddress();
    const bool isIPv6 = local.protocol() == QAbstractSocket::IPv6Protocol;
    if (isCommand(currentCmd, "PASV") && isIPv6 && transferConnectionExtended)
        currentCmd = QStringLiteral("EPSV\r\n");
    if (!isCommand(currentCmd, "PORT"))
        return Line::Complete;
    if (isIPv6 && !transferConnectionExtended)
        return Line::NoAddressToTell;
    const int port = dtp.setupListener(local, commandSocket->peerAddress());
    if (port < 0)
        return Line::NoAddressToTell;
    currentCmd = portLine(local, static_cast<quint16>(port));
    return Line::Complete;
}

// Idle -> OpeningData
void QFtpPI::openDataConnection(const PassiveEndpoint &server)
{
    changeState(State::OpeningData);
    patience.start(dataConnectionTimeoutMs);
    dtp.connectToHost(server.host, server.port);
}

// OpeningData -> Waiting, Idle; DrainingData as by dataConnectionClosed(). Any other stays.
void QFtpPI::dtpConnectState(int dataState)
{
    if (dataState == QFtpDTP::CsClosed) {
        dataConnectionClosed();
    } else if (state == State::OpeningData && dataState == QFtpDTP::CsConnected) {
        sendNextLine();
    } else if (state == State::OpeningData) {
        refuseDataConnection();
    }
}

// DrainingData -> what takeAnswer() makes of it, and Unconnected instead of Idle when the control connection
// is gone. Any other stays.
void QFtpPI::dataConnectionClosed()
{
    const QPointer<QFtpPI> self = this;
    if (const std::optional<FtpReply> last = std::exchange(heldReply, std::nullopt)) {
        takeAnswer(*last);
        if (self && state == State::Idle && !isConnected())
            changeState(State::Unconnected);
        if (self)
            readReplies();
    } else if (isAborting() || dtp.isCutShort()) {
        // Not for ever: the server has nothing else to do.
        patience.start(replyTimeoutMs);
    }
}

// OpeningData, Idle -> Idle, Waiting
void QFtpPI::refuseDataConnection()
{
    changeState(State::Idle);
    reportFailure(QFtp::ConnectionRefused, refusedDataText());
}

void QFtpPI::renewPatience()
{
    if (state == State::DrainingData)
        patience.start(standstillTimeoutMs);
}

// OpeningData, Waiting, AbortingLine, AbortingBetweenLines, DrainingData -> Idle; an abort whose data
// connection is still open stays, and waits once more for the reply.
void QFtpPI::patienceEnded()
{
    // The event had to wait for a slot, and what it was about has gone on meanwhile.
    if (patience.isActive())
        return;
    if (state == State::OpeningData) {
        refuseDataConnection();
    } else if (isAborting() && dtp.isOpen()) {
        dtp.abortConnection();
        patience.start(replyTimeoutMs);
    } else if (isAborting()) {
        giveUp(QFtp::UnknownError, abortReason());
    } else if (state == State::Waiting && dtp.isAwaitingServer()) {
        giveUp(QFtp::ConnectionRefused, refusedDataText());
    } else if (state == State::Waiting && dtp.isCutShort()) {
        giveUp(QFtp::UnknownError, dtp.shortfall());
    } else {
        giveUpDraining(tr("The data connection timed out"));
    }
}

// Waiting, AbortingLine, AbortingBetweenLines -> Idle. The replies that are due may still come.
void QFtpPI::giveUp(int code, const QString &text)
{
    repliesToSkip += state == State::AbortingLine ? 2 : 1;
    endWithError(code, text);
}

// DrainingData -> Idle, Unconnected; any other stays. The line's reply is there, and replies may have come
// behind it.
void QFtpPI::giveUpDraining(const QString &text)
{
    const QPointer<QFtpPI> self = this;
    if (state != State::DrainingData)
        return;
    endWithError(QFtp::UnknownError, text);
    if (self)
        readReplies();
}

// Any -> Idle, Unconnected: whatever the line was, its command is over.
void QFtpPI::endWithError(int code, const QString &text)
{
    clearPendingCommands();
    emit error(code, text);
}
