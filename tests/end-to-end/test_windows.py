"""The windows as a user has them: a virtual display with a window manager and a tray, the real programs, keyboard and
pointer. What the windows show is read as assistive technology reads it, so names, roles and places are tested too."""
import signal
import subprocess

from brevok_session import EMAIL, PASSWORD, PATIENCE
from on_desktop import MARGIN, PANEL_HEIGHT, PANEL_WIDTH, Clicks, GLib, OnDesktop, run_tests


class Panel(OnDesktop):
    def test_sign_in_install_and_remove_as_a_user_does(self):
        session, desktop = self.session, self.desktop
        item = self.start()
        x, y, width, height = self.open_panel()
        self.assertEqual(x + width, desktop.width - MARGIN, "the panel keeps its distance from the screen's edge")
        self.assertEqual(y, item[1] + item[3], "the panel begins where the item ends")

        self.wait_for_control("Email address", "text", focused=True)
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

        # Down goes into the list, sideways to what removes, which asks whoever comes by keyboard.
        desktop.press("Down")
        self.wait_for_control("Alpha 1.0, up to date", "list item", focused=True)
        desktop.press("Right", "Right")
        self.wait_for_control("Remove Alpha", "push button", focused=True)
        desktop.press("Return")
        self.wait_for_control("Cancel", "push button", focused=True)
        desktop.press("Tab", "space")
        self.wait_for_control("Install Alpha", "push button", enabled=True)
        self.assertIsNone(session.installed_version("Alpha"))
        self.close_panel()

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

    def test_a_double_click_opens_the_panel(self):
        x, y, width, height = self.start()
        Clicks.wait_for_next()
        self.desktop.run(
            "xdotool", "mousemove", x + width // 2, y + height // 2, "click", "--repeat", 2, "--delay", 60, 1)
        self.wait_for_open_panel()
        self.click_item()  # that it waits for its time shows that the panel stayed
        self.wait_for_closed_panel()

    def test_a_click_with_keys_held(self):
        item = self.start()
        x, y, width, height = item
        with self.desktop.holding("shift", "alt"):
            self.click_item()
            self.wait("the panel is opening", self.desktop.panel)
        self.wait_for_open_panel()
        panel = f"{{{{{1440 - MARGIN - PANEL_WIDTH}, {y + height}}}, {{{PANEL_WIDTH}, {PANEL_HEIGHT}}}}}"
        self.wait("the places in the log", lambda: "Icon is at" in self.session.log())
        self.assertIn(f"Icon is at {{{{{x}, {y + height}}}, {{{width}, {height}}}}}\n"
                      f"\tMenu is on screen {{{{0, 0}}, {{1440, 900}}}}\n\tWill be animated to {panel}",
                      self.session.log())

    def test_an_address_that_cannot_be_opened_is_shown(self):
        session, desktop = self.session, self.desktop
        opener = session.folder / "programs" / "xdg-open"
        opener.parent.mkdir()
        opener.write_text("#!/bin/sh\nexit 3\n")
        opener.chmod(0o755)
        session.environment["PATH"] = f"{opener.parent}:{session.environment['PATH']}"
        self.start_with_panel(signed_in=True)
        desktop.press("F1")
        self.wait_for_control("Address", "text", focused=True)
        self.assertIsNotNone(desktop.panel(), "the panel stays below")
        desktop.press("Escape")
        self.wait_for_open_panel()

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

    def test_started_again_from_the_menu(self):
        self.start()
        for condition in self.wait_for_open_panel, self.wait_for_closed_panel, self.wait_for_open_panel:
            self.access.call(self.access.session, "com.tolvane.brevok", "/com/tolvane/brevok",
                             "org.freedesktop.Application", "Activate", GLib.Variant("(a{sv})", ({},)))
            condition()

    def test_signed_out_by_the_service_while_open(self):
        self.start_with_panel(signed_in=True)
        self.wait_for_control("Install Alpha")
        self.session.stop_service()
        self.session.start_service(self.session.port())  # it knows no session any more
        self.session.ctl("signout", check=False)
        self.wait_for_control("You are signed out")
        self.assertIsNone(self.find("Password"), "the page does not change under the user's eyes")
        self.wait_for_control("Not signed in", "label")
        self.close_panel()
        self.open_panel()
        self.wait_for_control("Password", "text", focused=True)


class Alerts(OnDesktop):
    def panel_has_the_focus(self):
        """It is in the window of that title and type; on which control, another question tells."""
        focus = self.desktop.run("xdotool", "getwindowfocus").strip()
        return (self.desktop.run("xdotool", "getwindowname", focus).strip() == "Tolvane Brevok"
                and "_UTILITY" in self.desktop.run("xprop", "-id", focus, "_NET_WM_WINDOW_TYPE"))

    def alert_window(self):
        """Its id and what the window manager lets the user do with it."""
        for window in self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "tolvane-brevok").split():
            if "_MODAL" in self.desktop.run("xprop", "-id", window, "_NET_WM_STATE"):
                return window, self.desktop.run("xprop", "-id", window, "_NET_WM_ALLOWED_ACTIONS")
        return None

    def test_the_focus_goes_back_to_the_panel(self):
        self.start_with_panel()
        self.open_preferences()
        self.wait_for_closed_panel()
        self.open_panel()
        self.session.stop_service()
        self.desktop.write(EMAIL)
        self.desktop.press("Tab")
        self.desktop.write("anything")
        for raise_alert, button, answer in (("Return", "OK", "Return"), ("ctrl+q", "Cancel", "alt+F4")):
            self.desktop.press(raise_alert)
            self.wait_for_control(button, "push button", focused=True)
            self.assertIsNotNone(self.desktop.panel(), "the panel stays under its alert")
            window, allowed = self.wait("the alert", self.alert_window)
            self.assertNotIn("MAXIMIZE", allowed)
            self.desktop.run("xdotool", "windowminimize", window)
            self.wait("it stays", lambda: "IsViewable" in self.desktop.run("xwininfo", "-id", window))
            self.wait_for_control(button, "push button", focused=True)
            self.desktop.press(answer)
            self.wait_until_gone(button)
            self.wait("the panel has the focus", self.panel_has_the_focus)
            self.wait_for_control("Password", "text", focused=True)


class HostApplication(OnDesktop):
    def test_a_running_host_ends_when_the_user_says_so(self):
        host = self.enterContext(self.session.running_host())
        bystander = subprocess.Popen(["sleep", "600"])
        self.addCleanup(lambda: (bystander.kill(), bystander.wait()))
        self.start_with_panel(signed_in=True)
        self.press_button("Install Alpha")
        self.wait_for_control("Continue", "push button")
        self.wait("the install did not wait for the answer", lambda: self.session.installed_version("Alpha"))
        self.assertIsNone(host.poll(), "nothing ends without the user's word")
        self.press_button("Quit InDesign")
        self.assertEqual(host.wait(PATIENCE), -signal.SIGTERM)
        self.assertIsNone(bystander.poll())

        again = self.enterContext(self.session.running_host())
        self.press_button("Remove Alpha")
        self.wait("removed", lambda: not self.session.installed_version("Alpha"))
        self.wait_for_control("Install Alpha", "push button", enabled=True)
        self.assertIsNone(self.find("Quit InDesign"), "the user is told once within a minute")
        self.assertIsNone(again.poll())


class Item(OnDesktop):
    def test_the_item_comes_back_with_its_tray(self):
        self.start()
        for _ in range(2):
            self.desktop.stop_tray()
            self.wait("no item", lambda: not self.desktop.tray_item())
            self.desktop.start_tray()
            self.open_panel()
            self.close_panel()


class LongCatalogue(OnDesktop):
    def test_a_catalogue_of_two_thousand(self):
        for number in range(2000):
            for records in (self.session.plugins, self.session.products):
                records.append({**records[0], "Name": f"Package {number:04}", "Prefix": f"0xP{number}"})
        self.session.write_lists()
        self.start(signed_in=True)
        self.wait("all packages", lambda: len(self.session.status()["packages"]) == 2001)
        self.open_panel()
        self.wait_for_control("Install Alpha", "push button")
        rows = [c for c in self.controls() if c.role == "list item"]
        self.assertLess(len(rows), 50, "only what is near is made")
        self.desktop.press("Down", "End")
        self.wait_for_control("Install Package 1999", "push button", focused=True)


class Ends(OnDesktop):
    def test_it_ends_with_the_panel_open(self):
        self.start_with_panel()
        self.assertEqual(self.session.stop_application(), 0)
        self.start_with_panel()
        self.desktop.press("ctrl+q")
        self.wait_for_control("Cancel", "push button", focused=True)
        self.desktop.press("Escape")
        self.assertEqual(self.exit_status(), 0)


if __name__ == "__main__":
    run_tests()
