#include "settings/gzipend.h"

#include <zlib.h>

#include <array>

namespace
{

// Added to the window size, it makes the library take gzip streams and nothing else.
constexpr int gzipOnly = 16;
// With it every gzip stream begins.
constexpr Bytef firstMagicByte = 0x1f;
constexpr std::size_t unpackedBlockBytes = std::size_t(64) * 1024;

} // namespace

GzipEnd::GzipEnd() : stream(std::make_unique<z_stream>())
{
    if (inflateInit2(stream.get(), MAX_WBITS + gzipOnly) != Z_OK)
        state = State::NoGzip;
}

GzipEnd::~GzipEnd()
{
    inflateEnd(stream.get());
}

void GzipEnd::feed(const char *bytes, int count)
{
    if (count == 0 || state == State::NoGzip)
        return;
    // The library only reads the bytes, though its interface takes a pointer that it could write through.
    stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes)); // NOLINT
    stream->avail_in = static_cast<uInt>(count);
    while (stream->avail_in > 0 && state != State::NoGzip) {
        if (state == State::AtEnd && *stream->next_in != firstMagicByte) {
            state = State::NoGzip;
        } else {
            if (state == State::AtEnd)
                inflateReset(stream.get());
            state = unpack();
        }
    }
}

// Unpacks what was fed, to the end of it or of the stream; the contents are of no interest.
GzipEnd::State GzipEnd::unpack()
{
    std::array<Bytef, unpackedBlockBytes> contents; // NOLINT(cppcoreguidelines-pro-type-member-init)
    do {
        stream->next_out = contents.data();
        stream->avail_out = static_cast<uInt>(contents.size());
        const int result = inflate(stream.get(), Z_NO_FLUSH);
        unpacked += static_cast<qint64>(contents.size() - stream->avail_out);
        if (result == Z_STREAM_END)
            return State::AtEnd;
        if ((result != Z_OK && result != Z_BUF_ERROR) || unpacked > longestChecked)
            return State::NoGzip;
    } while (stream->avail_out == 0);
    return State::Inside;
}
