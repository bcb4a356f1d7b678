"""The windows as a user has them: a virtual display with a window manager and a tray, the real programs, keyboard and
pointer. What the windows show is read as assistive technology reads it, so names, roles and places are tested too."""
import os
import pathlib
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "demo"))
try:
    from accessible import Accessibility
except (ImportError, ValueError):
    Accessibility = None
from brevok_session import PATIENCE, Session, wait_for
from virtual_desktop import VirtualDesktop, missing_programs

PROGRAMS = pathlib.Path(sys.argv.pop(1))
EMAIL, PASSWORD = "ada@example.com", "analytical-engine"
PANEL_WIDTH, PANEL_HEIGHT, MARGIN = 446, 694, 8
SKIPPED = 77  # what ctest counts as skipped


class WindowSession(Session):
    """The application with windows on a desktop."""

    def __init__(self, desktop):
        super().__init__(PROGRAMS)
        self.headless = []
        self.environment |= {"DISPLAY": desktop.environment["DISPLAY"], "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        self.environment.pop("QT_QPA_PLATFORM", None)

    def port(self):
        return int(self.service_url.rsplit(":", 1)[1].strip("/"))


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
            print((self.session.folder / "early.log").read_text(), self.session.log()[-3000:], file=sys.stderr)

    # starting and opening

    def start(self, signed_in=False):
        self.session.start_application()
        if signed_in:
            self.session.ctl("signin", EMAIL, BREVOK_PASSWORD=PASSWORD)
            self.wait("the lists", lambda: self.session.package_status("0xA"))
        return wait_for(self.desktop.tray_item, "the item is in the tray")

    def click_item(self, *held):
        x, y, width, height = wait_for(self.desktop.tray_item, "the item is in the tray")
        self.desktop.click(x + width // 2, y + height // 2, *held)

    def open_panel(self):
        self.click_item()
        return self.wait_for_open_panel()

    def wait_for_open_panel(self):
        self.wait("the panel is open", lambda: self.panel_rectangle()[2:] == (PANEL_WIDTH, PANEL_HEIGHT))
        self.wait("the panel has the focus", lambda: self.panel_is_active())
        return self.panel_rectangle()

    def panel_rectangle(self):
        return self.desktop.panel() or (0, 0, 0, 0)

    def panel_is_active(self):
        return any("active" in c.states and c.depth == 1 and c.name == "Tolvane Brevok" for c in self.controls())

    def wait_for_closed_panel(self):
        self.wait("the panel is closed", lambda: self.desktop.panel() is None)

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

    def exit_status(self):
        return self.session.application.wait(PATIENCE)


class Panel(OnDesktop):
    def test_sign_in_install_and_remove_as_a_user_does(self):
        session, desktop = self.session, self.desktop
        item = self.start()
        x, y, width, height = self.open_panel()
        self.assertEqual(x + width, desktop.width - MARGIN, "the panel keeps its distance from the screen's edge")
        self.assertEqual(y, item[1] + item[3], "the panel begins where the item ends")

        self.wait_for_control("E-mail address", "text", focused=True)
        desktop.write(EMAIL)
        desktop.press("Return")
        self.wait_for_control("Password", "text", focused=True)
        desktop.write(PASSWORD)
        desktop.press("Return")
        self.wait_for_control("Install Alpha", "push button", enabled=True)
        self.assertTrue(session.status()["session"]["signedIn"])
        self.assertIsNone(self.find("Remove Alpha"), "what is not installed cannot be removed")

        session.service.send_signal(signal.SIGSTOP)  # so that the row can be watched
        try:
            self.press_button("Install Alpha")
            self.wait_for_control("Alpha is in progress", "animation")
            self.wait_for_control("Alpha 1.0, Working…", "list item")
            self.assertIsNone(self.find("Install Alpha"))
        finally:
            session.service.send_signal(signal.SIGCONT)
        self.wait_for_control("Up To Date Alpha", "push button", enabled=False)
        self.assertIsNone(self.find("Alpha is in progress"))
        self.assertEqual(session.installed_version("Alpha"), "1.0")

        # Down goes into the list; what can be pressed there has the focus.
        desktop.press("Down")
        self.wait_for_control("Remove Alpha", "push button", focused=True)
        desktop.press("Return")
        self.wait_for_control("Install Alpha", "push button", enabled=True)
        self.assertIsNone(session.installed_version("Alpha"))
        desktop.press("Escape")
        self.wait_for_closed_panel()

    def test_what_closes_the_panel(self):
        self.start()
        other = self.desktop.show("xev", "-geometry", "200x200+100+300")
        self.wait("another window", lambda: self.desktop.run("xdotool", "search", "--name", "Event Tester"))
        for name, close in {"Escape": lambda: self.desktop.press("Escape"), "a second click": self.click_item,
                            "another window's focus": lambda: self.desktop.click(200, 400)}.items():
            with self.subTest(name):
                self.open_panel()
                close()
                self.wait_for_closed_panel()
        self.assertIsNone(other.poll())
        self.open_panel()

    def test_a_click_with_keys_held(self):
        item = self.start()
        x, y, width, height = item
        self.click_item("shift", "alt")
        self.wait_for_open_panel()
        panel = f"{{{{{1440 - MARGIN - PANEL_WIDTH}, {y + height}}}, {{{PANEL_WIDTH}, {PANEL_HEIGHT}}}}}"
        self.wait("the places in the log", lambda: "Icon is at" in self.session.log())
        self.assertIn(f"Icon is at {{{{{x}, {y + height}}}, {{{width}, {height}}}}}\n"
                      f"\tMenu is on screen {{{{0, 0}}, {{1440, 900}}}}\n\tWill be animated to {panel}",
                      self.session.log())

    def test_an_alert_leaves_the_panel_open(self):
        self.start()
        self.open_panel()
        self.session.stop_service()
        self.desktop.write(EMAIL)
        self.desktop.press("Tab")
        self.desktop.write("anything")
        self.desktop.press("Return")
        answer = self.wait_for_control("OK", "push button", focused=True)
        self.assertIsNotNone(self.desktop.panel(), "the panel stays under its alert")
        self.desktop.click(*answer.middle())
        self.wait_until_gone("OK")
        self.wait_for_open_panel()
        self.wait_for_control("Sign In", "push button", enabled=True)
        self.desktop.press("Escape")
        self.wait_for_closed_panel()

    def test_a_second_start_opens_the_panel_of_the_first(self):
        self.start()
        second = subprocess.Popen(self.session.application_command(), env=self.session.environment,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(lambda: second.poll() is None and second.kill())

        def alert_says():
            return next((c for c in self.access.controls(second.pid) if c.role == "label" and "already" in c.name), None)
        self.wait("the panel of the first", self.desktop.panel)
        text = self.wait("the second says that the first runs", alert_says)
        # Which of the two has the focus depends on which program was faster; the user now turns to the alert.
        self.desktop.click(*text.middle())
        self.wait("the alert has the focus", lambda: any(
            c.depth == 1 and "active" in c.states for c in self.access.controls(second.pid)))
        self.desktop.press("Return")
        self.assertEqual(second.wait(PATIENCE), 0)
        self.assertIsNone(self.session.application.poll())

    def test_signed_out_by_the_service_while_open(self):
        self.start(signed_in=True)
        self.open_panel()
        self.wait_for_control("Install Alpha")
        self.session.stop_service()
        self.session.start_service(self.session.port())  # it knows no session any more
        self.session.ctl("signout", check=False)
        self.wait_for_control("You are signed out")
        self.assertIsNone(self.find("Password"), "the page does not change under the user's eyes")
        self.wait_for_control("Not signed in", "label")
        self.desktop.press("Escape")
        self.wait_for_closed_panel()
        self.open_panel()
        self.wait_for_control("Password", "text", focused=True)

    def test_the_quit_question_has_its_keys_reversed(self):
        self.start()
        for key, status in (("Return", None), ("Escape", 0)):
            self.open_panel()
            self.desktop.press("ctrl+q")
            self.wait_for_control("Quit", "push button")
            self.wait_for_control("Cancel", "push button", focused=True)
            self.desktop.press(key)
            if status is None:
                self.wait_until_gone("Quit")
                self.wait_for_open_panel()
                self.desktop.press("Escape")
                self.wait_for_closed_panel()
        self.assertEqual(self.exit_status(), 0)


class Item(OnDesktop):
    def test_the_item_comes_back_with_its_tray(self):
        self.start()
        for _ in range(2):
            self.desktop.stop_tray()
            self.wait("no item", lambda: not self.desktop.tray_item())
            self.desktop.start_tray()
            self.open_panel()
            self.desktop.press("Escape")
            self.wait_for_closed_panel()

    def test_a_bar_that_speaks_over_the_bus(self):
        self.start()
        with StatusNotifierHost() as host:
            item = self.wait("the item registers", host.item)
            self.wait("the other tray has it no more", lambda: not self.desktop.tray_item())
            host.activate(item, 700, 12)
            x, _, width, _ = self.wait_for_open_panel()
            self.assertLessEqual(abs(x + width // 2 - 700), 1, "the panel is centred under the click")
            self.desktop.press("Escape")
            self.wait_for_closed_panel()
        self.open_panel()


class Preferences(OnDesktop):
    def test_pages_and_settings(self):
        self.start(signed_in=True)
        self.open_panel()
        self.desktop.press("ctrl+comma")
        self.wait_for_control("Preferences", None, active=True)
        self.wait_for_control("Sign Out", "push button", enabled=True)
        self.desktop.press("ctrl+2")
        self.wait_for_control("Targets", "table")
        self.desktop.press("ctrl+3")
        box = self.wait_for_control("Update plug-ins automatically", "check box", checked=False)
        self.session.ctl("settings", "set", "autoUpdate", "yes")
        self.wait_for_control("Update plug-ins automatically", "check box", checked=True)
        self.desktop.click(box.rectangle[0] + 8, box.middle()[1])
        self.wait_for_control("Update plug-ins automatically", "check box", checked=False)
        self.wait("the setting", lambda: "no" in self.session.ctl("settings", "get", "autoUpdate").stdout.lower()
                  or "false" in self.session.ctl("settings", "get", "autoUpdate").stdout.lower())
        # The panel opens beside them; the preferences stay.
        self.open_panel()
        self.assertIsNotNone(self.find("Preferences"))


class Ends(OnDesktop):
    def test_a_signal_ends_it_with_the_panel_open(self):
        self.start(signed_in=True)
        self.open_panel()
        self.assertEqual(self.session.stop_application(), 0)

    def test_the_display_goes_away(self):
        self.start(signed_in=True)
        self.session.ctl("settings", "set", "logLevel", "1")
        self.open_panel()
        self.desktop.display.terminate()
        self.desktop.display.wait()
        self.assertGreaterEqual(self.exit_status(), 0, "it ends by itself, not by a signal")
        self.assertIn("OrlecLogLevel", self.session.settings_file().read_text())
        self.session.application = None
        self.session.headless = ["--headless"]
        self.session.start_application()
        self.assertTrue(self.session.status()["session"]["signedIn"], "nothing is lost")

    def test_starts_that_are_refused(self):
        no_display = {name: value for name, value in self.session.environment.items() if name != "DISPLAY"}
        for name, words, environment, status, text in (
                ("no display", [], no_display, 1, "there is no display"),
                ("a display that is not there", [], {**no_display, "DISPLAY": ":54321"}, 1, "':54321'"),
                ("an unknown option", ["--fullscreen"], self.session.environment, 2, "fullscreen"),
                ("both", ["--fullscreen"], no_display, 2, "fullscreen")):
            with self.subTest(name):
                result = subprocess.run(self.session.application_command(*words), env=environment, capture_output=True,
                                        text=True, timeout=PATIENCE, check=False)
                self.assertEqual(result.returncode, status, result.stderr)
                self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
                self.assertIn(text, result.stderr)


class StatusNotifierHost:
    """A bar as the application sees it on the session bus, in a process of its own."""

    def __enter__(self):
        script = pathlib.Path(__file__).with_name("status_notifier_host.py")
        self.process = subprocess.Popen([sys.executable, script], stdout=subprocess.PIPE, text=True)
        self.registered = None
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def item(self):
        self.registered = self.registered or self.process.stdout.readline().strip()
        return self.registered

    @staticmethod
    def activate(item, x, y):
        subprocess.run(["dbus-send", "--session", "--print-reply", f"--dest={item}", "/StatusNotifierItem",
                        "org.kde.StatusNotifierItem.Activate", f"int32:{x}", f"int32:{y}"], check=True,
                       stdout=subprocess.DEVNULL)


if __name__ == "__main__":
    if Accessibility is None:
        print("skipped: python3-gi is not installed")
        sys.exit(SKIPPED)
    if missing_programs():
        print(f"skipped: not installed: {', '.join(missing_programs())}")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
