#pragma once

#include "discovery/devices.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QTimer>

class QUdpSocket;

/// Finds the devices of the boat by their heartbeats and keeps their records current. The main window owns
/// the one client of the process; every page shares it and hears of changes through its signals. A slot of
/// these may do anything but delete the client.
class udpHBClient : public QObject
{
    Q_OBJECT

public:
    /// When to ask by multicast again: always, only while no server is known (so do all values that are not
    /// named here), or never, and then nothing is sent to anyone.
    enum Mode { Active = 0, UntilServer = 1, Passive = 2 };

    /// Starts asking at once, in a Mode.
    explicit udpHBClient(int requestMode, QObject *parent = nullptr);

    /// The displays in order of first appearance. Copy what is needed before an event loop may run.
    const QList<ScreenDevice> &screens() const { return displays; }
    /// The display that is the elected server, or nullptr when there is none or the server is the N6. Valid
    /// until the list changes.
    const ScreenDevice *serverScreen() const;
    /// The N6 as last heard; while it is offline its address is null. The next heartbeat overwrites the
    /// record.
    const N6Device &n6Device() const { return n6; }
    /// The gyro as last heard; while it is offline its address is null. The next heartbeat overwrites the
    /// record.
    const GyroDevice &gyroDevice() const { return gyro; }
    /// An N6 was heard and has not timed out.
    bool n6Online() const { return n6.online; }
    /// A gyro was heard and has not timed out.
    bool gyroOnline() const { return gyro.online; }
    /// Several devices have claimed to be the server for 2500 ms.
    bool multipleServersDetected() const { return multipleServersSeen; }
    /// The elected server; null when there is none.
    const QHostAddress &serverAddress() const { return server; }

signals:
    /// At the end of every tick, and after the watchdog renewed the sockets.
    void heartbeatTick();
    /// The elected server is another single device than before.
    void serverChanged(const QHostAddress &address);
    /// The server is gone, or several devices claim to be it.
    void serverRemoved();
    /// A display was added or timed out, or the server changed or disappeared.
    void listUpdated();
    /// A display's heartbeat was accepted; carries the record as now stored.
    void screenUpdated(const ScreenDevice &screen);
    /// A display timed out.
    void screenRemoved(const QString &serial);
    /// An N6 heartbeat was accepted, or the N6 timed out.
    void n6BeaconReceived();
    /// A gyro heartbeat was accepted, or the gyro timed out.
    void gyroBeaconReceived();
    /// A first-generation device was heard, which this tool cannot serve.
    void incompatibleDevice();
    /// Several devices have claimed to be the server for 2500 ms; repeated while it lasts.
    void multipleServers();

public slots:
    /// Once a second: times devices out, asks the silent ones, renews sockets that hear nothing.
    void tick();
    /// Takes the heartbeats that devices sent unasked; for a few milliseconds at most, what is left comes
    /// next.
    void readBroadcastDatagrams();
    /// The same for heartbeats that answer a request.
    void readResponseDatagrams();
    /// Decodes one datagram and updates the records. Malformed ones are dropped silently.
    void processHeartbeat(const QByteArray &datagram, const QHostAddress &sender);
    /// Replaces both sockets by fresh ones and asks for heartbeats.
    void createSockets();
    /// Asks every device by multicast, on each interface that can.
    void sendRequest();
    /// Asks one device by unicast.
    void sendRequestTo(const QHostAddress &target);

private:
    void bindSocket(QUdpSocket *socket, quint16 port);
    void readDatagrams(QUdpSocket *const &socket);
    void acceptScreen(ScreenDevice screen, const QHostAddress &sender);
    void acceptN6(N6Device heard, const QHostAddress &sender);
    void acceptGyro(GyroDevice heard, const QHostAddress &sender);
    bool isDuplicateN6(const N6Device &heard, const QHostAddress &sender) const;
    int indexOfScreen(const QHostAddress &address) const;
    QList<QHostAddress> serverCandidates() const;
    template <typename Device, typename Report>
    bool expire(Device &device, Report report);
    bool expireScreens();
    void updateServer();
    void reportMultipleServers();

    int mode;
    bool multipleServersSeen = false;
    QHostAddress server;
    QUdpSocket *broadcastSocket = nullptr;
    QUdpSocket *responseSocket = nullptr;
    N6Device n6;
    GyroDevice gyro;
    QList<ScreenDevice> displays;
    QElapsedTimer multipleServersTimer;
    QElapsedTimer requestTimer;
    QElapsedTimer trafficWatchdog;
    QTimer tickTimer{this};
};
