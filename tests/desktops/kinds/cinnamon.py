"""Cinnamon on X11."""
from kinds.gnome import WithSystemBus
from kinds.x11 import listed_x11_windows



class Cinnamon(WithSystemBus):
    name, identity = "cinnamon", "X-Cinnamon"
    bar_edge, bar_size = "bottom", 40
    shortcut = "super+v"

    def start(self):
        self.start_system_bus()
        self.set_setting("org.cinnamon.desktop.background", "picture-options", "none")
        self.set_setting("org.cinnamon.desktop.background", "primary-color", "#3b6ea5")
        self.set_setting("org.cinnamon.desktop.interface", "scaling-factor", str(self.scale))
        self.set_setting("org.cinnamon", "desktop-effects", "false")
        self.run("csd-xsettings", ["/usr/bin/csd-xsettings"])
        self.start_tray()
        self.run("cinnamon", ["cinnamon", "--replace"])
        self.wait_for_service("org.Cinnamon")
        self.wait_for_service("org.kde.StatusNotifierWatcher")
        self.screen.settled()

    def start_tray(self):
        """The program that turns other programs' items into those that Cinnamon's bar shows."""
        self.run("tray", ["/usr/libexec/xapps/sn-watcher/xapp-sn-watcher"])

    def stop_tray(self):
        self.stop("tray")

    def listed_windows(self):
        return listed_x11_windows()

    def set_dark(self, dark):
        self.set_setting("org.cinnamon.desktop.interface", "gtk-theme", "Adwaita-dark" if dark else "Adwaita")

    def bind_shortcut(self):
        path = "/org/cinnamon/desktop/keybindings/custom-keybindings/custom0/"
        schema = f"org.cinnamon.desktop.keybindings.custom-keybinding:{path}"
        self.set_setting(schema, "name", "Ravlin")
        self.set_setting(schema, "command", "ravlin")
        self.set_setting(schema, "binding", "['<Super>v']")
        self.set_setting("org.cinnamon.desktop.keybindings", "custom-list", "['custom0']")
