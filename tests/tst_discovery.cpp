// clazy:excludeall=non-pod-global-static
// What the tool makes of heartbeats: the decoder, the client's records and signals.

#include "discovery/heartbeat.h"
#include "discovery/interfaces.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/text.h"

#include <QDeadlineTimer>
#include <QMetaMethod>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>

#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float noNumber = std::numeric_limits<float>::quiet_NaN();

QStringList logged;

// Every field of the record that a datagram becomes.
QString told(const QByteArray &datagram)
{
    const heartbeat::Decoded decoded = heartbeat::decode(datagram);
    QString record;
    QDebug out = QDebug(&record).noquote();
    const auto tell = [&](const auto &device, const auto &...more) {
        out << device.serial << "OS" << device.systemVersion << "APP" << device.applicationVersion;
        out << device.supplyVoltage << "V";
        (out << ... << more);
    };
    if (const auto *screen = std::get_if<ScreenDevice>(&decoded))
        tell(*screen, screen->ambientLux, "lux", screen->type, screen->firmwareVersion, screen->isServer,
             screen->lsFlag);
    else if (const auto *n6 = std::get_if<N6Device>(&decoded))
        tell(*n6, n6->model, n6->port1Mode, n6->port2Mode, n6->firmwareVersion);
    else if (const auto *gyro = std::get_if<GyroDevice>(&decoded))
        tell(*gyro, gyro->status);
    else
        out << (std::holds_alternative<heartbeat::Incompatible>(decoded) ? "first generation" : "ignored");
    return record.trimmed();
}

QByteArray full(DeviceKind kind)
{
    return HeartbeatBytes{kind, "0123456789abcd\xc3\xa9", 0xFF, "", "5.1\xe9", "1.4.22", 351.126, 12.345F,
                          0x80}
        .build();
}

QByteArray measured(double lux, float volts)
{
    return HeartbeatBytes{Screen, "S", 0, "", "", "", lux, volts}.build();
}

// An older device's; not valid, which does not count where it is of the first generation.
QByteArray older(const QByteArray &serial, int size, DeviceKind kind = Screen, quint8 valid = 1)
{
    return HeartbeatBytes{kind, serial, 0, "", "12345678901234", "", 0.0, 12.0F, 0, valid}.build().left(size);
}

} // namespace

class TestDiscovery : public QObject
{
    Q_OBJECT

public slots:
    void note() { noted += sender()->metaObject()->method(senderSignalIndex()).name(); }

private slots:
    void initTestCase()
    {
        qInstallMessageHandler([](auto, const auto &, const QString &line) { logged += line; });
    }
    void init() { logged.clear(); }

    void decodes()
    {
        const QString text = "0123456789abcd\u00e9 OS 5.1\u00e9 APP  "_s, ignored = "ignored"_s,
                      firstGen = "first generation"_s, plain = " OS  APP  1 V 1.13 lux SCREEN  false false"_s;
        const QByteArray whole = full(Screen);
        using Row = std::tuple<const char *, QByteArray, QString>;
        const Row rows[] = {
            {"a display", whole + "more", text + "12.35 V 351.13 lux SCREEN 1.4.22 true true"_s},
            {"an e-ink display tells less", full(Eink), text + "nan V 351.13 lux EINK  false true"_s},
            {"a gyro", full(Gyro), text + "12.35 V -1"_s},
            {"an N6", HeartbeatBytes::n6("N", 5, 6, -2), "N OS 5.1.2-rt APP 3.6 12 V 5 6 -2 1.4"_s},
            {"nothing is negative", measured(-1, -1), "S OS  APP  0 V 0 lux SCREEN  false false"_s},
            {"no number", measured(noNumber, noNumber), "S OS  APP  nan V 0 lux SCREEN  false false"_s},
            {"enormous", measured(1e38, infinite), "S OS  APP  inf V 1e+38 lux SCREEN  false false"_s},
            {"not valid", older("S", 54, Screen, 0), ignored},
            {"an unknown kind", QByteArray(whole).replace(0, 1, "!"), ignored},
            {"less than traffic", whole.left(17), ignored},
            {"a first length to the end", whole.left(38) + QByteArray("\1\0", 2), ignored},
            {"a negative first length", whole.left(38) + QByteArray("\x80\0", 2) + whole, ignored},
            {"a second length beyond the end", whole.left(38) + QByteArray("\0\1", 2), ignored},
            {"a negative second length", whole.left(38) + QByteArray("\0\xff", 2) + whole, ignored},
            {"the first generation, with a hub's name", older("VHUB-VK38b", 38, Screen, 0), firstGen},
            {"the first generation, cut", older("aTZ582", 18, Screen, 0), firstGen},
            {"an older device's long heartbeat", older("TZ582", 39), ignored},
            {"an older device's valid heartbeat", older("VK38", 54), ignored},
            {"a hub", older("VHUB1", 54), ignored},
            {"an older name in another kind", older("VK38", 38, Screen2), ignored},
            {"an older name behind the end", measured(1.125, 1).replace(3, 4, "VK38"), "S"_s + plain},
        };
        for (const auto &[name, bytes, record] : rows) {
            // An exact copy on the heap, so that a sanitizer sees any read past the end.
            const std::vector<char> exact(bytes.begin(), bytes.end());
            const auto datagram = QByteArray::fromRawData(exact.data(), bytes.size());
            QVERIFY2(told(datagram) == record, qPrintable(QLatin1String(name) + ": "_s + told(datagram)));
            QCOMPARE(heartbeat::isTraffic(datagram), datagram.size() > 17);
        }
    }

    void choosesInterfaces()
    {
        using Net = QNetworkInterface;
        const Net::InterfaceFlags live = Net::IsUp | Net::CanMulticast | Net::IsRunning;
        QVERIFY(interfaces::listensOn(live, "my virtual"_s) && interfaces::asksOn(live & ~Net::IsRunning));
        QVERIFY(!interfaces::listensOn(live, "VirtualBox Host-Only"_s));
        QVERIFY(!interfaces::listensOn(live & ~Net::IsRunning, {}));
        for (const auto flags : {live & ~Net::IsUp, live & ~Net::CanMulticast, live | Net::IsLoopBack})
            QVERIFY(!interfaces::asksOn(flags) && !interfaces::listensOn(flags, {}));
    }

    void signalsEachChangeInOrder()
    {
        udpHBClient client(udpHBClient::Passive);
        follow(client);
        const char *const nothing = "", *const n6 = "n6BeaconReceived", *const gyro = "gyroBeaconReceived",
                          *const shown = "listUpdated screenUpdated",
                          *const taken = "screenUpdated serverChanged listUpdated",
                          *const left = "screenUpdated serverRemoved listUpdated",
                          *const elected = "serverChanged listUpdated n6BeaconReceived";
        using Row = std::tuple<QByteArray, const char *, const char *, const char *>;
        // What comes from where, what that is signalled by, and who is the server then.
        for (const auto &[datagram, from, signalled, server] :
             {Row{HeartbeatBytes::device(Screen, "A"), "10.0.0.1", shown, " "},
              {HeartbeatBytes::device(Screen, "A", true), "10.0.0.1", taken, "A 10.0.0.1"},
              {HeartbeatBytes::device(Eink, "E", true), "10.0.0.2", shown, "A 10.0.0.1"},
              {HeartbeatBytes::device(Screen2, "B"), "10.0.0.1", left, " "},
              {HeartbeatBytes::n6(), "169.254.3.4", elected, " 169.254.3.4"},
              {HeartbeatBytes::n6(), "10.0.0.5", elected, " 10.0.0.5"},
              {HeartbeatBytes::n6(), "10.0.0.5", n6, " 10.0.0.5"},
              {HeartbeatBytes::n6(), "169.254.3.4", nothing, " 10.0.0.5"},
              {HeartbeatBytes::n6(), "169.254.3.4", nothing, " 10.0.0.5"},
              {HeartbeatBytes::n6("N6", 1, 0, 0, "2"), "10.0.0.6", elected, " 10.0.0.6"},
              {HeartbeatBytes::n6("other", 1, 0, 0, "2"), "10.0.0.7", elected, " 10.0.0.7"},
              {HeartbeatBytes::device(Gyro, "G"), "10.0.0.3", gyro, " 10.0.0.7"},
              {HeartbeatBytes::device(Gyro, "G"), "10.0.0.3", gyro, " 10.0.0.7"},
              {HeartbeatBytes::firstGeneration(), "10.0.0.4", "incompatibleDevice", " 10.0.0.7"}}) {
            client.processHeartbeat(datagram, at(from));
            QCOMPARE(signalledSince(), QLatin1String(signalled));
            const ScreenDevice *const screen = client.serverScreen();
            QCOMPARE((screen ? screen->serial : QString()) + " "_s + client.serverAddress().toString(),
                     QLatin1String(server));
        }
        QVERIFY(client.n6Device().address == at("10.0.0.7") && client.gyroDevice().address == at("10.0.0.3"));
        QCOMPARE(logged.join(QLatin1Char('|')).remove("udpHB: "_s),
                 "Screen IP 10.0.0.1|Server changed: 10.0.0.1|E-Ink IP 10.0.0.2|Server removed: 10.0.0.1|"
                 "N6 IP 169.254.3.4|Server changed: 169.254.3.4|Server changed: 10.0.0.5|"
                 "Filtered duplicate N6 heartbeat from: 169.254.3.4|Server changed: 10.0.0.6|"
                 "Server changed: 10.0.0.7|Gyro IP 10.0.0.3"_s);
    }

    void survivesEmptyDatagramsAndFailedBind()
    {
        QUdpSocket greedy;
        QVERIFY(greedy.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::heartbeatPort,
                            QAbstractSocket::DontShareAddress));
        udpHBClient client(udpHBClient::Active);
        client.tick();
        QCOMPARE(logged, QStringList("Problem binding udpSocket on port 4020"_s));

        if (!boat.isValid())
            QSKIP("multicast needs a network namespace");
        greedy.close();
        QVERIFY(greedy.bind(QHostAddress(QHostAddress::AnyIPv4)));
        greedy.setMulticastInterface(boat);
        client.createSockets();
        // A second copy of the tool hears the same.
        const udpHBClient other(udpHBClient::Passive);
        QCOMPARE(logged.size(), 1);
        const auto send = [&](const QByteArray &datagram) {
            return greedy.writeDatagram(datagram, protocol::multicastGroup(), protocol::heartbeatPort) >= 0;
        };
        QVERIFY(send({}) && send(QByteArray(60000, 'x')));
        // A busy system may lose one.
        QTRY_VERIFY(send(full(Screen)) && client.screens().size() == 1 && other.screens().size() == 1);
        QCOMPARE(client.screens().at(0).address, boat.addressEntries().constFirst().ip());
    }

    // What takes real seconds: silence, repeats and renewed sockets.

    void timesSilentDevicesOut()
    {
        udpHBClient client(2);
        QSignalSpy ticked(&client, &udpHBClient::heartbeatTick);
        QVERIFY(ticked.wait());
        // Half way between two ticks, so that all their silences end on the same one.
        QTimer::singleShot(protocol::tickIntervalMs / 2, &client, [&] {
            for (const char *address : {"127.0.0.21", "127.0.0.22", "127.0.0.23"})
                client.processHeartbeat(HeartbeatBytes::device(Screen, address), at(address));
            client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
            client.processHeartbeat(HeartbeatBytes::device(Gyro, "G"), at("127.0.0.30"));
        });
        QTRY_VERIFY(client.gyroOnline());
        const QDeadlineTimer early(protocol::deviceTimeoutMs);
        follow(client);
        // A slot may change the list under the client's feet.
        bool replaced = false;
        connect(&client, &udpHBClient::screenRemoved, &client, [&] {
            if (!std::exchange(replaced, true))
                client.processHeartbeat(HeartbeatBytes::device(Eink, "new"), at("127.0.0.40"));
        });
        QTRY_VERIFY_WITH_TIMEOUT(!client.n6Online(), 9500);
        QVERIFY(early.hasExpired());
        QCOMPARE(signalledSince(),
                 "screenRemoved listUpdated screenUpdated screenRemoved screenRemoved n6BeaconReceived "
                 "gyroBeaconReceived serverRemoved listUpdated listUpdated"_s);
        QVERIFY(client.screens().size() == 1 && client.screens().at(0).serial == "new"_s);
        QVERIFY(client.n6Device().address.isNull() && client.gyroDevice().address.isNull());
    }

    void confirmsSeveralServers()
    {
        udpHBClient client(udpHBClient::Passive);
        follow(client);
        for (int round = 0; round < 2; ++round) {
            client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
            client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.21"));
            signalledSince();
            const QDeadlineTimer early(protocol::multipleServersConfirmMs - protocol::tickIntervalMs);
            QTRY_VERIFY(!noted.isEmpty());
            QCOMPARE(signalledSince(), "serverRemoved multipleServers"_s);
            QVERIFY(early.hasExpired());
            QVERIFY(client.multipleServersDetected() && client.serverAddress().isNull());
        }
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A"), at("127.0.0.21"));
        QCOMPARE(signalledSince(), "screenUpdated serverChanged listUpdated"_s);
        QVERIFY(!client.multipleServersDetected());
    }

    // Rounds of multicast within six ticks: one at the start, another after more than four seconds.
    void asksAgainInSpiteOfAServer() { ask(udpHBClient::Active, true, 2); }
    void asksAgainWhereNobodyIs() { ask(udpHBClient::UntilServer, false, 2); }
    void asksOnlyASilentServerAgain() { ask(udpHBClient::UntilServer, true, 1); }
    void asksNobody() { ask(udpHBClient::Passive, true, 0); }

private:
    // Asks so often, with a server or without, and renews the sockets when nothing is heard.
    void ask(int mode, bool serverKnown, int rounds)
    {
        if (!boat.isValid())
            QSKIP("multicast needs a network namespace");
        // A device that answers nothing but notes the ports from which it is asked.
        QUdpSocket device;
        QVERIFY(device.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::requestPort));
        QVERIFY(device.joinMulticastGroup(protocol::multicastGroup(), boat));
        QList<int> toAll, alone;
        const QDeadlineTimer early(protocol::requestRepeatMs);
        connect(&device, &QUdpSocket::readyRead, &device, [&] {
            while (device.hasPendingDatagrams()) {
                const QNetworkDatagram asked = device.receiveDatagram();
                const bool isForAll = asked.destinationAddress() == protocol::multicastGroup();
                (isForAll ? toAll : alone) += asked.senderPort();
                QVERIFY(isForAll ? asked.hopLimit() == protocol::requestTtl : early.hasExpired());
                QCOMPARE(asked.data(), QByteArray(1, '\0'));
            }
        });
        udpHBClient client(mode);
        if (serverKnown)
            client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.1"));
        const QSignalSpy ticks(&client, &udpHBClient::heartbeatTick);
        QTRY_COMPARE_WITH_TIMEOUT(ticks.size(), 6, 8000);
        // Each round goes out from both sockets; a busy system puts the second one off by a tick.
        QTRY_COMPARE(toAll.size(), 2 * rounds);
        QTRY_COMPARE(!alone.isEmpty(), serverKnown && rounds > 0);
        // After more than eight seconds without traffic new sockets ask, and one of them from a new port.
        QTRY_COMPARE_WITH_TIMEOUT(QSet<int>(toAll.begin(), toAll.end()).size(), rounds == 0 ? 0 : 3, 5000);
        QTRY_COMPARE(client.findChildren<QUdpSocket *>().size(), 2);
    }

    // Notes each signal of the client but its ticks.
    void follow(const udpHBClient &client)
    {
        const QMetaMethod note = metaObject()->method(metaObject()->indexOfMethod("note()"));
        const QMetaObject &all = udpHBClient::staticMetaObject;
        for (int i = all.methodOffset(); all.method(i).methodType() == QMetaMethod::Signal; ++i) {
            if (all.method(i).name() != "heartbeatTick")
                connect(&client, all.method(i), this, note);
        }
    }

    // The names of the signals that came since the last call.
    QString signalledSince() { return QString::fromLatin1(std::exchange(noted, {}).join(' ')); }

    const QNetworkInterface boat = QNetworkInterface::interfaceFromName("boat0"_s);
    QByteArrayList noted;
};

QTEST_GUILESS_MAIN(TestDiscovery)
#include "tst_discovery.moc"
