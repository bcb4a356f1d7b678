#!/usr/bin/python3
"""The application's end: it finds, replaces, installs and uses the helper, and does without one that is no good."""
import os
import shutil
import signal
import subprocess

from helper_case import RigTest, run_tests
from rig import ALLOWED, DENIED, OTHER, wait_for

FALLBACK = "log: Using Installer Fallback!"
UNAVAILABLE = "log: AuthorizationCreate failed! -60008"
PKEXEC = "/usr/bin/pkexec --disable-internal-agent"


class ClientTest(RigTest):
    def setUp(self):
        super().setUp()
        shutil.copy(self.built / "helper_client", self.rig.programs)

    def client(self, *words, user=ALLOWED, authorizer=""):
        """Lines that the application's end said."""
        set_up = f"{self.rig.helper} --prefix {self.rig.blessed} --address {self.rig.address}"
        ended = subprocess.run([self.rig.programs / "helper_client", set_up, authorizer, *map(str, words)], user=user, group=65534,
                               extra_groups=[], env=self.rig.environment, capture_output=True, text=True, timeout=120,
                               check=False)
        self.assertEqual(ended.returncode, 0, ended.stderr)
        return [line for line in ended.stdout.splitlines() if line.strip() not in ("", "log:")]

    def serve_other(self, what):
        self.rig.end_helper()
        self.rig.serve_by(program=f"/usr/bin/python3 {self.rig.programs}/other_helper.py {what}; true", options=[])

    def test_uses_the_helper(self):
        source = self.rig.archive()
        self.assertEqual(self.client("install", source, self.target),
                         ["yes ", "log: start helper", "log: up to date version already running"])
        self.assertEqual(os.stat(self.target).st_uid, ALLOWED)
        # Its own files need not be the user's, and its user's links are its own business.
        workspace = self.target.parents[2] / "Presets" / "InDesign Workspaces" / "Tolvane.xml"
        (self.rig.root / "Tolvane.xml").write_text("root's")
        self.assertEqual(self.client("install", self.rig.root / "Tolvane.xml", workspace)[0], "yes ")
        self.assertEqual((workspace.read_text(), workspace.stat().st_uid), ("root's", ALLOWED))
        (self.rig.home(ALLOWED) / "link").symlink_to(self.target.parents[2])
        linked = self.rig.home(ALLOWED) / "link" / "Plug-Ins" / "Tolvane" / "A.InDesignPlugin"
        self.assertEqual(self.client("exists", linked)[0], "yes ")
        self.assertEqual(self.client("remove", linked)[0], "yes ")
        self.assertFalse(self.target.exists())
        said = self.client("install", self.rig.archive(DENIED), self.target, user=DENIED)
        self.assertEqual(said[0], "no Administrator approval is required and was not given.")
        self.assertFalse(self.target.exists())

    def test_does_without_a_helper(self):
        own = self.rig.home(ALLOWED) / "own" / "Tolvane" / "A.InDesignPlugin"
        self.folder(own.parents[1])
        for what, line in (("none", "Installer helper invalid!"), ("idle", "Installer helper invalid!"),
                           ("mute", "Installer helper invalid!"),
                           ("15-poor", "Installer helper is missing selector "
                                       "'installPluginFromSource:target:user:error:'!")):
            if what == "none":
                (self.rig.root / "services" / "com.tolvane.brevok.HelperTool.service").unlink()
                self.rig.root_call("--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.ReloadConfig")
            elif what == "idle":
                self.rig.serve_by(program="sleep 1000; true", options=[])
            else:
                self.serve_other(what)
            said = self.client("install", self.rig.archive(), own)
            self.assertEqual(said[0], "yes ", what)
            self.assertIn(f"log: {line}", said)
            self.assertIn(FALLBACK, said)
            self.assertEqual(UNAVAILABLE in said, what != "15-poor", said)
            self.assertTrue(own.exists())

    def test_a_helper_that_vanishes_or_stops(self):
        for what in ("15-vanishing", "15-stuck"):
            self.serve_other(what)
            self.assertTrue(self.client("install", self.rig.archive(), self.target)[0].startswith("no "))
            self.assertFalse(self.target.exists())
        self.rig.end_helper(signal.SIGKILL)

    def test_somebody_elses_name(self):
        (self.rig.root / "bus.d" / "open.conf").write_text(
            '<busconfig><policy context="default"><allow own="*"/></policy></busconfig>')
        (self.rig.root / "bus.d" / "com.tolvane.brevok.HelperTool.conf").unlink()
        self.rig.root_call("--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.ReloadConfig")
        impostor = subprocess.Popen(["/usr/bin/python3", self.rig.programs / "other_helper.py", "15"], user=OTHER, group=65534,
                                    extra_groups=[], env=self.rig.environment)
        try:
            wait_for("the impostor", self.rig.helper_process)
            said = self.client("exists", self.target)
            self.assertIn("log: The helper's name belongs to somebody who is not root.", said)
            self.assertIn(FALLBACK, said)
        finally:
            impostor.kill()
            impostor.wait()

    def test_replaces_an_older_helper(self):
        if not os.path.exists("/usr/bin/pkexec"):
            self.skipTest("needs pkexec")
        self.rig.be_the_systems()
        self.serve_other("14")
        with open(self.rig.root / "rules" / "0.rules", "w", encoding="ascii") as rules:
            rules.write("""polkit.addRule(function(action, subject) {
                if (action.id == "org.freedesktop.policykit.exec") {
                    return subject.user == "nobody" ? polkit.Result.YES : polkit.Result.NO;
                }
            });""")
        self.rig.stop_polkit()
        self.rig.start_polkit()
        said = self.client("version", user=DENIED, authorizer=PKEXEC)
        self.assertIn("log: AuthorizationCreate failed! -60005", said)
        said = self.client("version", authorizer=PKEXEC)
        self.assertEqual(said, ["15", "log: start helper", "log: updated and restarted"])
        program = self.rig.blessed / "usr" / "local" / "libexec" / "tolvane-brevok-helper"
        self.assertEqual(os.readlink(f"/proc/{self.rig.helper_process()}/exe"), str(program))
        self.assertEqual(self.client("install", self.rig.archive(), self.target)[0], "yes ")
        state = self.rig.blessed / "var" / "lib" / "tolvane-brevok-helper"
        wait_for("the end of the work", lambda: not list(state.glob("work-*")))
        # Not even root's own program believes a bus that somebody else offers.
        for address in (f"unix:path={self.rig.home(ALLOWED)}/bus", "unix:abstract=bus",
                        f"{self.rig.address};unix:path={self.rig.home(ALLOWED)}/bus"):
            os.symlink(self.rig.root / "run" / "system_bus_socket", self.rig.home(ALLOWED) / "bus")
            ended = subprocess.run([self.rig.helper, "--address", address, "--state", self.rig.root / "other"],
                                   env=self.rig.environment, capture_output=True, text=True, check=False)
            self.assertEqual(ended.returncode, 1)
            self.assertIn("not where only root can have put it", ended.stderr)
            os.unlink(self.rig.home(ALLOWED) / "bus")
        # Removed, it is gone: the old one is what the bus knows then.
        subprocess.run([self.rig.helper, "--remove", "--prefix", self.rig.blessed, "--address", self.rig.address], check=True,
                       env=self.rig.environment)
        self.assertEqual([path for path in self.rig.blessed.rglob("*") if path.is_file()], [])
        self.assertEqual(self.rig.caller().call("Version")["result"], [14])


if __name__ == "__main__":
    run_tests()
