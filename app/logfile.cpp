#include "app/logfile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QLoggingCategory>

namespace
{

QByteArray levelName(QtMsgType level)
{
    switch (level) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        break;
    }
    return "fatal";
}

} // namespace

LogFile *LogFile::current = nullptr;

LogFile::~LogFile()
{
    if (current != this)
        return;
    qInstallMessageHandler(before);
    current = nullptr;
}

bool LogFile::start(const QString &name)
{
    file.setFileName(name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    // Some distributions silence the debug channel.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    current = this;
    before = qInstallMessageHandler(&LogFile::handle);
    return true;
}

QString LogFile::errorString() const
{
    return QCoreApplication::translate("LogFile", "Cannot write to %1: %2")
        .arg(QDir::toNativeSeparators(file.fileName()),
             QCoreApplication::translate("QIODevice", file.errorString().toUtf8()));
}

void LogFile::handle(QtMsgType level, const QMessageLogContext &context, const QString &message)
{
    current->write(level, message);
    current->before(level, context, message);
}

void LogFile::write(QtMsgType level, const QString &message)
{
    const QMutexLocker locker(&mutex);
    const QString time = QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
    file.write(time.toLatin1() + ' ' + levelName(level) + ": " + message.toUtf8() + '\n');
    file.flush();
}
