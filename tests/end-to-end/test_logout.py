"""Buses and displays that go and come back, real ones: the end of a user's session and the next one, and a session bus
that is started again at the same address, with a bar and a settings portal on it."""
import os
import signal

from brevok_session import PATIENCE, end_process, start_bus, wait_for, with_children
from on_desktop import PANEL_HEIGHT, PANEL_WIDTH, OnDesktop, StatusNotifierHost, run_tests
from virtual_desktop import VirtualDesktop


class OwnBus(OnDesktop):
    def setUp(self):
        super().setUp()
        self.session.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        self.socket = self.session.folder / "bus"
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.socket}"
        self.start_bus()

    def start_bus(self):
        self.socket.unlink(missing_ok=True)
        self.bus, _ = start_bus(self, f"unix:path={self.socket}")


class Logout(OwnBus):
    def log_out(self, bus_first):
        """@return the processes of the application, which are to end by themselves"""
        processes = with_children(self.session.application.pid)
        for process in (self.bus, self.desktop.display) if bus_first else (self.desktop.display, self.bus):
            end_process(process, signal.SIGKILL)
        self.assertGreaterEqual(self.exit_status(), 0, "it ends by itself, not by a signal")
        self.session.application = None
        wait_for(lambda: not any(process.exists() for process in processes), "nothing of it is left")

    def log_in(self):
        self.desktop = self.enterContext(VirtualDesktop(os.environ))
        self.session.environment["DISPLAY"] = self.desktop.environment["DISPLAY"]
        self.start_bus()
        self.start()

    def test_with_an_open_panel_in_the_middle_of_an_install(self):
        session = self.session
        session.publish("Beta", "0xB", "1.0", 140)
        self.start(signed_in=True)
        for bus_first, prefix in (True, "0xA"), (False, "0xB"):
            session.ctl("open-panel")
            with session.install_under_way(prefix) as install:
                self.log_out(bus_first)
                self.assertEqual(install.wait(PATIENCE), 3)
            self.log_in()
            self.assertTrue(session.status()["session"]["signedIn"])
            self.assertEqual(session.package_status(prefix), "In Progress")
            session.ctl("discard")
            session.ctl("check")
            session.ctl("install", prefix)
            self.assertEqual(session.package_status(prefix), "Up To Date")
        leftovers = [path for path in session.state_file().parent.rglob("*") if ".part" in path.name]
        self.assertEqual(leftovers, [])


class ReturningBus(OwnBus):
    losses = 0

    def end_bus(self):
        end_process(self.bus, signal.SIGKILL)
        self.losses += 1
        self.wait("the loss is noticed", lambda: self.session.log().count("The session bus is gone") == self.losses)

    def start_bus_again(self):
        self.start_bus()
        self.wait("the application is on it", lambda: self.session.ctl("status", check=False).returncode == 0)

    def is_open(self):
        return self.panel_rectangle()[2:] == (PANEL_WIDTH, PANEL_HEIGHT)

    def test_the_item_registers_on_every_bus(self):
        self.start()
        for _ in range(3):
            host = StatusNotifierHost(self, self.session.environment)
            item = self.wait("the item registers", host.item)
            self.wait("the other tray has it no more", lambda: not self.desktop.tray_item())
            host.activate(item, 700, 12)
            self.wait("the panel is open", self.is_open)
            x, _, width, _ = self.panel_rectangle()
            self.assertLessEqual(abs(x + width // 2 - 700), 1, "it is centred under the click")
            host.activate(item, 700, 12)
            self.wait_for_closed_panel()
            self.end_bus()
            host.close()
            self.wait("the other tray has it meanwhile", self.desktop.tray_item)
            self.start_bus_again()

    def test_light_and_dark_are_heard_on_every_bus(self):
        portal = self.start_settings_portal(1)
        self.start()
        self.click_item()
        self.wait("the panel is open", self.is_open)
        x, y, _, _ = self.panel_rectangle()

        def wait_until_dark(dark):
            self.wait(f"dark: {dark}", lambda: (self.brightness(x + 20, y + 600) < 100) == dark)

        wait_until_dark(True)
        for first, second in (0, 1), (2, 1):
            portal.close()
            self.end_bus()
            self.start_bus_again()
            portal = self.start_settings_portal(0)
            for scheme in first, second:
                portal.say(scheme)
                wait_until_dark(scheme == 1)


if __name__ == "__main__":
    run_tests()
