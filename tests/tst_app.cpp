// The program's options and languages, and its window as a whole: what it tells and locks, how the keyboard
// gets around in it, and whether all texts have their places.

#include "app/connectionstate.h"
#include "app/icons.h"
#include "app/language.h"
#include "app/mainwindow.h"
#include "discovery/udphbclient.h"
#include "tests/support/answers.h"
#include "tests/support/files.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/text.h"
#include "update/monitorupdatewidget.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

namespace
{

// The strip's icon and text.
QString shown(const QWidget &window)
{
    const auto &strip = *window.findChild<connectionState *>();
    const auto pixels = [](const QIcon &icon) { return icon.pixmap(26).toImage(); };
    const QImage icon = pixels(strip.findChild<QPushButton *>()->icon());
    QString text =
        strip.findChild<QPushButton *>()->accessibleName() + ", "_s + strip.findChild<QLabel *>()->text();
    for (const QString &name : {"ok"_s, "warning"_s, "error"_s}) {
        if (!icon.isNull() && icon == pixels(builtinIcon(name)))
            text.prepend(name + " "_s);
    }
    return text;
}

// As a screen reader says it.
QString nameOf(QWidget *widget)
{
    const QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(widget);
    const auto labels = seen->relations(QAccessible::Label);
    return labels.isEmpty() ? seen->text(QAccessible::Name) : labels.first().first->text(QAccessible::Name);
}

constexpr int usualPixels = 12;

QStringList languages()
{
    QStringList files = QDir(QStringLiteral(TRANSLATIONS)).entryList({"kelvoratool_*.ts"_s});
    files.removeAll("kelvoratool_en.ts"_s);
    return files.replaceInStrings(QRegularExpression(R"(.*_|\.ts$)"_s), QString());
}

// The visible texts that are cut off, or have a letter for the keyboard that another one has, too.
QStringList misfits(const QWidget &shown)
{
    QStringList letters, found;
    const auto widgets = shown.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!widget->isVisible())
            continue;
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        const QString letter = QKeySequence::mnemonic(text).toString();
        QSize needed = text.isEmpty() ? QSize() : widget->sizeHint();
        if (label && label->wordWrap())
            needed = QSize(0, label->heightForWidth(label->width()));
        // Tabs have buttons to scroll them where they do not fit, as they may with a large font.
        const bool isTabScroller = qobject_cast<const QTabBar *>(widget->parentWidget()) != nullptr &&
                                   QApplication::font().pixelSize() == usualPixels;
        if (needed.boundedTo((widget->geometry() & widget->parentWidget()->rect()).size()) != needed ||
            isTabScroller || letters.contains(letter))
            found += text + " does not fit"_s;
        if (!letter.isEmpty())
            letters += letter;
    }
    return found;
}

} // namespace

class TestApp : public QObject
{
    Q_OBJECT

private slots:
    // All of them without a display.
    void commandLineIsAnswered()
    {
        using Row = std::tuple<const char *, const char *, const char *, int>;
        for (const auto &[environment, arguments, answer, status] :
             {Row{"LANG=de_AT.UTF-8", "--help", "Optionen:", 0}, Row{"LANGUAGE=sv:nl:de", "-h", "Opties:", 0},
              Row{"LANGUAGE=en_GB:de", "-h", "Options:", 0},
              Row{"LANG=de_DE.UTF-8", "--language fr -h", "Affiche", 0},
              Row{"LANG=de_DE.UTF-8", "--language sv -h", "Options:", 0},
              Row{"LANG=it_IT.UTF-8", "-style fusion --version", "KelvoraTool 3", 0},
              Row{"LANG=it_IT.UTF-8", "-platform offscreen --no", "Opzione sconosciuta \"no\"", 2},
              Row{"LC_ALL=C", "-platform offscreen no", "argument 'no'", 2},
              Row{"LANG=nl_NL.UTF-8", "-platform offscreen --log /no/log", "/no/log: Bestand", 2}}) {
            QProcess program;
            program.setEnvironment({QLatin1String(environment)});
            program.start(QStringLiteral(KELVORA_TOOL), QString::fromLatin1(arguments).split(u' '));
            QVERIFY(program.waitForFinished());
            const QByteArray said = program.readAllStandardOutput();
            QVERIFY2(said.contains(answer) && program.exitCode() == status, said);
        }
    }

    void translationsAreComplete()
    {
        // As often as in the source, as it stands in XML; "&" is the keyboard's letter.
        const QStringList kept = "%1|%2|%3|%4|%5|%6|%7|\n|&lt;|&gt;|(*.tar.gz)|  |&amp;"_s.split(u'|');
        const QRegularExpression message("(?s)<source>(.*?)</source>.*?<translation>(.*?)</translation>"_s);
        const QStringList all = languages();
        QVERIFY(all.contains("de"_s));
        for (const QString &language : all) {
            const QByteArray file = contents(QStringLiteral(TRANSLATIONS "/kelvoratool_%1.ts").arg(language));
            QVERIFY2(!file.contains("unfinished"), qPrintable(language));
            for (auto found = message.globalMatch(QString::fromUtf8(file)); found.hasNext();) {
                const auto text = found.next();
                for (const QString &one : kept)
                    QVERIFY2(text.captured(1).count(one) == text.captured(2).count(one), qPrintable(one));
            }
        }
    }

    void windowTellsAndUnlocksWhatIsReachable()
    {
        QCoreApplication::setApplicationVersion("3"_s);
        Mainwindow window;
        QVERIFY(window.windowTitle().endsWith(" - v3"_s) && window.windowIcon().availableSizes().size() == 6);
        QVERIFY(window.minimumSize() == QSize(770, 500) && window.size() == QSize(900, 640));
        const auto &strip = *window.findChild<connectionState *>();
        // Tells its widgets their sizes, as showing it would.
        const QImage picture = window.grab().toImage();
        const auto &logo = *window.findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(!logo.icon().isNull() && logo.iconSize() == QSize(900, 70) &&
                picture.pixelColor(logo.pos()) == Qt::black);
        const auto texts = strip.findChildren<QLabel *>();
        QVERIFY(strip.geometry() == QRect(4, 2, 894, 50) && texts.first()->font().pixelSize() == 16);
        const int gap = texts.last()->x() - texts.first()->geometry().right();
        QVERIFY(gap > 40 && gap < 60 && strip.findChild<QPushButton *>()->iconSize() == QSize(26, 26));
        QCOMPARE(shown(window), "error State: error, Not connected"_s);
        const auto *tabs = window.findChild<QTabWidget *>();
        const char *const
            ok = "ok State: good, Connection ok",
            *const alone = "warning State: warning, Connection ok, but no N6 found",
            *const old = "warning State: warning, Found Gen1 devices, contact support for suitable software";
        using Row = std::tuple<QByteArray, const char *, const char *, const char *>;
        for (const auto &[datagram, from, unlocked, said] :
             {Row{HeartbeatBytes::device(Screen, "A"), "127.0.0.21", "012", alone},
              {HeartbeatBytes::device(Screen, "A", true), "127.0.0.21", "012", ok},
              {HeartbeatBytes::device(Screen, "A"), "127.0.0.21", "012", alone},
              {HeartbeatBytes::n6(), "127.0.0.20", "01234", ok},
              {HeartbeatBytes::firstGeneration(), "127.0.0.22", "", old},
              {HeartbeatBytes::n6(), "127.0.0.20", "", old}}) {
            window.findChild<udpHBClient *>()->processHeartbeat(datagram, at(from));
            QString open;
            for (int page = 0; page < tabs->count(); ++page)
                open += tabs->isEnabled() && tabs->isTabEnabled(page) ? QString::number(page) : QString();
            QCOMPARE(open, QLatin1String(unlocked));
            QCOMPARE(shown(window), QLatin1String(said));
        }
    }

    void stripGivesAFirstVerdict()
    {
        QWidget window;
        udpHBClient client(udpHBClient::Passive);
        const connectionState strip(&window, &client);
        const QDeadlineTimer early(5500);
        QTRY_COMPARE_WITH_TIMEOUT(
            shown(window), "error State: error, Connection problem, check your network settings"_s, 8000);
        QVERIFY(early.hasExpired());
        client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        QCOMPARE(shown(window), "ok State: good, N6 connection ok, no screens connected"_s);
        // A conflict of servers shows at the next change that the client reports.
        client.processHeartbeat(HeartbeatBytes::device(Screen, "A", true), at("127.0.0.21"));
        QTRY_VERIFY_WITH_TIMEOUT(client.multipleServersDetected(), 5000);
        client.processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        QCOMPARE(shown(window), "warning State: warning, Connection ok, but multiple servers configured"_s);
    }

    void everyControlIsNamedAndReached()
    {
        Mainwindow window;
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::n6(), at("127.0.0.20"));
        quint32 address = 0x7F000015;
        for (const DeviceKind kind : {Screen, Screen, Screen2, Eink})
            client->processHeartbeat(HeartbeatBytes::device(kind, "S"), QHostAddress(address++));
        // The key stops at those of these that are on the page that is open.
        QString stops;
        for (QWidget *at = &window; (at = at->nextInFocusChain()) != &window;) {
            const bool isStop = (at->focusPolicy() & Qt::TabFocus) != 0 && at->isEnabled() && !at->isHidden();
            if (isStop && !qobject_cast<QAbstractScrollArea *>(at))
                stops += nameOf(at).section(u' ', 0, 1) + u'|';
            QVERIFY(!qobject_cast<QProgressBar *>(at) || !nameOf(at).isEmpty());
        }
        QCOMPARE(stops,
                 "|Screen Updates|Open Webinterface|Port 1|Port 2|Update N6|Backup Settings|Restore Settings|"
                 "Factory Reset|S (PO)|S (PO)|Start Update|S (PO)|Start Update|S (PO)|Start Update|"_s);
    }

    void everyTextHasItsPlace_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("pixels");
        const QStringList all = QStringList("en"_s) + languages();
        for (const QString &language : all) {
            QTest::newRow(qPrintable("the language is "_s + language)) << language << usualPixels;
            QTest::newRow(qPrintable("in large, it is "_s + language)) << language << usualPixels * 3 / 2;
        }
    }
    void everyTextHasItsPlace()
    {
        QFETCH(QString, language);
        QFETCH(int, pixels);
        language::load(language);
        QFont font = QApplication::font();
        font.setPixelSize(pixels);
        QApplication::setFont(font);
        Mainwindow window;
        window.show();
        // Longer serial numbers and addresses reach beyond the row by themselves.
        auto *client = window.findChild<udpHBClient *>();
        client->processHeartbeat(HeartbeatBytes::device(Screen, "01234567", true), at("127.0.0.21"));
        client->processHeartbeat(HeartbeatBytes::n6("N6-0123456789"), at("127.0.0.20"));
        // However long this takes, the window stays as it is: with the longest verdict, but unlocked.
        client->processHeartbeat(HeartbeatBytes::firstGeneration(), at("127.0.0.22"));
        const QSignalBlocker kept(client);
        auto *tabs = window.findChild<QTabWidget *>();
        tabs->setEnabled(true);
        QStringList found;
        for (const char *state : {"Downloading...", "Updating...", "Aborted."}) {
            auto *row = window.findChild<MonitorUpdateWidget *>();
            row->findChild<QLabel *>()->setText(MonitorUpdateWidget::tr(state));
            for (int page = 0; page < tabs->count(); ++page) {
                tabs->setCurrentIndex(page);
                // With the button that aborts, which has the place of the other one.
                tabs->widget(page)->findChildren<QPushButton *>().last()->show();
                QCoreApplication::processEvents();
                found += misfits(window);
            }
        }
        Answers answers;
        answers.answer = [&](QDialog *shown) {
            found += misfits(*shown);
            shown->reject();
            return true;
        };
        for (const char *name : {"backupButton", "restoreButton", "factoryButton"})
            window.findChild<QPushButton *>(QLatin1String(name))->click();
        QCOMPARE(found.join(u'\n'), QString());
    }
};

QTEST_MAIN(TestApp)
#include "tst_app.moc"
