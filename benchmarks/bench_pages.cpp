// Measures what the display pages cost: building them for so many displays, and whether the window keeps up
// and stays responsive while displays appear, real ones or made-up ones that never come to an end.
#include "discovery/udphbclient.h"
#include "update/monitorupdate.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTabWidget>
#include <QTimer>
#include <QtEndian>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr int passiveMode = 2;
constexpr int probeIntervalMs = 10;
constexpr quint32 firstAddress = 0x0A4B5202; // 10.75.82.2

QByteArray heartbeat(int display, int beat)
{
    QByteArray datagram(38, '\0');
    datagram.replace(1, 10, QByteArray::number(1000000000 + display));
    datagram[17] = 1;
    datagram.replace(18, 3, "1.4");
    qToLittleEndian(100.0 + beat, datagram.data() + 24);
    qToLittleEndian(12.0F + static_cast<float>(beat % 10) / 10, datagram.data() + 32);
    return datagram + "\x10" + "5.10.110-kelvora" + "\x05" + "2.1.0";
}

QHostAddress addressOf(int display)
{
    return QHostAddress(firstAddress + static_cast<quint32>(display));
}

// The three pages in a window, as the tool shows them, with a probe for how long an event waits.
class Window
{
public:
    Window()
    {
        for (const char *type : {"SCREEN", "SCREEN2", "EINK"})
            tabs.addTab(new MonitorUpdate(&client, QLatin1String(type), &tabs), QLatin1String(type));
        tabs.resize(900, 500);
        tabs.show();
        settle();
        QObject::connect(&probe, &QTimer::timeout, &probe, [this] {
            longestWaitMs = std::max(longestWaitMs, sinceProbe.restart() - probeIntervalMs);
        });
    }

    // Lets everything that is due happen: painting, layouts, the end of rows that were replaced.
    static void settle()
    {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
    }

    void hear(int display, int beat)
    {
        client.processHeartbeat(heartbeat(display, beat), addressOf(display));
    }

    // Hears heartbeats at an even pace until the duration is over, then lets the event loop come to rest.
    // Returns how long it ran late, in milliseconds.
    qint64 hearEvenly(int heartbeats, int durationMs, int displays)
    {
        QElapsedTimer elapsed;
        int heard = 0;
        QTimer pace;
        QObject::connect(&pace, &QTimer::timeout, &pace, [&] {
            const qint64 due = std::min<qint64>(heartbeats, heartbeats * elapsed.elapsed() / durationMs + 1);
            // As the client does: what is due is read in portions, so that painting keeps its turn.
            QElapsedTimer reading;
            reading.start();
            for (; heard < due && reading.elapsed() < 20; ++heard)
                hear(heard % displays, heard / displays);
        });
        elapsed.start();
        sinceProbe.start();
        longestWaitMs = 0;
        probe.start(probeIntervalMs);
        pace.start(0);
        QEventLoop loop;
        QObject::connect(&pace, &QTimer::timeout, &loop, [&] {
            if (heard == heartbeats)
                loop.quit();
        });
        loop.exec();
        pace.stop();
        settle();
        probe.stop();
        return elapsed.elapsed() - durationMs;
    }

    udpHBClient client{passiveMode};
    QTabWidget tabs;
    QTimer probe;
    QElapsedTimer sinceProbe;
    qint64 longestWaitMs = 0;
};

void measureBuilding(int displays)
{
    Window window;
    window.hearEvenly(displays, 1, displays);
    QElapsedTimer elapsed;
    elapsed.start();
    MonitorUpdate page(&window.client, QStringLiteral("SCREEN"), nullptr);
    page.resize(window.tabs.size());
    page.show();
    Window::settle();
    std::printf("build             %4d displays  %8.2f ms\n", displays,
                static_cast<double>(elapsed.nsecsElapsed()) / 1e6);
}

void measureDiscovery(int displays, int seconds)
{
    Window window;
    const qint64 lateMs = window.hearEvenly(displays, 1000 * seconds, displays);
    std::printf("found within %d s  %4d displays  list complete %lld ms late, longest wait %lld ms\n",
                seconds, displays, static_cast<long long>(std::max<qint64>(lateMs, 0)),
                static_cast<long long>(window.longestWaitMs));
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    for (const int displays : {10, 60, 250})
        measureBuilding(displays);
    for (const int displays : {10, 60, 250})
        measureDiscovery(displays, 1);
    // Heartbeats with forged senders: a display is forgotten after 7 s, so by then as many go as come.
    constexpr int forgedSeconds = 12;
    measureDiscovery(300 * forgedSeconds, forgedSeconds);
    return 0;
}
