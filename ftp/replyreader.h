// Reads the replies of an FTP server: bytes in, complete replies out, without a socket.
#pragma once

#include "ftp/linesplitter.h"

#include <QByteArray>
#include <QString>

#include <optional>

struct FtpReply {
    /// What the first digit says.
    enum class Kind { Preliminary = 1, Completion, Intermediate, TransientFailure, PermanentFailure };
    Kind kind() const { return static_cast<Kind>(code / 100); }

    /// First digit 1 to 5, second 0 to 5, third 0 to 9.
    int code = 0;
    /// All lines without their reply codes and without the last line end.
    QString text;
};

class FtpReplyReader
{
public:
    /// In bytes; lines of a reply that would make its text longer are left out of it.
    static constexpr int longestText = 64 * 1024;

    void append(const QByteArray &bytes) { lines.append(bytes); }
    /// The next complete reply; nothing while it has not arrived. Lines that belong to no reply are dropped.
    std::optional<FtpReply> next();
    void clear() { *this = FtpReplyReader(); }

private:
    FtpLineSplitter lines;
    QByteArray code;
    QByteArray text;
};
