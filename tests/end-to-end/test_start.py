"""The start with the question about unfinished actions, with the real programs."""
import contextlib
import json
import signal
import sqlite3

from brevok_session import LISTS, PATIENCE, SessionTest, run_tests, wait_for

QUESTION = "Installer detected one or more unfinished actions."


class Start(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.publish("Alpha", "0xA", "1.0", 140)

    def leave_unfinished_actions(self):
        session = self.session
        session.start_and_check()
        with session.install_under_way("0xA"):
            session.stop_application(signal.SIGKILL)

    def start_with_question(self):
        """The application with its windows, on a display that nobody sees."""
        self.leave_unfinished_actions()
        self.session.headless = []
        self.seen = len(self.session.requests(*LISTS))
        self.session.start_application()
        wait_for(lambda: QUESTION in self.session.log(), "the question is asked")

    def assert_unfinished(self, unfinished):
        """What a start without windows, which leaves the queues as they are, says of them."""
        self.session.headless = ["--headless"]
        length = len(self.session.log())
        self.session.start_application()
        self.assertEqual(QUESTION in self.session.log()[length:], unfinished)

    def test_every_call_is_answered_while_the_question_is_open(self):
        session = self.session
        self.start_with_question()
        target = session.status()["targets"][0]["path"]
        for words in (["status"], ["targets"], ["targets", "disable", target], ["targets", "enable", target],
                      ["settings"], ["settings", "set", "logLevel", "1"], ["usage", "--show"],
                      ["report", "--show"], ["signout"], ["open-panel"]):
            with self.subTest(words):
                session.ctl(*words)
        for words in (["check"], ["install", "0xA"], ["update", "--all"], ["remove", "0xA"]):
            with self.subTest(words):
                refused = session.ctl(*words, check=False)
                self.assertEqual(refused.returncode, 1)
                self.assertIn("brevokctl discard", refused.stderr)
        self.assertEqual(session.package_status("0xA"), "In Progress")
        self.assertEqual(len(self.session.requests(*LISTS)), self.seen, "the first request comes after the answer")
        session.ctl("discard")
        wait_for(lambda: len(self.session.requests(*LISTS)) >= self.seen + 2, "both lists are requested")
        session.ctl("check")
        self.assertEqual(session.package_status("0xA"), "Not Installed")
        session.ctl("install", "0xA")
        self.assertEqual(session.installed_version("Alpha"), "1.0")
        self.assertEqual(session.stop_application(), 0)
        self.assert_unfinished(False)

    def test_a_signal_or_a_call_at_the_question_ends_the_program(self):
        session = self.session
        self.start_with_question()
        self.assertEqual(session.stop_application(), 0)
        session.start_application()
        session.ctl("quit")
        self.assertEqual(session.application.wait(PATIENCE), 0)
        session.application = None
        self.assertEqual(len(session.requests(*LISTS)), self.seen)
        self.assert_unfinished(True)

    def test_a_search_that_ends_at_the_question(self):
        session = self.session
        self.leave_unfinished_actions()
        session.add_host("Adobe InDesign 2021", 16000)
        with contextlib.closing(sqlite3.connect(session.state_file())) as state, state:
            forgotten = state.execute("DELETE FROM state WHERE key = 'OrlecTargetsGathered'")
            self.assertEqual(forgotten.rowcount, 1)
        session.headless = []
        session.start_application()
        wait_for(lambda: len(session.status()["targets"]) == 2, "the search ends")
        session.ctl("discard")
        session.ctl("check")
        self.assertEqual(session.stop_application(), 0)

    def test_discarding_waits_for_no_install_and_breaks_none(self):
        session = self.session
        session.start_and_check()
        session.ctl("discard")
        with session.install_under_way("0xA") as install:
            refused = session.ctl("discard", check=False)
            self.assertEqual(refused.returncode, 1)
            self.assertIn("under way", refused.stderr)
            session.service.send_signal(signal.SIGCONT)
            self.assertEqual(install.wait(PATIENCE), 0)
        self.assertEqual(session.package_status("0xA"), "Up To Date")
        document = json.loads(session.ctl("discard", "--json").stdout)
        self.assertEqual(document, {"ok": True, "failures": []})


if __name__ == "__main__":
    run_tests()
