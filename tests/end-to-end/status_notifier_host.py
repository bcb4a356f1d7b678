"""Owns the name of the StatusNotifierItem watcher on the session bus and writes the bus name of every item that
registers. Runs until its input ends."""
from bus_player import play
from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
INTERFACE = f"""<node><interface name="{NAME}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
</interface></node>"""

items = []


def called(_connection, sender, _path, _interface, method, parameters, invocation):
    if method == "RegisterStatusNotifierItem":
        service = parameters.unpack()[0]
        items.append(sender if service.startswith("/") else service)
        print(items[-1], flush=True)
    invocation.return_value(None)


def asked(_connection, _sender, _path, _interface, name):
    return {"IsStatusNotifierHostRegistered": GLib.Variant("b", True), "ProtocolVersion": GLib.Variant("i", 0),
            "RegisteredStatusNotifierItems": GLib.Variant("as", items)}[name]


play(Gio.bus_get_sync(Gio.BusType.SESSION), NAME, "/StatusNotifierWatcher", INTERFACE, called, print, asked)
