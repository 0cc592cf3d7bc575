// A socket must not be deleted while one of its own signals is on the stack, but has to be deleted at once
// when no event loop may ever run again. Every slot of the FTP layers that a socket calls holds a
// SocketSignal meanwhile.
#pragma once

#include <QTcpSocket>

class SocketSignal
{
public:
    SocketSignal() { ++depth; }
    ~SocketSignal() { --depth; }
    Q_DISABLE_COPY(SocketSignal)

    /// Silences the socket towards its owner, breaks its connection and deletes it as soon as that is safe.
    static void dispose(QTcpSocket *socket, const QObject *owner)
    {
        if (!socket)
            return;
        QObject::disconnect(socket, nullptr, owner, nullptr);
        socket->abort();
        if (depth == 0) {
            delete socket;
        } else {
            socket->setParent(nullptr);
            socket->deleteLater();
        }
    }

private:
    static inline thread_local int depth = 0;
};
