// The whole window for a long time, on a boat whose heartbeats come 50 times as fast as usual, whose displays
// come and go, and whose displays are updated every few seconds: afterwards nothing may have gathered.

#include "app/mainwindow.h"
#include "tests/support/answers.h"
#include "tests/support/boat.h"
#include "tests/support/memory.h"

#include <QAbstractEventDispatcher>
#include <QCheckBox>
#include <QDir>
#include <QTabWidget>

namespace
{

constexpr int displayCount = 3, packageBytes = 1'000'000;
// A display leaves so often; it is forgotten after 7 s.
constexpr int awayEverySeconds = 14, awaySeconds = 10;

struct Holdings {
    qint64 memory = residentMemory();
    int descriptors = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
    int objects = 0, timers = 0;
};

Holdings holdings(const QWidget &window)
{
    Holdings held;
    const auto objects = window.findChildren<QObject *>();
    held.objects = objects.size();
    for (QObject *object : objects)
        held.timers += QAbstractEventDispatcher::instance()->registeredTimers(object).size();
    qInfo() << held.memory / 1000 << "kB" << held.descriptors << "descriptors" << held.objects << "objects"
            << held.timers << "timers";
    return held;
}

QString boatOptions(qint64 seconds)
{
    QString options = "--screen2s 0 --einks 0 --heartbeat-interval 0.04 --screens %1"_s.arg(displayCount);
    for (qint64 start = 1; start < seconds + 300; start += awayEverySeconds)
        options += " --away screen-3=%1-%2"_s.arg(start).arg(start + awaySeconds);
    return options;
}

} // namespace

class TestSoak : public QObject
{
    Q_OBJECT

private slots:
    void nothingGathers()
    {
        const double minutes = qEnvironmentVariable("KELVORA_SOAK_MINUTES", "0.4"_s).toDouble();
        const auto duration = static_cast<qint64>(minutes * 60000);
        write(package, QByteArray(packageBytes, 'k'));
        Boat boat(boatOptions(duration / 1000));
        window.show();
        QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount, 30000);
        elapsed.start();

        updateUntil(qMin<qint64>(60000, duration / 2));
        const Holdings before = holdings(window);
        updateUntil(duration);
        const Holdings after = holdings(window);

        QVERIFY(boat.log().count("stored path=/update/image bytes=%1"_s.arg(packageBytes).toLatin1()) >
                updates);
        QCOMPARE(after.descriptors, before.descriptors);
        QCOMPARE(after.objects, before.objects);
        QCOMPARE(after.timers, before.timers);
#ifndef __SANITIZE_ADDRESS__ // Which keeps freed memory for a while.
        // The allocator and the toolkit's caches may take something after the first minute too.
        QVERIFY2(after.memory - before.memory < 2'000'000, "memory");
#endif
    }

private:
    int rowCount() const
    {
        return window.findChildren<QCheckBox *>().size();
    }

    // Until a display has come back after the last upload: the rows are new, so that moments are comparable.
    void updateUntil(qint64 milliseconds)
    {
        QPushButton *start = button(*window.findChild<QTabWidget *>()->widget(0), "&Start Update"_s);
        for (; elapsed.elapsed() < milliseconds; ++updates) {
            start->click();
            typeFile(window.findChild<QFileDialog *>(), package);
            // Also when a display leaves during its upload.
            QTRY_VERIFY_WITH_TIMEOUT(start->isVisible(), 20000);
        }
        QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount - 1, 60000);
        QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount, 60000);
    }

    Mainwindow window;
    QTemporaryDir folder;
    const QString package = folder.filePath("screen-update.tar.gz"_s);
    QElapsedTimer elapsed;
    int updates = 0;
};

QTEST_MAIN(TestSoak)
#include "tst_soak.moc"
