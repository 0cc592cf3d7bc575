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
    def run_in_it(self, *command, **variables):
        # Without what says that a boat network is already here.
        outside = {name: value for name, value in os.environ.items() if not name.startswith("KELVORA_BOAT_")}
        command = [ROOT / "scripts/in-boat-network", *command]
        return subprocess.run(command, env={**outside, **variables}, capture_output=True, text=True)

    def test_status_and_arguments_pass_through(self):
        ended = self.run_in_it("sh", "-c", 'printf "%s" "$1"; exit 7', "sh", "a  b")
        self.assertEqual((ended.returncode, ended.stdout), (7, "a  b"))

    def test_where_namespaces_are_refused_the_command_runs_directly(self):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "unshare").symlink_to("/bin/false")
            refusing = {"PATH": f"{folder}:{os.environ['PATH']}", "TMPDIR": folder}
            ended = self.run_in_it("printenv", "KELVORA_BOAT_PREFIX", **refusing)
        self.assertEqual(ended.stdout, "127.0.0.\n")

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
