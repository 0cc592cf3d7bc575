// The control connection of one settings transfer. The toolkit's network access manager does not report that
// it was lost, and keeps it for minutes after a transfer, or for good after an aborted one; so the manager is
// given a port of this computer instead, and what it says there is passed on to the device, and back. The
// transfer owns the relay.
#pragma once

#include <QHostAddress>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>

class ControlRelay : public QObject
{
    Q_OBJECT

public:
    /// Connects to the device once the manager has connected to address() and port(); takes only that
    /// connection.
    ControlRelay(const QHostAddress &device, quint16 devicePort, QObject *parent);

    QHostAddress address() const { return listener.serverAddress(); }
    /// 0: this computer has no port to spare.
    quint16 port() const { return listener.serverPort(); }
    /// The device is connected.
    bool isUp() const { return device.state() == QAbstractSocket::ConnectedState; }

    /// Takes leave of the device at once, whatever is under way. The relay then deletes itself and signals
    /// nothing.
    void letGo();

signals:
    /// The device cannot be reached.
    void unreachable();
    /// The connection to the device has ended, or more came over it than any session needs.
    void lost();

private:
    void acceptManager();
    void passOn(QTcpSocket *from, QTcpSocket *to);
    void endManager();

    QTcpServer listener{this};
    QTcpSocket *manager = nullptr;
    QTcpSocket device{this};
    const QHostAddress deviceAddress;
    const quint16 devicePort;
    qint64 bytesHeard = 0;
};
