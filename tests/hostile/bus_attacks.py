#!/usr/bin/python3
"""What other programs of the session can do to Ravlin over its bus, and what the bus itself can do.

    private-desktop --window-manager -- bus_attacks.py PROGRAM [unittest's arguments]
"""
import contextlib
import os
import signal
import socket
import subprocess
import tempfile

import hostile
from hostile import desktop, ping, report, resident_megabytes, scaled
from ravlin_desktop import Gio, GLib, eventually

NAME, PATH = "org.ravlin.ravlin", "/org/ravlin/ravlin"
MEGABYTE = 1_000_000
FREEZE = 5  # seconds; nothing may take longer, even on a busy machine


def activate(**data):
    """Asks for the panel as a desktop does, and waits until the program has reacted."""
    data = {name.replace("_", "-"): GLib.Variant("s", text) for name, text in data.items()}
    # Private, since a bus may disconnect a client that sends it this much.
    bus = Gio.DBusConnection.new_for_address_sync(
        os.environ["DBUS_SESSION_BUS_ADDRESS"],
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
    bus.call_sync(NAME, PATH, "org.freedesktop.Application", "Activate", GLib.Variant("(a{sv})", (data,)), None,
                  Gio.DBusCallFlags.NONE, 60_000, None)
    bus.close_sync(None)


class LongStrings(hostile.AttackTest):
    def attack(self, **data):
        """Seconds until the program is free again, and the megabytes that it keeps."""
        ravlin = self.start_on_bus()
        activate(desktop_startup_id="id_TIME1", activation_token="token")
        eventually(desktop.panel_window, "the panel is open")
        ping()
        before = resident_megabytes(ravlin.pid)

        def wait():
            activate(**data)
            ping()
            ping()  # the panel is opened after the answer
        seconds = self.seconds(wait)
        kept = resident_megabytes(ravlin.pid) - before
        self.assert_alive(ravlin)
        return seconds, kept

    def test_a_long_startup_id_freezes_nothing(self):
        seconds, _ = self.attack(desktop_startup_id="x" * scaled(MEGABYTE, 10 * MEGABYTE))
        report(f"free again after {seconds:.2f} s")
        self.assertLess(seconds, FREEZE)

    def test_a_long_token_does_not_stay_in_memory(self):
        seconds, kept = self.attack(activation_token="x" * scaled(20 * MEGABYTE, 50 * MEGABYTE))
        report(f"free again after {seconds:.2f} s, {kept:+.1f} MB")
        self.assertLess(kept, 8)

    def test_a_hundred_long_ones_leave_no_more_than_one(self):
        ravlin = self.start_on_bus()
        activate(activation_token="x" * MEGABYTE)
        ping()
        before = resident_megabytes(ravlin.pid)
        for _ in range(scaled(20, 200)):
            activate(activation_token="x" * MEGABYTE, desktop_startup_id="y" * MEGABYTE)
        ping()
        kept = resident_megabytes(ravlin.pid) - before
        report(f"{kept:+.1f} MB")
        self.assertLess(kept, 8)
        self.assert_alive(ravlin)


@contextlib.contextmanager
def silent_bus():
    """The address of a bus that accepts every connection and never says a word."""
    with tempfile.TemporaryDirectory() as folder, socket.socket(socket.AF_UNIX) as listening:
        path = os.path.join(folder, "bus")
        listening.bind(path)
        listening.listen(100)
        yield f"unix:path={path}"


class SilentBus(hostile.AttackTest):
    def assert_panel_comes(self, ravlin):
        seconds = self.seconds(lambda: eventually(desktop.panel_window, "the panel is open", 60))
        report(f"panel after {seconds:.2f} s")
        self.assertLess(seconds, 15)
        # It does not wait for the bus while in use, either.
        with desktop.copied("hello"):
            desktop.wait_for_panel()
            desktop.type_text("upper")
            desktop.press_key("Return")
            eventually(lambda: desktop.clipboard() == "HELLO", "the clipboard is rewritten")
        ravlin.process.terminate()
        self.assertEqual(ravlin.wait_for_end(), 0)
        self.assertIn("ravlin: the session bus does not answer; going on without it", ravlin.output())

    def test_one_that_never_answers_is_gone_on_without(self):
        with silent_bus() as address:
            self.assert_panel_comes(self.start(DBUS_SESSION_BUS_ADDRESS=address))

    def test_one_that_has_been_stopped_is_gone_on_without(self):
        pid = desktop.call_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", ("org.freedesktop.DBus",)))[0]
        os.kill(pid, signal.SIGSTOP)
        try:
            self.assert_panel_comes(self.start())
        finally:
            os.kill(pid, signal.SIGCONT)

    def test_one_that_is_not_there_costs_nothing(self):
        self.start(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        eventually(desktop.panel_window, "the panel is open")


class LostBus(hostile.AttackTest):
    @contextlib.contextmanager
    def bus(self):
        command = ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"]
        daemon = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        try:
            yield daemon, daemon.stdout.readline().strip()
        finally:
            daemon.stdout.close()
            desktop.end(daemon)

    def transform(self, name, result):
        desktop.type_text(name)
        desktop.press_key("Return")
        eventually(lambda: desktop.clipboard() == result, "the clipboard is rewritten")
        desktop.press_key("Escape")  # which empties the search

    def test_one_that_ends_in_the_middle_takes_nothing_with_it(self):
        with self.bus() as (daemon, address), desktop.copied("Hello"):
            ravlin = self.start(DBUS_SESSION_BUS_ADDRESS=address)
            desktop.wait_for_panel()  # there is no tray
            self.transform("upper", "HELLO")
            daemon.kill()
            daemon.wait()
            self.assertEqual(desktop.clipboard(), "HELLO")
            self.transform("lower", "hello")
            self.assert_alive(ravlin)
            ravlin.process.terminate()
            self.assertEqual(ravlin.wait_for_end(), 0)
            self.assertEqual(desktop.clipboard(), "hello")


class RestlessTray(hostile.AttackTest):
    def test_one_that_comes_and_goes_without_end_finds_the_icon_once(self):
        count = scaled(50, 500)
        ravlin = self.start_on_bus()
        with desktop.NotifierTray() as tray:
            tray.wait_for_item()
        memory, descriptors = resident_megabytes(ravlin.pid), hostile.descriptors(ravlin.pid)
        for _ in range(count):
            desktop.NotifierTray().close()
        ping()
        with desktop.NotifierTray() as tray:
            tray.wait_for_item()
            ping()
            self.assertEqual(len(tray.items), 1)
        kept = resident_megabytes(ravlin.pid) - memory
        report(f"{count} times: {kept:+.1f} MB")
        self.assertLess(kept, 8)
        self.assertLessEqual(hostile.descriptors(ravlin.pid), descriptors + 1)


class StoppedInstance(hostile.AttackTest):
    def test_a_start_beside_it_says_what_is_wrong(self):
        first = self.start_on_bus()
        first.process.send_signal(signal.SIGSTOP)
        try:
            second = self.start()
            self.assertEqual(second.wait_for_end(), 1)
            self.assertIn("ravlin: it runs already, but does not answer; was it stopped?", second.output())
        finally:
            first.process.send_signal(signal.SIGCONT)
        eventually(desktop.panel_window, "the first shows its panel when it goes on")


if __name__ == "__main__":
    hostile.main()
