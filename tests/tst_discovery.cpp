#include "discovery/heartbeat.h"
#include "discovery/interfaces.h"
#include "discovery/n6commands.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/signalorder.h"

#include <QTest>
#include <QUdpSocket>

#include <cmath>
#include <limits>
#include <memory>

using heartbeat::decode;

namespace
{

QStringList logged;

void keepLog(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &line)
{
    logged += line;
}

QHostAddress at(const char *address)
{
    return QHostAddress(QLatin1String(address));
}

} // namespace

class TestDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void init() { logged.clear(); }

    void decodesDisplays_data();
    void decodesDisplays();
    void decodesN6AndGyro();
    void ignoresMalformed_data();
    void ignoresMalformed();
    void cleansNumbers_data();
    void cleansNumbers();
    void tellsOlderDevicesApart_data();
    void tellsOlderDevicesApart();
    void namesModelsAndAddresses();
    void buildsCommands_data();
    void buildsCommands();
    void mapsPortModesBothWays();
    void choosesInterfaces_data();
    void choosesInterfaces();

    void signalsEachChangeInOrder();
    void filtersCopiesOfTheN6();
    void survivesEmptyDatagramsAndFailedBind();
};

void TestDiscovery::decodesDisplays_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("eink");
    QTest::newRow("screen") << 0x00 << "SCREEN" << false;
    QTest::newRow("screen2") << 0x20 << "SCREEN2" << false;
    QTest::newRow("e-ink names no firmware, voltage or server") << 0x50 << "EINK" << true;
}

void TestDiscovery::decodesDisplays()
{
    QFETCH(int, kind);
    QFETCH(QString, type);
    QFETCH(bool, eink);
    HeartbeatBytes parts;
    parts.kind = static_cast<quint8>(kind);
    parts.serial = "0123456789abcdef";
    parts.firmware = "1.4.22";
    parts.lux = 351.456;
    parts.volts = 12.345F;
    parts.lsFlag = 0x80;
    parts.serverFlag = 2;
    parts.system = "5.1\xe9";
    const auto screen = std::get<ScreenDevice>(decode(parts.build() + "more to come"));
    QCOMPARE(screen.type, type);
    QCOMPARE(screen.serial, QStringLiteral("0123456789abcdef"));
    QCOMPARE(screen.systemVersion, QStringLiteral(u"5.1\u00e9"));
    QCOMPARE(screen.applicationVersion, QStringLiteral("2.1.0"));
    QCOMPARE(screen.ambientLux, 351.46);
    QVERIFY(screen.lsFlag);
    QCOMPARE(screen.isServer, !eink);
    QCOMPARE(screen.firmwareVersion, eink ? QString() : QStringLiteral("1.4.22"));
    QCOMPARE(std::isnan(screen.supplyVoltage), eink);
    if (!eink)
        QCOMPARE(screen.supplyVoltage, 12.35);
}

void TestDiscovery::decodesN6AndGyro()
{
    const auto n6 = std::get<N6Device>(decode(HeartbeatBytes::n6("N6-\xc3\xa9", 5, 6, -2)));
    QCOMPARE(n6.serial, QStringLiteral(u"N6-\u00e9"));
    QCOMPARE(n6.model, 5);
    QCOMPARE(n6.port1Mode, 6);
    QCOMPARE(n6.port2Mode, -2);
    QCOMPARE(n6.firmwareVersion, QStringLiteral("1.4"));
    QCOMPARE(n6.supplyVoltage, 12.0);

    HeartbeatBytes parts;
    parts.kind = 0x72;
    parts.serverFlag = 0xFF;
    parts.system.clear();
    parts.application.clear();
    const auto gyro = std::get<GyroDevice>(decode(parts.build()));
    QCOMPARE(gyro.status, -1);
    QCOMPARE(gyro.applicationVersion, QString());
}

void TestDiscovery::ignoresMalformed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("traffic");
    const QByteArray whole = HeartbeatBytes().build();
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("17 bytes") << whole.left(17) << false;
    QTest::newRow("18 bytes") << whole.left(18) << true;
    QTest::newRow("39 bytes") << whole.left(39) << true;
    QTest::newRow("one byte missing") << whole.chopped(1) << true;
    QByteArray invalid = whole;
    invalid[17] = 0;
    QTest::newRow("valid byte zero") << invalid << true;
    QByteArray unknown = whole;
    unknown[0] = 0x21;
    QTest::newRow("unknown kind") << unknown << true;
    for (const int length : {2, 127, 128, 255}) {
        QByteArray first = whole.left(38) + QByteArray(2, '\0');
        first[38] = static_cast<char>(length);
        QTest::addRow("first length %d in 40 bytes", length) << first << true;
        QByteArray second = whole.left(38) + QByteArray(2, '\0');
        second[39] = static_cast<char>(length);
        QTest::addRow("second length %d in 40 bytes", length) << second << true;
    }
}

void TestDiscovery::ignoresMalformed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, traffic);
    // An exact copy on the heap, so that a sanitizer sees any read past the end.
    const std::unique_ptr<char[]> exact(new char[static_cast<size_t>(bytes.size())]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    const auto datagram = QByteArray::fromRawData(exact.get(), bytes.size());
    QVERIFY(std::holds_alternative<heartbeat::Ignored>(decode(datagram)));
    QCOMPARE(heartbeat::isTraffic(datagram), traffic);
}

void TestDiscovery::cleansNumbers_data()
{
    QTest::addColumn<double>("sent");
    QTest::addColumn<double>("lux");
    QTest::addColumn<double>("volts");
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("half goes away from zero") << 0.125 << 0.13 << 0.13;
    QTest::newRow("negative") << -1.0 << 0.0 << 0.0;
    QTest::newRow("negative zero") << -0.0 << 0.0 << 0.0;
    QTest::newRow("NaN") << none << 0.0 << none;
    QTest::newRow("infinite") << infinite << infinite << infinite;
    QTest::newRow("minus infinite") << -infinite << 0.0 << 0.0;
    QTest::newRow("enormous") << 1e38 << 1e38 << static_cast<double>(1e38F);
}

void TestDiscovery::cleansNumbers()
{
    QFETCH(double, sent);
    QFETCH(double, lux);
    QFETCH(double, volts);
    HeartbeatBytes parts;
    parts.lux = sent;
    parts.volts = static_cast<float>(sent);
    const auto screen = std::get<ScreenDevice>(decode(parts.build()));
    QCOMPARE(screen.ambientLux, lux);
    QVERIFY(!std::signbit(screen.ambientLux));
    QCOMPARE(screen.supplyVoltage, volts);
    QVERIFY(std::isnan(volts) || !std::signbit(screen.supplyVoltage));
}

void TestDiscovery::tellsOlderDevicesApart_data()
{
    QTest::addColumn<QByteArray>("serial");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("outcome");
    QTest::newRow("first generation") << QByteArray("aVK38b") << 38 << "incompatible";
    QTest::newRow("the other first generation") << QByteArray("TZ582") << 18 << "incompatible";
    QTest::newRow("a hub of the first generation") << QByteArray("VHUB-TZ582") << 38 << "incompatible";
    QTest::newRow("one byte longer") << QByteArray("VK38") << 39 << "ignored";
    QTest::newRow("whole length") << QByteArray("VK38") << 53 << "ignored";
    QTest::newRow("hub, short") << QByteArray("VHUB1") << 38 << "ignored";
    QTest::newRow("hub, whole length") << QByteArray("VHUB1") << 53 << "ignored";
    QTest::newRow("other letters") << QByteArray("vk38") << 53 << "screen";
    QTest::newRow("behind the end of the text") << QByteArray("A\0VK38", 6) << 53 << "screen";
}

void TestDiscovery::tellsOlderDevicesApart()
{
    QFETCH(QByteArray, serial);
    QFETCH(int, length);
    QFETCH(QString, outcome);
    HeartbeatBytes parts;
    parts.serial = serial;
    // A short heartbeat of the first generation is reported even when it says that it is not valid.
    parts.valid = outcome == QLatin1String("incompatible") ? 0 : 1;
    const auto decoded = decode(parts.build().left(length));
    QCOMPARE(std::holds_alternative<heartbeat::Incompatible>(decoded),
             outcome == QLatin1String("incompatible"));
    QCOMPARE(std::holds_alternative<ScreenDevice>(decoded), outcome == QLatin1String("screen"));
    parts.kind = 0x20;
    parts.valid = 1;
    QVERIFY(!std::holds_alternative<heartbeat::Incompatible>(decode(parts.build().left(length))));
}

void TestDiscovery::namesModelsAndAddresses()
{
    QStringList names;
    for (int model = 0; model <= 6; ++model)
        names += n6ModelName(model);
    QCOMPARE(names.join(QLatin1Char(',')),
             QStringLiteral("Unknown,N6 Larch,N6 Moss,N6 Flint,N6 Fjord,N6 Heron,Unknown"));
    QCOMPARE(displayAddress(at("::ffff:192.168.1.20")), QStringLiteral("192.168.1.20"));
}

void TestDiscovery::buildsCommands_data()
{
    QTest::addColumn<QByteArray>("built");
    QTest::addColumn<QByteArray>("hex");
    const auto reset = [](const char *serial) { return n6FactoryResetCommand(QString::fromLatin1(serial)); };
    QTest::newRow("backup") << n6BackupCommand() << QByteArray("07");
    QTest::newRow("restore") << n6RestoreCommand() << QByteArray("08");
    QTest::newRow("reset, no serial") << reset("") << QByteArray("0f") + QByteArray(32, '0');
    QTest::newRow("reset, 3 letters") << reset("N6\xe9") << QByteArray("0f4e36e9") + QByteArray(26, '0');
    QTest::newRow("reset, 16 letters")
        << reset("0123456789012345") << QByteArray("0f30313233343536373839303132333435");
    QTest::newRow("reset, 20 letters")
        << reset("01234567890123456789") << QByteArray("0f3031323334353637383930313233343536373839");
    QTest::newRow("port 1") << n6PortModeCommand(N6Port::Port1, 6) << QByteArray("3006");
    QTest::newRow("port 2") << n6PortModeCommand(N6Port::Port2, 2) << QByteArray("3102");
}

void TestDiscovery::buildsCommands()
{
    QFETCH(QByteArray, built);
    QFETCH(QByteArray, hex);
    QCOMPARE(built.toHex(), hex);
}

void TestDiscovery::mapsPortModesBothWays()
{
    const auto describe = [](N6Port port) {
        QString all;
        const auto &modes = n6PortModes(port);
        for (int i = 0; i < modes.size(); ++i) {
            all += QStringLiteral("%1=%2 ").arg(modes[i].name).arg(n6PortModeCode(port, modes[i].name));
            if (n6PortModeIndex(port, modes[i].code) != i)
                all += QStringLiteral("(disagrees) ");
        }
        return all + QString::number(n6PortModeCode(port, QStringLiteral("nmea0183-hs"))) +
               QString::number(n6PortModeIndex(port, 3));
    };
    QCOMPARE(describe(N6Port::Port1), QStringLiteral("NMEA0183=0 NMEA0183-HS=6 Seatalk=4 Nexus FDX=5 0-1"));
    QCOMPARE(describe(N6Port::Port2), QStringLiteral("NMEA0183=0 B&G Fastnet=1 NMEA0183-HS=2 0-1"));
}

void TestDiscovery::choosesInterfaces_data()
{
    using Net = QNetworkInterface;
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("asks");
    QTest::addColumn<bool>("listens");
    const int live = Net::IsUp | Net::IsRunning | Net::CanMulticast;
    QTest::newRow("cable") << live << "eth0" << true << true;
    QTest::newRow("cable pulled") << int(Net::IsUp | Net::CanMulticast) << "eth0" << true << false;
    QTest::newRow("virtual adapter") << live << "VirtualBox Host-Only" << true << false;
    QTest::newRow("virtual in the middle") << live << "my virtual" << true << true;
    QTest::newRow("down") << int(Net::CanMulticast) << "eth0" << false << false;
    QTest::newRow("no multicast") << int(Net::IsUp | Net::IsRunning) << "tun0" << false << false;
    QTest::newRow("loopback") << int(live | Net::IsLoopBack) << "lo" << false << false;
}

void TestDiscovery::choosesInterfaces()
{
    QFETCH(int, flags);
    QFETCH(QString, name);
    QFETCH(bool, asks);
    QFETCH(bool, listens);
    QCOMPARE(interfaces::asksOn(QNetworkInterface::InterfaceFlags(flags)), asks);
    QCOMPARE(interfaces::listensOn(QNetworkInterface::InterfaceFlags(flags), name), listens);
}

void TestDiscovery::signalsEachChangeInOrder()
{
    udpHBClient client(2);
    SignalOrder order(client);
    qInstallMessageHandler(keepLog);
    client.processHeartbeat(HeartbeatBytes::screen(0x00, "A", true), at("10.0.0.1"));
    QCOMPARE(order.take(), QStringLiteral("listUpdated screenUpdated serverChanged listUpdated"));
    QCOMPARE(client.serverScreen(), &client.screens().at(0));
    client.processHeartbeat(HeartbeatBytes::screen(0x50, "E", true), at("10.0.0.2"));
    QCOMPARE(order.take(), QStringLiteral("listUpdated screenUpdated"));
    client.processHeartbeat(HeartbeatBytes::screen(0x20, "B"), at("10.0.0.1"));
    QCOMPARE(order.take(), QStringLiteral("screenUpdated serverRemoved listUpdated"));
    QCOMPARE(client.screens().size(), 2);
    QCOMPARE(client.screens().at(0).type, QStringLiteral("SCREEN2"));
    client.processHeartbeat(HeartbeatBytes::n6("N6"), at("10.0.0.9"));
    QCOMPARE(order.take(), QStringLiteral("serverChanged listUpdated n6"));
    QVERIFY(client.n6Online() && !client.serverScreen());
    client.processHeartbeat(HeartbeatBytes::screen(0x72, "G"), at("10.0.0.3"));
    client.processHeartbeat(HeartbeatBytes::screen(0x00, "VK38").left(38), at("10.0.0.4"));
    QCOMPARE(order.take(), QStringLiteral("gyro incompatible"));
    qInstallMessageHandler(nullptr);
    QCOMPARE(logged.join(QLatin1Char('\n')), QStringLiteral("udpHB: Screen IP 10.0.0.1\n"
                                                            "udpHB: Server changed: 10.0.0.1\n"
                                                            "udpHB: E-Ink IP 10.0.0.2\n"
                                                            "udpHB: Server removed: 10.0.0.1\n"
                                                            "udpHB: N6 IP 10.0.0.9\n"
                                                            "udpHB: Server changed: 10.0.0.9\n"
                                                            "udpHB: Gyro IP 10.0.0.3"));
}

void TestDiscovery::filtersCopiesOfTheN6()
{
    udpHBClient client(2);
    qInstallMessageHandler(keepLog);
    const auto hear = [&](const char *sender, const char *serial, const char *application) {
        client.processHeartbeat(HeartbeatBytes::n6(serial, 1, 0, 0, application), at(sender));
        return client.n6Device().address.toString();
    };
    QCOMPARE(hear("169.254.3.4", "N6", "1"), QStringLiteral("169.254.3.4"));
    QCOMPARE(hear("10.0.0.5", "N6", "1"), QStringLiteral("10.0.0.5"));
    QCOMPARE(hear("169.254.3.4", "N6", "1"), QStringLiteral("10.0.0.5"));
    QCOMPARE(hear("169.254.3.4", "N6", "1"), QStringLiteral("10.0.0.5"));
    QCOMPARE(logged.filter(QStringLiteral("Filtered")),
             QStringList(QStringLiteral("udpHB: Filtered duplicate N6 heartbeat from: 169.254.3.4")));
    QCOMPARE(hear("10.0.0.6", "N6", "2"), QStringLiteral("10.0.0.6"));
    QCOMPARE(hear("10.0.0.7", "other", "2"), QStringLiteral("10.0.0.7"));
    QCOMPARE(client.serverAddress(), at("10.0.0.7"));
    qInstallMessageHandler(nullptr);
}

void TestDiscovery::survivesEmptyDatagramsAndFailedBind()
{
    QUdpSocket greedy;
    QVERIFY(greedy.bind(QHostAddress(QHostAddress::AnyIPv4), protocol::heartbeatPort,
                        QAbstractSocket::DontShareAddress));
    qInstallMessageHandler(keepLog);
    udpHBClient client(0);
    qInstallMessageHandler(nullptr);
    QCOMPARE(logged, QStringList(QStringLiteral("Problem binding udpSocket on port 4020")));

    greedy.close();
    client.createSockets();
    const QByteArray whole = HeartbeatBytes::screen(0x00, "A");
    for (const QByteArray &datagram : {QByteArray(), QByteArray(60000, 'x'), QByteArray(), whole})
        greedy.writeDatagram(datagram, at("127.0.0.1"), protocol::heartbeatPort);
    QTRY_COMPARE(client.screens().size(), 1);
    QCOMPARE(client.screens().at(0).address, at("127.0.0.1"));
}

QTEST_GUILESS_MAIN(TestDiscovery)
#include "tst_discovery.moc"
