#include "ftp/linesplitter.h"

#include <utility>

void FtpLineSplitter::append(const QByteArray &bytes)
{
    buffer.remove(0, start);
    scanned -= start;
    start = 0;
    buffer.append(bytes);
}

std::optional<QByteArray> FtpLineSplitter::takeLine()
{
    for (;;) {
        const int end = buffer.indexOf('\n', scanned);
        if (end < 0)
            break;
        const int lineStart = std::exchange(start, end + 1);
        scanned = start;
        const bool isTail = std::exchange(droppingLine, false);
        if (!isTail && start - lineStart <= longestLine)
            return buffer.mid(lineStart, start - lineStart);
    }
    if (droppingLine || buffer.size() - start >= longestLine) {
        clear();
        droppingLine = true;
    } else {
        scanned = buffer.size();
    }
    return std::nullopt;
}
