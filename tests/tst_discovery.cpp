#include "discovery/heartbeat.h"
#include "discovery/interfaces.h"
#include "discovery/n6commands.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/signalorder.h"

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

void keepLog(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &line)
{
    logged() += line;
}

} // namespace

class TestDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qInstallMessageHandler(keepLog); }
    void init() { logged().clear(); }

    void decodesDisplays()
    {
        HeartbeatBytes parts{0x00, "0123456789abcdef"};
        parts.firmware = "1.4.22";
        parts.lux = 351.456;
        parts.volts = 12.345F;
        parts.lsFlag = 0x80;
        parts.serverFlag = 2;
        parts.system = "5.1\xe9";
        for (const int kind : {0x00, 0x20, 0x50}) {
            parts.kind = static_cast<quint8>(kind);
            const auto screen = std::get<ScreenDevice>(decode(parts.build() + "more to come"));
            const bool eink = screen.type == QLatin1String("EINK");
            QCOMPARE(screen.type, QLatin1String(kind == 0 ? "SCREEN" : kind == 0x20 ? "SCREEN2" : "EINK"));
            QCOMPARE(screen.serial, QStringLiteral("0123456789abcdef"));
            QCOMPARE(screen.systemVersion, QStringLiteral(u"5.1\u00e9"));
            QCOMPARE(screen.applicationVersion, QStringLiteral("2.1.0"));
            QCOMPARE(screen.ambientLux, 351.46);
            QVERIFY(screen.lsFlag && screen.isServer == !eink);
            QCOMPARE(screen.firmwareVersion, eink ? QString() : QStringLiteral("1.4.22"));
            QVERIFY(eink ? std::isnan(screen.supplyVoltage) : qFuzzyCompare(screen.supplyVoltage, 12.35));
        }
    }

    void decodesN6AndGyro()
    {
        const auto n6 = std::get<N6Device>(decode(HeartbeatBytes::n6("N6-\xc3\xa9", 5, 6, -2)));
        QCOMPARE(n6.serial, QStringLiteral(u"N6-\u00e9"));
        QCOMPARE(n6.model, 5);
        QCOMPARE(n6.port1Mode, 6);
        QCOMPARE(n6.port2Mode, -2);
        QCOMPARE(n6.firmwareVersion, QStringLiteral("1.4"));

        HeartbeatBytes parts{0x72};
        parts.serverFlag = 0xFF;
        parts.system.clear();
        parts.application.clear();
        const auto gyro = std::get<GyroDevice>(decode(parts.build()));
        QCOMPARE(gyro.status, -1);
        QCOMPARE(gyro.applicationVersion, QString());
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

    void padsTheSerialOfAReset()
    {
        QCOMPARE(n6FactoryResetCommand(QStringLiteral(u"N6\u00e9")),
                 QByteArray("\x0fN6\xe9") + QByteArray(13, '\0'));
    }

    void choosesInterfaces()
    {
        using Net = QNetworkInterface;
        const auto use = [](Net::InterfaceFlags set, const char *name) {
            return QLatin1String(interfaces::asksOn(set) ? "1" : "0") +
                   QLatin1String(interfaces::listensOn(set, QLatin1String(name)) ? "1" : "0");
        };
        const Net::InterfaceFlags live = Net::IsUp | Net::IsRunning | Net::CanMulticast;
        QCOMPARE(use(live, "eth0"), QStringLiteral("11"));
        QCOMPARE(use(live, "my virtual"), QStringLiteral("11"));
        QCOMPARE(use(live, "VirtualBox Host-Only"), QStringLiteral("10"));
        QCOMPARE(use(Net::IsUp | Net::CanMulticast, "cable pulled"), QStringLiteral("10"));
        QCOMPARE(use(Net::CanMulticast, "down"), QStringLiteral("00"));
        QCOMPARE(use(Net::IsUp | Net::IsRunning, "no multicast"), QStringLiteral("00"));
        QCOMPARE(use(live | Net::IsLoopBack, "lo"), QStringLiteral("00"));
    }

    void signalsEachChangeInOrder()
    {
        udpHBClient client(2);
        SignalOrder order(client);
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "A", true), at("10.0.0.1"));
        QCOMPARE(order.take(), QStringLiteral("listUpdated screenUpdated serverChanged listUpdated"));
        QCOMPARE(client.serverScreen(), &client.screens().at(0));
        client.processHeartbeat(HeartbeatBytes::screen(0x50, "E", true), at("10.0.0.2"));
        QCOMPARE(order.take(), QStringLiteral("listUpdated screenUpdated"));
        client.processHeartbeat(HeartbeatBytes::screen(0x20, "B"), at("10.0.0.1"));
        QCOMPARE(order.take(), QStringLiteral("screenUpdated serverRemoved listUpdated"));
        QCOMPARE(client.screens().at(0).type, QStringLiteral("SCREEN2"));
        client.processHeartbeat(HeartbeatBytes::n6("N6"), at("10.0.0.9"));
        QCOMPARE(order.take(), QStringLiteral("serverChanged listUpdated n6"));
        QVERIFY(client.n6Online() && !client.serverScreen());
        client.processHeartbeat(HeartbeatBytes::screen(0x72, "G"), at("10.0.0.3"));
        client.processHeartbeat(HeartbeatBytes::screen(0x00, "VK38").left(38), at("10.0.0.4"));
        QCOMPARE(order.take(), QStringLiteral("gyro incompatible"));
        QCOMPARE(logged().join(QLatin1Char('\n')), QStringLiteral("udpHB: Screen IP 10.0.0.1\n"
                                                                  "udpHB: Server changed: 10.0.0.1\n"
                                                                  "udpHB: E-Ink IP 10.0.0.2\n"
                                                                  "udpHB: Server removed: 10.0.0.1\n"
                                                                  "udpHB: N6 IP 10.0.0.9\n"
                                                                  "udpHB: Server changed: 10.0.0.9\n"
                                                                  "udpHB: Gyro IP 10.0.0.3"));
    }

    void filtersCopiesOfTheN6()
    {
        udpHBClient client(2);
        const auto hear = [&](const char *sender, const char *serial, const char *application) {
            client.processHeartbeat(HeartbeatBytes::n6(serial, 1, 0, 0, application), at(sender));
            return client.n6Device().address.toString();
        };
        QCOMPARE(hear("169.254.3.4", "N6", "1"), QStringLiteral("169.254.3.4"));
        QCOMPARE(hear("10.0.0.5", "N6", "1"), QStringLiteral("10.0.0.5"));
        QCOMPARE(hear("169.254.3.4", "N6", "1"), QStringLiteral("10.0.0.5"));
        QCOMPARE(hear("169.254.3.4", "N6", "1"), QStringLiteral("10.0.0.5"));
        QCOMPARE(logged().filter(QStringLiteral("Filtered")),
                 QStringList(QStringLiteral("udpHB: Filtered duplicate N6 heartbeat from: 169.254.3.4")));
        QCOMPARE(hear("10.0.0.6", "N6", "2"), QStringLiteral("10.0.0.6"));
        QCOMPARE(hear("10.0.0.7", "other", "2"), QStringLiteral("10.0.0.7"));
        QCOMPARE(client.serverAddress(), at("10.0.0.7"));
    }

    void survivesEmptyDatagramsAndFailedBind()
    {
        QUdpSocket greedy;
        QVERIFY(greedy.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::heartbeatPort,
                            QAbstractSocket::DontShareAddress));
        udpHBClient client(0);
        client.tick();
        QCOMPARE(logged(), QStringList(QStringLiteral("Problem binding udpSocket on port 4020")));

        greedy.close();
        client.createSockets();
        const QByteArray whole = HeartbeatBytes::screen(0x00, "A");
        for (const QByteArray &datagram : {QByteArray(), QByteArray(60000, 'x'), QByteArray(), whole})
            greedy.writeDatagram(datagram, at("127.0.0.1"), protocol::heartbeatPort);
        QTRY_COMPARE(client.screens().size(), 1);
        QCOMPARE(client.screens().at(0).address, at("127.0.0.1"));
    }
};

QTEST_GUILESS_MAIN(TestDiscovery)
#include "tst_discovery.moc"
