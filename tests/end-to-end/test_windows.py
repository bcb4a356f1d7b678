"""The windows as a user has them: a virtual display with a window manager and a tray, the real programs, keyboard and
pointer. What the windows show is read as assistive technology reads it, so names, roles and places are tested too."""
import base64
import pathlib
import signal
import subprocess
from brevok_session import PATIENCE, wait_for
from on_desktop import EMAIL, MARGIN, PANEL_HEIGHT, PANEL_WIDTH, PASSWORD, GLib, OnDesktop, StatusNotifierHost, run_tests


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

        # Down goes into the list; what can be pressed there has the focus.
        desktop.press("Down")
        self.wait_for_control("Remove Alpha", "push button", focused=True)
        desktop.press("Return")
        self.wait_for_control("Install Alpha", "push button", enabled=True)
        self.assertIsNone(session.installed_version("Alpha"))
        desktop.press("Escape")
        self.wait_for_closed_panel()

    def test_a_failed_install_says_why_in_its_row(self):
        session = self.session
        archive = session.service_root / session.plugins[0]["Link"].lstrip("/")
        whole = archive.read_bytes()
        self.start(signed_in=True)
        self.open_panel()
        self.wait_for_control("Install Alpha", "push button", enabled=True)
        archive.write_bytes(whole.replace(b"1.0", b"1.1"))
        self.press_button("Install Alpha")
        self.wait_for_control("Alpha 1.0, InDesign CC 2019: the archive is damaged", "list item")
        archive.write_bytes(whole)
        self.press_button("Install Alpha")
        self.wait_for_control("Up To Date Alpha", "push button", enabled=False)
        self.wait_for_control("Alpha 1.0", "list item")

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
        with self.desktop.holding("shift", "alt"):
            self.click_item()
            self.wait("the panel is opening", self.desktop.panel)
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

    def test_started_again_from_the_menu(self):
        self.start()
        for condition in self.wait_for_open_panel, self.wait_for_closed_panel, self.wait_for_open_panel:
            self.access.call(self.access.session, "com.tolvane.brevok", "/com/tolvane/brevok",
                             "org.freedesktop.Application", "Activate", GLib.Variant("(a{sv})", ({},)))
            condition()

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


class HostApplication(OnDesktop):
    def test_a_running_host_ends_when_the_user_says_so(self):
        host = self.enterContext(self.session.running_host())
        bystander = subprocess.Popen(["sleep", "600"])
        self.addCleanup(lambda: (bystander.kill(), bystander.wait()))
        self.start(signed_in=True)
        self.open_panel()
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
            self.desktop.press("Escape")
            self.wait_for_closed_panel()

    def test_a_bar_that_speaks_over_the_bus(self):
        self.start()
        with StatusNotifierHost(self.session.environment) as host:
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
        box = self.wait_for_control("Update Plug-Ins automatically", "check box", checked=False)
        self.session.ctl("settings", "set", "autoUpdate", "yes")
        self.wait_for_control("Update Plug-Ins automatically", "check box", checked=True)
        self.desktop.click(box.rectangle[0] + 8, box.middle()[1])
        self.wait_for_control("Update Plug-Ins automatically", "check box", checked=False)
        self.wait("the setting", lambda: "no" in self.session.ctl("settings", "get", "autoUpdate").stdout.lower()
                  or "false" in self.session.ctl("settings", "get", "autoUpdate").stdout.lower())
        # The panel opens beside them; the preferences stay.
        self.open_panel()
        self.assertIsNotNone(self.find("Preferences"))


class BadInput(OnDesktop):
    def publish_icon(self, prefix, data):
        name = f"{prefix}.img"
        (self.session.service_root / "icons").mkdir(exist_ok=True)
        (self.session.service_root / "icons" / name).write_bytes(data)
        for product in self.session.products:
            if product["Prefix"] == prefix:
                product["Icon"] = f"/icons/{name}"
        self.session.write_lists()

    def test_texts_and_icons_of_a_hostile_catalogue(self):
        names = {"0x1": "N" * 300, "0x2": "\U0001f9d1\u200d\U0001f680 Rocket", "0x3": "\u0645\u0644\u062d\u0642 RTL",
                 "0x4": "two\nlines\ttab", "0x5": "<b>bold</b><img src='file:///etc/passwd'>&amp;",
                 "0x6": "\u202eevil\u202c", "0x7": "plain"}
        for prefix, name in names.items():
            self.session.publish(f"Plugin{prefix}", prefix, "1.0", 140, package=name)
        self.session.products[1]["Version"] = "9." * 150
        png = base64.b64decode("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNkYPhfDwAChwGA60e6kgAAAABJRU5E"
                               "rkJggg==")
        huge = png[:16] + (60000).to_bytes(4, "big") * 2 + png[24:]
        bomb = (b'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9"><defs><g id="a0"><rect width="9" height="9"/>'
                b'</g>' + b"".join(b'<g id="a%d">%s</g>' % (i, b'<use href="#a%d"/>' % (i - 1) * 10) for i in range(1, 12))
                + b'</defs><use href="#a11"/></svg>')
        for prefix, data in (("0x1", png), ("0x2", huge), ("0x3", png[:40]), ("0x4", bomb), ("0x5", b"no image")):
            self.publish_icon(prefix, data)
        self.start(signed_in=True)
        self.open_panel()
        self.wait_for_control("Install " + names["0x5"], "push button", enabled=True)
        self.wait_for_control("Install two lines tab", "push button", enabled=True)
        rows = [c for c in self.controls() if c.role == "list item"]
        self.assertEqual([c.rectangle[3] for c in rows], [52] * len(self.session.products))
        panel = self.panel_rectangle()
        for control in self.controls():
            x, _, width, _ = control.rectangle
            self.assertTrue(width == 0 or panel[0] <= x and x + width <= panel[0] + panel[2], control)
        self.press_button("Install " + names["0x5"])
        self.wait_for_control("Up To Date " + names["0x5"])
        self.assertIsNone(self.session.application.poll())

    def test_a_catalogue_of_two_thousand(self):
        first = len(self.session.plugins)
        for number in range(2000):
            for records in (self.session.plugins, self.session.products):
                records.append({**records[0], "Name": f"Package {number:04}", "Prefix": f"0xP{number}"})
        self.assertEqual(len(self.session.plugins), first + 2000)
        self.session.write_lists()
        self.start(signed_in=True)
        self.wait("all packages", lambda: len(self.session.status()["packages"]) == 2001)
        self.open_panel()
        self.wait_for_control("Install Alpha", "push button")
        rows = [c for c in self.controls() if c.role == "list item"]
        self.assertLess(len(rows), 50, "only what is near is made")
        self.desktop.press("Down", "End")
        self.wait_for_control("Install Package 1999", "push button", focused=True)


class Colors(OnDesktop):
    def test_light_and_dark_follow_the_desktop_at_once(self):
        portal = self.start_settings_portal(1)
        self.start()
        x, y, _, _ = self.open_panel()
        for scheme, dark in ((None, True), (0, False), (1, True), (2, False)):
            if scheme is not None:
                portal.announce(scheme)
            self.wait(f"dark: {dark}", lambda: (self.brightness(x + 20, y + 600) < 100) == dark)


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
                ("an unknown option", ["--fullscreen"], self.session.environment, 2, "fullscreen"),
                ("both", ["--fullscreen"], no_display, 2, "fullscreen")):
            with self.subTest(name):
                result = subprocess.run(self.session.application_command(*words), env=environment, capture_output=True,
                                        text=True, timeout=PATIENCE, check=False)
                self.assertEqual(result.returncode, status, result.stderr)
                self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
                self.assertIn(text, result.stderr)


if __name__ == "__main__":
    run_tests()
