#include "ftp/replyreader.h"

namespace
{

constexpr int codeLength = 3;
constexpr int prefixLength = codeLength + 1;

bool isBetween(char digit, char first, char last)
{
    return digit >= first && digit <= last;
}

bool beginsReply(const QByteArray &line)
{
    return line.size() >= codeLength && isBetween(line.at(0), '1', '5') && isBetween(line.at(1), '0', '5') &&
           isBetween(line.at(2), '0', '9');
}

FtpReply makeReply(const QByteArray &code, const QByteArray &text)
{
    return {code.toInt(), QString::fromLatin1(text.endsWith("\r\n") ? text.chopped(2) : text)};
}

} // namespace

std::optional<FtpReply> FtpReplyReader::next()
{
    while (std::optional<QByteArray> line = lines.takeLine()) {
        if (text.isEmpty()) {
            if (!beginsReply(*line))
                continue;
            code = line->left(codeLength);
        }
        const bool isLast = line->startsWith(code + ' ');
        if (isLast || line->startsWith(code + '-'))
            line->remove(0, prefixLength);
        if (text.size() + line->size() <= longestText)
            text += *line;
        if (isLast) {
            FtpReply reply = makeReply(code, text);
            text.clear();
            return reply;
        }
    }
    return std::nullopt;
}
