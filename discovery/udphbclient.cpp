#include "discovery/udphbclient.h"

#include "discovery/heartbeat.h"
#include "discovery/interfaces.h"
#include "discovery/protocol.h"

#include <QDebug>
#include <QNetworkDatagram>
#include <QUdpSocket>

#include <algorithm>
#include <utility>

namespace
{

// A read loop yields to painting and input after this time; what is left signals ready-read again.
constexpr int longestReadMs = 20;

QByteArray requestDatagram()
{
    return QByteArray(1, '\0');
}

bool ranLongerThan(const QElapsedTimer &timer, qint64 milliseconds)
{
    return timer.isValid() && timer.elapsed() > milliseconds;
}

// For how long a device has not been heard: no matter, long enough to ask it, or long enough to take it for
// gone.
enum class Silence { Short, Long, TooLong };

Silence silenceSince(const QElapsedTimer &lastSeen)
{
    if (ranLongerThan(lastSeen, protocol::deviceTimeoutMs))
        return Silence::TooLong;
    return ranLongerThan(lastSeen, protocol::requestRepeatMs) ? Silence::Long : Silence::Short;
}

// Shared by the whole process; only keeps the log line of a filtered N6 heartbeat from repeating.
QHostAddress &lastFilteredSender()
{
    static QHostAddress sender;
    return sender;
}

void sendMulticastRequest(QUdpSocket *socket, const QNetworkInterface &through)
{
    // A socket whose bind failed has nothing to set an interface on.
    if (socket->state() != QAbstractSocket::BoundState)
        return;
    socket->setMulticastInterface(through);
    socket->setSocketOption(QAbstractSocket::MulticastTtlOption, protocol::requestTtl);
    socket->writeDatagram(requestDatagram(), protocol::multicastGroup(), protocol::requestPort);
}

// The socket may be the one that is being read: it falls silent now and goes later.
void retire(QUdpSocket *socket)
{
    if (!socket)
        return;
    socket->disconnect();
    socket->close();
    socket->deleteLater();
}

} // namespace

udpHBClient::udpHBClient(int requestMode, QObject *parent) : QObject(parent), mode(requestMode)
{
    connect(&tickTimer, &QTimer::timeout, this, &udpHBClient::tick);
    tickTimer.start(protocol::tickIntervalMs);
    createSockets();
}

const ScreenDevice *udpHBClient::serverScreen() const
{
    const int index = server.isNull() ? -1 : indexOfScreen(server);
    return index < 0 ? nullptr : &displays.at(index);
}

void udpHBClient::createSockets()
{
    // Reading is queued: a slot of ours may run an event loop of its own, in which the watchdog replaces the
    // socket, and that must not happen while the socket's signal is on the stack.
    retire(broadcastSocket);
    broadcastSocket = new QUdpSocket(this);
    bindSocket(broadcastSocket, protocol::heartbeatPort);
    connect(broadcastSocket, &QUdpSocket::readyRead, this, &udpHBClient::readBroadcastDatagrams,
            Qt::QueuedConnection);

    retire(responseSocket);
    responseSocket = new QUdpSocket(this);
    bindSocket(responseSocket, 0);
    connect(responseSocket, &QUdpSocket::readyRead, this, &udpHBClient::readResponseDatagrams,
            Qt::QueuedConnection);

    trafficWatchdog.start();
    sendRequest();
}

void udpHBClient::bindSocket(QUdpSocket *socket, quint16 port)
{
    if (!socket->bind(QHostAddress(QHostAddress::AnyIPv4), port,
                      QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint)) {
        qDebug().noquote() << "Problem binding udpSocket on port" << port;
        return;
    }
    for (const QNetworkInterface &candidate : interfaces::listening())
        socket->joinMulticastGroup(protocol::multicastGroup(), candidate);
}

void udpHBClient::sendRequest()
{
    requestTimer.start();
    if (mode == Passive)
        return;
    for (const QNetworkInterface &through : interfaces::asking()) {
        sendMulticastRequest(responseSocket, through);
        sendMulticastRequest(broadcastSocket, through);
    }
}

void udpHBClient::sendRequestTo(const QHostAddress &target)
{
    if (mode != Passive && !target.isNull())
        responseSocket->writeDatagram(requestDatagram(), target, protocol::requestPort);
}

void udpHBClient::readBroadcastDatagrams()
{
    readDatagrams(broadcastSocket);
}

void udpHBClient::readResponseDatagrams()
{
    readDatagrams(responseSocket);
}

// Takes the member itself: a slot that is reached from here may replace the socket, and then reading stops.
void udpHBClient::readDatagrams(QUdpSocket *const &socket)
{
    QElapsedTimer reading;
    reading.start();
    const QUdpSocket *const current = socket;
    // One whose bind failed has nothing to read, and would say so each time.
    while (socket == current && socket->state() == QAbstractSocket::BoundState &&
           socket->hasPendingDatagrams() && reading.elapsed() < longestReadMs) {
        const QNetworkDatagram datagram = socket->receiveDatagram();
        processHeartbeat(datagram.data(), datagram.senderAddress());
    }
}

void udpHBClient::processHeartbeat(const QByteArray &datagram, const QHostAddress &sender)
{
    if (!heartbeat::isTraffic(datagram))
        return;
    trafficWatchdog.start();
    heartbeat::Decoded decoded = heartbeat::decode(datagram);
    if (auto *screen = std::get_if<ScreenDevice>(&decoded))
        acceptScreen(std::move(*screen), sender);
    else if (auto *heardN6 = std::get_if<N6Device>(&decoded))
        acceptN6(std::move(*heardN6), sender);
    else if (auto *heardGyro = std::get_if<GyroDevice>(&decoded))
        acceptGyro(std::move(*heardGyro), sender);
    else if (std::holds_alternative<heartbeat::Incompatible>(decoded))
        emit incompatibleDevice();
}

void udpHBClient::acceptScreen(ScreenDevice screen, const QHostAddress &sender)
{
    screen.address = sender;
    screen.lastSeen.start();
    const bool isEink = screen.type == displaytype::eink;
    const int index = indexOfScreen(sender);
    if (index >= 0) {
        displays[index] = screen;
    } else {
        displays.append(screen);
        qDebug().noquote() << (isEink ? "udpHB: E-Ink IP" : "udpHB: Screen IP") << sender.toString();
        emit listUpdated();
    }
    // The local copy goes out: a slot may change the list.
    emit screenUpdated(screen);
    if (!isEink)
        updateServer();
}

void udpHBClient::acceptN6(N6Device heard, const QHostAddress &sender)
{
    if (isDuplicateN6(heard, sender)) {
        if (sender != lastFilteredSender()) {
            qDebug().noquote() << "udpHB: Filtered duplicate N6 heartbeat from:" << sender.toString();
            lastFilteredSender() = sender;
        }
        return;
    }
    if (!n6.online)
        qDebug().noquote() << "udpHB: N6 IP" << sender.toString();
    n6 = std::move(heard);
    n6.address = sender;
    n6.lastSeen.start();
    n6.online = true;
    updateServer();
    emit n6BeaconReceived();
}

// One N6 may be heard over several interfaces of this computer. A routable address is kept against such
// copies; a link-local one gives way to the next address that the same instrument is heard from.
bool udpHBClient::isDuplicateN6(const N6Device &heard, const QHostAddress &sender) const
{
    return n6.online && sender != n6.address &&
           !n6.address.toString().startsWith(QLatin1String("169.254.")) && heard.serial == n6.serial &&
           heard.applicationVersion == n6.applicationVersion;
}

void udpHBClient::acceptGyro(GyroDevice heard, const QHostAddress &sender)
{
    if (!gyro.online)
        qDebug().noquote() << "udpHB: Gyro IP" << sender.toString();
    gyro = std::move(heard);
    gyro.address = sender;
    gyro.lastSeen.start();
    gyro.online = true;
    emit gyroBeaconReceived();
}

void udpHBClient::tick()
{
    readBroadcastDatagrams();
    readResponseDatagrams();
    if (ranLongerThan(trafficWatchdog, protocol::trafficWatchdogMs)) {
        createSockets();
        emit heartbeatTick();
        return;
    }
    bool requestDue =
        ranLongerThan(requestTimer, protocol::requestRepeatMs) && (mode == Active || server.isNull());
    const bool listChanged = expireScreens();
    // One that has fallen silent is reason enough to ask everybody again.
    requestDue |= expire(n6, [this] { emit n6BeaconReceived(); });
    requestDue |= expire(gyro, [this] { emit gyroBeaconReceived(); });
    updateServer();
    emit heartbeatTick();
    if (listChanged)
        emit listUpdated();
    if (requestDue)
        sendRequest();
}

// Asks the N6 or the gyro when it has been silent for a while, and reports it offline when it stays so. True
// when it was asked.
template <typename Device, typename Report>
bool udpHBClient::expire(Device &device, Report report)
{
    const Silence silence = device.online ? silenceSince(device.lastSeen) : Silence::Short;
    if (silence == Silence::TooLong) {
        device.online = false;
        device.address.clear();
        report();
    } else if (silence == Silence::Long) {
        sendRequestTo(device.address);
    }
    return silence == Silence::Long;
}

// Asks the displays that have been silent for a while and drops those that stay so; returns whether any went.
// A slot of screenRemoved() may change the list under the loop, so the record is looked up again after it.
bool udpHBClient::expireScreens()
{
    bool changed = false;
    for (int i = 0; i < displays.size();) {
        const ScreenDevice screen = displays.at(i);
        const Silence silence = silenceSince(screen.lastSeen);
        if (silence != Silence::TooLong) {
            if (silence == Silence::Long)
                sendRequestTo(screen.address);
            ++i;
            continue;
        }
        qDebug().noquote() << "udpHB: Instrument" << screen.address.toString() << "timed out";
        emit screenRemoved(screen.serial);
        const bool stillHere = i < displays.size() && displays.at(i).address == screen.address;
        const int stillAt = stillHere ? i : indexOfScreen(screen.address);
        if (stillAt >= 0)
            displays.removeAt(stillAt);
        changed = true;
    }
    return changed;
}

int udpHBClient::indexOfScreen(const QHostAddress &address) const
{
    const auto found = std::find_if(displays.cbegin(), displays.cend(),
                                    [&](const ScreenDevice &screen) { return screen.address == address; });
    return found == displays.cend() ? -1 : found - displays.cbegin();
}

// Every device that claims to hold the settings; an N6 always does.
QList<QHostAddress> udpHBClient::serverCandidates() const
{
    QList<QHostAddress> candidates;
    for (const ScreenDevice &screen : displays) {
        if (screen.isServer)
            candidates += screen.address;
    }
    if (n6.online)
        candidates += n6.address;
    return candidates;
}

void udpHBClient::updateServer()
{
    const QList<QHostAddress> candidates = serverCandidates();
    if (candidates.size() > 1) {
        reportMultipleServers();
        return;
    }
    multipleServersTimer.invalidate();
    multipleServersSeen = false;
    if (candidates.isEmpty() && !server.isNull()) {
        qDebug().noquote() << "udpHB: Server removed:" << server.toString();
        server.clear();
        emit serverRemoved();
        emit listUpdated();
    } else if (!candidates.isEmpty() && candidates.first() != server) {
        server = candidates.first();
        qDebug().noquote() << "udpHB: Server changed:" << server.toString();
        emit serverChanged(candidates.first());
        emit listUpdated();
    }
}

// Two claims may be a change-over that heartbeats have not caught up with yet; only those that last are a
// conflict.
void udpHBClient::reportMultipleServers()
{
    if (!multipleServersTimer.isValid())
        multipleServersTimer.start();
    if (!ranLongerThan(multipleServersTimer, protocol::multipleServersConfirmMs))
        return;
    server.clear();
    multipleServersTimer.invalidate();
    multipleServersSeen = true;
    qDebug().noquote() << "udpHB: multiple servers detected.";
    emit serverRemoved();
    emit multipleServers();
}
