// Displays of type SCREEN that a test plays: an FTP server each, and heartbeats when the test has them sent.
#pragma once

#include "discovery/protocol.h"
#include "tests/support/heartbeatbytes.h"
#include "tests/support/scriptedftpserver.h"

#include <QUdpSocket>

class PlayedDisplay : public ScriptedFtpServer
{
public:
    explicit PlayedDisplay(int number) : ScriptedFtpServer(addressOf(number), protocol::ftpPort)
    {
        heart.bind(addressOf(number));
    }

    static QHostAddress addressOf(int number)
    {
        return QHostAddress(0x7F000014U + static_cast<quint32>(number));
    }

    void beat()
    {
        heart.writeDatagram(HeartbeatBytes::device(Screen, "S"), QHostAddress::LocalHost,
                            protocol::heartbeatPort);
    }

private:
    QUdpSocket heart;
};
