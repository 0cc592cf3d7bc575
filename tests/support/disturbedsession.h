// An FTP client whose slots run event loops, abort it or delete it, and whose server hangs up.
#pragma once

#include "tests/support/ftpsession.h"

#include <QTest>

#include <climits>

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
        const bool flows = server.data != nullptr && server.data->state() == QAbstractSocket::ConnectedState;
        return !ftp ? !server.isTaken() && !flows : isDone() || (isLost && ftp->state() == QFtp::Unconnected);
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
