// The first byte says in what pieces the others arrive: the replies must not depend on it, nor exceed their
// bounds.
#include "ftp/passivereply.h"
#include "ftp/replyreader.h"

#include <QStringList>

#include <cstdlib>

static QStringList repliesOf(const QByteArray &bytes, int pieceLength)
{
    QStringList replies;
    FtpReplyReader reader;
    for (int at = 0; at < bytes.size(); at += pieceLength) {
        reader.append(bytes.mid(at, pieceLength));
        while (const auto reply = reader.next()) {
            const bool isCode = reply->code >= 100 && reply->code < 560 && reply->code / 10 % 10 <= 5;
            if (!isCode || reply->text.size() > FtpReplyReader::longestText)
                std::abort();
            passiveEndpoint(reply->text);
            extendedPassivePort(reply->text);
            replies += QString::number(reply->code) + reply->text;
        }
    }
    return replies;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    if (size > 1 && repliesOf(bytes.mid(1), bytes.size()) != repliesOf(bytes.mid(1), 1 + data[0]))
        std::abort();
    return 0;
}
