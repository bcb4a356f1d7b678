"""brevokctl converge with the real programs: what the owner of a machine wants comes true, and is told."""
import json
import shutil
import signal
import subprocess
import tempfile

from brevok_session import Session, SessionTest, install, run_tests, wait_for


def results(entries):
    return sorted((entry["prefix"], entry["result"]) for entry in entries)


class Converge(SessionTest):
    @classmethod
    def setUpClass(cls):
        cls.installed = install(cls.programs, cls.enterClassContext(tempfile.TemporaryDirectory()))

    def setUp(self):
        self.policy = self.installed.parent / "etc/tolvane-brevok/policy.conf"
        self.policy.parent.mkdir(parents=True)
        self.addCleanup(shutil.rmtree, self.policy.parent)
        self.session = self.enterContext(Session(self.installed))
        for name, prefix in (("Alpha", "0xA"), ("Beta", "0xB"), ("Gamma", "0xC"), ("Delta", "KM#xD")):
            self.session.publish(name, prefix, "1.0", 140)

    def start(self, sign_in=True):
        self.session.start_application()
        wait_for(lambda: self.session.status()["targets"], "the host application is found")
        self.session.ctl("check")
        if sign_in:
            self.session.sign_in()

    def converge(self, *words, status=0):
        before = len(self.session.log())
        result = self.session.ctl("converge", "--json", *words, check=False)
        self.assertEqual(result.returncode, status, result.stdout + result.stderr + self.session.log()[-3000:])
        document = json.loads(result.stdout)
        self.assertLessEqual({"changed", "deferred", "failed", "waiting"}, set(document))
        self.assertEqual(bool(document["failed"]), status == 1)
        self.assertNotIn("Alert", self.session.log()[before:])
        return document

    def test_the_policy_comes_true(self):
        session = self.session
        self.policy.write_text("[Packages]\nRequired=0xA:KM#xD\n")
        self.start()
        session.ctl("install", "0xB")
        before = sorted(session.applications.rglob("*"))
        self.policy.write_text("[Packages]\nRequired=0xA:KM#xD\nForbidden=0xB\n")  # counts without a new start

        foreseen = self.converge("--dry-run")
        self.assertEqual(results(foreseen["changed"]), [("0xA", "installed"), ("0xB", "removed"), ("KM#xD", "installed")])
        self.assertTrue(foreseen["foreseen"])
        self.assertEqual(sorted(session.applications.rglob("*")), before)

        done = self.converge()
        self.assertEqual(done["changed"], foreseen["changed"])
        self.assertEqual(done["changed"][0]["label"], "InDesign CC 2019")
        self.assertEqual([session.installed_version(name) for name in ("Alpha", "Beta", "Gamma", "Delta")],
                         ["1.0", None, None, "1.0"])
        self.assertEqual(self.converge(), {"changed": [], "deferred": [], "failed": [], "waiting": []})
        self.assertEqual(session.ctl("converge").stdout, "Nothing to do.\n")

    def test_updates_follow_the_setting(self):
        session = self.session
        self.start()
        session.ctl("install", "0xA", "0xB")
        session.publish("Alpha", "0xA", "1.1", 140)
        session.publish("Beta", "0xB", "1.1", 140)
        self.policy.write_text("[Packages]\nRequired=0xB\nForbidden=\n")
        document = self.converge()
        self.assertEqual((results(document["changed"]), results(document["waiting"])),
                         ([("0xB", "installed")], [("0xA", "update")]))
        session.ctl("settings", "set", "autoUpdate", "yes")
        self.assertEqual(results(self.converge("--dry-run")["changed"]), [("0xA", "installed")])
        self.assertEqual(session.installed_version("Alpha"), "1.0")
        self.assertEqual(results(self.converge()["changed"]), [("0xA", "installed")])
        self.assertEqual(session.installed_version("Alpha"), "1.1")

    def test_a_running_host_is_left_for_the_next_time(self):
        session = self.session
        self.start()
        session.ctl("install", "0xB")
        self.policy.write_text("[Packages]\nRequired=0xA\nForbidden=0xB\n")
        with session.running_host():
            for words in (["--dry-run"], []):
                document = self.converge(*words)
                self.assertEqual(results(document["deferred"]), [("0xA", "skipped"), ("0xB", "skipped")])
                self.assertEqual(document["deferred"][0]["reason"], "InDesign is running")
                self.assertEqual(document["changed"], [])
            self.assertEqual((session.installed_version("Alpha"), session.installed_version("Beta")), (None, "1.0"))
            self.assertNotIn("is running.", session.log())
        self.assertEqual(results(self.converge()["changed"]), [("0xA", "installed"), ("0xB", "removed")])

    def test_what_cannot_be_is_told_and_the_rest_done(self):
        session = self.session
        self.start()
        archive = session.service_root / "archives" / "Delta-140-1.0.zip"
        archive.write_bytes(archive.read_bytes()[:-1])
        self.policy.write_text("[Packages]\nRequired=0xA:0xC:nobody\nForbidden=gone\n")
        more = self.policy.with_name("policy.conf.d")
        more.mkdir()
        (more / "20-other.conf").write_text("[Packages]\nRequired=KM#xD\nForbidden=0xC\n")
        document = self.converge(status=1)
        self.assertEqual(results(document["changed"]), [("0xA", "installed")])
        self.assertEqual(results(document["failed"]), [("KM#xD", "failed"), ("nobody", "failed")])
        self.assertIn("No package has the prefix 'nobody', which is required.",
                      [entry["reason"] for entry in document["failed"]])
        self.assertEqual(document["notes"], ["'gone' is forbidden, but no package has this prefix.",
                                             "'0xC' is both required and forbidden: forbidden counts."])
        self.assertIsNone(session.installed_version("Gamma"))
        (more / "30-broken.conf").write_text("[Packages]\nRequierd=0xB\n")
        session.ctl("remove", "0xA")
        document = self.converge(status=1)
        (failed,) = document["failed"]
        self.assertEqual(document["changed"], [])
        self.assertIn("30-broken.conf, line 2: Requierd: there is no such key in [Packages]", failed["reason"])

    def test_signed_out_and_offline(self):
        session = self.session
        self.policy.write_text("[Packages]\nRequired=0xA\nForbidden=0xB\n")
        self.start(sign_in=False)
        session.ctl("install", "0xB")
        (failed,) = self.converge(status=1)["failed"]
        self.assertIn("Nobody is signed in", failed["reason"])
        self.assertEqual(session.installed_version("Beta"), "1.0")
        session.sign_in()
        port = session.port()
        session.stop_service()
        document = self.converge(status=1)
        self.assertEqual(results(document["changed"]), [("0xB", "removed")], "what needs no service is done")
        for failed, what in zip(document["failed"], ("plug-ins", "packages")):
            self.assertRegex(failed["reason"], rf"^The list of {what} could not be read \(.+\); the one of the last time")
        session.start_service(port)
        self.assertEqual(results(self.converge()["changed"]), [("0xA", "installed")])

    def test_two_at_once_and_a_person_beside_them(self):
        session = self.session
        self.policy.write_text("[Packages]\nRequired=0xA:0xC\n")
        self.start()
        runs = [subprocess.Popen([session.programs / "brevokctl", "converge", "--json"], env=session.environment,
                                 stdout=subprocess.PIPE, text=True) for _ in range(2)]
        session.ctl("install", "0xB", "0xA")
        changed = []
        for run in runs:
            document = json.loads(run.communicate(timeout=120)[0])
            self.assertEqual((run.returncode, document["failed"]), (0, []))
            changed += results(document["changed"])
        self.assertEqual([session.installed_version(name) for name in ("Alpha", "Beta", "Gamma")], ["1.0"] * 3)
        self.assertEqual(changed.count(("0xC", "installed")), 1, "the second run finds the work of the first")

    def test_a_run_that_was_killed_is_finished_by_the_next(self):
        session = self.session
        self.policy.write_text("[Packages]\nRequired=0xA\n[Settings]\nautoUpdate=yes\n")
        self.start()
        session.ctl("install", "0xB")
        session.publish("Beta", "0xB", "1.1", 140)
        session.ctl("check")
        with session.install_under_way("0xA"):
            session.stop_application(signal.SIGKILL)
        self.session.start_application()
        self.assertEqual(session.package_status("0xA"), "In Progress")
        document = self.converge()
        self.assertEqual(results(document["changed"]), [("0xA", "installed"), ("0xB", "installed")])
        self.assertRegex(document["notes"][0], "Unfinished actions are discarded")


if __name__ == "__main__":
    run_tests()
