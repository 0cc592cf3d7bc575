# scripts/in-boat-network from outside: a command's status and arguments, and a way out where it may do nothing.

import os
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).parent.parent / "scripts/in-boat-network"


class InBoatNetwork(unittest.TestCase):
    def run_in_it(self, *command, **variables):
        # Without what says that a boat network is already here.
        outside = {name: value for name, value in os.environ.items() if not name.startswith("KELVORA_BOAT_")}
        return subprocess.run([SCRIPT, *command], env={**outside, **variables}, capture_output=True, text=True)

    def test_status_and_arguments_pass_through(self):
        ended = self.run_in_it("sh", "-c", 'printf "%s" "$1"; exit 7', "sh", "a  b")
        self.assertEqual((ended.returncode, ended.stdout), (7, "a  b"))

    def test_where_namespaces_are_refused_the_command_runs_directly(self):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "unshare").symlink_to("/bin/false")
            refusing = {"PATH": f"{folder}:{os.environ['PATH']}", "TMPDIR": folder}
            ended = self.run_in_it("printenv", "KELVORA_BOAT_PREFIX", **refusing)
        self.assertEqual(ended.stdout, "127.0.0.\n")


if __name__ == "__main__":
    unittest.main()
