"""The boat as a host beside that of the tool, on a network that has none of the outside, and what can go wrong there."""

import collections
import fcntl
import os
import pathlib
import random
import re
import select
import struct
import subprocess
import threading
import time
import unittest

PREFIX = os.environ.get("KELVORA_BOAT_PREFIX", "127.0.0.")
SIMULATOR = pathlib.Path(__file__).parents[2] / "simulator"


def until(condition, seconds, what):
    """The first true value of the condition, which has to come in time."""
    deadline = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {seconds} s: {what() if callable(what) else what}")
        time.sleep(0.1)
    return value


def start(*command, **options):
    """A process that cannot outlive this one, however that ends."""
    return subprocess.Popen(["setpriv", "--pdeathsig=TERM", "--", *map(str, command)], **options)


def end(process):
    process.terminate()
    process.communicate(timeout=20)


def tap(name):
    device = os.open("/dev/net/tun", os.O_RDWR)
    set_interface, tap_without_header = 0x400454CA, 0x1002
    fcntl.ioctl(device, set_interface, struct.pack("16sH22x", name.encode(), tap_without_header))
    return device


class Cable(threading.Thread):
    """Joins two taps, and loses or delays what the first one sends: not every kernel can do that itself."""

    def __init__(self, impaired, other, loss, delay):
        super().__init__(daemon=True)
        self._impaired, self._other, self._loss, self._delay = impaired, other, loss, delay
        self._random = random.Random(1)
        self._delayed = collections.deque()
        self.start()

    def run(self):
        while True:
            wait = max(0.0, self._delayed[0][0] - time.monotonic()) if self._delayed else None
            ready = select.select([self._impaired, self._other], [], [], wait)[0]
            if self._other in ready:
                self._pass_on(self._impaired, os.read(self._other, 4096))
            if self._impaired in ready:
                frame = os.read(self._impaired, 4096)
                if self._random.random() >= self._loss:
                    self._delayed.append((time.monotonic() + self._delay, frame))
            while self._delayed and self._delayed[0][0] <= time.monotonic():
                self._pass_on(self._other, self._delayed.popleft()[1])

    @staticmethod
    def _pass_on(receiver, frame):
        try:
            os.write(receiver, frame)
        except OSError:
            pass  # the interface is down


class Network:
    """The tool's host is the caller's own network namespace; the boat's is another one, at the other end of a cable.

    Where there are no namespaces, the boat has the caller's own addresses. A loss (0 to 1) or delay (seconds) meets
    what is sent "from" the tool or from the boat.
    """

    def __init__(self, loss=0.0, delay=0.0, impaired="tool"):
        self._boat, self._enter = None, []
        self.has_plug = PREFIX != "127.0.0."
        if self.has_plug:
            self._make_host()
            self._plug_in(loss, delay, impaired)
        elif loss or delay:
            raise unittest.SkipTest("no namespace here, so nothing between the hosts can be impaired")

    def _make_host(self):
        made_by, entered_by = ([], []) if os.geteuid() == 0 else (["--user", "--map-root-user"], ["--user", "--preserve-credentials"])
        self._boat = start("unshare", *made_by, "--net", "--", "cat", stdin=subprocess.PIPE)
        proc = pathlib.Path(f"/proc/{self._boat.pid}")
        # Without its users, which come a moment later, it would give no right to those who enter.
        is_apart = lambda: os.readlink(proc / "ns/net") != os.readlink("/proc/self/ns/net") and (proc / "uid_map").read_text()
        until(is_apart, 20, "a network namespace")
        self._enter = ["nsenter", f"--target={self._boat.pid}", *entered_by, "--net"]

    def _ip(self, *lines, on_boat=False):
        subprocess.run([*(self._enter if on_boat else []), "ip", "-batch", "-"], input="\n".join(lines), text=True, check=True)

    def _plug_in(self, loss, delay, impaired):
        self._ip("link delete boat0")
        if not (loss or delay):
            self._ip("link add boat0 type veth peer name sea")
        elif os.access("/dev/net/tun", os.W_OK):
            tool, boat = tap("boat0"), tap("sea")
            Cable(*((tool, boat) if impaired == "tool" else (boat, tool)), loss, delay)
        else:
            raise unittest.SkipTest("no taps here")
        self._ip(f"link set sea netns {self._boat.pid}", f"addr add {PREFIX}1/24 dev boat0", "link set boat0 up")
        devices = [f"addr add {PREFIX}{host}/24 dev sea" for host in range(10, 100)]
        self._ip("link set lo up", *devices, "link set sea up", on_boat=True)

    def close(self):
        if self._boat:
            end(self._boat)

    def plug(self, state):
        """Pulls the plug ("down") or puts it back ("up"). Only where there is one."""
        self._ip(f"link set sea {state}", on_boat=True)

    def boat(self, log, *arguments):
        """A simulated boat, once it is ready; what it sees goes to the log."""
        return Boat(self._enter, log, arguments)


class Boat:
    def __init__(self, enter, log, arguments):
        self._log = log
        with open(log, "w", encoding="utf-8") as output:
            self.process = start(*enter, SIMULATOR / "boatsim", *arguments, stdout=output, stderr=output)
        self.saw("boat ready")

    def count(self, pattern):
        return len(re.findall(pattern, self._log.read_text()))

    def saw(self, pattern, seconds=60):
        """Waits for the pattern in the simulator's log."""
        until(lambda: self.count(pattern), seconds, lambda: f"{pattern} in {self._log.read_text()}")

    def stop(self):
        end(self.process)
