#include "discovery/heartbeat.h"
#include "discovery/interfaces.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/signalorder.h"
#include "tests/support/text.h"

#include <QTest>
#include <QUdpSocket>

#include <array>
#include <cmath>
#include <limits>
#include <tuple>
#include <vector>

using heartbeat::decode;

namespace
{

QStringList &logged()
{
    static QStringList lines;
    return lines;
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

    void decodesEveryKind()
    {
        HeartbeatBytes parts{0x00, "0123456789abcd\xc3\xa9"};
        parts.firmware = "1.4.22";
        parts.lux = 351.456;
        parts.volts = 12.345F;
        parts.lsFlag = 0x80;
        parts.serverFlag = 0xFF;
        parts.system = "5.1\xe9";
        parts.application.clear();
        for (const char *const expected :
             {"SCREEN|1.4.22|12.35|1", "SCREEN2|1.4.22|12.35|1", "EINK||nan|0"}) {
            parts.kind = *expected == 'E' ? 0x50 : expected[6] == '2' ? 0x20 : 0x00;
            const auto screen = std::get<ScreenDevice>(decode(parts.build() + "more to come"));
            QCOMPARE("%1|%2|%3|%4"_s.arg(screen.type, screen.firmwareVersion)
                         .arg(screen.supplyVoltage)
                         .arg(screen.isServer),
                     QLatin1String(expected));
            QCOMPARE(screen.serial + screen.systemVersion + screen.applicationVersion,
                     "0123456789abcd\u00e95.1\u00e9"_s);
            QVERIFY(screen.lsFlag && screen.ambientLux == 351.46);
        }
        const auto n6 = std::get<N6Device>(decode(HeartbeatBytes::n6("N6", 5, 6, -2)));
        QCOMPARE(n6.serial + n6.firmwareVersion, "N61.4"_s);
        QVERIFY(n6.model == 5 && n6.port1Mode == 6 && n6.port2Mode == -2);
        parts.kind = 0x72;
        QCOMPARE(std::get<GyroDevice>(decode(parts.build())).status, -1);
    }

    void ignoresMalformed()
    {
        const QByteArray whole = HeartbeatBytes().build();
        QList<QByteArray> malformed{whole, whole};
        malformed[0][17] = 0;
        malformed[1][0] = 0x21;
        for (const int length : {0, 17, 18, 39, whole.size() - 1})
            malformed += whole.left(length);
        for (const int length : {2, 127, 128, 255}) {
            malformed += whole.left(38) + static_cast<char>(length) + '\0';
            malformed += whole.left(38) + '\0' + static_cast<char>(length);
        }
        for (const QByteArray &bytes : qAsConst(malformed)) {
            // An exact copy on the heap, so that a sanitizer sees any read past the end.
            const std::vector<char> exact(bytes.begin(), bytes.end());
            const auto datagram = QByteArray::fromRawData(exact.data(), bytes.size());
            QVERIFY2(std::holds_alternative<heartbeat::Ignored>(decode(datagram)), bytes.toHex().constData());
            QCOMPARE(heartbeat::isTraffic(datagram), bytes.size() >= 18);
        }
    }

    void cleansNumbers()
    {
        constexpr double infinite = std::numeric_limits<double>::infinity();
        constexpr double none = std::numeric_limits<double>::quiet_NaN();
        using Row = std::array<double, 3>; // sent, then shown as light and as voltage
        // Halves go away from zero; nothing is negative, not even a zero; what no integer could hold stays as
        // it is.
        for (const auto &[sent, lux, volts] :
             {Row{0.125, 0.13, 0.13}, Row{-1.0, 0.0, 0.0}, Row{-0.0, 0.0, 0.0}, Row{none, 0.0, none},
              Row{infinite, infinite, infinite}, Row{-infinite, 0.0, 0.0},
              Row{1e38, 1e38, static_cast<double>(1e38F)}}) {
            HeartbeatBytes parts;
            parts.lux = sent;
            parts.volts = static_cast<float>(sent);
            const auto screen = std::get<ScreenDevice>(decode(parts.build()));
            QCOMPARE(screen.ambientLux, lux);
            QCOMPARE(screen.supplyVoltage, volts);
            QVERIFY(!std::signbit(screen.ambientLux) &&
                    (std::isnan(volts) || !std::signbit(screen.supplyVoltage)));
        }
    }

    void tellsOlderDevicesApart()
    {
        // Serial, length and outcome: of the first generation, ignored, a screen.
        using Row = std::tuple<QByteArray, int, char>;
        for (const auto &[serial, length, outcome] :
             {Row{"aVK38b", 38, 'f'}, Row{"TZ582", 18, 'f'}, Row{"VHUB-TZ582", 38, 'f'}, Row{"VK38", 39, 'i'},
              Row{"VK38", 53, 'i'}, Row{"VHUB1", 38, 'i'}, Row{"VHUB1", 53, 'i'}, Row{"vk38", 53, 's'},
              Row{QByteArray("A\0VK38", 6), 53, 's'}}) {
            HeartbeatBytes parts{0x00, serial};
            // A short heartbeat of the first generation is reported even when it says that it is not valid.
            parts.valid = outcome == 'f' ? 0 : 1;
            const auto decoded = decode(parts.build().left(length));
            QCOMPARE(std::holds_alternative<heartbeat::Incompatible>(decoded), outcome == 'f');
            QCOMPARE(std::holds_alternative<ScreenDevice>(decoded), outcome == 's');
            parts.kind = 0x20;
            QVERIFY(!std::holds_alternative<heartbeat::Incompatible>(decode(parts.build().left(length))));
        }
    }

    void choosesInterfaces()
    {
        using Net = QNetworkInterface;
        using interfaces::asksOn, interfaces::listensOn;
        const Net::InterfaceFlags unplugged = Net::IsUp | Net::CanMulticast,
                                  live = unplugged | Net::IsRunning;
        QVERIFY(asksOn(live) && listensOn(live, "my virtual"_s) &&
                !listensOn(live, "VirtualBox Host-Only"_s));
        QVERIFY(asksOn(unplugged) && !listensOn(unplugged, "eth0"_s));
        for (const Net::InterfaceFlags &unfit :
             {live & ~Net::IsUp, live & ~Net::CanMulticast, live | Net::IsLoopBack})
            QVERIFY(!asksOn(unfit) && !listensOn(unfit, "eth0"_s));
    }

    void signalsEachChangeInOrder()
    {
        udpHBClient client(2);
        SignalOrder order(client);
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("10.0.0.1"));
        QCOMPARE(order.take(), "listUpdated screenUpdated serverChanged listUpdated"_s);
        QCOMPARE(client.serverScreen(), &client.screens().at(0));
        client.processHeartbeat(HeartbeatBytes::device(Eink, "E", true), at("10.0.0.2"));
        QCOMPARE(order.take(), "listUpdated screenUpdated"_s);
        client.processHeartbeat(HeartbeatBytes::device(Screen2, "B"), at("10.0.0.1"));
        QCOMPARE(order.take(), "screenUpdated serverRemoved listUpdated"_s);
        QCOMPARE(client.screens().at(0).type, "SCREEN2"_s);
        client.processHeartbeat(HeartbeatBytes::n6(), at("10.0.0.9"));
        QCOMPARE(order.take(), "serverChanged listUpdated n6"_s);
        QVERIFY(client.n6Online() && !client.serverScreen());
        client.processHeartbeat(HeartbeatBytes::device(Gyro, "G"), at("10.0.0.3"));
        client.processHeartbeat(HeartbeatBytes::firstGeneration(), at("10.0.0.4"));
        QCOMPARE(order.take(), "gyro incompatible"_s);
        QCOMPARE(logged().join("; "_s),
                 "udpHB: Screen IP 10.0.0.1; udpHB: Server changed: 10.0.0.1; udpHB: E-Ink IP 10.0.0.2; "
                 "udpHB: Server removed: 10.0.0.1; udpHB: N6 IP 10.0.0.9; udpHB: Server changed: 10.0.0.9; "
                 "udpHB: Gyro IP 10.0.0.3"_s);
    }

    void filtersCopiesOfTheN6()
    {
        udpHBClient client(2);
        const auto hear = [&](const char *sender, const char *serial, const char *application) {
            client.processHeartbeat(HeartbeatBytes::n6(serial, 1, 0, 0, application), at(sender));
            return client.n6Device().address.toString();
        };
        QCOMPARE(hear("169.254.3.4", "N6", "1"), "169.254.3.4"_s);
        QCOMPARE(hear("10.0.0.5", "N6", "1"), "10.0.0.5"_s);
        QCOMPARE(hear("169.254.3.4", "N6", "1"), "10.0.0.5"_s);
        QCOMPARE(hear("169.254.3.4", "N6", "1"), "10.0.0.5"_s);
        QCOMPARE(logged().filter("Filtered"_s),
                 QStringList("udpHB: Filtered duplicate N6 heartbeat from: 169.254.3.4"_s));
        QCOMPARE(hear("10.0.0.6", "N6", "2"), "10.0.0.6"_s);
        QCOMPARE(hear("10.0.0.7", "other", "2"), "10.0.0.7"_s);
        QCOMPARE(client.serverAddress(), at("10.0.0.7"));
    }

    void survivesEmptyDatagramsAndFailedBind()
    {
        QUdpSocket greedy;
        QVERIFY(greedy.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::heartbeatPort,
                            QAbstractSocket::DontShareAddress));
        udpHBClient client(0);
        client.tick();
        QCOMPARE(logged(), QStringList("Problem binding udpSocket on port 4020"_s));

        greedy.close();
        client.createSockets();
        const QByteArray whole = HeartbeatBytes::device(Screen, "A");
        for (const QByteArray &datagram : {QByteArray(), QByteArray(60000, 'x'), QByteArray(), whole})
            greedy.writeDatagram(datagram, at("127.0.0.1"), protocol::heartbeatPort);
        QTRY_COMPARE(client.screens().size(), 1);
        QCOMPARE(client.screens().at(0).address, at("127.0.0.1"));
    }
};

QTEST_GUILESS_MAIN(TestDiscovery)
#include "tst_discovery.moc"
