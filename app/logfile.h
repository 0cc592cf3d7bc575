// A file that gets every message of the program, for where nobody sees its standard error.
#pragma once

#include <QFile>
#include <QMutex>
#include <QtGlobal>

/// At most one at a time.
class LogFile
{
public:
    LogFile() = default;
    Q_DISABLE_COPY(LogFile)
    /// Messages go only where they went before the start.
    ~LogFile();

    /// From now on writes all messages, those on the debug channel too, to a file of this name, which is
    /// emptied first: a line each, behind the time and the level, on the disk at once. They also go where
    /// they went before. False when the file cannot be written.
    bool start(const QString &name);
    /// Why the start failed, for the user.
    QString errorString() const;

private:
    static void handle(QtMsgType level, const QMessageLogContext &context, const QString &message);
    void write(QtMsgType level, const QString &message);

    static LogFile *current;
    QFile file;
    // The toolkit's threads have something to say, too.
    QMutex mutex;
    QtMessageHandler before = nullptr;
};
