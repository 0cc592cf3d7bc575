#include "settings/controlrelay.h"

#include <QTimer>

namespace
{

// A session's replies are some kilobytes. The manager keeps all of a reply that never ends.
constexpr qint64 longestSessionBytes = qint64(1) << 20;
constexpr int farewellMs = 1000;

} // namespace

ControlRelay::ControlRelay(const QHostAddress &deviceHost, quint16 port, QObject *parent)
    : QObject(parent), deviceAddress(deviceHost), devicePort(port)
{
    connect(&listener, &QTcpServer::newConnection, this, &ControlRelay::acceptManager);
    listener.listen(QHostAddress::LocalHost);
}

void ControlRelay::acceptManager()
{
    manager = listener.nextPendingConnection();
    manager->setParent(this);
    listener.close();
    connect(manager, &QTcpSocket::readyRead, this, [this] {
        if (isUp())
            passOn(manager, &device);
    });
    connect(&device, &QTcpSocket::connected, this, [this] { passOn(manager, &device); });
    connect(&device, &QTcpSocket::readyRead, this, [this] { passOn(&device, manager); });
    connect(&device, &QTcpSocket::disconnected, this, &ControlRelay::endManager);
    connect(&device, &QTcpSocket::errorOccurred, this, [this] {
        // A connection that was made reports its end through disconnected().
        if (!isUp() && bytesHeard == 0)
            emit unreachable();
    });
    device.connectToHost(deviceAddress, devicePort);
}

void ControlRelay::passOn(QTcpSocket *from, QTcpSocket *to)
{
    const QByteArray bytes = from->readAll();
    to->write(bytes);
    if (from != &device)
        return;
    bytesHeard += bytes.size();
    if (bytesHeard > longestSessionBytes)
        device.abort();
}

// What the device said last is still passed on.
void ControlRelay::endManager()
{
    passOn(&device, manager);
    manager->disconnectFromHost();
    emit lost();
}

void ControlRelay::letGo()
{
    listener.close();
    device.disconnect(this);
    if (manager) {
        manager->disconnect(this);
        manager->abort();
    }
    if (!isUp()) {
        deleteLater();
        return;
    }
    connect(&device, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    QTimer::singleShot(farewellMs, this, &QObject::deleteLater);
    device.write("QUIT\r\n");
    device.disconnectFromHost();
}
