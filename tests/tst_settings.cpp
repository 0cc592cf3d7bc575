// The settings page against the simulated boat, over real FTP and UDP.

#include "discovery/udphbclient.h"
#include "settings/serverwidget.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <functional>
#include <numeric>

namespace
{

const QByteArray olderFile("an older backup");
constexpr int longestTransferMs = 55000;

QString n6Address()
{
    return qEnvironmentVariable("KELVORA_BOAT_PREFIX", QStringLiteral("127.0.0.")) + QStringLiteral("10");
}

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

// Kind 0xC6 is an N6, 0 a display, which then claims to be the server.
void heartbeat(udpHBClient &client, char kind = '\xC6', const QString &host = n6Address())
{
    QByteArray datagram(41, '\0');
    datagram[0] = kind;
    datagram.replace(1, 11, "N6-30001234");
    datagram[17] = 1;
    datagram[37] = kind == 0;
    client.processHeartbeat(datagram, QHostAddress(host));
}

// The simulated N6. It sends no heartbeat of its own: the tests say when one arrives.
class Boat
{
public:
    explicit Boat(const QString &options = QString())
    {
        simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        simulator.start(
            QStringLiteral(KELVORA_BOATSIM),
            QStringLiteral("--screens 0 --screen2s 0 --einks 0 --no-gyro --heartbeat-interval 3600 "
                           "--state-dir %1 %2")
                .arg(state.path(), options)
                .split(' ', Qt::SkipEmptyParts));
        waitFor("boat ready");
        write(archive(), "the N6's own");
    }
    ~Boat()
    {
        simulator.kill();
        simulator.waitForFinished();
    }

    QString archive() const { return state.path() + "/n6/media/kelvora-server-settings.tar.gz"; }
    void send(int signal) { ::kill(static_cast<pid_t>(simulator.processId()), signal); }
    QByteArray log() { return seen += simulator.readAllStandardOutput(); }
    void waitFor(const QByteArray &line) { QTRY_VERIFY_WITH_TIMEOUT(log().contains(line), 10000); }
    double secondsOf(const QByteArray &event)
    {
        const int at = log().indexOf(event);
        const int start = seen.lastIndexOf('\n', at) + 1;
        return seen.mid(start, seen.indexOf(' ', start) - start).toDouble();
    }

private:
    QTemporaryDir state;
    QProcess simulator;
    QByteArray seen;
};

// Answers every file dialog with a file and closes every box, and remembers the boxes.
class Answers : public QObject
{
public:
    Answers() { look(); }

    QString file;
    std::function<bool(QDialog *)> answer; // tried before the usual one
    QStringList boxes;                     // icon and title

private:
    void look()
    {
        // A new timer each time: a repeating one would not fire in the event loop of what it opens.
        QTimer::singleShot(20, this, &Answers::look);
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog == answered)
            return;
        answered = dialog;
        auto *box = qobject_cast<QMessageBox *>(dialog);
        const bool overwrite = box && qobject_cast<QFileDialog *>(box->parent());
        if (box && !overwrite)
            boxes += QString::number(box->icon()) + ' ' + box->windowTitle();
        if (answer && answer(dialog))
            return;
        if (overwrite)
            box->button(QMessageBox::Yes)->click();
        else if (box)
            box->close();
        else
            choose(qobject_cast<QFileDialog *>(dialog));
        answered = nullptr;
    }
    void choose(QFileDialog *dialog) const
    {
        dialog->setDirectory(QFileInfo(file).path());
        dialog->findChild<QLineEdit *>()->setText(QFileInfo(file).fileName());
        QMetaObject::invokeMethod(dialog, "accept");
    }

    QPointer<QDialog> answered;
};

enum Trouble { None, FullDisk, NoPartFile, CutOff, Stall, Vanish, Silent, Unopenable, Unreadable };
using Answer = std::function<bool(QDialog *)>;
using Condition = std::function<bool(Boat &, const QString &part)>;

} // namespace
Q_DECLARE_METATYPE(Trouble)
Q_DECLARE_METATYPE(Answer)
Q_DECLARE_METATYPE(Condition)

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void backup_data();
    void backup();
    void restore_data();
    void restore();
    void factoryReset_data();
    void factoryReset();
    void buttons();
    void dialogsShareTheirMemory();
    void closing_data();
    void closing();

private:
    QPushButton *button(const char *name) const { return page->findChild<QPushButton *>(name); }

    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<udpHBClient> client;
    QPointer<ServerWidget> page;
    QTimer beat; // of the N6, where a test runs so long that it would time out
};

void TestSettings::initTestCase()
{
    connect(&beat, &QTimer::timeout, this, [this] { heartbeat(*client); });
    QCoreApplication::setOrganizationName("kelvora-test");
}

void TestSettings::init()
{
    folder.reset(new QTemporaryDir);
    qputenv("HOME", QFile::encodeName(folder->path()));
    QDir(folder->path()).mkdir("Documents");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder->filePath("config"));
    delete page;
    beat.stop();
    client.reset(new udpHBClient(2));
    page = new ServerWidget(nullptr, client.data());
}

void TestSettings::backup_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<QString>("box");
    const QString complete = "1 Backup download complete!";
    const QString unable = "2 Backup download failed!";
    const QString failed = "3 Backup download failed!";
    QTest::newRow("at once") << "--archive-delay 0" << None << complete;
    QTest::newRow("3s") << "--archive-delay 3 --archive-padding 50000000" << None << complete;
    QTest::newRow("12s") << "--archive-delay 12" << None << complete;
    QTest::newRow("never") << "--archive-delay never" << None << unable;
    QTest::newRow("wrong password") << "--ftp-fault n6=refused-login" << None << failed;
    QTest::newRow("slow") << "--archive-padding 20000000 --ftp-fault n6=slow:500000" << None << complete;
    QTest::newRow("refused") << "--ftp-fault n6=no-service" << None << failed;
    QTest::newRow("mute") << "--ftp-fault n6=mute" << None << failed;
    QTest::newRow("dropped") << "--archive-padding 1000000 --ftp-fault n6=drop:500000" << None << failed;
    const QString slow = "--archive-padding 2000000 --ftp-fault n6=slow:400000";
    QTest::newRow("ends early") << slow << CutOff << failed;
    QTest::newRow("stalls") << slow << Stall << failed;
    QTest::newRow("vanishes") << "" << Vanish << failed;
    QTest::newRow("silent") << "--archive-delay never" << Silent << unable;
    QTest::newRow("full disk") << "--archive-delay 0" << FullDisk << failed;
    QTest::newRow("no part file") << "" << NoPartFile << "3 Unable to create backup!";
}

void TestSettings::backup()
{
    QFETCH(QString, options);
    QFETCH(Trouble, trouble);
    QFETCH(QString, box);
    Boat boat(options);
    Answers answers;
    answers.file = folder->filePath("x");
    const QString target = answers.file + ".tar.gz";
    const QString part = target + ".part";
    write(target, olderFile);
    if (trouble == FullDisk)
        QFile::link("/dev/full", part);
    else if (trouble == NoPartFile)
        QDir().mkpath(part);

    heartbeat(*client);
    beat.start(1000);
    button("backupButton")->click();
    boat.waitFor("command-repeated code=0x07");
    if (trouble == CutOff || trouble == Stall)
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(part).size() > 100000, 10000);
    if (trouble == CutOff)
        QFile::resize(boat.archive(), 1000000);
    else if (trouble == Stall)
        boat.send(SIGSTOP);
    else if (trouble == Vanish)
        boat.send(SIGKILL);
    if (trouble == Vanish || trouble == Silent)
        beat.stop();
    QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(box), longestTransferMs);
    QCOMPARE(contents(target), box.startsWith('1') ? contents(boat.archive()) : olderFile);
    if (trouble != NoPartFile)
        QVERIFY(!QFileInfo(part).isSymLink() && !QFileInfo::exists(part));
}

void TestSettings::restore_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("box");
    const QString complete = "1 Backup upload complete!";
    const QString failed = "3 Settings upload failed!";
    QTest::newRow("empty") << "" << None << 0 << complete;
    QTest::newRow("small") << "" << None << 1000 << complete;
    QTest::newRow("50 MB") << "" << None << 50000000 << complete;
    QTest::newRow("slow") << "--ftp-fault n6=slow:500000" << None << 20000000 << complete;
    QTest::newRow("read-only") << "--ftp-fault n6=read-only" << None << 1000 << failed;
    QTest::newRow("full") << "--ftp-fault n6=full" << None << 1000 << failed;
    QTest::newRow("dropped") << "--ftp-fault n6=drop:500000" << None << 9000000 << failed;
    QTest::newRow("stalls") << "--ftp-fault n6=slow:400000" << Stall << 50000000 << failed;
    QTest::newRow("unopenable") << "" << Unopenable << 0 << failed;
    QTest::newRow("unreadable") << "" << Unreadable << 0 << failed;
}

void TestSettings::restore()
{
    QFETCH(QString, options);
    QFETCH(Trouble, trouble);
    QFETCH(int, size);
    QFETCH(QString, box);
    Boat boat(options);
    const QByteArray before = contents(boat.archive());
    Answers answers;
    answers.file = folder->filePath("x.tar.gz");
    QByteArray archive(size, '\0');
    std::iota(archive.begin(), archive.end(), '\0');
    write(answers.file, archive);

    heartbeat(*client);
    if (size == 20000000)
        beat.start(1000);
    if (trouble == Unopenable)
        page->uploadFile(folder->path());
    else if (trouble == Unreadable)
        page->uploadFile("/proc/self/mem");
    else
        button("restoreButton")->click();
    if (trouble == Stall) {
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(boat.archive()).size() > 100000, 10000);
        boat.send(SIGSTOP);
        // It comes back to life while the box is open: the aborted upload must be over.
        answers.answer = [&](QDialog *) {
            boat.send(SIGCONT);
            boat.waitFor("upload-broken");
            return false;
        };
    }
    QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(box), longestTransferMs);
    if (box.startsWith('1')) {
        boat.waitFor("command-repeated code=0x08");
        QCOMPARE(contents(boat.archive()), archive);
        QVERIFY(beat.isActive() || !button("restoreButton")->isEnabled());
    } else {
        QVERIFY(!boat.log().contains("restore"));
        QVERIFY(size > 1000 || contents(boat.archive()) == before);
    }
    heartbeat(*client);
    QVERIFY(button("restoreButton")->isEnabled());
}

void TestSettings::factoryReset_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("sent");
    QTest::newRow("Yes") << Answer([](QDialog *box) {
        const auto buttons = box->findChildren<QPushButton *>();
        if (buttons.size() == 1)
            buttons[0]->click();
        return true;
    }) << true;
    QTest::newRow("Escape") << Answer([](QDialog *box) {
        QTest::keyClick(box, Qt::Key_Escape);
        return true;
    }) << true;
    QTest::newRow("close button") << Answer() << true;
    QTest::newRow("the program ends") << Answer([](QDialog *) {
        QCoreApplication::quit();
        return true;
    }) << false;
}

void TestSettings::factoryReset()
{
    QFETCH(Answer, answer);
    QFETCH(bool, sent);
    Boat boat;
    Answers answers;
    answers.answer = answer;
    heartbeat(*client);
    button("factoryButton")->click();
    QCOMPARE(answers.boxes, QStringList("2 Factory Reset"));
    if (sent) {
        boat.waitFor("command-repeated code=0x0f");
        const double gap =
            boat.secondsOf("command-repeated") - boat.secondsOf("factory-reset serial=N6-30001234");
        QVERIFY2(gap > 0.09 && gap < 0.3, qPrintable(QString::number(gap)));
    } else {
        // What was sent before this has arrived before it.
        page->sendBackup();
        boat.waitFor("backup");
        QVERIFY(!boat.log().contains("factory-reset"));
    }
}

void TestSettings::buttons()
{
    auto *label = page->findChild<QLabel *>("label_CurrentServer");
    QCOMPARE(label->text(), QString("No server configured."));
    QVERIFY(!button("backupButton")->isEnabled());
    heartbeat(*client, 0, "127.0.0.1");
    QCOMPARE(label->text(), QString("No server configured."));
    QVERIFY(button("backupButton")->isEnabled() && button("factoryButton")->isEnabled());
    init();
    label = page->findChild<QLabel *>("label_CurrentServer");
    heartbeat(*client);
    QCOMPARE(label->text(), QString("Current server:  N6-30001234"));

    // While a backup polls, only the N6 brings the buttons back.
    Boat boat("--archive-delay never");
    Answers answers;
    answers.file = folder->filePath("x.tar.gz");
    button("backupButton")->click();
    heartbeat(*client);
    QVERIFY(!button("restoreButton")->isEnabled());
    QTest::ignoreMessage(QtDebugMsg, "backup not ready 14 attempts left");
    boat.waitFor("ftp-disconnect");
    heartbeat(*client, 0x20, "127.0.0.2");
    QVERIFY(!button("restoreButton")->isEnabled());
    heartbeat(*client);
    QVERIFY(button("restoreButton")->isEnabled());

    // A restore then takes over from it: its upload stays whole, and the backup never ends in a box.
    write(answers.file, "restored");
    button("restoreButton")->click();
    QTRY_COMPARE(answers.boxes, QStringList("1 Backup upload complete!"));
    QCOMPARE(contents(boat.archive()), QByteArray("restored"));
}

void TestSettings::dialogsShareTheirMemory()
{
    QStringList opened;
    QStringList preselected;
    Answers answers;
    answers.answer = [&](QDialog *shown) {
        auto *dialog = qobject_cast<QFileDialog *>(shown);
        if (!dialog)
            return false;
        opened += dialog->directory().path();
        preselected += dialog->selectedFiles();
        if (opened.size() > 1)
            dialog->reject();
        return opened.size() > 1;
    };
    answers.file = folder->filePath("x.tar.gz");
    write(answers.file, "archive");
    heartbeat(*client);
    // There is no N6 to take it, but the dialog was closed with a choice.
    button("restoreButton")->click();
    QTRY_COMPARE(answers.boxes, QStringList("3 Settings upload failed!"));
    heartbeat(*client);
    button("backupButton")->click();
    page = new ServerWidget(page, client.data());
    button("restoreButton")->click();
    QCOMPARE(opened, QStringList({folder->filePath("Documents"), folder->path(), folder->path()}));
    const QRegularExpression name(
        "/kelvora-settings-backup-\\d{4}-\\d\\d-\\d\\dT\\d\\d-\\d\\d-\\d\\d.tar.gz$");
    QVERIFY2(name.match(preselected.value(0)).hasMatch(), qPrintable(preselected.join(' ')));
}

void TestSettings::closing_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("dialog"); // in which the page goes; 0: when the condition holds
    QTest::addColumn<Condition>("condition");
    const Condition never;
    const QString slow = "--archive-padding 2000000 --ftp-fault n6=slow:400000";
    QTest::newRow("save dialog") << "backupButton"
                                 << "" << 1 << never;
    QTest::newRow("open dialog") << "restoreButton"
                                 << "" << 1 << never;
    QTest::newRow("reset notice") << "factoryButton"
                                  << "" << 1 << never;
    QTest::newRow("backup failed") << "backupButton"
                                   << "--ftp-fault n6=no-service" << 2 << never;
    QTest::newRow("restored") << "restoreButton"
                              << "" << 2 << never;
    QTest::newRow("command sent") << "backupButton"
                                  << "" << 0 << Condition([](Boat &boat, const QString &) {
                                         return boat.log().contains("backup");
                                     });
    QTest::newRow("polling") << "backupButton"
                             << "" << 0 << Condition([](Boat &boat, const QString &) {
                                    return boat.log().contains("ftp-disconnect");
                                });
    QTest::newRow("downloading") << "backupButton" << slow << 0 << Condition([](Boat &, const QString &part) {
        return QFileInfo(part).size() > 100000;
    });
    QTest::newRow("uploading") << "restoreButton" << slow << 0 << Condition([](Boat &boat, const QString &) {
        return QFileInfo(boat.archive()).size() > 100000;
    });
}

void TestSettings::closing()
{
    QFETCH(QString, button);
    QFETCH(QString, options);
    QFETCH(int, dialog);
    QFETCH(Condition, condition);
    Boat boat(options);
    Answers answers;
    answers.file = folder->filePath("x.tar.gz");
    const QByteArray older(9000000, 'x');
    write(answers.file, older);
    answers.answer = [&](QDialog *shown) {
        if (qobject_cast<QFileDialog *>(shown->parent()) || --dialog != 0)
            return false;
        delete page;
        return true;
    };
    heartbeat(*client);
    page->findChild<QPushButton *>(button)->click();
    if (condition) {
        QTRY_VERIFY_WITH_TIMEOUT(condition(boat, answers.file + ".part"), 10000);
        delete page;
    }
    QTRY_VERIFY(!page);
    QCOMPARE(contents(answers.file), older);
    QVERIFY(!QFileInfo::exists(answers.file + ".part"));
    QVERIFY(!boat.log().contains("factory-reset"));
}

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
