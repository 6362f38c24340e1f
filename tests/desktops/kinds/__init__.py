"""The desktops, a class each."""
from kinds.cinnamon import Cinnamon
from kinds.gnome import GnomePlain, GnomeWayland, GnomeX11
from kinds.plasma import PlasmaWayland, PlasmaX11
from kinds.sway import Sway
from kinds.x11 import I3, LXQt, Mate, Polybar, Xfce

ALL = {each.name: each for each in (Xfce, LXQt, I3, Mate, Polybar, Sway, PlasmaX11, PlasmaWayland, GnomeX11, GnomeWayland,
                                    GnomePlain, Cinnamon)}
