# The boat as a host beside that of the tool, on a network that has none of the outside, and what can go wrong there.

import os
import pathlib
import re
import socket
import subprocess
import time
import unittest

PREFIX = os.environ.get("KELVORA_BOAT_PREFIX", "127.0.0.")
SIMULATOR = pathlib.Path(__file__).parents[2] / "simulator"


# The first true value of the condition, which has to come in time.
def until(condition, seconds, what):
    deadline = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {seconds} s: {what() if callable(what) else what}")
        time.sleep(0.1)
    return value


# A process that cannot outlive this one, however that ends.
def start(*command, **options):
    return subprocess.Popen(["setpriv", "--pdeathsig=TERM", "--", *map(str, command)], **options)


def end(process):
    process.terminate()
    process.communicate(timeout=20)


# The tool's host is the caller's own network namespace; the boat's is another one, at the other end of a cable. Where
# there are no namespaces, the boat has the caller's own addresses.
# Loss (0 to 1) and delay (seconds) meet what either sends.
class Network:
    def __init__(self, loss=0.0, delay=0.0):
        self.has_plug = PREFIX != "127.0.0."
        if (loss or delay) and not (self.has_plug and os.access("/dev/net/tun", os.W_OK)):
            raise unittest.SkipTest("nothing between the hosts can be impaired here")
        self.enter = []  # what stands before a command for the boat's host
        if self.has_plug:
            self._plug_in(loss, delay)

    def _plug_in(self, loss, delay):
        user = [] if os.geteuid() == 0 else ["--map-root-user"]
        self._boat = start("unshare", *user, "--net", "--", "cat", stdin=subprocess.PIPE)
        proc = pathlib.Path(f"/proc/{self._boat.pid}")
        # Without its users, which come a moment later, it would give no right to those who enter.
        own = os.readlink("/proc/self/ns/net")
        until(lambda: os.readlink(proc / "ns/net") != own and (proc / "uid_map").read_text(), 20, "a network namespace")
        self.enter = ["nsenter", *(user and ["--user", "--preserve-credentials"]), f"--target={proc.name}", "--net"]
        self._ip("link delete boat0")
        if loss or delay:
            # Not every kernel can do that by itself. In percent and milliseconds, until the interfaces are gone.
            impaired = ["=", "wirefilter", "-l", 100 * loss, "-d", 1000 * delay, "="]
            start("dpipe", "vde_plug", "tap://boat0", *impaired, "vde_plug", "tap://sea", stdout=subprocess.DEVNULL)
            until(lambda: {"boat0", "sea"} <= {name for _, name in socket.if_nameindex()}, 20, "a wire")
        else:
            self._ip("link add boat0 type veth peer name sea")
        self._ip(f"link set sea netns {self._boat.pid}", f"addr add {PREFIX}1/24 dev boat0", "link set boat0 up")
        addresses = [f"addr add {PREFIX}{host}/24 dev sea" for host in range(10, 100)]
        self._ip("link set lo up", *addresses, "link set sea up", enter=self.enter)

    @staticmethod
    def _ip(*lines, enter=()):
        subprocess.run([*enter, "ip", "-batch", "-"], input="\n".join(lines), text=True, check=True)

    def close(self):
        if self.has_plug:
            end(self._boat)

    # Pulls the plug ("down") or puts it back ("up"). Only where there is one.
    def plug(self, state):
        self._ip(f"link set sea {state}", enter=self.enter)


# A simulated boat, once it is ready; what it sees goes to the log.
class Boat:
    def __init__(self, log, enter, *options):
        self._log = log
        with open(log, "w", encoding="utf-8") as output:
            self.process = start(*enter, SIMULATOR / "boatsim", *options, stdout=output, stderr=output)
        self.saw("boat ready")

    def count(self, pattern):
        return len(re.findall(pattern, self._log.read_text()))

    # Waits for the pattern in the simulator's log.
    def saw(self, pattern, seconds=60):
        until(lambda: self.count(pattern), seconds, lambda: f"{pattern} in {self._log.read_text()}")
