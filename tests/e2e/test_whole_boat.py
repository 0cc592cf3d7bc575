"""The program as a user meets it: with a boat of several hosts, and with what goes wrong there."""

import hashlib
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "simulator"))
from boat import settings  # noqa: E402
from boat.hosts import BOATSIM, PREFIX, Impossible, Network, until  # noqa: E402
from tool import CHECKED, ENABLED, Tool  # noqa: E402

OK = "Connection ok"
NOTHING = "Connection problem, check your network settings"
LOSS, DELAY = {"loss": 0.2}, {"delay": 0.2}


class Scenario(unittest.TestCase):
    def begin(self, displays=("screen", "screen"), n6=(), options=(), **network):
        """A boat with an N6, a gyro and these displays, each on its own host and all known to the tool.

        The options are for the displays of the first one's type.
        """
        folder = tempfile.TemporaryDirectory(prefix="kelvora-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        try:
            self.network = Network(self.folder, **network)
        except Impossible as reason:
            self.skipTest(str(reason))
        self.addCleanup(self.network.close)
        self.n6 = self.add_n6(*n6)
        self.displays = [self.add_display(kind, 20 + n, *(options if kind == displays[0] else ())) for n, kind in enumerate(displays)]
        self.tool = Tool(self.folder)
        self.addCleanup(self.tool.end)
        self.tool.sees(OK)
        for n in range(len(displays)):
            until(lambda: f" IP {PREFIX}{20 + n}\n" in self.tool.log(), 60, f"display {n} is found")

    def add(self, *arguments, hosts):
        simulator = self.network.add(*arguments, hosts=hosts)
        self.addCleanup(simulator.stop)
        return simulator

    def add_n6(self, *arguments, hosts=(10, 11, 12)):
        return self.add("--screens=0", "--screen2s=0", "--einks=0", *arguments, hosts=hosts)

    def add_display(self, kind, host, *arguments):
        counts = [f"--{other}s={int(other == kind)}" for other in ("screen", "screen2", "eink")]
        return self.add("--no-n6", "--no-gyro", *counts, f"--address={kind}-1={PREFIX}{host}", *arguments, hosts=[host])

    def pull_plug(self, seconds=10):
        """Meanwhile the tool has to answer, and to notice."""
        if not self.network.is_switched:
            self.skipTest("no plug to pull without a bridge")
        self.network.plug("down")
        pulled = time.monotonic()
        self.tool.sees(NOTHING, seconds=20)
        until(lambda: time.monotonic() - pulled > seconds, seconds, "the time without network")
        self.network.plug("up")

    def package(self, kind, size):
        subprocess.run([BOATSIM.with_name("make-sample-packages"), f"--size={size}", self.folder], check=True, stdout=subprocess.DEVNULL)
        file = next(self.folder.glob(f"{kind}-update-*"))
        return file, checksum(file)

    def finish(self):
        self.assertEqual(self.tool.close(), 0, self.tool.log())


class Discovery(Scenario):
    DISPLAYS = ("screen", "screen", "screen2", "eink")

    def test_each_device_is_found(self):
        self.begin(self.DISPLAYS)
        self.tool.sees("N6 Configuration", "page tab", ENABLED)
        self.assertEqual(self.tool.log().count("udpHB: Screen IP"), 3)
        self.assertEqual(self.tool.log().count("udpHB: E-Ink IP"), 1)
        self.assertIn(f"udpHB: Gyro IP {PREFIX}12\n", self.tool.log())
        self.finish()

    def test_each_device_is_found_with_loss(self):
        self.begin(self.DISPLAYS, **LOSS, impaired="boat")
        self.finish()

    def test_a_pulled_plug_shows_and_heals(self):
        self.begin(self.DISPLAYS)
        self.pull_plug()
        self.tool.sees(OK)
        until(lambda: self.tool.log().count("udpHB: E-Ink IP") == 2, 60, "the display found again")
        self.finish()


class DisplayUpdate(Scenario):
    def start(self, size, *options, **network):
        self.begin(("screen", "screen", "screen2"), options=options, **network)
        package, self.checksum = self.package("screen", size)
        self.tool.sees(r".*\(PO\).*|.*\(LS\).*", "check box", CHECKED, count=2)
        self.tool.press("Start Update")
        self.tool.choose_file("Open Update File", package, "Open")

    def progressing(self):
        progress = lambda: [self.tool.value(bar) > 0 for bar in self.tool.elements(role="progress bar")]
        until(lambda: progress() == [True, True], 60, "progress of both")

    def update(self, size, *options, meanwhile=lambda: None, **network):
        """Updates both SCREEN displays at once, and checks that these and no other got the package."""
        self.start(size, *options, **network)
        meanwhile()
        for display in self.displays[:2]:
            display.saw(f"stored path=/update/image bytes=.* sha256={self.checksum}", 120)
        self.tool.sees("Start Update", "push button", ENABLED)
        self.assertEqual(self.displays[2].count("ftp-connect"), 0)

    def pull_plug_in_transfer(self):
        self.progressing()
        self.pull_plug()

    def test_all_of_a_type_at_once(self):
        self.update(5_000_000)
        self.finish()

    def test_with_loss(self):
        self.update(50_000, **LOSS)
        self.finish()

    def test_with_delay(self):
        self.update(500_000, **DELAY)
        self.finish()

    def test_with_the_plug_pulled_in_the_middle(self):
        self.update(6_000_000, "--ftp-fault=screen-1=slow:1000000", meanwhile=self.pull_plug_in_transfer)
        self.tool.sees(OK)
        self.finish()

    def test_displays_restart_afterwards(self):
        self.update(100_000, "--reboot=10")
        gone = f"udpHB: Instrument {PREFIX}2[01] timed out"
        until(lambda: len(re.findall(gone, self.tool.log())) == 2, 60, "both displays gone")
        self.tool.sees(rf".*{PREFIX}2[01].*", "check box", count=2)
        self.finish()

    def test_closing_the_window_in_the_middle(self):
        self.start(6_000_000, "--ftp-fault=screen-1=slow:1000000")
        self.progressing()
        self.finish()
        for display in self.displays[:2]:
            display.saw("upload-broken|ftp-disconnect")


class N6Page(Scenario):
    def begin(self, n6=(), **network):
        super().begin(["screen"], n6, **network)
        self.tool.press("N6 Setup and Update", "page tab")
        self.tool.sees(r"N6-30001234   \(N6 Flint\)|N6-30005678 .*", "label")

    def update(self, *n6, **network):
        self.begin(n6, **network)
        package, checksum = self.package("n6", 1_000_000)
        self.tool.press("Update N6 Software")
        self.tool.choose_file("Open Update File", package, "Open")
        self.n6.saw(f"stored path=/update/image bytes=.* sha256={checksum}")
        self.tool.sees("Updating...", "label")
        self.tool.sees("N6-.*", "label")
        until(lambda: not self.tool.elements("Updating..."), 60, "the notice gone")
        self.assertEqual(self.n6.count("stored"), 1)
        self.finish()

    def test_update(self):
        self.update()

    def test_update_with_delay(self):
        self.update(**DELAY)

    def test_update_and_restart(self):
        self.update("--reboot=10")

    def test_update_beside_a_second_n6(self):
        self.update("--second-n6")

    def choose_next_mode(self, port):
        self.tool.sees("NMEA.*", "combo box", ENABLED, count=2)
        self.tool.select_next(self.tool.elements("NMEA.*", "combo box")[port - 1])

    def test_port_modes(self):
        self.begin()
        for port, code, text in ((1, 6, "NMEA0183-HS"), (2, 1, "B&G Fastnet")):
            self.choose_next_mode(port)
            self.n6.saw(f"port-mode setting=port{port}Mode code={code}")
            self.tool.sees(text, "combo box")
        self.assertEqual(self.n6.count("port-mode"), 2)
        self.finish()

    def test_port_mode_at_a_new_address(self):
        self.begin()
        self.n6.stop()
        moved = self.add_n6(f"--address=n6={PREFIX}14", hosts=[14, 12])
        self.tool.sees(f"{PREFIX}14", "label")
        self.choose_next_mode(1)
        moved.saw("port-mode setting=port1Mode code=6")
        self.finish()


class Settings(Scenario):
    def begin(self, n6=(), **network):
        super().begin(["screen"], n6, **network)
        self.tool.press("N6 Configuration", "page tab")

    def start_backup(self):
        self.tool.press("Backup Settings")
        self.tool.choose_file("Save As", self.folder / "boat", "Save")
        return self.folder / "boat.tar.gz"

    def backup(self, *n6, meanwhile=lambda file: None, **network):
        self.begin(n6, **network)
        file = self.start_backup()
        meanwhile(file)
        self.tool.answer("Backup download complete!", "Settings backup complete.", "OK")
        self.n6.saw(f"archive-ready .* sha256={checksum(file)}")
        self.assertFalse(file.with_name("boat.tar.gz.part").exists())
        self.finish()

    def pull_plug_in_transfer(self, file):
        part = file.with_name("boat.tar.gz.part")
        until(lambda: part.exists() and part.stat().st_size > 0, 60, "some of the archive")
        self.pull_plug()

    def test_backup(self):
        self.backup()

    def test_backup_with_loss(self):
        self.backup(**LOSS)

    def test_backup_with_the_plug_pulled_in_the_middle(self):
        self.backup("--archive-padding=3000000", "--ftp-fault=n6=slow:500000", meanwhile=self.pull_plug_in_transfer)

    def test_backup_beside_a_second_n6(self):
        self.backup("--second-n6")

    def test_backup_cut_in_the_middle(self):
        self.begin(["--archive-padding=1000000", "--ftp-fault=n6=drop:500000"])
        file = self.start_backup()
        self.tool.answer("Backup download failed!", "Can not access backup on server.*", "OK")
        self.assertEqual(list(self.folder.glob("boat.tar*")), [])
        self.finish()

    def restore(self, *n6, **network):
        self.begin(n6, **network)
        self.archive = self.folder / "old.tar.gz"
        settings.write_archive({**settings.factory_settings(), "port1Mode": 4}, self.archive, 200_000)
        self.tool.press("Restore Settings")
        self.tool.choose_file("Choose file to Restore", self.archive, "Open")

    def restored(self):
        self.tool.answer("Backup upload complete!", "Settings upload complete.", "OK")
        self.n6.saw(f"n6(-2)? restore bytes=.* sha256={checksum(self.archive)}")
        self.finish()

    def test_restore(self):
        self.restore()
        self.restored()

    def test_restore_with_delay(self):
        self.restore(**DELAY)
        self.restored()

    def test_restore_cut_in_the_middle(self):
        self.restore("--ftp-fault=n6=drop:100000")
        self.tool.answer("Settings upload failed!", "Can not upload to system.*", "OK")
        self.assertEqual(self.n6.count(" restore"), 0)
        self.finish()

    def reset(self):
        self.tool.press("Factory Reset")
        self.tool.answer("Factory Reset", "Warning: All settings will be deleted.*", "Yes")

    def test_factory_reset(self):
        self.begin()
        self.reset()
        self.n6.saw("factory-reset serial=N6-30001234")
        self.n6.saw("command-repeated code=0x0f")
        self.finish()

    def test_factory_reset_beside_a_second_n6(self):
        """Whichever it is: the tool may not send to one of them what names the other."""
        self.begin(["--second-n6"])
        self.reset()
        self.n6.saw("factory-reset serial=")
        self.n6.saw("command-repeated code=0x0f")
        self.assertEqual(self.n6.count("factory-reset"), 1)
        self.finish()


def checksum(file):
    return hashlib.sha256(file.read_bytes()).hexdigest()


if __name__ == "__main__":
    unittest.main()
