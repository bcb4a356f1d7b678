"""What a user tells the programs on the command line and through brevokctl, and the reports that they send."""
import json
import pathlib
import shutil
import subprocess

from brevok_session import PASSWORD, SessionTest, run_tests, wait_for


class Journey(SessionTest):
    def assert_refused(self, result, status, text):
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertIn(text, result.stderr)

    def test_options(self):
        session = self.session
        program = session.programs / "tolvane-brevok"
        ca = session.folder / "empty.pem"
        ca.write_text("nothing")
        environment = {name: value for name, value in session.environment.items() if name != "QT_QPA_PLATFORM"}
        for words, named in ((["--headles"], "headles"), (["--service-url", "http://localhost"], "http://localhost"),
                             (["--service-ca", "/nowhere.pem"], "/nowhere.pem"), (["--service-ca", ca], str(ca)),
                             (["--reachability-host", "a b"], "a b"), (["extra"], "extra"), ([], "there is no display")):
            result = subprocess.run([program, *words], env=environment, capture_output=True, text=True)
            self.assert_refused(result, 2 if words else 1, named)
            self.assertEqual(len(result.stderr.strip().splitlines()), 1)
        version = subprocess.run([program, "--version"], env=session.environment, capture_output=True, text=True)
        self.assertEqual(version.stdout, "tolvane-brevok 1.0.0\n")
        self.assertFalse((session.folder / "config" / "tolvane").exists(), "nothing else is touched")
        self.assert_refused(session.ctl("instal", check=False), 2, "'instal'")
        self.assert_refused(session.ctl("status", check=False), 3, "cannot be reached")

    def test_targets_and_settings_from_outside(self):
        session = self.session
        session.start_and_check()
        later = session.add_host("Adobe InCopy 2020", 15000, signature="InCp")
        label = "Adobe InCopy CC 2020"
        wait_for(lambda: label in [t["label"] for t in session.status()["targets"]], "an application appears")
        shutil.rmtree(later)
        wait_for(lambda: [t["invalid"] for t in session.status()["targets"] if t["label"] == label] == [True],
                 "an application goes away")
        path = str(session.folder / "own/Plug-Ins")
        pathlib.Path(path).mkdir(parents=True)
        session.ctl("targets", "add", path, "--type", "InCopy", "--version", "75")
        session.ctl("targets", "disable", path)
        self.assertRegex(session.ctl("targets").stdout, r"InCopy CS5.5 +disabled")
        self.assert_refused(session.ctl("targets", "remove", "/unknown", check=False), 1, "'/unknown'")
        for wrong, reason in (("own/Plug-Ins", "absolute"), ("/", "root of the file system")):
            self.assert_refused(session.ctl("targets", "add", wrong, "--type", "InDesign", "--version", "75",
                                            check=False), 1, reason)
        link = session.folder / "link"
        link.symlink_to(session.folder / "own")
        for spelling in (f"{path}/", f"{link}/Plug-Ins", f"{path}/../Plug-Ins"):
            session.ctl("targets", "add", spelling, "--type", "InCopy", "--version", "75")
            session.ctl("targets", "disable", spelling)
            self.assertRegex(session.ctl("targets").stdout, r"InCopy CS5.5 +disabled")
        self.assertEqual(len(session.status()["targets"]), 3, "no spelling makes another one")
        session.ctl("settings", "set", "startAtLogin", "no")
        self.assertFalse((session.folder / "config/autostart/com.tolvane.brevok.desktop").exists())
        self.assert_refused(session.ctl("settings", "set", "autoUpdate", "perhaps", check=False), 1, "'perhaps'")
        session.stop_application()
        session.start_application()
        self.assertEqual(session.ctl("settings", "get", "startAtLogin").stdout, "no\n")
        self.assertRegex(session.ctl("targets").stdout, r"InCopy CS5.5 +disabled")
        session.ctl("quit")
        self.assertEqual(session.stop_application(), 0)


class Reports(SessionTest):
    def items(self, body):
        return {item["Key"]: item["Value"] for item in body["Data"]}

    def test_report_arrives_without_secrets(self):
        session = self.session
        crashes = session.log_file().parent / "DiagnosticReports"
        crashes.mkdir(parents=True)
        (crashes / "Adobe InDesign CC 2019_1.crash").write_text("Thread 0 crashed\n")
        session.publish("Alpha", "0xA", "1.0", 140)
        session.start_application()
        session.ctl("settings", "set", "logLevel", "1")
        session.ctl("check")
        session.ctl("install", "0xA")
        session.sign_in()
        words = ["--email", "ada@example.com", "--note", "It broke\n\"twice\""]
        shown = json.loads(session.ctl("report", "--show", *words).stdout)
        self.assertEqual(session.requests("/api/machine/report"), [], "showing sends nothing")
        self.assertEqual(json.loads(session.ctl("--json", "report", *words).stdout), {"ok": True, "failures": []})
        (request,) = session.requests("/api/machine/report")
        self.assertEqual((request["method"], request["session"]), ("POST", "known"))
        self.assertEqual(request["body"]["Email"], "ada@example.com")
        sent = self.items(request["body"])
        self.assertEqual(list(sent), ["Application", "Description", "Platform", "Packages", "Plugins", "Targets",
                                      "orlec.log", "tolvane.log", "InDesign.crash"])
        self.assertEqual(sent["Description"], "It broke\n\"twice\"")
        self.assertIn("Status=Up To Date\n", sent["Packages"])
        self.assertIn("Plugins = Alpha 1.0 (14.0),\n", sent["Targets"])
        self.assertEqual(sent["InDesign.crash"], "Thread 0 crashed\n")
        self.assertIn("Connection: POST returned valid reply", sent["orlec.log"])
        differing = {key for key, value in self.items(shown).items() if sent[key] != value}
        self.assertEqual(differing, {"orlec.log"}, "only the log has grown")
        # The session id stands in the state, its ends in what the service wrote down; the program logs neither.
        first, last = request["headers"]["cookie"].split("SessionId=")[1].split("…")
        for text in (session.log(), json.dumps(request["body"]), json.dumps(shown)):
            self.assertIn("Session request: POST", text)
            for secret in (PASSWORD, "SessionId=" + first):
                self.assertNotIn(secret, text)
            self.assertNotRegex(text, f"{first}[0-9a-f]{{24}}{last}")
        session.stop_service()
        for email, text in (("ada@home", "Invalid email address!"),
                            ("ada@example.com", "Tolvane Brevok servers are unreachable.")):
            result = session.ctl("report", "--email", email, "--note", "x", check=False)
            self.assertEqual((result.returncode, text in result.stderr), (1, True), result.stderr)

    def test_usage_is_shown(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        session.start_and_check()
        session.ctl("install", "0xA")
        usage = json.loads(session.ctl("usage", "--show").stdout)
        self.assertEqual(usage["Installed"], [{"InDesignVersion": "140", "Plugins": [
            {"Prefix": "0xA", "Version": "1.0", "Note": "Correct host version :-)"}]}])
        for target in session.status()["targets"]:
            session.ctl("targets", "remove", target["path"])
        self.assertEqual(session.ctl("usage", "--show", check=False).returncode, 1)
        self.assertEqual(session.requests("/api/stats/plugins"), [])


if __name__ == "__main__":
    run_tests()
