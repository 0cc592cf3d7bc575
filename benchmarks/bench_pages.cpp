// Measures what the display pages cost: building them for so many displays, and whether the window keeps up
// and stays responsive while displays appear, real ones or made-up ones that never come to an end.
#include "discovery/udphbclient.h"
#include "tests/support/heartbeatbytes.h"
#include "update/monitorupdate.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr int passiveMode = 2;
constexpr int probeIntervalMs = 10;
constexpr quint32 firstAddress = 0x0A4B5202; // 10.75.82.2

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

    // Hears one display after the other at an even pace, then lets the event loop come to rest. Returns how
    // long that ran late, in milliseconds.
    qint64 hear(int displays, int durationMs)
    {
        QElapsedTimer elapsed;
        int heard = 0;
        QTimer pace;
        QObject::connect(&pace, &QTimer::timeout, &pace, [&] {
            const qint64 due = std::min<qint64>(displays, displays * elapsed.elapsed() / durationMs + 1);
            // As the client does: what is due is read in portions, so that painting keeps its turn.
            QElapsedTimer reading;
            reading.start();
            for (; heard < due && reading.elapsed() < 20; ++heard)
                client.processHeartbeat(HeartbeatBytes::device(Screen, QByteArray::number(heard)),
                                        addressOf(heard));
        });
        elapsed.start();
        sinceProbe.start();
        longestWaitMs = 0;
        probe.start(probeIntervalMs);
        pace.start(0);
        QEventLoop loop;
        QObject::connect(&pace, &QTimer::timeout, &loop, [&] {
            if (heard == displays)
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
    window.hear(displays, 1);
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
    const qint64 lateMs = window.hear(displays, 1000 * seconds);
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
