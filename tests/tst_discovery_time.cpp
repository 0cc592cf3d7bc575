// What takes real seconds: silence, repeats and renewed sockets. CTest runs each row as a process of its own.

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

#include <utility>

class TestDiscoveryTime : public QObject
{
    Q_OBJECT

private slots:
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
                ++(asked.destinationAddress() == protocol::multicastGroup() ? askedByMulticast : askedAlone);
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

QTEST_GUILESS_MAIN(TestDiscoveryTime)
#include "tst_discovery_time.moc"
