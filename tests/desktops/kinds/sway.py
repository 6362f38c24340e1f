"""sway with waybar, in a window of the X server."""
import json
import os

from kinds.desktop import BACKGROUND, RUNTIME, Desktop
from ravlin_desktop import eventually, output_of


class Sway(Desktop):
    name, identity, is_wayland = "sway", "sway", True
    bar_edge, bar_size = "top", 30
    shortcut = "super+v"

    def start(self):
        self.write(".config/waybar/config", json.dumps({
            "position": "top", "height": 28, "modules-left": ["sway/workspaces"], "modules-center": ["wlr/taskbar"],
            "modules-right": ["tray"], "tray": {"icon-size": 18}}))
        self.write(".config/sway/config", f"""
            output * resolution {self.width * self.scale}x{self.height * self.scale} scale {self.scale}
            output * background {BACKGROUND} solid_color
            bindsym Mod4+v exec ravlin
            floating_modifier Mod4
        """)
        self.run("sway", ["sway"], WLR_BACKENDS="x11", WLR_RENDERER="pixman")
        eventually(lambda: [each for each in os.listdir(RUNTIME) if each.startswith("sway-ipc.")], "sway is there")
        self.environment["WAYLAND_DISPLAY"] = "wayland-1" if (RUNTIME / "wayland-1").exists() else "wayland-0"
        self.environment["SWAYSOCK"] = str(next(RUNTIME.glob("sway-ipc.*")))
        outer = self.environment.pop("DISPLAY")
        eventually((lambda: any((RUNTIME / name).exists() for name in ("wayland-0", "wayland-1"))), "the socket is there")
        del outer
        self.adopt_environment()
        self.start_tray()

    def start_tray(self):
        self.run("tray", ["waybar"])

    def stop_tray(self):
        self.stop("tray")

    def has_data_control(self):
        return True

    def listed_windows(self):
        def names(node):
            own = [node["name"]] if node["type"] in ("con", "floating_con") and node["name"] else []
            return own + [name for child in node["nodes"] + node["floating_nodes"] for name in names(child)]
        return names(json.loads(output_of("swaymsg", "-t", "get_tree", "-r")))

    def set_dark(self, dark):
        self.set_setting("org.gnome.desktop.interface", "color-scheme", "prefer-dark" if dark else "default")

    def log_out(self):
        self.stop("sway")
