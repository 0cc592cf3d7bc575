# scripts/in-boat-network from outside: within it, no test would notice that it fails.

import os
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parent.parent


class InBoatNetwork(unittest.TestCase):
    def test_status_and_arguments_pass_through_also_where_namespaces_are_refused(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        pathlib.Path(folder.name, "unshare").symlink_to("/bin/false")
        # Without what says that a boat network is already here.
        outside = {name: value for name, value in os.environ.items() if not name.startswith("KELVORA_BOAT_")}
        command = [ROOT / "scripts/in-boat-network", "sh", "-c", 'echo "$1 $KELVORA_BOAT_PREFIX"; exit 7', "sh", "a  b"]
        for path, prefix in ((os.environ["PATH"], r"\d"), (f"{folder.name}:{os.environ['PATH']}", "127.0.0.")):
            environment = {**outside, "PATH": path, "TMPDIR": folder.name}
            ended = subprocess.run(command, env=environment, capture_output=True, text=True)
            self.assertRegex(f"{ended.returncode} {ended.stdout}", f"^7 a  b {prefix}")
