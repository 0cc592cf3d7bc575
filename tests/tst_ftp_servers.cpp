// The FTP client against the servers of the distribution, those that are there.
#include "ftp/qftppi.h"
#include "tests/support/files.h"
#include "tests/support/ftpsession.h"
#include "tests/support/rows.h"

#include <QBuffer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace
{

// HOST, PORT, FOLDER and PARTS are left open, also in the file of options, of which the folder holds a copy.
struct Installed {
    const char *name;
    QString command, options = {};
    QByteArray words = "guest";
    QString host = "127.0.0.1"_s;
};

} // namespace
Q_DECLARE_METATYPE(Installed)

class TestFtpServers : public QObject
{
    Q_OBJECT

private slots:
    void transfersWhole_data()
    {
        const QString pyftpdlib = "/usr/bin/python3 -m pyftpdlib -w -i HOST -p PORT -d FOLDER"_s;
        // Listens only for a server that is there.
        const QString listener = "sh -c 'command -v %1 && exec "
                                 "socat TCP-LISTEN:PORT,bind=HOST,fork,reuseaddr EXEC:%1,nofork'"_s;
        addRows<Installed>({
            {"pyftpdlib, passive", pyftpdlib},
            {"pyftpdlib, passive, IPv6", pyftpdlib, {}, "guest", "::1"_s},
            {"pyftpdlib, active, IPv6", pyftpdlib, {}, "active guest", "::1"_s},
            {"vsftpd, passive", "vsftpd FOLDER/options"_s, "vsftpd.conf"_s},
            {"vsftpd, active", "vsftpd FOLDER/options"_s, "vsftpd.conf"_s, "active guest"},
            {"proftpd", "proftpd -n -q -c FOLDER/options"_s, "proftpd.conf"_s},
            {"pure-ftpd", "pure-ftpd -S HOST,PORT -e -M"_s},
            {"inetutils-ftpd", listener.arg("ftpd"_s)},
            {"ftpd-ssl", listener.arg("in.ftpd"_s), {}, "login"},
            {"aioftp", "/usr/bin/python3 -m aioftp --host HOST --port PORT"_s},
            {"twisted", "twistd3 -n --pidfile= -l- ftp -p PORT --auth=memory:kwz:secret"_s, {}, "login"},
        });
    }

    void transfersWhole()
    {
        QFETCH(const Installed, row);
        FtpSession session({}, QHostAddress(row.host));
        if (!session.server.isListening())
            QSKIP("this machine has no IPv6");
        const quint16 port = session.server.serverPort();
        session.server.close();
        const QTemporaryDir own;
        const QString folder = qEnvironmentVariable("KELVORA_FTP_HOME", own.path()),
                      parts = qEnvironmentVariable("KELVORA_PROFTPD_PARTS", "/usr/lib/proftpd"_s);
        const auto filledIn = [&](QString text) {
            text.replace("HOST"_s, row.host).replace("PORT"_s, QString::number(port));
            return text.replace("FOLDER"_s, folder).replace("PARTS"_s, parts);
        };
        for (const QString &name : {"/image"_s, "/f"_s})
            QFile::remove(folder + name);
        // Also where it is empty: without a file of its own, a server would read this machine's.
        const QByteArray options = contents(QFINDTESTDATA("servers/"_s + row.options));
        write(folder + "/options"_s, filledIn(QString::fromLatin1(options)).toLatin1());
        QProcess server;
        server.setWorkingDirectory(folder);
        server.start("/bin/sh"_s, {"-c"_s, "exec "_s + filledIn(row.command)});
        const auto isMissing = [&] { return server.state() == QProcess::NotRunning; };
        const auto isUp = [&] {
            QTcpSocket socket;
            socket.connectToHost(row.host, port);
            return socket.waitForConnected();
        };
        QTRY_VERIFY(isMissing() || isUp());
        if (isMissing())
            QSKIP("the server is not installed");
        session.ftp->connectToHost(row.host, port);
        session.queue(row.words + " put-large");
        abortUpload(&session);
        transferAfterwards(&session, folder + "/image"_s);
        server.kill();
        server.waitForFinished();
    }

private:
    // Says what the server answers to it.
    static void abortUpload(FtpSession *session)
    {
        QSignalSpy replies(session->ftp->findChild<QFtpPI *>(), &QFtpPI::rawFtpReply);
        session->step = [=](const QByteArray &) {
            // No later transfer is as large.
            if (session->progress.first > largeBytes / 4)
                session->ftp->abort();
        };
        QVERIFY2(waitUntil([&] { return session->isDone(); }), qPrintable(session->outcome()));
        QVERIFY(session->log.takeLast() != "done well"_s);
        qInfo("abort | %s | %d %s", QTest::currentDataTag(), replies.last().at(0).toInt(),
              qPrintable(replies.last().at(1).toString()));
    }

    static void transferAfterwards(FtpSession *session, const QString &uploaded)
    {
        QByteArray bytes(5000001, Qt::Uninitialized);
        QRandomGenerator(1).generate(bytes.begin(), bytes.end());
        QBuffer sink;
        QVERIFY(sink.open(QIODevice::WriteOnly));
        session->ftp->put(bytes, "image"_s);
        session->ftp->list();
        session->ftp->get("image"_s, &sink);
        session->ftp->close();
        QVERIFY(waitUntil([&] { return session->isDone(); }));
        QVERIFY2(session->log.contains("done well"_s), qPrintable(session->ftp->errorString()));
        QVERIFY(session->log.contains("list image"_s));
        QVERIFY(contents(uploaded) == bytes && sink.data() == bytes);
    }
};

QTEST_GUILESS_MAIN(TestFtpServers)
#include "tst_ftp_servers.moc"
