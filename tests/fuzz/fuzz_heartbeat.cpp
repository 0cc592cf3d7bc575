// Feeds the heartbeat decoder whatever the fuzzer makes up; a datagram ends where its bytes end.

#include "discovery/heartbeat.h"

#include <QByteArray>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const heartbeat::Decoded decoded = heartbeat::decode(bytes);
    const auto *screen = std::get_if<ScreenDevice>(&decoded);
    // What becomes a record is clean: the pages show it as it is.
    if (screen && (!(screen->ambientLux >= 0.0) || screen->supplyVoltage < 0.0 || screen->serial.size() > 16))
        std::abort();
    return 0;
}
