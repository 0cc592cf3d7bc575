// What the tool makes of heartbeats: the decoder, the client's records and signals, and the N6's commands.

#include "discovery/heartbeat.h"
#include "discovery/interfaces.h"
#include "discovery/n6commands.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/signalorder.h"
#include "tests/support/text.h"

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

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

QStringList &logged()
{
    static QStringList lines;
    return lines;
}

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
    return HeartbeatBytes{kind, "0123456789abcd\xc3\xa9", 0xFF, "", "5.1\xe9", "1.4.22", 351.456, 12.345F,
                          0x80}
        .build();
}

QByteArray measured(double lux, double volts)
{
    return HeartbeatBytes{Screen, "S", 0, "", "", "", lux, static_cast<float>(volts)}.build();
}

// An older device's; not valid, which does not count where it is of the first generation.
QByteArray older(const QByteArray &serial, int length, DeviceKind kind = Screen, quint8 valid = 1)
{
    return HeartbeatBytes{kind, serial, 0, "", "12345678901234", "", 0.0, 0.0F, 0, valid}.build().left(
        length);
}

} // namespace

class TestDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qInstallMessageHandler([](auto, const auto &, const QString &line) { logged() += line; });
    }
    void init() { logged().clear(); }

    void decodes()
    {
        const QString text = "0123456789abcd\u00e9 OS 5.1\u00e9 APP  "_s, ignored = "ignored"_s,
                      firstGeneration = "first generation"_s,
                      plain = " OS  APP  1 V 1 lux SCREEN  false false"_s;
        const QByteArray whole = full(Screen);
        using Row = std::tuple<const char *, QByteArray, QString>;
        const Row rows[] = {
            {"a display", whole + "more", text + "12.35 V 351.46 lux SCREEN 1.4.22 true true"_s},
            {"a second type", full(Screen2), text + "12.35 V 351.46 lux SCREEN2 1.4.22 true true"_s},
            {"an e-ink display tells less", full(Eink), text + "nan V 351.46 lux EINK  false true"_s},
            {"a gyro", full(Gyro), text + "12.35 V -1"_s},
            {"an N6", HeartbeatBytes::n6("N", 5, 6, -2), "N OS 5.1.2-rt APP 3.6 12 V 5 6 -2 1.4"_s},
            {"the shortest", measured(1, 1), QLatin1Char('S') + plain},
            {"halves grow", measured(0.125, 0.125), "S OS  APP  0.13 V 0.13 lux SCREEN  false false"_s},
            {"nothing is negative", measured(-1, -infinite), "S OS  APP  0 V 0 lux SCREEN  false false"_s},
            {"no zero is negative", measured(-0.0, -0.0), "S OS  APP  0 V 0 lux SCREEN  false false"_s},
            {"no number", measured(none, none), "S OS  APP  nan V 0 lux SCREEN  false false"_s},
            {"infinite", measured(infinite, infinite), "S OS  APP  inf V inf lux SCREEN  false false"_s},
            {"enormous", measured(1e38, 1e38), "S OS  APP  1e+38 V 1e+38 lux SCREEN  false false"_s},
            {"not valid", older("S", 54, Screen, 0), ignored},
            {"an unknown kind", QByteArray(whole).replace(0, 1, "!"), ignored},
            {"a single byte", whole.left(1), ignored},
            {"less than traffic", whole.left(17), ignored},
            {"as little as traffic", whole.left(18), ignored},
            {"no second length", measured(1, 1).left(39), ignored},
            {"a byte too short", older("S", 53), ignored},
            {"a first length to the end", whole.left(38) + QByteArray("\1\0", 2), ignored},
            {"a negative first length", whole.left(38) + QByteArray("\x80\0", 2) + whole, ignored},
            {"a second length beyond the end", whole.left(38) + QByteArray("\0\1", 2), ignored},
            {"a negative second length", whole.left(38) + QByteArray("\0\xff", 2) + whole, ignored},
            {"the first generation", older("aVK38b", 38, Screen, 0), firstGeneration},
            {"the first generation, cut", older("TZ582", 18, Screen, 0), firstGeneration},
            {"also with a hub's name", older("VHUB-TZ582", 38), firstGeneration},
            {"an older device's long heartbeat", older("TZ582", 39), ignored},
            {"an older device's valid heartbeat", older("VK38", 54), ignored},
            {"a hub", older("VHUB1", 54), ignored},
            {"an older name in another kind", older("VK38", 38, Screen2), ignored},
            {"an older name behind the end", measured(1, 1).replace(3, 4, "VK38"), QLatin1Char('S') + plain},
            {"another case", measured(1, 1).replace(1, 4, "vk38"), "vk38"_s + plain},
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
        const Net::InterfaceFlags unplugged = Net::IsUp | Net::CanMulticast,
                                  live = unplugged | Net::IsRunning;
        using Row = std::tuple<Net::InterfaceFlags, const char *, const char *>;
        for (const auto &[flags, name, use] : {Row{live, "my virtual", "ask listen"},
                                               {live, "VirtualBox Host-Only", "ask -"},
                                               {unplugged, "eth0", "ask -"},
                                               {live & ~Net::IsUp, "eth0", "- -"},
                                               {live & ~Net::CanMulticast, "eth0", "- -"},
                                               {live | Net::IsLoopBack, "lo", "- -"}}) {
            const bool listens = interfaces::listensOn(flags, QLatin1String(name));
            QCOMPARE("%1 %2"_s.arg(interfaces::asksOn(flags) ? "ask"_s : "-"_s, listens ? "listen"_s : "-"_s),
                     QLatin1String(use));
        }
    }

    void signalsEachChangeInOrder()
    {
        udpHBClient client(udpHBClient::Passive);
        SignalOrder order(client);
        const auto server = [&] { return client.serverScreen() ? client.serverScreen()->serial : "none"_s; };
        using Row = std::tuple<QByteArray, const char *, const char *, const char *>;
        for (const auto &[datagram, from, signalled, serverScreen] :
             {Row{HeartbeatBytes::device(Screen, "A", true), "10.0.0.1",
                  "listUpdated screenUpdated serverChanged listUpdated", "A"},
              {HeartbeatBytes::device(Eink, "E", true), "10.0.0.2", "listUpdated screenUpdated", "A"},
              {HeartbeatBytes::device(Screen2, "B"), "10.0.0.1", "screenUpdated serverRemoved listUpdated",
               "none"},
              {HeartbeatBytes::n6(), "10.0.0.9", "serverChanged listUpdated n6", "none"},
              {HeartbeatBytes::device(Gyro, "G"), "10.0.0.3", "gyro", "none"},
              {HeartbeatBytes::device(Gyro, "G"), "10.0.0.3", "gyro", "none"},
              {HeartbeatBytes::firstGeneration(), "10.0.0.4", "incompatible", "none"}}) {
            client.processHeartbeat(datagram, at(from));
            QCOMPARE(order.take(), QLatin1String(signalled));
            QCOMPARE(server(), QLatin1String(serverScreen));
        }
        QVERIFY(client.n6Online() && client.gyroOnline() && client.gyroDevice().address == at("10.0.0.3"));
        QCOMPARE(client.screens().at(0).type, "SCREEN2"_s);
        QCOMPARE(logged().join("; "_s),
                 "udpHB: Screen IP 10.0.0.1; udpHB: Server changed: 10.0.0.1; udpHB: E-Ink IP 10.0.0.2; "
                 "udpHB: Server removed: 10.0.0.1; udpHB: N6 IP 10.0.0.9; udpHB: Server changed: 10.0.0.9; "
                 "udpHB: Gyro IP 10.0.0.3"_s);
    }

    void filtersCopiesOfTheN6()
    {
        udpHBClient client(udpHBClient::Passive);
        using Row = std::tuple<const char *, const char *, const char *, const char *>;
        for (const auto &[sender, serial, application, known] : {Row{"169.254.3.4", "N6", "1", "169.254.3.4"},
                                                                 {"10.0.0.5", "N6", "1", "10.0.0.5"},
                                                                 {"169.254.3.4", "N6", "1", "10.0.0.5"},
                                                                 {"169.254.3.4", "N6", "1", "10.0.0.5"},
                                                                 {"10.0.0.6", "N6", "2", "10.0.0.6"},
                                                                 {"10.0.0.7", "other", "2", "10.0.0.7"}}) {
            client.processHeartbeat(HeartbeatBytes::n6(serial, 1, 0, 0, application), at(sender));
            QCOMPARE(client.n6Device().address, at(known));
            QCOMPARE(client.serverAddress(), at(known));
        }
        QCOMPARE(logged().filter("Filtered"_s),
                 QStringList("udpHB: Filtered duplicate N6 heartbeat from: 169.254.3.4"_s));
        QCOMPARE(logged().filter("N6 IP"_s).size(), 1);
    }

    void survivesEmptyDatagramsAndFailedBind()
    {
        QUdpSocket greedy;
        QVERIFY(greedy.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::heartbeatPort,
                            QAbstractSocket::DontShareAddress));
        udpHBClient client(udpHBClient::Active);
        client.tick();
        QCOMPARE(logged(), QStringList("Problem binding udpSocket on port 4020"_s));

        greedy.close();
        client.createSockets();
        const QByteArray whole = HeartbeatBytes::device(Screen, "A");
        for (const QByteArray &datagram : {QByteArray(), QByteArray(60000, 'x'), QByteArray(), whole})
            greedy.writeDatagram(datagram, at("127.0.0.1"), protocol::heartbeatPort);
        QTRY_COMPARE(client.screens().size(), 1);
        QCOMPARE(client.screens().at(0).address, at("127.0.0.1"));
        // A second copy of the tool hears the same.
        const udpHBClient other(udpHBClient::Passive);
        QCOMPARE(logged().filter("Problem"_s).size(), 1);
        const auto boat = QNetworkInterface::interfaceFromName("boat0"_s);
        if (!boat.isValid())
            QSKIP("multicast needs a network namespace");
        QUdpSocket device;
        QVERIFY(device.bind(QHostAddress(QHostAddress::AnyIPv4)));
        device.setMulticastInterface(boat);
        device.writeDatagram(whole, protocol::multicastGroup(), protocol::heartbeatPort);
        QTRY_COMPARE(other.screens().size(), 1);
        QTRY_COMPARE(client.screens().size(), 2);
    }

    void saysWhatIsMeant()
    {
        QCOMPARE(n6FactoryResetCommand("N6-\u00e9"_s), QByteArray("\x0fN6-\xe9").leftJustified(17, '\0'));
        QCOMPARE(n6FactoryResetCommand(QString(20, QLatin1Char('x'))), '\x0f' + QByteArray(20, 'x'));
        QStringList names;
        for (int model = 0; model < 7; ++model)
            names += n6ModelName(model);
        QCOMPARE(names.join(QLatin1Char('|')),
                 "Unknown|N6 Larch|N6 Moss|N6 Flint|N6 Fjord|N6 Heron|Unknown"_s);
        QCOMPARE(displayAddress(at("::ffff:10.0.0.1")), "10.0.0.1"_s);
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
        QElapsedTimer silence;
        silence.start();
        SignalOrder order(client);
        // A slot may change the list under the client's feet.
        bool replaced = false;
        connect(&client, &udpHBClient::screenRemoved, &client, [&] {
            if (!std::exchange(replaced, true))
                client.processHeartbeat(HeartbeatBytes::device(Eink, "new"), at("127.0.0.40"));
        });
        QTRY_VERIFY_WITH_TIMEOUT(!client.n6Online(), 9500);
        QVERIFY(silence.elapsed() > protocol::deviceTimeoutMs);
        QCOMPARE(order.take(),
                 "screenRemoved listUpdated screenUpdated screenRemoved screenRemoved n6 gyro serverRemoved "
                 "listUpdated listUpdated"_s);
        QCOMPARE(client.screens().size(), 1);
        QCOMPARE(client.screens().at(0).serial, "new"_s);
        QVERIFY(!client.gyroOnline() && client.serverAddress().isNull());
        QVERIFY(client.n6Device().address.isNull() && client.gyroDevice().address.isNull());
    }

    void confirmsSeveralServers()
    {
        udpHBClient client(2);
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.21"));
        client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        QElapsedTimer conflict;
        SignalOrder order(client);
        QSignalSpy several(&client, &udpHBClient::multipleServers);
        for (int round = 0; round < 2; ++round) {
            conflict.start();
            QVERIFY(several.wait(protocol::multipleServersConfirmMs + 2 * protocol::tickIntervalMs));
            QVERIFY(conflict.elapsed() > protocol::multipleServersConfirmMs - protocol::tickIntervalMs);
            QCOMPARE(order.take(), "serverRemoved multipleServers"_s);
            QVERIFY(client.multipleServersDetected() && client.serverAddress().isNull());
            // The N6 would time out in the second round.
            client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
            client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.21"));
            order.take();
        }
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A", false), at("127.0.0.21"));
        QCOMPARE(order.take(), "screenUpdated serverChanged listUpdated"_s);
        QVERIFY(!client.multipleServersDetected());
    }

    void asksAgainAndRenewsSockets_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("serverKnown");
        QTest::addColumn<int>("rounds");
        // Rounds of multicast within six and a half seconds: one at the start, another after more than four.
        QTest::newRow("active, nobody there") << 0 << false << 2;
        QTest::newRow("active, server silent") << 0 << true << 2;
        QTest::newRow("sparing, server silent") << 1 << true << 1;
        QTest::newRow("passive") << 2 << true << 0;
    }

    void asksAgainAndRenewsSockets()
    {
        const auto boat = QNetworkInterface::interfaceFromName("boat0"_s);
        if (!boat.isValid())
            QSKIP("multicast needs a network namespace");
        QFETCH(int, mode);
        QFETCH(bool, serverKnown);
        QFETCH(int, rounds);
        // A device that answers nothing but notes how it was asked.
        QUdpSocket device;
        QVERIFY(device.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::requestPort));
        QVERIFY(device.joinMulticastGroup(protocol::multicastGroup(), boat));
        int askedByMulticast = 0, askedAlone = 0;
        QSet<int> askingPorts;
        connect(&device, &QUdpSocket::readyRead, &device, [&] {
            while (device.hasPendingDatagrams()) {
                const QNetworkDatagram asked = device.receiveDatagram();
                QCOMPARE(asked.data(), QByteArray(1, '\0'));
                const bool isForAll = asked.destinationAddress() == protocol::multicastGroup();
                ++(isForAll ? askedByMulticast : askedAlone);
                QVERIFY(!isForAll || asked.hopLimit() == protocol::requestTtl);
                askingPorts += asked.senderPort();
            }
        });
        udpHBClient client(mode);
        QTRY_COMPARE(askedByMulticast, mode == 2 ? 0 : 2);
        if (serverKnown)
            client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.1"));
        QElapsedTimer quiet;
        quiet.start();
        QTRY_VERIFY_WITH_TIMEOUT(quiet.elapsed() > 6500, 8000);
        // Each round goes out from both sockets.
        QCOMPARE(askedByMulticast, 2 * rounds);
        QCOMPARE(askedAlone > 0, serverKnown && rounds > 0);
        // After more than eight seconds without traffic new sockets ask, and one of them from a new port.
        QTRY_COMPARE_WITH_TIMEOUT(askingPorts.size(), rounds == 0 ? 0 : 3, 5000);
    }
};

QTEST_GUILESS_MAIN(TestDiscovery)
#include "tst_discovery.moc"
