"""Disks that do not answer, and volumes that come and go, with the real programs."""
import pathlib
import subprocess
import sys
import unittest

from brevok_session import SessionTest, run_tests, wait_for

DEAD_MOUNT = sys.argv.pop(2)


class DeadMount(SessionTest):
    def setUp(self):
        super().setUp()
        self.mount = self.session.folder / "mount"
        self.gate, self.asked = self.session.mount_dead(DEAD_MOUNT, self.mount)
        # The session ends its programs before its folder goes, and they are to end well.
        self.addCleanup(self.gate.unlink, missing_ok=True)

    def flags(self, path, flag="invalid"):
        return [target[flag] for target in self.session.status()["targets"] if target["path"] == str(path)]

    def threads(self):
        return len(list(pathlib.Path(f"/proc/{self.session.application.pid}/task").iterdir()))

    def labels(self):
        return [target["label"] for target in self.session.status()["targets"]]

    def appears(self, name, version, label):
        """A new application makes the whole list be looked at."""
        self.session.add_host(name, version)
        wait_for(lambda: label in self.labels(), f"{name} becomes a target")

    def assert_main_thread_never_asked(self):
        self.assertEqual(self.asked.read_text() if self.asked.exists() else "", "")

    def test_settings_on_a_disk_that_stands_still(self):
        session = self.session
        session.environment["DEAD_MOUNT"] = str(session.settings_file().parent)
        session.start_application()
        session.ctl("settings", "set", "logLevel", "1")
        self.asked.write_text("")
        self.gate.touch()
        waits = subprocess.Popen([session.programs / "brevokctl", "settings", "set", "logLevel", "2"],
                                 env=session.environment)
        wait_for(lambda: session.ctl("settings", "get", "logLevel").stdout.strip() == "2", "it counts at once")
        self.assertIsNone(waits.poll(), "what is not stored is not confirmed")
        self.assert_main_thread_never_asked()
        self.gate.unlink()
        self.assertEqual(waits.wait(), 0)
        self.assertIn("OrlecLogLevel=2", session.settings_file().read_text())

    def test_targets_behind_a_dead_mount(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        paths = [self.mount / name / "Plug-Ins" for name in ("One", "Removed")]
        session.start_and_check()
        for path in paths:
            path.mkdir(parents=True)
            session.ctl("targets", "add", path, "--type", "InDesign", "--version", "140")
        session.ctl("install", "0xA")
        session.ctl("targets", "remove", paths[1])
        self.assertEqual(session.package_status("0xA"), "Up To Date")

        self.gate.touch()
        self.appears("Adobe InDesign CC 2020", 15000, "Adobe InDesign CC 2020")
        hanging = self.threads()
        self.appears("Adobe InDesign CC 2021", 16000, "Adobe InDesign CC 2021")
        self.assertEqual(self.flags(paths[0]) + self.flags(paths[1]), [False, False], "records stay as they were")
        self.assertEqual(session.package_status("0xA"), "Up To Date")
        self.assertLessEqual(self.threads(), hanging + 2, "nothing more hangs than before")
        session.ctl("targets", "disable", f"{paths[0]}/")
        self.assertEqual(self.flags(paths[0], "enabled"), [False])
        refused = session.ctl("targets", "add", self.mount / "Two", "--type", "InDesign", "--version", "140",
                              check=False)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("is not responding", refused.stderr)
        self.assert_main_thread_never_asked()

        # What vanished meanwhile shows as soon as the mount answers again.
        (self.mount / "One").rename(session.folder / "One")
        self.gate.unlink()
        wait_for(lambda: self.flags(paths[0]) == [True], "the folder is missed")
        self.gate.touch()
        self.appears("Adobe InDesign CC 2022", 17000, "Adobe InDesign CC 2022")
        self.assert_main_thread_never_asked()
        self.assertEqual(session.stop_application(), 0, "hanging looks keep nobody from quitting")

    def refused(self, *words):
        result = self.session.ctl(*words, check=False)
        self.assertEqual(result.returncode, 1, result.stderr)
        return result.stderr

    def test_what_is_done_beside_a_dead_mount(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        path = self.mount / "One" / "Plug-Ins"
        there = path / "Tolvane" / "Alpha.InDesignPlugin"
        path.mkdir(parents=True)
        session.start_and_check()
        session.ctl("targets", "add", path, "--type", "InDesign", "--version", "140")

        self.gate.touch()
        silence = f"'{path}' is not responding"
        self.assertIn(silence, self.refused("install", "0xA"))
        self.assertEqual(session.installed_version("Alpha"), "1.0", "the other target has it")
        self.assertIn(silence, self.refused("remove", "0xA"))
        self.assertIsNone(session.installed_version("Alpha"))
        spelling = self.mount / "Two" / ".." / "One" / "Plug-Ins"  # where that leads to, only the disk knows
        self.assertIn(f"'{spelling}' is not responding", self.refused("targets", "remove", spelling))

        self.gate.unlink()
        wait_for(lambda: session.ctl("install", "0xA", check=False).returncode == 0, "the mount answers again")
        self.assertTrue(there.exists())
        session.ctl("remove", "0xA")
        self.assertFalse(there.exists())
        self.assert_main_thread_never_asked()

    def test_a_dead_mount_among_the_searched_folders(self):
        session = self.session
        searched, session.applications = session.applications, self.mount
        session.add_host("Adobe InDesign CC 2020", 15000)
        session.applications = searched
        self.gate.touch()
        session.start_application("--applications", self.mount)
        wait_for(lambda: self.labels() == ["Adobe InDesign CC 2019"], "the other folder has been searched")
        self.appears("Adobe InDesign CC 2021", 16000, "Adobe InDesign CC 2021")
        self.gate.unlink()
        wait_for(lambda: "Adobe InDesign CC 2020" in self.labels(), "the mount answers again")
        self.assert_main_thread_never_asked()


def mounting_is_possible():
    return subprocess.run(["unshare", "--mount", "mount", "-t", "tmpfs", "none", "/mnt"], check=False,
                          stderr=subprocess.DEVNULL).returncode == 0


class Volumes(SessionTest):
    @unittest.skipUnless(mounting_is_possible(), "mounting takes root's rights")
    def test_volumes_come_and_go(self):
        """The program runs where its mounts are its own."""
        session = self.session
        command = session.application_command
        session.application_command = lambda *more: ["unshare", "--mount", *command(*more)]
        searched, session.applications = session.applications, session.folder / "volume"
        host = session.add_host("Adobe InDesign CC 2020", 15000)
        own = session.folder / "volume" / "own" / "Plug-Ins"
        own.mkdir(parents=True)
        session.applications = searched
        places = [searched / "mounted", session.folder / "elsewhere"]
        found, added = str(places[0] / host.name / "Plug-Ins") + "/", str(places[1] / "own" / "Plug-Ins")
        session.start_application()

        def run(*words):
            subprocess.run(["nsenter", "--target", str(session.application.pid), "--mount", "--root", *words],
                           check=True)

        def mount():
            for place in places:
                place.mkdir(exist_ok=True)
                run("mount", "--bind", session.folder / "volume", place)

        def invalid():
            return {target["path"]: target["invalid"] for target in session.status()["targets"]}

        mount()
        wait_for(lambda: invalid().get(found) is False, "a volume mounted after the start is searched")
        session.ctl("targets", "add", added, "--type", "InCopy", "--version", "150")
        for _ in range(2):
            for place in places:
                run("umount", place)
            wait_for(lambda: invalid()[found] and invalid()[added], "its targets go with the volume")
            left = host / "Plug-Ins" / "Tolvane" / ".tolvane-removed-0123456789abcdef"
            left.mkdir(parents=True)
            mount()
            wait_for(lambda: not invalid()[found] and not invalid()[added], "and come back with it")
            wait_for(lambda: not left.exists(), "what a killed run left there goes")
        # Its folders can be taken away only when nothing is mounted there, and the mounts end with the program.
        self.assertEqual(session.stop_application(), 0)


if __name__ == "__main__":
    run_tests()
