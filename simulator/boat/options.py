"""The command line, and the list of devices that it asks for."""

import argparse
import ipaddress
import os

from . import ftp, settings
from .devices import DISPLAY_TYPES, Display, FirstGeneration, Gyro
from .n6 import N6

# Host numbers; scripts/in-boat-network provides these addresses.
_N6_HOST, _SECOND_N6_HOST, _GYRO_HOST, _GEN1_HOST = 10, 11, 12, 13
_FIRST_DISPLAY_HOST, _LAST_HOST = 20, 254

_EPILOG = """\
Devices are called n6, n6-2, gyro, gen1, screen-1, screen-2, ..., screen2-1, ..., eink-1, ...
Their addresses are the prefix followed by 10 (n6), 11 (n6-2), 12 (gyro), 13 (gen1) and
20 onwards (the displays, in the order SCREEN, SCREEN2, EINK).

FTP faults:
""" + "\n".join(
    f"  {name + (':BYTES' if has_amount else ''):15} {text}" for name, (text, has_amount) in ftp.FAULTS.items()
) + """

Each log line has the seconds since the start, the device (or "boat"), what happened, and
values as key=value. "boat ready" says that every device listens. docs/simulator.md lists
the lines. SIGTERM and SIGINT end the simulation with status 0.
"""


def parse(arguments=None):
    """The options, and the devices made by them; exits with status 2 and a message when they make no sense."""
    parser = _parser()
    options = parser.parse_args(arguments)
    try:
        devices = _make_devices(options)
    except ValueError as error:
        parser.error(str(error))
    return options, devices


def _parser():
    parser = argparse.ArgumentParser(
        prog="boatsim",
        description="Plays a boat's instruments: heartbeats, commands of the N6 and FTP, with faults on demand.",
        epilog=_EPILOG,
        formatter_class=argparse.RawDescriptionHelpFormatter,
    )
    _add_device_options(parser.add_argument_group("which devices"))
    _add_n6_options(parser.add_argument_group("the N6"))
    _add_fault_options(parser.add_argument_group("what goes wrong"))
    _add_run_options(parser.add_argument_group("how it runs"))
    return parser


def _add_device_options(group):
    group.add_argument("--screens", type=_count, default=3, metavar="N", help="displays of type SCREEN (default 3)")
    group.add_argument("--screen2s", type=_count, default=2, metavar="N", help="displays of type SCREEN2 (default 2)")
    group.add_argument("--einks", type=_count, default=1, metavar="N", help="displays of type EINK (default 1)")
    group.add_argument("--no-n6", action="store_true", help="a boat without an N6")
    group.add_argument("--no-gyro", action="store_true", help="a boat without a gyro")
    group.add_argument("--second-n6", action="store_true", help="a second N6, n6-2, with a serial of its own")
    group.add_argument("--gen1", action="store_true", help="a device of the first generation")
    group.add_argument(
        "--server", action="append", default=[], metavar="NAME", help="this display claims to be the settings server"
    )
    group.add_argument(
        "--prefix",
        default=os.environ.get("KELVORA_BOAT_PREFIX", "127.0.0."),
        help="what stands before the host number of an address (default: KELVORA_BOAT_PREFIX, or 127.0.0.)",
    )
    group.add_argument(
        "--address", action="append", default=[], type=_assignment, metavar="NAME=ADDRESS",
        help="another address for one device",
    )


def _add_n6_options(group):
    group.add_argument("--n6-model", type=_signed_byte, default=3, metavar="N", help="model number (default 3)")
    group.add_argument("--n6-serial", default="N6-30001234", metavar="TEXT", help="serial of at most 16 bytes")
    group.add_argument("--port1-mode", type=_signed_byte, default=0, metavar="CODE", help="mode of port 1 at the start")
    group.add_argument("--port2-mode", type=_signed_byte, default=0, metavar="CODE", help="mode of port 2 at the start")
    group.add_argument(
        "--archive-delay", type=_delay, default=2.0, metavar="SECONDS",
        help='from a backup command to its archive, or "never" (default 2)',
    )
    group.add_argument(
        "--archive-padding", type=_count, default=0, metavar="BYTES", help="makes the archive so much larger"
    )


def _add_fault_options(group):
    group.add_argument(
        "--silent", action="append", default=[], metavar="NAME", help="this device sends no heartbeat, obeys nothing"
    )
    group.add_argument(
        "--away", action="append", default=[], type=_absence, metavar="NAME=FROM-[TO]",
        help="this device is off from so many seconds after the start to so many",
    )
    group.add_argument(
        "--ftp-fault", action="append", default=[], type=_assignment, metavar="NAME=FAULT", help="one of those below"
    )
    group.add_argument(
        "--reboot", type=_seconds, metavar="SECONDS", help="a device that got an update is off for so long"
    )


def _add_run_options(group):
    group.add_argument(
        "--heartbeat-interval", type=_seconds, default=2.0, metavar="SECONDS",
        help="time between unasked heartbeats (default 2)",
    )
    group.add_argument(
        "--announce-to", metavar="ADDRESS",
        help="send unasked heartbeats there (default: the multicast group, or 127.0.0.1 on loopback)",
    )
    group.add_argument("--log-heartbeats", action="store_true", help="log each unasked heartbeat too")
    group.add_argument("--no-ftp", action="store_true", help="devices without FTP")
    group.add_argument("--ftp-port", type=int, default=21, metavar="PORT", help="port of the FTP services (default 21)")
    group.add_argument(
        "--state-dir", metavar="DIR", help="where the devices' files are kept (default: a temporary folder)"
    )


def _count(text):
    value = int(text)
    if value < 0:
        raise ValueError
    return value


def _signed_byte(text):
    value = int(text)
    if not -128 <= value <= 127:
        raise ValueError
    return value


def _seconds(text):
    value = float(text)
    if not 0.01 <= value <= 86400:
        raise ValueError
    return value


def _delay(text):
    return None if text == "never" else max(0.0, float(text))


def _assignment(text):
    name, separator, value = text.partition("=")
    if not separator:
        raise ValueError
    return name, value


def _absence(text):
    name, window = _assignment(text)
    start, _, end = window.partition("-")
    return name, float(start), float(end) if end else None


def _make_devices(options):
    if options.no_n6 and options.second_n6:
        raise ValueError("a second N6 needs a first one")
    devices = list(_instruments(options)) + list(_displays(options))
    if not devices:
        raise ValueError("a boat without any device")
    by_name = {device.name: device for device in devices}

    def named(name):
        if name not in by_name:
            raise ValueError(f"no device is called {name}; there are {', '.join(by_name)}")
        return by_name[name]

    for name, address in options.address:
        named(name).address = str(ipaddress.IPv4Address(address))
    for name in options.server:
        if not isinstance(named(name), Display):
            raise ValueError(f"{name} is no display and cannot claim to be the server")
        named(name).server = True
    for name in options.silent:
        named(name).silent = True
    for name, fault in options.ftp_fault:
        named(name).ftp_fault = ftp.Fault.parse(fault)
    for name, _start, _end in options.away:
        named(name)
    return devices


def _address(options, host):
    if host > _LAST_HOST:
        raise ValueError("more devices than addresses")
    return str(ipaddress.IPv4Address(f"{options.prefix}{host}"))


def _instruments(options):
    if not options.no_n6:
        yield _n6(options, "n6", _N6_HOST, options.n6_serial)
    if options.second_n6:
        yield _n6(options, "n6-2", _SECOND_N6_HOST, "N6-30005678")
    if not options.no_gyro:
        yield Gyro(name="gyro", address=_address(options, _GYRO_HOST), serial="G70000001")
    if options.gen1:
        yield FirstGeneration(name="gen1", address=_address(options, _GEN1_HOST), serial="VK38-0001")


def _n6(options, name, host, serial):
    if len(serial.encode()) > 16:
        raise ValueError("the serial of the N6 is longer than 16 bytes")
    modes = {"port1Mode": options.port1_mode, "port2Mode": options.port2_mode}
    return N6(
        name=name,
        address=_address(options, host),
        serial=serial,
        model=options.n6_model,
        settings={**settings.factory_settings(), **modes},
        archive_delay=options.archive_delay,
        archive_padding=options.archive_padding,
    )


def _displays(options):
    counts = {"screen": options.screens, "screen2": options.screen2s, "eink": options.einks}
    host = _FIRST_DISPLAY_HOST
    for first_digit, (kind, count) in enumerate(counts.items(), start=1):
        for number in range(1, count + 1):
            yield Display(
                name=f"{kind}-{number}",
                address=_address(options, host),
                serial=f"{first_digit}{number:09}",
                kind=DISPLAY_TYPES[kind],
                lux=100.0 * number + 0.25,
                volts=12.0 + 0.1 * (number % 10),
                ls=number % 2 == 1,
            )
            host += 1
