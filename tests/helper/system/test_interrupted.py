#!/usr/bin/python3
"""The helper is killed, or the power goes, while it works."""
import errno
import json
import os
import subprocess

from helper_case import RigTest, run_tests
from rig import wait_for


def unsynced(calls):
    """What is not on the disk yet before each of the calls, and after the last."""
    names = set()
    for what, *paths in [*(call.split(" ") for call in calls), ["end", ""]]:
        yield what, paths, set(names)
        if what in ("write", "make"):
            names.update((paths[0], os.path.dirname(paths[0])))
        elif what in ("sync", "remove"):
            names.discard(paths[0])
        elif what == "syncfs":
            names.clear()
        elif what == "rename":
            names.update(map(os.path.dirname, paths))


class DurabilityTest(RigTest):
    def setUp(self):
        super().setUp()
        self.calls = self.rig.root / "calls"
        self.recording = {"LD_PRELOAD": str(self.built / "librecorded_files.so"), "RECORD_FOLDER": str(self.rig.root),
                          "RECORD_LOG": str(self.calls)}

    def test_work(self):
        """Before it is begun its entry is on the disk, before that goes the work is."""
        self.rig.serve_by(self.recording)
        caller, target = self.rig.caller(), self.target
        workspace = target.parents[2] / "Presets" / "InDesign_Workspaces" / "Tolvane.xml"
        source = self.rig.archive()
        for call in (lambda: caller.install(source, target), lambda: caller.install(source, target),
                     lambda: caller.call("RemoveItemAtPath", "s", str(target))):
            caller.call("Version")
            self.calls.write_text("")
            self.assertTrue(call()["result"][0])
            wait_for("the end of the entry on the disk",
                     lambda: self.calls.read_text().splitlines()[-1:] == ["sync state"])
            self.rig.settle()
            begun = ended = False
            for what, paths, waiting in unsynced(self.calls.read_text().splitlines()):
                if paths[0].startswith("Applications") and what != "sync":
                    begun = True
                    self.assertEqual({name for name in waiting if name.startswith("state")}, set())
                elif what == "remove" and paths[0].startswith("state/work-"):
                    ended = True
                    self.assertEqual({name for name in waiting if name.startswith("Applications")}, set())
            self.assertTrue(begun and ended)

    def test_set_up(self):
        subprocess.run([self.rig.helper, "--install", "--prefix", self.rig.blessed], check=True,
                       env={**self.rig.environment, **self.recording})
        placed = 0
        for what, paths, waiting in unsynced(self.calls.read_text().splitlines()):
            if what == "rename":
                placed += 1
                self.assertNotIn(paths[0], waiting)
            elif what == "end":
                self.assertEqual({name for name in waiting if os.path.dirname(name) and "." in name}, set())
        self.assertEqual(placed, 5)


class InterruptedTest(RigTest):
    """Work that ended at any call is made good by the operations' own tests; here, that the next helper sets about it."""

    def setUp(self):
        super().setUp()
        self.caller = self.rig.caller()

    def restart(self, faults=None):
        """Returns when the new helper has made good what the one before it left."""
        self.rig.end_helper()
        self.rig.serve_by(faults)
        self.caller.call("Version")
        self.rig.settle()

    def install(self, content):
        return self.caller.install(self.rig.archive(content=content), self.target)

    def install_old(self):
        self.restart()
        self.assertTrue(self.install(b"old")["result"][0])
        self.rig.settle()

    def assert_only(self, content):
        """Nothing but a whole plug-in stands there, or nothing."""
        self.assertEqual([path.name for path in self.target.parent.iterdir()], [self.target.name] if content else [])
        self.assertEqual(content and self.content(), content)
        self.assertEqual(os.listdir(self.rig.state), [])

    def test_killed(self):
        for call, work, content in (
                ("mkdirat", lambda: self.install(b"new"), b"old"),
                ("unlinkat", lambda: self.caller.call("RemoveItemAtPath", "s", str(self.target)), None)):
            self.install_old()
            self.restart({"LD_PRELOAD": self.built / "libhelper_fault.so", "KILL_AT": call})
            self.assertIn("error", work())
            self.assertFalse(self.target.exists())
            self.assertNotEqual(os.listdir(self.target.parent), [])  # what only a new helper sees to
            self.restart()
            self.assert_only(content)
        self.assertEqual(self.rig.log_text().count("brought back what interrupted work had replaced"), 1)

    def test_power_cut(self):
        # What the next start of the system finds: a new bundle of which nobody knows whether its bytes got to the disk.
        for removal, content in ((False, b"old"), (True, None)):
            self.install_old()
            self.rig.end_helper()
            os.rename(self.target, self.target.with_name(".tolvane-replaced-" + self.target.name))
            if not removal:
                self.target.mkdir()
                (self.target / "empty").touch()
            (self.rig.state / "work-1").write_text(json.dumps(
                {"target": str(self.target), "removal": removal, "fresh": False, "boot": "an earlier one"}))
            (self.rig.state / "work-2").write_text('{"targ')  # begun when the power went
            self.restart()
            self.assert_only(content)

    def test_full_disk(self):
        """Nothing is begun that could not be made good; removing, which makes room, is."""
        self.install_old()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "nr_inodes=1,mode=700", "none", self.rig.state], check=True)
        self.addCleanup(subprocess.run, ["umount", self.rig.state], check=True)
        self.assertEqual(self.install(b"new")["result"][::2], [False, errno.ENOSPC])
        self.assertEqual(self.content(), b"old")
        self.assertTrue(self.caller.call("RemoveItemAtPath", "s", str(self.target))["result"][0])
        self.assertFalse(self.target.exists())


if __name__ == "__main__":
    run_tests()
