"""The programs are killed at random moments of installs and removals and started again: every bundle stands whole, as
the old one or the new one, and nothing is left over.

    test_kills.py PROGRAMS own|helper

KILLS in the environment says how many of each, KILLS_SEED repeats what an earlier run did.
"""
import contextlib
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import time
import unittest
import zipfile

from brevok_session import PATIENCE, information, wait_for
from roads import HelperRoad, OwnRoad, rigs

KILLS = int(os.environ.get("KILLS", "4"))
SEED = int(os.environ.get("KILLS_SEED", random.SystemRandom().getrandbits(32)))
PLUGINS = ("Alpha", "Beta")
HOSTS = ("Adobe InDesign CC 2019", "Adobe InDesign CC 2019 again")


def contents(name, version):
    """The files of a bundle by name."""
    block = (name + version).encode() * 10000
    parts = {f"Contents/Resources/{number}": block + b"%d" % number for number in range(40)}
    return {"Contents/Info.plist": information(name, version, "14.0"), **parts}


def tree(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Kills(unittest.TestCase):
    def setUp(self):
        print(f"KILLS_SEED={SEED}")
        self.random = random.Random(SEED)
        self.road = (HelperRoad if ROAD == "helper" else OwnRoad)(self, PROGRAMS)
        self.session = self.road.session
        session = self.session
        for host in HOSTS:
            if not (session.applications / host).exists():
                session.add_host(host, 14012)
        self.archives = {}
        for name in PLUGINS:
            path = session.service_root / "archives" / f"{name}.zip"
            path.parent.mkdir(exist_ok=True)
            with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=1) as archive:
                for file, content in contents(name, "2.0").items():
                    archive.writestr(f"{name}.InDesignPlugin/{file}", content)
            self.archives[f"{name}.zip"] = path.read_bytes()
            session.publish(name, "0xA", "2.0", 140, archive=path, package="Pair")
        session.start_and_check()
        self.workspace = None

    def bundles(self):
        return {(name, host): self.session.bundle(name, host) for name in PLUGINS for host in HOSTS}

    def prepare(self, states):
        """Puts the bundles in place, while the application does not run."""
        session = self.session
        for host in HOSTS:
            folder = session.applications / host
            shutil.rmtree(folder / "Plug-Ins" / "Tolvane", ignore_errors=True)
            shutil.rmtree(folder / "Presets", ignore_errors=True)
        for place, state in states.items():
            for file, content in contents(place[0], {"old": "1.0", "new": "2.0"}[state]).items() if state else ():
                path = session.bundle(*place) / file
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content)
        self.road.belongs_to_root(session.applications)
        if self.random.random() < 0.5:
            for archive in (session.folder / "data").rglob("*.zip"):
                archive.unlink()

    def state(self, place):
        """Which bundle stands there; a torn one is none of those."""
        path = self.session.bundle(*place)
        if not os.path.lexists(path):
            return None
        found = tree(path)
        return next((state for state, version in (("old", "1.0"), ("new", "2.0"))
                     if found == contents(place[0], version)), "torn: " + ", ".join(sorted(found)))

    def leftovers(self):
        """What has no business where it is."""
        session, found = self.session, self.road.leftovers()
        for host in HOSTS:
            folder = session.applications / host
            found += [path for path in (folder / "Plug-Ins").glob("*") if path.name != "Tolvane"]
            found += [path for path in (folder / "Plug-Ins" / "Tolvane").glob("*")
                      if path not in self.bundles().values()]
            for path in (folder / "Presets").rglob("*"):
                whole = path.is_dir() if path.name == "InDesign Workspaces" else (
                    path.name == "Tolvane.xml" and path.read_bytes() == self.workspace)
                found += [] if whole else [path]
        data = session.folder / "data" / "Tolvane Brevok"
        found += [path for path in data.rglob("*") if path.is_file() and not path.name.startswith("state.sqlite")
                  and self.archives.get(path.name) != path.read_bytes()]
        return found

    def end(self, victim):
        if victim != "application" and self.road.helper_process():
            with contextlib.suppress(ProcessLookupError):
                os.kill(self.road.helper_process(), signal.SIGKILL)
        if victim != "helper":
            self.session.stop_application(signal.SIGKILL)

    def attempt(self, word, states, seconds):
        """One kill, `seconds` after the command. @return of whom, the bundles and what is left over after the next
        start, and how brevokctl ended"""
        session = self.session
        victim = self.random.choice(self.road.victims)
        self.prepare(states)
        session.start_application()
        command = subprocess.Popen([session.programs / "brevokctl", word, "0xA"], env=session.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   **session.user)
        time.sleep(seconds)  # the moment of the kill; nothing is waited for
        self.end(victim)
        ended = command.wait(PATIENCE)
        session.stop_application()
        self.road.start_helper()
        session.start_application()
        with contextlib.suppress(AssertionError):
            wait_for(lambda: not self.leftovers(), "nothing is left over")
        left = self.leftovers()
        session.ctl("discard")
        session.stop_application()
        return victim, {place: self.state(place) for place in states}, left, ended

    def run_whole(self, word, states, after):
        """Seconds that it takes when nobody is killed."""
        self.prepare(states)
        self.session.start_application()
        begin = time.monotonic()
        self.session.ctl(word, "0xA")
        taken = time.monotonic() - begin
        self.session.stop_application()
        self.road.start_helper()
        self.assertEqual({place: self.state(place) for place in states}, dict.fromkeys(states, after))
        return taken

    def kill_often(self, word, before, after):
        session = self.session
        session.stop_application()
        everywhere = dict.fromkeys(self.bundles(), "old")
        self.run_whole("install", everywhere, "new")
        self.workspace = next(session.applications.rglob("Tolvane.xml")).read_bytes()
        taken = self.run_whole(word, everywhere, after)
        amid = 0
        for number in range(KILLS):
            states = {place: self.random.choice(before) for place in everywhere}
            victim, found, left, ended = self.attempt(word, states, self.random.uniform(0, taken))
            told = f"KILLS_SEED={SEED}, kill {number} of {victim}: {states} became {found}"
            self.assertEqual(left, [], told)
            for place, state in found.items():
                self.assertIn(state, (states[place], after), told)
            amid += 1 if len(set(found.values())) > 1 or ended != 0 else 0
        print(f"{KILLS} kills while {word} took {taken:.2f} s, {amid} amid the work")

    def test_installs(self):
        self.kill_often("install", ("old", None), "new")

    def test_removals(self):
        self.kill_often("remove", ("old", "new"), None)


if __name__ == "__main__":
    if sys.argv[2] == "helper":
        rigs.enter()
    ROAD = sys.argv.pop(2)
    PROGRAMS = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
