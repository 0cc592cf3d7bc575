// The whole window for a long time, with displays whose heartbeats come 50 times as fast as usual, one of
// which comes and goes, and which are updated all the time: afterwards nothing may have gathered.

#include "app/mainwindow.h"
#include "tests/support/answers.h"
#include "tests/support/displays.h"
#include "tests/support/files.h"
#include "tests/support/memory.h"
#include "tests/support/text.h"

#include <QAbstractEventDispatcher>
#include <QCheckBox>
#include <QDir>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

constexpr int displayCount = 3, packageBytes = 1'000'000, beatMs = 40;
// The last display leaves so often; it is forgotten after 7 s.
constexpr int awayEveryMs = 14000, awayMs = 10000;

struct Holdings {
    explicit Holdings(const QWidget &window)
    {
        const auto objects = window.findChildren<QObject *>();
        int timers = 0;
        for (QObject *object : objects)
            timers += QAbstractEventDispatcher::instance()->registeredTimers(object).size();
        const int descriptors = QDir("/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
        counts = "%1 objects, %2 timers, %3 descriptors"_s.arg(objects.size()).arg(timers).arg(descriptors);
        qInfo() << memory / 1000 << "kB," << counts;
    }

    qint64 memory = residentMemory();
    QString counts;
};

} // namespace

class TestSoak : public QObject
{
    Q_OBJECT

private slots:
    void nothingGathers()
    {
        const auto duration =
            qRound64(qEnvironmentVariable("KELVORA_SOAK_MINUTES", "0.4"_s).toDouble() * 60000);
        write(package, QByteArray(packageBytes, 'k'));
        connect(&heart, &QTimer::timeout, this, [this] {
            for (int number = elapsed.elapsed() % awayEveryMs < awayMs ? 1 : 0; number < displayCount;
                 ++number)
                displays[number].beat();
        });
        heart.start(beatMs);
        elapsed.start();
        window.show();

        updateUntil(qMin<qint64>(60000, duration / 2));
        const Holdings before(window);
        updateUntil(duration);
        const Holdings after(window);

        QCOMPARE(after.counts, before.counts);
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
        QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount, 2 * awayEveryMs);
        QPushButton *start = button(*window.findChild<QTabWidget *>()->widget(0), "&Start Update"_s);
        while (elapsed.elapsed() < milliseconds) {
            displays[displayCount - 1].lines.clear();
            start->click();
            typeFile(window.findChild<QFileDialog *>(), package);
            QTRY_VERIFY_WITH_TIMEOUT(start->isVisible(), 20000);
            QCOMPARE(displays[displayCount - 1].uploadedBytes, packageBytes);
        }
        QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount - 1, 2 * awayEveryMs);
        QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount, 2 * awayEveryMs);
    }

    Mainwindow window;
    QTemporaryDir folder;
    const QString package = folder.filePath("screen-update.tar.gz"_s);
    PlayedDisplay displays[displayCount]{PlayedDisplay(0), PlayedDisplay(1), PlayedDisplay(2)};
    QTimer heart;
    QElapsedTimer elapsed;
};

QTEST_MAIN(TestSoak)
#include "tst_soak.moc"
