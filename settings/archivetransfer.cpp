#include "settings/archivetransfer.h"

#include "discovery/protocol.h"
#include "settings/archivefile.h"
#include "settings/controlrelay.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace
{

constexpr int downloadAttempts = 15;
constexpr int pollIntervalMs = 1000;
// What was on its way when the control connection ended may still arrive.
constexpr int lostTimeoutMs = 2000;
// An archive has a few megabytes. This bounds one whose size the N6 did not announce.
constexpr qint64 longestArchiveBytes = Q_INT64_C(1) << 30;

// An archive that the N6 has not finished writing is as good as none.
constexpr auto notReady = QNetworkReply::ContentNotFoundError;

QString fileAndReason(const QString &fileName, const QString &reason)
{
    return QDir::toNativeSeparators(fileName) + QLatin1Char('\n') + reason;
}

} // namespace

ArchiveTransfer::ArchiveTransfer(QObject *parent)
    : QObject(parent), network(new QNetworkAccessManager(this)), attemptsLeft(downloadAttempts)
{
    waitTimer.setSingleShot(true);
    connect(&waitTimer, &QTimer::timeout, this, &ArchiveTransfer::attempt);
    stallTimer.setSingleShot(true);
    connect(&stallTimer, &QTimer::timeout, this, [this] { fail(QNetworkReply::TimeoutError); });
}

ArchiveTransfer::~ArchiveTransfer()
{
    drop();
}

void ArchiveTransfer::fetch(const QUrl &archive, const QString &file)
{
    fetchSoon(archive, file);
    attempt();
}

void ArchiveTransfer::fetchSoon(const QUrl &archive, const QString &file)
{
    drop();
    archiveUrl = archive;
    fileName = file;
    attemptsLeft = downloadAttempts;
    setState(State::Waiting);
}

void ArchiveTransfer::store(const QUrl &archive, const QString &file)
{
    drop();
    archiveUrl = archive;
    lastError = QNetworkReply::NoError;
    bytesSent = 0;
    setState(State::Storing);
    currentFile = std::make_unique<QFile>(file);
    // From a file that cannot be read the manager would upload nothing and report success; an empty one would
    // empty the N6's settings.
    if (!currentFile->open(QIODevice::ReadOnly) || currentFile->peek(1).isEmpty()) {
        fail(QNetworkReply::UnknownContentError);
        return;
    }
    bytesToSend = currentFile->size();
    currentReply = network->put(request(), currentFile.get());
    connect(currentReply, &QNetworkReply::errorOccurred, this, &ArchiveTransfer::uploadError);
    connect(currentReply, &QNetworkReply::finished, this, &ArchiveTransfer::uploadFinished);
    connect(currentReply, &QNetworkReply::uploadProgress, this, &ArchiveTransfer::noteSent);
}

void ArchiveTransfer::follow(const QString &host)
{
    if (archiveUrl.host() == host || (currentState != State::Waiting && currentState != State::Fetching))
        return;
    archiveUrl.setHost(host);
    // What flows from the old address may go on; what does not is tried again at the new one.
    if (currentState == State::Fetching && stallTimer.interval() != lostTimeoutMs)
        stallTimer.start(lostTimeoutMs);
}

void ArchiveTransfer::giveUp()
{
    if (currentState == State::Waiting || currentState == State::Fetching) {
        drop();
        end(Outcome::FetchFailed);
    }
}

void ArchiveTransfer::drop()
{
    const bool hasPart = currentState == State::Fetching || currentState == State::Placing;
    endAttempt();
    setState(State::Idle);
    if (hasPart)
        QFile::remove(archivefile::partName(fileName));
}

// Idle       -> Waiting (a fetch), Storing
// Waiting    -> Fetching
// Fetching   -> Placing (all of it is here), Waiting (the N6 has none yet), Idle
// Placing    -> Waiting (it lacks its end), Idle
// Storing    -> Confirming (the last byte has left), Idle
// Confirming -> Idle
void ArchiveTransfer::setState(State next)
{
    currentState = next;
    switch (next) {
    case State::Fetching:
    case State::Storing:
        stallTimer.start(patience.forBytesMs);
        break;
    case State::Confirming:
        stallTimer.start(relay->isUp() ? patience.forConfirmationMs : lostTimeoutMs);
        break;
    case State::Idle:
    case State::Waiting:
    case State::Placing:
        stallTimer.stop();
        break;
    }
    if (next == State::Waiting)
        waitTimer.start(pollIntervalMs);
    else
        waitTimer.stop();
}

void ArchiveTransfer::attempt()
{
    endAttempt();
    lastError = QNetworkReply::NoError;
    attemptHost = archiveUrl.host();
    setState(State::Fetching);
    currentFile = std::make_unique<QFile>(archivefile::partName(fileName));
    if (!currentFile->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        end(Outcome::NoPartFile, fileAndReason(currentFile->fileName(), archivefile::reasonOf(*currentFile)));
        return;
    }
    currentReply = network->get(request());
    connect(currentReply, &QNetworkReply::readyRead, this, &ArchiveTransfer::downloadReadyRead);
    connect(currentReply, &QNetworkReply::errorOccurred, this, &ArchiveTransfer::downloadError);
    connect(currentReply, &QNetworkReply::finished, this, &ArchiveTransfer::downloadFinished);
}

// The archive's place as the manager is to see it: behind a relay of its own for each attempt.
QNetworkRequest ArchiveTransfer::request()
{
    // A connection that the manager still keeps ended with its relay, whose port may be in use again.
    network->clearConnectionCache();
    relay = new ControlRelay(QHostAddress(archiveUrl.host()), protocol::ftpPort, this);
    connect(relay, &ControlRelay::unreachable, this, [this] { fail(QNetworkReply::ConnectionRefusedError); });
    connect(relay, &ControlRelay::lost, this, [this] { stallTimer.start(lostTimeoutMs); });
    QUrl url = archiveUrl;
    url.setHost(relay->address().toString());
    url.setPort(relay->port());
    return QNetworkRequest(url);
}

// What the network does not tell by itself ends an attempt like what it tells.
void ArchiveTransfer::fail(QNetworkReply::NetworkError error)
{
    if (currentReply)
        currentReply->disconnect(this);
    if (currentState == State::Fetching) {
        downloadError(error);
        downloadFinished();
    } else {
        uploadError(error);
        uploadFinished();
    }
}

void ArchiveTransfer::downloadReadyRead()
{
    if (currentState != State::Fetching || !currentReply)
        return;
    stallTimer.start();
    const QByteArray received = currentReply->readAll();
    const QVariant announced = currentReply->header(QNetworkRequest::ContentLengthHeader);
    const qint64 limit = announced.isValid() ? announced.toLongLong() : longestArchiveBytes;
    if (currentFile->pos() + received.size() > limit || currentFile->write(received) != received.size())
        fail(QNetworkReply::UnknownContentError);
}

void ArchiveTransfer::downloadError(QNetworkReply::NetworkError error)
{
    if (currentState != State::Fetching && currentState != State::Placing)
        return;
    qDebug().noquote() << "download error:" << error;
    lastError = error;
    --attemptsLeft;
    emit attemptFailed();
}

void ArchiveTransfer::downloadFinished()
{
    qDebug().noquote() << "download finished";
    if (currentState != State::Fetching)
        return;
    if (lastError == QNetworkReply::NoError)
        judgeDownload();
    endAttempt();
    if (lastError != QNetworkReply::NoError) {
        concludeFailure();
        return;
    }
    placing = std::make_unique<archivefile::Placing>(archivefile::partName(fileName), fileName);
    setState(State::Placing);
    goOnPlacing();
}

// Finds what the network layer does not report: an archive that ends early or has no byte, and a disk that
// does not take it.
void ArchiveTransfer::judgeDownload()
{
    const QVariant announced =
        currentReply ? currentReply->header(QNetworkRequest::ContentLengthHeader) : QVariant();
    const bool isWritten = currentFile->flush();
    const qint64 received = currentFile->size();
    if (!isWritten || (announced.isValid() ? announced.toLongLong() != received : received == 0))
        downloadError(QNetworkReply::UnknownContentError);
    else if (received == 0)
        downloadError(notReady);
}

void ArchiveTransfer::concludeFailure()
{
    QFile::remove(archivefile::partName(fileName));
    const bool hasMoved = attemptHost != archiveUrl.host();
    if (lastError != notReady && !hasMoved) {
        end(Outcome::FetchFailed);
    } else if (attemptsLeft < 1) {
        end(lastError == notReady ? Outcome::NotReady : Outcome::FetchFailed);
    } else {
        qDebug().noquote() << "backup not ready" << attemptsLeft << "attempts left";
        setState(State::Waiting);
    }
}

void ArchiveTransfer::goOnPlacing()
{
    using Progress = archivefile::Placing::Progress;
    if (currentState != State::Placing)
        return;
    const Progress progress = placing->goOn();
    if (progress == Progress::More) {
        QTimer::singleShot(0, this, &ArchiveTransfer::goOnPlacing);
        return;
    }
    const QString detail = fileAndReason(placing->name(), placing->why());
    // Lets go of the part file: not every system removes a file that is open.
    placing.reset();
    if (progress == Progress::Placed || progress == Progress::NoPlace) {
        QFile::remove(archivefile::partName(fileName));
        end(progress == Progress::Placed ? Outcome::Fetched : Outcome::NotPlaced, detail);
    } else {
        downloadError(progress == Progress::Unfinished ? notReady : QNetworkReply::UnknownContentError);
        concludeFailure();
    }
}

void ArchiveTransfer::noteSent(qint64 bytes)
{
    // The manager also reports when nothing more has gone out.
    if (!currentFile || bytes <= bytesSent)
        return;
    bytesSent = bytes;
    if (bytesSent == bytesToSend)
        setState(State::Confirming);
    else
        stallTimer.start();
}

void ArchiveTransfer::uploadError(QNetworkReply::NetworkError error)
{
    if (currentState != State::Storing && currentState != State::Confirming)
        return;
    qDebug().noquote() << "upload error:" << error;
    lastError = error;
}

void ArchiveTransfer::uploadFinished()
{
    if (currentState != State::Storing && currentState != State::Confirming)
        return;
    // Some servers confirm an archive that arrived cut off; with others the manager sends nothing and reports
    // success.
    if (lastError == QNetworkReply::NoError && bytesSent != bytesToSend)
        uploadError(QNetworkReply::UnknownContentError);
    end(lastError == QNetworkReply::NoError ? Outcome::Stored : Outcome::StoreFailed);
}

void ArchiveTransfer::end(Outcome outcome, const QString &detail)
{
    endAttempt();
    setState(State::Idle);
    emit ended(outcome, detail);
}

// Lets go of the network and of the file.
void ArchiveTransfer::endAttempt()
{
    placing.reset();
    if (currentReply) {
        currentReply->disconnect(this);
        currentReply->abort();
        // Until its reply has gone, an aborted upload may read on: its file goes along.
        if (currentFile && currentState != State::Fetching)
            currentFile.release()->setParent(currentReply);
        currentReply->deleteLater();
        currentReply.clear();
    }
    currentFile.reset();
    if (relay)
        relay->letGo();
    relay.clear();
}
