// How the two sides tell each other where the data connection goes: the server in the replies to PASV and
// EPSV, the client in PORT and EPRT.
#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

class QHostAddress;
struct FtpReply;

struct PassiveEndpoint {
    QString host;
    quint16 port;
};

/// From the text of a reply to PASV; nothing when there are no six numbers in it or they make no port.
std::optional<PassiveEndpoint> passiveEndpoint(const QString &replyText);

/// From the text of a reply to EPSV; nothing when it names no port.
std::optional<quint16> extendedPassivePort(const QString &replyText);

/// From a reply to either; after EPSV it is a port of the server that the line was sent to. Nothing in any
/// other reply.
std::optional<PassiveEndpoint> announcedEndpoint(const FtpReply &reply, const QHostAddress &server);

/// The whole line that tells where this side listens: PORT for an IPv4 address, EPRT for IPv6.
QString portLine(const QHostAddress &address, quint16 port);
