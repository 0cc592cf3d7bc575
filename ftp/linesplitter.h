// Cuts a byte stream from a server into lines. Whatever the server sends, it holds no more than one line of
// bounded length beside what was just appended, and looks at every byte once.
#pragma once

#include <QByteArray>

#include <optional>

class FtpLineSplitter
{
public:
    /// In bytes, line end included; longer lines are dropped whole.
    static constexpr int longestLine = 64 * 1024;

    void append(const QByteArray &bytes);
    /// The next whole line with its line end ("\n", mostly after "\r"); nothing while it has not arrived.
    std::optional<QByteArray> takeLine();
    void clear() { *this = FtpLineSplitter(); }

private:
    QByteArray buffer;
    int start = 0;
    int scanned = 0;
    bool droppingLine = false;
};
