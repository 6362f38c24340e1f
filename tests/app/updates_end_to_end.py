#!/usr/bin/python3
"""Updates as users meet them: the real program, its windows, and a server on this machine.

    private-desktop --window-manager -- updates_end_to_end.py PROGRAM VERSION NEXT-PROGRAM NEXT-VERSION [unittest's arguments]
"""
import base64
import configparser
import datetime
import http.server
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import threading
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests" / "support"))
import ravlin_desktop as desktop  # noqa: E402
from gi.repository import Atspi  # noqa: E402
from ravlin_desktop import eventually, wait_for_text  # noqa: E402
from single_file import write_single_file  # noqa: E402

PROGRAM, VERSION, NEXT_PROGRAM, NEXT_VERSION = (sys.argv.pop(1) for _ in range(4))
CHECK = "Check for Updates…"
FOUND = "A new version of Ravlin is available!"
SCREENSHOTS = os.environ.get("RAVLIN_SCREENSHOTS")  # a folder to take pictures into, for developers


class Server:
    """What is published, and what was requested. A page may be held back until the test releases it."""

    def __init__(self):
        self.pages, self.requests, self.held = {}, [], {}
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                outer.answer(self)

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.server.daemon_threads = True
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def url(self, path):
        return f"http://127.0.0.1:{self.server.server_port}{path}"

    def answer(self, handler):
        self.requests.append(handler.path)
        page = self.pages.get(handler.path)
        if page is None:
            handler.send_error(500)
            return
        handler.send_response(200)
        handler.send_header("Content-Length", str(len(page)))
        handler.end_headers()
        middle = len(page) // 2
        try:
            handler.wfile.write(page[:middle])
            handler.wfile.flush()
            if gate := self.held.get(handler.path):
                gate.wait(desktop.DEADLINE_SECONDS)
            handler.wfile.write(page[middle:])
        except OSError:
            pass  # cancelled

    def hold(self, path):
        """Sends only half of the page until the returned event is set."""
        self.held[path] = threading.Event()
        return self.held[path]

    def close(self):
        for gate in self.held.values():
            gate.set()
        self.server.shutdown()
        self.server.server_close()


class UpdatesTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.folder / "tmp").mkdir()
        self.server = Server()
        self.addCleanup(self.server.close)
        self.key = self.folder / "key.pem"
        subprocess.run(["openssl", "genpkey", "-algorithm", "ed25519", "-out", self.key], check=True, capture_output=True)
        self.file = self.folder / "Ravlin.AppImage"
        self.install_old()

    def public_key(self):
        der = subprocess.run(["openssl", "pkey", "-in", self.key, "-pubout", "-outform", "DER"], check=True,
                             capture_output=True).stdout
        return base64.b64encode(der[-32:]).decode()

    def write_file(self, path, program, checks="false", more=""):
        """`checks`: whether to check automatically, or None to have the user asked."""
        settings = ["[Update]", "InstallKind=appimage", f"FeedURL={self.server.url('/appcast.xml')}",
                    f"PublicEDKey={self.public_key()}", more]
        if checks:
            settings.append(f"EnableAutomaticChecks={checks}")
        write_single_file(path, program, "\n".join(settings) + "\n")

    def install_old(self, **settings):
        self.write_file(self.file, PROGRAM, **settings)

    def publish(self, version, *options, program=NEXT_PROGRAM):
        """Signs and serves a release. Returns its file."""
        new = self.folder / "new" / "Ravlin.AppImage"
        new.parent.mkdir(exist_ok=True)
        self.write_file(new, program)
        feed = self.folder / "appcast.xml"
        subprocess.run([ROOT / "tools" / "make-appcast", "--key", self.key, "--file", new, "--version", version, "--url",
                        self.server.url("/Ravlin.AppImage"), "--first", "--output", feed, *options], check=True)
        self.server.pages["/Ravlin.AppImage"] = new.read_bytes()
        self.server.pages["/appcast.xml"] = feed.read_bytes()
        return new

    def start(self, program=None, **environment):
        ravlin = desktop.Ravlin(str(program or self.file), TMPDIR=str(self.folder / "tmp"),
                                XDG_CONFIG_HOME=str(self.folder / "config"), **environment)
        ravlin.program = "ravlin"  # its name once it is unpacked
        self.addCleanup(ravlin.close)
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program runs")
        return ravlin

    def quit(self, ravlin):
        ravlin.process.terminate()
        self.assertEqual(ravlin.wait_for_end(), 0)

    def open_panel(self):
        desktop.activate_by_name()
        eventually(desktop.panel_window, "the panel is open")

    def close_panel(self):
        desktop.wait_for_panel()  # has the keyboard by now, rather than a window that Esc would close as well
        desktop.press_key("Escape")
        desktop.wait_for_no_panel()

    def check(self):
        self.open_panel()
        eventually(self.can_check, "the button can be pressed")
        desktop.press(CHECK)
        desktop.wait_for_no_panel()  # a window of the update's has taken the keyboard

    def can_check(self):
        return desktop.button(CHECK).get_state_set().contains(Atspi.StateType.ENABLED)

    def look_for(self, text, name):
        """Waits for a text, and takes a picture if wanted."""
        wait_for_text(text)
        if SCREENSHOTS:
            desktop.screenshot(os.path.join(SCREENSHOTS, name + ".png"))

    def update_windows(self):
        return [each for title in ("Software Update", "Updating Ravlin") for each in
                desktop.visible_windows(title)]

    def wait_until_closed(self):
        eventually(lambda: not self.update_windows(), "the window is closed")

    def state(self):
        parser = configparser.ConfigParser()
        parser.optionxform = str
        parser.read(self.folder / "config" / "ravlin" / "updater.ini")
        return dict(parser["General"]) if parser.has_section("General") else {}

    def left_over(self):
        return sorted(set(os.listdir(self.folder)) - {"tmp", "config", "key.pem", "new", "appcast.xml", "notes.md"})


class Updates(UpdatesTest):
    def test_an_old_version_replaces_itself_and_comes_up_new(self):
        (self.folder / "notes.md").write_text("# What is new\n\n* It finds **arrows**\n")
        new = self.publish(NEXT_VERSION, "--notes", str(self.folder / "notes.md"))
        ravlin = self.start()
        self.check()
        self.look_for(FOUND, "found")
        wait_for_text(f"Ravlin {NEXT_VERSION} is now available — you have {VERSION}. Would you like to install it now?")
        notes = eventually(lambda: desktop.find_accessible(lambda each: each.get_name() == "Release Notes"), "notes")
        self.assertIn("It finds arrows", notes.get_description())
        rest = self.server.hold("/Ravlin.AppImage")
        desktop.press("Install and Relaunch")
        self.look_for("Downloading update…", "downloading")
        eventually(lambda: desktop.find_accessible(
            lambda each: re.fullmatch(r"[0-9.]+ [kM]B of [0-9.]+ [kM]B", each.get_name() or "")), "its progress is told")
        rest.set()
        eventually(lambda: self.file.read_bytes() == new.read_bytes(), "the file is the new one")
        eventually(lambda: os.path.exists(f"/proc/{ravlin.pid}/exe") and
                   len(os.listdir(self.folder / "tmp")) == 2, "the new file has been started")
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the new program runs")
        self.assertIsNone(ravlin.process.poll())
        self.assertEqual(self.left_over(), ["Ravlin.AppImage"])
        self.check()
        self.look_for("You’re up to date!", "up-to-date")
        wait_for_text(f"Ravlin {NEXT_VERSION} is currently the newest version available.")

    def test_what_is_copied_from_the_notes_is_transformed_like_any_copy(self):
        (self.folder / "notes.md").write_text("It finds arrows\n")
        self.publish(NEXT_VERSION, "--notes", str(self.folder / "notes.md"))
        self.start()
        self.check()
        notes = eventually(lambda: desktop.find_accessible(lambda each: each.get_name() == "Release Notes"), "notes")
        eventually(lambda: Atspi.Component.grab_focus(notes) and desktop.has_focus(notes), "the notes have the keyboard")
        desktop.press_key("ctrl+a", "ctrl+c")
        eventually(lambda: (desktop.clipboard() or "").strip() == "It finds arrows", "they are copied")
        self.open_panel()
        desktop.press("UPPERCASE")
        eventually(lambda: (desktop.clipboard() or "").strip() == "IT FINDS ARROWS", "the clipboard is rewritten")

    def test_the_clipboard_survives_the_update(self):
        self.publish(NEXT_VERSION)
        self.start()
        with desktop.copied("hello"):
            self.open_panel()
            desktop.search_for("upper")
            desktop.press("UPPERCASE")
            eventually(lambda: desktop.clipboard() == "HELLO", "the clipboard is rewritten")
        self.check()
        desktop.press("Install and Relaunch")
        eventually(lambda: len(os.listdir(self.folder / "tmp")) == 2, "the new file has been started")
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the new program runs")
        self.assertEqual(desktop.clipboard(), "HELLO")

    def test_what_else_a_check_may_find_is_told(self):
        self.start()
        self.publish(VERSION, program=PROGRAM)
        self.check()
        wait_for_text(f"Ravlin {VERSION} is currently the newest version available.")
        self.publish(NEXT_VERSION, "--minimum-system", "99")
        self.check()
        self.look_for("Your system is too old", "too-old")
        wait_for_text(f"Ravlin {NEXT_VERSION} is available, but it needs a newer system than this one.")
        self.server.pages["/appcast.xml"] = b"<html>Log in to the network</html>"
        self.check()
        self.look_for("Update Error", "error")
        wait_for_text("The update information is not genuine or is damaged, and was not used.")
        del self.server.pages["/appcast.xml"]
        self.check()
        wait_for_text("Update information could not be fetched. Please try again later.")
        desktop.press("OK")
        self.wait_until_closed()

    def test_a_forged_file_is_thrown_away(self):
        self.publish(NEXT_VERSION)
        old = self.file.read_bytes()
        page = self.server.pages["/Ravlin.AppImage"]
        self.server.pages["/Ravlin.AppImage"] = page[:-1] + bytes([page[-1] ^ 1])
        ravlin = self.start()
        self.check()
        desktop.press("Install and Relaunch")
        wait_for_text("The update is not signed by Ravlin’s makers and was thrown away. Ravlin is unchanged.")
        self.assertEqual(self.file.read_bytes(), old)
        self.assertEqual(self.left_over(), ["Ravlin.AppImage"])
        self.assertIsNone(ravlin.process.poll())

    @unittest.skipIf(os.getuid() == 0, "an administrator may replace every file")
    def test_a_file_that_is_not_the_users_to_change_stays(self):
        self.publish(NEXT_VERSION)
        old = self.file.read_bytes()
        self.start()
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        self.check()
        desktop.press("Install and Relaunch")
        self.look_for("Ravlin Can’t Be Updated Here", "not-here")
        wait_for_text(f"You may not replace the file “{self.file}”.")
        self.assertEqual(self.file.read_bytes(), old)
        self.assertNotIn("/Ravlin.AppImage", self.server.requests)

    def assert_not_installed(self, cause):
        wait_for_text(f"The update could not be installed. Ravlin is unchanged. ({cause})")
        self.assertEqual(self.file.read_bytes(), self.old)
        self.assertEqual(self.left_over(), ["Ravlin.AppImage"])

    def test_in_a_folder_that_others_may_write_to_nothing_is_fetched(self):
        self.publish(NEXT_VERSION)
        self.old = self.file.read_bytes()
        self.start()
        self.folder.chmod(0o1777)
        self.check()
        desktop.press("Install and Relaunch")
        self.look_for("Update Error", "shared-folder")
        self.assert_not_installed(f"other users may write to the folder “{self.folder}”; move Ravlin to one of your own")
        self.assertNotIn("/Ravlin.AppImage", self.server.requests)

    def in_the_middle_of_a_download(self, happens):
        self.publish(NEXT_VERSION)
        self.old = self.file.read_bytes()
        self.start()
        self.check()
        rest = self.server.hold("/Ravlin.AppImage")
        desktop.press("Install and Relaunch")
        wait_for_text("Downloading update…")
        happens()
        rest.set()

    @unittest.skipIf(os.getuid() == 0, "an administrator may write to every folder")
    def test_a_folder_that_becomes_read_only_in_the_middle_keeps_the_old_file(self):
        self.addCleanup(self.folder.chmod, 0o755)
        self.in_the_middle_of_a_download(lambda: self.folder.chmod(0o555))
        self.assert_not_installed("the file could not be written")

    def test_a_folder_that_others_get_access_to_in_the_middle_keeps_the_old_file(self):
        self.in_the_middle_of_a_download(lambda: self.folder.chmod(0o777))
        self.assert_not_installed(f"other users may write to the folder “{self.folder}”; move Ravlin to one of your own")

    def test_replayed_and_mixed_feeds_install_nothing(self):
        older, newer = "9.0", NEXT_VERSION
        now = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0)
        dates = [(now - datetime.timedelta(days=days)).isoformat() for days in (2, 1)]
        self.publish(older, "--date", dates[0], program=PROGRAM)
        old_pages = dict(self.server.pages)
        self.publish(newer, "--date", dates[1])
        new_pages = dict(self.server.pages)
        old = self.file.read_bytes()
        self.start()
        self.check()
        wait_for_text(FOUND)
        desktop.press("Remind Me Later")
        self.wait_until_closed()
        # Last time's genuine feed.
        self.server.pages["/appcast.xml"] = old_pages["/appcast.xml"]
        self.check()
        self.look_for("The server offered older update information than it did before. It was not used.", "replayed")
        # Last time's release in place of today's.
        self.server.pages.update({"/appcast.xml": new_pages["/appcast.xml"],
                                  "/Ravlin.AppImage": old_pages["/Ravlin.AppImage"]})
        self.check()
        desktop.press("Install and Relaunch")
        eventually(lambda: desktop.find_accessible(lambda each: (each.get_name() or "").startswith(
            ("The update is not signed", "The update could not be downloaded"))), "the file is refused")
        # One feed's items with another's signature.
        end = b"<!-- sparkle-signatures:"
        for items, signature in ((old_pages, new_pages), (new_pages, old_pages)):
            self.server.pages["/appcast.xml"] = (items["/appcast.xml"].split(end)[0] + end +
                                                 signature["/appcast.xml"].split(end)[1])
            self.check()
            wait_for_text("The update information is not genuine or is damaged, and was not used.")
            desktop.press("OK")
            self.wait_until_closed()
        self.assertEqual(self.file.read_bytes(), old)
        self.assertEqual(self.left_over(), ["Ravlin.AppImage"])

    def test_an_update_can_be_put_off_skipped_and_cancelled(self):
        self.publish(NEXT_VERSION)
        old = self.file.read_bytes()
        self.start()
        self.check()
        desktop.press("Remind Me Later")
        self.wait_until_closed()
        self.assertNotIn("SkippedVersion", self.state())
        self.check()
        desktop.press("Skip This Version")
        eventually(lambda: self.state().get("SkippedVersion") == NEXT_VERSION, "the answer is remembered")
        self.check()  # since the user asks, it is offered all the same
        self.server.hold("/Ravlin.AppImage")
        desktop.press("Install and Relaunch")
        wait_for_text("Downloading update…")
        desktop.press("Cancel")
        self.wait_until_closed()
        self.assertEqual(self.file.read_bytes(), old)
        self.open_panel()
        self.assertTrue(self.can_check())

    def test_while_a_check_runs_the_button_is_grey_also_when_the_panel_is_opened_anew(self):
        self.publish(VERSION, program=PROGRAM)
        feed = self.server.hold("/appcast.xml")
        self.start()
        self.check()
        self.look_for("Checking for updates…", "checking")
        for _ in range(3):
            self.open_panel()
            self.assertFalse(self.can_check())
            self.close_panel()
        self.open_panel()
        feed.set()
        wait_for_text("You’re up to date!")
        self.open_panel()
        eventually(self.can_check, "the button can be pressed again")
        self.assertEqual(self.server.requests, ["/appcast.xml"])

    def test_what_a_kill_has_left_is_gone_after_the_next_start(self):
        (self.folder / ".ravlin-update-0123456789abcdef0123456789abcdef").write_bytes(b"half")
        self.start()
        eventually(lambda: self.left_over() == ["Ravlin.AppImage"], "only the old file is left")

    def test_a_check_can_be_cancelled(self):
        self.publish(VERSION, program=PROGRAM)
        self.server.hold("/appcast.xml")
        self.start()
        self.check()
        desktop.press("Cancel")
        self.wait_until_closed()
        self.open_panel()
        eventually(self.can_check, "the button can be pressed again")

    def test_opening_the_panel_ten_times_makes_no_second_updater(self):
        self.install_old(checks="true")
        self.publish(VERSION, program=PROGRAM)
        self.start()
        eventually(lambda: self.server.requests, "the scheduled check")
        for _ in range(10):
            self.open_panel()
            self.close_panel()
        self.assertEqual(self.server.requests, ["/appcast.xml"])
        self.assertEqual(self.update_windows(), [])

    def test_the_second_start_asks_and_the_answer_counts(self):
        self.install_old(checks=None)
        self.publish(NEXT_VERSION)
        ravlin = self.start()
        eventually(lambda: self.state().get("HasLaunchedBefore") == "true", "the first start is remembered")
        self.open_panel()
        self.assertEqual(self.update_windows(), [])
        self.quit(ravlin)
        self.start()
        self.look_for("Check for updates automatically?", "asking")
        self.assertEqual(self.server.requests, [])
        desktop.press("Check Automatically")
        self.look_for(FOUND, "found-by-itself")
        self.assertEqual(self.state()["EnableAutomaticChecks"], "true")

    def test_settings_that_cannot_be_used_leave_the_button_grey(self):
        self.install_old(more="FeedURL=http://ravlin.example/")
        ravlin = self.start()
        self.open_panel()
        self.assertFalse(self.can_check())
        self.quit(ravlin)
        self.assertIn("no updates, since in update.ini FeedURL is not an https address", ravlin.output())


class SystemCopy(UpdatesTest):
    def test_without_any_updater_of_the_system_it_says_who_updates_it_and_does_nothing_else(self):
        self.start(PROGRAM, DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent")
        self.check()
        self.look_for("Updates come with your system", "system")
        wait_for_text("This copy of Ravlin is updated by your system’s software updater, together with your other "
                      "software.")
        self.assertEqual(self.server.requests, [])
        self.assertEqual(self.state(), {})


if __name__ == "__main__":
    desktop.adopt_orphans()
    unittest.main()
