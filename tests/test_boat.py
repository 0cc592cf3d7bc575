# The boat that tests have, where none of them would notice a fault: what the simulator's N6 refuses and restores, and
# scripts/in-boat-network from outside.

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parent.parent

sys.path.insert(0, str(ROOT / "simulator"))
sys.dont_write_bytecode = True

from boat.n6 import N6  # noqa: E402


class Boat(unittest.TestCase):
    def test_status_and_arguments_pass_through_also_where_namespaces_are_refused(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        pathlib.Path(folder, "unshare").symlink_to("/bin/false")
        # Without what says that a boat network is already here.
        outside = {name: value for name, value in os.environ.items() if not name.startswith("KELVORA_BOAT_")}
        command = [ROOT / "scripts/in-boat-network", "sh", "-c", 'echo "$1 $KELVORA_BOAT_PREFIX"; exit 7', "sh", "a  b"]
        for path, prefix in ((os.environ["PATH"], r"\d"), (f"{folder}:{os.environ['PATH']}", "127.0.0.")):
            environment = {**outside, "PATH": path, "TMPDIR": folder}
            ended = subprocess.run(command, env=environment, capture_output=True, text=True)
            self.assertEqual(ended.returncode, 7)
            self.assertRegex(ended.stdout, f"^a  b {prefix}")

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
