#include "ftp/uploadpump.h"

#include "ftp/sessionevents.h"

#include <QTcpSocket>

#include <array>
#include <utility>

namespace
{

constexpr int blockBytes = 16384;
// Long enough to spare the event loop most of its turns, short enough for painting and input to notice
// nothing.
constexpr int blocksPerTurn = 64;

} // namespace

UploadPump::UploadPump(QIODevice *source, qint64 expectedEnd, SessionEvents *sessionEvents, QObject *parent)
    : QObject(parent), device(source), events(sessionEvents), end(expectedEnd)
{
    // connectQueued() drops the signals of a source that is gone, so this one is posted. The pump then finds
    // that there is nothing to read from.
    connect(source, &QObject::destroyed, this, [this] { events->post(this, [this] { resume(); }); });
}

void UploadPump::start(QTcpSocket *connection)
{
    socket = connection;
    resume();
}

void UploadPump::resume()
{
    if (socket.isNull() || state != State::Sending || std::exchange(isPosted, true))
        return;
    events->post(this, [this] {
        isPosted = false;
        if (keptBytes == 0)
            pump();
    });
}

void UploadPump::bytesWritten(qint64 bytes)
{
    const QPointer<UploadPump> self = this;
    keptBytes -= bytes;
    emit sent(bytes);
    if (self && keptBytes == 0)
        pump();
}

void UploadPump::pump()
{
    for (int block = 0; block < blocksPerTurn; ++block) {
        if (sendBlock() != Block::Left)
            return;
    }
    resume();
}

UploadPump::Block UploadPump::sendBlock()
{
    if (state != State::Sending || !socket)
        return Block::Stopped;
    std::array<char, blockBytes> block; // left uninitialised, for every block would pay for it
    const qint64 count = device ? device->read(block.data(), blockBytes) : -1;
    if (count <= 0) {
        endSource(count);
        return Block::Stopped;
    }
    if (socket->write(block.data(), count) < 0) {
        state = State::Failed;
        emit refused();
        return Block::Stopped;
    }
    // An unbuffered socket keeps what the system did not take, and tells only of that.
    keptBytes = socket->bytesToWrite();
    const qint64 leftBytes = count - keptBytes;
    const QPointer<UploadPump> self = this;
    if (leftBytes > 0)
        emit sent(leftBytes);
    if (!self)
        return Block::Stopped;
    return keptBytes == 0 ? Block::Left : Block::Kept;
}

// Half a file must not pass for a whole one. A stream has no size, pauses with 0 and ends with -1.
void UploadPump::endSource(qint64 lastRead)
{
    const bool isStream = !device.isNull() && device->isSequential();
    if (isStream && lastRead == 0)
        return;
    const bool isWhole = !device.isNull() && (isStream || device->pos() >= end);
    state = isWhole ? State::SentAll : State::Failed;
    if (isWhole)
        emit sentAll();
    else
        emit sourceFailed();
}
