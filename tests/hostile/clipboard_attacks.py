#!/usr/bin/python3
"""What other programs can do to Ravlin through the clipboard and the display.

    private-desktop --window-manager|--wayland -- clipboard_attacks.py PROGRAM ATTACKER [unittest's arguments]
"""
import contextlib
import ctypes
import os
import re
import select
import socket
import subprocess
import sys

import hostile
from hostile import desktop, ping, report, resident_megabytes, scaled
from ravlin_desktop import eventually

ATTACKER = sys.argv.pop(2)
MEGABYTE = 1_000_000
FREEZE = 5  # seconds that nothing may take, on a busy machine


def text_of(megabytes):
    return "some plain text\n" * (megabytes * MEGABYTE // 16)


def forget_peak(pid):
    with open(f"/proc/{pid}/clear_refs", "w", encoding="ascii") as file:
        file.write("5")


def peak_megabytes(pid):
    """The most memory that the program has had since `forget_peak`."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        return int(re.search(r"VmHWM:\s+(\d+) kB", status.read())[1]) * 1024 / 1e6


class ClipboardAttack(hostile.AttackTest):
    ENVIRONMENT = {}

    def setUp(self):
        self.ravlin = self.start_on_bus(**self.ENVIRONMENT)
        desktop.activate_by_name()
        desktop.search_for("upper")

    def own(self, text):
        """Has the program put the text on the clipboard, in capitals."""
        with desktop.copied(text):
            desktop.press("UPPERCASE")
            desktop.wait_for_text(f"UPPERCASE — ready, paste with ⌘V  ({len(text)}→{len(text)} chars)")

    def assert_clipboard(self, text):
        eventually(lambda: desktop.clipboard() == text, "the text is there")

    @contextlib.contextmanager
    def attacker(self, attack, target, count):
        process = subprocess.Popen([ATTACKER, attack, target, str(count)], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        try:
            yield process
        finally:
            process.stdin.close()
            process.stdout.close()
            desktop.end(process)

    def attack(self, attack, target, count):
        """Plays an attack to its end. The longest that the program has had no time for anything else, in seconds."""
        longest = 0
        with self.attacker(attack, target, count) as attacker:
            while not select.select([attacker.stdout], [], [], 0)[0]:
                longest = max(longest, self.seconds(ping))
            self.assertEqual(attacker.stdout.readline(), b"done\n")
            longest = max(longest, self.seconds(ping))
        self.assert_alive(self.ravlin)
        return longest


class X11Readers(ClipboardAttack):
    """Programs that read our text, or seem to."""

    def assert_cheap(self, megabytes, attack, target, count):
        self.own(text_of(megabytes))
        forget_peak(self.ravlin.pid)
        before = resident_megabytes(self.ravlin.pid)
        silence = self.attack(attack, target, count)
        peak = peak_megabytes(self.ravlin.pid) - before
        report(f"{megabytes} MB, {count} times {target}: silent for {silence:.2f} s at the longest, {peak:+.0f} MB")
        self.assertLess(silence, FREEZE)
        self.assertLess(peak, 30)
        self.assert_clipboard(text_of(megabytes).upper())

    def test_that_are_gone_when_they_are_answered(self):
        self.assert_cheap(scaled(10, 50), "x11-vanish", "STRING", 200)

    def test_that_ask_without_end(self):
        self.assert_cheap(1, "x11-flood", "TARGETS", scaled(200_000, 1_400_000))

    def test_that_take_nothing(self):
        self.assert_cheap(1, "x11-stall", "UTF8_STRING", scaled(5_000, 40_000))

    def test_that_are_gone_leave_no_text_behind(self):
        before = resident_megabytes(self.ravlin.pid)
        self.own(text_of(50))
        self.attack("x11-vanish", "UTF8_STRING", 10)
        with desktop.copied("next"):
            # They are not waited for, as readers that stall would be.
            eventually(lambda: resident_megabytes(self.ravlin.pid) < before + 20, "the memory is free again", 20)
            report(f"{resident_megabytes(self.ravlin.pid) - before:+.1f} MB stay")


class X11Connections(ClipboardAttack):
    """What xkill and others can do to the program's connections."""

    def kill(self, window):
        subprocess.run(["xkill", "-id", window], check=True, stdout=subprocess.DEVNULL)

    def test_text_outlives_the_panels(self):
        self.own("hello")
        self.kill(desktop.panel_window().identifier)
        self.assertEqual(self.ravlin.wait_for_end(), 1)
        self.assertEqual(desktop.clipboard(), "HELLO")
        self.assertEqual(len(self.ravlin.lingering_children()), 1)
        with desktop.copied("next"):
            eventually(lambda: not self.ravlin.lingering_children(), "the lingering process has ended")

    def test_no_process_is_left_where_another_program_has_copied(self):
        self.own("hello")
        with desktop.copied("next"):
            self.kill(desktop.panel_window().identifier)
            self.assertEqual(self.ravlin.wait_for_end(), 1)
            self.assertEqual(self.ravlin.lingering_children(), [])
            self.assert_clipboard("next")

    def test_text_outlives_the_clipboards(self):
        self.own("hello")
        for _ in range(3):
            self.kill(desktop.selection_owner("CLIPBOARD"))
            self.assert_clipboard("HELLO")
        self.kill(desktop.selection_owner("CLIPBOARD"))
        ping()
        self.assertEqual(desktop.selection_owner("CLIPBOARD"), "0")  # enough is enough
        desktop.press_key("Escape", "Escape")
        desktop.wait_for_no_panel()
        desktop.activate_by_name()
        self.assert_clipboard("HELLO")
        self.assert_alive(self.ravlin)


SYS_PIDFD_OPEN, SYS_PIDFD_GETFD = 434, 438


def sockets_of(pid, path):
    """Duplicates of the program's connections to the server at `path`, in the order in which it has made them."""
    libc = ctypes.CDLL(None, use_errno=True)
    process = libc.syscall(SYS_PIDFD_OPEN, pid, 0)
    found = []
    for number in sorted(map(int, os.listdir(f"/proc/{pid}/fd"))):
        if os.readlink(f"/proc/{pid}/fd/{number}").startswith("socket:"):
            duplicate = socket.socket(fileno=libc.syscall(SYS_PIDFD_GETFD, process, number, 0))
            if duplicate.getpeername() == path:
                found.append(duplicate)
            else:
                duplicate.close()
    os.close(process)
    return found


class WaylandReaders(ClipboardAttack):
    ENVIRONMENT = {"QT_QPA_PLATFORM": "wayland"}

    def assert_survived(self, attack, count):
        self.own("x" * MEGABYTE)
        before = hostile.descriptors(self.ravlin.pid)
        silence = self.attack(attack, "UTF8_STRING", count)
        held = hostile.descriptors(self.ravlin.pid) - before
        report(f"{count} times: silent for {silence:.2f} s at the longest, {held} more descriptors")
        self.assertLess(silence, FREEZE)
        self.assertLess(held, 300)
        self.assert_clipboard("X" * MEGABYTE)
        eventually(lambda: hostile.descriptors(self.ravlin.pid) < before + 10, "the readers are forgotten")

    def test_that_take_nothing(self):
        self.assert_survived("wayland-stall", 400)

    def test_that_ask_so_fast_that_the_compositor_cuts_us_off(self):
        self.assert_survived("wayland-burst", 900)


class WaylandConnections(ClipboardAttack):
    ENVIRONMENT = {"QT_QPA_PLATFORM": "wayland"}

    def cut(self, number):
        path = os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ["WAYLAND_DISPLAY"])
        connections = sockets_of(self.ravlin.pid, path)
        self.assertEqual(len(connections), 2)  # the windows' and the clipboard's
        connections[number].shutdown(socket.SHUT_RDWR)
        for each in connections:
            each.close()

    def test_text_outlives_the_windows(self):
        self.own("hello")
        self.cut(0)
        self.assertEqual(self.ravlin.wait_for_end(), 1)
        self.assertEqual(desktop.clipboard(), "HELLO")
        self.assertEqual(len(self.ravlin.lingering_children()), 1)

    def test_text_outlives_the_clipboards(self):
        self.own("hello")
        for _ in range(3):
            self.cut(1)
            self.assert_clipboard("HELLO")
        self.assert_alive(self.ravlin)


class WaylandOutputs(ClipboardAttack):
    ENVIRONMENT = {"QT_QPA_PLATFORM": "wayland"}

    def sway(self, *command):
        subprocess.run(["swaymsg", *command], check=True, stdout=subprocess.DEVNULL)
        ping()

    def test_that_come_and_go_take_nothing_with_them(self):
        self.own("hello")
        for _ in range(scaled(5, 200)):
            self.sway("output", "HEADLESS-1", "disable")  # with the panel on it
            desktop.activate_by_name()
            ping()
            self.sway("output", "HEADLESS-1", "enable")
            self.sway("create_output")
            self.sway("output", "HEADLESS-1", "disable")
            self.sway("output", "HEADLESS-1", "enable")
        self.assert_clipboard("HELLO")
        desktop.activate_by_name()
        self.own("once more")
        self.assert_clipboard("ONCE MORE")
        self.assert_alive(self.ravlin)


if __name__ == "__main__":
    hostile.main()
