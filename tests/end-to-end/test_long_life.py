"""Days of the real application in seconds: its clocks are moved on by an hour at a time, and what it holds stays as
small as it was. DAYS=9 ./dev test -R long_life lives through a week after the two days that it is compared with.
"""
import os
import pathlib
import re
import shutil
import sys

from brevok_session import LISTS, SessionTest, ask_bus, run_tests, wait_for, with_children

LIBRARY = sys.argv.pop(2)
DAYS = max(3, int(os.environ.get("DAYS", "3")))
HOUR = 3600
FAILED = ("Plugins update failed with error", "Packages update failed with error")
LONGEST_LOG_OF_A_DAY = 64000
MEMORY_NOISE = 300  # KB
# What was given back is seen to be.
PLAIN_HEAP = {"MALLOC_ARENA_MAX": "1", "MALLOC_TRIM_THRESHOLD_": "65536", "MALLOC_MMAP_THRESHOLD_": "65536"}


class Clocks:
    """The clocks of the programs that are started with `environment`: they are set by hand, and go at `rate` times the
    speed of real ones meanwhile."""

    def __init__(self, folder, rate, stop_asleep=False):
        self.file = folder / "clocks"
        self.rate, self.ahead = rate, 0
        self.move_on(0)
        # The loader takes a blank in a path for the end of a name.
        self.environment = {"LD_PRELOAD": shutil.copy(LIBRARY, folder), "FAKETIME_TIMESTAMP_FILE": str(self.file),
                            "FAKETIME_NO_CACHE": "1"}
        if stop_asleep:  # as the one does by which programs wait
            self.environment["FAKETIME_DONT_FAKE_MONOTONIC"] = "1"

    def move_on(self, seconds):
        self.ahead += seconds
        new = self.file.with_suffix(".new")
        new.write_text(f"{self.ahead:+d} x{self.rate}\n")
        new.rename(self.file)


class LongLife(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.publish("Alpha", "0xA", "1.0", 140)
        self.session.publish("Beta", "0xB", "1.0", 140)

    def start(self, **clocks):
        session, usual = self.session, self.session.environment
        self.clocks = Clocks(session.folder, **clocks)
        (session.folder / "tmp").mkdir()
        session.environment = {**usual, **self.clocks.environment, "TMPDIR": str(session.folder / "tmp"),
                               **PLAIN_HEAP}
        session.start_application(wait=False)
        session.environment = usual
        wait_for(lambda: session.ctl("status", check=False).returncode == 0, "the application answers")
        session.ctl("check")

    def requests(self, *paths):
        return len(self.session.requests(*paths))

    def last_check(self):
        return self.session.status()["lastCheck"]

    def pass_hour(self):
        before = self.last_check()
        self.clocks.move_on(HOUR + 2)
        # Asked, it looks at its clocks.
        wait_for(lambda: self.last_check() != before, "both lists were asked for, and came")

    def failures(self):
        return [self.session.log().count(line) for line in FAILED]

    def outage(self, minutes=20):
        """A service that cannot be reached is asked again every minute."""
        session = self.session
        port = session.port()
        session.stop_service()
        self.clocks.move_on(HOUR)
        for _ in range(minutes):
            before = self.failures()
            self.clocks.move_on(62)
            session.ctl("status")
            wait_for(lambda: all(now > then for now, then in zip(self.failures(), before)), "both lists were asked for")
        session.start_service(port)
        session.ctl("check")

    def rotate_log(self):
        log = self.session.log_file()
        self.assertLess(log.stat().st_size, LONGEST_LOG_OF_A_DAY)
        log.rename(log.with_name("rotated"))
        log.with_name("rotated").unlink()

    def one_day(self, day):
        """The lists every hour, and once what a user and the system do in a day."""
        session = self.session
        for hour in range(24):
            self.pass_hour()
            if hour == 5:
                self.outage()
            elif hour == 9:
                session.sign_in()
                session.publish("Alpha", "0xA", f"1.{day}", 140)
                session.ctl("check")
                session.ctl("update" if day else "install", "0xA")
                self.assertEqual(session.installed_version("Alpha"), f"1.{day}")
                session.ctl("open-panel", check=not session.headless)
                session.ctl("report", "--show")
            elif hour == 15:
                session.ctl("install", "0xB")
                session.ctl("remove", "0xB")
                for level in "1", "0":
                    session.ctl("settings", "set", "logLevel", level)
            elif hour == 20:
                session.ctl("signout")
                session.ctl("check")
                self.rotate_log()

    def held(self):
        """What the application holds at rest."""
        session, process = self.session, self.session.application.pid
        wait_for(lambda: len(with_children(process)) == 1, "what sent the requests has ended")
        return {
            "open files": sorted(re.sub(r":\[\d+\]| \(deleted\)$", "", os.readlink(file))
                                 for file in pathlib.Path(f"/proc/{process}/fd").iterdir()),
            "threads": len(list(pathlib.Path(f"/proc/{process}/task").iterdir())),
            "bus matches": ask_bus("Debug.Stats.GetAllMatchRules").count("type='signal'"),
            "state in bytes": session.state_file().stat().st_size,
            "files": sorted(str(file.relative_to(session.folder))
                            for folder in ("tmp", "data", "config", "home", "state")
                            for file in (session.folder / folder).rglob("*")),
        }

    def live(self):
        self.start(rate=20)  # so that what an idle program puts down is put down soon
        for day in range(2):
            self.one_day(day)
        held, memory = self.held(), self.session.memory("RssAnon")
        for day in range(2, DAYS):
            before = self.requests(*LISTS)
            self.one_day(day)
            self.assertIn(self.requests(*LISTS) - before, range(2 * 24, 2 * 24 + 13))
        self.assertEqual(self.held(), held)
        wait_for(lambda: self.session.memory("RssAnon") < memory + MEMORY_NOISE, "its memory is what it was")
        self.assertIn(self.requests("/api/stats/plugins"), (DAYS, DAYS + 1))

    def test_without_windows(self):
        self.live()

    def test_with_windows(self):
        self.session.headless = []
        self.live()

    def test_sleep_and_a_clock_that_is_set_back(self):
        session = self.session
        self.start(rate=1, stop_asleep=True)
        session.ctl("install", "0xA")
        for turn, hours in enumerate((8, 3 * 24, 20 * 24, -10 * 24)):
            asked, checked = self.requests(*LISTS), self.last_check()
            self.clocks.move_on(hours * HOUR)
            self.assertEqual(session.package_status("0xA"), "Up To Date")
            session.publish("Alpha", "0xA", f"2.{turn}", 140)
            session.ctl("check")
            self.assertEqual(self.last_check() > checked, hours > 0)
            session.ctl("update", "--all")
            self.assertEqual(session.installed_version("Alpha"), f"2.{turn}")
            self.assertLessEqual(self.requests(*LISTS) - asked, 4)
        self.assertNotIn("Unable to contact", session.log())


if __name__ == "__main__":
    run_tests()
