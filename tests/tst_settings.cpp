// The settings page against the simulated boat, over real FTP and UDP.

#include "settings/serverwidget.h"
#include "tests/support/answers.h"
#include "tests/support/boat.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QtTest>

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

public:
    TestSettings()
    {
        connect(&beat, &QTimer::timeout, this, [this] { heartbeat(*client); });
    }

private slots:
    void init();
    void cleanup() { delete page; }
    void transfers_data() { addTransfers(false); }
    void transfers();
    void longTransfers_data() { addTransfers(true); }
    void longTransfers() { transfers(); }
    void factoryReset_data();
    void factoryReset();
    void buttons();
    void dialogsShareTheirMemory();
    void closing_data();
    void closing();

private:
    static void addTransfers(bool longOnes);
    void makeTrouble(Trouble trouble, Boat &boat, Answers &answers, const QString &growing);
    void click(const QString &name) { button(name)->click(); }
    QPushButton *button(const QString &name) const { return page->findChild<QPushButton *>(name); }
    QString label() const { return page->findChild<QLabel *>("label_CurrentServer"_s)->text(); }

    QScopedPointer<QTemporaryDir> folder;
    QString target;
    QString part;
    QScopedPointer<udpHBClient> client;
    QPointer<ServerWidget> page;
    QTimer beat; // of the N6, where a test lasts so long that it would time out
};

void TestSettings::init()
{
    folder.reset(new QTemporaryDir);
    target = folder->filePath("x.tar.gz"_s);
    part = target + ".part"_s;
    qputenv("HOME", QFile::encodeName(folder->path()));
    QVERIFY(QDir(folder->path()).mkdir("Documents"_s));
    QCoreApplication::setOrganizationName("kelvora-test"_s);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder->filePath("config"_s));
    delete page;
    beat.stop();
    client.reset(new udpHBClient(2));
    page = new ServerWidget(nullptr, client.data());
}

// Of a backup the size is -1; of a restore it is that of the archive.
void TestSettings::addTransfers(bool longOnes)
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("box");
    const auto row = [&](bool isLong, const char *name, const char *options, Trouble trouble, int size,
                         auto box) {
        if (isLong == longOnes)
            QTest::newRow(name) << QString::fromLatin1(options) << trouble << size
                                << QString::fromLatin1(box);
    };
    row(false, "backup at once", "--archive-delay 0", None, -1, backupComplete);
    row(false, "backup after 3 s", "--archive-delay 3 --archive-padding 50000000", None, -1, backupComplete);
    row(true, "backup after 12 s", "--archive-delay 12", None, -1, backupComplete);
    row(true, "backup slow", verySlow, None, -1, backupComplete);
    row(true, "backup never", "--archive-delay never", None, -1, backupUnable);
    row(true, "backup silent", "--archive-delay never", Silent, -1, backupUnable);
    row(false, "backup wrong password", "--ftp-fault n6=refused-login", None, -1, backupFailed);
    row(false, "backup refused", "--ftp-fault n6=no-service", None, -1, backupFailed);
    row(false, "backup vanishes", "", Vanish, -1, backupFailed);
    row(false, "backup ends early", slow, CutOff, -1, backupFailed);
    row(true, "backup mute", "--ftp-fault n6=mute", None, -1, backupFailed);
    row(true, "backup dropped", "--archive-padding 1000000 --ftp-fault n6=drop:500000", None, -1,
        backupFailed);
    row(true, "backup stalls", slow, Stall, -1, backupFailed);
    row(false, "backup full disk", "--archive-delay 0", FullDisk, -1, backupFailed);
    row(false, "backup no part file", "", NoPartFile, -1, backupRefused);
    row(false, "restore empty", "", None, 0, restoreComplete);
    row(false, "restore small", "", None, 1000, restoreComplete);
    row(false, "restore 50 MB", "", None, 50000000, restoreComplete);
    row(true, "restore slow", verySlow, None, 10000000, restoreComplete);
    row(false, "restore read-only", "--ftp-fault n6=read-only", None, 1000, restoreFailed);
    row(false, "restore full", "--ftp-fault n6=full", None, 1000, restoreFailed);
    row(true, "restore dropped", "--ftp-fault n6=drop:500000", None, 9000000, restoreFailed);
    row(true, "restore stalls", slow, Stall, 50000000, restoreFailed);
    row(false, "restore unopenable", "", Unopenable, 0, restoreFailed);
    row(false, "restore unreadable", "", Unreadable, 0, restoreFailed);
}

void TestSettings::transfers()
{
    QFETCH(QString, options);
    QFETCH(Trouble, trouble);
    QFETCH(int, size);
    QFETCH(QString, box);
    const bool isBackup = size < 0;
    QByteArray local = isBackup ? olderFile : QByteArray(size, '\0');
    std::iota(local.begin(), local.end(), '\0');
    write(target, local);
    QVERIFY(trouble != FullDisk || QFile::link("/dev/full"_s, part));
    QVERIFY(trouble != NoPartFile || QDir().mkpath(part));
    Boat boat(options);
    const QByteArray before = contents(boat.archive());
    Answers answers(isBackup ? folder->filePath("x"_s) : target);
    heartbeat(*client);
    if (isBackup || options == QLatin1String(verySlow))
        beat.start(1000);
    if (trouble == Unopenable || trouble == Unreadable)
        page->uploadFile(trouble == Unopenable ? folder->path() : "/proc/self/mem"_s);
    else
        click(isBackup ? "backupButton"_s : "restoreButton"_s);
    if (isBackup)
        boat.waitFor("command-repeated code=0x07");
    makeTrouble(trouble, boat, answers, isBackup ? part : boat.archive());

    QTRY_COMPARE_WITH_TIMEOUT(answers.boxes, QStringList(box), longestTransferMs);
    QCOMPARE(contents(target), box == QLatin1String(backupComplete) ? contents(boat.archive()) : local);
    QVERIFY(!QFileInfo(part).isSymLink() && QFileInfo::exists(part) == (trouble == NoPartFile));
    if (box == QLatin1String(restoreComplete)) {
        boat.waitFor("command-repeated code=0x08");
        QCOMPARE(contents(boat.archive()), local);
        QVERIFY(beat.isActive() || !button("restoreButton"_s)->isEnabled());
    } else if (!isBackup) {
        QVERIFY(!boat.log().contains("restore"));
        QVERIFY(size > 1000 || contents(boat.archive()) == before);
    }
    heartbeat(*client);
    QVERIFY(button("restoreButton"_s)->isEnabled() || trouble == NoPartFile);
}

void TestSettings::makeTrouble(Trouble trouble, Boat &boat, Answers &answers, const QString &growing)
{
    if (trouble == CutOff || trouble == Stall)
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(growing).size() > sizeUnderWay, 10000);
    if (trouble == CutOff)
        QVERIFY(QFile::resize(boat.archive(), 1000000));
    if (trouble == Vanish)
        boat.send(SIGKILL);
    if (trouble == Vanish || trouble == Silent)
        beat.stop();
    if (trouble != Stall)
        return;
    boat.send(SIGSTOP);
    // The N6 comes back to life while the box is open: the aborted transfer must be over.
    answers.answer = [&boat](QDialog *) {
        boat.send(SIGCONT);
        boat.waitFor("-broken");
        return false;
    };
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
        // 100 ms, as a busy machine measures them.
        const double gap =
            boat.secondsOf("command-repeated") - boat.secondsOf("factory-reset serial=N6-30001234");
        QVERIFY2(gap > 0.02 && gap < 0.6, qPrintable(QString::number(gap)));
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
    QString preselected;
    Answers answers(target);
    answers.answer = [&](QDialog *shown) {
        auto *dialog = qobject_cast<QFileDialog *>(shown);
        if (!dialog)
            return false;
        opened += dialog->directory().path();
        preselected += dialog->selectedFiles().value(0);
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
    const QRegularExpression name(R"(/kelvora-settings-backup-\d{4}(-\d\d){2}T\d\d(-\d\d){2}\.tar\.gz$)"_s);
    QVERIFY2(name.match(preselected).hasMatch(), qPrintable(preselected));
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
