"""Desktops on X11 that consist of a window manager, a bar and little else."""
import re
import subprocess

from kinds.desktop import Desktop
from ravlin_desktop import DEADLINE_SECONDS, eventually, output_of

WINDOW = re.compile(r"0x[0-9a-f]+")


def listed_x11_windows():
    """The titles of the windows that bars and switchers list: managed, and not marked for omission."""
    titles = []
    for identifier in WINDOW.findall(output_of("xprop", "-root", "_NET_CLIENT_LIST")):
        properties = output_of("xprop", "-id", identifier, "_NET_WM_STATE", "_NET_WM_WINDOW_TYPE", "_NET_WM_NAME")
        if not re.search("_NET_WM_STATE_SKIP_TASKBAR|_TYPE_DOCK|_TYPE_DESKTOP", properties):
            titles.append(re.search(r'_NET_WM_NAME.*= "(.*)"|$', properties)[1])
    return titles


class X11Desktop(Desktop):
    """Its tray is a single program, `tray_command`, and its colours are the portal's, which nothing else reports."""
    tray_command = []

    def start(self):
        if self.scale != 1:
            subprocess.run(["xrdb", "-merge"], input=f"Xft.dpi: {96 * self.scale}\n", text=True, check=True,
                           timeout=DEADLINE_SECONDS)
        self.paint_background()
        self.start_window_manager()
        self.wait_for_window_manager()
        self.start_tray()

    def start_window_manager(self):
        raise NotImplementedError

    def start_tray(self):
        self.run("tray", self.tray_command)
        self.wait_for_tray()

    def stop_tray(self):
        self.stop("tray")

    def wait_for_tray(self):
        eventually(lambda: (self.bar().of(self.screen.pixels()) != self.bar_background()).any(), "the bar is there")

    def bar_background(self):
        return [0x3b, 0x6e, 0xa5]

    def listed_windows(self):
        return listed_x11_windows()

    def set_dark(self, dark):
        self.set_setting("org.gnome.desktop.interface", "color-scheme", "prefer-dark" if dark else "default")
        self.set_setting("org.gnome.desktop.interface", "gtk-theme", "Adwaita-dark" if dark else "Adwaita")


class OpenboxDesktop(X11Desktop):
    shortcut = "super+v"

    def start_window_manager(self):
        rules = subprocess.run(["sed", "s|<keyboard>|&<keybind key=\"W-v\"><action name=\"Execute\"><command>ravlin"
                                "</command></action></keybind>|", "/etc/xdg/openbox/rc.xml"], capture_output=True,
                               text=True, check=True).stdout
        self.write(".config/openbox/rc.xml", rules)
        self.run("openbox", ["openbox", "--sm-disable"])


class I3(X11Desktop):
    name, identity = "i3", "i3"
    shortcut = "super+v"
    bar_edge, bar_size = "bottom", 24

    def start_window_manager(self):
        self.write(".config/i3/config", "font pango:DejaVu Sans 9\nbindsym Mod4+v exec ravlin\n"
                   "bar {\n    id bar-0\n    status_command i3status\n}\n")
        self.write(".config/i3status/config", 'general { interval = 60 }\norder += "disk /"\ndisk "/" { format = "disk" }\n')
        self.run("i3", ["i3"])
        # The bar that it starts itself gives way to one that can be restarted.
        eventually(lambda: output_of("pidof", "i3bar"), "the window manager's own bar runs")
        subprocess.run(["kill", *output_of("pidof", "i3bar").split()], check=True)

    tray_command = ["i3bar", "--bar_id=bar-0"]


class Polybar(OpenboxDesktop):
    name, identity = "polybar", "openbox"
    bar_edge, bar_size = "top", 28
    tray_command = ["polybar", "main"]

    def start_window_manager(self):
        self.write(".config/polybar/config.ini", f"""
[bar/main]
width = 100%
height = {26 * self.scale}
background = #222222
foreground = #dddddd
font-0 = DejaVu Sans:size=10
modules-left = name
tray-position = right
tray-maxsize = {22 * self.scale}
[module/name]
type = custom/text
content = polybar
""")
        super().start_window_manager()


class LXQt(OpenboxDesktop):
    name, identity = "lxqt", "LXQt"
    bar_edge, bar_size = "bottom", 36
    tray_command = ["lxqt-panel"]

    def __init__(self, scale):
        super().__init__(scale)
        self.environment |= {"QT_QPA_PLATFORMTHEME": "lxqt", "XDG_CONFIG_DIRS": "/etc:/etc/xdg:/usr/share"}

    def start_window_manager(self):
        self.write(".config/lxqt/lxqt.conf", "[General]\nicon_theme=breeze\ntheme=ambiance\n[Qt]\nstyle=Fusion\n")
        super().start_window_manager()

    def editor(self, file):
        return ["featherpad", "--standalone", file]


class Xfce(X11Desktop):
    name, identity = "xfce", "XFCE"
    shortcut = "super+v"
    bar_edge, bar_size = "top", 30

    def start_window_manager(self):
        self.run("xfconfd", ["/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"])
        self.wait_for_service("org.xfce.Xfconf")
        if self.scale != 1:
            self.configure("xsettings", "/Gdk/WindowScalingFactor", "int", self.scale)
            self.configure("xsettings", "/Xft/DPI", "int", 96 * self.scale)
        self.run("xfsettingsd", ["xfsettingsd", "--no-daemon", "--disable-wm-check"])
        self.run("xfwm4", ["xfwm4"])

    tray_command = ["xfce4-panel", "--disable-wm-check"]

    def start_tray(self):
        super().start_tray()
        if "clipman" not in self.processes:
            self.run("clipman", ["xfce4-clipman"])

    def configure(self, channel, name, kind, value):
        subprocess.run(["xfconf-query", "-c", channel, "-p", name, "-n", "-t", kind, "-s", str(value)], check=True,
                       timeout=DEADLINE_SECONDS)

    def bind_shortcut(self):
        self.configure("xfce4-keyboard-shortcuts", "/commands/custom/<Super>v", "string", "ravlin")

    def set_dark(self, dark):
        self.configure("xsettings", "/Net/ThemeName", "string", "Adwaita-dark" if dark else "Adwaita")


class Mate(X11Desktop):
    name, identity = "mate", "MATE"
    shortcut = "super+v"
    bar_edge, bar_size = "top", 28
    tray_command = ["mate-panel"]

    def start_window_manager(self):
        self.run("settings", ["mate-settings-daemon"])
        self.run("marco", ["marco"])

    def editor(self, file):
        return ["pluma", file]

    def bind_shortcut(self):
        schema = "org.mate.control-center.keybinding:/org/mate/desktop/keybindings/custom0/"
        self.set_setting(schema, "name", "Ravlin")
        self.set_setting(schema, "action", "ravlin")
        self.set_setting(schema, "binding", "<Mod4>v")

    def set_dark(self, dark):
        self.set_setting("org.mate.interface", "gtk-theme", "BlackMATE" if dark else "Menta")
