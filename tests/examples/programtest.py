"""What the tests of the example programs have in common: they run PROGRAM in a folder of their own."""

import os
import resource
import signal
import subprocess
import sys
import tempfile
import unittest

PROGRAMS = []


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.output = self.path("result.png")

    def path(self, name):
        return os.path.join(self.folder, name)

    def run_program(self, *arguments, program=0, **options):
        return subprocess.run([PROGRAMS[program], *arguments], capture_output=True, text=True, cwd=self.folder,
                              timeout=300, **options)

    def check_failure(self, done, status, *words):
        """One line that names the matter, no result and nothing beside it."""
        self.assertEqual(done.returncode, status, done.stderr)
        message, rest = done.stderr.split("\n", 1)
        self.assertTrue(message.startswith(os.path.basename(done.args[0]) + ": "), message)
        for word in words:
            self.assertIn(word, message)
        self.assertTrue(rest == "" if status == 1 else rest.startswith("usage:"), rest)
        self.assertFalse([name for name in os.listdir(self.folder) if name.startswith("result")])

    def check_help(self, program=0):
        shown = self.run_program("--help", program=program)
        self.assertEqual((shown.returncode, shown.stderr), (0, ""))
        self.assertTrue(shown.stdout.startswith("usage: " + os.path.basename(PROGRAMS[program])))


def disk_of(most_bytes):
    """For preexec_fn: files can't grow beyond that."""
    def fill():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (most_bytes, most_bytes))
    return fill


def main(programs=1):
    """Takes the programs' paths from the command line."""
    for _ in range(programs):
        PROGRAMS.append(os.path.abspath(sys.argv.pop(1)))
    unittest.main()
