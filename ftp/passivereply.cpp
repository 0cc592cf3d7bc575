#include "ftp/passivereply.h"

#include "ftp/replyreader.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QStringList>

#include <array>
#include <limits>

namespace
{

constexpr int codePassive = 227;
constexpr int codeExtendedPassive = 229;

// Where the delimited fields of "(|||6446|)" hold the port.
constexpr int portField = 3;

QString joined(const std::array<quint32, 4> &numbers, QChar separator)
{
    QStringList texts;
    for (const quint32 number : numbers)
        texts += QString::number(number);
    return texts.join(separator);
}

} // namespace

std::optional<PassiveEndpoint> passiveEndpoint(const QString &replyText)
{
    // Begins at the first digit of a number only, so that a long row of digits is not tried from each of
    // them.
    static const QRegularExpression pattern(
        QStringLiteral("(?<!\\d)(\\d{1,5}),(\\d{1,5}),(\\d{1,5}),(\\d{1,5}),(\\d{1,5}),(\\d{1,5})(?!\\d)"));
    const QRegularExpressionMatch match = pattern.match(replyText);
    if (!match.hasMatch())
        return std::nullopt;
    const auto number = [&](int capture) { return match.capturedRef(capture).toUInt(); };
    const quint32 port = (number(5) << 8U) + number(6);
    if (port > std::numeric_limits<quint16>::max())
        return std::nullopt;
    return PassiveEndpoint{joined({number(1), number(2), number(3), number(4)}, QLatin1Char('.')),
                           static_cast<quint16>(port)};
}

std::optional<quint16> extendedPassivePort(const QString &replyText)
{
    const int bracket = replyText.indexOf(QLatin1Char('('));
    if (bracket < 0 || bracket + 1 >= replyText.size())
        return std::nullopt;
    bool isPort = false;
    const quint16 port =
        replyText.mid(bracket + 1).section(replyText.at(bracket + 1), portField, portField).toUShort(&isPort);
    return isPort ? std::optional<quint16>(port) : std::nullopt;
}

std::optional<PassiveEndpoint> announcedEndpoint(const FtpReply &reply, const QHostAddress &server)
{
    if (reply.code == codePassive)
        return passiveEndpoint(reply.text);
    const std::optional<quint16> port =
        reply.code == codeExtendedPassive ? extendedPassivePort(reply.text) : std::nullopt;
    return port ? std::optional<PassiveEndpoint>({server.toString(), *port}) : std::nullopt;
}

QString portLine(const QHostAddress &address, quint16 port)
{
    if (address.protocol() == QAbstractSocket::IPv6Protocol) {
        // The zone of a link-local address means something on this computer only.
        QHostAddress plain = address;
        plain.setScopeId(QString());
        return QStringLiteral("EPRT |2|%1|%2|\r\n").arg(plain.toString()).arg(port);
    }
    const quint32 ip = address.toIPv4Address();
    return QStringLiteral("PORT %1,%2,%3\r\n")
        .arg(joined({ip >> 24U, (ip >> 16U) & 0xffU, (ip >> 8U) & 0xffU, ip & 0xffU}, QLatin1Char(',')))
        .arg(port >> 8U)
        .arg(port & 0xffU);
}
