"""Plays the desktop's settings portal on the session bus. Each line on standard input is a colour scheme (0: none,
1: dark, 2: light), announced at once; what was given at start is what is read first. Runs until its input ends."""
import sys

from bus_player import play
from gi.repository import Gio, GLib

NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
SETTINGS, SPACE, KEY = "org.freedesktop.portal.Settings", "org.freedesktop.appearance", "color-scheme"
INTERFACE = f"""<node><interface name="{SETTINGS}">
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""

scheme = [int(sys.argv[1])]
bus = Gio.bus_get_sync(Gio.BusType.SESSION)


def called(_connection, _sender, _path, _interface, _method, parameters, invocation):
    if parameters.unpack() == (SPACE, KEY):
        value = GLib.Variant("v", GLib.Variant("u", scheme[0]))  # wrapped twice, as portals do
        invocation.return_value(GLib.Variant.new_tuple(GLib.Variant("v", value)))
    else:
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")


def change(text):
    scheme[0] = int(text)
    bus.emit_signal(None, PATH, SETTINGS, "SettingChanged",
                    GLib.Variant("(ssv)", (SPACE, KEY, GLib.Variant("u", scheme[0]))))


play(bus, NAME, PATH, INTERFACE, called, change)
