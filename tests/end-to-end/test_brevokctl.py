"""What scripts and terminals see of brevokctl: exit statuses, documents, the password prompt."""
import json
import os
import pty
import signal
import subprocess
import termios

from brevok_session import LISTS, SessionTest, end_process, run_tests, wait_for

FAILED, WRONG_USAGE, UNREACHABLE = 1, 2, 3


class Output(SessionTest):
    def run_into(self, stdout, *words, **more):
        return subprocess.run([self.session.programs / "brevokctl", *words], env=self.session.environment,
                              stdin=subprocess.DEVNULL, stdout=stdout, stderr=subprocess.PIPE, text=True, **more)

    def test_what_cannot_be_written_is_a_failure(self):
        self.session.start_application()
        calls = (["status", "--json"], ["status"], ["targets"], ["settings"], ["settings", "get", "logLevel"],
                 ["settings", "set", "logLevel", "0", "--json"], ["report", "--show"], ["--help"], ["--version"])
        with open("/dev/full", "w") as full:
            for words in calls:
                result = self.run_into(full, *words)
                self.assertEqual(result.returncode, FAILED, words)
                self.assertIn("standard output", result.stderr, words)
            self.assertEqual(self.run_into(full, "instal", "--json").returncode, WRONG_USAGE)
            # Nothing is to be written.
            self.assertEqual(self.run_into(full, "settings", "set", "logLevel", "0").returncode, 0)
        reading, writing = os.pipe()
        os.close(reading)
        self.assertEqual(self.run_into(writing, "status").returncode, FAILED, "nobody reads the pipe")
        os.close(writing)
        closed = self.run_into(None, "status", "--json", preexec_fn=lambda: os.close(1))
        self.assertEqual(closed.returncode, FAILED, closed.stderr)

    def test_failures_are_documents_too(self):
        calls = [(WRONG_USAGE, words) for words in (
            ["--json"], ["instal", "--json"], ["--json", "--bogus", "status"], ["status", "--bogus", "--json"],
            ["install", "--json"], ["status", "--json", "--timeout"], ["targets", "add", "/a", "--json"],
            ["report", "--json"], ["usage", "--json"])]
        calls += [(UNREACHABLE, ["status", "--json"]), (UNREACHABLE, ["quit", "--json"])]
        for status, words in calls:
            with self.subTest(words=words):
                self.assert_failure_document(self.session.ctl(*words, check=False), status)
        # The word is a value there, and an argument here.
        for words in (["report", "--note", "--json"], ["instal", "--", "--json"]):
            result = self.session.ctl(*words, check=False)
            self.assertEqual((result.returncode, result.stdout), (WRONG_USAGE, ""), words)
        self.session.start_application()
        for words in (["settings", "get", "nothing", "--json"], ["install", "unknown", "--json"],
                      ["signin", "a@b.cd", "--json"], ["targets", "remove", "/unknown", "--json"]):
            with self.subTest(words=words):
                self.assert_failure_document(self.session.ctl(*words, check=False), FAILED)

    def test_lists_that_are_kept_are_asked_for_on_condition(self):
        session = self.session
        session.publish("Plain", "0xE", "1.0", 140)
        session.start_application()
        wait_for(lambda: session.status().get("lastCheck"), "the first lists are there")
        self.assertEqual(self.conditions(), [False, False])
        session.ctl("check")
        self.assertEqual(self.conditions(), [True, True])
        session.stop_application()
        session.start_and_check()
        self.assertEqual(self.conditions(), [True] * 4, "also after a restart, by its own check and by this one")
        date = session.status()["lastCheck"]
        wait_for(lambda: session.ctl("check") and session.status()["lastCheck"] > date, "a kept list counts as checked")
        session.publish("Plain", "0xE", "1.1", 140)
        session.ctl("check")
        self.assertEqual(session.status()["packages"][0]["version"], "1.1")

    def conditions(self):
        """Whether the requests for lists since the last call were conditional."""
        requests = self.session.requests(*LISTS)
        requests, self.read = requests[getattr(self, "read", 0):], len(requests)
        return ["if-none-match" in request["headers"] for request in requests]

    def test_a_service_does_not_steer_the_terminal(self):
        session = self.session
        session.publish("Plain", "0xE", "1.0", 140)
        session.plugins[-1]["Name"] = session.products[-1]["Name"] = "Red\x1b[31m\u009b2J\u202eevil"
        session.products[-1]["Version"] = "1.0\x07"
        session.write_lists()
        session.start_and_check()
        for words in (["status"], ["status", "--json"], ["install", "0xE"], ["install", "0xE", "--json"]):
            result = session.ctl(*words, check=False)
            printed = result.stdout + result.stderr
            self.assertIn("Red", printed, words)
            self.assertEqual([c for c in printed if c in "\x1b\x07\u009b\u202e"], [], words)
        self.assertNotIn("\x1b", session.log())
        for words in (["report", "--show"], ["usage", "--show"]):
            printed = session.ctl(*words).stdout
            self.assertEqual([c for c in printed if c in "\x1b\x07\u009b\u202e"], [], words)
            json.loads(printed)

    def assert_failure_document(self, result, status):
        self.assertEqual(result.returncode, status, result.stderr)
        document = json.loads(result.stdout)
        self.assertEqual((document["ok"], len(document["failures"])), (False, 1))
        self.assertEqual(result.stderr, f"brevokctl: {document['failures'][0]}\n")


class Prompt(SessionTest):
    def test_the_terminal_echoes_again(self):
        self.session.start_application()
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
            with self.subTest(signal=number):
                self.assertEqual(self.asked_for_a_password(lambda prompt, _, n=number: prompt.send_signal(n)), -number)
        self.assertEqual(self.asked_for_a_password(lambda _, terminal: os.write(terminal, b"wrong\n")), FAILED)
        # What the caller ignores stays ignored.
        self.assertEqual(self.asked_for_a_password(self.hang_up_and_answer, preexec_fn=lambda: signal.signal(
            signal.SIGHUP, signal.SIG_IGN)), FAILED)

    def hang_up_and_answer(self, prompt, terminal):
        prompt.send_signal(signal.SIGHUP)
        os.write(terminal, b"wrong\n")

    def asked_for_a_password(self, act, **more):
        terminal, inside = pty.openpty()
        try:
            prompt = subprocess.Popen([self.session.programs / "brevokctl", "signin", "ada@example.com"], stdin=inside,
                                      stdout=inside, stderr=inside, env=self.session.environment, **more)
            wait_for(lambda: not echoes(terminal), "the password is asked for")
            act(prompt, terminal)
            prompt.wait(60)
            self.assertTrue(echoes(terminal))
            return end_process(prompt, signal.SIGKILL)
        finally:
            os.close(terminal)
            os.close(inside)


def echoes(terminal):
    return bool(termios.tcgetattr(terminal)[3] & termios.ECHO)


if __name__ == "__main__":
    run_tests()
