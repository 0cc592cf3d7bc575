// What a slot may do at each step of a session: run an event loop, abort, delete the client. And what a
// server may.
#include "tests/support/ftpsession.h"

#include <QTest>

namespace
{

constexpr int never = 1 << 30;

// The first of the actions disturbs it at a step, the second at the next.
class DisturbedSession : public FtpSession
{
public:
    DisturbedSession(const QByteArray &words, const QByteArray &actions, int firstStep)
        : disturbances(actions.split(',')), disturbedStep(firstStep)
    {
        server.file.fill('a', words == "put-device" ? 2000000 : 100000);
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
        return !ftp ? isCut() : isDone() || (isLost && ftp->state() == QFtp::Unconnected);
    }

    int steps = 0;
    bool endsBeforeAbort = false;

private:
    bool isCut() const
    {
        return server.control == nullptr || server.control->state() != QTcpSocket::ConnectedState;
    }

    void takeStep()
    {
        QVERIFY(!isInLoop);
        const QByteArray action = disturbances.value(steps++ - disturbedStep);
        if (action.contains("reset") && server.control != nullptr)
            server.control->abort();
        if (action.contains("abort") && ftp)
            ftp->abort();
        if (action.contains("close"))
            ftp->close();
        if (!action.contains("loop")) {
            endClient(action);
            return;
        }
        // As if the slot opened a box; the other side goes on meanwhile.
        isInLoop = true;
        QTimer::singleShot(0, this, [this, action] { endClient(action); });
        QTest::qWait(10);
        isInLoop = false;
    }

    void endClient(const QByteArray &action)
    {
        const int stepsBefore = steps;
        if (action.endsWith("delete"))
            delete ftp;
        else if (action.endsWith("later"))
            ftp->deleteLater();
        QCOMPARE(steps, stepsBefore);
    }

    // What the server hears is a step, too, but for slots.
    bool hear(const QByteArray &verb)
    {
        if (ftp && !disturbances.first().contains("loop"))
            takeStep();
        if (verb == "ABOR" && !isCut() && server.isStoring()) {
            QTest::qWait(10);
            endsBeforeAbort = server.data == nullptr;
        }
        return isCut();
    }

    const QByteArrayList disturbances;
    const int disturbedStep;
    bool isInLoop = false;
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
             {"list get put raw close", "active list get put raw close", "put-device", "put-empty",
              "put-waiting", "put-vanishing", "get-full-disk", "get-sink-gone",
              "proxy connect-boat guest no-proxy", "cd remove put-closed"}) {
            for (const char *const actions :
                 {"loop", "loop-delete", "loop-later", "abort", "abort-close-later", "delete", "reset",
                  "abort,delete", "reset-abort,delete"})
                QTest::addRow("%s in %s", actions, words) << QByteArray(words) << QByteArray(actions);
        }
    }

    void survivesEveryStep()
    {
        QFETCH(QByteArray, words);
        QFETCH(QByteArray, actions);
        DisturbedSession undisturbed(words, actions, never);
        QVERIFY2(waitUntil([&] { return undisturbed.isOver(); }, 6 * longestWaitMs),
                 qPrintable(undisturbed.outcome()));
        QVERIFY(undisturbed.steps > 10);
        for (int at = 0; at <= undisturbed.steps; at += at < 30 ? 1 : at / 2) {
            DisturbedSession session(words, actions, at);
            QVERIFY2(waitUntil([&] { return session.isOver(); }, 6 * longestWaitMs),
                     qPrintable(session.outcome()));
            // To a server the end of the data is the end of the file.
            const bool isWhole = session.server.uploadedBytes == session.server.file.size();
            QVERIFY(isWhole || !session.endsBeforeAbort);
            QVERIFY(isWhole || words != "put-device" || !session.log.contains("finished 1"_s));
            if (actions == "loop")
                QCOMPARE(session.outcome(), undisturbed.outcome());
        }
    }

    // The server does not end the data connection by itself.
    void farewellsAreShort()
    {
        for (const auto &[answer, least, most] : std::initializer_list<std::tuple<QByteArray, int, int>>{
                 {"ABOR 150 Later\r\n", 500, 2500}, {"ABOR 426 Cut off\r\n", 0, 400}}) {
            FtpSession session(answer);
            session.queue("connect login put-large");
            QVERIFY(waitUntil([&] { return session.server.uploadedBytes > 0; }));
            delete session.ftp;
            const auto isClosed = [&] { return session.server.data == nullptr; };
            QVERIFY(!waitUntil(isClosed, least));
            QVERIFY(waitUntil(isClosed, most));
        }
    }
};

QTEST_GUILESS_MAIN(TestFtpSlots)
#include "tst_ftp_slots.moc"
