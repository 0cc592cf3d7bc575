# What the simulator does without any test of the tool to notice a fault: its bytes, against ones written out by
# hand, and what its N6 refuses and restores.

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "simulator"))
sys.dont_write_bytecode = True

from boat import heartbeat  # noqa: E402
from boat.n6 import N6  # noqa: E402


class HeartbeatBytes(unittest.TestCase):
    def test_display(self):
        texts = {"serial": "AB1", "firmware": "1.4", "system": "5.1", "application": ""}
        made = heartbeat.display(heartbeat.SCREEN2, lux=1.5, volts=12.5, ls=True, server=False, **texts)
        start, values = "20414231" + "00" * 13 + "01" + "312e34000000", "000000000000f83f" + "00004841"
        self.assertEqual(made.hex(), start + values + "0100" "03352e31" "00")

    def test_n6_puts_model_and_modes_into_the_light_slot(self):
        made = heartbeat.n6(serial="N", firmware="3", model=5, port1_mode=-1, port2_mode=2, volts=1.0, system="", application="é")
        self.assertEqual((made[0], made[24:32].hex(), made[38:]), (0xC6, "000000000005ff02", b"\x00\x01\xe9"))


class N6Settings(unittest.TestCase):
    def test_a_reset_needs_the_serial_and_the_archive_survives_it(self):
        home = tempfile.TemporaryDirectory()
        self.addCleanup(home.cleanup)
        pathlib.Path(home.name, "media").mkdir()
        n6, due = N6(name="n6", address="", serial="S1"), []
        n6.start(home.name, lambda *_, **__: None, lambda _, action: due.append(action), lambda _: None)
        n6.obey(b"\x30\x06")
        n6.obey(b"\x07")
        due.pop()()
        for order, port1_mode in ((b"\x0fS2", 6), (b"\x0fS1", 0), (b"\x08", 6)):
            n6.obey(order if len(order) == 1 else order.ljust(17, b"\0"))
            self.assertEqual(n6.settings["port1Mode"], port1_mode, order)


if __name__ == "__main__":
    unittest.main()
