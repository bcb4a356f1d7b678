#!/usr/bin/python3
"""Something else under the helper's name: other_helper.py VERSION, or "mute" for one that never answers a call."""
import os
import signal
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME = "com.tolvane.brevok.HelperTool"
METHODS = """<node><interface name='com.tolvane.brevok.HelperTool'><method name='Version'>
<arg type='i' direction='out'/></method>{more}</interface></node>"""
INSTALL = """<method name='InstallPluginFromSource'><arg type='s' direction='in'/><arg type='s' direction='in'/>
<arg type='u' direction='in'/><arg type='b' direction='out'/><arg type='s' direction='out'/>
<arg type='i' direction='out'/><arg type='s' direction='out'/></method>"""

bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)
what = sys.argv[1]
if what == "mute":
    bus.add_filter(lambda connection, message, incoming: None if incoming and message.get_message_type()
                   == Gio.DBusMessageType.METHOD_CALL else message)
else:
    # "15-poor" has no way to install; "15-vanishing" ends when it is asked to; "15-stuck" stops.
    def called(connection, sender, path, interface, method, arguments, invocation):
        if method == "Version":
            invocation.return_value(GLib.Variant("(i)", (int(what.split("-")[0]),)))
        elif what.endswith("vanishing"):
            os._exit(0)
        elif what.endswith("stuck"):
            os.kill(os.getpid(), signal.SIGSTOP)
    node = Gio.DBusNodeInfo.new_for_xml(METHODS.format(more="" if what.endswith("poor") else INSTALL))
    bus.register_object("/" + NAME.replace(".", "/"), node.interfaces[0], called, None, None)
Gio.bus_own_name_on_connection(bus, NAME, 0, None, None)
GLib.MainLoop().run()
