// The settings page against the simulated boat, over real FTP and UDP.

#include "discovery/udphbclient.h"
#include "settings/serverwidget.h"
#include "tests/support/answers.h"
#include "tests/support/boat.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/scriptedftpserver.h"

#include <QPushButton>
#include <QSettings>
#include <QtTest>

namespace
{

// Icon and title of the boxes in which a transfer ends.
const QString backupComplete = "1 Backup download complete!"_s, backupUnable = "2 Backup download failed!"_s,
              backupFailed = "3 Backup download failed!"_s, restoreComplete = "1 Backup upload complete!"_s,
              restoreFailed = "3 Settings upload failed!"_s;
// It sends no heartbeat unasked: the tests say when one arrives.
const QString n6 = "--screens 0 --screen2s 0 --einks 0 --no-gyro --heartbeat-interval 3600 "_s,
              slow = "--archive-delay 0 --archive-padding 2000000 --ftp-fault n6=slow:400000"_s,
              verySlow = "--archive-padding 10000000 --ftp-fault n6=slow:250000"_s;
constexpr int passiveMode = 2, n6Host = 10, otherN6Host = 11, ftpPort = 21, sizeUnderWay = 100000;

enum Trouble { None, FullDisk, CutOff, Stall, OtherN6, BadFile, Close, CloseInBox };

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void heartbeat(udpHBClient &client, int host = n6Host)
{
    client.processHeartbeat(HeartbeatBytes::n6("N6-" + QByteArray::number(host)), boatAddress(host));
}

} // namespace
Q_DECLARE_METATYPE(Trouble)

// The toolkit's FTP connections outlive their manager until the server has answered their farewell; one that
// has fallen silent never does.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions() // NOLINT
{
    return "leak:libQt5Network.so";
}

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
        target = folder->filePath("x.tar.gz"_s);
        part = target + ".part"_s;
        qputenv("HOME", QFile::encodeName(folder->path()));
        QCoreApplication::setOrganizationName("kelvora-test"_s);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder->filePath("config"_s));
        client.reset(new udpHBClient(passiveMode));
        page = new ServerWidget(nullptr, client.data());
    }
    void cleanup() { delete page; }

    // Of a backup the size is -1; of a restore it is that of the archive. No box: the page is closed.
    void transfers_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<Trouble>("trouble");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("box");
        const QString never = "--archive-delay never"_s, late = "--archive-delay 3"_s,
                      atOnce = "--archive-delay 0"_s;
        QTest::newRow("backup slow") << verySlow << None << -1 << backupComplete;
        QTest::newRow("backup beside another N6") << late << OtherN6 << -1 << backupComplete;
        QTest::newRow("backup never") << never << None << -1 << backupUnable;
        QTest::newRow("backup ends early") << slow << CutOff << -1 << backupFailed;
        QTest::newRow("backup stalls") << slow << Stall << -1 << backupFailed;
        QTest::newRow("backup full disk") << atOnce << FullDisk << -1 << backupFailed;
        QTest::newRow("restore empty") << atOnce << None << 0 << restoreComplete;
        QTest::newRow("restore beside another N6") << slow << OtherN6 << 2000000 << restoreFailed;
        QTest::newRow("restore stalls") << slow << Stall << 50000000 << restoreFailed;
        QTest::newRow("restore unreadable") << atOnce << BadFile << 0 << restoreFailed;
        QTest::newRow("backup closed in the flow") << slow << Close << -1 << QString();
        QTest::newRow("restore closed in the flow") << slow << Close << 9000000 << QString();
        QTest::newRow("restore closed in its box") << atOnce << CloseInBox << 1000 << QString();
    }

    void transfers()
    {
        QFETCH(QString, options);
        QFETCH(Trouble, trouble);
        QFETCH(int, size);
        QFETCH(QString, box);
        const bool isBackup = size < 0;
        const QByteArray local(isBackup ? 9000000 : size, 'n');
        write(target, local);
        QVERIFY(trouble != FullDisk || QFile::link("/dev/full"_s, part));
        Boat boat(n6 + options);
        Answers answers(isBackup ? folder->filePath("x"_s) : target);
        answers.answer = [&](QDialog *shown) {
            const bool isBox = qobject_cast<QMessageBox *>(shown) != nullptr;
            if (trouble == CloseInBox && isBox)
                delete page;
            // The N6 comes back to life while the box is open: the aborted transfer must be over.
            if (trouble == Stall && isBox) {
                boat.send(SIGCONT);
                boat.waitFor("-broken");
            }
            return page.isNull();
        };
        int speaking = n6Host;
        QTimer beat;
        connect(&beat, &QTimer::timeout, this, [&] { heartbeat(*client, speaking); });
        beat.start(1000);
        heartbeat(*client);
        trouble == BadFile ? page->uploadFile("/proc/self/mem"_s)
                           : click(isBackup ? "backupButton"_s : "restoreButton"_s);
        if (isBackup)
            boat.waitFor("command-repeated code=0x07");
        QTRY_VERIFY_WITH_TIMEOUT(
            options != slow || QFileInfo(isBackup ? part : boat.archive()).size() > sizeUnderWay, 10000);
        if (trouble == Close)
            delete page;
        if (trouble == CutOff)
            QVERIFY(QFile::resize(boat.archive(), 1000000));
        if (trouble == Stall)
            boat.send(SIGSTOP);
        if (trouble == OtherN6)
            speaking = otherN6Host;

        QTRY_VERIFY_WITH_TIMEOUT(box.isEmpty() ? !page : answers.boxes == QStringList(box), 60000);
        QCOMPARE(contents(target), box == backupComplete ? contents(boat.archive()) : local);
        QVERIFY(!QFileInfo(part).isSymLink() && !QFileInfo::exists(part));
        QVERIFY(box != restoreFailed || !boat.log().contains(trouble == BadFile ? " stored " : "restore"));
        if (box == restoreComplete) {
            boat.waitFor("command-repeated code=0x08");
            QCOMPARE(contents(boat.archive()), local);
        }
        heartbeat(*client);
        QVERIFY(!page || button("restoreButton"_s)->isEnabled());
    }

    void aConfirmedPartIsNoUpload()
    {
        ScriptedFtpServer server;
        server.close();
        QVERIFY(server.listen(QHostAddress::LocalHost, ftpPort));
        client->processHeartbeat(HeartbeatBytes::n6("N6-1"), QHostAddress::LocalHost);
        const Answers answers;
        // Large enough to be still on its way when the first of it is noticed; on the disk it is a hole.
        QVERIFY(QFile::resize(write(target, "u"), Q_INT64_C(8000000000)));
        page->uploadFile(target);
        QTRY_VERIFY(server.uploadedBytes > sizeUnderWay);
        server.endData();
        QTRY_COMPARE(answers.boxes, QStringList(restoreFailed));
    }

    void onlyAConfirmedFileIsReplaced()
    {
        const Boat boat(n6);
        write(boat.archive(), "archive");
        heartbeat(*client);
        const QDir dir(folder->path());
        QVERIFY(dir.mkpath("a.part"_s) && dir.mkpath("a"_s));
        const QStringList older{write(dir.filePath("a/x.tar.gz"_s), "1"), write(dir.filePath("a/x"_s), "2")};
        for (const QString &chosen : {"a.part/x.tar.gz"_s, "a/x.part"_s, "a/"_s + QChar(0xD800)}) {
            const Answers answers;
            page->downloadFile(dir.filePath(chosen));
            QTRY_COMPARE(answers.boxes.size(), 1);
        }
        QCOMPARE(contents(older[0]) + contents(older[1]), QByteArray("12"));
    }

    void aBoxLeavesTheNextTransferAlone()
    {
        Boat boat(n6 + slow);
        Answers answers(write(target, QByteArray(1000000, 'r')));
        answers.answer = [&](QDialog *box) {
            if (qobject_cast<QMessageBox *>(box) && answers.boxes.size() == 1)
                page->startRestore();
            return false;
        };
        heartbeat(*client);
        click("restoreButton"_s);
        QTRY_VERIFY_WITH_TIMEOUT(answers.boxes.size() == 1 && !QApplication::activeModalWidget(), 10000);
        heartbeat(*client);
        QVERIFY(!button("restoreButton"_s)->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList({restoreComplete, restoreComplete}), 10000);
    }

    // The last one, since no dialog opens after the end of the program.
    void endOfTheProgramIsNoReset()
    {
        Boat boat(n6 + "--n6-serial N6-10"_s);
        Answers answers;
        answers.answer = [](QDialog *) {
            QCoreApplication::quit();
            return true;
        };
        heartbeat(*client);
        click("factoryButton"_s);
        // What was sent before this has arrived before it.
        page->sendBackup();
        boat.waitFor("backup");
        QVERIFY(!boat.log().contains("factory-reset"));
    }

private:
    QPushButton *button(const QString &name) const { return page->findChild<QPushButton *>(name); }
    void click(const QString &name) const { button(name)->click(); }

    QScopedPointer<QTemporaryDir> folder;
    QString target, part;
    QScopedPointer<udpHBClient> client;
    QPointer<ServerWidget> page;
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
