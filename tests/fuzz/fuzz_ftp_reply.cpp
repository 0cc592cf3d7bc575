// The first byte says in what pieces the others arrive: the replies must not depend on it, nor exceed their
// bounds.
#include "ftp/passivereply.h"
#include "ftp/replyreader.h"

#include <QStringList>

#include <cstdlib>

namespace
{

QStringList repliesOf(const QByteArray &bytes, int pieceLength)
{
    QStringList replies;
    FtpReplyReader reader;
    for (int at = 0; at < bytes.size(); at += pieceLength) {
        reader.append(bytes.mid(at, pieceLength));
        while (const auto reply = reader.next()) {
            const int code = reply->code;
            if (code < 100 || code > 559 || code / 10 % 10 > 5 ||
                reply->text.size() > FtpReplyReader::longestText)
                std::abort();
            passiveEndpoint(reply->text);
            extendedPassivePort(reply->text);
            replies += QString::number(code) + reply->text;
        }
    }
    return replies;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size) - 1);
    if (repliesOf(bytes, bytes.size()) != repliesOf(bytes, 1 + data[0]))
        std::abort();
    return 0;
}
