"""What all desktops have in common: a private X server, a session bus, a user, and the questions that the scenario
asks. A desktop runs alone in a PID namespace with an empty /tmp, so that whatever it leaves behind disappears with
that."""
import contextlib
import os
import pathlib
import re
import signal
import subprocess

from gi.repository import GLib
from ravlin_desktop import DEADLINE_SECONDS, call_bus, end, eventually, is_on_bus, output_of
from screen import Area, Screen

HOME = pathlib.Path("/tmp/home")
RUNTIME = pathlib.Path("/tmp/run")
DESKTOP_FILE = "/usr/local/share/applications/org.ravlin.ravlin.desktop"
BACKGROUND = "#3b6ea5"  # neither black nor white, and no theme's


class Desktop:
    name = ""  # as given to check
    identity = ""  # XDG_CURRENT_DESKTOP
    is_wayland = False
    has_tray = True
    bar_edge, bar_size = "bottom", 48  # where to look for the icon; pixels at scale 1
    shortcut = None  # the key, as xdotool names it, if one can be bound; bind_shortcut binds it
    width, height = 1280, 800
    is_installed = True  # Ravlin, with everything that describes it to desktops

    def __init__(self, scale):
        self.scale = scale
        self.processes = {}
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin", "HOME": str(HOME), "LANG": "C.UTF-8", "USER": "tester",
            "XDG_RUNTIME_DIR": str(RUNTIME), "XDG_DATA_DIRS": "/usr/local/share:/usr/share", "XDG_CONFIG_DIRS": "/etc/xdg",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={RUNTIME}/bus", "LIBGL_ALWAYS_SOFTWARE": "1",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "GTK_A11Y": "atspi", "XDG_CURRENT_DESKTOP": self.identity,
            "XDG_SESSION_TYPE": "wayland" if self.is_wayland else "x11"}

    # For each desktop to define

    def start(self):
        """Starts it, and returns when it is ready."""
        raise NotImplementedError

    def start_tray(self):
        """Starts the program that shows the icons; called by `start` as well."""
        raise NotImplementedError

    def stop_tray(self):
        raise NotImplementedError

    def set_dark(self, dark):
        """Switches the colours as the desktop's own settings do."""
        raise NotImplementedError

    def bind_shortcut(self):
        """Binds `shortcut` to Ravlin as the desktop's own settings do."""

    def editor(self, file):
        """The command of the desktop's own text editor."""
        return ["mousepad", "--disable-server", file]

    def listed_windows(self):
        """What the window list, the window switcher and the overview show, if the desktop says so; otherwise None."""
        return None

    def choose_icon(self, x, y):
        """Does what opens the panel from the icon."""
        self.screen.click(x, y)

    def launch_complaint(self):
        """What the desktop still shows of a start that is long over, or None."""
        return None

    # The same for most desktops

    def open(self):
        for folder in (HOME, RUNTIME):
            folder.mkdir(mode=0o700)
        number = self._start_server()
        self.environment["DISPLAY"] = f":{number}"
        self.screen = Screen(f":{number}")
        self.run("bus", ["dbus-daemon", "--session", "--nofork", f"--address=unix:path={RUNTIME}/bus"])
        eventually((RUNTIME / "bus").exists, "the session bus is there")
        self.adopt_environment()
        self.start()
        self.adopt_environment()
        output_of("dbus-update-activation-environment", "--all")

    @property
    def program(self):
        return "/usr/local/bin/ravlin" if self.is_installed else "/usr/local/ravlin/bin/ravlin"

    def adopt_environment(self):
        """Makes the session's environment that of this process, and so of whatever it starts."""
        os.environ.clear()
        os.environ.update(self.environment)

    def _start_server(self):
        reading, writing = os.pipe()
        size = f"{self.width * self.scale}x{self.height * self.scale}x24"
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", size, "-nolisten", "tcp", "-noreset"],
            env=self.environment, pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as answer:
            return int(answer.readline())

    def run(self, name, command, **environment):
        """Starts a program of the desktop, whose output goes to a log."""
        with open(f"/tmp/{name}.log", "ab") as log:
            self.processes[name] = subprocess.Popen(command, env=self.environment | environment, start_new_session=True,
                                                    stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        return self.processes[name]

    def stop(self, name):
        end(self.processes.pop(name))

    def log(self, name):
        return pathlib.Path(f"/tmp/{name}.log").read_text(errors="replace")

    def write(self, file, text):
        path = HOME / file
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def paint_background(self):
        output_of("xsetroot", "-solid", BACKGROUND)

    def set_setting(self, schema, key, value):
        subprocess.run(["gsettings", "set", schema, key, value], check=True, timeout=DEADLINE_SECONDS)

    def bar(self):
        """The part of the screen that has the icons."""
        size, width, height = (each * self.scale for each in (self.bar_size, self.width, self.height))
        return Area(0, 0, width, size) if self.bar_edge == "top" else Area(0, height - size, width, height)

    def wait_for_service(self, name):
        eventually(lambda: is_on_bus(name), f"{name} is on the bus")

    def wait_for_window_manager(self):
        eventually(lambda: re.search("window id # 0x", output_of("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")),
                   "the window manager is there")

    def launch(self):
        """Does what the applications menu does."""
        self.run("launch", ["gio", "launch", DESKTOP_FILE])

    def log_in(self):
        """Does what the session does with a program that it starts automatically."""
        self.run("ravlin-autostart", [self.program])

    def log_out(self):
        """Ends the process that all the others are connected to."""
        end(self.server)

    def clipboard(self):
        command = ["wl-paste", "--no-newline"] if self.has_data_control() else ["xclip", "-o", "-selection", "clipboard"]
        with contextlib.suppress(subprocess.TimeoutExpired):
            result = subprocess.run(command, capture_output=True, timeout=5)
            return result.stdout.decode() if result.returncode == 0 else None
        return None

    def has_data_control(self):
        return False

    def clear_input(self):
        """Closes menus and the like that a failed check may have left open."""
        self.screen.key("Escape")

    def close(self):
        for process in [*reversed(self.processes.values()), self.server]:
            end(process)


def ravlin_pid():
    """The id of the running Ravlin, or None."""
    with contextlib.suppress(GLib.Error):
        return call_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", ("org.ravlin.ravlin",)))[0]
    return None


def stop_ravlin():
    """Ends it as the session's end does, along with what it leaves to serve the clipboard."""
    for pid in ravlin_processes():
        with contextlib.suppress(ProcessLookupError):
            os.kill(pid, signal.SIGTERM)
    eventually(lambda: not ravlin_processes() or kill_leftovers(), "Ravlin has ended")


def kill_leftovers():
    for pid in ravlin_processes():
        if ravlin_pid() is None:
            with contextlib.suppress(ProcessLookupError):
                os.kill(pid, signal.SIGKILL)
    return not ravlin_processes()


def ravlin_processes():
    """The ids of all its living processes, including those that serve a text after its end."""
    found = []
    for entry in filter(str.isdigit, os.listdir("/proc")):
        with contextlib.suppress(OSError):
            comm, rest = pathlib.Path(f"/proc/{entry}/stat").read_text().split("(", 1)[1].rsplit(")", 1)
            if comm == "ravlin" and rest.split()[0] != "Z":
                found.append(int(entry))
    return found
