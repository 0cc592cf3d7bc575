// One upload of an update package to a device, the same for displays and the N6. A row or the N6 page owns
// one for its whole life and hears of the progress and of the end.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QFtp;

class Upload : public QObject
{
    Q_OBJECT

public:
    /// How long a device may keep silent before its upload counts as failed, in milliseconds.
    struct Patience {
        /// After the last byte or reply.
        int forReplyMs = 3 * 60 * 1000;
        /// After the last byte of the file, which the device may be writing to its flash.
        int forConfirmationMs = 10 * 60 * 1000;
    };

    explicit Upload(QObject *parent);

    /// For the uploads that are started from now on.
    void setPatience(const Patience &limits) { patience = limits; }

    /// Connects, logs in, changes folder, uploads the file and closes, in place of any upload of before.
    /// Returns false when the file cannot be opened: then only the steps before the upload are done, and
    /// ended() tells of the end of those.
    bool start(const QString &host, const QString &fileName);
    /// Lets go of the device at once, without ended(). Returns false when there is nothing to let go of: an
    /// upload that has ended still holds its client.
    bool abort();
    /// The device has let the tool in and has not been left yet, even if the upload itself has ended.
    bool isTransferring() const;

signals:
    /// Both in bytes.
    void progress(qint64 doneBytes, qint64 totalBytes);
    /// Once for each upload that was not aborted, whether the device closed the session, refused something,
    /// was lost or fell silent. A slot may delete the upload.
    void ended(bool error);

private:
    enum class State {
        Idle,       ///< no client
        Talking,    ///< something is under way; also between the last reply and the end
        Confirming, ///< all bytes are out, the device has not confirmed them yet
        Ended,      ///< nothing is heard of the client any more
    };

    void enter(State next);
    void listen();
    void noteProgress(qint64 doneBytes, qint64 totalBytes);
    void takeState(int ftpState);
    void giveUp();
    void finish(bool error);

    QFtp *ftp = nullptr;
    State state = State::Idle;
    Patience patience;
    QTimer silence;
};
