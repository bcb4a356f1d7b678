#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""The Debian packages of a Release build: what is in them, and their life in a scratch root with the real dpkg."""
import gzip
import json
import os
import pathlib
import re
import shutil
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "end-to-end"))
from brevok_session import Session, ask_bus, offer_to_the_bus, wait_for  # noqa: E402
from scratch_root import (APPLICATION, DEMO, HELPER, POLICY, ScratchRoot, make_newer, make_packages, missing_tools,
                          mode_and_path, run)  # noqa: E402

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
SKIPPED = 77


def needs(tool):
    return unittest.skipUnless(shutil.which(tool), f"{tool} is not installed")


class PackagesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.made = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.packages = make_packages(BUILD, cls.made)

    def setUp(self):
        self.root = ScratchRoot(pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())))

    def install_all(self):
        self.root.dpkg("-i", *self.packages.values())

    def write_policy(self, text):
        (self.root / POLICY).write_text(text)

    # what is in them

    def test_three_packages_share_no_file_and_keep_to_their_places(self):
        self.assertEqual(set(self.packages), {APPLICATION, HELPER, DEMO})
        owners = {}
        for name, file in self.packages.items():
            for mode, owner, path in map(mode_and_path, run("dpkg-deb", "-c", file).stdout.splitlines()):
                self.assertEqual(owner, "root/root", path)
                self.assertTrue(path.startswith(("usr/", "etc/", "lib/")), path)
                if not mode.startswith("l"):
                    self.assertRegex(mode, "^[-d]rw[-x]r-[-x]r-[-x]$", f"{path} of {name}")
                if not path.endswith("/"):
                    self.assertNotIn(path, owners, f"{name} and {owners.get(path)}")
                    owners[path] = name
            self.assertEqual(run("dpkg-deb", "-f", file, "Version").stdout.strip(), self.latest_change())
            self.assertRegex(run("dpkg-deb", "-f", file, "Depends").stdout, r"libqt6core6(t64)? \(>= 6")
        self.assertIn("usr/bin/brevokctl", owners)

    def latest_change(self):
        changelog = pathlib.Path(__file__).resolve().parents[2] / "packaging/debian/changelog"
        return run("dpkg-parsechangelog", "-l", changelog, "-S", "Version").stdout.strip()

    @needs("lintian")
    def test_lintian_finds_no_errors(self):
        # The packages go into no archive that keeps bugs for every upload.
        checked = run("lintian", "--allow-root", "--tag-display-limit", "0", "--fail-on", "error", "--suppress-tags",
                      "initial-upload-closes-no-bugs", *self.packages.values(), check=False)
        self.assertEqual(checked.returncode, 0, checked.stdout + checked.stderr)
        self.assertNotIn("E:", checked.stdout)

    def test_what_the_desktop_reads_is_valid(self):
        self.install_all()
        share = self.root / "usr/share"
        checks = [("desktop-file-validate", [share / "applications/com.tolvane.brevok.desktop"]),
                  ("appstreamcli", ["validate", "--no-net", share / "metainfo/com.tolvane.brevok.metainfo.xml"]),
                  *((("mandoc", ["-T", "lint", "-W", "warning", self.unpacked(page)])
                     for page in share.glob("man/man?/*") if page.stem != "tolvane-brevok-demo.1")),
                  ("bash", ["-n", share / "bash-completion/completions/brevokctl"]),
                  ("zsh", ["-n", share / "zsh/vendor-completions/_brevokctl"]),
                  ("fish", ["-n", share / "fish/vendor_completions.d/brevokctl.fish"])]
        for tool, words in checks:
            with self.subTest(tool, words=words):
                if shutil.which(tool):
                    run(tool, *words)
        self.assert_commands_are_described(share)
        for size in ("scalable", "symbolic", "16x16", "48x48", "256x256"):
            self.assertTrue(list((share / "icons/hicolor" / size / "apps").glob("com.tolvane.brevok*")), size)
        service = (share / "dbus-1/services/com.tolvane.brevok.service").read_text()
        self.assertIn("Exec=/usr/bin/tolvane-brevok --background\n", service)
        for path in [*share.glob("dbus-1/system.d/*"), *share.glob("polkit-1/actions/*"), *share.rglob("*.svg")]:
            ElementTree.parse(path)
        for path in [*share.glob("dbus-1/*services/*.service"), *self.root.folder.glob("**/systemd/system/*.service")]:
            for program in re.findall(r"^Exec(?:Start)?=(/\S+)", path.read_text(), re.M):
                self.assertTrue(os.access(f"{self.root.folder}{program}", os.X_OK), f"{program} of {path.name}")
        names = {page.name for page in share.glob("man/man?/*")}
        self.assertLessEqual({"tolvane-brevok.1.gz", "brevokctl.1.gz", "tolvane-brevok-helper.8.gz"}, names)

    def assert_commands_are_described(self, share):
        helped = run(self.root.programs / "brevokctl", "--help").stdout
        commands = set(re.findall(r"^  ([a-z-]+)", helped, re.M))
        self.assertLessEqual({"status", "quit"}, commands)
        for file in (self.unpacked(share / "man/man1/brevokctl.1.gz"), share / "bash-completion/completions/brevokctl",
                     share / "zsh/vendor-completions/_brevokctl", share / "fish/vendor_completions.d/brevokctl.fish"):
            found = set(re.findall(r"[a-z-]+", file.read_text().replace("\\-", "-")))
            self.assertEqual(commands - found, set(), file)

    def unpacked(self, page):
        plain = self.root / page.stem
        plain.write_bytes(gzip.decompress(page.read_bytes()))
        return plain

    @needs("systemd-analyze")
    def test_the_timer_is_valid(self):
        self.install_all()
        units = self.root / "usr/lib/systemd/user"
        service = units / "tolvane-brevok-converge.service"
        service.write_text(service.read_text().replace("=/usr/bin/", f"={self.root.programs}/"))
        verified = run("systemd-analyze", "--user", "--man=no", "verify", *units.glob("tolvane-brevok-converge.*"), check=False)
        self.assertEqual((verified.returncode, verified.stdout + verified.stderr), (0, ""))
        when = re.search("^OnCalendar=(.*)", (units / "tolvane-brevok-converge.timer").read_text(), re.M)[1]
        run("systemd-analyze", "calendar", when)

    # the installed programs

    def test_installed_programs_do_their_work(self):
        self.install_all()
        with Session(self.root.programs) as session:
            session.publish("Imposer", "IM#01", "2.0.0", 140)
            session.start_application()
            session.ctl("signin", "ada@example.com", BREVOK_PASSWORD="analytical-engine")
            session.ctl("check")
            session.ctl("install", "IM#01")
            self.assertEqual(session.installed_version("Imposer"), "2.0.0")
            # Only a copy that finds its resources installs the workspace file and knows its defaults.
            host = session.applications / "Adobe InDesign CC 2019"
            self.assertTrue((host / "Presets/InDesign Workspaces/Tolvane.xml").is_file())
            self.assertTrue(json.loads(session.ctl("settings", "--json").stdout)["showNotifications"])
            self.check_completions(session)

    def check_completions(self, session):
        environment = {**session.environment, "PATH": f"{self.root.programs}:{os.environ['PATH']}"}
        target = f"{session.applications}/Adobe InDesign CC 2019/Plug-Ins/"
        script = self.root / "usr/share/bash-completion/completions/brevokctl"
        table = [(["brevokctl", "ins"], ["install"]), (["brevokctl", "install", ""], ["IM#01"]),
                 (["brevokctl", "update", "--a"], ["--all"]), (["brevokctl", "targets", "add", "/x", "--type", "InC"],
                                                               ["InCopy"]),
                 (["brevokctl", "settings", "set", "autoUpdate", ""], ["yes", "no"]),
                 (["brevokctl", "--json", "targets", "disable", ""], [target.replace(" ", "\\ ")])]
        for words, wanted in table:
            with self.subTest(shell="bash", words=words):
                quoted = " ".join(f"'{word}'" for word in words)
                found = run("bash", "-c", f"source '{script}'; COMP_WORDS=({quoted}); COMP_CWORD={len(words) - 1}; "
                            "_brevokctl; printf '%s\\n' \"${COMPREPLY[@]}\"", env=environment)
                self.assertEqual(found.stdout.splitlines(), wanted)
        if shutil.which("fish"):
            script = self.root / "usr/share/fish/vendor_completions.d/brevokctl.fish"
            for line, wanted in [("brevokctl install ", "IM#01"), ("brevokctl targets disable ", target),
                                 ("brevokctl settings set autoUpdate ", "yes")]:
                with self.subTest(shell="fish", line=line):
                    found = run("fish", "--no-config", "-c", f"source '{script}'; complete -C '{line}'", env=environment)
                    self.assertIn(wanted, [entry.split("\t")[0] for entry in found.stdout.splitlines()])

    @needs("dbus-send")
    def test_bus_starts_the_installed_copy_under_the_policy(self):
        self.install_all()
        with Session(self.root.programs) as session:
            self.write_policy(f"[Service]\nURL={session.service_url}\nCA={session.service_ca}\n"
                              f"ReachabilityHost=localhost\n[Applications]\nFolders={session.applications}\n"
                              "[Settings]\nautoUpdate=yes\nstartAtLogin=no\n")
            service = (self.root / "usr/share/dbus-1/services/com.tolvane.brevok.service").read_text()
            offer_to_the_bus(self, service.replace("Exec=", f"Exec={self.root.folder}"))
            self.addCleanup(self.end_copy_of_the_bus, session)
            wait_for(lambda: session.ctl("status", check=False).returncode == 0, "the application answers")
            wait_for(lambda: session.status()["targets"], "the policy's folder is searched")
            self.assertIn(str(session.applications), session.status()["targets"][0]["path"])
            session.ctl("check")  # is answered by the policy's service alone
            refused = session.ctl("settings", "set", "autoUpdate", "no", check=False)
            self.assertEqual((refused.returncode, "administrator" in refused.stderr), (1, True), refused.stderr)
            session.ctl("settings", "set", "showNotifications", "no")
            settings = json.loads(session.ctl("settings", "--json").stdout)
            self.assertEqual((settings["autoUpdate"], settings["startAtLogin"], settings["showNotifications"]),
                             (True, False, False))
            self.assertFalse(list(pathlib.Path(os.environ["XDG_CONFIG_HOME"]).glob("autostart/*")))

    def end_copy_of_the_bus(self, session):
        session.ctl("quit", check=False)
        wait_for(lambda: "com.tolvane.brevok" not in ask_bus("ListNames"), "the copy ends")

    def test_policy_that_cannot_be_used_keeps_the_program_from_starting(self):
        self.install_all()
        self.write_policy("[Service]\nURL=http://firm.example\n")
        for variables in ({}, {"BREVOK_SERVICE_URL": "https://localhost:1"}):
            ended = run(self.root.programs / "tolvane-brevok", "--headless", "--service-url", "https://localhost:1",
                        check=False, env={**os.environ, **variables})
            self.assertEqual(ended.returncode, 2)
            self.assertEqual(ended.stderr, f"tolvane-brevok: {self.root / POLICY}, line 2: URL: 'http://firm.example' "
                                           "is not the https address of a service\n")

    # their life

    def test_upgrade_keeps_what_the_administrator_decided(self):
        self.install_all()
        self.write_policy("[Settings]\nautoUpdate=no\n")

        def change(tree):
            (tree / "usr/share/fish/vendor_completions.d/brevokctl.fish").unlink()
            (tree / "usr/share/tolvane-brevok/New.txt").write_text("new")
            (tree / POLICY).write_text("# other words\n")
        newer = make_newer(self.packages[APPLICATION], self.made, change)
        self.root.dpkg("-i", newer)
        self.assertEqual(self.root.state(APPLICATION), "installed 1000.0-1")
        self.assertEqual((self.root / POLICY).read_text(), "[Settings]\nautoUpdate=no\n")
        self.assertFalse((self.root / "usr/share/fish/vendor_completions.d/brevokctl.fish").exists())
        self.assertTrue((self.root / "usr/share/tolvane-brevok/New.txt").exists())

    @needs("deb-systemd-helper")
    def test_the_timer_is_enabled_for_all_until_an_administrator_disables_it(self):
        wanted = self.root / "etc/systemd/user/timers.target.wants/tolvane-brevok-converge.timer"
        self.install_all()
        self.assertEqual(os.readlink(wanted), "/usr/lib/systemd/user/tolvane-brevok-converge.timer")
        wanted.unlink()
        self.root.dpkg("-i", make_newer(self.packages[APPLICATION], self.made, lambda tree: None))
        self.assertFalse(wanted.is_symlink())
        self.root.dpkg("-r", APPLICATION)
        self.assertEqual(os.readlink(self.root / "etc/systemd/user" / wanted.name), "/dev/null")

    def test_removal_and_purge_leave_nothing_and_touch_no_user(self):
        for path in ("home/ada/.config/tolvane/brevok.conf", "home/ada/.local/share/Tolvane Brevok/x.zip",
                     "home/ada/.config/autostart/com.tolvane.brevok.desktop", "etc/hostname",
                     "opt/Adobe InDesign/Plug-Ins/Tolvane/Imposer.InDesignPlugin/Contents/Info.plist"):
            (self.root / path).parent.mkdir(parents=True, exist_ok=True)
            (self.root / path).write_text("the user's own")
        before = self.root.files()
        self.install_all()
        self.write_policy("[Settings]\nautoUpdate=no\n")
        notes = self.root / "var/lib/tolvane-brevok-helper/notes"
        notes.parent.mkdir()
        notes.touch()
        self.root.dpkg("-r", *self.packages)
        self.assertTrue(notes.exists())
        # What deb-systemd-helper keeps of the timer until the purge is tested with the timer.
        left = {name for name in self.root.files() if name not in before and not name.startswith("etc/systemd")}
        self.assertEqual(left, {"etc/tolvane-brevok", POLICY})
        self.root.dpkg("-P", *self.packages)
        left = {name: what for name, what in self.root.files().items() if what is not None or name in before}
        self.assertEqual(left, before)
        self.assertLessEqual(set(self.root.files()) - set(before), {"etc/systemd", "etc/systemd/user"})
        self.assertFalse(notes.parent.exists())
        for name in self.packages:
            self.assertNotIn("installed", self.root.state(name).replace("not-installed", ""))


if __name__ == "__main__":
    if missing_tools():
        print(f"skipped: not installed here: {', '.join(missing_tools())}")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
