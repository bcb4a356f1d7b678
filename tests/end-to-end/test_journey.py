"""What a user does, with the real programs: sign in, look, install, update, remove."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

from brevok_session import Session, wait_for

PROGRAMS = pathlib.Path(sys.argv.pop(1))
ACCOUNT = {"email": "ada@example.com", "password": "analytical-engine"}


def ask_bus(method):
    return subprocess.run(
        ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
         f"org.freedesktop.DBus.{method}"], capture_output=True, text=True, check=True).stdout


def activatable_names():
    return ask_bus("ListActivatableNames")


def owned_names():
    return ask_bus("ListNames")


class Journey(unittest.TestCase):
    def setUp(self):
        self.session = self.enterContext(Session(PROGRAMS))

    def start(self):
        self.session.start_application()
        self.session.ctl("check")

    def assert_refused(self, result, status, text):
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertIn(text, result.stderr)

    def test_install_update_remove(self):
        session = self.session
        session.add_host("Adobe InDesign 2021", 16200)
        session.publish("Alpha", "0xA", "1.0", 140)
        session.publish("Alpha", "0xA", "1.0", 160)
        self.start()
        status = session.status()
        self.assertEqual([t["label"] for t in status["targets"]],
                         ["Adobe InDesign CC 2021", "Adobe InDesign CC 2019"])
        self.assertEqual(session.package_status("0xA"), "Not Installed")

        session.ctl("install", "0xA")
        self.assertEqual(session.package_status("0xA"), "Up To Date")
        self.assertEqual(session.installed_version("Alpha"), "1.0")
        self.assertEqual(session.installed_version("Alpha", "Adobe InDesign 2021"), "1.0")
        workspace = session.applications / "Adobe InDesign 2021/Presets/InDesign Workspaces/Tolvane.xml"
        self.assertTrue(workspace.exists())

        session.publish("Alpha", "0xA", "1.1", 160)
        session.ctl("check")
        status = session.status()
        self.assertEqual((session.package_status("0xA"), status["updates"]), ("Mixed Not Updated", 1))
        session.ctl("update", "--all")
        self.assertEqual(session.installed_version("Alpha", "Adobe InDesign 2021"), "1.1")
        self.assertEqual(session.installed_version("Alpha"), "1.0")
        self.assertEqual(session.package_status("0xA"), "Up To Date")

        session.ctl("remove", "0xA")
        self.assertEqual(session.package_status("0xA"), "Not Installed")
        self.assertFalse(session.bundle("Alpha").exists())
        self.assertTrue(workspace.exists())

    def test_sign_in_and_out(self):
        session = self.session
        self.start()
        wrong = session.ctl("signin", ACCOUNT["email"], check=False, BREVOK_PASSWORD="nonsense")
        self.assert_refused(wrong, 1, "Wrong user name or password.")
        self.assertEqual(session.status()["session"],
                         {"signedIn": False, "email": ACCOUNT["email"], "updating": False})
        session.ctl("signin", ACCOUNT["email"], BREVOK_PASSWORD=ACCOUNT["password"])
        self.assertTrue(session.status()["session"]["signedIn"])
        session.stop_application()
        session.start_application()
        self.assertTrue(session.status()["session"]["signedIn"])
        session.ctl("check")
        requests = [json.loads(line) for line in (session.service_root / "requests.jsonl").read_text().splitlines()]
        lists = [r for r in requests if r["path"] == "/api/product/list"]
        self.assertIn("SessionId=", json.dumps(lists[-1]["headers"]))
        session.ctl("signout")
        self.assertFalse(session.status()["session"]["signedIn"])
        for text in (session.log(), session.state_file().read_text(errors="replace")):
            self.assertNotIn(ACCOUNT["password"], text)

    def test_second_copy_gives_way(self):
        session = self.session
        self.start()
        elsewhere = session.folder / "elsewhere"
        environment = {**session.environment, **{f"XDG_{kind}_HOME": str(elsewhere) for kind in
                                                 ("CONFIG", "DATA", "STATE")}}
        second = subprocess.run(session.application_command(), env=environment, capture_output=True, text=True,
                                timeout=60)
        self.assertEqual(second.returncode, 0)
        self.assertIn("Another copy of Tolvane Brevok application is already running.", second.stderr)
        wait_for(lambda: "The panel was asked for" in session.log(), "the first copy opens its panel")
        self.assertNotIn("Another copy", session.log())
        self.assertFalse(elsewhere.exists(), "settings, log and login items stay as they were")

    def test_options(self):
        session = self.session
        program = PROGRAMS / "tolvane-brevok"
        ca = session.folder / "empty.pem"
        ca.write_text("nothing")
        for words, named in ((["--headles"], "headles"), (["--service-url", "http://localhost"], "http://localhost"),
                             (["--service-ca", "/nowhere.pem"], "/nowhere.pem"), (["--service-ca", ca], str(ca)),
                             (["--reachability-host", "a b"], "a b"), (["extra"], "extra")):
            result = subprocess.run([program, *words], env=session.environment, capture_output=True, text=True)
            self.assert_refused(result, 2, named)
            self.assertEqual(len(result.stderr.strip().splitlines()), 1)
        version = subprocess.run([program, "--version"], env=session.environment, capture_output=True, text=True)
        self.assertEqual(version.stdout, "tolvane-brevok 1.0.0\n")
        self.assertFalse((session.folder / "config" / "tolvane").exists(), "nothing else is touched")
        self.assert_refused(session.ctl("instal", check=False), 2, "'instal'")
        self.assert_refused(session.ctl("status", check=False), 3, "cannot be reached")

    def test_targets_and_settings_from_outside(self):
        session = self.session
        self.start()
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
        for wrong, version, reason in (("own/Plug-Ins", "75", "absolute"), ("/", "75", "root of the file system"),
                                       (f"{path}/none", "75", "There is no folder"), (__file__, "75", "is not a folder"),
                                       (path, "9999999999999", "from 30 to 999")):
            before = session.ctl("targets").stdout
            self.assert_refused(session.ctl("targets", "add", wrong, "--type", "InDesign", "--version", version,
                                            check=False), 1, reason)
            self.assertEqual(session.ctl("targets").stdout, before)
        link = session.folder / "link"
        link.symlink_to(session.folder / "own")
        for spelling in (f"{path}/", f"{link}/Plug-Ins", f"{path}/../Plug-Ins"):
            session.ctl("targets", "enable", spelling)
            self.assertRegex(session.ctl("targets").stdout, r"InCopy CS5.5 +enabled")
            session.ctl("targets", "add", spelling, "--type", "InCopy", "--version", "75")
            session.ctl("targets", "disable", spelling)
            self.assertRegex(session.ctl("targets").stdout, r"InCopy CS5.5 +disabled")
        self.assertEqual([t["path"] for t in session.status()["targets"] if "own" in t["path"] or "link" in t["path"]],
                         [path])
        session.ctl("settings", "set", "startAtLogin", "no")
        autostart = session.folder / "config/autostart"
        self.assertFalse((autostart / "com.tolvane.brevok.desktop").exists())
        autostart.rmdir()
        autostart.write_text("a file where the folder belongs")
        self.assert_refused(session.ctl("settings", "set", "startAtLogin", "yes", check=False), 1, "login item")
        self.assertEqual(session.ctl("settings", "get", "startAtLogin").stdout, "no\n")
        autostart.unlink()
        session.ctl("settings", "set", "startAtLogin", "no")
        self.assert_refused(session.ctl("settings", "set", "autoUpdate", "perhaps", check=False), 1, "'perhaps'")
        session.stop_application()
        session.start_application()
        self.assertEqual(session.ctl("settings", "get", "startAtLogin").stdout, "no\n")
        self.assertRegex(session.ctl("targets").stdout, r"InCopy CS5.5 +disabled")
        session.ctl("quit")
        self.assertEqual(session.stop_application(), 0)

    def test_the_bus_starts_the_application(self):
        session = self.session
        shipped = (PROGRAMS.parent / "share/dbus-1/services/com.tolvane.brevok.service").read_text()
        self.assertIn(f'Exec="{PROGRAMS.resolve()}"/tolvane-brevok --background\n', shipped)
        variables = {"BREVOK_SERVICE_URL": session.service_url, "BREVOK_SERVICE_CA": session.service_ca,
                     "BREVOK_REACHABILITY_HOST": "localhost", "BREVOK_APPLICATIONS": session.applications}
        variables |= {name: session.environment[name] for name in session.environment if name.startswith("XDG_")}
        words = " ".join(f"{name}={value}" for name, value in variables.items())
        # The bus of this test looks where the data of the test's own scratch home is.
        services = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "dbus-1" / "services"
        services.mkdir(parents=True, exist_ok=True)
        file = services / "com.tolvane.brevok.service"
        self.addCleanup(file.unlink)
        file.write_text(shipped.replace("Exec=", f"Exec=/usr/bin/env {words} "))
        ask_bus("ReloadConfig")
        wait_for(lambda: "com.tolvane.brevok" in activatable_names(), "the bus knows the service")
        wait_for(lambda: [t["label"] for t in session.status()["targets"]] == ["Adobe InDesign CC 2019"],
                 "the application is found")
        session.ctl("quit")
        wait_for(lambda: "com.tolvane.brevok" not in owned_names(), "the application is gone")

    def test_a_running_host_is_left_alone(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        host = self.enterContext(session.running_host())
        self.start()
        session.ctl("install", "0xA")
        self.assertEqual(session.installed_version("Alpha"), "1.0")
        wait_for(lambda: "Adobe InDesign CC is running." in session.log(), "the user is told")
        self.assertIsNone(host.poll())
        session.ctl("remove", "0xA")
        self.assertEqual(session.log().count("Alert: Adobe InDesign CC is running."), 1, "once within a minute")


class Reports(unittest.TestCase):
    def setUp(self):
        self.session = self.enterContext(Session(PROGRAMS))
        self.logs = self.session.folder / "state" / "tolvane-brevok" / "Logs"
        self.logs.mkdir(parents=True)

    def arrived(self, path):
        lines = (self.session.service_root / "requests.jsonl").read_text().splitlines()
        return [request for request in map(json.loads, lines) if request["path"] == path]

    def items(self, body):
        return {item["Key"]: item["Value"] for item in body["Data"]}

    def test_report_arrives_without_secrets(self):
        session = self.session
        crashes = self.logs / "DiagnosticReports"
        crashes.mkdir()
        (crashes / "Adobe InDesign CC 2019_1.crash").write_text("Thread 0 crashed\n")
        session.publish("Alpha", "0xA", "1.0", 140)
        session.start_application()
        session.ctl("settings", "set", "logLevel", "1")
        session.ctl("check")
        session.ctl("install", "0xA")
        session.ctl("signin", ACCOUNT["email"], BREVOK_PASSWORD=ACCOUNT["password"])
        words = ["--email", "ada@example.com", "--note", "It broke\n\"twice\""]
        shown = json.loads(session.ctl("report", "--show", *words).stdout)
        self.assertEqual(self.arrived("/api/machine/report"), [], "showing sends nothing")
        self.assertEqual(json.loads(session.ctl("--json", "report", *words).stdout), {"ok": True, "failures": []})
        (request,) = self.arrived("/api/machine/report")
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
            for secret in (ACCOUNT["password"], "SessionId=" + first):
                self.assertNotIn(secret, text)
            self.assertNotRegex(text, f"{first}[0-9a-f]{{24}}{last}")

    def test_form_faults(self):
        session = self.session
        session.start_application()
        for email, note, text in (("", "x", "Missing email address!"), ("ada@home", "x", "Invalid email address!"),
                                  ("ada@example.com", "", "Missing problem description!")):
            result = session.ctl("report", "--email", email, "--note", note, check=False)
            self.assertEqual(result.returncode, 1)
            self.assertIn(text, result.stderr)
        for words in (["report"], ["report", "--email", "a@b.cd"], ["usage"], ["status", "--show"]):
            self.assertEqual(session.ctl(*words, check=False).returncode, 2, words)
        session.stop_service()
        result = session.ctl("report", "--email", "ada@example.com", "--note", "x", check=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn("Tolvane Brevok servers are unreachable.", result.stderr)

    def test_usage_is_shown(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        session.start_application()
        session.ctl("check")
        session.ctl("install", "0xA")
        usage = json.loads(session.ctl("usage", "--show").stdout)
        self.assertEqual(usage["Installed"], [{"InDesignVersion": "140", "Plugins": [
            {"Prefix": "0xA", "Version": "1.0", "Note": "Correct host version :-)"}]}])
        for target in session.status()["targets"]:
            session.ctl("targets", "remove", target["path"])
        self.assertEqual(session.ctl("usage", "--show", check=False).returncode, 1)
        self.assertEqual(self.arrived("/api/stats/plugins"), [])

    def test_a_long_log_makes_way(self):
        session = self.session
        log, older = self.logs / "orlec.log", self.logs / "orlec.log.1"
        log.write_bytes(b"x" * 5000001)
        session.start_application()
        session.stop_application()
        self.assertEqual(older.stat().st_size, 5000001)
        self.assertLess(log.stat().st_size, 100000)
        before = log.read_bytes()
        session.start_application()
        self.assertTrue(log.read_bytes().startswith(before), "a run appends")
        self.assertEqual(older.stat().st_size, 5000001)

    def test_a_pipe_in_the_logs_place_is_left_alone(self):
        session = self.session
        os.mkfifo(self.logs / "orlec.log")
        session.start_application()
        session.ctl("check")
        self.assertIn("orlec.log cannot be written", (session.folder / "early.log").read_text())
        self.assertEqual(session.stop_application(), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
