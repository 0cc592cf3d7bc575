// Whether a gzip stream is whole. A file that its writer has not finished yet reads like any other, and only
// the stream itself tells.
#pragma once

#include <QtGlobal>

#include <memory>

struct z_stream_s;

class GzipEnd
{
public:
    /// What unpacks to more than this, in bytes, is not checked to its end: a few kilobytes from a hostile
    /// device could otherwise keep the program busy for hours.
    static constexpr qint64 longestChecked = Q_INT64_C(1) << 30;

    GzipEnd();
    ~GzipEnd();
    Q_DISABLE_COPY(GzipEnd)

    /// Takes the next bytes of the file, from its first on.
    void feed(const char *bytes, int count);
    /// True while the bytes so far are a gzip stream that lacks its end, or none at all. What is no gzip
    /// stream has no end to wait for. Bytes behind the end are ignored unless they begin another gzip stream,
    /// which must end too.
    bool isMissing() const { return state == State::AtStart || state == State::Inside; }

private:
    enum class State { AtStart, Inside, AtEnd, NoGzip }; // the last one also behind an end

    State unpack();

    State state = State::AtStart;
    qint64 unpacked = 0;
    std::unique_ptr<z_stream_s> stream;
};
