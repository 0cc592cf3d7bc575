// The upload of an update package to a device, the same for displays and the N6.
#pragma once

#include <QString>
#include <QtGlobal>

class QFtp;
class QProgressBar;

namespace upload
{

/// Queues on a fresh client the whole way of a package to the device: connect, log in, change folder, put,
/// close. Returns false when the file cannot be opened; then only the steps before the put are queued, and
/// the client reports the end of those. The open file belongs to the client.
bool queue(QFtp *ftp, const QString &host, const QString &fileName);

/// Ends a client at once for its owner, which may be in one of the client's signals: nothing is heard of it
/// any more. A null pointer is fine.
void retire(QFtp *ftp);

/// Shows a transfer of totalBytes on a bar, whose range is an int: larger totals are scaled down.
void showProgress(QProgressBar *bar, qint64 doneBytes, qint64 totalBytes);

} // namespace upload
