"""What assistive technology is told about an application's windows: the tree of controls on the accessibility bus."""
import dataclasses

from gi.repository import Gio, GLib

ACCESSIBLE = "org.a11y.atspi.Accessible"
STATES = {"active": 1, "checked": 4, "enabled": 8, "focused": 12, "selected": 23, "showing": 25, "visible": 30, "indeterminate": 32}
ANSWER_MILLISECONDS = 10000


@dataclasses.dataclass(frozen=True)
class Control:
    role: str
    name: str
    states: frozenset
    rectangle: tuple  # x, y, width, height on the screen
    depth: int

    def middle(self):
        x, y, width, height = self.rectangle
        return x + width // 2, y + height // 2

    @property
    def usable(self):
        return {"showing", "enabled"} <= self.states


class Accessibility:
    """Needs a session bus; the accessibility bus is started by it."""

    def __init__(self):
        self.session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = self.call(self.session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)

    def close(self):
        self.bus.close_sync()

    @staticmethod
    def call(bus, name, path, interface, method, arguments=None):
        return bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                             ANSWER_MILLISECONDS, None).unpack()

    def property(self, name, path, interface, key):
        return self.call(self.bus, name, path, "org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", (interface, key)))[0]

    def children(self, name, path):
        return self.call(self.bus, name, path, ACCESSIBLE, "GetChildren")[0]

    def controls(self, pid):
        """All controls of the program with the process id `pid`, in their order; none while it shows nothing."""
        found = []
        try:
            for name, path in self.children("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"):
                owner = self.call(self.bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                  "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]
                if owner == pid:
                    self.collect(name, path, 0, found)
        except GLib.Error:
            return []  # something went away meanwhile; who waits asks again
        return found

    def collect(self, name, path, depth, found):
        low, high = self.call(self.bus, name, path, ACCESSIBLE, "GetState")[0]
        bits = low | high << 32
        states = frozenset(state for state, bit in STATES.items() if bits >> bit & 1)
        if depth > 1 and "visible" not in states:
            return
        place = (0, 0, 0, 0)
        if depth > 0:
            place = self.call(self.bus, name, path, "org.a11y.atspi.Component", "GetExtents",
                              GLib.Variant("(u)", (0,)))[0]
        found.append(Control(self.call(self.bus, name, path, ACCESSIBLE, "GetRoleName")[0],
                             self.property(name, path, ACCESSIBLE, "Name"), states, tuple(place), depth))
        for child_name, child_path in self.children(name, path):
            self.collect(child_name, child_path, depth + 1, found)
