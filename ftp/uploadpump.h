// Moves an upload from its source to the data connection: one block at a time, the next one only when the one
// before has left, so that an upload needs no more memory than a block. The data transfer owns it, from the
// server's go-ahead to the end of the transfer.
#pragma once

#include <QObject>
#include <QPointer>

class QIODevice;
class QTcpSocket;
class SessionEvents;

class UploadPump : public QObject
{
    Q_OBJECT

public:
    /// expectedEnd is where the source is at its end; of no meaning for a stream.
    UploadPump(QIODevice *source, qint64 expectedEnd, SessionEvents *sessionEvents, QObject *parent);

    /// Begins once the connection is there.
    void start(QTcpSocket *connection);
    /// Goes on with a stream that had paused.
    void resume();
    /// What the socket tells of bytes that it had kept.
    void bytesWritten(qint64 bytes);

    bool hasStarted() const { return !socket.isNull(); }
    /// All of the source has left.
    bool hasSentAll() const { return state == State::SentAll; }

signals:
    /// The bytes have left the program.
    void sent(qint64 bytes);
    void sentAll();
    void sourceFailed();
    /// The connection took no more.
    void refused();

private:
    enum class State { Sending, SentAll, Failed };

    void pump();
    bool sendBlock();
    void endSource(qint64 lastRead);

    const QPointer<QIODevice> device;
    QPointer<QTcpSocket> socket;
    SessionEvents *const events;
    const qint64 end;
    qint64 keptBytes = 0; // by the socket, of the block in flight
    State state = State::Sending;
    bool isPosted = false;
};
