// What one heartbeat of a known display costs: decoded, stored and signalled, with nothing connected.

#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"

#include <QTest>

class BenchHeartbeat : public QObject
{
    Q_OBJECT

private slots:
    void knownDisplay_data();
    void knownDisplay();
};

void BenchHeartbeat::knownDisplay_data()
{
    QTest::addColumn<int>("displays");
    for (const int displays : {1, 10, 250})
        QTest::addRow("%d displays known", displays) << displays;
}

void BenchHeartbeat::knownDisplay()
{
    QFETCH(int, displays);
    udpHBClient client(2);
    const auto addressOf = [](int number) {
        return QHostAddress(0x0A000001U + static_cast<quint32>(number));
    };
    const QByteArray datagram = HeartbeatBytes::device(Screen, "0123456789");
    for (int number = 0; number < displays; ++number)
        client.processHeartbeat(datagram, addressOf(number));
    QCOMPARE(client.screens().size(), displays);
    int number = 0;
    QBENCHMARK
    {
        client.processHeartbeat(datagram, addressOf(number));
        number = (number + 1) % displays;
    }
}

QTEST_GUILESS_MAIN(BenchHeartbeat)
#include "bench_heartbeat.moc"
