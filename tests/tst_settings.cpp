// The settings page against the simulated boat, over real FTP and UDP.

#include "discovery/udphbclient.h"
#include "settings/serverwidget.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <functional>
#include <numeric>

namespace
{

// Icon and title of the boxes in which a transfer ends.
constexpr char backupComplete[] = "1 Backup download complete!", backupUnable[] = "2 Backup download failed!",
               backupFailed[] = "3 Backup download failed!", backupRefused[] = "3 Unable to create backup!",
               restoreComplete[] = "1 Backup upload complete!", restoreFailed[] = "3 Settings upload failed!";
constexpr char slow[] = "--archive-padding 2000000 --ftp-fault n6=slow:400000";
constexpr char verySlow[] = "--archive-padding 10000000 --ftp-fault n6=slow:250000";
constexpr int longestTransferMs = 60000, sizeUnderWay = 100000;
const QByteArray olderFile(9000000, 'x');

enum Trouble { None, FullDisk, NoPartFile, CutOff, Stall, Vanish, Silent, Unopenable, Unreadable };

QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromLatin1(text, static_cast<int>(length));
}

QString n6Address()
{
    return qEnvironmentVariable("KELVORA_BOAT_PREFIX", "127.0.0."_s) + "10"_s;
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

// Kind 0xC6 is an N6, 0 a display that claims to be the server.
void heartbeat(udpHBClient &client, char kind = '\xC6', const QString &host = n6Address())
{
    QByteArray datagram(41, '\0');
    datagram[0] = kind;
    datagram.replace(1, 11, "N6-30001234");
    datagram[17] = 1;
    datagram[37] = kind == 0;
    client.processHeartbeat(datagram, QHostAddress(host));
}

// The simulated N6. It sends no heartbeat unasked: the tests say when one arrives.
class Boat
{
public:
    explicit Boat(const QString &options = QString())
    {
        simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const QString fixed =
            "--screens 0 --screen2s 0 --einks 0 --no-gyro --heartbeat-interval 3600 --state-dir "_s;
        simulator.start(QStringLiteral(KELVORA_BOATSIM),
                        (fixed + state.path() + " "_s + options).split(QLatin1Char(' '), Qt::SkipEmptyParts));
        waitFor("boat ready");
        write(archive(), "the N6's own");
    }
    ~Boat()
    {
        simulator.kill();
        simulator.waitForFinished();
    }

    QString archive() const { return state.path() + "/n6/media/kelvora-server-settings.tar.gz"_s; }
    void send(int signal) { ::kill(static_cast<pid_t>(simulator.processId()), signal); }
    QByteArray log() { return seen += simulator.readAllStandardOutput(); }
    void waitFor(const QByteArray &line) { QTRY_VERIFY_WITH_TIMEOUT(log().contains(line), 10000); }
    double secondsOf(const QByteArray &event)
    {
        const int start = seen.lastIndexOf('\n', log().indexOf(event)) + 1;
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
    explicit Answers(const QString &chosen = QString()) : file(chosen) { look(); }

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
            boxes += QString::number(box->icon()) + " "_s + box->windowTitle();
        if (overwrite)
            box->button(QMessageBox::Yes)->click();
        else if (answer && answer(dialog))
            return;
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

    QString file;
    QPointer<QDialog> answered;
};

void transferColumns()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("box");
}

void transfer(const char *name, const char *options, Trouble trouble, const char *box, int size = 0)
{
    QTest::newRow(name) << QString::fromLatin1(options) << trouble << size << QString::fromLatin1(box);
}

} // namespace
Q_DECLARE_METATYPE(Trouble)

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void backup_data();
    void backup();
    void longBackup_data();
    void longBackup() { backup(); }
    void restore_data();
    void restore();
    void longRestore_data();
    void longRestore() { restore(); }
    void factoryReset_data();
    void factoryReset();
    void buttons();
    void dialogsShareTheirMemory();
    void closing_data();
    void closing();

private:
    void click(const QString &name) { button(name)->click(); }
    QPushButton *button(const QString &name) const { return page->findChild<QPushButton *>(name); }
    QString label() const { return page->findChild<QLabel *>("label_CurrentServer"_s)->text(); }

    QScopedPointer<QTemporaryDir> folder;
    QString target;
    QScopedPointer<udpHBClient> client;
    QPointer<ServerWidget> page;
    QTimer beat; // of the N6, where a test lasts so long that it would time out
};

void TestSettings::initTestCase()
{
    QCoreApplication::setOrganizationName("kelvora-test"_s);
    connect(&beat, &QTimer::timeout, this, [this] { heartbeat(*client); });
}

void TestSettings::init()
{
    folder.reset(new QTemporaryDir);
    target = folder->filePath("x.tar.gz"_s);
    qputenv("HOME", QFile::encodeName(folder->path()));
    QVERIFY(QDir(folder->path()).mkdir("Documents"_s));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder->filePath("config"_s));
    delete page;
    beat.stop();
    client.reset(new udpHBClient(2));
    page = new ServerWidget(nullptr, client.data());
}

void TestSettings::backup_data()
{
    transferColumns();
    transfer("at once", "--archive-delay 0", None, backupComplete);
    transfer("3s", "--archive-delay 3 --archive-padding 50000000", None, backupComplete);
    transfer("wrong password", "--ftp-fault n6=refused-login", None, backupFailed);
    transfer("refused", "--ftp-fault n6=no-service", None, backupFailed);
    transfer("ends early", slow, CutOff, backupFailed);
    transfer("vanishes", "", Vanish, backupFailed);
    transfer("full disk", "--archive-delay 0", FullDisk, backupFailed);
    transfer("no part file", "", NoPartFile, backupRefused);
}

void TestSettings::longBackup_data()
{
    transferColumns();
    transfer("12s", "--archive-delay 12", None, backupComplete);
    transfer("never", "--archive-delay never", None, backupUnable);
    transfer("silent", "--archive-delay never", Silent, backupUnable);
    transfer("mute", "--ftp-fault n6=mute", None, backupFailed);
    transfer("dropped", "--archive-padding 1000000 --ftp-fault n6=drop:500000", None, backupFailed);
    transfer("stalls", slow, Stall, backupFailed);
    transfer("slow", verySlow, None, backupComplete);
}

void TestSettings::backup()
{
    QFETCH(QString, options);
    QFETCH(Trouble, trouble);
    QFETCH(QString, box);
    const QString part = target + ".part"_s;
    write(target, olderFile);
    QVERIFY(trouble != FullDisk || QFile::link("/dev/full"_s, part));
    QVERIFY(trouble != NoPartFile || QDir().mkpath(part));
    Boat boat(options);
    Answers answers(folder->filePath("x"_s));
    heartbeat(*client);
    beat.start(1000);
    click("backupButton"_s);
    boat.waitFor("command-repeated code=0x07");
    if (trouble == CutOff || trouble == Stall)
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(part).size() > sizeUnderWay, 10000);
    if (trouble == CutOff)
        QVERIFY(QFile::resize(boat.archive(), 1000000));
    if (trouble == Stall)
        boat.send(SIGSTOP);
    if (trouble == Vanish)
        boat.send(SIGKILL);
    if (trouble == Vanish || trouble == Silent)
        beat.stop();
    QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(box), longestTransferMs);
    QCOMPARE(contents(target), box == QLatin1String(backupComplete) ? contents(boat.archive()) : olderFile);
    const QFileInfo left(part);
    QVERIFY(!left.isSymLink() && left.exists() == (trouble == NoPartFile));
}

void TestSettings::restore_data()
{
    transferColumns();
    transfer("empty", "", None, restoreComplete, 0);
    transfer("small", "", None, restoreComplete, 1000);
    transfer("50 MB", "", None, restoreComplete, 50000000);
    transfer("read-only", "--ftp-fault n6=read-only", None, restoreFailed, 1000);
    transfer("full", "--ftp-fault n6=full", None, restoreFailed, 1000);
    transfer("unopenable", "", Unopenable, restoreFailed);
    transfer("unreadable", "", Unreadable, restoreFailed);
}

void TestSettings::longRestore_data()
{
    transferColumns();
    transfer("dropped", "--ftp-fault n6=drop:500000", None, restoreFailed, 9000000);
    transfer("stalls", slow, Stall, restoreFailed, 50000000);
    transfer("slow", verySlow, None, restoreComplete, 10000000);
}

void TestSettings::restore()
{
    QFETCH(QString, options);
    QFETCH(Trouble, trouble);
    QFETCH(int, size);
    QFETCH(QString, box);
    QByteArray archive(size, '\0');
    std::iota(archive.begin(), archive.end(), '\0');
    write(target, archive);
    Boat boat(options);
    const QByteArray before = contents(boat.archive());
    Answers answers(target);
    heartbeat(*client);
    if (options == QLatin1String(verySlow))
        beat.start(1000);
    if (trouble == Unopenable)
        page->uploadFile(folder->path());
    else if (trouble == Unreadable)
        page->uploadFile("/proc/self/mem"_s);
    else
        click("restoreButton"_s);
    if (trouble == Stall) {
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(boat.archive()).size() > sizeUnderWay, 10000);
        boat.send(SIGSTOP);
        // The N6 comes back to life while the box is open: the aborted upload must be over.
        answers.answer = [&](QDialog *) {
            boat.send(SIGCONT);
            boat.waitFor("upload-broken");
            return false;
        };
    }
    QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(box), longestTransferMs);
    if (box == QLatin1String(restoreComplete)) {
        boat.waitFor("command-repeated code=0x08");
        QCOMPARE(contents(boat.archive()), archive);
        QVERIFY(beat.isActive() || !button("restoreButton"_s)->isEnabled());
    } else {
        QVERIFY(!boat.log().contains("restore"));
        QVERIFY(size > 1000 || contents(boat.archive()) == before);
    }
    heartbeat(*client);
    QVERIFY(button("restoreButton"_s)->isEnabled());
}

void TestSettings::factoryReset_data()
{
    QTest::addColumn<bool>("sent");
    for (const char *closedBy : {"Yes", "Escape", "close button"})
        QTest::newRow(closedBy) << true;
    QTest::newRow("end of the program") << false;
}

void TestSettings::factoryReset()
{
    QFETCH(bool, sent);
    const QByteArray closedBy = QTest::currentDataTag();
    Boat boat;
    Answers answers;
    int buttonCount = 0;
    answers.answer = [&](QDialog *box) {
        const auto buttons = box->findChildren<QPushButton *>();
        buttonCount = buttons.size();
        if (closedBy == "Yes")
            buttons[0]->click();
        else if (closedBy == "Escape")
            QTest::keyClick(box, Qt::Key_Escape);
        else if (!sent)
            QCoreApplication::quit();
        return closedBy != "close button";
    };
    heartbeat(*client);
    click("factoryButton"_s);
    QCOMPARE(answers.boxes, QStringList("2 Factory Reset"_s));
    QCOMPARE(buttonCount, 1);
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
    QCOMPARE(label(), "No server configured."_s);
    QVERIFY(!button("backupButton"_s)->isEnabled());
    heartbeat(*client, 0, "127.0.0.1"_s);
    QCOMPARE(label(), "No server configured."_s);
    QVERIFY(button("backupButton"_s)->isEnabled());
    init();
    heartbeat(*client);
    QCOMPARE(label(), "Current server:  N6-30001234"_s);

    // While a backup polls, only the N6 brings the buttons back.
    Boat boat("--archive-delay never"_s);
    Answers answers(target);
    click("backupButton"_s);
    heartbeat(*client);
    QVERIFY(!button("restoreButton"_s)->isEnabled());
    boat.waitFor("ftp-disconnect");
    heartbeat(*client, '\x20', "127.0.0.2"_s);
    QVERIFY(!button("restoreButton"_s)->isEnabled());
    heartbeat(*client);
    QVERIFY(button("restoreButton"_s)->isEnabled());

    // A restore then takes over: its upload stays whole, and the backup ends in no box of its own.
    write(target, "restored");
    click("restoreButton"_s);
    QTRY_COMPARE(answers.boxes, QStringList(QLatin1String(restoreComplete)));
    QCOMPARE(contents(boat.archive()), QByteArray("restored"));
}

void TestSettings::dialogsShareTheirMemory()
{
    QStringList opened;
    QStringList preselected;
    Answers answers(target);
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
    write(target, "archive");
    heartbeat(*client);
    // There is no N6 to take it, but the dialog was closed with a choice.
    click("restoreButton"_s);
    QTRY_COMPARE(answers.boxes, QStringList(QLatin1String(restoreFailed)));
    heartbeat(*client);
    click("backupButton"_s);
    page = new ServerWidget(page, client.data());
    click("restoreButton"_s);
    QCOMPARE(opened, QStringList({folder->filePath("Documents"_s), folder->path(), folder->path()}));
    const QRegularExpression name(
        "/kelvora-settings-backup-\\d{4}(-\\d\\d){2}T\\d\\d(-\\d\\d){2}\\.tar\\.gz$"_s);
    QVERIFY2(name.match(preselected.value(0)).hasMatch(), qPrintable(preselected.value(0)));
}

void TestSettings::closing_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("dialog");       // in which the page goes; 0: while none is open
    QTest::addColumn<QByteArray>("event"); // of the N6, upon which it goes; empty: once data flow
    const auto row = [](const char *name, const char *button, const char *options, int dialog,
                        const char *event) {
        QTest::newRow(name) << QString::fromLatin1(button) << QString::fromLatin1(options) << dialog
                            << QByteArray(event);
    };
    row("save dialog", "backupButton", "", 1, "");
    row("open dialog", "restoreButton", "", 1, "");
    row("reset notice", "factoryButton", "", 1, "");
    row("backup failed", "backupButton", "--ftp-fault n6=no-service", 2, "");
    row("restored", "restoreButton", "", 2, "");
    row("command sent", "backupButton", "", 0, "backup");
    row("polling", "backupButton", "", 0, "ftp-disconnect");
    row("downloading", "backupButton", slow, 0, "");
    row("uploading", "restoreButton", slow, 0, "");
}

void TestSettings::closing()
{
    QFETCH(QString, button);
    QFETCH(QString, options);
    QFETCH(int, dialog);
    QFETCH(QByteArray, event);
    const bool inDialog = dialog > 0;
    const QString part = target + ".part"_s;
    write(target, olderFile);
    Boat boat(options);
    Answers answers(target);
    const QString growing = button == "backupButton"_s ? part : boat.archive();
    const auto underWay = [&] {
        return event.isEmpty() ? QFileInfo(growing).size() > sizeUnderWay : boat.log().contains(event);
    };
    answers.answer = [&](QDialog *) {
        if (--dialog != 0)
            return false;
        delete page;
        return true;
    };
    heartbeat(*client);
    click(button);
    if (!inDialog) {
        QTRY_VERIFY_WITH_TIMEOUT(underWay(), 10000);
        delete page;
    }
    QTRY_VERIFY(!page);
    QCOMPARE(contents(target), olderFile);
    QVERIFY(!QFileInfo::exists(part));
    QVERIFY(!boat.log().contains("factory-reset"));
}

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
