// The control connection of one FTP session: sends the lines of a command one by one, acts on the replies,
// and has the data connection opened and closed in between. QFtp owns it.
#pragma once

#include "ftp/qftpdtp.h"
#include "ftp/replyreader.h"

#include <QAbstractSocket>
#include <QObject>
#include <QString>
#include <QStringList>

#include <array>

class QTcpSocket;

class QFtpPI : public QObject
{
    Q_OBJECT

public:
    explicit QFtpPI(QObject *parent = nullptr);
    ~QFtpPI() override;

    /// Starts a fresh session; an old one is cut off.
    void connectToHost(const QString &host, quint16 port);
    /// Sends the lines, each with its "\r\n", one after the other; finished() or error() follows. False while
    /// the lines of an earlier call are still waiting.
    bool sendCommands(const QStringList &lines);
    bool sendCommand(const QString &line) { return sendCommands({line}); }
    /// Ends the command that runs, without a signal: its lines and its data connection.
    void clearPendingCommands();
    /// Sends ABOR; the lines that still wait are dropped.
    void abort();

    /// The line sent last; empty between commands.
    QString currentCommand() const { return currentCmd; }
    /// The command that runs is an upload.
    bool isStoring() const;
    /// ABOR has been sent and not answered yet.
    bool isAbortStarted() const { return abortState == AbortStarted; }
    QFtpDTP &dataTransfer() { return dtp; }
    /// To be called from rawFtpReply(): this reply is not to be acted on.
    void markReplyRaw() { rawCommand = true; }
    /// Whether EPSV and EPRT may be tried.
    void setTransferConnectionExtended(bool extended) { transferConnectionExtended = extended; }

signals:
    /// A QFtp::State.
    void connectState(int connectState);
    void finished(const QString &text);
    /// A QFtp::Error and what happened.
    void error(int code, const QString &text); // clazy:exclude=overloaded-signal
    void rawFtpReply(int code, const QString &text);

private slots:
    void hostFound();
    void connected();
    void connectionClosed();
    void delayedCloseFinished();
    void readyRead();
    void error(QAbstractSocket::SocketError socketError);
    void dtpConnectState(int dataState);

private:
    enum State { Begin, Idle, Waiting, Success, Failure };
    enum AbortState { None, AbortStarted, WaitForAbortToFinish };
    class Turn;

    void beginTurn();
    void resetSession();
    void handleReply();
    bool processReply();
    bool mustAwaitData(int code);
    bool takeAbortReply(int code);
    bool advance(int code);
    void interpret(int code, const QString &text);
    void openDataConnection(const QString &host, quint16 port);
    void react(const QString &text);
    bool fallBack();
    bool startNextCmd();
    bool extendLine(QString &line);
    void send(const QString &line);
    void reportUnreachable(int code, const QString &text);
    void dataConnectionClosed();
    void dataConnectionRefused();

    QTcpSocket *commandSocket;
    QFtpDTP dtp;
    QString hostName;
    bool rawCommand = false;
    bool transferConnectionExtended = true;
    std::array<qint8, 3> replyCode{};
    State state = Begin;
    AbortState abortState = None;
    QStringList pendingCommands;
    QString currentCmd;
    FtpReplyReader replies;
    QString replyText;
    bool waitForDtpToConnect = false;
    bool waitForDtpToClose = false;
    // Counts the commands, so that whoever emitted a signal sees that its command is over.
    quint64 turnNumber = 0;
};
