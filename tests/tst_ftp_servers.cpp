// The FTP client against servers of the distribution, which run here on the loopback interface.
#include "ftp/qftp.h"

#include <QBuffer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

namespace
{

constexpr int bound = 4000;

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

bool answers(const QString &host, quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(host, port);
    return socket.waitForConnected(1000);
}

} // namespace

class TestFtpServers : public QObject
{
    Q_OBJECT

private slots:
    void transfersWhole_data();
    void transfersWhole();
    void cleanup();

private:
    bool startPyftpdlib(const QString &host, const QString &folder);
    bool startVsftpd(const QString &folder);

    QProcess server;
    quint16 port = 0;
};

bool TestFtpServers::startPyftpdlib(const QString &host, const QString &folder)
{
    const QString python = QStringLiteral("/usr/bin/python3");
    if (QProcess::execute(python, {QStringLiteral("-c"), QStringLiteral("import pyftpdlib")}) != 0)
        return false;
    const QString arguments =
        QStringLiteral("-m pyftpdlib -w -i %1 -p %2 -d %3").arg(host).arg(port).arg(folder);
    server.start(python, arguments.split(QLatin1Char(' ')));
    return true;
}

bool TestFtpServers::startVsftpd(const QString &folder)
{
    const QString vsftpd = QStandardPaths::findExecutable(
        QStringLiteral("vsftpd"), {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin")});
    if (vsftpd.isEmpty())
        return false;
    QFile options(folder + QLatin1String("/vsftpd.conf"));
    if (!options.open(QIODevice::WriteOnly))
        return false;
    options.write("listen=YES\nlisten_ipv6=NO\nbackground=NO\nlisten_address=127.0.0.1\n"
                  "run_as_launching_user=YES\nanonymous_enable=YES\nwrite_enable=YES\n"
                  "anon_upload_enable=YES\nanon_other_write_enable=YES\nanon_mkdir_write_enable=YES\n"
                  "anon_umask=022\nanon_world_readable_only=NO\nallow_writeable_chroot=YES\n"
                  "seccomp_sandbox=NO\n");
    for (const char *option : {"anon_root=", "secure_chroot_dir="})
        options.write(option + folder.toLocal8Bit() + '\n');
    options.write("listen_port=" + QByteArray::number(port) + '\n');
    options.close();
    server.start(vsftpd, {options.fileName()});
    return true;
}

void TestFtpServers::transfersWhole_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QFtp::TransferMode>("mode");
    for (const QFtp::TransferMode mode : {QFtp::Passive, QFtp::Active}) {
        for (const char *where : {"pyftpdlib 127.0.0.1", "pyftpdlib ::1", "vsftpd 127.0.0.1"}) {
            const QStringList words = QString::fromLatin1(where).split(QLatin1Char(' '));
            QTest::addRow("%s %d", where, mode) << words.first() << words.last() << mode;
        }
    }
}

void TestFtpServers::transfersWhole()
{
    QFETCH(QString, program);
    QFETCH(QString, host);
    QFETCH(QFtp::TransferMode, mode);
    if (host == QLatin1String("::1") && !QTcpServer().listen(QHostAddress::LocalHostIPv6))
        QSKIP("this machine has no IPv6");
    const QTemporaryDir folder;
    port = freePort();
    if (program == QLatin1String("vsftpd") ? !startVsftpd(folder.path())
                                           : !startPyftpdlib(host, folder.path()))
        QSKIP("the server is not installed");
    QTRY_VERIFY2_WITH_TIMEOUT(answers(host, port), server.readAll().constData(), bound);

    QByteArray bytes(5000001, Qt::Uninitialized);
    QRandomGenerator(1).generate(bytes.begin(), bytes.end());
    QBuffer source(&bytes);
    QBuffer sink;
    QVERIFY(sink.open(QIODevice::WriteOnly));
    QFtp ftp;
    QSignalSpy done(&ftp, &QFtp::done);
    QStringList listed;
    connect(&ftp, &QFtp::listInfo, this, [&](const QUrlInfo &info) {
        listed += info.name() + QLatin1Char(' ') + QString::number(info.size());
    });
    const auto logIn = [&] {
        ftp.setTransferMode(mode);
        ftp.connectToHost(host, port);
        ftp.login();
    };
    logIn();
    ftp.mkdir(QStringLiteral("update"));
    ftp.cd(QStringLiteral("update"));
    ftp.put(&source, QStringLiteral("image"));
    ftp.put(QByteArray(), QStringLiteral("empty"));
    ftp.rename(QStringLiteral("image"), QStringLiteral("image.bin"));
    ftp.list();
    ftp.get(QStringLiteral("image.bin"), &sink);
    ftp.remove(QStringLiteral("empty"));
    ftp.close();
    QVERIFY(done.wait(bound));
    QVERIFY2(!done.takeFirst().first().toBool(), qPrintable(ftp.errorString()));
    listed.sort();
    QCOMPARE(listed, (QStringList{QStringLiteral("empty 0"), QStringLiteral("image.bin 5000001")}));
    QFile stored(folder.filePath(QStringLiteral("update/image.bin")));
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QVERIFY(stored.readAll() == bytes);
    QVERIFY(sink.data() == bytes);

    // An aborted transfer, and then the same connection again.
    logIn();
    QFile endless(QStringLiteral("/dev/zero"));
    ftp.put(&endless, QStringLiteral("endless"));
    const auto abortOnce = connect(&ftp, &QFtp::dataTransferProgress, this, [&](qint64 sent) {
        if (sent > 0)
            ftp.abort();
    });
    QVERIFY(done.wait(bound));
    disconnect(abortOnce);
    done.clear();
    sink.seek(0);
    ftp.get(QStringLiteral("update/image.bin"), &sink);
    ftp.close();
    QVERIFY(done.wait(bound));
    QVERIFY2(!done.takeFirst().first().toBool(), qPrintable(ftp.errorString()));
    QVERIFY(sink.data() == bytes);
}

void TestFtpServers::cleanup()
{
    server.kill();
    server.waitForFinished();
}

QTEST_GUILESS_MAIN(TestFtpServers)
#include "tst_ftp_servers.moc"
