# The simulator from outside: what it sends, obeys and stores. Runs in a boat network.

import ftplib
import hashlib
import io
import os
import pathlib
import socket
import struct
import subprocess
import sys
import unittest

SIMULATOR = pathlib.Path(__file__).parent.parent / "simulator"
sys.path.insert(0, str(SIMULATOR))
sys.dont_write_bytecode = True

from boat import heartbeat  # noqa: E402

PREFIX = os.environ.get("KELVORA_BOAT_PREFIX", "127.0.0.")
N6 = PREFIX + "10"
ARCHIVE = "/media/kelvora-server-settings.tar.gz"
BOUND_SECONDS = 20


# Against bytes written out by hand.
class HeartbeatBytes(unittest.TestCase):
    def test_display(self):
        texts = {"serial": "AB1", "firmware": "1.4", "system": "5.1", "application": ""}
        made = heartbeat.display(heartbeat.SCREEN2, lux=1.5, volts=12.5, ls=True, server=False, **texts)
        start, values = "20414231" + "00" * 13 + "01" + "312e34000000", "000000000000f83f" + "00004841"
        self.assertEqual(made.hex(), start + values + "0100" "03352e31" "00")

    def test_n6_puts_model_and_modes_into_the_light_slot(self):
        made = heartbeat.n6(serial="N", firmware="3", model=5, port1_mode=-1, port2_mode=2, volts=1.0, system="", application="é")
        self.assertEqual((made[0], made[24:32].hex(), made[38:]), (0xC6, "000000000005ff02", b"\x00\x01\xe9"))


@unittest.skipIf(PREFIX.startswith("127.") and os.geteuid() != 0, "port 21 is not ours here")
class RunningBoat(unittest.TestCase):
    def start(self, *arguments):
        self.process = subprocess.Popen([SIMULATOR / "boatsim", *arguments], stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.process.communicate, timeout=BOUND_SECONDS)
        self.addCleanup(self.process.terminate)
        self.expect("boat ready")

    def expect(self, event):
        # CTest bounds the wait for the line.
        self.assertTrue(any(event in line for line in self.process.stdout), event)

    def exchange(self, port, request):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as asking:
            asking.settimeout(BOUND_SECONDS)
            asking.sendto(request, (N6, port))
            return asking.recv(2000) if port == 4019 else None

    def port_modes(self):
        return struct.unpack("bb", self.exchange(4019, b"\0")[30:32])

    def ftp(self, address):
        session = ftplib.FTP(address, timeout=BOUND_SECONDS)
        self.addCleanup(session.close)
        session.login("kwz", "kwz")
        return session

    def test_settings_are_changed_backed_up_reset_and_restored(self):
        self.start("--n6-serial=S1", "--archive-delay=0.3", "--port2-mode=1")
        session, archive = self.ftp(N6), io.BytesIO()
        self.exchange(4021, b"\x30\x06")
        self.exchange(4021, b"\x07")
        with self.assertRaises(ftplib.error_perm):
            session.size(ARCHIVE)
        self.expect("n6 archive-ready")
        session.retrbinary("RETR " + ARCHIVE, archive.write)
        for serial, modes in ((b"S2", (6, 1)), (b"S1", (0, 0))):
            self.exchange(4021, b"\x0f" + serial.ljust(16, b"\0"))
            self.expect("n6 factory-reset")
            self.assertEqual(self.port_modes(), modes)
        session.storbinary("STOR " + ARCHIVE, io.BytesIO(archive.getvalue()))
        self.exchange(4021, b"\x08")
        self.expect("n6 restore ")
        self.assertEqual(self.port_modes(), (6, 1))

    def test_uploads_are_stored_and_the_faults_bite(self):
        image = os.urandom(300_000)
        self.start("--ftp-fault=screen-2=drop:100000", "--ftp-fault=n6=full", "--ftp-fault=gyro=no-service")
        self.ftp(PREFIX + "20").storbinary("STOR /update/image", io.BytesIO(image))
        self.expect(f"screen-1 stored path=/update/image bytes=300000 sha256={hashlib.sha256(image).hexdigest()}")
        for host, error in (("21", (EOFError, OSError)), ("10", ftplib.error_temp), ("12", ConnectionRefusedError)):
            with self.subTest(host), self.assertRaises(error):
                self.ftp(PREFIX + host).storbinary("STOR /update/image", io.BytesIO(image))


if __name__ == "__main__":
    unittest.main()
