"""What goes wrong, with the real programs: nothing is lost, and the user is told."""
import contextlib
import hashlib
import json
import os
import shutil
import signal
import subprocess
import sys

from brevok_session import SessionTest, install, run_tests, wait_for, with_children

LOOPBACK_UP = """
import ctypes, fcntl, socket, struct, sys
spaces = [open(f"/proc/{sys.argv[1]}/ns/{kind}") for kind in ("user", "net")]
for space in spaces:
    assert ctypes.CDLL(None).setns(space.fileno(), 0) == 0
SIOCSIFFLAGS, IFF_UP = 0x8914, 1
fcntl.ioctl(socket.socket(), SIOCSIFFLAGS, struct.pack("16sh14x", b"lo", IFF_UP))
"""


class Faults(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.publish("Alpha", "0xA", "1.0", 140)

    def wait_until_taken(self, process, *numbers):
        def taken(number):
            with contextlib.suppress(FileNotFoundError):
                return os.readlink(f"/proc/{process.pid}/fd/{number}") in ("/dev/null", "/dev/full")
            return False
        wait_for(lambda: all(map(taken, numbers)), f"{numbers} are open on nothing")

    def test_started_with_closed_standard_streams(self):
        session = self.session
        session.application = subprocess.Popen(session.application_command(), env=session.environment,
                                               preexec_fn=lambda: os.closerange(0, 3))
        wait_for(lambda: session.ctl("status", check=False).returncode == 0, "the application answers")
        self.wait_until_taken(session.application, 0, 1)
        self.assertEqual(os.readlink(f"/proc/{session.application.pid}/fd/2"), str(session.log_file()))
        self.assertEqual(subprocess.run([session.programs / "brevokctl", "status"], env=session.environment, check=False,
                                        preexec_fn=lambda: os.closerange(0, 3)).returncode, 1)
        # The helper waits to be told what to do.
        helper = subprocess.Popen([session.programs / "tolvane-brevok-helper", "--obey", "--prefix", session.folder],
                                  stdin=subprocess.PIPE, preexec_fn=lambda: os.closerange(1, 3))
        try:
            self.wait_until_taken(helper, 1, 2)
        finally:
            helper.stdin.close()
            helper.wait()

    def test_network_that_returns(self):
        session = self.session
        alone = ["unshare", "--map-current-user", "--net"]  # a network of its own, in which nothing is up yet
        if subprocess.run([*alone, "true"], check=False, capture_output=True).returncode:
            self.skipTest("no network of its own is allowed here")
        usual = session.application_command
        session.application_command = lambda *more: [*alone, *usual(*more)]
        session.start_application()
        failed = ("Plugins update failed with error", "Packages update failed with error")
        self.assertFalse([line for line in failed if line in session.log()], "nothing can have been asked for")
        # There is a network now, but no service in it: that both lists were asked for is in the log.
        subprocess.run([sys.executable, "-c", LOOPBACK_UP, str(session.application.pid)], check=True)
        wait_for(lambda: all(line in session.log() for line in failed), "both lists are asked for")
        self.assertEqual([session.log().count(line) for line in failed], [1, 1])

    def test_a_damaged_archive_is_told_and_fetched_anew(self):
        session = self.session
        archive = session.publish("Beta", "0xB", "1.0", 140)
        session.plugins[-1]["SHA256"] = hashlib.sha256(archive.read_bytes()).hexdigest().upper()
        session.write_lists()
        session.start_and_check()
        archives = {prefix: session.service_root / plugin["Link"].lstrip("/")
                    for prefix, plugin in zip(("0xA", "0xB"), session.plugins)}
        whole = {prefix: archive.read_bytes() for prefix, archive in archives.items()}
        reasons = {"0xA": "the archive is damaged", "0xB": "The download does not match the catalogue."}
        for prefix, reason in reasons.items():
            archives[prefix].write_bytes(whole[prefix].replace(b"1.0", b"1.1"))  # the information, not its checksum
            result = session.ctl("install", prefix, "--json", check=False)
            self.assertEqual(result.returncode, 1)
            document = json.loads(result.stdout)
            self.assertEqual((document["ok"], len(document["failures"])), (False, 1))
            self.assertIn(reason, document["failures"][0])
            self.assertEqual([(one["result"], one["label"], one["reason"]) for one in document["outcome"]],
                             [("failed", "InDesign CC 2019", reason)])
            listed = next(one for one in session.status()["packages"] if one["prefix"] == prefix)
            self.assertEqual(listed["failures"], document["failures"])
            self.assertIn(document["failures"][0], session.ctl("status").stdout)
            self.assertIn("failed: " + document["failures"][0], session.log())
        for prefix in reasons:
            archives[prefix].write_bytes(whole[prefix])
            done = json.loads(session.ctl("install", prefix, "--json").stdout)
            self.assertEqual([one["result"] for one in done["outcome"]], ["installed"])
        self.assertFalse([one for one in session.status()["packages"] if "failures" in one])
        removed = json.loads(session.ctl("remove", "0xA", "--json").stdout)
        self.assertEqual([one["result"] for one in removed["outcome"]], ["removed"])

    def test_a_start_after_an_earlier_version(self):
        session = self.session
        session.settings_file().parent.mkdir()
        session.settings_file().write_text("[General]\nstartAtLogin=no\nOrlecPackagesData=@Variant(\\0\\0)\n")
        session.start_and_check()
        self.assertEqual(session.ctl("settings", "get", "startAtLogin").stdout, "no\n")
        self.assertEqual(session.package_status("0xA"), "Not Installed")

    def test_a_full_disk_is_told_and_costs_nothing(self):
        session = self.session
        session.start_application()
        folder = session.add_host("By Hand", 14012) / "Plug-Ins"
        add = ("targets", "add", folder, "--type", "InCopy", "--version", "140")
        session.fill_disk(True)
        signin, signout = ("signin", "ada@example.com"), ("signout",)
        for words in (("settings", "set", "logLevel", "2"), add, signin, signout, signout, signin):
            answer = session.ctl(*words, "--json", check=False, BREVOK_PASSWORD="analytical-engine")
            self.assertEqual(answer.returncode, 1, (words, answer))
            document = json.loads(answer.stdout)
            self.assertFalse(document["ok"])
            self.assertIn("could not be stored", document["failures"][0])
        self.assertIn("Changes cannot be stored now", session.status()["warnings"][0])
        self.assertTrue(session.ctl("status").stdout.startswith("Warning: Changes cannot be stored now"))
        self.assertEqual(session.ctl("settings", "get", "logLevel").stdout.strip(), "2")  # it counts meanwhile
        self.assertNotIn("cannot store its data", session.log())  # no alert
        session.fill_disk(False)
        for words in (("settings", "set", "logLevel", "2"), add):
            session.ctl(*words)
        self.assertNotIn("warnings", session.status())
        # What was kept in memory meanwhile is there, too.
        session.stop_application(signal.SIGKILL)
        session.start_application()
        self.assertEqual(session.ctl("settings", "get", "logLevel").stdout.strip(), "2")
        self.assertIn(str(folder), [target["path"] for target in session.status()["targets"]])
        self.assertTrue(session.status()["session"]["signedIn"])

    def test_a_login_item_that_failed_at_the_start_fails_no_other_call(self):
        session = self.session
        autostart = session.folder / "config" / "autostart"
        autostart.write_text("a file where the folder belongs")
        session.start_application()
        wait_for(lambda: "The login item cannot be written" in session.log(), "it is logged")
        session.ctl("settings", "set", "showNotifications", "no")
        refused = session.ctl("settings", "set", "startAtLogin", "yes", check=False)
        self.assertEqual((refused.returncode, "login item" in refused.stderr), (1, True))
        self.assertEqual(session.ctl("settings", "get", "startAtLogin").stdout, "no\n")

    def test_a_start_without_room_for_temporary_files(self):
        session = self.session
        session.start_application()
        session.ctl("settings", "set", "logLevel", "1")
        session.sign_in()
        session.stop_application()
        session.environment["TMPDIR"] = "/proc"  # where not even root makes a file
        session.start_application()
        self.assertTrue(session.status()["session"]["signedIn"])
        self.assertEqual(session.ctl("settings", "get", "logLevel").stdout.strip(), "1")
        session.ctl("settings", "set", "logLevel", "0")
        self.assertEqual([path.name for path in session.settings_file().parent.iterdir()], ["brevok.conf"])

    def test_an_update_of_the_package_while_it_runs(self):
        session = self.session
        session.programs = install(session.programs, session.folder / "installed")
        session.start_and_check()
        wait_for(lambda: len(with_children(session.application.pid)) == 1, "what sent the requests has ended")
        program = session.folder / "installed" / "lib" / "tolvane-brevok" / "tolvane-brevok-network"
        program.unlink()
        shutil.copy(shutil.which("false"), program)  # another version, which does not understand this one
        session.ctl("check")

    def test_a_damaged_state_file(self):
        session = self.session
        for content in (b"no database" * 1000, b""):
            session.start_and_check()
            session.sign_in()
            session.stop_application()
            self.assertEqual(session.state_file().stat().st_mode & 0o777, 0o600)
            session.state_file().write_bytes(content)
            session.start_application()
            wait_for(lambda: ("was damaged; it was kept as" if content else "is empty.") in session.log(), "it is said")
            self.assertFalse(session.status()["session"]["signedIn"])
            session.stop_application()
        self.assertEqual(len(list(session.state_file().parent.glob("*.damaged-*"))), 1)


if __name__ == "__main__":
    run_tests()
