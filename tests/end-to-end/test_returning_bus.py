"""What the windows have to do with the session bus, when that bus is started again: a real daemon, ended and started at
the same address, with a bar and a settings portal on it."""
import signal

from brevok_session import end_process, start_bus
from on_desktop import PANEL_HEIGHT, PANEL_WIDTH, OnDesktop, StatusNotifierHost, run_tests


class ReturningBus(OnDesktop):
    def setUp(self):
        super().setUp()
        self.socket = self.session.folder / "bus"
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.socket}"
        self.session.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        self.losses = 0
        self.start_bus()

    def start_bus(self):
        self.daemon, _ = start_bus(self, f"unix:path={self.socket}")

    def end_bus(self):
        end_process(self.daemon, signal.SIGKILL)
        self.socket.unlink(missing_ok=True)
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
            with StatusNotifierHost(self.session.environment) as host:
                item = self.wait("the item registers", host.item)
                self.wait("the other tray has it no more", lambda: not self.desktop.tray_item())
                host.activate(item, 700, 12)
                self.wait("the panel is open", self.is_open)
                host.activate(item, 700, 12)
                self.wait_for_closed_panel()
                self.end_bus()
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
        for scheme in 0, 1:
            portal.close()
            self.end_bus()
            self.start_bus_again()
            portal = self.start_settings_portal(0)
            portal.announce(scheme)
            wait_until_dark(scheme == 1)


if __name__ == "__main__":
    run_tests()
