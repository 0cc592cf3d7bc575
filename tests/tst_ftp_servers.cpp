// The FTP client against servers of the distribution, which run here on the loopback interface.
#include "ftp/qftp.h"

#include <QBuffer>
#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

class TestFtpServers : public QObject
{
    Q_OBJECT

private slots:
    void transfersWhole_data();
    void transfersWhole();
};

void TestFtpServers::transfersWhole_data()
{
    QTest::addColumn<QString>("command"); // its address, port and folder left open
    QTest::addColumn<QString>("host");
    QTest::addColumn<QFtp::TransferMode>("mode");
    const auto pyftpdlib = QStringLiteral("/usr/bin/python3 -m pyftpdlib -w -i %1 -p %2 -d %3");
    const auto vsftpd = QStringLiteral(
        "/usr/sbin/vsftpd %3/options -olisten=YES -olisten_ipv6=NO -obackground=NO "
        "-orun_as_launching_user=YES "
        "-olisten_address=%1 -olisten_port=%2 -oanon_root=%3 -osecure_chroot_dir=%3 -oseccomp_sandbox=NO "
        "-oanonymous_enable=YES -owrite_enable=YES -oanon_upload_enable=YES -oanon_mkdir_write_enable=YES "
        "-oanon_umask=022 -oanon_world_readable_only=NO -oallow_writeable_chroot=YES");
    const auto ipv4 = QStringLiteral("127.0.0.1");
    const auto ipv6 = QStringLiteral("::1");
    QTest::newRow("pyftpdlib, passive") << pyftpdlib << ipv4 << QFtp::Passive;
    QTest::newRow("pyftpdlib, passive, IPv6") << pyftpdlib << ipv6 << QFtp::Passive;
    QTest::newRow("pyftpdlib, active, IPv6") << pyftpdlib << ipv6 << QFtp::Active;
    QTest::newRow("vsftpd, passive") << vsftpd << ipv4 << QFtp::Passive;
    QTest::newRow("vsftpd, active") << vsftpd << ipv4 << QFtp::Active;
}

void TestFtpServers::transfersWhole()
{
    QFETCH(QString, command);
    QFETCH(QString, host);
    QFETCH(QFtp::TransferMode, mode);
    QTcpServer freePort;
    if (!freePort.listen(QHostAddress(host)))
        QSKIP("this machine has no IPv6");
    const quint16 port = freePort.serverPort();
    freePort.close();
    const QTemporaryDir folder;
    // Empty: without a file of its own, a server would read this machine's.
    QVERIFY(QFile(folder.filePath(QStringLiteral("options"))).open(QIODevice::WriteOnly));
    QStringList words = command.arg(host).arg(port).arg(folder.path()).split(QLatin1Char(' '));
    QProcess server;
    const auto stop = qScopeGuard([&] {
        server.kill();
        server.waitForFinished();
    });
    server.start(words.takeFirst(), words);
    // A Python without the library ends at once.
    const auto isMissing = [&] { return server.state() == QProcess::NotRunning; };
    const auto isUp = [&] {
        QTcpSocket socket;
        socket.connectToHost(host, port);
        return socket.waitForConnected();
    };
    QTRY_VERIFY(isMissing() || isUp());
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
    QVERIFY(done.wait());
    QVERIFY2(!done.takeFirst().at(0).toBool(), qPrintable(ftp.errorString()));
    listed.sort();
    QCOMPARE(listed, (QStringList{QStringLiteral("empty 0"), QStringLiteral("image 5000001")}));
    QFile stored(folder.filePath(QStringLiteral("update/image")));
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QVERIFY(stored.readAll() == bytes);
    QVERIFY(sink.data() == bytes);
}

QTEST_GUILESS_MAIN(TestFtpServers)
#include "tst_ftp_servers.moc"
