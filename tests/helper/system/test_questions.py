#!/usr/bin/python3
"""A person is asked before the helper does something: what was asked about is what is done, and without an authority
nothing is."""
import mmap
import os
import signal

from helper_case import NOT_AUTHORIZED, HelperCase, RigTest, run_tests
from rig import ASKED, DENIED, wait_for


class QuestionTest(HelperCase):
    def test_what_was_asked_about_is_what_is_done(self):
        caller = self.asked()
        source = self.rig.archive(ASKED, content=b"asked about")
        number = caller.begin_install(source, self.target)
        question = caller.event("question")
        self.assertIn(str(self.target), question["text"])
        # Meanwhile: another file comes in its place, and the same call is made again, here and from elsewhere.
        os.rename(self.rig.archive(ASKED, file="other.zip", content=b"swapped"), source)
        self.assertRefused(caller.install(source, self.target))
        self.assertRefused(self.rig.caller(DENIED).install(self.rig.archive(DENIED), self.target), NOT_AUTHORIZED)
        elsewhere = caller.do("connect")["result"][0]
        foreign = caller.begin_install(source, self.target, connection=elsewhere)
        second = caller.event("question")
        self.assertNotEqual(second["cookie"], question["cookie"])
        self.assertNothingChanged()
        self.rig.grant(question["cookie"], ASKED)
        caller.do("answered", cookie=question["cookie"])
        self.assertEqual(caller.wait(number)["result"], [True, "", 0, ""])
        self.assertEqual(self.content(), b"asked about")
        # A question keeps nobody else waiting.
        self.assertTrue(self.allowed.install(self.rig.archive(content=b"meanwhile"), self.target)["result"][0])
        self.assertFalse(caller.answered(foreign))
        caller.do("answered", cookie=second["cookie"])  # without a password
        self.assertRefused(caller.wait(foreign), NOT_AUTHORIZED)
        self.assertEqual(self.content(), b"meanwhile")

    def test_source_written_to_during_the_question(self):
        caller = self.asked()
        for content, way in ((b"file", "write"), (b"view", "map"), (b"less", "shorten"), (b"same", None)):
            source = self.rig.archive(ASKED, file=f"{content.decode()}.zip", content=content)
            with open(source, "r+b") as file, mmap.mmap(file.fileno(), 0) as view:
                view[0:1] = view[0:1]  # changes of the same page do not show in the file's times from now on
                number = caller.begin_install(source, self.target)
                cookie = caller.event("question")["cookie"]
                if way == "write":
                    os.pwrite(file.fileno(), b"q", 0)
                elif way == "map":
                    view[0:1] = b"q"
                elif way == "shorten":
                    os.ftruncate(file.fileno(), len(view) - 1)
                self.rig.grant(cookie, ASKED)
                caller.do("answered", cookie=cookie)
                answer = caller.wait(number)
            if way:
                self.assertRefused(answer)
                self.assertNothingChanged()
        self.assertEqual(answer["result"], [True, "", 0, ""])
        self.assertEqual(self.content(), b"same")

    def test_target_swapped_during_the_question(self):
        caller = self.asked()
        folder = self.rig.home(ASKED) / "swapped" / "Tolvane"
        folder.mkdir(parents=True)
        number = caller.begin_install(self.rig.archive(ASKED), folder / "A.InDesignPlugin")
        cookie = caller.event("question")["cookie"]
        self.own(folder.parent, ASKED)
        folder.rmdir()
        folder.symlink_to(self.outside / "Tolvane")
        self.own(folder, ASKED)
        self.rig.grant(cookie, ASKED)
        caller.do("answered", cookie=cookie)
        self.assertFalse(caller.wait(number)["result"][0])
        self.assertNothingChanged()

    def test_too_many_questions(self):
        caller, source, questions = self.asked(), self.rig.archive(ASKED), []
        while True:
            number = caller.begin_install(source, self.target.with_name(f"{len(questions)}.InDesignPlugin"),
                                          connection=caller.do("connect")["result"][0])
            wait_for("a question or a refusal", lambda: caller.answered(number) or caller.asked())
            if not caller.answered(number):
                caller.event("question")
                questions.append(number)
                continue
            answer = caller.wait(number)
            if answer["error"] != NOT_AUTHORIZED:
                break
            # A machine that stood still for longer than polkit is waited for: what was open then is not any more.
            self.assertIn("polkit does not answer", self.rig.log_text())
        self.assertRefused(answer, "org.freedesktop.DBus.Error.LimitsExceeded")
        self.assertIn("too many questions to this user", self.rig.log_text())
        self.assertEqual(len([number for number in questions if not caller.answered(number)]), 4)
        self.assertNothingChanged()


class PolkitTest(RigTest):
    """Without an authority nobody may do anything."""
    options = "--idle-seconds", "1"

    def assertDenied(self, answer):
        self.assertRefused(answer, NOT_AUTHORIZED)
        self.assertFalse(self.target.exists())

    def test_missing_stopped_or_dying(self):
        self.rig.stop_polkit()
        allowed = self.rig.caller()
        self.assertDenied(allowed.install(self.rig.archive(), self.target))
        self.rig.start_polkit()
        os.kill(self.rig.polkit.pid, signal.SIGSTOP)
        self.assertDenied(allowed.install(self.rig.archive(), self.target))
        os.kill(self.rig.polkit.pid, signal.SIGCONT)
        for stop in (signal.SIGSTOP, signal.SIGKILL):
            caller = self.asked()
            number = caller.begin_install(self.rig.archive(ASKED), self.target)
            caller.event("question")
            os.kill(self.rig.polkit.pid, stop)
            self.assertDenied(caller.wait(number))
            os.kill(self.rig.polkit.pid, signal.SIGCONT)
        self.assertIn("polkit does not answer", self.rig.log_text())

    def test_restarted_bus(self):
        caller = self.asked()
        number = caller.begin_install(self.rig.archive(ASKED), self.target)
        caller.event("question")
        self.rig.bus.kill()
        self.rig.bus.wait()
        self.assertIn("error", caller.wait(number))
        wait_for("the helper's end", lambda: "the bus has gone" in self.rig.log_text())
        self.rig.stop_polkit()
        self.rig.start_bus()
        self.rig.start_polkit()
        self.assertTrue(self.rig.caller().install(self.rig.archive(), self.target)["result"][0])

    def test_leaves_when_nobody_asks(self):
        caller = self.rig.caller()
        self.assertEqual(caller.call("Version")["result"], [15])
        process = self.rig.helper_process()
        wait_for("the helper's end", lambda: not os.path.exists(f"/proc/{process}"))
        self.assertTrue(caller.install(self.rig.archive(), self.target)["result"][0])


if __name__ == "__main__":
    run_tests()
