// The whole window for a long time, on a boat whose heartbeats come 50 times as fast as usual, whose displays
// come and go, and whose displays are updated every few seconds: afterwards nothing may have gathered.

#include "app/mainwindow.h"
#include "tests/support/answers.h"
#include "tests/support/boat.h"

#include <QAbstractEventDispatcher>
#include <QAbstractSocket>
#include <QCheckBox>
#include <QCryptographicHash>
#include <QDir>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

namespace
{

constexpr int displayCount = 3;
constexpr int awayEverySeconds = 14;
// From here to there of such a period; a display is forgotten after 7 s.
constexpr int leavesAtSecond = 1, returnsAtSecond = 11;
// What the allocator and the toolkit's caches may take in a longer run than the first minute's.
constexpr qint64 memoryTolerance = 2'000'000;

struct Holdings {
    qint64 memory = 0;
    int descriptors = 0, objects = 0, timers = 0;
};

Holdings holdings(const QWidget &window)
{
    Holdings held;
    QFile statistics(QStringLiteral("/proc/self/statm"));
    if (statistics.open(QIODevice::ReadOnly))
        held.memory = statistics.readAll().split(' ').value(1).toLongLong() * 4096;
    held.descriptors =
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
    const auto objects = window.findChildren<QObject *>();
    held.objects = objects.size();
    for (QObject *object : objects)
        held.timers += QAbstractEventDispatcher::instance()->registeredTimers(object).size();
    qInfo() << held.memory / 1000 << "kB" << held.descriptors << "descriptors" << held.objects << "objects"
            << held.timers << "timers";
    return held;
}

QPushButton *button(const QWidget *page, const char *text)
{
    const auto buttons = page->findChildren<QPushButton *>();
    return *std::find_if(buttons.begin(), buttons.end(),
                         [text](QPushButton *button) { return button->text() == QLatin1String(text); });
}

QString boatOptions(qint64 seconds)
{
    QString options =
        QStringLiteral("--screen2s 0 --einks 0 --heartbeat-interval 0.04 --screens %1").arg(displayCount);
    for (qint64 start = 0; start < seconds + 300; start += awayEverySeconds)
        options +=
            QStringLiteral(" --away screen-3=%1-%2").arg(start + leavesAtSecond).arg(start + returnsAtSecond);
    return options;
}

} // namespace

class tst_Soak : public QObject
{
    Q_OBJECT

private slots:
    void nothingGathers();

private:
    int rowCount() const { return window.findChildren<QCheckBox *>().size(); }
    void update();
    void runUntil(qint64 milliseconds);

    Mainwindow window;
    QTemporaryDir folder;
    QElapsedTimer elapsed;
    int updates = 0;
};

void tst_Soak::update()
{
    QWidget *page = window.findChild<QTabWidget *>()->widget(0);
    QPushButton *start = button(page, "&Start Update");
    start->click();
    auto *dialog = window.findChild<QFileDialog *>();
    QVERIFY(dialog);
    dialog->setDirectory(folder.path());
    dialog->selectFile(folder.filePath(QStringLiteral("screen-update.tar.gz")));
    QMetaObject::invokeMethod(dialog, "accept");
    ++updates;
    // Also when a display leaves during its upload.
    QTRY_VERIFY_WITH_TIMEOUT(start->isVisible(), 20000);
}

// Comparable moments are those at which a display has just come back after the last upload: the rows are new.
void tst_Soak::runUntil(qint64 milliseconds)
{
    while (elapsed.elapsed() < milliseconds && !QTest::currentTestFailed())
        update();
    QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount - 1, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(rowCount(), displayCount, 60000);
}

void tst_Soak::nothingGathers()
{
    const double minutes = qEnvironmentVariable("KELVORA_SOAK_MINUTES", QStringLiteral("0.4")).toDouble();
    const auto duration = static_cast<qint64>(minutes * 60000);
    QFile package(folder.filePath(QStringLiteral("screen-update.tar.gz")));
    const QByteArray contents(1'000'000, 'k');
    QVERIFY(package.open(QIODevice::WriteOnly) && package.write(contents) == contents.size() &&
            package.flush());
    Boat boat(boatOptions(duration / 1000));
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(rowCount() == displayCount, 30000);
    elapsed.start();

    runUntil(qMin<qint64>(60000, duration / 2));
    const Holdings before = holdings(window);
    runUntil(duration);
    const Holdings after = holdings(window);

    const QByteArray checksum = QCryptographicHash::hash(contents, QCryptographicHash::Sha256).toHex();
    QVERIFY2(boat.log().count(" sha256=" + checksum) > updates, boat.log().right(2000).constData());
    QVERIFY(boat.log().contains("screen-3 left"));
    QCOMPARE(after.descriptors, before.descriptors);
    QCOMPARE(after.objects, before.objects);
    QCOMPARE(after.timers, before.timers);
#ifndef __SANITIZE_ADDRESS__ // which keeps freed memory for a while
    QVERIFY2(after.memory - before.memory < memoryTolerance,
             qPrintable(QString::number(after.memory - before.memory)));
#endif
}

QTEST_MAIN(tst_Soak)
#include "tst_soak.moc"
