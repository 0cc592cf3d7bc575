#include "ftp/ftplisting.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString line = QString::fromLatin1(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto info = ftplisting::parseLine(line, QDateTime(QDate(2024, 2, 29), QTime(12, 0)));
    // A name stands in the line as it is; whatever is listed is a file or a directory.
    if (info && (!line.contains(info->name()) || info->isDir() == info->isFile() || info->size() < 0 ||
                 info->permissions() > 0x1ff))
        std::abort();
    return 0;
}
