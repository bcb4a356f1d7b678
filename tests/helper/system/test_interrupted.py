#!/usr/bin/python3
"""The helper is killed, or finds the disk full, at every call that changes a file."""
import json
import os
import subprocess
import zipfile

from helper_case import RigTest, run_tests
from rig import snapshot, wait_for

MOST = 200  # calls that one install or removal makes at most


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
    def setUp(self):
        super().setUp()
        self.caller, self.archives, self.trees = self.rig.caller(), {}, {}
        for name in ("old", "new"):
            self.archives[name] = self.rig.archive(file=f"{name}.zip", content=name.encode(), extra=[
                (f"A.InDesignPlugin/{name}-{i}", 0o100644, name.encode()) for i in range(3)])
            with zipfile.ZipFile(self.archives[name]) as archive:
                self.trees[name] = {entry.partition("/")[2]: archive.read(entry) for entry in archive.namelist()}

    def fresh(self, faults=None):
        """Ends the helper; the next call starts one with these faults."""
        when = self.rig.root / "now"
        when.unlink(missing_ok=True)
        self.rig.end_helper()
        preloaded = {"LD_PRELOAD": self.built / "libhelper_fault.so", "FAULT_WHEN": when}
        self.rig.serve_by({**preloaded, **faults} if faults else None)
        self.caller.call("Version")
        self.rig.settle()  # it repairs what the one before it left
        if faults:
            when.touch()

    def whole(self):
        """Which bundle stands there; a torn one is none."""
        tree = {name: facts[3] for name, facts in snapshot(self.target).items() if facts[3] is not None}
        torn = f"torn: {sorted(tree)}" if self.target.exists() else None
        return next((name for name, whole in self.trees.items() if whole == tree), torn)

    def install(self, name):
        return self.caller.install(self.archives[name], self.target)

    def remove(self):
        return self.caller.call("RemoveItemAtPath", "s", str(self.target))

    def prepare(self, old):
        self.fresh()
        if old:
            self.assertTrue(self.install("old")["result"][0])
            self.rig.settle()
            self.assertEqual(self.whole(), "old")
        elif self.target.exists():
            self.assertTrue(self.remove()["result"][0])

    def interrupt(self, kind, call, old):
        """Runs `call` once for each of its calls to the system; yields the answer and what stands there then."""
        for at in range(1, MOST):
            self.prepare(old)
            self.fresh({"FAULT": kind, "FAULT_AT": str(at)})
            lines = self.rig.log_text().count("\n")
            process = self.rig.helper_process()
            answer = call()
            # An install is answered before its rest is done, which is left to the next helper where it fails.
            wait_for("the end of the work", lambda: not os.listdir(self.rig.state)
                     or self.rig.helper_process() != process
                     or "could not be" in "\n".join(self.rig.log_text().split("\n")[lines:]))
            if (self.rig.root / "now").exists():  # that many calls there are not
                self.assertTrue(answer["result"][0])
                return
            seen = self.whole()
            self.fresh()  # the next helper repairs
            yield at, answer, seen, self.whole(), "\n".join(self.rig.log_text().split("\n")[lines:])
            self.assertEqual([path for path in self.target.parent.glob("*") if path != self.target], [], at)
            self.assertEqual(os.listdir(self.rig.state), [], at)
        self.fail("it never came to an end")

    def test_killed_while_installing(self):
        for old in (False, True):
            states = set()
            for at, _, seen, then, log in self.interrupt("kill", lambda: self.install("new"), old):
                self.assertIn(then, ("old", "new") if old else (None, "new"), at)
                self.assertIn(seen, ("old", "new", None), at)
                if seen != then:
                    self.assertIn("brought back what interrupted work had replaced", log)
                states.add((seen, then))
            self.assertIn((None, "old") if old else (None, None), states)
            self.assertIn("new", {then for _, then in states})

    def test_killed_while_removing(self):
        states = set()
        for at, _, seen, then, _ in self.interrupt("kill", self.remove, True):
            self.assertEqual(seen, then, at)
            states.add(then)
        self.assertEqual(states, {"old", None})

    def test_power_cut(self):
        # What the next start of the system finds: a new bundle of which nobody knows whether its bytes got to the disk.
        target = self.target
        aside = target.with_name(".tolvane-replaced-" + target.name)
        for removal in (False, True):
            self.prepare(old=True)
            self.rig.end_helper()
            os.rename(target, aside)
            if not removal:
                target.mkdir()
                (target / "empty").touch()
            (self.rig.state / "work-1").write_text(json.dumps(
                {"target": str(target), "removal": removal, "fresh": False, "boot": "an earlier one"}))
            (self.rig.state / "work-2").write_text('{"targ')  # begun when the power went
            self.fresh()
            self.assertEqual(self.whole(), None if removal else "old")
            self.assertFalse(aside.exists())
            self.assertEqual(os.listdir(self.rig.state), [])

    def test_full_disk(self):
        states = set()
        for at, answer, seen, then, _ in self.interrupt("full", lambda: self.install("new"), True):
            self.assertIn("result", answer, at)
            self.assertIn(seen, ("old", "new"), at)
            self.assertEqual(seen, then)
            states.add((answer["result"][0], then))
        self.assertIn((False, "old"), states)  # noticed before anything was touched
        self.assertIn((True, "old"), states)  # the old bundle goes first, and comes back


if __name__ == "__main__":
    run_tests()
