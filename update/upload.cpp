#include "update/upload.h"

#include "discovery/protocol.h"
#include "ftp/qftp.h"

#include <QFile>

#include <memory>
#include <utility>

Upload::Upload(QObject *parent) : QObject(parent)
{
    silence.setSingleShot(true);
}

// Every state may be followed by Talking (a new upload) and, with a client, by Idle (an abort).
//   Talking -> Confirming, Ended;  Confirming -> Talking, Ended
void Upload::enter(State next)
{
    state = next;
    switch (state) {
    case State::Talking:
        silence.start(patience.forReplyMs);
        break;
    case State::Confirming:
        silence.start(patience.forConfirmationMs);
        break;
    case State::Ended:
        silence.stop();
        ftp->disconnect(this);
        break;
    case State::Idle:
        delete std::exchange(ftp, nullptr);
        break;
    }
}

bool Upload::start(const QString &host, const QString &fileName)
{
    enter(State::Idle);
    ftp = new QFtp(this);
    listen();
    enter(State::Talking);
    ftp->connectToHost(host, protocol::ftpPort);
    ftp->login(protocol::ftpUser, protocol::ftpPassword);
    ftp->cd(QStringLiteral("update"));

    auto file = std::make_unique<QFile>(fileName, ftp);
    if (!file->open(QIODevice::ReadOnly))
        return false;
    ftp->put(file.release(), QStringLiteral("image"), QFtp::Binary);
    ftp->close();
    return true;
}

bool Upload::abort()
{
    if (state == State::Idle)
        return false;
    ftp->abort();
    ftp->close();
    enter(State::Idle);
    return true;
}

bool Upload::isTransferring() const
{
    return ftp != nullptr && ftp->state() == QFtp::LoggedIn;
}

void Upload::listen()
{
    connect(ftp, &QFtp::stateChanged, this, &Upload::takeState);
    connect(ftp, &QFtp::commandFinished, this, [this] { enter(State::Talking); });
    connect(ftp, &QFtp::dataTransferProgress, this, &Upload::noteProgress);
    connect(ftp, &QFtp::done, this, &Upload::finish);
    // It goes with the client: after an abort there is nothing to give up.
    connect(&silence, &QTimer::timeout, ftp, [this] { giveUp(); });
}

void Upload::noteProgress(qint64 doneBytes, qint64 totalBytes)
{
    enter(doneBytes < totalBytes ? State::Talking : State::Confirming);
    emit progress(doneBytes, totalBytes);
}

// A lost connection is reported by nothing else. What the client may say after it is not heard any more.
void Upload::takeState(int ftpState)
{
    if (ftpState == QFtp::Unconnected)
        finish(true);
    else
        enter(State::Talking);
}

// What was reported as over must not go on when the device is back.
void Upload::giveUp()
{
    ftp->abort();
    finish(true);
}

void Upload::finish(bool error)
{
    enter(State::Ended);
    emit ended(error);
}
