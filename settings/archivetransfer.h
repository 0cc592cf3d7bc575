// Moves the settings archive between the N6 and a file of this computer: a fetch polls until the N6 has
// written the archive, a store sends one. One transfer is under way at a time. The settings page owns the
// object.
#pragma once

#include <QMetaType>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <memory>

class ControlRelay;
class QFile;
class QNetworkAccessManager;

namespace archivefile
{
class Placing;
}

class ArchiveTransfer : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle,
        Waiting,    ///< for the next attempt to fetch
        Fetching,   ///< into the part file
        Placing,    ///< the part file is complete and becomes the backup
        Storing,    ///< the archive is on its way
        Confirming, ///< its last byte has left; the N6 has to say that it has it
    };
    Q_ENUM(State)

    enum class Outcome {
        Fetched,
        NotReady,    ///< the N6 has not written its archive, after all attempts
        FetchFailed, ///< the N6 or this computer's disk failed
        NoPartFile,  ///< nothing was fetched, since the part file cannot be written
        NotPlaced,   ///< the archive was fetched, but its file cannot be made
        Stored,
        StoreFailed,
    };
    Q_ENUM(Outcome)

    /// How long the N6 may keep silent before a transfer counts as failed, in milliseconds. The network
    /// access manager waits for ever.
    struct Patience {
        int forBytesMs = 30 * 1000;
        /// After the last byte of a restore: the system's buffers still have to drain over a slow link, and
        /// the N6 may be writing flash.
        int forConfirmationMs = 5 * 60 * 1000;
    };

    explicit ArchiveTransfer(QObject *parent = nullptr);
    /// Drops what is under way.
    ~ArchiveTransfer() override;

    /// For what is begun from now on.
    void setPatience(const Patience &limits) { patience = limits; }

    /// Fetches the archive into this file, in up to 15 attempts a second apart while the N6 has none. An
    /// older file stays until the new one is complete. What is under way is dropped.
    void fetch(const QUrl &archive, const QString &fileName);
    /// The same, but the first attempt comes a second from now: the N6 has just been told to write the
    /// archive.
    void fetchSoon(const QUrl &archive, const QString &fileName);
    /// Stores this file as the archive. What is under way is dropped.
    void store(const QUrl &archive, const QString &fileName);
    /// The N6 has another address now: further attempts to fetch go there.
    void follow(const QString &host);
    /// Another instrument has the N6's address: a fetch ends as failed.
    void giveUp();
    /// Ends what is under way without a signal, and removes its part file.
    void drop();

    bool isUnderWay() const { return currentState != State::Idle; }

public slots:
    // What the network tells of the attempt under way; without one nothing happens.
    void downloadReadyRead();
    void downloadError(QNetworkReply::NetworkError error);
    void downloadFinished();
    void uploadError(QNetworkReply::NetworkError error);
    void uploadFinished();

signals:
    /// One attempt to fetch has failed; another may follow.
    void attemptFailed();
    /// The transfer is over. The detail tells of NoPartFile and NotPlaced, to the user: a file name and what
    /// is wrong.
    void ended(ArchiveTransfer::Outcome outcome, const QString &detail);

private:
    void setState(State next);
    void attempt();
    QNetworkRequest request();
    void fail(QNetworkReply::NetworkError error);
    void judgeDownload();
    void concludeFailure();
    void goOnPlacing();
    void noteSent(qint64 bytes);
    void endAttempt();
    void end(Outcome outcome, const QString &detail = QString());

    State currentState = State::Idle;
    Patience patience;
    QNetworkAccessManager *network;
    QUrl archiveUrl;
    QString attemptHost; // where the attempt under way was begun
    QString fileName;
    QPointer<ControlRelay> relay;
    std::unique_ptr<QFile> currentFile;
    QPointer<QNetworkReply> currentReply;
    std::unique_ptr<archivefile::Placing> placing;
    QNetworkReply::NetworkError lastError = QNetworkReply::NoError;
    int attemptsLeft;
    qint64 bytesToSend = 0;
    qint64 bytesSent = 0;
    QTimer waitTimer{this};  // the next attempt
    QTimer stallTimer{this}; // the network has been silent for too long
};
