"""A boat network of several hosts, made inside a namespace that has none of the outside, and what can go wrong with it."""

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

PREFIX = os.environ.get("KELVORA_BOAT_PREFIX", "127.0.0.")
BOATSIM = pathlib.Path(__file__).parents[2] / "simulator/boatsim"
IS_ROOT = os.geteuid() == 0


class Impossible(Exception):
    """This machine cannot make what was asked for; says why."""


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


def succeeds(*command):
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False).returncode == 0


class Host:
    """A network namespace beside that of the caller."""

    def __init__(self):
        own = [] if IS_ROOT else ["--user", "--map-root-user"]
        self.process = start("unshare", *own, "--net", "--", "cat", stdin=subprocess.PIPE)
        self.pid = self.process.pid
        until(self._is_apart, 20, "a network namespace")
        self.enter = ["nsenter", f"--target={self.pid}", *([] if IS_ROOT else ["--user", "--preserve-credentials"]), "--net"]
        self.ip("link set lo up")

    def _is_apart(self):
        apart = os.readlink(f"/proc/{self.pid}/ns/net") != os.readlink("/proc/self/ns/net")
        # Without its users, which come a moment later, it would give no right to those who enter.
        return apart and pathlib.Path(f"/proc/{self.pid}/uid_map").read_text()

    def ip(self, *lines):
        subprocess.run([*self.enter, "ip", "-batch", "-"], input="\n".join(lines), text=True, check=True)


def tap(name):
    device = os.open("/dev/net/tun", os.O_RDWR)
    set_interface, tap_without_header = 0x400454CA, 0x1002
    fcntl.ioctl(device, set_interface, struct.pack("16sH22x", name.encode(), tap_without_header))
    return device


class Cable(threading.Thread):
    """Joins two taps, and loses or delays what one of them sends: for kernels that cannot do that themselves."""

    def __init__(self, near, far, *, impaired, loss, delay):
        super().__init__(daemon=True)
        self._other = {near: far, far: near}
        self._impaired, self._loss, self._delay = impaired, loss, delay
        self._random = random.Random(1)
        self._delayed = collections.deque()
        self.start()

    def run(self):
        while True:
            wait = max(0.0, self._delayed[0][0] - time.monotonic()) if self._delayed else None
            for end_ in select.select(list(self._other), [], [], wait)[0]:
                frame = os.read(end_, 4096)
                if end_ != self._impaired:
                    self._pass_on(end_, frame)
                elif self._random.random() >= self._loss:
                    self._delayed.append((time.monotonic() + self._delay, frame))
            while self._delayed and self._delayed[0][0] <= time.monotonic():
                self._pass_on(self._impaired, self._delayed.popleft()[1])

    def _pass_on(self, sender, frame):
        try:
            os.write(self._other[sender], frame)
        except OSError:
            pass  # the interface is down


class Network:
    """The tool's host is the caller's own namespace; add() makes one for each simulator, all of them on one bridge.

    Where there is no bridge or no namespace, the simulators share the caller's own addresses. A loss (0 to 1) or delay
    (seconds) meets what is sent "from" the tool or from the boat.
    """

    def __init__(self, folder, loss=0.0, delay=0.0, impaired="tool"):
        self._folder = folder
        self._hosts = []
        self.is_switched = PREFIX != "127.0.0." and self._make_bridge()
        if self.is_switched:
            self._connect_tool(loss, delay, impaired)
        elif loss or delay:
            raise Impossible("no bridge here, so nothing between the hosts can be impaired")

    def _make_bridge(self):
        self._sea = Host()
        self._hosts.append(self._sea)
        try:
            self._sea.ip("link add sea type bridge mcast_snooping 0", "link set sea up")
        except subprocess.CalledProcessError:
            return False
        return True

    def _connect_tool(self, loss, delay, impaired):
        subprocess.run(["ip", "link", "delete", "boat0"], check=True)
        shape = ["netem", "delay", f"{delay * 1000:.0f}ms", "loss", f"{loss * 100:.0f}%"]
        in_kernel = not (loss or delay) or succeeds(*self._sea.enter, "tc", "qdisc", "add", "dev", "lo", "root", *shape)
        if in_kernel:
            subprocess.run(["ip", "link", "add", "boat0", "type", "veth", "peer", "tool", "netns", str(self._sea.pid)], check=True)
        elif os.access("/dev/net/tun", os.W_OK):
            near, far = tap("boat0"), tap("tool")
            Cable(near, far, impaired=near if impaired == "tool" else far, loss=loss, delay=delay)
            subprocess.run(["ip", "link", "set", "tool", "netns", str(self._sea.pid)], check=True)
        else:
            raise Impossible("neither netem nor taps here")
        self._sea.ip("link set tool master sea up")
        for line in (f"addr add {PREFIX}1/24 dev boat0", "link set boat0 up"):
            subprocess.run(["ip", *line.split()], check=True)
        if in_kernel and (loss or delay):
            enter, device = ([], "boat0") if impaired == "tool" else (self._sea.enter, "tool")
            subprocess.run([*enter, "tc", "qdisc", "add", "dev", device, "root", *shape], check=True)

    def add(self, *arguments, hosts=()):
        """A simulator with these arguments on a host with these host numbers, once it is ready."""
        enter = []
        if self.is_switched:
            host = Host()
            port = f"port{len(self._hosts)}"
            self._hosts.append(host)
            # By this namespace's rights: those of one host do not reach into the other.
            veth = ["type", "veth", "peer", "name", "eth0", "netns", str(host.pid)]
            subprocess.run(["ip", "link", "add", port, "netns", str(self._sea.pid), *veth], check=True)
            self._sea.ip(f"link set {port} master sea up")
            host.ip(*(f"addr add {PREFIX}{number}/24 dev eth0" for number in hosts), "link set eth0 up")
            enter = host.enter
        log = self._folder / f"boat-{len(list(self._folder.glob('boat-*')))}.log"
        return Simulator(enter, log, arguments)

    def close(self):
        for host in self._hosts:
            end(host.process)

    def plug(self, state):
        """Pulls the tool's plug ("down") or puts it back ("up"). Only where the network is switched."""
        self._sea.ip(f"link set tool {state}")


class Simulator:
    def __init__(self, enter, log, arguments):
        self._log = log
        with open(log, "w", encoding="utf-8") as output:
            self.process = start(*enter, BOATSIM, *arguments, stdout=output, stderr=output)
        until(lambda: self.process.poll() is not None or self.count("boat ready"), 60, "the simulator")
        self.saw("boat ready", 0)

    def count(self, pattern):
        return len(re.findall(pattern, self._log.read_text()))

    def saw(self, pattern, seconds=60):
        """Waits for the pattern in the simulator's log."""
        find = lambda: re.search(pattern, self._log.read_text())
        return until(find, seconds, lambda: f"{pattern} in {self._log.read_text()}")

    def stop(self):
        end(self.process)
