"""The datagrams with which devices announce themselves.

Written from the devices' side and without the tool's decoder at hand, so that each checks the other.
"""

import struct

SCREEN, SCREEN2, EINK, GYRO, N6 = 0x00, 0x20, 0x50, 0x72, 0xC6

# kind, serial, valid, firmware, eight bytes whose use depends on the kind, volts, LS flag, server flag or status
_FIXED_PART = struct.Struct("<B16sB6s8sfBB")
_VALID = 1


def display(kind, *, serial, firmware, lux, volts, ls, server, system, application):
    """A SCREEN, SCREEN2 or EINK. The versions are Latin-1 texts of at most 127 characters."""
    fixed = _FIXED_PART.pack(
        kind, serial.encode(), _VALID, firmware.encode(), struct.pack("<d", lux), volts, ls, server
    )
    return fixed + _versions(system, application)


def n6(*, serial, firmware, model, port1_mode, port2_mode, volts, system, application):
    """The N6 measures no light: its model and port modes (-128 to 127) are the last bytes of that slot."""
    slot = struct.pack("<5xbbb", model, port1_mode, port2_mode)
    fixed = _FIXED_PART.pack(N6, serial.encode(), _VALID, firmware.encode(), slot, volts, 0, 0)
    return fixed + _versions(system, application)


def gyro(*, serial, status, volts, system, application):
    """The gyro names no firmware; its status (-128 to 127) stands where displays have their server flag."""
    fixed = _FIXED_PART.pack(GYRO, serial.encode(), _VALID, b"", b"", volts, 0, status & 0xFF)
    return fixed + _versions(system, application)


def first_generation(*, serial):
    """Devices of the first generation end before the versions: 38 bytes in all."""
    return _FIXED_PART.pack(SCREEN, serial.encode(), _VALID, b"0.9", b"", 12.0, 0, 0)


def _versions(system, application):
    return _with_length(system) + _with_length(application)


def _with_length(text):
    encoded = text.encode("latin-1")
    return struct.pack("<b", len(encoded)) + encoded
