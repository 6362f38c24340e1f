"""What attacks on the program have in common: their size, and what they look at. For scripts that run under
`private-desktop`."""
import os
import pathlib
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import ravlin_desktop as desktop  # noqa: E402

IS_FULL = os.environ.get("RAVLIN_HOSTILE") == "full"


def scaled(small, full):
    """How often or how large: `small` in every ./test, `full` in tests/hostile/run."""
    return full if IS_FULL else small


def resident_megabytes(pid):
    with open(f"/proc/{pid}/statm", encoding="ascii") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") / 1e6


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def ping():
    """Answered by the program's main thread, after whatever that is busy with."""
    desktop.call("org.ravlin.ravlin", "/org/ravlin/ravlin", "org.freedesktop.DBus.Properties", "GetAll",
                 desktop.GLib.Variant("(s)", ("org.freedesktop.Application",)))


def report(figure):
    """Reports a measured figure, which is what tests/hostile/run is for."""
    print(f"    {figure}", flush=True)


class AttackTest(unittest.TestCase):
    PROGRAM = None  # set by `main`

    def start(self, **environment):
        ravlin = desktop.Ravlin(self.PROGRAM, **environment)
        self.addCleanup(ravlin.close)
        return ravlin

    def start_on_bus(self, **environment):
        ravlin = self.start(**environment)
        desktop.eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program runs")
        return ravlin

    def assert_alive(self, ravlin):
        self.assertIsNone(ravlin.process.poll())

    def seconds(self, action):
        before = time.monotonic()
        action()
        return time.monotonic() - before


def main():
    AttackTest.PROGRAM = sys.argv.pop(1)
    desktop.adopt_orphans()
    unittest.main()
