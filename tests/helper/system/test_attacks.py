#!/usr/bin/python3
"""A caller who may install attacks the helper while it works for him: he swaps what lies in his folders, asks for more
than is good for it, and leaves. Whatever he does, what is not his stays so, and the others are served."""
import json
import os
import pathlib
import re
import subprocess
import sys

from helper_case import DENIED_ERROR, RigTest, run_tests
from rig import ALLOWED, ASKED, OTHER, wait_for

LIMITED = "org.freedesktop.DBus.Error.LimitsExceeded"


class AttackTest(RigTest):
    def setUp(self):
        super().setUp()
        self.home = self.rig.home(ALLOWED)
        self.caller = self.rig.caller()
        self.faults = {"LD_PRELOAD": self.built / "libhelper_fault.so"}

    def test_pipes_in_place_of_files(self):
        target, pipe = self.target, self.home / "pipe"
        os.mkfifo(pipe)
        self.own(pipe)
        self.rig.serve_by({**self.faults, "ATTACK_PIPE": pipe})
        source = self.rig.archive(extra=[("A.InDesignPlugin/swapped", 0o100644, b"x")])
        for _ in range(2):
            self.assertTrue(self.caller.install(source, target)["result"][0])
            self.rig.settle()
        # At the start, for work that was cut short.
        self.rig.end_helper()
        (self.rig.state / "work-1").write_text(json.dumps({"target": str(target), "boot": "an earlier one"}))
        self.assertEqual(self.caller.call("Version")["result"], [15])
        self.rig.settle()

    def test_staging_folder_swapped(self):
        folder = self.folder(self.home / "Tolvane")
        secret = folder / "secret"
        secret.write_text("root's")
        secret.chmod(0o600)
        self.folder(folder / "decoy")
        archive = self.rig.archive(extra=[("A.InDesignPlugin/link", 0o120777, b"Contents")])
        self.rig.serve_by({**self.faults, "ATTACK_DECOY": "decoy", "ATTACK_SECRET": secret})
        plain = self.home / "Tolvane.xml"
        plain.write_text("x")
        self.own(plain)
        workspace = self.folder(self.home / "Presets" / "InDesign Workspaces")
        self.folder(workspace / "decoy")
        for source, target in ((archive, folder / "A.InDesignPlugin"), (plain, workspace / "Tolvane.xml")):
            self.caller.install(source, target)
            self.rig.settle()
            self.assertEqual(os.listdir(target.parent / "decoy"), [])
        found = [path for path in folder.rglob("*") if path.is_file() and path.read_text() == "root's"]
        self.assertEqual([(path, os.stat(path).st_uid) for path in found], [(secret, 0)])

    def test_callers_who_leave_at_once(self):
        asked = self.asked()
        for connection in range(1, 301):
            self.caller.start("connect")
            self.caller.begin("FileExistsAtPath", "s", "/Tolvane/A.InDesignPlugin", connection=connection)
            leaving = self.caller.start("disconnect", connection=connection)
        self.caller.wait(leaving)
        stats = self.rig.root_call("--dest=org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Debug.Stats"
                                   ".GetConnectionStats", "string:com.tolvane.brevok.HelperTool").stdout
        self.assertLess(int(re.search(r"MatchRules\D*32 (\d+)", stats)[1]), 10)
        # One who leaves later is still noticed.
        elsewhere = asked.do("connect")["result"][0]
        asked.begin_install(self.rig.archive(ASKED), self.target, connection=elsewhere)
        cookie = asked.event("question")["cookie"]
        asked.do("disconnect", connection=elsewhere)
        self.assertEqual(asked.event("cancelled")["cookie"], cookie)
        wait_for("the line about it", lambda: "the caller left" in self.rig.log_text())
        self.assertFalse(self.target.exists())

    def test_a_tree_without_end(self):
        target = self.folder(self.home / "Tolvane") / "A.InDesignPlugin"
        deep = 700
        subprocess.run([sys.executable, "-c", "import os, sys\nos.mkdir(sys.argv[1]); os.chdir(sys.argv[1])\n"
                        "os.mkfifo('pipe')\nfor i in range(60000): os.link('pipe', f'{i:05}' + 'x' * 150)\n"
                        f"for i in range({deep}): os.mkdir('y' * 200); os.chdir('y' * 200); os.mkfifo('pipe')",
                        target], user=ALLOWED, group=65534, extra_groups=[], check=True)
        self.addCleanup(subprocess.run, ["rm", "-rf", target], check=True)
        self.caller.call("Version")
        process = pathlib.Path(f"/proc/{self.rig.helper_process()}")

        def peak():
            return int(re.search(r"VmHWM:\s+(\d+)", (process / "status").read_text())[1])
        for work in ("wide", "deep"):
            before, lines = peak(), self.rig.log_text()
            self.assertEqual(self.caller.call("SetUID", "uusb", ALLOWED, 0o600, str(target), True)["result"], [])
            said = self.rig.log_text()[len(lines):]
            self.assertLess(peak() - before, 32 * 1024)
            self.assertLess(len(said), 256 * 1024)
            self.assertRegex(said, f"Attributes change failed for: {target}")
            self.assertEqual(said.count("more items did not change"), work == "deep")
            subprocess.run(["find", target, "-maxdepth", "1", "-name", "[01]*", "-delete"], check=True)

    def test_what_others_keep_to_themselves(self):
        private = self.folder(self.rig.home(OTHER) / "private", OTHER)
        target = self.folder(self.folder(private / "Tolvane", OTHER) / "A.InDesignPlugin", OTHER)
        missing = target.with_name("B.InDesignPlugin")
        roots = self.target
        roots.mkdir(parents=True)
        roots.parent.chmod(0o700)  # the helper is there to look into these
        other, tests = self.rig.caller(OTHER), [f"{test}AtPath" for test in (
            "FileExists", "IsReadableFile", "IsWritableFile", "IsExecutableFile", "IsDeletableFile")]

        def seen(caller, path):
            return {caller.call(test, "s", str(path))["result"][0] for test in tests}
        for group, mode, visible in ((0, 0o770, False), (0, 0o701, True), (0, 0o706, False),
                                     (65534, 0o710, True), (65534, 0o707, False)):
            os.chown(private, OTHER, group)
            private.chmod(mode)
            self.assertEqual(seen(self.caller, target), {visible}, (group, oct(mode)))
            self.assertEqual(seen(other, target), {True})
            self.assertEqual(seen(self.caller, missing) | seen(other, missing), {False})
        self.assertEqual(self.caller.call("FileExistsAtPathIsDirectory", "s", str(target))["result"], [False, False])
        self.assertEqual(seen(self.caller, roots), {True})

    def stall(self):
        """OTHER's folders stand still as long as there is the file."""
        when = self.rig.root / "stalled"
        when.touch()
        os.chown(when, OTHER, -1)
        self.addCleanup(when.unlink, missing_ok=True)
        self.rig.end_helper()
        self.rig.serve_by({**self.faults, "STALL_WHILE": when})
        return when

    def ask_eight(self, other, connection):
        """As many requests as one connection may have open, which wait for OTHER's folder alone."""
        path = str(self.rig.home(OTHER) / "Tolvane" / "A.InDesignPlugin")
        numbers = [other.begin("FileExistsAtPath", "s", path, connection=connection) for _ in range(8)]
        self.reached(other, connection)
        return numbers

    def reached(self, caller, connection):
        """When this is answered, the helper has what came before it."""
        self.assertEqual(caller.call("Version", connection=connection)["result"], [15])

    def test_repair_that_does_not_end(self):
        self.caller.call("Version")
        folder = self.folder(self.rig.home(OTHER) / "Tolvane", OTHER)
        self.folder(folder / ".tolvane-replaced-A.InDesignPlugin", OTHER)
        (self.rig.state / "work-1").write_text(json.dumps({"target": str(folder / "A.InDesignPlugin")}))
        when, other = self.stall(), self.rig.caller(OTHER)
        number = other.begin_install(self.rig.archive(OTHER), folder / "A.InDesignPlugin")
        self.assertTrue(self.caller.install(self.rig.archive(), self.target)["result"][0])
        self.assertFalse(other.answered(number))
        when.unlink()
        self.assertTrue(other.wait(number)["result"][0])
        self.rig.settle()
        self.assertEqual(os.listdir(folder), ["A.InDesignPlugin"])

    def test_too_many_requests(self):
        self.folder(self.rig.home(OTHER) / "Tolvane", OTHER)
        when, other = self.stall(), self.rig.caller(OTHER)
        connections = [0, *(other.do("connect")["result"][0] for _ in range(7))]
        numbers = [self.ask_eight(other, connection) for connection in connections]

        def ask(caller, connection):
            return caller.call("FileExistsAtPath", "s", "/Tolvane/A.InDesignPlugin", connection=connection)
        for connection, what in ((0, "this connection"), (other.do("connect")["result"][0], "this user")):
            self.assertRefused(ask(other, connection), LIMITED)
            self.assertIn(f"too many requests of {what} are open", self.rig.log_text())
        # The others are served; and he cannot heap up more work by leaving.
        self.assertTrue(self.caller.install(self.rig.archive(), self.target)["result"][0])
        for connection in range(1, 5):
            other.do("disconnect", connection=connection)
        for _ in range(5):
            leaving = other.do("connect")["result"][0]
            self.ask_eight(other, leaving)
            other.do("disconnect", connection=leaving)
        self.assertRefused(ask(other, other.do("connect")["result"][0]), LIMITED)
        waiting = [number for connection in (0, 5, 6, 7) for number in numbers[connection]]
        self.assertFalse(any(map(other.answered, waiting)))
        when.unlink()
        for number in waiting:
            self.assertEqual(other.wait(number)["result"], [False])
        self.assertEqual(ask(other, 0)["result"], [False])

    def test_the_same_path_twice(self):
        target = self.folder(self.rig.home(OTHER) / "Tolvane", OTHER) / "A.InDesignPlugin"
        when, other = self.stall(), self.rig.caller(OTHER)
        while True:
            first = other.begin_install(self.rig.archive(OTHER), target)
            wait_for("the folder to stand still", lambda: other.answered(first) or os.access(when, os.X_OK))
            if not other.answered(first):
                break
            # A machine that stood still for longer than polkit is waited for.
            self.assertIn("polkit does not answer", self.rig.log_text())
        again = [other.install(self.rig.archive(OTHER, file="again.zip"), target),
                 other.call("RemoveItemAtPath", "s", str(target)),
                 other.call("SetUID", "uusb", OTHER, 0o600, str(target), True)]
        self.assertEqual({answer.get("error") for answer in again}, {DENIED_ERROR})
        self.assertEqual(self.rig.log_text().count("for the same path is open"), 3)
        when.unlink()
        self.assertTrue(other.wait(first)["result"][0])

    def test_sources_cost_nothing_before_the_answer(self):
        asked, target = self.asked(), self.target
        for i in range(3):
            source = self.rig.home(ASKED) / f"sparse-{i}.zip"
            source.touch()
            os.truncate(self.own(source, ASKED), 100_000_000)
            asked.begin_install(source, target.with_name(f"{i}.InDesignPlugin"))
            asked.event("question")
        process = self.rig.helper_process()
        held = [os.stat(f"/proc/{process}/fd/{file}") for file in os.listdir(f"/proc/{process}/fd")]
        self.assertEqual(sum(facts.st_size == 100_000_000 for facts in held), 3)  # the caller's own
        self.assertLess(sum(facts.st_blocks * 512 for facts in held if facts.st_uid == 0), 1_000_000)


if __name__ == "__main__":
    run_tests()
