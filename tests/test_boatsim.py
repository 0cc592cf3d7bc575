# What the simulator sends, against bytes written out by hand. What it obeys and stores shows in e2e.

import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "simulator"))
sys.dont_write_bytecode = True

from boat import heartbeat  # noqa: E402


class HeartbeatBytes(unittest.TestCase):
    def test_display(self):
        texts = {"serial": "AB1", "firmware": "1.4", "system": "5.1", "application": ""}
        made = heartbeat.display(heartbeat.SCREEN2, lux=1.5, volts=12.5, ls=True, server=False, **texts)
        start, values = "20414231" + "00" * 13 + "01" + "312e34000000", "000000000000f83f" + "00004841"
        self.assertEqual(made.hex(), start + values + "0100" "03352e31" "00")

    def test_n6_puts_model_and_modes_into_the_light_slot(self):
        made = heartbeat.n6(serial="N", firmware="3", model=5, port1_mode=-1, port2_mode=2, volts=1.0, system="", application="é")
        self.assertEqual((made[0], made[24:32].hex(), made[38:]), (0xC6, "000000000005ff02", b"\x00\x01\xe9"))


if __name__ == "__main__":
    unittest.main()
