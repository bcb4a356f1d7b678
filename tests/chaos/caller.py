"""Somebody who keeps asking the program how it is, and how long its answers take."""
import os
import pathlib
import threading
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

PROGRAM = "com.tolvane.brevok"
EVERY = 0.05  # seconds


def waited_for_processor(thread):
    """Seconds that a thread, as "PROCESS/task/THREAD", was ready and had to wait, which is no fault of its own."""
    try:
        return int(pathlib.Path(f"/proc/{thread}/schedstat").read_text().split()[1]) / 1e9
    except (OSError, IndexError):
        return 0


class Caller(threading.Thread):
    def __init__(self, address):
        super().__init__(daemon=True)
        self.address, self.connection = address, None
        self.asked = self.bus = None  # processes, while they run and have started
        self.slowest, self.ended = 0, threading.Event()

    def run(self):
        me = f"{os.getpid()}/task/{threading.get_native_id()}"
        while not self.ended.wait(EVERY):
            asked, bus = self.asked, self.bus
            if asked is None:
                continue
            threads = (me, f"{asked}/task/{asked}", f"{bus}/task/{bus}")
            begin, waited = time.monotonic(), sum(map(waited_for_processor, threads))
            if not self.ask("com.tolvane.brevok.Control1", PROGRAM, "/com/tolvane/brevok/Control", "Status"):
                continue
            taken = time.monotonic() - begin - (sum(map(waited_for_processor, threads)) - waited)
            if asked == self.asked:
                self.slowest = max(self.slowest, taken)

    def ask(self, interface, name, path, method, arguments=None):
        """@return the answer, or nothing"""
        try:
            if self.connection is None or self.connection.is_closed():
                self.connection = Gio.DBusConnection.new_for_address_sync(
                    self.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                    | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
                self.connection.set_exit_on_close(False)
            return self.connection.call_sync(name, path, interface, method, arguments, None,
                                             Gio.DBusCallFlags.NO_AUTO_START, 20000, None).unpack()
        except GLib.Error:
            return None  # it is not there

    def take_slowest(self):
        """The seconds of the slowest answer since the last time."""
        taken, self.slowest = self.slowest, 0
        return taken

    def match_rules(self):
        """How many signals the program waits for on the bus."""
        told = self.ask("org.freedesktop.DBus.Debug.Stats", "org.freedesktop.DBus", "/org/freedesktop/DBus",
                        "GetConnectionStats", GLib.Variant("(s)", (PROGRAM,)))
        return told[0]["MatchRules"] if told else 0

    def close(self):
        self.asked = None
        self.ended.set()
        self.join()
