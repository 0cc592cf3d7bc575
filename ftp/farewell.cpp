#include "ftp/farewell.h"

#include <QCoreApplication>
#include <QTcpSocket>
#include <QTimer>

void Farewell::take(std::unique_ptr<QTcpSocket> control, std::unique_ptr<QTcpSocket> data)
{
    // Without an event loop to come nobody would hear the answer.
    if (QCoreApplication::instance() && !QCoreApplication::closingDown())
        (new Farewell(control.release(), data.release()))->readAnswer();
}

Farewell::Farewell(QTcpSocket *controlConnection, QTcpSocket *data)
    : QObject(QCoreApplication::instance()), control(controlConnection)
{
    for (QTcpSocket *const socket : {data, control}) {
        socket->setParent(this);
        connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    }
    connect(control, &QTcpSocket::readyRead, this, &Farewell::readAnswer);
    QTimer::singleShot(longestWaitMs, this, &QObject::deleteLater);
}

void Farewell::readAnswer()
{
    replies.append(control->read(control->bytesAvailable()));
    while (const std::optional<FtpReply> reply = replies.next()) {
        if (reply->kind() != FtpReply::Kind::Preliminary)
            deleteLater();
    }
}
