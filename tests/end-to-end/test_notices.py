"""The notice about brevokctl converge: the real programs, a real session bus, a scripted notification service."""
import json
import shlex
import sys

from brevok_session import PATIENCE, Played, SessionTest, ask_bus, offer_to_the_bus, run_tests, wait_for

SKIPPED = 77


class NotificationService(Played):
    def next(self):
        return json.loads(self.lines.get(timeout=PATIENCE))

    def click(self, notice, action):
        self.say(f"{notice['number']} {action}")


class Notices(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.headless = ["--background"]  # with the windows of a display that is not there
        self.service = NotificationService(self, "notification_service.py")
        for name, prefix in (("Alpha", "0xA"), ("Beta", "0xB")):
            self.session.publish(name, prefix, "1.0", 140)
        self.session.start_application()
        wait_for(lambda: self.session.status()["targets"], "the host application is found")
        self.session.sign_in()
        self.session.ctl("check")
        self.session.ctl("install", "0xA", "0xB")
        self.session.publish("Alpha", "0xA", "1.1", 140)

    def test_what_is_new_is_said_once(self):
        session = self.session
        session.ctl("converge", "--dry-run")
        session.ctl("converge")
        notice = self.service.next()
        self.assertEqual(notice, {"number": 1, "title": "Plug-In update available!",
                                  "text": "Waiting for an update: Alpha", "actions": ["open", "update"]})
        session.ctl("converge")  # says nothing
        session.stop_application()
        session.start_application()
        session.ctl("converge")  # nor does another program
        session.ctl("settings", "set", "showNotifications", "no")
        session.publish("Beta", "0xB", "1.1", 140)
        session.ctl("converge")
        session.ctl("settings", "set", "showNotifications", "yes")
        session.ctl("settings", "set", "autoUpdate", "yes")
        session.ctl("converge")
        notice = self.service.next()
        self.assertEqual((notice["number"], notice["title"], notice["text"], notice["actions"]),
                         (2, "Your Plug-Ins were changed", "Installed: Alpha, Beta", ["open"]))

    def test_a_click_updates(self):
        session = self.session
        session.ctl("converge")
        self.service.click(self.service.next(), "update")
        wait_for(lambda: session.installed_version("Alpha") == "1.1", "the update is installed")

    def test_a_click_while_signed_out_changes_nothing(self):
        session = self.session
        session.ctl("converge")
        notice = self.service.next()
        session.stop_application()
        session.headless = ["--headless"]  # which says in its log when the panel is wanted
        session.start_application()
        session.ctl("signout")
        self.service.click(notice, "update")
        wait_for(lambda: "The panel was asked for" in session.log(), "the panel comes instead")
        self.assertNotIn("Failed to", session.log())
        self.assertEqual(session.installed_version("Alpha"), "1.0")

    def test_a_click_works_when_the_program_has_ended(self):
        session = self.session
        session.ctl("converge")
        notice = self.service.next()
        session.stop_application()
        words = [f"{name}={value}" for name, value in session.environment.items() if name.startswith("XDG_")]
        command = shlex.join(map(str, ["/usr/bin/env", *words, *session.application_command()]))
        offer_to_the_bus(self, f"[D-BUS Service]\nName=com.tolvane.brevok\nExec={command}\n")
        self.service.click(notice, "update")
        wait_for(lambda: session.installed_version("Alpha") == "1.1", "the update is installed")
        session.ctl("quit")
        wait_for(lambda: "com.tolvane.brevok" not in ask_bus("ListNames"), "the program of the bus is gone")

    def test_without_windows_nothing_is_said(self):
        session = self.session
        session.stop_application()
        session.headless = ["--headless"]
        session.start_application()
        session.ctl("converge")
        session.stop_application()
        session.headless = ["--background"]
        session.start_application()
        session.ctl("converge")
        self.assertEqual(self.service.next()["number"], 1, "the first that is said")


if __name__ == "__main__":
    try:
        import gi  # noqa: F401
    except ImportError:
        print("skipped: python3-gi is not installed")
        sys.exit(SKIPPED)
    run_tests()
