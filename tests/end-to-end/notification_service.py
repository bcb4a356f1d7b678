"""Plays the desktop's notification service on the session bus: prints each notice as a line of JSON. A line on standard
input, NUMBER ACTION, is a click: the program that showed the notice hears of it; when that is gone, the one that its
desktop entry names is started with the action. Runs until its input ends."""
import json

from bus_player import play
from gi.repository import Gio, GLib

NAME, PATH = "org.freedesktop.Notifications", "/org/freedesktop/Notifications"
INTERFACE = f"""<node><interface name="{NAME}">
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{{sv}}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
  <signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal>
</interface></node>"""

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
shown = {}  # by number: who showed it, and its desktop entry


def called(_connection, sender, _path, _interface, method, parameters, invocation):
    if method == "GetCapabilities":
        invocation.return_value(GLib.Variant("(as)", (["body", "actions"],)))
        return
    _, _, _, title, text, actions, hints, _ = parameters.unpack()
    number = len(shown) + 1
    shown[number] = (sender, hints["desktop-entry"])
    invocation.return_value(GLib.Variant("(u)", (number,)))
    print(json.dumps({"number": number, "title": title, "text": text, "actions": actions[::2]}), flush=True)


def lives(name):
    reply = bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
                          GLib.Variant("(s)", (name,)), None, Gio.DBusCallFlags.NONE, -1, None)
    return reply.unpack()[0]


def click(line):
    number, action = line.split()
    sender, entry = shown[int(number)]
    if lives(sender):
        bus.emit_signal(None, PATH, NAME, "ActionInvoked", GLib.Variant("(us)", (int(number), action)))
    else:
        bus.call(entry, "/" + entry.replace(".", "/"), "org.freedesktop.Application", "ActivateAction",
                 GLib.Variant("(sava{sv})", (action, [], {})), None, Gio.DBusCallFlags.NONE, -1, None, None)


play(bus, NAME, PATH, INTERFACE, called, click)
