"""KDE Plasma, on X11 and on Wayland in a window of the X server."""
import os
import signal

from gi.repository import GLib

from kinds.desktop import RUNTIME, Desktop
from kinds.x11 import listed_x11_windows
from ravlin_desktop import call, call_bus, eventually, is_on_bus, output_of

LIBEXEC = "/usr/lib/x86_64-linux-gnu/libexec"
SHORTCUTS = "[org.ravlin.ravlin.desktop]\n_k_friendly_name=Ravlin\n_launch=Meta+V,none,Ravlin\n"


class Plasma(Desktop):
    identity = "KDE"
    bar_edge, bar_size = "bottom", 48
    shortcut = "super+v"

    def __init__(self, scale):
        super().__init__(scale)
        self.environment |= {"KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}

    def configure(self):
        self.write(".config/kdeglobals", self.colors("BreezeLight") + "\n[General]\nColorScheme=BreezeLight\n")
        self.write(".config/kscreenlockerrc", "[Daemon]\nAutolock=false\nLockOnResume=false\n")
        self.write(".config/kglobalshortcutsrc", SHORTCUTS)
        # Neither the welcome window nor the file index.
        self.write(".config/kwalletrc", "[Wallet]\nEnabled=false\n")
        self.write(".config/baloofilerc", "[Basic Settings]\nIndexing-Enabled=false\n")
        self.write(".config/klaunchrc", "[FeedbackStyle]\nBusyCursor=true\n")

    @staticmethod
    def colors(name):
        with open(f"/usr/share/color-schemes/{name}.colors", encoding="utf-8") as file:
            return file.read()

    def start_tray(self):
        self.run("plasmashell", ["plasmashell"], QT_QPA_PLATFORM="wayland" if self.is_wayland else "xcb")
        self.wait_for_service("org.kde.plasmashell")
        self.wait_for_service("org.kde.StatusNotifierWatcher")

    def stop_tray(self):
        """The session itself may have started it."""
        pid = call_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", ("org.kde.plasmashell",)))[0]
        os.kill(pid, signal.SIGTERM)
        eventually(lambda: not is_on_bus("org.kde.plasmashell"), "the bar has gone")

    def launch(self):
        output_of("kioclient5", "exec", "/usr/local/share/applications/org.ravlin.ravlin.desktop")

    def log_in(self):
        """Plasma's session starts what can be started over the bus over the bus, and gives no token."""
        output_of("gdbus", "call", "--session", "-d", "org.ravlin.ravlin", "-o", "/org/ravlin/ravlin", "-m",
                  "org.freedesktop.Application.Activate", "{}")

    def editor(self, file):
        return ["kwrite", file]

    def set_dark(self, dark):
        output_of("plasma-apply-colorscheme", "BreezeDark" if dark else "BreezeLight")


class PlasmaWayland(Plasma):
    name, is_wayland = "plasma-wayland", True

    def start(self):
        self.configure()
        outer = self.environment.pop("DISPLAY")
        self.run("kwin", ["kwin_wayland", "--x11-display", outer, "--width", str(self.width * self.scale), "--height",
                          str(self.height * self.scale), "--scale", str(self.scale), "--xwayland", "--no-lockscreen",
                          "--socket", "wayland-0"], KWIN_COMPOSE="Q", QT_QUICK_BACKEND="software")
        eventually((RUNTIME / "wayland-0").exists, "KWin is there")
        self.environment |= {"WAYLAND_DISPLAY": "wayland-0", "QT_QUICK_BACKEND": "software"}
        self.wait_for_service("org.kde.KWin")
        self.adopt_environment()
        output_of("dbus-update-activation-environment", "--all")
        self.run("kded", ["kded5"], QT_QPA_PLATFORM="wayland")
        self.run("activities", [f"{LIBEXEC}/kactivitymanagerd"], QT_QPA_PLATFORM="wayland")
        self.start_tray()

    def has_data_control(self):
        return True

    def listed_windows(self):
        matches = call("org.kde.KWin", "/WindowsRunner", "org.kde.krunner1", "Match", GLib.Variant("(s)", ("ravlin",)))
        return [match[1] for match in matches[0]]

    def log_out(self):
        self.stop("kwin")


class PlasmaX11(Plasma):
    name = "plasma-x11"

    def start(self):
        self.configure()
        if self.scale != 1:
            self.environment |= {"QT_SCREEN_SCALE_FACTORS": f"screen={self.scale}"}
            self.write(".config/kcmfonts", f"[General]\nforceFontDPI={96 * self.scale}\n")
            self.write(".config/kdeglobals", self.colors("BreezeLight") + f"\n[KScreen]\nScaleFactor={self.scale}\n"
                       f"ScreenScaleFactors=screen={self.scale};\n")
        self.run("session", ["startplasma-x11"])
        self.wait_for_service("org.kde.StatusNotifierWatcher")
        self.wait_for_service("org.kde.plasmashell")

    def listed_windows(self):
        return listed_x11_windows()
