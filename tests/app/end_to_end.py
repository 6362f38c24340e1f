#!/usr/bin/python3
"""The program as its users meet it: a real tray, real clicks and keys, assistive technology, other programs' clipboards.

    private-desktop --window-manager -- end_to_end.py PROGRAM [unittest's arguments]
"""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import ravlin_desktop as desktop  # noqa: E402
import readme  # noqa: E402
from gi.repository import Atspi, GLib  # noqa: E402
from ravlin_desktop import eventually, wait_for_no_panel, wait_for_panel, wait_for_text  # noqa: E402

PROGRAM = sys.argv.pop(1)
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
LOG = "clipboard: X11 (Wayland: WAYLAND_DISPLAY is not set)\n"
NO_TEXT = "No text in the clipboard — copy some text first"


def server_time():
    """The X server's clock, as window managers compare it: milliseconds since the machine started."""
    return int(time.clock_gettime(time.CLOCK_MONOTONIC) * 1000) & 0xFFFFFFFF


class DesktopTest(unittest.TestCase):
    maxDiff = None

    def start(self, **environment):
        ravlin = desktop.Ravlin(PROGRAM, **environment)
        self.addCleanup(self.assert_no_crash, ravlin)
        self.addCleanup(ravlin.close)
        return ravlin

    def assert_no_crash(self, ravlin):
        self.assertIn(ravlin.process.returncode, (0, -signal.SIGKILL))

    def show_tray(self, edge="top"):
        return self.enterContext(desktop.xembed_tray(edge))

    def show_notifier_tray(self):
        return self.enterContext(desktop.NotifierTray())

    def copy(self, text):
        return self.enterContext(desktop.copied(text))

    def other_window_in_use(self):
        """A window of another program into which the user has just typed."""
        process = subprocess.Popen(["xev", "-name", "other"], stdout=subprocess.DEVNULL)
        self.addCleanup(desktop.end, process)
        window = eventually(lambda: desktop.visible_windows("other"), "the other window is open")[0]
        eventually(lambda: desktop.has_keyboard(window), "the other window has the keyboard")
        subprocess.run(["xprop", "-id", window.identifier, "-f", "_NET_WM_USER_TIME", "32c", "-set",
                        "_NET_WM_USER_TIME", str(server_time())], check=True)
        return window

    def click_icon(self, button=1):
        """Alternates between two ends of the icon: two clicks in one place may be taken for a double click."""
        icon = eventually(desktop.tray_icon, "the icon is in the tray")
        self.clicks = getattr(self, "clicks", 0) + 1
        desktop.click(icon.x + (5 if self.clicks % 2 else icon.width - 5), icon.center[1], button)

    def assert_clipboard(self, text):
        eventually(lambda: desktop.clipboard() == text, f"the clipboard holds {text[:40]!r}")


class MainJob(DesktopTest):
    def setUp(self):
        self.show_tray()
        self.ravlin = self.start()

    def test_typing_and_return_rewrite_the_clipboard(self):
        self.copy("hello")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press_key("Return")
        self.assert_clipboard("HELLO")

    def test_a_row_can_be_pressed_by_assistive_technology_and_the_status_be_read(self):
        self.copy("hello")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press("UPPERCASE")
        wait_for_text("UPPERCASE — ready, paste with ⌘V  (5→5 chars)")
        self.assert_clipboard("HELLO")

    def test_assistive_technology_finds_what_is_written_down(self):
        kept = pathlib.Path(__file__).with_name("panel_tree.txt").read_text()
        self.copy("hello")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("json")
        desktop.press_key("Return")
        wait_for_text("JSON Pretty — ready, paste with ⌘V  (5→5 chars)")
        self.assertEqual(desktop.accessible_tree(), kept)

    def test_a_row_can_be_clicked_and_the_panel_stays_for_the_next(self):
        self.copy("hello world")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("case")
        desktop.click_on("UPPERCASE")
        self.assert_clipboard("HELLO WORLD")
        desktop.click_on("lowercase")
        self.assert_clipboard("hello world")

    def test_an_empty_clipboard_is_told(self):
        subprocess.run(["xsel", "--clipboard", "--clear"], check=True)
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press("UPPERCASE")
        wait_for_text("Clipboard is empty — copy some text first")

    def seconds_from_press_to(self, status):
        started = time.monotonic()
        desktop.press("UPPERCASE")
        wait_for_text(status)
        return time.monotonic() - started

    def test_a_hung_program_costs_two_seconds_and_keeps_its_clipboard(self):
        self.copy("hello")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        usual = self.seconds_from_press_to("UPPERCASE — ready, paste with ⌘V  (5→5 chars)")
        owner = self.copy("precious")
        owner.send_signal(signal.SIGSTOP)
        self.assertLess(self.seconds_from_press_to(NO_TEXT) - usual, 2.5)
        owner.send_signal(signal.SIGCONT)
        self.assert_clipboard("precious")

    def test_a_broken_connection_to_the_clipboard_is_made_anew_and_the_text_stays(self):
        self.copy("hello")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press_key("Return")
        self.assert_clipboard("HELLO")
        subprocess.run(["xkill", "-id", desktop.selection_owner("CLIPBOARD")], check=True, stdout=subprocess.DEVNULL)
        self.assert_clipboard("HELLO")
        desktop.press_key("Escape", "Escape")
        wait_for_no_panel()
        self.copy("again")
        self.click_icon()
        wait_for_panel()
        desktop.press_key("Return", "Down", "Return")
        desktop.type_text("upper")
        desktop.press_key("Return")
        self.assert_clipboard("AGAIN")

    def resident_megabytes(self):
        status = pathlib.Path(f"/proc/{self.ravlin.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s*(\d+)", status)[1]) / 1024

    def test_the_memory_of_a_large_text_is_given_back_when_somebody_else_copies(self):
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        desktop.button("UPPERCASE")
        before = self.resident_megabytes()
        self.copy("line of text\n" * 2000000)
        desktop.press("UPPERCASE")
        wait_for_text("UPPERCASE — ready, paste with ⌘V  (26000000→26000000 chars)")
        self.assertGreater(self.resident_megabytes(), before + 20)
        self.copy("small")
        eventually(lambda: self.resident_megabytes() < before + 8, "the memory is given back")

    def test_nothing_is_written_to_the_log_but_which_clipboard_is_used(self):
        self.click_icon()
        wait_for_panel()
        self.ravlin.process.terminate()
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assertEqual(self.ravlin.output(), LOG)


class ScreenReader(DesktopTest):
    """The way of a user who sees nothing of the panel. spoken.txt tells what is done, after ">", and what a screen
    reader has to say."""

    def do(self, step):
        if step == "opens the panel":
            self.click_icon()
        elif step == "pastes":
            self.reader.lines.append(f"text on the clipboard: {desktop.clipboard()}")
        elif step.startswith("types "):
            desktop.type_text(step.removeprefix("types "))
        else:
            desktop.press_key(*step.removeprefix("presses ").split(", "))

    def test_from_opening_to_success_and_from_a_search_without_matches_back(self):
        kept = pathlib.Path(__file__).with_name("spoken.txt").read_text().splitlines()
        self.show_tray()
        with desktop.ScreenReader() as self.reader:
            self.start()
            eventually(desktop.accessible_application, "the screen reader sees the program")
            self.copy("hello")
            expected = []
            for line in kept:
                expected.append(line)
                if line.startswith("> "):
                    self.reader.lines.append(line)
                    self.do(line.removeprefix("> "))
                    continue
                try:
                    eventually(lambda: len(self.reader.lines) >= len(expected), line, seconds=10)
                except AssertionError:
                    self.fail("\n".join(["what was said is:", *self.reader.lines]))
        self.assertEqual("\n".join(self.reader.lines), "\n".join(kept))

    def test_what_it_copies_from_the_search_field_is_transformed_like_any_copy(self):
        self.show_tray()
        self.start()
        self.copy("other")
        self.click_icon()
        wait_for_panel()
        desktop.search_for("upper")
        self.assertTrue(Atspi.EditableText.copy_text(desktop.search_field(), 0, 5))
        self.assert_clipboard("upper")
        desktop.press("UPPERCASE")
        wait_for_text("UPPERCASE — ready, paste with ⌘V  (5→5 chars)")
        self.assert_clipboard("UPPER")


class Panel(DesktopTest):
    def test_opens_under_the_icon(self):
        self.show_tray()
        self.start()
        self.click_icon()
        panel = wait_for_panel()
        self.assertLessEqual(abs(panel.y - 24), 2, panel)
        self.assertEqual(panel.x + panel.width, 1280, panel)

    def test_opens_above_an_icon_at_the_bottom_and_keeps_its_top_edge_while_it_shrinks(self):
        self.show_tray("bottom")
        self.start()
        self.click_icon()
        tall = wait_for_panel()
        self.assertLessEqual(abs(tall.y + tall.height - 776), 2, tall)
        desktop.type_text("upper")
        low = eventually(lambda: next((window for window in [desktop.panel_window()]
                                       if window.height < tall.height), None), "the panel has shrunk")
        self.assertEqual(low.y, tall.y)

    def test_opens_at_the_click_on_a_scaled_desktop(self):
        tray = self.show_notifier_tray()
        self.start(QT_SCALE_FACTOR="1.25")
        tray.activate(800, 790)
        panel = wait_for_panel()
        self.assertEqual(panel.width, 425)
        self.assertLess(abs(panel.center[0] - 800), 3, panel)
        self.assertLess(abs(panel.y + panel.height - 790), 3, panel)

    def test_is_in_no_task_bar_and_no_pager_however_often_it_opens(self):
        self.show_tray()
        self.start()
        for _ in range(2):
            self.click_icon()
            states = desktop.output_of("xprop", "-id", wait_for_panel().identifier, "_NET_WM_STATE")
            for state in ("_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_ABOVE"):
                self.assertIn(state, states)
            self.click_icon()
            wait_for_no_panel()

    def test_closes_at_the_second_click_and_opens_at_the_third(self):
        self.show_tray()
        self.start()
        self.click_icon()
        wait_for_panel()
        self.click_icon()
        wait_for_no_panel()
        self.click_icon()
        wait_for_panel()

    def test_takes_the_keyboard_each_time_it_opens(self):
        self.show_tray()
        self.start()
        self.copy("hello")
        for search, result in (("upper", "HELLO"), ("lower", "hello")):
            self.click_icon()
            wait_for_panel()
            desktop.type_text(search)
            desktop.press_key("Return")
            self.assert_clipboard(result)
            self.click_icon()
            wait_for_no_panel()

    def test_closes_at_the_second_escape_when_something_is_searched_for(self):
        self.show_tray()
        self.start()
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        eventually(lambda: desktop.find_accessible(lambda each: each.get_name() == "UPPERCASE"), "the search is done")
        desktop.press_key("Escape")
        desktop.button("Clean URL")
        self.assertIsNotNone(desktop.panel_window())
        desktop.press_key("Escape")
        wait_for_no_panel()

    def test_closes_when_another_window_takes_the_keyboard(self):
        self.show_tray()
        self.start()
        other = self.other_window_in_use()
        self.click_icon()
        wait_for_panel()
        desktop.click(*other.center)
        wait_for_no_panel()

    def test_is_shown_at_the_start_where_there_is_no_tray_and_the_icon_when_one_comes(self):
        self.start()
        wait_for_panel()
        self.show_tray()
        eventually(desktop.tray_icon, "the icon is in the tray")

    def test_is_not_shown_at_the_start_where_there_is_a_tray(self):
        self.show_tray()
        ravlin = self.start()
        eventually(desktop.tray_icon, "the icon is in the tray")
        with self.assertRaises(AssertionError):  # waits longer than the program does for a tray
            eventually(desktop.panel_window, "the panel is open", seconds=3)
        self.assertIsNone(ravlin.process.poll())


class Still(DesktopTest):
    """Nothing moves under a still pointer, and everything is on the screen: on screens of any size and scale."""

    SCALES = ("1", "1.25", "1.5", "2")
    LONGEST = "Normalize dashes & ellipsis"

    def setUp(self):
        self.screen = desktop.screen_size()
        self.scale = 1

    def start_scaled(self, scale):
        self.scale = float(scale)
        return self.start(QT_SCALE_FACTOR=scale)

    def on_screen(self, accessible):
        """Where it is on the screen, in device pixels: left, top, right, bottom."""
        area = desktop.extents_of(accessible)
        return tuple(round(each * self.scale) for each in (area.x, area.y, area.x + area.width, area.y + area.height))

    def place_of_field(self):
        return self.on_screen(eventually(desktop.search_field, "the panel is open"))[:2]

    def lower_half_of(self, name):
        left, top, right, bottom = self.on_screen(desktop.button(name))
        return (left + right) // 2, top + (bottom - top) * 3 // 4

    def check_two_clicks(self):
        """Two clicks with the pointer still run one transform twice; the first one brings the status line."""
        desktop.type_text("case")
        desktop.point_at(*self.lower_half_of("UPPERCASE"))
        field = self.place_of_field()
        for text in ("hello", "other"):
            self.copy(text)
            desktop.click_again()
            self.assert_clipboard(text.upper())
            self.assertEqual(self.place_of_field(), field)

    def check_typing_moves_nothing(self):
        field = self.place_of_field()
        for letter in "jsonx":
            desktop.type_text(letter)
        eventually(lambda: desktop.find_accessible(lambda each: each.get_name() == "No transforms match “jsonx”."),
                   "the search is done")
        self.assertEqual(self.place_of_field(), field)
        desktop.press_key("Escape")
        desktop.button("Clean URL")
        self.assertEqual(self.place_of_field(), field)

    def check_everything_is_on_the_screen(self, beside=None):
        """With the longest possible status, the footer is whole, and so is the icon."""
        self.copy("x" * 1000000)
        desktop.search_for(self.LONGEST)
        desktop.press(self.LONGEST)
        desktop.search_for("")
        status = eventually(lambda: desktop.find_accessible(lambda each: each.get_name().startswith(self.LONGEST + " — ")),
                            "the status is shown")
        panel = self.panel_on_screen()
        for part in (status, desktop.button("Quit"), desktop.button("Check for Updates…")):
            left, top, right, bottom = self.on_screen(part)
            self.assertTrue(panel[0] <= left and right <= panel[2] and panel[1] <= top and bottom <= panel[3], part)
        self.assertTrue(panel[0] >= 0 and panel[1] >= 0 and panel[2] <= self.screen[0] and panel[3] <= self.screen[1],
                        panel)
        if beside:
            self.assertTrue(panel[3] <= beside.y or panel[1] >= beside.y + beside.height, (panel, beside))

    def panel_on_screen(self):
        panel = desktop.panel_window()
        return panel.x, panel.y, panel.x + panel.width, panel.y + panel.height

    def check_at_icon(self, edge):
        self.show_tray(edge)
        for scale in self.SCALES:
            if self.screen[1] / float(scale) < 450:
                continue
            with self.subTest(scale=scale):
                ravlin = self.start_scaled(scale)
                try:
                    self.click_icon()
                    wait_for_panel()
                    self.check_all(beside=desktop.tray_icon())
                finally:
                    ravlin.process.terminate()
                    ravlin.wait_for_end()
                    eventually(lambda: desktop.tray_icon() is None, "the icon is gone")

    def check_all(self, beside=None):
        self.check_typing_moves_nothing()
        self.check_two_clicks()
        desktop.press_key("Escape")
        self.check_everything_is_on_the_screen(beside)

    def test_at_a_bar_at_the_top(self):
        self.check_at_icon("top")

    def test_at_a_bar_at_the_bottom(self):
        self.check_at_icon("bottom")

    def test_in_the_middle(self):
        self.show_tray()
        desktop.point_at(self.screen[0] // 2, self.screen[1] // 2)
        self.start_scaled("1")
        eventually(desktop.tray_icon, "the icon is in the tray")
        desktop.activate_by_name()
        wait_for_panel()
        self.check_all()


class StillInLayer(Still):
    """The same in the corner of a Wayland screen, with a compositor that knows layers."""

    SCALES = ("1", "1.5", "2")

    test_at_a_bar_at_the_top = test_at_a_bar_at_the_bottom = test_in_the_middle = None

    def on_screen(self, accessible):
        left, top, right, bottom = super().on_screen(accessible)
        x, y = self.corner()
        return left + x, top + y, right + x, bottom + y

    def corner(self):
        margin, width = 4, 340
        return round(self.screen[0] - (width + margin) * self.scale), round(margin * self.scale)

    def panel_on_screen(self):
        area = desktop.extents_of(eventually(lambda: desktop.find_accessible(
            lambda each: each.get_name() == "Ravlin" and each.get_role_name() == "frame"), "the panel is there"))
        x, y = self.corner()
        return x, y, round(x + area.width * self.scale), round(y + area.height * self.scale)

    def test_in_the_corner(self):
        for scale in self.SCALES:
            if self.screen[1] / float(scale) < 450:
                continue
            with self.subTest(scale=scale):
                subprocess.run(["swaymsg", f"output * scale {scale}"], check=True, stdout=subprocess.DEVNULL)
                self.scale = float(scale)
                ravlin = self.start(QT_QPA_PLATFORM="wayland", DISPLAY="")
                try:
                    eventually(lambda: desktop.search_field(has_keyboard=True),
                               "the panel is open, as there is no tray")
                    self.check_all()
                finally:
                    ravlin.process.terminate()
                    ravlin.wait_for_end()
                    eventually(lambda: desktop.accessible_application() is None, "the program is gone")


class NotifierTray(DesktopTest):
    def setUp(self):
        self.tray = self.show_notifier_tray()
        self.ravlin = self.start()
        self.tray.wait_for_item()

    def test_activation_opens_the_panel_at_the_icon(self):
        self.tray.activate(900, 790)
        panel = wait_for_panel()
        self.assertLess(abs(panel.x + panel.width // 2 - 900), 2, panel)
        self.assertGreater(panel.y + panel.height, 770, panel)

    def test_a_host_that_gives_the_same_place_for_every_click_is_not_believed(self):
        self.tray.activate(900, 790, hint=(0, 26))
        panel = wait_for_panel()
        self.assertLess(abs(panel.x + panel.width // 2 - 900), 2, panel)
        self.assertGreater(panel.y + panel.height, 770, panel)

    def test_activation_gives_the_panel_the_keyboard_though_another_window_is_in_use(self):
        self.tray.activate(900, 790)
        wait_for_panel()
        desktop.type_text("a")  # an event whose time is old when the panel opens again
        desktop.press_key("Escape", "Escape")
        wait_for_no_panel()
        self.other_window_in_use()
        self.tray.activate(900, 790)
        wait_for_panel()

    def test_a_click_that_takes_the_keyboard_away_closes_the_panel_for_good(self):
        other = self.other_window_in_use()
        self.tray.activate(900, 790)
        wait_for_panel()
        desktop.click(*other.center)
        wait_for_no_panel()
        self.tray.activate(900, 790)
        self.assertIsNone(desktop.panel_window())
        self.tray.activate(900, 790)
        wait_for_panel()

    def test_the_menu_opens_the_panel(self):
        self.tray.choose_in_menu("Open Ravlin")
        wait_for_panel()

    def test_the_menu_checks_for_updates(self):
        self.tray.choose_in_menu("Check for Updates…")
        window = eventually(lambda: desktop.visible_windows("Software Update"), "the update window is open")[0]
        self.assertIn("Icon (32 x 32)", desktop.output_of("xprop", "-id", window.identifier, "_NET_WM_ICON"))
        eventually(lambda: desktop.has_keyboard(window), "it has the keyboard")
        eventually(lambda: desktop.find_accessible(lambda each: each.get_name() == "OK"
                                                   and desktop.has_focus(each)), "its button has the keyboard")
        desktop.press_key("Escape")
        eventually(lambda: not desktop.visible_windows("Software Update"), "the window is closed")

    def test_the_menu_quits(self):
        self.tray.choose_in_menu("Quit")
        self.assertEqual(self.ravlin.wait_for_end(), 0)

    def test_the_item_is_off_the_bus_after_quit_though_the_clipboard_is_still_served(self):
        self.copy("hello")
        self.tray.activate(900, 790)
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press_key("Return")
        self.assert_clipboard("HELLO")
        self.ravlin.process.terminate()
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assertEqual(len(self.ravlin.lingering_children()), 1)
        eventually(lambda: not desktop.is_on_bus(self.tray.items[-1]), "the item is off the bus")
        self.assertFalse(desktop.is_on_bus("org.ravlin.ravlin"))

    def test_the_item_registers_again_when_the_tray_restarts(self):
        self.tray.close()
        with desktop.NotifierTray() as tray:
            tray.activate(900, 790)
            wait_for_panel()


class Start(DesktopTest):
    def test_with_version_or_help_only_answers_and_needs_no_desktop(self):
        for option, answer in (("--version", r"ravlin \d+\.\d+\.\d+\n"), ("-v", r"ravlin \d+\.\d+\.\d+\n"),
                               ("--help", r"Usage: ravlin\n.*--version.*"), ("-h", r"Usage: ravlin\n.*")):
            answered = subprocess.run([PROGRAM, option], env={}, capture_output=True, text=True,
                                      timeout=desktop.DEADLINE_SECONDS)
            self.assertEqual((answered.returncode, answered.stderr), (0, ""))
            self.assertRegex(answered.stdout, re.compile(answer, re.DOTALL))

    def test_with_nohup_outlives_the_terminal(self):
        self.show_tray()
        process = subprocess.Popen(["nohup", PROGRAM], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        self.addCleanup(desktop.end, process)
        eventually(desktop.tray_icon, "the icon is in the tray")
        process.send_signal(signal.SIGHUP)
        self.click_icon()
        wait_for_panel()
        self.assertIsNone(process.poll())

    def test_by_the_session_bus_opens_the_panel(self):
        self.show_tray()
        services = pathlib.Path(os.environ["XDG_DATA_HOME"], "dbus-1", "services")
        services.mkdir(parents=True)
        self.addCleanup(shutil.rmtree, services)
        (services / "org.ravlin.ravlin.service").write_text(
            f"[D-BUS Service]\nName=org.ravlin.ravlin\nExec={PROGRAM}\n")
        desktop.call_bus("ReloadConfig")
        desktop.activate_by_name()
        pid, = desktop.call_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", ("org.ravlin.ravlin",)))
        self.addCleanup(eventually, lambda: not desktop.is_on_bus("org.ravlin.ravlin"), "the program has ended")
        self.addCleanup(os.kill, pid, signal.SIGTERM)
        wait_for_panel()
        eventually(desktop.tray_icon, "the icon is in the tray")

    def test_where_there_is_no_session_bus_shows_the_icon(self):
        self.show_tray()
        self.start(**NO_BUS)
        self.click_icon()
        wait_for_panel()


class Wayland(DesktopTest):
    """On a compositor with data control, without the keyboard focus: only the clipboard differs."""

    def setUp(self):
        self.ravlin = self.start(QT_QPA_PLATFORM="wayland")
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program has started")
        desktop.activate_by_name()
        desktop.search_for("upper")

    def test_the_clipboard_is_rewritten(self):
        self.copy("hello")
        desktop.press("UPPERCASE")
        wait_for_text("UPPERCASE — ready, paste with ⌘V  (5→5 chars)")
        self.assert_clipboard("HELLO")

    def test_the_panel_is_at_the_top_right_and_has_the_keyboard_each_time(self):
        background = desktop.wayland_pixel(5, 5)
        corner, middle = (1150, 30), (640, 400)
        self.enterContext(desktop.wayland_keyboard())
        for search, result in (("upper", "HELLO"), ("lower", "hello")):
            eventually(lambda: desktop.wayland_pixel(*corner) != background, "the panel is in the corner")
            self.assertEqual(desktop.wayland_pixel(*middle), background)
            self.copy("Hello")
            desktop.search_for("")
            desktop.type_text(search)
            desktop.press_key("Return")
            self.assert_clipboard(result)
            desktop.press_key("Escape", "Escape")
            eventually(lambda: desktop.wayland_pixel(*corner) == background, "the panel is closed")
            desktop.activate_by_name()

    def test_large_texts_are_rewritten_byte_for_byte(self):
        text = "".join(f"line {number}\n" for number in range(100000))
        self.copy(text)
        desktop.press("UPPERCASE")
        wait_for_text(f"UPPERCASE — ready, paste with ⌘V  ({len(text)}→{len(text)} chars)")
        self.assertEqual(desktop.clipboard(), text.upper())

    def test_a_hung_program_keeps_its_clipboard(self):
        owner = self.copy("precious")
        owner.send_signal(signal.SIGSTOP)
        desktop.press("UPPERCASE")
        wait_for_text(NO_TEXT)
        owner.send_signal(signal.SIGCONT)
        self.assert_clipboard("precious")

    def test_the_text_stays_after_the_end_until_somebody_copies(self):
        self.copy("hello")
        desktop.press("UPPERCASE")
        self.assert_clipboard("HELLO")
        self.ravlin.process.terminate()
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assertEqual(desktop.clipboard(), "HELLO")
        lingering, = self.ravlin.lingering_children()
        self.copy("next")
        os.waitpid(lingering, 0)
        self.assertEqual(self.ravlin.output(), "clipboard: Wayland\n")


class SwayBinding(DesktopTest):
    """The line for sway's configuration that the README gives."""

    @unittest.skipIf(os.getuid() == 0, "sway does not run as the administrator")
    def test_a_key_opens_the_panel(self):
        line, = re.findall(r"`(bindsym .*) ravlin`", readme.section("Open it with a key"))
        subprocess.run(["swaymsg", "set $mod Mod4"], check=True, stdout=subprocess.DEVNULL)
        # The session's bus is newer here than the compositor, which does not know it.
        bus = os.environ["DBUS_SESSION_BUS_ADDRESS"].split(",")[0]
        second = f"env DBUS_SESSION_BUS_ADDRESS={bus} {os.path.abspath(PROGRAM)}"
        subprocess.run(["swaymsg", f"{line} {second}"], check=True, stdout=subprocess.DEVNULL)
        self.enterContext(desktop.wayland_keyboard())
        self.start(QT_QPA_PLATFORM="wayland")
        eventually(lambda: desktop.search_field(has_keyboard=True), "the panel is open, as there is no tray")
        desktop.press_key("Escape")
        eventually(lambda: desktop.search_field() is None, "the panel is closed")
        subprocess.run(["wtype", "-M", "logo", "-k", "v", "-m", "logo"], check=True)
        eventually(desktop.search_field, "the panel is open again")


class Waybar(DesktopTest):
    """A tray of the kind that sway has, whose icons do not say where they are."""

    ITEMS = ("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
             GLib.Variant("(ss)", ("org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems")))
    BAR, CORNER, MIDDLE = (200, 14), (1150, 60), (640, 400)

    def setUp(self):
        if not shutil.which("waybar"):
            self.skipTest("waybar is not installed")
        folder = pathlib.Path(os.environ["HOME"])
        (folder / "waybar.json").write_text('{"height": 28, "modules-right": ["tray"], "tray": {"icon-size": 20}}')
        (folder / "waybar.css").write_text("window { background: white; }")
        self.background = desktop.wayland_pixel(*self.MIDDLE)
        self.bar = self.start_bar()
        self.ravlin = self.start(QT_QPA_PLATFORM="wayland")

    def start_bar(self):
        home = os.environ["HOME"]
        bar = subprocess.Popen(["waybar", "-c", home + "/waybar.json", "-s", home + "/waybar.css"],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(desktop.end, bar)
        eventually(lambda: desktop.wayland_pixel(*self.BAR) == (255, 255, 255), "the bar is shown")
        return bar

    def item(self):
        return eventually(lambda: desktop.is_on_bus("org.kde.StatusNotifierWatcher") and desktop.call(*self.ITEMS)[0],
                          "an item has registered")[0].split("/")[0]

    def click(self):
        desktop.call(self.item(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
                     GLib.Variant("(ii)", (8, 14)))

    def wait_for_corner(self, is_open):
        eventually(lambda: (desktop.wayland_pixel(*self.CORNER) != self.background) == is_open,
                   f"the panel is {'open' if is_open else 'closed'}")

    def test_the_icon_is_shown_and_the_panel_opens_below_the_bar_and_closes(self):
        self.enterContext(desktop.wayland_keyboard())
        self.item()
        eventually(lambda: any(desktop.wayland_pixel(x, 14) != (255, 255, 255) for x in range(1240, 1280, 2)),
                   "the icon is in the bar")
        for _ in range(2):
            self.click()
            self.wait_for_corner(is_open=True)
            self.assertEqual(desktop.wayland_pixel(*self.BAR), (255, 255, 255))
            self.assertEqual(desktop.wayland_pixel(*self.MIDDLE), self.background)
            self.click()
            self.wait_for_corner(is_open=False)

    def test_the_icon_is_there_again_when_the_bar_restarts(self):
        self.item()
        desktop.end(self.bar)
        eventually(lambda: not desktop.is_on_bus("org.kde.StatusNotifierWatcher"), "the bar has gone")
        self.start_bar()
        self.click()
        self.wait_for_corner(is_open=True)


class NestedXWayland(DesktopTest):
    """On a compositor without data control, whose X server knows what is copied on either side."""

    def setUp(self):
        self.ravlin = self.start(QT_QPA_PLATFORM="wayland", DISPLAY=os.environ["XWAYLAND_DISPLAY"])
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program has started")
        desktop.activate_by_name()  # before it opens by itself, since there is no tray

    def test_copies_of_wayland_programs_are_rewritten(self):
        for text in ("hello", "".join(f"line {number}\n" for number in range(100000))):
            self.copy(text)  # closes the panel
            desktop.activate_by_name()
            desktop.search_for("upper")
            desktop.press("UPPERCASE")
            self.assert_clipboard(text.upper())
        self.ravlin.process.terminate()
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assert_clipboard(text.upper())
        self.assertEqual(self.ravlin.output(), "clipboard: X11 (Wayland: the compositor offers no data control)\n")


class NestedFocus(DesktopTest):
    """On a compositor without data control, and without an X server: while the panel has the keyboard."""

    def setUp(self):
        self.ravlin = self.start(QT_QPA_PLATFORM="wayland", DISPLAY="")
        # Before it opens by itself, since there is no tray, and takes the keyboard from others.
        self.open_panel()
        self.close_panel()

    def open_panel(self):
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program has started")
        desktop.activate_by_name()
        eventually(lambda: desktop.search_field(has_keyboard=True), "the panel has the keyboard")

    def close_panel(self):
        desktop.press_key("Escape", "Escape")
        eventually(lambda: desktop.search_field() is None, "the panel is closed")

    def use(self, search, *answers):
        desktop.type_text(search)
        eventually(lambda: desktop.text_of(desktop.search_field()) == search, "the search field has the keys")
        desktop.press_key("Return")
        eventually(lambda: desktop.find_accessible(lambda each: each.get_name().startswith(answers)),
                   f"the panel says {answers}")

    def rewrite(self, search, *answers):
        self.open_panel()
        self.use(search, *answers)
        self.close_panel()

    def test_the_clipboard_is_rewritten_as_often_as_wanted(self):
        for text in ("hello", "again"):
            self.copy(text)
            self.rewrite("upper", "UPPERCASE — ready")
            self.assert_clipboard(text.upper())

    def test_several_transforms_work_on_one_text(self):
        self.copy("hello")
        self.open_panel()
        self.use("upper", "UPPERCASE — ready")
        desktop.press_key("Escape")
        self.use("rot13", "ROT13 — ready")
        self.close_panel()
        self.assert_clipboard("URYYB")

    def test_large_texts_are_rewritten_byte_for_byte(self):
        text = "".join(f"line {number}\n" for number in range(100000))
        self.copy(text)
        self.rewrite("upper", "UPPERCASE — ready")
        self.assert_clipboard(text.upper())

    def test_a_hung_program_keeps_its_clipboard(self):
        owner = self.copy("precious")
        owner.send_signal(signal.SIGSTOP)
        # What only Qt can read, as on Weston, looks empty.
        self.rewrite("upper", NO_TEXT, "Clipboard is empty")
        owner.send_signal(signal.SIGCONT)
        self.assert_clipboard("precious")

    def test_it_ends_at_once_and_leaves_nobody_behind(self):
        self.copy("hello")
        self.rewrite("upper", "UPPERCASE — ready")
        self.ravlin.process.terminate()
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assertEqual(self.ravlin.lingering_children(), [])
        self.assertEqual(self.ravlin.output(), "clipboard: Qt (Wayland: the compositor offers no data control; "
                                               "X11: no display answers)\n")


class SecondStart(DesktopTest):
    def test_opens_the_panel_of_the_first_though_another_window_is_in_use_and_ends(self):
        self.show_tray()
        self.start()
        eventually(desktop.tray_icon, "the icon is in the tray")
        self.copy("hello")
        self.other_window_in_use()
        self.assertEqual(self.start().wait_for_end(), 0)
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press_key("Return")
        self.assert_clipboard("HELLO")

    def test_finds_an_open_panel_and_leaves_it_where_it_is(self):
        self.show_tray()
        self.start()
        self.click_icon()
        before = wait_for_panel()
        subprocess.run(["xdotool", "mousemove", "100", "100"], check=True)
        self.assertEqual(self.start().wait_for_end(), 0)
        panel = wait_for_panel()
        self.assertEqual((panel.x, panel.y), (before.x, before.y))

    def test_is_what_a_script_asks_for_by_name(self):
        self.show_tray()
        self.start()
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program runs")
        for script in readme.scripts("Open it with a key"):
            subprocess.run(["sh", "-ec", script], check=True, stdout=subprocess.DEVNULL)
        wait_for_panel()

    def test_is_what_the_desktop_asks_for_by_name(self):
        self.show_tray()
        self.start()
        eventually(desktop.tray_icon, "the icon is in the tray")
        desktop.activate_by_name()
        wait_for_panel()

    def test_becomes_the_first_when_that_has_ended(self):
        self.show_tray()
        first = self.start()
        eventually(desktop.tray_icon, "the icon is in the tray")
        first.process.kill()
        first.wait_for_end()
        eventually(lambda: desktop.tray_icon() is None, "the icon is gone")
        self.start()
        eventually(desktop.tray_icon, "the icon is in the tray")


class Quit(DesktopTest):
    """Every way to end the program ends it at once, and loses nothing."""

    def setUp(self):
        self.show_tray()
        self.ravlin = self.start()
        self.copy("hello")
        self.click_icon()
        wait_for_panel()
        desktop.type_text("upper")
        desktop.press_key("Return")
        self.assert_clipboard("HELLO")

    def check_end(self):
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assertEqual(desktop.clipboard(), "HELLO")
        eventually(lambda: desktop.tray_icon() is None, "the icon is gone")
        self.assertIsNone(desktop.panel_window())
        self.assertEqual(self.ravlin.output(), LOG)  # and no process keeps the output open
        self.assertEqual(len(self.ravlin.lingering_children()), 1)
        self.copy("something else")
        eventually(lambda: not self.ravlin.lingering_children(), "the lingering process has ended")

    def test_by_the_button(self):
        desktop.click_on("Quit")
        self.check_end()

    def test_by_the_icons_menu(self):
        desktop.press_key("Escape", "Escape")
        wait_for_no_panel()
        self.click_icon(button=3)
        eventually(desktop.menu_window, "the menu is open")
        desktop.press_key("Up", "Return")
        self.check_end()

    def test_by_sigterm(self):
        self.ravlin.process.send_signal(signal.SIGTERM)
        self.check_end()

    def test_by_sigint(self):
        self.ravlin.process.send_signal(signal.SIGINT)
        self.check_end()

    def test_by_sighup(self):
        self.ravlin.process.send_signal(signal.SIGHUP)
        self.check_end()

    def test_leaves_no_process_where_another_program_owns_the_clipboard(self):
        self.copy("something else")
        self.ravlin.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.ravlin.wait_for_end(), 0)
        self.assertEqual(self.ravlin.lingering_children(), [])
        self.assert_clipboard("something else")


class ClipboardManager(DesktopTest):
    """Clipboard managers, each of another kind, are neither waited for nor needed at the end."""

    def show(self, *manager):
        if not shutil.which(manager[0]):
            self.skipTest(f"{manager[0]} is not installed")
        process = subprocess.Popen(manager, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(desktop.end, process)
        eventually(lambda: desktop.selection_owner("CLIPBOARD_MANAGER") != "0", "the clipboard manager is there")

    def rewrite(self, ravlin, text):
        """Copies a text and has it rewritten, through the panel that the desktop opens by the program's name."""
        self.copy(text)
        desktop.activate_by_name()
        wait_for_panel()
        desktop.search_for("upper")
        desktop.press("UPPERCASE")
        # Does not look at the clipboard first: a program that loses it may abandon a reader in the middle of a large
        # text.
        wait_for_text(f"UPPERCASE — ready, paste with ⌘V  ({len(text)}→{len(text)} chars)")
        self.assertEqual(desktop.clipboard(), text.upper())

    def check(self):
        text = "".join(f"line {number}\n" for number in range(800000))  # about 10 MB
        self.show_tray()
        for end in (signal.SIGTERM, signal.SIGINT):
            ravlin = self.start()
            eventually(desktop.tray_icon, "the icon is in the tray")
            self.rewrite(ravlin, text)
            asked = time.monotonic()
            ravlin.process.send_signal(end)
            self.assertEqual(ravlin.wait_for_end(), 0)
            seconds = time.monotonic() - asked
            self.assertLess(seconds, 2)  # toolkits wait for five seconds
            self.assertEqual(desktop.clipboard(), text.upper())
            again = self.start()
            eventually(desktop.tray_icon, "the icon is in the tray")
            self.rewrite(again, "hello")
            self.copy("something else")
            again.process.terminate()
            self.assertEqual(again.wait_for_end(), 0)
            eventually(lambda: not ravlin.lingering_children(), "the lingering processes have ended")
            self.assert_clipboard("something else")

    def test_none(self):
        self.check()

    def test_that_takes_over_what_programs_leave(self):
        self.show("xfsettingsd", "--disable-wm-check")
        self.check()

    def test_that_remembers_all_that_is_copied(self):
        self.show("xfce4-clipman")
        self.check()


if __name__ == "__main__":
    desktop.adopt_orphans()
    unittest.main()
