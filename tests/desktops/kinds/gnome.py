"""GNOME Shell, on X11 and on Wayland in a window of the X server, with and without the extension that shows tray icons."""
import json
import re

from gi.repository import GLib

from kinds.desktop import RUNTIME, Desktop
from ravlin_desktop import call, eventually, output_of
from screen import Area, changed_areas

EXTENSION = "ubuntu-appindicators@ubuntu.com"
SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path=/tmp/system-bus</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>"""
KEYS = "org.gnome.settings-daemon.plugins.media-keys"
BINDING = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/custom0/"


class WithSystemBus(Desktop):
    """A desktop that does not start unless something says which session it is in."""

    def start_system_bus(self):
        self.write("system-bus.conf", SYSTEM_BUS)
        self.environment |= {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/tmp/system-bus", "XDG_SESSION_ID": "c1"}
        self.run("system-bus", ["dbus-daemon", "--nofork", "--nopidfile",
                                f"--config-file={self.environment['HOME']}/system-bus.conf"])
        self.adopt_environment()
        for template, name in (("logind", "org.freedesktop.login1"), ("upower", "org.freedesktop.UPower")):
            self.run(template, ["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", template])
            eventually(lambda: "true" in self.on_system_bus(
                "org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner", name), f"{name} is there")
        self.on_system_bus("org.freedesktop.login1", "/org/freedesktop/login1",
                           "org.freedesktop.DBus.Mock.AddSession", "c1", "seat0", "1000", "tester", "true")

    @staticmethod
    def on_system_bus(service, path, method, *arguments):
        return output_of("gdbus", "call", "--system", "-d", service, "-o", path, "-m", method, *arguments)


class Gnome(WithSystemBus):
    identity = "GNOME"
    bar_edge, bar_size = "top", 32
    shortcut = "super+z"
    extensions = [EXTENSION]
    shell_options = []

    def start(self):
        self.start_system_bus()
        self.set_setting("org.gnome.shell", "welcome-dialog-last-shown-version", "999")
        self.set_setting("org.gnome.shell", "enabled-extensions", str(self.extensions))
        self.set_setting("org.gnome.desktop.interface", "enable-animations", "false")
        self.set_setting("org.gnome.desktop.session", "idle-delay", "0")
        self.set_setting("org.gnome.desktop.notifications", "show-banners", "false")
        self.set_setting("org.gnome.desktop.background", "picture-options", "none")
        self.set_setting("org.gnome.desktop.background", "primary-color", "#3b6ea5")
        self.environment["GNOME_SETUP_DISPLAY"] = ":99"
        self.start_shell()
        eventually(lambda: self.evaluate("1 + 1") == 2, "GNOME Shell answers")
        self.take_displays()
        self.adopt_environment()
        output_of("dbus-update-activation-environment", "--all")
        for each in ("gsd-xsettings", "gsd-media-keys"):
            self.run(each, [f"/usr/libexec/{each}"])
        # It starts with the overview, which appears a moment after it first answers.
        eventually(lambda: self.evaluate("Main.overview.hide() || Main.layoutManager._startingUp || Main.overview.visible")
                   is False, "the overview is gone")

    def bar(self):
        """Its right half: on the left are the name and the icon of the program that has the focus."""
        bar = super().bar()
        return Area(bar.right // 2, bar.top, bar.right, bar.bottom)

    def start_shell(self):
        raise NotImplementedError

    def take_displays(self):
        """Lets programs know where the shell's own displays are."""

    def evaluate(self, code):
        """The value of some JavaScript in the shell."""
        try:
            done, result = call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval",
                                GLib.Variant("(s)", (code,)))
        except GLib.Error:
            return None
        return json.loads(result) if done and result else None

    def launch(self):
        self.evaluate("imports.gi.Shell.AppSystem.get_default().lookup_app('org.ravlin.ravlin.desktop').activate()")

    def choose_icon(self, x, y):
        """A click opens the menu, as with every icon there; its first entry opens the panel."""
        before = self.screen.settled()
        self.screen.click(x, y)
        eventually(lambda: changed_areas(before, self.screen.pixels()), "the icon's menu is open")
        self.screen.settled()
        self.screen.key("Down")
        self.screen.key("Return")

    def launch_complaint(self):
        state = "imports.gi.Shell.AppSystem.get_default().lookup_app('org.ravlin.ravlin.desktop').get_state()"
        with_deadline = lambda: self.evaluate(state) != 1  # noqa: E731
        try:
            eventually(with_deadline, "the start is over", 2)
        except AssertionError:
            return "GNOME Shell still shows that it starts"
        return None

    def listed_windows(self):
        titles = self.evaluate("global.display.get_tab_list(0, null).map(w => w.title)")
        running = self.evaluate("imports.gi.Shell.AppSystem.get_default().get_running().map(a => a.get_name())")
        overview = self.evaluate("global.get_window_actors().map(a => a.meta_window).filter(w => !w.skip_taskbar && "
                                 "w.get_window_type() != 1 && !w.is_override_redirect()).map(w => w.title)")
        return [*(titles or []), *(running or []), *(overview or [])]

    def start_tray(self):
        self.set_setting("org.gnome.shell", "enabled-extensions", str(self.extensions))
        self.wait_for_service("org.kde.StatusNotifierWatcher")

    def stop_tray(self):
        self.set_setting("org.gnome.shell", "enabled-extensions", "[]")

    def editor(self, file):
        return ["gnome-text-editor", "--standalone", file]

    def bind_shortcut(self):
        self.set_setting(KEYS, "custom-keybindings", f"['{BINDING}']")
        schema = f"{KEYS}.custom-keybinding:{BINDING}"
        for key, value in (("name", "Ravlin"), ("command", "ravlin"), ("binding", "<Super>z")):
            self.set_setting(schema, key, value)

    def set_dark(self, dark):
        self.set_setting("org.gnome.desktop.interface", "color-scheme", "prefer-dark" if dark else "default")

    def log_out(self):
        self.stop("shell")


class GnomeX11(Gnome):
    name = "gnome-x11"

    def start_shell(self):
        if self.scale != 1:
            self.set_setting("org.gnome.desktop.interface", "scaling-factor", str(self.scale))
        self.run("shell", ["gnome-shell", "--x11", "--unsafe-mode"])


class GnomeWayland(Gnome):
    name, is_wayland = "gnome-wayland", True

    def start_shell(self):
        self.run("shell", ["gnome-shell", "--wayland", "--nested", "--unsafe-mode"],
                 MUTTER_DEBUG_DUMMY_MODE_SPECS=f"{self.width * self.scale}x{self.height * self.scale}",
                 MUTTER_DEBUG_DUMMY_MONITOR_SCALES=str(self.scale))

    def take_displays(self):
        display = eventually(lambda: re.search(r"public X11 display (:\d+)", self.log("shell")), "XWayland is there")[1]
        key = eventually(lambda: next(RUNTIME.glob(".mutter-Xwaylandauth.*"), None), "XWayland's key is there")
        self.environment |= {"WAYLAND_DISPLAY": "wayland-0", "DISPLAY": display, "XAUTHORITY": str(key)}


class GnomePlain(GnomeWayland):
    """GNOME as it ships: no tray."""
    name, has_tray, extensions = "gnome-plain", False, []
