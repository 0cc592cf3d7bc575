// The control connection of one FTP session: sends the lines of a command one by one, acts on the replies,
// and has the data connection opened and closed in between. QFtp owns it. docs/ftp.md shows its states.
#pragma once

#include "ftp/passivereply.h"
#include "ftp/qftpdtp.h"
#include "ftp/replyreader.h"
#include "ftp/sessionevents.h"

#include <QAbstractSocket>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <optional>

class QIODevice;
class QTcpSocket;

class QFtpPI : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Unconnected,
        Connecting,          ///< the control connection is being made
        Begin,               ///< it is there, the greeting is awaited
        Idle,                ///< no line waits for its reply
        Waiting,             ///< a line was sent, its last reply is awaited
        OpeningData,         ///< the next line waits for the data connection
        DrainingData,        ///< the reply is there, and waits until all of the data has come
        AbortingLine,        ///< ABOR was sent behind a line: that one's reply is awaited
        AbortingBetweenLines ///< ABOR was sent while no line waited: its own reply is awaited
    };
    Q_ENUM(State)

    explicit QFtpPI(QObject *parent = nullptr);
    /// An upload that is under way is abandoned as by abort(), with a Farewell.
    ~QFtpPI() override;

    /// Starts a fresh session; an old one is cut off.
    void connectToHost(const QString &host, quint16 port);
    /// Sends the lines, each with its "\r\n", one after the other; finished() or error() follows. False while
    /// the lines of an earlier call are still waiting.
    bool sendCommands(const QStringList &lines);
    /// The same for one line; part of the interface, though the queue always sends lists.
    bool sendCommand(const QString &line) { return sendCommands({line}); }
    /// Ends the command that runs, without a signal: its lines and its data connection.
    void clearPendingCommands();
    /// Sends ABOR; lines that still wait are not sent any more, and error() follows unless all was done
    /// already.
    void abort();

    /// The line sent last; empty between commands.
    QString currentCommand() const { return currentCmd; }
    /// To be called from rawFtpReply(): this reply is not to be acted on.
    void markReplyRaw() { rawCommand = true; }
    /// Whether EPSV and EPRT may be tried.
    void setTransferConnectionExtended(bool extended) { transferConnectionExtended = extended; }

    /// Has the handler called as an event of this session, for all from which signals reach the caller.
    template <typename Handler>
    void post(QObject *context, Handler handler)
    {
        events.post(context, handler);
    }

    // What the next lines transfer, to be said before they are sent.

    void prepareUpload(const QByteArray &bytes) { dtp.prepareUpload(bytes); }
    void prepareUpload(QIODevice *source) { dtp.prepareUpload(source); }
    /// Into the sink, or for read() and readAll() where there is none.
    void prepareDownload(QIODevice *sink) { dtp.prepareDownload(sink); }
    void prepareListing() { dtp.prepareListing(); }
    /// Nothing; what the last download left unread is forgotten.
    void prepareNoTransfer() { dtp.prepareNoTransfer(); }
    /// The size of the file turned out to be unknown.
    void forgetSize() { dtp.setBytesTotal(0); }

    qint64 bytesAvailable() const { return dtp.bytesAvailable(); }
    qint64 read(char *data, qint64 maxlen) { return dtp.read(data, maxlen); }
    QByteArray readAll() { return dtp.readAll(); }

signals:
    /// A QFtp::State.
    void connectState(int connectState);
    void finished(const QString &text);
    /// A QFtp::Error and what happened.
    void error(int code, const QString &text); // clazy:exclude=overloaded-signal
    void rawFtpReply(int code, const QString &text);
    // Of the data connection.
    void dataArrived();
    void dataTransferProgress(qint64 done, qint64 total);
    void listInfo(const QUrlInfo &info);

private slots:
    void hostFound();
    void connected();
    void connectionClosed();
    /// Part of the interface; nothing calls it, as no close is delayed here.
    void delayedCloseFinished();
    void readyRead();
    void error(QAbstractSocket::SocketError socketError);
    void dtpConnectState(int dataState);

private:
    /// Whether a line is ready to be sent.
    enum class Line { Complete, NoAddressToTell };
    /// What there is to try instead of a line that was refused.
    enum class Fallback { PlainForm, Nothing };

    void changeState(State next);
    bool isAborting() const;
    bool isConnected() const;
    void makeCommandSocket();
    void reportUnreachable(int code, const QString &text);

    void readReplies();
    void handleReply(const FtpReply &reply);
    void handleGreeting(const FtpReply &reply);
    void handleAnswer(const FtpReply &reply);
    void handleAnswerToAbort(const FtpReply &reply);
    bool endsTransfer(const FtpReply &reply) const;
    void takeAnswer(const FtpReply &reply);
    void interpret(const FtpReply &reply);
    void conclude(const FtpReply &reply);
    Fallback fallBack();
    void reportFailure(int code, const QString &text);
    void advance(const QString &text);

    void sendNextLine();
    Line completeLine();
    void openDataConnection(const PassiveEndpoint &server);
    void refuseDataConnection();
    void dataConnectionClosed();
    void renewPatience();
    void patienceEnded();
    void giveUp(int code, const QString &text);
    void giveUpDraining(const QString &text);
    void endWithError(int code, const QString &text);
    QString abortReason() const;

    // Comes first, for all below are connected through it.
    SessionEvents events;
    std::unique_ptr<QTcpSocket> commandSocket;
    QFtpDTP dtp;
    /// For how long the current state may last where a peer could keep it for ever.
    QTimer patience;
    QString hostName;
    State state = State::Unconnected;
    bool rawCommand = false;
    bool transferConnectionExtended = true;
    QStringList pendingCommands;
    QString currentCmd;
    FtpReplyReader replies;
    std::optional<FtpReply> heldReply;
    /// Last replies that are still to come to lines which nobody waits for any more.
    int repliesToSkip = 0;
};
