"""What tests with windows share: the application on a desktop of its own, and a bar that speaks over the bus."""
import os
import pathlib
import re
import subprocess
import sys
import time
import unittest

try:
    from accessible import Accessibility
    from gi.repository import GLib
except (ImportError, ValueError):
    Accessibility = GLib = None
from brevok_session import PATIENCE, Played, Session, wait_for
from virtual_desktop import VirtualDesktop, missing_programs

PANEL_WIDTH, PANEL_HEIGHT, MARGIN = 446, 694, 8
SKIPPED = 77  # what ctest counts as skipped
DOUBLE_CLICK = 0.4  # seconds: clicks on the item that are closer to each other count for one


class Clicks:
    """Keeps clicks apart that are to count each."""
    last = -DOUBLE_CLICK  # when one was made, or was seen to have worked

    @classmethod
    def note(cls):
        cls.last = time.monotonic()

    @classmethod
    def wait_for_next(cls):
        wait_for(lambda: time.monotonic() > cls.last + DOUBLE_CLICK, "the time of a double click is over")
        cls.note()


class WindowSession(Session):
    """The application with windows on a desktop."""

    def __init__(self, desktop):
        super().__init__(pathlib.Path(sys.argv[1]))
        self.headless = []
        self.environment |= {"DISPLAY": desktop.environment["DISPLAY"], "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        self.environment.pop("QT_QPA_PLATFORM", None)


class OnDesktop(unittest.TestCase):
    """A desktop of its own for each test; `session` runs on it."""

    def setUp(self):
        self.desktop = self.enterContext(VirtualDesktop(os.environ))
        self.session = self.enterContext(WindowSession(self.desktop))
        self.session.publish("Alpha", "0xA", "1.0", 140)
        self.access = Accessibility()
        self.addCleanup(self.access.close)
        self.addCleanup(self.show_early_log)

    def show_early_log(self):
        if any(failure for _, failure in getattr(self._outcome.result, "failures", [])[-1:]):
            print((self.session.folder / "early.log").read_text(), self.session.log()[-3000:],
                  self.desktop.run("xwininfo", "-root", "-tree"), file=sys.stderr)

    # starting and opening

    def start(self, signed_in=False):
        self.session.start_application()
        if signed_in:
            self.session.sign_in()
            self.wait("the lists", lambda: self.session.package_status("0xA"))
        return wait_for(self.desktop.tray_item, "the item is in the tray")

    def click_item(self):
        x, y, width, height = wait_for(self.desktop.tray_item, "the item is in the tray")
        Clicks.wait_for_next()
        self.desktop.click(x + width // 2, y + height // 2)

    def open_panel(self):
        self.click_item()
        return self.wait_for_open_panel()

    def start_with_panel(self, signed_in=False):
        self.start(signed_in)
        return self.open_panel()

    def close_panel(self):
        self.desktop.press("Escape")
        self.wait_for_closed_panel()

    def open_preferences(self):
        self.desktop.press("ctrl+comma")
        self.wait_for_control("Preferences", None, active=True)

    def wait_for_open_panel(self):
        self.wait("the panel is open", lambda: self.panel_rectangle()[2:] == (PANEL_WIDTH, PANEL_HEIGHT))
        self.wait("the panel has the focus", lambda: self.panel_is_active())
        Clicks.note()
        return self.panel_rectangle()

    def panel_rectangle(self):
        return self.desktop.panel() or (0, 0, 0, 0)

    def brightness(self, x, y):
        text = self.desktop.run("import", "-silent", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8",
                                "-colorspace", "gray", "txt:-")
        return int(re.search(r"\((\d+)", text.splitlines()[-1])[1])

    def panel_is_active(self):
        return any("active" in c.states and c.depth == 1 and c.name == "Tolvane Brevok" for c in self.controls())

    def wait_for_closed_panel(self):
        self.wait("the panel is closed", lambda: self.desktop.panel() is None)
        Clicks.note()

    # looking

    def controls(self):
        return self.access.controls(self.session.application.pid)

    def find(self, name, role=None):
        return next((c for c in self.controls() if c.name == name and role in (None, c.role)), None)

    def wait(self, what, condition):
        try:
            return wait_for(condition, what)
        except AssertionError as error:
            shown = "\n".join(f"{'  ' * c.depth}{c.role} {c.name!r} {sorted(c.states)} {c.rectangle}"
                              for c in self.controls())
            focused = self.desktop.run("xdotool", "getwindowfocus").strip()
            shown += f"\nfocus: {focused} {self.desktop.run('xdotool', 'getwindowname', focused)}"
            raise AssertionError(f"{error}\n{shown}\n{self.session.log()[-2000:]}") from None

    def wait_for_control(self, name, role=None, **wanted):
        """`wanted`: states by name, whether they are to be there."""
        def found():
            control = self.find(name, role)
            good = control and all((state in control.states) == there for state, there in wanted.items())
            return control if good else None
        return self.wait(f"{role or 'control'} {name!r} {wanted or ''}", found)

    def wait_until_gone(self, name, role=None):
        self.wait(f"no {name!r}", lambda: self.controls() and not self.find(name, role))

    def press_button(self, name):
        control = self.wait_for_control(name, "push button", enabled=True, showing=True)
        self.desktop.click(*control.middle())

    def start_settings_portal(self, scheme):
        return Played(self, "settings_portal.py", scheme, environment=self.session.environment)

    def exit_status(self):
        return self.session.application.wait(PATIENCE)


class StatusNotifierHost(Played):
    """A bar as the application sees it on a session bus."""
    registered = None

    def __init__(self, test, environment):
        super().__init__(test, "status_notifier_host.py", environment=environment)
        self.environment = environment

    def item(self):
        if not self.registered and not self.lines.empty():
            self.registered = self.lines.get()
        return self.registered

    def activate(self, item, x, y):
        Clicks.wait_for_next()
        subprocess.run(["dbus-send", "--session", "--print-reply", f"--dest={item}", "/StatusNotifierItem",
                        "org.kde.StatusNotifierItem.Activate", f"int32:{x}", f"int32:{y}"], check=True,
                       env=self.environment, stdout=subprocess.DEVNULL)
        Clicks.note()  # answered: it has worked


def run_tests():
    """The main program of a file of tests; its argument is the folder of the programs."""
    if Accessibility is None:
        print("skipped: python3-gi is not installed")
        sys.exit(SKIPPED)
    if missing_programs():
        print(f"skipped: not installed: {', '.join(missing_programs())}")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1] + sys.argv[2:], verbosity=2)
