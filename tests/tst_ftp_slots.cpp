// What a slot may do at each step of a session: run an event loop, abort, delete the client. And what a
// server may.
#include "tests/support/ftpsession.h"

#include <QTest>

namespace
{

// The first of the actions disturbs it at a step, the others at the next ones.
class DisturbedSession : public FtpSession
{
public:
    DisturbedSession(const QByteArray &words, const QByteArray &actions, int firstStep = INT_MAX)
        : disturbances(actions.split(',')), disturbedStep(firstStep)
    {
        server.file.fill('a', words == "put-file" ? 2000000 : 100000);
        // Together more than a socket holds unread.
        server.listing.replace("x\r", QByteArray(900, 'x') + '\r');
        server.listing = server.listing.repeated(actions == "loop" ? 80 : 1);
        step = [this](const QByteArray &) { takeStep(); };
        server.takeOver = [this](const QByteArray &verb) { return hear(verb); };
        queue("connect login " + words);
    }

    bool isOver() const
    {
        const bool isLost = disturbances.first().contains("reset") && steps > disturbedStep;
        // What is left of an upload stays for its answer, but not for good.
        const bool hasData =
            server.data != nullptr && server.data->state() == QAbstractSocket::ConnectedState;
        return !ftp ? !server.isTaken() && !hasData
                    : isDone() || (isLost && ftp->state() == QFtp::Unconnected);
    }

    int steps = 0;
    bool endsBeforeAbort = false;

private:
    void takeStep()
    {
        QVERIFY(!isInSlot);
        isInSlot = true;
        const QByteArray action = disturbances.value(steps++ - disturbedStep);
        if (action.contains("reset") && server.isTaken())
            server.control->abort();
        if (action.contains("abort") && ftp)
            ftp->abort();
        if (action.contains("close"))
            ftp->close();
        // As if the slot opened a box; the other side goes on meanwhile.
        if (action.contains("loop")) {
            QTimer::singleShot(0, this, [this, action] { endClient(action); });
            QTest::qWait(10);
        } else {
            endClient(action);
        }
        isInSlot = false;
    }

    void endClient(const QByteArray &action)
    {
        if (action.endsWith("delete"))
            delete ftp;
        else if (action.endsWith("later"))
            ftp->deleteLater();
    }

    // What the server hears is a step, too, but for slots.
    bool hear(const QByteArray &verb)
    {
        if (ftp && !disturbances.first().contains("loop"))
            takeStep();
        if (verb == "ABOR" && server.isTaken() && server.transfer == "STOR") {
            QTest::qWait(10);
            endsBeforeAbort = server.data == nullptr;
        }
        return !server.isTaken();
    }

    const QByteArrayList disturbances;
    const int disturbedStep;
    bool isInSlot = false;
};

} // namespace

class TestFtpSlots : public QObject
{
    Q_OBJECT

private slots:
    void survivesEveryStep_data()
    {
        QTest::addColumn<QByteArray>("words");
        QTest::addColumn<QByteArray>("actions");
        for (const char *const words :
             {"list get put raw close", "active list get put raw close", "put-file", "put-empty",
              "put-stream", "source-gone put-large", "get-full-disk", "sink-gone get-file",
              "proxy connect-boat guest no-proxy", "cd remove put-closed"}) {
            for (const char *const actions :
                 {"loop", "loop-delete", "loop-later", "abort", "abort-close-later", "delete", "reset",
                  "abort,,delete", "reset-abort,delete"})
                QTest::addRow("%s in %s", actions, words) << QByteArray(words) << QByteArray(actions);
        }
    }

    void survivesEveryStep()
    {
        QFETCH(QByteArray, words);
        QFETCH(QByteArray, actions);
        DisturbedSession undisturbed(words, actions);
        QVERIFY2(waitUntil([&] { return undisturbed.isOver(); }), qPrintable(undisturbed.outcome()));
        QVERIFY(undisturbed.steps > 10);
        for (int at = 0; at <= undisturbed.steps; at += at < 30 ? 1 : at / 2) {
            DisturbedSession session(words, actions, at);
            QVERIFY2(waitUntil([&] { return session.isOver(); }), qPrintable(session.outcome()));
            // To a server the end of the data is the end of the file.
            const bool isWhole = session.server.uploadedBytes == session.server.file.size();
            QVERIFY(isWhole || !session.endsBeforeAbort);
            QVERIFY(isWhole || words != "put-file" || !session.log.contains("finished 1"_s));
            if (actions == "loop")
                QCOMPARE(session.outcome(), undisturbed.outcome());
        }
    }
};

QTEST_GUILESS_MAIN(TestFtpSlots)
#include "tst_ftp_slots.moc"
