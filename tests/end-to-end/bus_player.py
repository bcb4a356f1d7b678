"""What the programs share that play a service of the desktop on the session bus."""
import sys
import threading

from gi.repository import Gio, GLib


def play(bus, name, path, interface, called, heard, asked=None):
    """Owns `name` until standard input ends, and says when it does; `heard` gets each line of the input."""
    loop = GLib.MainLoop()

    def read_input():
        for line in sys.stdin:
            GLib.idle_add(heard, line)
        GLib.idle_add(loop.quit)

    bus.register_object(path, Gio.DBusNodeInfo.new_for_xml(interface).interfaces[0], called, asked, None)
    Gio.bus_own_name_on_connection(bus, name, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
    threading.Thread(target=read_input, daemon=True).start()
    loop.run()
