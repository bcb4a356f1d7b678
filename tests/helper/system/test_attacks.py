#!/usr/bin/python3
"""A caller who may install attacks the helper while it works for him: he swaps what lies in his folders, asks for more
than is good for it, and leaves. Whatever he does, what is not his stays so, and the others are served."""
import json
import os
import sys
import unittest

import rig as rigs
from rig import ALLOWED, ASKED

class AttackTest(unittest.TestCase):
    def setUp(self):
        self.rig = rigs.Rig(HELPER)
        self.addCleanup(self.rig.close)
        self.home = self.rig.home(ALLOWED)
        self.caller = self.rig.caller()

    def own(self, path, user=ALLOWED):
        os.chown(path, user, 65534, follow_symlinks=False)
        return path

    def folder(self, path, user=ALLOWED):
        path.mkdir()
        return self.own(path, user)

    def test_pipes_in_place_of_files(self):
        target, pipe = self.rig.application(), self.home / "pipe"
        os.mkfifo(pipe)
        self.own(pipe)
        self.rig.serve_by({"LD_PRELOAD": FAULT, "ATTACK_PIPE": pipe})
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
        secret, decoy = folder / "secret", self.folder(folder / "decoy")
        secret.write_text("root's")
        secret.chmod(0o600)
        self.rig.serve_by({"LD_PRELOAD": FAULT, "ATTACK_DECOY": "decoy", "ATTACK_SECRET": str(secret)})
        archive = self.rig.archive(extra=[(f"A.InDesignPlugin/link-{i}", 0o120777, b"Contents") for i in range(3)])
        plain = self.own(self.home / "Tolvane.xml") if (self.home / "Tolvane.xml").write_text("x") else None
        workspace = self.home / "Presets" / "InDesign Workspaces"
        workspace.mkdir(parents=True)
        self.own(workspace)
        self.folder(workspace / "decoy")
        for source, target in ((archive, folder / "A.InDesignPlugin"), (plain, workspace / "Tolvane.xml")):
            self.caller.install(source, target)
            self.rig.settle()
            self.assertEqual(os.listdir(target.parent / "decoy"), [])
        found = [path for path in folder.rglob("*") if path.is_file() and path.read_text() == "root's"]
        self.assertEqual([(path, os.stat(path).st_uid) for path in found], [(secret, 0)])

    def test_sources_cost_nothing_before_the_answer(self):
        asked = self.rig.caller(ASKED)
        asked.do("agent")
        target = self.rig.application()
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
    rigs.enter()
    HELPER, FAULT = sys.argv.pop(1), os.path.join(sys.argv.pop(1), "libhelper_fault.so")
    unittest.main(verbosity=2, warnings="ignore")
