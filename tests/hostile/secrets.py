#!/usr/bin/python3
"""Looks for the clipboard's text where it has no business: in memory after another copy, in a core dump, in the log, in
the accessibility tree, on the bus, and in files.

    private-desktop --window-manager -- secrets.py PROGRAM [unittest's arguments]
"""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

import hostile
from hostile import desktop, report, scaled
from ravlin_desktop import eventually

# Found in no other program, and made of parts so that not even this source has it in one piece.
SECRET = "-".join(("correct", "horse", "battery", "staple")) + "-" + os.urandom(8).hex()
TRANSFORMS = ("UPPERCASE", "Base64 encode", "Reverse characters", "SHA-256", "URL encode")


def forms(secret):
    """The forms it may have somewhere: as it is, transformed, and in the text that Qt keeps."""
    for text in (secret, secret.upper(), secret[::-1]):
        yield text.encode()
        yield text.encode("utf-16-le")


def finds(data):
    return [form for form in forms(SECRET) if form in data]


def memory_of(pid):
    """What a core dump would have."""
    data = bytearray()
    with open(f"/proc/{pid}/maps", encoding="utf-8") as maps, open(f"/proc/{pid}/mem", "rb", 0) as memory:
        for line in maps:
            area = re.match(r"([0-9a-f]+)-([0-9a-f]+) r", line)
            if area and "[v" not in line:  # neither vvar nor vdso
                start, end = (int(part, 16) for part in area.groups())
                try:
                    memory.seek(start)
                    data += memory.read(end - start)
                except (OSError, ValueError):
                    pass
    return data


class Secrets(hostile.AttackTest):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def listen_to_bus(self):
        log = open(self.folder / "bus", "wb")
        monitor = subprocess.Popen(["dbus-monitor", "--session", "--binary"], stdout=log)
        self.addCleanup(log.close)
        self.addCleanup(desktop.end, monitor)
        eventually(lambda: (self.folder / "bus").stat().st_size > 0, "the bus is listened to")

    def use(self):
        desktop.activate_by_name()
        eventually(desktop.search_field, "the panel is open")
        trees = []
        for number in range(scaled(1, 20)):
            for name in TRANSFORMS:
                with desktop.copied(SECRET):
                    desktop.search_for(name)
                    desktop.press(name)
                    eventually(lambda: desktop.find_accessible(lambda each: f"{name} — ready" in (each.get_name() or "")),
                               f"{name} tells its result")
                    trees.append(desktop.accessible_tree())
        return "".join(trees)

    def assert_no_secret_in_dump(self, pid):
        """What is left in a core dump, if the tool for making one is installed."""
        if not shutil.which("gcore"):
            return
        subprocess.run(["gcore", "-a", "-o", self.folder / "core", str(pid)], check=True, capture_output=True)
        dump = (self.folder / f"core.{pid}").read_bytes()
        report(f"{len(dump) / 1e6:.0f} MB of core dump searched")
        self.assertTrue(b"ravlin" in dump)
        self.assertEqual(finds(dump), [])

    def test_nothing_of_the_text_is_anywhere_once_another_is_copied(self):
        self.listen_to_bus()
        home = self.folder / "home"
        home.mkdir()
        below_home = {name: str(home / name) for name in
                      ("XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME")}
        ravlin = self.start_on_bus(HOME=str(home), **below_home)
        tree = self.use()
        self.assertEqual(finds(tree.encode()), [])
        with desktop.copied("something else"):
            eventually(lambda: not finds(memory_of(ravlin.pid)), "the text is gone from memory")
            report(f"{len(memory_of(ravlin.pid)) / 1e6:.0f} MB of memory searched")
            self.assert_no_secret_in_dump(ravlin.pid)
            ravlin.process.terminate()
            self.assertEqual(ravlin.wait_for_end(), 0)
        self.assertEqual(finds(ravlin.output().encode()), [])
        self.assertEqual(list(home.rglob("*")), [])
        traffic = (self.folder / "bus").read_bytes()
        report(f"{len(traffic) / 1e3:.0f} kB of bus traffic searched")
        self.assertTrue(b"org.ravlin.ravlin" in traffic)
        self.assertEqual(finds(traffic), [])

    def test_the_search_finds_what_is_there(self):
        self.assertEqual(len(finds(("x" + SECRET + "x").encode())), 1)
        self.assertEqual(len(finds(SECRET.encode("utf-16-le"))), 1)
        ravlin = self.start_on_bus()
        with desktop.copied(SECRET):
            desktop.activate_by_name()
            desktop.search_for("upper")
            desktop.press("UPPERCASE")
            eventually(lambda: desktop.clipboard() == SECRET.upper(), "the clipboard is rewritten")
        self.assertTrue(finds(memory_of(ravlin.pid)))  # it serves the text


if __name__ == "__main__":
    hostile.main()
