"""Which of several copies stays, with the real programs and buses that come and go."""
import pathlib
import re
import shutil
import signal
import subprocess

from brevok_session import EMAIL, PASSWORD, PATIENCE, SessionTest, end_process, run_tests, start_bus, wait_for

ANOTHER = "Another copy of Tolvane Brevok application is already running."


class Copies(SessionTest):
    def setUp(self):
        super().setUp()
        self.no_bus = {**self.session.environment,
                       "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.session.folder}/no-bus"}
        self.no_display = {name: value for name, value in self.session.environment.items()
                           if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}

    def start(self, environment=None, headless=True):
        self.session.headless = ["--headless"] if headless else []
        process = subprocess.Popen(self.session.application_command(), env=environment or self.session.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.stderr.close)
        self.addCleanup(end_process, process, signal.SIGKILL)
        return process

    def has_started(self, process):
        """The standard error of a copy that stays is the log."""
        log = self.session.log_file()
        return log.exists() and pathlib.Path(f"/proc/{process.pid}/fd/2").resolve() == log.resolve()

    def wait_until_started(self, process):
        wait_for(lambda: self.has_started(process), "the copy writes its log")

    def assert_gives_way(self, process):
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertIn(ANOTHER, process.stderr.read())

    def answers(self, environment=None):
        return self.session.ctl("status", check=False, **(environment or {})).returncode == 0

    def test_two_started_together_without_a_bus(self):
        for _ in range(3):
            # With windows: a copy that gives way stands there with its alert until somebody reads it.
            copies = [self.start(self.no_bus, headless=False) for _ in range(2)]
            wait_for(lambda: any(map(self.has_started, copies)), "one of them stays")
            gives_way = [c for c in copies if not self.has_started(c)]
            self.assertEqual(len(gives_way), 1)
            wait_for(lambda: ANOTHER in gives_way[0].stderr.readline(), "the other one says why it does not")
            for copy in copies:
                self.assertEqual(end_process(copy, signal.SIGTERM), 0)

    def test_one_with_a_bus_and_one_without(self):
        with_bus = self.session.environment
        for first, second in ((with_bus, self.no_bus), (self.no_bus, with_bus), (self.no_bus, self.no_bus)):
            stays = self.start(first)
            self.wait_until_started(stays)
            self.assert_gives_way(self.start(second))
            self.assertEqual(end_process(stays, signal.SIGKILL), -signal.SIGKILL)
        last = self.start(with_bus)  # what was killed leaves nothing that is in the way
        wait_for(self.answers, "the next one starts")
        self.assertEqual(end_process(last, signal.SIGTERM), 0)

    def test_a_second_copy_touches_nothing(self):
        session = self.session
        session.start_application()
        elsewhere = session.folder / "elsewhere"
        self.assert_gives_way(self.start({**session.environment, **{f"XDG_{kind}_HOME": str(elsewhere)
                                                                    for kind in ("CONFIG", "DATA", "STATE")}}))
        wait_for(lambda: "The panel was asked for" in session.log(), "the first copy opens its panel")
        self.assertNotIn("Another copy", session.log())
        self.assertFalse(elsewhere.exists())
        session.ctl("settings", "set", "logLevel", "0")  # answered once all that the start wrote is stored
        settings = session.settings_file()
        settings.write_bytes(b"\0no settings at all")
        settings.chmod(0o644)
        before = {path: path.stat().st_mtime_ns for path in settings.parent.iterdir()}
        self.assert_gives_way(self.start())
        self.assertEqual({path: path.stat().st_mtime_ns for path in settings.parent.iterdir()}, before)
        self.assertEqual(settings.stat().st_mode & 0o777, 0o644)
        self.assertEqual(settings.read_bytes(), b"\0no settings at all")

    def test_a_copy_without_windows_hands_over(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        headless = self.start()
        wait_for(self.answers, "the copy without windows answers")
        session.ctl("check")
        with session.install_under_way("0xA") as install:
            desktop = self.start(headless=False)
            wait_for(lambda: "A copy with windows starts" in session.log(), "it is asked to leave")
            self.assertIsNone(headless.poll(), "its work comes first")
            session.service.send_signal(signal.SIGCONT)
            self.assertEqual(install.wait(PATIENCE), 0, install.stderr.read())
        self.assertEqual(headless.wait(PATIENCE), 0)
        wait_for(self.answers, "the copy with windows goes on")
        self.assertIsNone(desktop.poll())
        self.assertEqual(session.package_status("0xA"), "Up To Date")
        self.assert_gives_way(self.start())
        self.assertEqual(end_process(desktop, signal.SIGTERM), 0)

    def test_one_with_windows_and_one_without_started_together(self):
        with_bus = self.session.environment
        for first, second in ((with_bus, with_bus), (self.no_bus, self.no_bus), (self.no_bus, with_bus)):
            for _ in range(3):
                headless = self.start(first)
                desktop = self.start(second, headless=False)
                self.assertEqual(headless.wait(PATIENCE), 0)
                self.wait_until_started(desktop)
                self.assertEqual(end_process(desktop, signal.SIGTERM), 0)

    def test_a_copy_that_waits_can_be_ended(self):
        headless = self.start()
        wait_for(self.answers, "the copy without windows answers")
        headless.send_signal(signal.SIGSTOP)
        desktop = self.start(headless=False)
        self.assertIn("goes on when it has ended", desktop.stderr.readline())
        self.assertEqual(end_process(desktop, signal.SIGTERM), 0)
        headless.send_signal(signal.SIGCONT)
        self.assertEqual(headless.wait(PATIENCE), 0)

    def test_a_bus_that_is_started_again(self):
        for address in (f"unix:path={self.session.folder}/bus", f"unix:abstract={self.session.folder}/bus"):
            with self.subTest(address):
                daemon, full = start_bus(self, address)
                environment = {**self.session.environment, "DBUS_SESSION_BUS_ADDRESS": full}
                bus = {"DBUS_SESSION_BUS_ADDRESS": address}
                copy = self.start(environment)
                wait_for(lambda: self.answers(bus), "the copy answers")
                for _ in range(2):
                    end_process(daemon, signal.SIGTERM)
                    (self.session.folder / "bus").unlink(missing_ok=True)
                    wait_for(lambda: "The session bus is gone" in self.session.log(), "the loss is noticed")
                    daemon, _ = start_bus(self, address)
                    wait_for(lambda: self.answers(bus), "the copy answers on the new bus")
                seen = self.session.log().count("The panel was asked for")
                self.assert_gives_way(self.start({**environment, **bus}))
                wait_for(lambda: self.session.log().count("The panel was asked for") > seen,
                         "what other copies post is heard")
                self.assertEqual(end_process(copy, signal.SIGTERM), 0)

    def test_a_bus_that_comes_late(self):
        copy = self.start(self.no_bus)
        self.wait_until_started(copy)
        address = self.no_bus["DBUS_SESSION_BUS_ADDRESS"]
        start_bus(self, address)
        wait_for(lambda: self.answers({"DBUS_SESSION_BUS_ADDRESS": address}), "the copy answers on it")
        self.assertEqual(end_process(copy, signal.SIGTERM), 0)

    def call_on_a_bus_of_its_own(self, *words):
        """As cron does it: the bus starts the program, and ends with the call."""
        session = self.session
        services = session.folder / "data" / "dbus-1" / "services"
        services.mkdir(parents=True, exist_ok=True)
        shipped = session.programs.parent / "share" / "dbus-1" / "services" / "com.tolvane.brevok.service"
        shutil.copy(shipped, services)
        environment = {**self.no_display, **session.variables(), "BREVOK_PASSWORD": PASSWORD}
        return subprocess.run(["dbus-run-session", "--", session.programs / "brevokctl", *words], env=environment,
                              capture_output=True, text=True, timeout=PATIENCE)

    def test_one_bus_after_the_other(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        for words in (["signin", EMAIL], ["check"], ["install", "0xA"], ["quit"], ["status"]):
            result = self.call_on_a_bus_of_its_own(*words)
            self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(session.installed_version("Alpha"), "1.0")
        last = re.findall(r"Tolvane Brevok\[(\d+):", session.log())[-1]
        wait_for(lambda: not pathlib.Path(f"/proc/{last}").exists(), "the copy ends that nobody can call any more")

    def test_a_bus_hears_of_the_copy_that_stays_elsewhere(self):
        stays = self.start(self.no_bus, headless=False)
        self.wait_until_started(stays)
        result = self.call_on_a_bus_of_its_own("status")
        self.assertEqual(result.returncode, 3)
        self.assertIn("exited with status 1", result.stderr)
        self.assertEqual(end_process(stays, signal.SIGTERM), 0)

    def test_a_display_that_is_not_there(self):
        for display in ({"DISPLAY": ":54321"}, {"WAYLAND_DISPLAY": "wayland-none"},
                        {"WAYLAND_DISPLAY": "wayland-none", "DISPLAY": ":54321", "QT_QPA_PLATFORM": "wayland;xcb"}):
            for more in ([], ["--background"]):
                with self.subTest(display, more=more):
                    self.session.headless = more
                    copy = subprocess.Popen(self.session.application_command(), env={**self.no_display, **display},
                                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
                    self.addCleanup(end_process, copy, signal.SIGKILL)
                    wait_for(self.answers, "it runs without windows")
                    self.assertEqual(end_process(copy, signal.SIGTERM), 0)
                    said = copy.stderr.read()
                    copy.stderr.close()
                    self.assertEqual(len(said.splitlines()), 1, said)
                    self.assertIn("running without windows", said)


if __name__ == "__main__":
    run_tests()
