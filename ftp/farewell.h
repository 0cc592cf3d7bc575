// What is left of an upload that was given up together with its client: the control connection, on which ABOR
// was sent, and the data connection, on which nothing follows. A server takes the end of the data for the end
// of the file, so both stay open until it has answered ABOR, but no longer than a second. Owns itself; at the
// end of the program the application deletes it.
#pragma once

#include "ftp/replyreader.h"

#include <QObject>

#include <memory>

class QTcpSocket;

class Farewell : public QObject
{
public:
    /// How long a server may take to answer ABOR before the data connection is closed all the same.
    static constexpr int longestWaitMs = 1000;

    static void take(std::unique_ptr<QTcpSocket> control, std::unique_ptr<QTcpSocket> data);

private:
    Farewell(QTcpSocket *controlConnection, QTcpSocket *data);
    void readAnswer();

    QTcpSocket *const control;
    FtpReplyReader replies;
};
