"""What is played on every desktop, and what the result must be. A check that fails says how; later ones go on."""
import contextlib
import pathlib
import subprocess
import traceback

import numpy

from kinds.desktop import ravlin_pid, ravlin_processes, stop_ravlin
from ravlin_desktop import accessible_application, descendants, eventually, press, search_field, text_of
from screen import changed_areas, contrast, find_icon, luminance, save

DRAWING = "/mnt/project/data/icons/symbolic/org.ravlin.ravlin-symbolic.svg"
MINIMUM_CONTRAST = 3.0  # WCAG's for graphical objects
WIDTH, MARGIN = 340, 90  # of the panel, and what its shadow may add
TEXT, RESULT = "straße und Ölberg", "STRASSE UND ÖLBERG"


class Failure(Exception):
    """What a user would complain about."""


def require(condition, complaint):
    if not condition:
        raise Failure(complaint)


class NotHere(Exception):
    """The desktop does not have this."""


class Scenario:
    # In this order; the names are the columns of the table.
    CHECKS = {
        "installed": ["start", "icon", "click", "windows", "search", "close", "clipboard", "second start", "shortcut", "dark",
                      "tray restart", "login", "quit", "session end"],
        "scale-2": ["start", "icon", "click", "search", "close"],
        "uninstalled": ["start", "icon", "click"],
    }

    def __init__(self, desktop, pictures, way):
        self.desktop, self.screen, self.pictures, self.way = desktop, desktop.screen, pathlib.Path(pictures), way
        self.icon = None
        self.without_panel = None

    def play(self, checks):
        """Yields the name of each check, "ok", "FAIL" or "-", and details."""
        for name in checks:
            try:
                detail = getattr(self, "check_" + name.replace(" ", "_"))()
                yield name, "ok", detail or ""
            except NotHere as reason:
                yield name, "-", str(reason)
            except (Failure, AssertionError) as complaint:
                yield name, "FAIL", str(complaint)
            except Exception as fault:  # a fault in one check must not hide what the others find
                traceback.print_exc()
                yield name, "FAIL", f"the check itself: {fault!r}"
            with contextlib.suppress(Exception):
                self.picture(name + " (end)")
            with contextlib.suppress(Exception):
                self.leave_panel_closed()

    # What the checks are made of

    def picture(self, name):
        pixels = self.screen.pixels()
        save(pixels, self.pictures / f"{self.way} {name}.png")
        return pixels

    def leave_panel_closed(self):
        for _ in range(4):
            if search_field() is None:
                return
            self.screen.key("Escape")
            with contextlib.suppress(AssertionError):
                eventually(lambda: search_field() is None, "the panel is closed", 2)

    def look_for_icon(self, seconds=15):
        """The icon in the bar, without the pointer and the highlight below it."""
        self.screen.move(self.screen.width // 2, self.screen.height // 2)
        sizes = [size * self.desktop.scale for size in range(12, 29)]
        sizes += [size * self.desktop.scale + 1 for size in range(12, 29) if self.desktop.scale > 1]

        def icon():
            return find_icon(self.screen.pixels(), self.desktop.bar(), DRAWING, sizes)

        with contextlib.suppress(AssertionError):
            return eventually(icon, "the icon is in the bar", seconds)
        raise Failure("no icon can be seen in the bar")

    def panel_area(self, before):
        """The part of the screen that the panel takes since the picture `before`."""
        least = WIDTH * self.desktop.scale

        def area():
            areas = changed_areas(before, self.screen.settled())
            return next((each for each in areas if least - 8 <= each.width <= least + MARGIN * self.desktop.scale and
                         each.height > least), None)

        with contextlib.suppress(AssertionError):
            return eventually(area, "the panel can be seen", 10)
        shown = "though assistive technology says it is open" if search_field() is not None else "nor is it open"
        raise Failure(f"no panel can be seen, {shown}; changed: {changed_areas(before, self.screen.pixels())[:3]}")

    def require_icon(self):
        if not self.desktop.has_tray:
            raise NotHere("no tray")
        require(self.icon is not None, "there is no icon to click")

    def open_by_click(self):
        self.require_icon()
        self.icon = self.look_for_icon()
        before = self.screen.settled()
        self.desktop.choose_icon(*self.icon.area.center)
        with contextlib.suppress(AssertionError):
            eventually(search_field, "the panel is open", 5)
        # The bar's reaction to the pointer must not count as part of the panel.
        self.screen.move(self.screen.width // 2, self.screen.height // 2)
        return self.panel_area(before)

    def wait_for_no_panel(self, how):
        with contextlib.suppress(AssertionError):
            eventually(lambda: search_field() is None, "the panel is closed", 5)
            return
        raise Failure(f"the panel stays open after {how}")

    def wait_for_open(self, how, seconds=10):
        with contextlib.suppress(AssertionError):
            return eventually(lambda: search_field(), "the panel is open", seconds)
        raise Failure(f"no panel after {how}")

    def wait_for_keyboard(self, how):
        with contextlib.suppress(AssertionError):
            return eventually(lambda: search_field(has_keyboard=True), "the panel has the keyboard", 5)
        raise Failure(f"the search field has not got the keyboard after {how}")

    # The checks

    def check_start(self):
        """Started from the menu, the icon appears and no panel, or without a tray the panel."""
        self.without_panel = self.screen.settled()
        self.picture("before")
        if self.desktop.is_installed:
            self.desktop.launch()
        else:
            self.desktop.run("ravlin", [self.desktop.program])
        eventually(ravlin_pid, "Ravlin runs", 15)
        if self.desktop.has_tray:
            return None
        self.wait_for_open("the start on a desktop without a tray")
        return f"panel {self.panel_area(self.without_panel)}"

    def check_icon(self):
        if not self.desktop.has_tray:
            raise NotHere("no tray")
        with contextlib.suppress(Failure):
            self.icon = self.look_for_icon()
        self.picture("icon")
        if self.icon is None:
            # Even if it cannot be seen, a click may find it.
            areas = [each for each in changed_areas(self.without_panel, self.screen.settled())
                     if each.overlaps(self.desktop.bar())]
            raise Failure(f"no icon can be seen; in the bar changed: {areas[:3]}")
        require(self.icon.contrast >= MINIMUM_CONTRAST, f"the icon can hardly be seen: {self.icon}")
        return str(self.icon)

    def check_click(self):
        """The panel opens next to the icon, whole, and covers no part of the bar."""
        panel = self.open_by_click()
        self.picture("panel")
        scale, icon = self.desktop.scale, self.icon.area
        detail = f"panel {panel}, icon {icon}"
        require(panel.right <= self.screen.width and panel.bottom <= self.screen.height, f"cut off: {detail}")
        require(not panel.overlaps(icon.shrunk(4)), f"the panel covers the icon: {detail}")
        require(panel.gap_to(icon) <= 40 * scale, f"the panel is {panel.gap_to(icon)} pixels from the icon: {detail}")
        return detail

    def check_windows(self):
        """The open panel is not listed with other windows: not in the bar, the switcher or the overview."""
        if self.desktop.has_tray:
            panel = self.open_by_click()
            before, after = self.screen.pixels(), None
            self.leave_panel_closed()
            self.wait_for_no_panel("Escape")
            after = self.screen.settled()
            self.screen.move(self.screen.width // 2, self.screen.height // 2)
            bar = self.desktop.bar()
            for area in changed_areas(before, after):
                own = area.overlaps(self.icon.area.grown(12 * self.desktop.scale)) or area.overlaps(panel)
                require(own or not area.overlaps(bar) or area.width < 40 * self.desktop.scale,
                        f"the bar shows the open panel at {area}")
            self.open_by_click()
        else:
            self.desktop.launch()
        self.wait_for_open("a click")
        listed = self.desktop.listed_windows()
        self.picture("windows")
        if listed is None:
            return "the bar only"
        require("Ravlin" not in listed, f"among the windows: {listed}")
        return None

    def check_search(self):
        if self.desktop.has_tray:
            self.open_by_click()
        else:
            self.desktop.launch()
        self.wait_for_keyboard("opening")
        self.screen.type("upper")
        with contextlib.suppress(AssertionError):
            eventually(lambda: text_of(search_field()) == "upper", "the search field has what was typed", 5)
        self.picture("search")
        require(text_of(search_field()) == "upper", f"typed \"upper\", found {text_of(search_field())!r}")
        self.screen.key("Escape")
        self.screen.key("Escape")
        self.wait_for_no_panel("Escape twice")

    def check_close(self):
        """A second click on the icon closes, and a third opens."""
        self.open_by_click()
        self.wait_for_open("a click")
        self.screen.click(*self.icon.area.center)
        self.wait_for_no_panel("a second click")
        self.screen.settled()
        require(search_field() is None, "the second click closes the panel and opens it again")

    def check_clipboard(self):
        """Copied in the desktop's own editor, pasted into another program."""
        source, target = pathlib.Path("/tmp/source.txt"), pathlib.Path("/tmp/target.txt")
        source.write_text(TEXT)
        target.write_text("before\n")
        self.desktop.run("editor", self.desktop.editor(str(source)))
        self.repeat(("ctrl+a", "ctrl+c"), lambda: (self.desktop.clipboard() or "").strip() == TEXT,
                    "the editor has copied")
        self.open_somehow()
        self.wait_for_keyboard("opening beside another program")
        self.screen.type("upper")
        self.screen.key("Return")
        with contextlib.suppress(AssertionError):
            eventually(lambda: (self.desktop.clipboard() or "").strip() == RESULT, "the clipboard has the result", 10)
        self.picture("clipboard")
        status = [each for each in self.texts() if "Control V  (" in each or "clipboard" in each.lower()]
        require((self.desktop.clipboard() or "").strip() == RESULT,
                f"the clipboard has {self.desktop.clipboard()!r}; the panel says {status}")
        self.screen.key("Escape")
        self.screen.key("Escape")
        self.desktop.stop("editor")
        self.paste_into(target)
        return status[-1] if status else None

    def paste_into(self, target):
        self.desktop.run("other", ["featherpad", "--standalone", str(target)])
        self.repeat(("ctrl+a", "ctrl+v", "ctrl+s"), lambda: target.read_text().strip() == RESULT,
                    "the other program has pasted")
        self.desktop.stop("other")

    def repeat(self, keys, condition, what):
        """Presses keys until they have an effect, since a program that is starting ignores them at first."""
        for _ in range(15):
            self.screen.settled()
            for key in keys:
                self.screen.key(key)
            with contextlib.suppress(AssertionError):
                return eventually(condition, what, 2)
        raise Failure(f"not: {what}")

    def open_somehow(self):
        if self.desktop.has_tray and self.icon is not None:
            self.icon = self.look_for_icon()
            self.desktop.choose_icon(*self.icon.area.center)
        else:
            self.desktop.launch()

    def texts(self):
        return [each.get_name() or "" for each in descendants(accessible_application())]

    def check_second_start(self):
        """Started a second time, from the menu and from a terminal, the panel opens with the keyboard; nothing spins."""
        for how, start in (("the menu", self.desktop.launch),
                           ("a terminal", lambda: subprocess.run([self.desktop.program], check=True, timeout=20))):
            start()
            self.wait_for_open(f"a second start from {how}")
            self.wait_for_keyboard(f"a second start from {how}")
            self.picture("second start")
            self.require_started(how)
            self.leave_panel_closed()
        require(len(ravlin_processes()) == 1, f"processes: {ravlin_processes()}")

    def require_started(self, how):
        complaint = self.desktop.launch_complaint()
        require(not complaint, f"after a start from {how}: {complaint}")

    def check_shortcut(self):
        if self.desktop.shortcut is None:
            raise NotHere("none can be bound by a script")
        self.desktop.bind_shortcut()

        def pressed():
            self.screen.key(self.desktop.shortcut)
            with contextlib.suppress(AssertionError):
                return eventually(lambda: search_field(has_keyboard=True), "the panel is open", 3)

        with contextlib.suppress(AssertionError):
            eventually(pressed, "the shortcut opens the panel", 12)
            return
        raise Failure("the key opens no panel with the keyboard in it")

    def check_dark(self):
        """The colours are switched with the panel open, and once more with it closed."""
        panel = self.open_by_click() if self.desktop.has_tray else None
        if panel is None:
            before = self.screen.settled()
            self.desktop.launch()
            panel = self.panel_area(before)
        light = self.color_of(panel)
        require(luminance(light) > 0.5, f"the panel is not light: {light}")
        self.desktop.set_dark(True)
        with contextlib.suppress(AssertionError):
            eventually(lambda: luminance(self.color_of(panel)) < 0.1, "the panel is dark", 8)
        self.picture("dark")
        require(search_field() is not None, "the panel closes when the colours change")
        require(luminance(self.color_of(panel)) < 0.1, f"the panel stays light: {self.color_of(panel)}")
        if self.desktop.has_tray:
            self.leave_panel_closed()
            icon = self.look_for_icon()
            require(icon.contrast >= MINIMUM_CONTRAST, f"the icon on the dark desktop: {icon}")
        self.desktop.set_dark(False)
        self.leave_panel_closed()
        self.screen.settled()
        panel = self.open_by_click() if self.desktop.has_tray else panel
        require(luminance(self.color_of(panel)) > 0.5, "the panel is not light again")

    def color_of(self, area):
        return tuple(int(each) for each in numpy.median(area.of(self.screen.pixels()).reshape(-1, 3), axis=0))

    def check_tray_restart(self):
        self.require_icon()
        self.desktop.stop_tray()
        self.screen.settled()
        self.desktop.start_tray()
        self.icon = self.look_for_icon(30)
        self.open_by_click()

    def check_login(self):
        """Started by the session before its tray, nothing opens, and the icon comes with the tray."""
        stop_ravlin()
        if self.desktop.has_tray:
            self.desktop.stop_tray()
        self.desktop.log_in()
        eventually(ravlin_pid, "Ravlin runs")
        has_opened = False
        with contextlib.suppress(AssertionError):
            # Longer than a person would wait for a program to start.
            has_opened = eventually(search_field, "a panel", 6) is not None
        self.picture("login")
        if self.desktop.has_tray:
            self.desktop.start_tray()
            self.icon = self.look_for_icon(30)
        require(not has_opened, "the panel opens by itself before the tray comes")
        require(search_field() is None, "the panel opens by itself when the tray comes")

    def check_quit(self):
        """Quit in the panel: no icon, no program, and the text is still there."""
        self.open_somehow()
        self.wait_for_open("opening")
        text = self.desktop.clipboard()
        press("Quit")
        with contextlib.suppress(AssertionError):
            eventually(lambda: ravlin_pid() is None, "Ravlin has ended", 10)
        require(ravlin_pid() is None, "Ravlin goes on")
        require(self.desktop.clipboard() == text, f"the clipboard has {self.desktop.clipboard()!r}, had {text!r}")
        if self.desktop.has_tray:
            with contextlib.suppress(Failure):
                eventually(lambda: self.is_icon_gone(), "the icon is gone", 10)
        stop_ravlin()

    def is_icon_gone(self):
        with contextlib.suppress(Failure):
            self.look_for_icon(0)
            return False
        return True

    def check_session_end(self):
        """Whatever Ravlin and its clipboard were doing, nothing outlives the session."""
        self.desktop.launch()
        eventually(ravlin_pid, "Ravlin runs")
        self.screen.settled()
        self.desktop.log_out()
        with contextlib.suppress(AssertionError):
            eventually(lambda: not ravlin_processes(), "nothing is left", 10)
        require(not ravlin_processes(), f"left behind: {len(ravlin_processes())} processes")
