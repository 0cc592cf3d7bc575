"""Starts the boat and ends it on a signal."""

import signal
import sys
import tempfile

from . import options as command_line
from .log import Log
from .network import Boat


def main():
    options, devices = command_line.parse()
    with tempfile.TemporaryDirectory(prefix="boatsim-") as temporary:
        boat = Boat(devices, options, options.state_dir or temporary, Log())
        for number in (signal.SIGTERM, signal.SIGINT):
            signal.signal(number, lambda *_: boat.stop())
        try:
            boat.run()
        except OSError as error:
            print(f"boatsim: {error}", file=sys.stderr)
            return 1
    return 0
