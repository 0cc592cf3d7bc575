// An FTP client whose every operation is asynchronous: a call queues one command and returns its id, the
// commands run strictly one after another, and signals tell how they fare. Whoever creates it owns it. A slot
// of one of its signals may delete it, and may run an event loop: the session then stands still until the
// slot returns. When the control connection is lost in the middle of a command, only stateChanged() tells of
// it: the object is finished and has to be deleted. Not so where the command's last reply was there and only
// data was awaited: it still ends. docs/ftp.md tells the rest.
#pragma once

#include "ftp/qurlinfo.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QIODevice;

class QFtp : public QObject
{
    Q_OBJECT

public:
    enum State { Unconnected, HostLookup, Connecting, Connected, LoggedIn, Closing };
    Q_ENUM(State)

    enum Error { NoError, UnknownError, HostNotFound, ConnectionRefused, NotConnected };
    Q_ENUM(Error)

    enum Command {
        None,
        SetTransferMode,
        SetProxy,
        ConnectToHost,
        Login,
        Close,
        List,
        Cd,
        Get,
        Put,
        Remove,
        Mkdir,
        Rmdir,
        Rename,
        RawCommand
    };
    Q_ENUM(Command)

    enum TransferMode { Active, Passive };
    Q_ENUM(TransferMode)

    enum TransferType { Binary, Ascii };
    Q_ENUM(TransferType)

    explicit QFtp(QObject *parent = nullptr);
    /// A running command is told to the server as aborted; no signal is emitted any more. The connections of
    /// an upload stay open until the server has answered that, for a second at most.
    ~QFtp() override;

    // Every operation returns the id of its command: unique and ascending in the whole process, from 1.

    int connectToHost(const QString &host, quint16 port = 21);
    /// A null user logs in as "anonymous", a null password becomes "anonymous@".
    int login(const QString &user = QString(), const QString &password = QString());
    int close();
    /// Holds for the transfers queued from now on. Passive: the client connects; Active: the server does.
    int setTransferMode(TransferMode mode);
    /// Later connections go through this host, which is told the real one at the login. An empty host: none.
    int setProxy(const QString &host, quint16 port);
    /// Every entry arrives as listInfo(). An empty dir lists the current one.
    int list(const QString &dir = QString());
    int cd(const QString &dir);
    /// Writes the file to dev, which must be open and outlive the transfer; without a device the data is read
    /// with read() and readAll().
    int get(const QString &file, QIODevice *dev = nullptr, TransferType type = Binary);
    int put(const QByteArray &data, const QString &file, TransferType type = Binary);
    /// Uploads what dev yields, from its current position to its end. It is opened if need be and stays the
    /// caller's. Nothing is sent of a command whose device cannot be opened.
    int put(QIODevice *dev, const QString &file, TransferType type = Binary);
    int remove(const QString &file);
    int mkdir(const QString &dir);
    int rmdir(const QString &dir);
    int rename(const QString &oldName, const QString &newName);
    /// Sends the line as it is; its replies arrive as rawCommandReply().
    int rawCommand(const QString &command);

    /// Downloaded and not yet read, for a get() without a device; discarded when the next command starts.
    qint64 bytesAvailable() const;
    qint64 read(char *data, qint64 maxlen);
    QByteArray readAll();

    /// The command that runs or is the next to run: 0, None and nullptr when there is none.
    int currentId() const;
    Command currentCommand() const;
    QIODevice *currentDevice() const;
    /// Whether commands wait behind the current one.
    bool hasPendingCommands() const;
    /// Drops the commands behind the current one, without a signal.
    void clearPendingCommands();
    State state() const;

    /// Of the last command; NoError and "Unknown error" while it has not failed.
    Error error() const;
    QString errorString() const;

signals:
    void stateChanged(int state);
    void listInfo(const QUrlInfo &info);
    void readyRead();
    void dataTransferProgress(qint64 done, qint64 total);
    void rawCommandReply(int replyCode, const QString &detail);
    void commandStarted(int id);
    void commandFinished(int id, bool error);
    /// After the last command of the queue; a failed command drops those behind it.
    void done(bool error);

public slots:
    /// Drops the waiting commands and asks the server to give up the current one, which ends as failed unless
    /// it was done already. A connectToHost() goes on. Nothing without a command.
    void abort();

private slots:
    void _q_startNextCommand();
    void _q_piFinished(const QString &text);
    void _q_piError(int code, const QString &text);
    void _q_piConnectState(int connectState);
    void _q_piFtpReply(int code, const QString &text);

private:
    struct Request;
    struct Private;

    /// What became of a command that was to be started.
    enum class Start { Running, Done, Failed, Deleted };
    /// What the end of a command leaves to do.
    enum class End { OthersWait, QueueEmpty, Deleted };

    int enqueue(Request request);
    Start carryOut();
    Start startConnecting(const QString &host, quint16 port);
    Start sendLines();
    QString prepareTransfer();
    Start fail(int code, const QString &text);
    void finishAndGoOn(bool failed);
    End finishCommand(bool failed);

    std::unique_ptr<Private> d;
};
