"""scripts/in-boat-network from outside: status, signals, and what a command finds in there."""

import os
import pathlib
import re
import signal
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).parent.parent / "scripts/in-boat-network"


def outside(**more):
    """The environment without what says that a boat network is already here."""
    return {**{name: value for name, value in os.environ.items() if not name.startswith("KELVORA_BOAT_")}, **more}


class InBoatNetwork(unittest.TestCase):
    def test_status_and_arguments_pass_through(self):
        ended = subprocess.run([SCRIPT, "sh", "-c", 'printf "%s" "$1"; exit 7', "sh", "a  b"], env=outside(), capture_output=True)
        self.assertEqual((ended.returncode, ended.stdout), (7, b"a  b"))

    def test_signals_reach_the_command(self):
        command = 'trap "echo caught; exit 3" TERM; echo up; while :; do sleep 0.05; done'
        with subprocess.Popen([SCRIPT, "bash", "-c", command], env=outside(), stdout=subprocess.PIPE) as running:
            running.stdout.readline()
            running.send_signal(signal.SIGTERM)
            self.assertEqual((running.stdout.read(), running.wait(20)), (b"caught\n", 3))

    def test_namespace_is_private_and_has_the_tools_address_first(self):
        show = "echo $KELVORA_BOAT_NETWORK; readlink /proc/self/ns/net; ip -4 -brief address show up; id -u"
        seen = subprocess.run([SCRIPT, "sh", "-c", show], env=outside(), capture_output=True, text=True).stdout
        kind, namespace, rest = seen.split("\n", 2)
        if kind != "namespace":
            self.skipTest("no namespaces here")
        self.assertNotEqual(namespace, os.readlink("/proc/self/ns/net"))
        self.assertRegex(rest, re.compile(r"^boat0@\S+ +UP +10\.75\.82\.1/24 10\.75\.82\.10/24 .*10\.75\.82\.99/24", re.M))
        self.assertEqual(rest.split()[-1], str(os.getuid()))

    def test_where_namespaces_are_refused_the_command_runs_directly_after_one_line(self):
        with tempfile.TemporaryDirectory() as folder:
            refusing = pathlib.Path(folder) / "unshare"
            refusing.write_text("#!/bin/sh\nexit 1\n")
            refusing.chmod(0o755)
            environment = outside(PATH=f"{folder}:{os.environ['PATH']}", TMPDIR=folder)
            show = "echo $KELVORA_BOAT_NETWORK $KELVORA_BOAT_PREFIX"
            ended = subprocess.run([SCRIPT, "sh", "-c", show], env=environment, capture_output=True, text=True)
        self.assertEqual(ended.stdout, "loopback 127.0.0.\n")
        self.assertEqual(len(ended.stderr.splitlines()), 1, ended.stderr)


if __name__ == "__main__":
    unittest.main()
