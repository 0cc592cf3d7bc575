// An FTP server in the test's own event loop. It serves its few files by itself; a test replaces single
// answers or takes over altogether.
#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

class ScriptedFtpServer : public QTcpServer
{
public:
    explicit ScriptedFtpServer(const QHostAddress &address = QHostAddress::LocalHost)
    {
        connect(this, &QTcpServer::newConnection, this, &ScriptedFtpServer::acceptControl);
        connect(&dataServer, &QTcpServer::newConnection, this,
                [this] { useData(dataServer.nextPendingConnection()); });
        listen(address);
        dataServer.listen(address);
    }

    ~ScriptedFtpServer() override
    {
        for (QTcpSocket *socket : findChildren<QTcpSocket *>() + dataServer.findChildren<QTcpSocket *>())
            socket->disconnect();
    }

    void reply(const QByteArray &bytes)
    {
        const int pieceLength = bytewise ? 1 : bytes.size();
        for (int at = 0; at < bytes.size(); at += pieceLength) {
            if (!control || control->state() != QAbstractSocket::ConnectedState)
                return;
            control->write(bytes.mid(at, pieceLength));
            control->flush();
        }
    }

    /// Closes the data connection; with reset, the client is cut off.
    void endData(bool reset = false)
    {
        if (!data)
            return;
        reset ? data->abort() : data->disconnectFromHost();
    }

    QByteArray passiveReply() const
    {
        const quint16 port = dataServer.serverPort();
        return "227 Entering Passive Mode (127,0,0,1," + QByteArray::number(port >> 8) + ',' +
               QByteArray::number(port & 255) + ").\r\n";
    }

    /// By verb ("" is the greeting): sent instead of what would be done.
    QHash<QByteArray, QByteArray> answers;
    /// Asked first; true: it has dealt with the line.
    std::function<bool(const QByteArray &verb)> takeOver;
    bool bytewise = false;
    QByteArray file;
    QByteArray listing;

    QByteArrayList lines;
    QByteArray uploaded;
    qint64 uploadedBytes = 0;
    bool keepsUploads = true;
    QTcpSocket *control = nullptr;
    QTcpSocket *data = nullptr;

private:
    void acceptControl()
    {
        control = nextPendingConnection();
        control->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(control, &QTcpSocket::readyRead, this, [this, from = control] {
            while (from->canReadLine())
                hear(from->readLine());
        });
        hear("\r\n");
    }

    void hear(const QByteArray &line)
    {
        const QByteArray verb = line.trimmed().split(' ').first();
        if (!verb.isEmpty())
            lines += line;
        if (takeOver && takeOver(verb))
            return;
        if (answers.contains(verb))
            reply(answers.value(verb));
        else
            serve(verb, line.trimmed().mid(verb.size() + 1));
    }

    void serve(const QByteArray &verb, const QByteArray &argument)
    {
        static const QHash<QByteArray, QByteArray> usual{{"", "220 Ready\r\n"},
                                                         {"USER", "331 Password?\r\n"},
                                                         {"PASS", "230 Welcome\r\n"},
                                                         {"RNFR", "350 To?\r\n"}};
        if (verb == "PASV") {
            reply(passiveReply());
        } else if (verb == "EPSV") {
            reply("229 Extended (|||" + QByteArray::number(dataServer.serverPort()) + "|)\r\n");
        } else if (verb == "PORT" || verb == "EPRT") {
            openActive(verb == "PORT", argument);
            reply("200 Fine\r\n");
        } else if (verb == "SIZE") {
            reply("213 " + QByteArray::number(file.size()) + "\r\n");
        } else if (verb == "STOR" || verb == "RETR" || verb == "LIST") {
            transfer = verb;
            transferIfReady();
        } else if (verb == "ABOR") {
            if (!transfer.isEmpty())
                reply("426 Cut off\r\n");
            transfer.clear();
            endData();
            reply("226 Aborted\r\n");
        } else if (verb == "QUIT") {
            reply("221 Bye\r\n");
            control->disconnectFromHost();
        } else {
            reply(usual.value(verb, "200 Fine\r\n"));
        }
    }

    void openActive(bool isPort, const QByteArray &argument)
    {
        const QByteArrayList fields = argument.split(isPort ? ',' : '|');
        const int port =
            isPort ? fields.value(4).toInt() * 256 + fields.value(5).toInt() : fields.value(3).toInt();
        auto *socket = new QTcpSocket(this);
        socket->connectToHost(isPort ? QHostAddress(QHostAddress::LocalHost)
                                     : QHostAddress(QString::fromLatin1(fields.value(2))),
                              static_cast<quint16>(port));
        useData(socket);
    }

    void useData(QTcpSocket *socket)
    {
        data = socket;
        uploaded.clear();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            const QByteArray bytes = socket->readAll();
            uploadedBytes += bytes.size();
            if (keepsUploads)
                uploaded += bytes;
        });
        connect(socket, &QTcpSocket::connected, this, &ScriptedFtpServer::transferIfReady);
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            if (socket == data)
                data = nullptr;
            if (!transfer.isEmpty())
                reply("226 Done\r\n");
            transfer.clear();
            socket->deleteLater();
        });
        transferIfReady();
    }

    void transferIfReady()
    {
        if (transfer.isEmpty() || !data || data->state() != QAbstractSocket::ConnectedState)
            return;
        reply("150 Go\r\n");
        if (transfer == "STOR")
            return;
        data->write(transfer == "RETR" ? file : listing);
        data->disconnectFromHost();
    }

    QTcpServer dataServer;
    QByteArray transfer;
};
