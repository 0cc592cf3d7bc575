# What the simulator does without any test of the tool to notice a fault: what its N6 refuses and restores.

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "simulator"))
sys.dont_write_bytecode = True

from boat.n6 import N6  # noqa: E402


class N6Settings(unittest.TestCase):
    def test_a_reset_needs_the_serial_and_the_archive_survives_it(self):
        home = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (home / "media").mkdir()
        n6, due = N6(name="n6", address="", serial="S1"), []
        n6.start(home, lambda *_, **__: None, lambda _, action: due.append(action), lambda _: None)
        n6.obey(b"\x30\x06")
        n6.obey(b"\x07")
        due.pop()()
        for order, port1_mode in ((b"\x0fS2", 6), (b"\x0fS1", 0), (b"\x08", 6)):
            n6.obey(order if len(order) == 1 else order.ljust(17, b"\0"))
            self.assertEqual(n6.settings["port1Mode"], port1_mode, order)


if __name__ == "__main__":
    unittest.main()
