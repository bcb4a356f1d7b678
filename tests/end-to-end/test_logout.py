"""The end of a user's session and the next one: display and bus go, in either order, and come back."""
import os
import signal

from brevok_session import PATIENCE, end_process, start_bus, wait_for, with_children
from on_desktop import OnDesktop, run_tests
from virtual_desktop import VirtualDesktop


class Logout(OnDesktop):
    def setUp(self):
        super().setUp()
        self.session.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        self.start_own_bus()

    def start_own_bus(self):
        socket = self.session.folder / "bus"
        socket.unlink(missing_ok=True)
        self.bus, address = start_bus(self, f"unix:path={socket}")
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = address

    def log_out(self, bus_first):
        """@return the processes of the application, which are to end by themselves"""
        processes = with_children(self.session.application.pid)
        for process in (self.bus, self.desktop.display) if bus_first else (self.desktop.display, self.bus):
            end_process(process, signal.SIGKILL)
        self.session.application.wait(PATIENCE)
        self.session.application = None
        wait_for(lambda: not any(process.exists() for process in processes), "nothing of it is left")

    def log_in(self):
        self.desktop = self.enterContext(VirtualDesktop(os.environ))
        self.session.environment["DISPLAY"] = self.desktop.environment["DISPLAY"]
        self.start_own_bus()
        self.start()

    def test_an_idle_application(self):
        self.start(signed_in=True)
        for bus_first in True, False:
            self.session.ctl("open-panel")
            self.log_out(bus_first)
            self.log_in()
            self.assertTrue(self.session.status()["session"]["signedIn"])

    def test_in_the_middle_of_an_install(self):
        session = self.session
        session.publish("Beta", "0xB", "1.0", 140)
        self.start()
        session.ctl("check")
        for bus_first, prefix in (True, "0xA"), (False, "0xB"):
            with session.install_under_way(prefix) as install:
                self.log_out(bus_first)
                self.assertEqual(install.wait(PATIENCE), 3)
            self.log_in()
            self.assertEqual(session.package_status(prefix), "In Progress")
            session.ctl("discard")
            session.ctl("check")
            session.ctl("install", prefix)
            self.assertEqual(session.package_status(prefix), "Up To Date")
        leftovers = [path for path in session.state_file().parent.rglob("*") if ".part" in path.name]
        self.assertEqual(leftovers, [])


if __name__ == "__main__":
    run_tests()
