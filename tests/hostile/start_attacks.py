#!/usr/bin/python3
"""Starts where nothing is as it should be, and endless starts.

    private-desktop [--window-manager] -- start_attacks.py PROGRAM [unittest's arguments]
"""
import os

import hostile
from hostile import desktop, report, scaled
from ravlin_desktop import eventually


class NoDisplay(hostile.AttackTest):
    def assert_says_so(self, expected, **environment):
        ravlin = self.start(**environment)
        self.assertEqual(ravlin.wait_for_end(), 1)
        self.assertEqual(ravlin.output(), f"ravlin: no display can be opened ({expected})\n")

    def test_a_start_says_so_and_ends(self):
        del os.environ["DISPLAY"]
        self.assert_says_so("WAYLAND_DISPLAY is not set, DISPLAY is not set")
        self.assert_says_so("WAYLAND_DISPLAY is not set, DISPLAY is :4711", DISPLAY=":4711")
        self.assert_says_so("WAYLAND_DISPLAY is gone, DISPLAY is :4711", DISPLAY=":4711", WAYLAND_DISPLAY="gone")
        self.assert_says_so("WAYLAND_DISPLAY is not set, DISPLAY is not set", QT_QPA_PLATFORM="no-such-platform")


def processes():
    return {int(name) for name in os.listdir("/proc") if name.isdigit()}


def names_of(pids):
    """The programs that these processes run; those that are gone are left out."""
    names = {}
    for pid in pids:
        try:
            with open(f"/proc/{pid}/comm", encoding="utf-8", errors="replace") as comm:
                names[pid] = comm.read().strip()
        except OSError:
            pass
    return names


class StartsAndQuits(hostile.AttackTest):
    def test_leave_nothing_behind(self):
        count = scaled(15, 1000)
        name = os.path.basename(self.PROGRAM)
        descriptors = set()
        bus = desktop.call_bus("GetConnectionUnixProcessID", desktop.GLib.Variant("(s)", ("org.freedesktop.DBus",)))[0]
        of_bus = hostile.descriptors(bus)
        for number in range(count):
            with desktop.copied("hello") if number % 10 == 0 else desktop.contextlib.nullcontext():
                ravlin = desktop.Ravlin(self.PROGRAM)
                eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program runs")
                desktop.activate_by_name()
                descriptors.add(hostile.descriptors(ravlin.pid))
                ravlin.process.terminate()
                self.assertEqual(ravlin.wait_for_end(), 0)
                ravlin.process.stdout.close()
            eventually(lambda: not desktop.is_on_bus("org.ravlin.ravlin"), "the name is free")
        eventually(lambda: name not in names_of(processes()).values(), "no process of the program is left")
        eventually(lambda: hostile.descriptors(bus) <= of_bus + 4, "the bus has closed the program's connections")
        runtime = os.environ["XDG_RUNTIME_DIR"]
        left = [entry for entry in os.listdir(runtime) if "ravlin" in entry]
        report(f"{count} starts, {min(descriptors)} to {max(descriptors)} descriptors open, files left: {left}")
        self.assertEqual(left, [])


if __name__ == "__main__":
    hostile.main()
