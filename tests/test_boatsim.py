"""The simulator from outside: what it sends, obeys and stores. Runs in a boat network."""

import ftplib
import hashlib
import io
import json
import os
import pathlib
import re
import selectors
import signal
import socket
import struct
import subprocess
import sys
import tarfile
import tempfile
import time
import unittest

SIMULATOR = pathlib.Path(__file__).parent.parent / "simulator"
sys.path.insert(0, str(SIMULATOR))
sys.dont_write_bytecode = True

from boat import heartbeat, options  # noqa: E402

PREFIX = os.environ.get("KELVORA_BOAT_PREFIX", "127.0.0.")
N6, SCREEN = PREFIX + "10", PREFIX + "20"
ARCHIVE = "/media/kelvora-server-settings.tar.gz"
BOUND_SECONDS = 20


class HeartbeatBytes(unittest.TestCase):
    """Against bytes written out by hand."""

    def test_display_of_each_kind(self):
        for kind, first in ((heartbeat.SCREEN, "00"), (heartbeat.SCREEN2, "20"), (heartbeat.EINK, "50")):
            made = heartbeat.display(
                kind, serial="AB1", firmware="1.4", lux=1.5, volts=12.5, ls=True, server=False, system="5.1", application=""
            )
            self.assertEqual(
                made.hex(),
                first + "414231" + "00" * 13 + "01" + "312e34000000" + "000000000000f83f" + "00004841" + "0100"
                "03352e31" + "00",
            )

    def test_n6_puts_model_and_modes_into_the_light_slot(self):
        made = heartbeat.n6(
            serial="N", firmware="3", model=5, port1_mode=-1, port2_mode=2, volts=1.0, system="", application="é"
        )
        self.assertEqual(made[24:32].hex(), "000000000005ff02")
        self.assertEqual((made[0], made[38:]), (0xC6, b"\x00\x01\xe9"))

    def test_gyro_and_first_generation(self):
        made = heartbeat.gyro(serial="G", status=-2, volts=1.0, system="s", application="a")
        self.assertEqual((made[0], made[37:]), (0x72, b"\xfe\x01s\x01a"))
        self.assertEqual(len(heartbeat.first_generation(serial="VK38")), 38)


class Simulator:
    """A running simulator whose log lines are awaited."""

    def __init__(self, *arguments):
        self.process = subprocess.Popen([SIMULATOR / "boatsim", *arguments], stdout=subprocess.PIPE)
        self.text = ""
        self.expect("boat ready")

    def expect(self, pattern):
        """The match of a line that comes within the bound, searched in what was not matched before."""
        deadline = time.monotonic() + BOUND_SECONDS
        with selectors.DefaultSelector() as selector:
            selector.register(self.process.stdout, selectors.EVENT_READ)
            while not (match := re.search(pattern + r".*\n", self.text)):
                if not selector.select(deadline - time.monotonic()):
                    raise AssertionError(f"no line with {pattern}; left: {self.text}")
                chunk = os.read(self.process.stdout.fileno(), 65536).decode()
                if not chunk:
                    raise AssertionError(f"ended before a line with {pattern}; left: {self.text}")
                self.text += chunk
        self.text = self.text[match.end():]
        return match

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        status = self.process.wait(BOUND_SECONDS)
        self.process.stdout.close()
        return status


class RunningBoat(unittest.TestCase):
    def start(self, *arguments):
        simulator = Simulator(*arguments)
        self.addCleanup(lambda: self.assertEqual(simulator.stop(), 0))
        return simulator

    def ask(self, address, port=4019, request=b"\0"):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as asking:
            asking.settimeout(BOUND_SECONDS)
            asking.sendto(request, (address, port))
            return asking.recvfrom(2000) if port == 4019 else None

    def order(self, datagram):
        self.ask(N6, 4021, datagram)

    def ftp(self, address):
        session = ftplib.FTP(address, timeout=BOUND_SECONDS)
        self.addCleanup(session.close)
        session.login("kwz", "kwz")
        return session

    def test_unasked_heartbeats_come_from_each_device(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as listening:
            listening.settimeout(BOUND_SECONDS)
            if PREFIX.startswith("127."):
                listening.bind(("127.0.0.1", 4020))
            else:
                listening.bind(("239.255.75.82", 4020))
                member = socket.inet_aton("239.255.75.82") + socket.inet_aton(PREFIX + "1")
                listening.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, member)
            self.start("--silent=screen-2", "--heartbeat-interval=0.2", "--no-ftp")
            heard = [listening.recvfrom(2000) for _ in range(21)]
        counts = {}
        for datagram, (address, _) in heard:
            counts[address, datagram[0]] = counts.get((address, datagram[0]), 0) + 1
        kinds = {10: 0xC6, 12: 0x72, 20: 0x00, 22: 0x00, 23: 0x20, 24: 0x20, 25: 0x50}
        self.assertEqual(counts, {(f"{PREFIX}{host}", kind): 3 for host, kind in kinds.items()})

    def test_port_modes_show_in_heartbeats_and_reset_needs_the_serial(self):
        simulator = self.start("--no-ftp", "--n6-serial=S1")
        self.order(b"\x30\x06")
        simulator.expect("n6 port-mode setting=port1Mode code=6")
        self.order(b"\x31\x07")
        simulator.expect("n6 port-mode-refused setting=port2Mode code=7")
        self.assertEqual(struct.unpack("bb", self.ask(N6)[0][30:32]), (6, 0))
        self.order(b"\x0fS2".ljust(17, b"\0"))
        simulator.expect("n6 factory-reset-refused serial=S2")
        self.assertEqual(self.ask(N6)[0][30], 6)
        self.order(b"\x0fS1".ljust(17, b"\0"))
        simulator.expect("n6 factory-reset serial=S1")
        self.assertEqual(self.ask(N6)[0][30], 0)

    @unittest.skipIf(PREFIX.startswith("127.") and os.geteuid() != 0, "port 21 is not ours here")
    def test_backup_and_restore_carry_the_settings(self):
        simulator = self.start("--archive-delay=0.3", "--port2-mode=1", "--archive-padding=20000", "--ftp-fault=n6=slow:40000")
        session = self.ftp(N6)
        for _ in range(2):
            self.order(b"\x07")
        simulator.expect("n6 backup ")
        simulator.expect("n6 command-repeated code=0x07")
        with self.assertRaises(ftplib.error_perm):
            session.size(ARCHIVE)
        simulator.expect("n6 archive-ready")
        archive = io.BytesIO()
        begin = time.monotonic()
        session.retrbinary("RETR " + ARCHIVE, archive.write)
        self.assertGreater(time.monotonic() - begin, 0.4)
        with tarfile.open(fileobj=io.BytesIO(archive.getvalue())) as opened:
            self.assertEqual(json.load(opened.extractfile("settings.json"))["port2Mode"], 1)
        self.order(b"\x31\x02")
        session.storbinary("STOR " + ARCHIVE, io.BytesIO(archive.getvalue()))
        self.order(b"\x08")
        simulator.expect("n6 restore ")
        self.assertEqual(self.ask(N6)[0][31], 1)

    @unittest.skipIf(PREFIX.startswith("127.") and os.geteuid() != 0, "port 21 is not ours here")
    def test_uploads_are_stored_and_the_faults_bite(self):
        image = os.urandom(300_000)
        with tempfile.TemporaryDirectory() as state:
            simulator = self.start(
                "--state-dir=" + state, "--ftp-fault=screen-2=drop:100000", "--ftp-fault=n6=full",
                "--ftp-fault=screen-3=refused-login", "--ftp-fault=gyro=no-service", "--away=eink-1=0.1-",
                "--away=screen2-1=0.1-0.3",
            )
            simulator.expect("eink-1 left")
            simulator.expect("screen2-1 returned")
            session = self.ftp(SCREEN)
            session.cwd("update")
            session.storbinary("STOR image", io.BytesIO(image))
            checksum = hashlib.sha256(image).hexdigest()
            simulator.expect(f"screen-1 stored path=/update/image bytes=300000 sha256={checksum}")
            self.assertEqual((pathlib.Path(state) / "screen-1/update/image").read_bytes(), image)
            with self.assertRaises((EOFError, OSError)):
                self.ftp(PREFIX + "21").storbinary("STOR /update/image", io.BytesIO(image))
            with self.assertRaisesRegex(ftplib.error_temp, "452"):
                self.ftp(N6).storbinary("STOR /update/image", io.BytesIO(image))
            with self.assertRaisesRegex(ftplib.error_perm, "530"):
                self.ftp(PREFIX + "22")
            for without_service in (PREFIX + "12", PREFIX + "25"):
                with self.assertRaises(ConnectionRefusedError):
                    self.ftp(without_service)
            self.assertEqual(self.ftp(PREFIX + "23").nlst("/"), ["update"])


class CommandLine(unittest.TestCase):
    def test_what_makes_no_sense_is_refused(self):
        for wrong in ("--away=n7=1-2", "--server=n6", "--ftp-fault=n6=slow", "--n6-serial=12345678901234567"):
            with self.subTest(wrong), self.assertRaises(SystemExit), open(os.devnull, "w") as quiet:
                stderr, sys.stderr = sys.stderr, quiet
                try:
                    options.parse([wrong])
                finally:
                    sys.stderr = stderr


if __name__ == "__main__":
    unittest.main()
