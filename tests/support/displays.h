// What FTP servers do in tests, and displays of type SCREEN: a server each.
#pragma once

#include "discovery/protocol.h"
#include "tests/support/scriptedftpserver.h"

#include <QUdpSocket>

/// What a server does in a test.
using Play = std::function<void(ScriptedFtpServer &)>;

inline Play answering(const QByteArray &verb, const QByteArray &reply)
{
    return [=](ScriptedFtpServer &server) { server.answers[verb] = reply; };
}

/// In the middle of a transfer.
inline const Play hangUp = [](ScriptedFtpServer &server) {
    server.onTheWay = [&] { server.control->abort(); };
};

struct PlayedDisplay : ScriptedFtpServer {
    explicit PlayedDisplay(int number) : ScriptedFtpServer(addressOf(number), protocol::ftpPort)
    {
        udp.bind(addressOf(number));
    }

    static QHostAddress addressOf(int number) { return QHostAddress(0x7F000014U + quint32(number)); }

    /// Whoever hears it takes the display's address for the sender's.
    QUdpSocket udp;
};
