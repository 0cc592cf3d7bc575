#include "ftp/qftp.h"

#include <atomic>

namespace
{

// Ids are unique in the whole process, so that a slot may serve several clients.
int nextId()
{
    static std::atomic<int> last{0};
    return ++last;
}

} // namespace

struct QFtp::Private {
};

QFtp::QFtp(QObject *parent) : QObject(parent), d(std::make_unique<Private>()) {}

QFtp::~QFtp() = default;

int QFtp::connectToHost(const QString &, quint16)
{
    return nextId();
}
int QFtp::login(const QString &, const QString &)
{
    return nextId();
}
int QFtp::close()
{
    return nextId();
}
int QFtp::setTransferMode(TransferMode)
{
    return nextId();
}
int QFtp::setProxy(const QString &, quint16)
{
    return nextId();
}
int QFtp::list(const QString &)
{
    return nextId();
}
int QFtp::cd(const QString &)
{
    return nextId();
}
int QFtp::get(const QString &, QIODevice *, TransferType)
{
    return nextId();
}
int QFtp::put(const QByteArray &, const QString &, TransferType)
{
    return nextId();
}
int QFtp::put(QIODevice *, const QString &, TransferType)
{
    return nextId();
}
int QFtp::remove(const QString &)
{
    return nextId();
}
int QFtp::mkdir(const QString &)
{
    return nextId();
}
int QFtp::rmdir(const QString &)
{
    return nextId();
}
int QFtp::rename(const QString &, const QString &)
{
    return nextId();
}
int QFtp::rawCommand(const QString &)
{
    return nextId();
}
qint64 QFtp::bytesAvailable() const
{
    return 0;
}
qint64 QFtp::read(char *, qint64)
{
    return 0;
}
QByteArray QFtp::readAll()
{
    return {};
}
int QFtp::currentId() const
{
    return 0;
}
QFtp::Command QFtp::currentCommand() const
{
    return None;
}
QIODevice *QFtp::currentDevice() const
{
    return nullptr;
}
bool QFtp::hasPendingCommands() const
{
    return false;
}
void QFtp::clearPendingCommands() {}
QFtp::State QFtp::state() const
{
    return Unconnected;
}
QFtp::Error QFtp::error() const
{
    return NoError;
}
QString QFtp::errorString() const
{
    return {};
}
void QFtp::abort() {}
void QFtp::_q_startNextCommand() {}
void QFtp::_q_piFinished(const QString &) {}
void QFtp::_q_piError(int, const QString &) {}
void QFtp::_q_piConnectState(int) {}
void QFtp::_q_piFtpReply(int, const QString &) {}
