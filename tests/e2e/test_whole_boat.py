# The program as a user meets it: with a boat on another host, and with what goes wrong there.

import functools
import hashlib
import pathlib
import socket
import subprocess
import tempfile
import time
import unittest

from boat import settings
from hosts import PREFIX, SIMULATOR, Boat, Network, end, until
from tool import BUTTON, CHECKED, ENABLED, Tool

OK = "Connection ok"


class Scenario(unittest.TestCase):
    PAGE = "Screen Updates"
    ENVIRONMENT = {}  # of the tool

    # A boat with an N6, a gyro and six displays, all known to the tool.
    def begin(self, *options, **network):
        folder = tempfile.TemporaryDirectory(prefix="kelvora-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.network = Network(**network)
        self.addCleanup(self.network.close)
        self.boat = self.start_boat(*options)
        self.tool = Tool(self.folder, self.ENVIRONMENT)
        self.addCleanup(end, self.tool.process)
        self.tool.sees(OK)
        for kind, count in (("Screen", 5), ("E-Ink", 1), ("Gyro", 1), ("N6", 1)):
            until(lambda: self.tool.logged(f"udpHB: {kind} IP {PREFIX}") == count, 60, f"each {kind} found once")
        self.tool.press(self.PAGE, "page tab")

    def start_boat(self, *options):
        boat = Boat(self.folder / f"boat-{time.monotonic()}.log", self.network.enter, *options)
        self.addCleanup(end, boat.process)
        return boat

    # Meanwhile the tool has to answer, and to notice.
    def pull_plug(self):
        if not self.network.has_plug:
            self.skipTest("no plug to pull without a namespace")
        self.network.plug("down")
        pulled = time.monotonic()
        self.tool.sees("Connection problem, check your network settings", seconds=20)
        until(lambda: time.monotonic() - pulled > 10, 11, "the tool with new sockets")
        self.network.plug("up")
        self.tool.sees(OK)

    def package(self, kind, size):
        make = [SIMULATOR / "make-sample-packages", f"--size={size}", self.folder]
        subprocess.run(make, check=True, stdout=subprocess.DEVNULL)
        return next(self.folder.glob(f"{kind}-update-*"))

    def finish(self):
        self.assertEqual(self.tool.close(), 0, self.tool.errors())

    # A scenario without a turn on the way.
    def run_through(self, *arguments, **options):
        self.begin(*arguments, **options)
        self.finish()


class DisplayUpdate(Scenario):
    SLOW = "--ftp-fault=screen-1=slow:1000000"

    def begin(self, size, *options, **network):
        super().begin(*options, **network)
        self.file = self.package("screen", size)
        self.tool.sees(r".*\(PO\).*|.*\(LS\).*", "check box", CHECKED, count=3)
        self.tool.press("Start Update")
        self.tool.choose_file("Open Update File", self.file, "Open")

    def progressing(self):
        bars = functools.partial(self.tool.elements, role="progress bar")
        until(lambda: [bar.get_current_value() > 0 for bar in bars()] == [True] * 3, 60, "progress of all")

    # The SCREEN displays got the package, and no other did.
    def finish(self):
        for number in (1, 2, 3):
            self.boat.saw(f"screen-{number} stored path=/update/image bytes=.* sha256={checksum(self.file)}", 120)
        self.tool.sees("Start Update", BUTTON, ENABLED)
        self.assertEqual(self.boat.count("(screen2|eink)-. ftp-connect"), 0)
        super().finish()

    def test_all_of_a_type_at_once_and_their_restart(self):
        self.begin(5_000_000, "--reboot=10")
        until(lambda: self.tool.logged(f"udpHB: Instrument {PREFIX}2[012] timed out") >= 3, 60, "the displays gone")
        self.tool.sees(rf".*{PREFIX}2[012].*", "check box", count=3)
        self.finish()

    # With twice the loss the system's retries last longer than the tool's patience once in twenty times.
    test_with_loss = functools.partialmethod(Scenario.run_through, 50_000, loss=0.1)

    def test_with_the_plug_pulled_in_the_middle(self):
        self.begin(6_000_000, self.SLOW)
        self.progressing()
        self.pull_plug()
        self.finish()

    def test_closing_the_window_in_the_middle(self):
        self.begin(6_000_000, self.SLOW)
        self.progressing()
        super().finish()
        self.boat.saw("screen-1 (upload-broken|ftp-disconnect)")


class N6Page(Scenario):
    PAGE = "N6 Setup and Update"

    def update(self, *options, **network):
        self.begin(*options, "--ftp-fault=n6=slow:500000", **network)
        package = self.package("n6", 1_000_000)
        self.tool.press("Update N6 Software")
        self.tool.choose_file("Open Update File", package, "Open")
        self.tool.sees("Downloading...", "label")
        self.boat.saw(f"n6.* stored path=/update/image bytes=.* sha256={checksum(package)}")
        self.tool.sees("Updating...", "label")
        self.tool.sees("N6-.*", "label")
        until(lambda: not self.tool.elements("Updating..."), 60, "the notice gone")
        self.assertLess(self.tool.elements(role="progress bar")[0].get_current_value(), 0)
        self.assertEqual(self.boat.count("stored"), 1)
        self.finish()

    test_update_and_restart = functools.partialmethod(update, "--reboot=10")
    test_update_with_delay = functools.partialmethod(update, delay=0.1)
    test_update_beside_a_second_n6 = functools.partialmethod(update, "--second-n6", "--ftp-fault=n6-2=slow:500000")

    def choose_next_mode(self, port):
        self.tool.sees("NMEA.*", "combo box", ENABLED, count=2)
        self.tool.select_next(self.tool.elements("NMEA.*", "combo box")[port - 1])

    def test_port_modes_also_at_a_new_address(self):
        self.begin()
        for text in (r"N6-30001234   \(N6 Flint\)", r"\d.*   \(FW \d.*\)", f"{PREFIX}10"):
            self.tool.sees(text, "label")
        for port, code, text in ((1, 6, "NMEA0183-HS"), (2, 1, "B&G Fastnet")):
            self.choose_next_mode(port)
            self.boat.saw(f"port-mode setting=port{port}Mode code={code}")
            self.tool.sees(text, "combo box")
        self.assertEqual(self.boat.count("port-mode"), 2)
        end(self.boat.process)
        self.tool.sees("no device found", "label")
        self.assertFalse(self.tool.elements(rf"{PREFIX}10|.*\(FW .*", "label"))
        moved = self.start_boat(f"--address=n6={PREFIX}14")
        self.tool.sees(f"{PREFIX}14", "label")
        self.choose_next_mode(1)
        moved.saw("port-mode setting=port1Mode code=6")
        self.finish()


class Backup(Scenario):
    PAGE = "N6 Configuration"

    def begin(self, *options, **network):
        super().begin(*options, **network)
        self.tool.press("Backup Settings")
        self.tool.choose_file("Save As", self.folder / "boat", "Save")
        self.part = self.folder / "boat.tar.gz.part"

    def finish(self):
        self.tool.answer("Backup download complete!", "Settings backup complete.", "OK")
        self.boat.saw(f"archive-ready .* sha256={checksum(self.part.with_suffix(''))}")
        self.assertFalse(self.part.exists())
        # Where the dialog was, for the next run.
        self.assertIn("settings=", (self.folder / ".config/Kelvora/KelvoraTool.conf").read_text())
        super().finish()

    test_with_loss = functools.partialmethod(Scenario.run_through, loss=0.1)

    def test_with_the_plug_pulled_in_the_middle(self):
        self.begin("--archive-padding=3000000", "--ftp-fault=n6=slow:500000")
        until(lambda: self.part.exists() and self.part.stat().st_size > 0, 60, "some of the archive")
        self.pull_plug()
        self.finish()

    # The proxies that an office's computer has been told of know nothing of the boat.
    def test_past_proxies(self):
        with socket.create_server(("127.0.0.1", 0)) as proxy:
            proxy.setblocking(False)
            address = f"127.0.0.1:{proxy.getsockname()[1]}"
            self.ENVIRONMENT = {"http_proxy": f"http://{address}", "all_proxy": f"socks5://{address}"}
            self.run_through()
            self.assertRaises(BlockingIOError, proxy.accept)


class Settings(Scenario):
    PAGE = "N6 Configuration"

    # More than the system takes at once: what it still holds is no stall.
    def test_restore_over_a_slow_link_and_factory_reset(self):
        self.begin("--ftp-fault=n6=slow:60000")
        archive = self.folder / "old.tar.gz"
        settings.write_archive({**settings.factory_settings(), "port1Mode": 4}, archive, 3_000_000)
        self.tool.press("Restore Settings")
        self.tool.choose_file("Choose file to Restore", archive, "Open")
        self.boat.saw(f"n6 restore bytes=.* sha256={checksum(archive)}", 120)
        self.tool.answer("Backup upload complete!", "Settings upload complete.", "OK")
        self.tool.press("Factory Reset")
        self.tool.answer("Factory Reset", "Warning: All settings will be deleted.*", "Yes")
        self.boat.saw("factory-reset serial=")
        self.finish()


def checksum(file):
    return hashlib.sha256(file.read_bytes()).hexdigest()
