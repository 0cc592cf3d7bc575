// Decoding of heartbeat datagrams: bytes in, a record or "ignored" out. Nothing here knows sockets or time.
#pragma once

#include "discovery/devices.h"

#include <QByteArray>

#include <variant>

namespace heartbeat
{

/// A datagram that makes no record: malformed, invalid, or of a kind that this tool does not know.
struct Ignored {
};

/// A first-generation device, which this tool cannot serve.
struct Incompatible {
};

using Decoded = std::variant<Ignored, Incompatible, ScreenDevice, N6Device, GyroDevice>;

/// Whether the datagram is long enough to count as traffic of the boat, whatever it says (18 bytes or more).
bool isTraffic(const QByteArray &datagram);

/// The record that a datagram describes. Its address, lastSeen and online are left to the caller. Never reads
/// past the datagram, whatever its length bytes say.
Decoded decode(const QByteArray &datagram);

} // namespace heartbeat
