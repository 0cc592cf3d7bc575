// An FTP server in the test's own event loop. It serves its few files by itself; a test replaces single
// answers or takes over altogether.
#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QHostAddress>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <functional>
#include <utility>

class ScriptedFtpServer : public QTcpServer
{
public:
    explicit ScriptedFtpServer(const QHostAddress &address = QHostAddress::LocalHost, quint16 port = 0)
    {
        connect(this, &QTcpServer::newConnection, this, &ScriptedFtpServer::acceptControl);
        connect(dataServer, &QTcpServer::newConnection, this,
                [this] { useData(dataServer->nextPendingConnection()); });
        listen(address, port);
        dataServer->listen(address);
        const QByteArray host = address.toString().toLatin1().replace('.', ',');
        const int dataPort = dataServer->serverPort();
        answers["PASV"] = "227 Passive (" + host + ',' + QByteArray::number(dataPort / 256) + ',' +
                          QByteArray::number(dataPort % 256) + ")\r\n";
        answers["EPSV"] = "229 Extended (|||" + QByteArray::number(dataPort) + "|)\r\n";
    }

    void reply(const QByteArray &bytes) const { control->write(bytes); }

    /// Whether it has a client.
    bool isTaken() const { return control != nullptr && control->state() == QAbstractSocket::ConnectedState; }

    /// Closes the data connection behind these bytes.
    void endData(const QByteArray &bytes = {}) const
    {
        if (data && data->write(bytes) >= 0)
            data->disconnectFromHost();
    }

    /// Connects to the client, at the port that PORT, the last line, named.
    void openActive(const char *from = "127.0.0.1")
    {
        const QByteArrayList fields = lines.last().split(',');
        const int port = fields.value(4).toInt() * 256 + fields.value(5).toInt();
        useData(new QTcpSocket(this));
        data->bind(QHostAddress(QLatin1String(from)));
        data->connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
    }

    /// By verb ("" is the greeting, "done" the last word of a transfer): sent instead of what would be done.
    QHash<QByteArray, QByteArray> answers{{"", "220 Ready\r\n"},
                                          {"USER", "331 Password?\r\n"},
                                          {"PASS", "230 Welcome\r\n"},
                                          {"RNFR", "350 To?\r\n"},
                                          {"done", "226 Done\r\n"}};
    /// Asked first; true: it has dealt with the line.
    std::function<bool(const QByteArray &verb)> takeOver = [](const QByteArray &) { return false; };
    /// Done instead of moving a file, after the go-ahead for it.
    std::function<void()> onTheWay;
    /// How long it takes to confirm a transfer whose data has come to its end; negative: for ever.
    int confirmAfterMs = 0;
    QByteArray file = "12345", listing = "-rw------- 1 a b 1 Apr 14 2000 x\r\n";

    QByteArrayList lines;
    /// The verb of the transfer that is under way.
    QByteArray transfer;
    qint64 uploadedBytes = 0;
    QTcpSocket *control = nullptr, *data = nullptr;

private:
    void acceptControl()
    {
        if (QTcpSocket *const last = std::exchange(control, nextPendingConnection()))
            last->deleteLater();
        control->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(control, &QTcpSocket::readyRead, this, [this, from = QPointer<QTcpSocket>(control)] {
            while (from && from->canReadLine())
                hear(from->readLine().chopped(2));
        });
        hear("");
    }

    void hear(const QByteArray &line)
    {
        const QByteArray verb = line.split(' ').first();
        if (!verb.isEmpty())
            lines += line;
        if (!takeOver(verb))
            answers.contains(verb) ? reply(answers.value(verb)) : serve(verb);
    }

    void serve(const QByteArray &verb)
    {
        if (verb == "STOR" || verb == "RETR" || verb == "LIST") {
            transfer = verb;
            transferIfReady();
        } else if (verb == "SIZE") {
            reply("213 " + QByteArray::number(file.size()) + "\r\n");
        } else if (verb == "ABOR") {
            reply(transfer.isEmpty() ? "226 Aborted\r\n" : "426 Cut off\r\n226 Aborted\r\n");
            transfer.clear();
            endData();
        } else if (verb == "QUIT") {
            reply("221 Bye\r\n221-But");
            control->disconnectFromHost();
        } else {
            if (verb == "PORT")
                openActive();
            reply("200 Fine\r\n");
        }
    }

    void useData(QTcpSocket *socket)
    {
        data = socket;
        uploadedBytes = 0;
        connect(socket, &QTcpSocket::readyRead, this,
                [this, socket] { uploadedBytes += socket->skip(socket->bytesAvailable()); });
        connect(socket, &QTcpSocket::connected, this, &ScriptedFtpServer::transferIfReady);
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            if (socket == data)
                data = nullptr;
            if (!transfer.isEmpty() && confirmAfterMs >= 0)
                QTimer::singleShot(confirmAfterMs, this, [this] { reply(answers["done"]); });
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
        if (onTheWay)
            onTheWay();
        else if (transfer != "STOR")
            endData(transfer == "RETR" ? file : listing);
    }

    // A child as all sockets are: these go when nothing is heard of them any more.
    QTcpServer *dataServer = new QTcpServer(this);
};
