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
    void start(const QString &program, const QString &host, const QString &folder);

    QProcess server;
    quint16 port = 0;
};

void TestFtpServers::start(const QString &program, const QString &host, const QString &folder)
{
    if (program == QLatin1String("pyftpdlib")) {
        const QString arguments = QStringLiteral("-m pyftpdlib -w -i %1 -p %2 -d %3");
        server.start(QStringLiteral("/usr/bin/python3"),
                     arguments.arg(host).arg(port).arg(folder).split(QLatin1Char(' ')));
        return;
    }
    QFile options(folder + QLatin1String("/vsftpd.conf"));
    QVERIFY(options.open(QIODevice::WriteOnly));
    options.write("listen=YES\nlisten_ipv6=NO\nbackground=NO\nlisten_address=127.0.0.1\n"
                  "run_as_launching_user=YES\nanonymous_enable=YES\nwrite_enable=YES\n"
                  "anon_upload_enable=YES\nanon_other_write_enable=YES\nanon_mkdir_write_enable=YES\n"
                  "anon_umask=022\nanon_world_readable_only=NO\nallow_writeable_chroot=YES\n"
                  "seccomp_sandbox=NO\n");
    for (const char *option : {"anon_root=", "secure_chroot_dir="})
        options.write(option + folder.toLocal8Bit() + '\n');
    options.write("listen_port=" + QByteArray::number(port) + '\n');
    options.close();
    const QString onPath = QStandardPaths::findExecutable(program);
    server.start(onPath.isEmpty() ? QStringLiteral("/usr/sbin/vsftpd") : onPath, {options.fileName()});
}

void TestFtpServers::transfersWhole_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QFtp::TransferMode>("mode");
    const auto ipv4 = QStringLiteral("127.0.0.1");
    const auto ipv6 = QStringLiteral("::1");
    QTest::newRow("pyftpdlib, passive") << ipv4 << QFtp::Passive;
    QTest::newRow("pyftpdlib, passive, IPv6") << ipv6 << QFtp::Passive;
    QTest::newRow("pyftpdlib, active, IPv6") << ipv6 << QFtp::Active;
    QTest::newRow("vsftpd, passive") << ipv4 << QFtp::Passive;
    QTest::newRow("vsftpd, active") << ipv4 << QFtp::Active;
}

void TestFtpServers::transfersWhole()
{
    QFETCH(QString, host);
    QFETCH(QFtp::TransferMode, mode);
    if (host == QLatin1String("::1") && !QTcpServer().listen(QHostAddress::LocalHostIPv6))
        QSKIP("this machine has no IPv6");
    const QTemporaryDir folder;
    port = freePort();
    start(QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(','), 0, 0), host, folder.path());
    // A Python without the library ends at once.
    const auto isMissing = [&] { return server.state() == QProcess::NotRunning; };
    QTRY_VERIFY_WITH_TIMEOUT(isMissing() || answers(host, port), bound);
    if (isMissing())
        QSKIP("the server is not installed");

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
    ftp.setTransferMode(mode);
    ftp.connectToHost(host, port);
    ftp.login();
    ftp.mkdir(QStringLiteral("update"));
    ftp.cd(QStringLiteral("update"));
    ftp.put(&source, QStringLiteral("image"));
    ftp.put(QByteArray(), QStringLiteral("empty"));
    ftp.list();
    ftp.get(QStringLiteral("image"), &sink);
    ftp.close();
    QVERIFY(done.wait(bound));
    QVERIFY2(!done.takeFirst().at(0).toBool(), qPrintable(ftp.errorString()));
    listed.sort();
    QCOMPARE(listed, (QStringList{QStringLiteral("empty 0"), QStringLiteral("image 5000001")}));
    QFile stored(folder.filePath(QStringLiteral("update/image")));
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QVERIFY(stored.readAll() == bytes);
    QVERIFY(sink.data() == bytes);
}

void TestFtpServers::cleanup()
{
    server.kill();
    server.waitForFinished();
}

QTEST_GUILESS_MAIN(TestFtpServers)
#include "tst_ftp_servers.moc"
