"""A user at a private desktop: starts Ravlin and looks at, clicks and types what a person would. For scripts that run
under `private-desktop`. Everything started here is ended here, by its process id."""
import contextlib
import ctypes
import functools
import os
import re
import signal
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
gi.require_version("Gio", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

DEADLINE_SECONDS = 30  # far more than anything takes, because the machine may be busy
PR_SET_CHILD_SUBREAPER = 36
IS_WAYLAND = "WAYLAND_DISPLAY" in os.environ
# The compositor is a window of an X server, from which it gets its input.
IS_NESTED = IS_WAYLAND and "DISPLAY" in os.environ
HAS_VIRTUAL_KEYBOARD = IS_WAYLAND and not IS_NESTED


def eventually(condition, what, seconds=DEADLINE_SECONDS):
    """The first true answer of `condition`; if there is none, an AssertionError that says `what` was waited for."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {seconds} s: {what}")
        # Bus messages to the desktop services that the tests play are handled in between.
        while GLib.MainContext.default().iteration(False):
            pass
        time.sleep(0.005)


def output_of(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=DEADLINE_SECONDS, **options).stdout


def end(process):
    """Ends a process started here, and waits for its end."""
    for ask in (process.terminate, process.kill):
        if process.poll() is not None:
            return
        ask()
        with contextlib.suppress(subprocess.TimeoutExpired):
            process.wait(3)


# Windows and input


class Window:
    def __init__(self, identifier, name, geometry):
        self.identifier, self.name = identifier, name
        self.width, self.height, self.x, self.y = geometry

    @property
    def center(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def contains(self, other):
        return (self.x <= other.x and other.x + other.width <= self.x + self.width and
                self.y <= other.y and other.y + other.height <= self.y + self.height)

    def __repr__(self):
        return f"{self.name} {self.width}x{self.height}+{self.x}+{self.y}"


WINDOW_LINE = re.compile(r' *(0x[0-9a-f]+) "(.*)": \(.*\)  (\d+)x(\d+)\+-?\d+\+-?\d+  \+(-?\d+)\+(-?\d+)')


def visible_windows(name):
    """The windows with this title that can be seen."""
    lines = map(WINDOW_LINE.match, output_of("xwininfo", "-root", "-tree").splitlines())
    windows = [Window(line[1], line[2], map(int, line.groups()[2:])) for line in lines if line and line[2] == name]
    return [each for each in windows if "IsViewable" in output_of("xwininfo", "-id", each.identifier)]


def panel_window():
    """The panel if it is open, otherwise None."""
    return next((window for window in visible_windows("Ravlin") if window.width >= 340), None)


def menu_window():
    """The menu of the icon in an XEmbed tray if it is open, otherwise None."""
    return next((window for window in visible_windows("Ravlin") if 100 < window.width < 340), None)


def tray_icon():
    """The icon in an XEmbed tray, once that has given it its place, otherwise None."""
    bars = visible_windows("panel")
    icons = [window for window in visible_windows("Ravlin") if 16 <= window.width <= 64]
    return next((icon for icon in icons if any(bar.contains(icon) for bar in bars)), None)


def click(x, y, button=1):
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", str(button)], check=True)


def point_at(x, y):
    subprocess.run(["xdotool", "mousemove", str(x), str(y)], check=True)


def click_again():
    """A click where the pointer is."""
    subprocess.run(["xdotool", "click", "1"], check=True)


def type_text(text):
    subprocess.run(["wtype", text] if HAS_VIRTUAL_KEYBOARD else ["xdotool", "type", "--delay", "5", text], check=True)


def press_key(*names):
    for name in names:
        subprocess.run(["wtype", "-k", name] if HAS_VIRTUAL_KEYBOARD else ["xdotool", "key", name], check=True)


@contextlib.contextmanager
def wayland_keyboard():
    """A keyboard that stays plugged in: without one a compositor gives no window the focus."""
    keyboard = subprocess.Popen(["wtype", "-s", "3600000", "x"])
    try:
        yield keyboard
    finally:
        end(keyboard)


def wayland_pixel(x, y):
    """The colour of one pixel of the screen: red, green, blue."""
    picture = subprocess.run(["grim", "-t", "ppm", "-g", f"{x},{y} 1x1", "-"], capture_output=True, check=True).stdout
    return tuple(picture[-3:])


def screen_size():
    """The X server's screen in pixels."""
    return tuple(map(int, re.search(r"dimensions: +(\d+)x(\d+)", output_of("xdpyinfo")).groups()))


def has_keyboard(window):
    return output_of("xdotool", "getwindowfocus").strip() == str(int(window.identifier, 16))


def wait_for_panel():
    """The open panel, once it has the keyboard."""
    panel = eventually(panel_window, "the panel is open")
    eventually(lambda: has_keyboard(panel), "the panel has the keyboard")
    return panel


def wait_for_no_panel():
    eventually(lambda: panel_window() is None, "the panel is closed")


def selection_owner(name):
    """The id of the window that owns a selection, for example "CLIPBOARD"; "0" for none."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = ctypes.c_ulong
    x11.XGetSelectionOwner.restype = ctypes.c_ulong
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    atom = ctypes.c_ulong(x11.XInternAtom(display, name.encode(), 0))
    owner = x11.XGetSelectionOwner(display, atom)
    x11.XCloseDisplay(display)
    return str(owner)


@contextlib.contextmanager
def xembed_tray(edge="top"):
    """A bar at the right end of one edge of the screen that shows XEmbed icons."""
    tray = subprocess.Popen(["trayer", "--edge", edge, "--align", "right", "--widthtype", "request", "--height", "24"],
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        yield tray
    finally:
        end(tray)


# The clipboard, as other programs see it


PASTING = ["wl-paste", "--no-newline"] if IS_WAYLAND else ["xclip", "-o", "-selection", "clipboard"]
COPYING = ["wl-copy", "--foreground"] if IS_WAYLAND else ["xclip", "-i", "-quiet", "-selection", "clipboard"]


def clipboard():
    """The clipboard's text, or None."""
    result = subprocess.run(PASTING, capture_output=True, timeout=DEADLINE_SECONDS)
    return result.stdout.decode() if result.returncode == 0 else None


class Background:
    """A program that has gone to the background, and so has become a child of this process."""

    def __init__(self, pid):
        self.pid = pid

    def send_signal(self, number):
        os.kill(self.pid, number)

    def end(self):
        with contextlib.suppress(ProcessLookupError, ChildProcessError):
            self.send_signal(signal.SIGKILL)
            os.waitpid(self.pid, 0)


@contextlib.contextmanager
def copied_with_the_keyboard(text):
    """`copied` where that takes the keyboard, which no other window may take until it is done. Orphans have been
    adopted."""
    before = children_named("wl-copy")
    subprocess.run(["wl-copy"], input=text.encode(), check=True, timeout=DEADLINE_SECONDS, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)
    owner = Background(eventually(lambda: [pid for pid in children_named("wl-copy") if pid not in before],
                                  "the other program serves what it copied")[0])
    try:
        yield owner
    finally:
        owner.send_signal(signal.SIGCONT)
        owner.end()


@contextlib.contextmanager
def copied(text):
    """Another program that has copied `text`, and serves it as long as programs ask for it."""
    if IS_NESTED:
        with copied_with_the_keyboard(text) as owner:
            yield owner
        return
    # Looks at the owner, not the text: a program that is about to lose the clipboard may leave a reader waiting.
    before = None if IS_WAYLAND else selection_owner("CLIPBOARD")
    owner = subprocess.Popen(COPYING, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        owner.stdin.write(text.encode())
        owner.stdin.close()
        if IS_WAYLAND:
            eventually(lambda: clipboard() == text, "the other program owns the clipboard")
        else:
            eventually(lambda: selection_owner("CLIPBOARD") not in (before, "0"), "another program owns the clipboard")
        yield owner
    finally:
        owner.send_signal(signal.SIGCONT)
        end(owner)


# The program


def adopt_orphans():
    """Makes this process the parent of those whose own parent ends, so that they can be found and waited for."""
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def children_named(name):
    """The ids of this process's living children with this program name."""
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        with contextlib.suppress(OSError):
            with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as stat:
                comm, rest = stat.read().split("(", 1)[1].rsplit(")", 1)
            state, parent = rest.split()[:2]
            if comm == name and int(parent) == os.getpid() and state != "Z":
                found.append(int(entry))
    return found


class Ravlin:
    """The program under test."""

    def __init__(self, program, **environment):
        self.program = program
        self.process = subprocess.Popen([program], env=dict(os.environ, **environment), stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

    @property
    def pid(self):
        return self.process.pid

    def wait_for_end(self, seconds=DEADLINE_SECONDS):
        """The exit status."""
        return self.process.wait(seconds)

    def output(self):
        """What it wrote, after its end."""
        return self.process.stdout.read()

    def lingering_children(self):
        """The processes that keep serving the clipboard after the program has quit."""
        return [pid for pid in children_named(os.path.basename(self.program)) if pid != self.pid]

    def close(self):
        end(self.process)
        self.process.stdout.close()
        for pid in self.lingering_children():
            with contextlib.suppress(ProcessLookupError):
                os.kill(pid, signal.SIGKILL)
            with contextlib.suppress(ChildProcessError):
                os.waitpid(pid, 0)


# Assistive technology


def accessible_application():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        with contextlib.suppress(GLib.Error):
            application = desktop.get_child_at_index(index)
            if application is not None and application.get_name() in ("ravlin", "Ravlin"):
                return application
    return None


def descendants(accessible):
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is not None:
            yield child
            yield from descendants(child)


def find_accessible(matches):
    """The program's first accessible object that is showing and matches, or None."""
    application = accessible_application()
    if application is None:
        return None
    with contextlib.suppress(GLib.Error):  # objects may disappear meanwhile
        for each in descendants(application):
            if each.get_state_set().contains(Atspi.StateType.SHOWING) and matches(each):
                return each
    return None


def accessible_tree():
    """What assistive technology finds in the program's windows: a line each, with role, name and description."""
    lines = []

    def add(accessible, depth):
        for index in range(accessible.get_child_count()):
            child = accessible.get_child_at_index(index)
            if child is None or not child.get_state_set().contains(Atspi.StateType.SHOWING):
                continue
            parts = [child.get_role_name(), child.get_name(), child.get_description()]
            lines.append("    " * depth + " | ".join(part for part in parts if part))
            add(child, depth + 1)

    add(accessible_application(), 0)
    return "\n".join(lines) + "\n"


def button(name):
    """The button with this name, once it can be seen."""
    return eventually(lambda: find_accessible(lambda each: each.get_role() == Atspi.Role.PUSH_BUTTON
                                              and each.get_name() == name), f"there is a button {name!r}")


def search_field(has_keyboard=False):
    """The panel's search field if the panel is open, otherwise None."""
    return find_accessible(lambda each: each.get_role() == Atspi.Role.TEXT
                           and (not has_keyboard or has_focus(each)))


def is_showing(accessible):
    return accessible.get_state_set().contains(Atspi.StateType.SHOWING)


def has_focus(accessible):
    return accessible.get_state_set().contains(Atspi.StateType.FOCUSED)


def text_of(accessible):
    """The text of a field; None if there is no such field."""
    return None if accessible is None else Atspi.Text.get_text(accessible, 0, -1)


def search_for(text):
    """Puts a text into the search field as assistive technology does, which needs no keyboard."""
    field = eventually(lambda: find_accessible(lambda each: each.get_role() == Atspi.Role.TEXT), "there is a search field")
    if not Atspi.EditableText.set_text_contents(field, text):
        raise AssertionError("the search field refused the text")


def press(name):
    """What a screen reader's user does to a button."""
    if not Atspi.Action.do_action(button(name), 0):
        raise AssertionError(f"the button {name!r} refused to be pressed")


def click_on(name):
    """A real click of the pointer in the middle of a button."""
    area = Atspi.Component.get_extents(button(name), Atspi.CoordType.SCREEN)
    click(area.x + area.width // 2, area.y + area.height // 2)


def extents_of(accessible):
    """Where an accessible object is, in device-independent pixels: of the screen on X11, of its window on Wayland."""
    return Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)


def wait_for_text(text):
    """Waits until a screen reader can read this text in the panel, where it calls the keys as this keyboard does."""
    spoken = text.replace("⌘V", "Control V")
    eventually(lambda: find_accessible(lambda each: each.get_name() == spoken), f"the panel says {spoken!r}")


class ScreenReader:
    """Hears what a screen reader does of the program: what gets the focus, and what is announced. A line each, in the
    words that it has for it; where the focus comes into another group, that comes first."""

    EVENTS = ("window:activate", "object:state-changed:focused", "object:state-changed:showing")

    def __init__(self):
        self.lines = []
        self.group = None
        self.focus = None
        self.listener = Atspi.EventListener.new(self._hear)
        for event in self.EVENTS:
            self.listener.register(event)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for event in self.EVENTS:
            self.listener.deregister(event)

    def _hear(self, event):
        with contextlib.suppress(GLib.Error):  # objects may go while they are looked at
            if event.source.get_application().get_name() not in ("ravlin", "Ravlin"):
                return
            if event.type == "window:activate":
                self.lines.append(f"{event.source.get_role_name()} {event.source.get_name()!r}")
                self.group = self.focus = None
            elif event.type.endswith(":focused") and event.detail1:
                self._hear_focus(event.source)
            elif event.source.get_role() == Atspi.Role.NOTIFICATION and event.detail1:
                self.lines.append(f"announced: {event.source.get_name()}")

    def _hear_focus(self, accessible):
        group = accessible.get_parent()
        group = group if group.get_role() == Atspi.Role.PANEL else None
        name = group.get_name() if group else None
        words = [f"{accessible.get_role_name()} {accessible.get_name()!r}"]
        if accessible.get_description():
            words.append(accessible.get_description())
        if group:
            rows = [each for each in (group.get_child_at_index(i) for i in range(group.get_child_count()))
                    if each.get_role() == accessible.get_role() and is_showing(each)]
            words.append(f"{rows.index(accessible) + 1} of {len(rows)}")
        if name != self.group and group:
            self.lines.append(f"group {name!r}")
        self.group = name
        if words != self.focus:  # which may be told twice, by the window and by what is in it
            self.lines.append(", ".join(words))
        self.focus = words


# The session bus


@functools.cache  # the library would close the connection in between
def session_bus():
    return Gio.bus_get_sync(Gio.BusType.SESSION)


def call(service, path, interface, method, arguments=None):
    """A method's result as Python values."""
    return session_bus().call_sync(service, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                   DEADLINE_SECONDS * 1000, None).unpack()


def call_bus(method, arguments=None):
    """The result of a method of the bus itself."""
    return call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments)


def is_on_bus(name):
    return call_bus("NameHasOwner", GLib.Variant("(s)", (name,)))[0]


def activate_by_name():
    """What a desktop does to open a program by its desktop file, whether it is running or not."""
    call("org.ravlin.ravlin", "/org/ravlin/ravlin", "org.freedesktop.Application", "Activate",
         GLib.Variant("(a{sv})", ({"desktop-startup-id": GLib.Variant("s", "launch_TIME1")},)))


class NotifierTray:
    """A desktop's StatusNotifierWatcher with a host."""

    INTERFACE = """
        <node><interface name="org.kde.StatusNotifierWatcher">
            <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
            <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
            <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
            <property name="ProtocolVersion" type="i" access="read"/>
            <signal name="StatusNotifierHostRegistered"/>
        </interface></node>"""

    def __init__(self):
        self.items = []
        self.registered_at = None
        self.has_told_of_host = False
        interface = Gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0]
        self.registration = session_bus().register_object("/StatusNotifierWatcher", interface, self._call, self._get,
                                                          None)
        self.name = Gio.bus_own_name_on_connection(session_bus(), "org.kde.StatusNotifierWatcher",
                                                   Gio.BusNameOwnerFlags.NONE, None, None)
        eventually(lambda: is_on_bus("org.kde.StatusNotifierWatcher"), "the watcher has its name")

    def _call(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        self.registered_at = time.monotonic()
        self.items.append(arguments.unpack()[0])
        invocation.return_value(None)

    def _get(self, _connection, _sender, _path, _interface, name):
        self.has_told_of_host |= name == "IsStatusNotifierHostRegistered"
        return {"IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "RegisteredStatusNotifierItems": GLib.Variant("as", self.items),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        if self.name:
            Gio.bus_unown_name(self.name)
            session_bus().unregister_object(self.registration)
            self.name = None

    def wait_for_item(self):
        return eventually(lambda: self.items[-1:], "an item has registered")[0]

    def activate(self, x, y, hint=None):
        """A click at this place, which the host reports as it is, or as the constant `hint`."""
        point_at(x, y)
        x, y = hint or (x, y)
        call(self.wait_for_item(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
             GLib.Variant("(ii)", (x, y)))

    def choose_in_menu(self, label):
        menu = call(self.wait_for_item(), "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                    GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", "Menu")))[0]
        _, (_, _, entries) = call(self.items[-1], menu, "com.canonical.dbusmenu", "GetLayout",
                                  GLib.Variant("(iias)", (0, -1, [])))
        identifier = next(entry[0] for entry in entries if entry[1].get("label") == label)
        call(self.items[-1], menu, "com.canonical.dbusmenu", "Event",
             GLib.Variant("(isvu)", (identifier, "clicked", GLib.Variant("i", 0), 0)))


def screenshot(path):
    """A picture of the whole desktop as a PNG file."""
    subprocess.run(["import", "-window", "root", path], check=True, timeout=DEADLINE_SECONDS)
