"""What is around the programs in a story, with a scratch home: disks, hosts, volumes, the service, the bus."""
import contextlib
import os
import pathlib
import plistlib
import shutil
import signal
import subprocess
import sys
import tempfile

import oracle as oracles
import service as services
from caller import Caller
from story import HOSTS

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "end-to-end"))
from brevok_session import Session, end_process, install, start_bus, wait_for  # noqa: E402
from roads import HelperRoad, OwnRoad, rigs  # noqa: E402,F401


class Broken(Exception):
    """Something that must hold does not."""


class PassedOver(Exception):
    """A step has no meaning where it stands."""


def identity(name, files):
    """Which bundle that is: (plug-in, version, host), or for a torn one a text."""
    try:
        told = plistlib.loads(files["Contents/Info.plist"])
        version = told["CFBundleShortVersionString"].split(" ")[0]
        host = oracles.host_code(told["TolvaneHostAppShortVersion"])
    except (KeyError, plistlib.InvalidFileException, ValueError):
        return "torn, without information: " + " ".join(sorted(files))
    if files != services.contents(name, version, host):
        return f"torn {version} for {host}: " + " ".join(sorted(files))
    return (name, version, host)


def information(what):
    """The keys that count, of a whole bundle."""
    if isinstance(what, str):
        return {}
    _, version, host = what
    return {"CFBundleShortVersionString": f"{version} (build 7)",
            "TolvaneHostAppShortVersion": f"{host // 10}.{host % 10}"}


class ScratchSession(Session):
    """With a service that can be told to go wrong, and the library that plays the world."""
    seed = library = None  # set by the stage

    def __enter__(self):
        self.start_service()
        world = self.folder / "world"
        world.mkdir()
        world.chmod(0o777)
        self.preloaded = shutil.copy(self.library, self.folder / "world.so")
        return self

    def start_service(self, port=0):
        super().start_service(port)  # makes the certificates
        end_process(self.service, signal.SIGTERM)
        self.service = services.Service(self.folder / "tls", self.seed)
        self.service_url = self.service.address

    def stop_service(self):
        self.service.close()

    def application_command(self, *more):
        return ["env", f"LD_PRELOAD={self.preloaded}", "ASAN_OPTIONS=verify_asan_link_order=0",
                f"CHAOS_WORLD={self.folder}/world", *super().application_command(*more)]


class World(contextlib.ExitStack):
    """A step of a story that is the world's is played by the method do_WORD."""

    def __init__(self, programs, library, story):
        super().__init__()
        self.addCleanup, self.enterContext = self.callback, self.enter_context  # as a test has them
        session = type("StorySession", (ScratchSession,), {"seed": story["seed"], "library": library})
        programs = pathlib.Path(programs).resolve()
        if story["road"] == "own":
            programs = install(programs, self.enter_context(tempfile.TemporaryDirectory()))
        self.road = (HelperRoad if story["road"] == "helper" else OwnRoad)(self, programs, session)
        self.session, self.service = self.road.session, self.road.session.service
        self.folder = self.session.folder
        self.world = self.folder / "world"
        self.disks = {"targets": self.session.applications, "data": self.folder / "data",
                      "settings": self.folder / "config", "temporary": self.road.temporary}
        self.volumes = self.folder / "volumes"
        self.volumes.mkdir()
        self.mounted, self.running = set(), {}
        self.full = False
        self.expected = {}  # by path of a bundle: what may stand there
        self.policy = ((), ())  # prefixes that are required, and that are forbidden
        if story["road"] == "own":
            self.socket = self.folder / "bus"
            self.road.bus, _ = start_bus(self, f"unix:path={self.socket}")
        else:
            self.socket = self.folder / "runtime" / "bus"
            self.road.rig.serve_by({"LD_PRELOAD": self.session.preloaded, "CHAOS_WORLD": self.world})
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.socket}"
        self.caller = Caller(f"unix:path={self.socket}")
        self.caller.start()
        self.callback(self.caller.close)
        self.callback(self.end_worldly)

    def end_worldly(self):
        for host in list(self.running):
            self.do_rest(host)
        for host in self.mounted:
            subprocess.run(["umount", "--lazy", self.folder_of(host)], check=False)

    @staticmethod
    def pass_over_if(has_no_meaning):
        if has_no_meaning:
            raise PassedOver

    def is_running(self):
        return self.session.application is not None

    # what lies on the disk

    def folder_of(self, host):
        return self.session.applications / host

    def target_of(self, host):
        return str(self.folder_of(host) / "Plug-Ins") + "/"

    def hosts_on_disk(self):
        found = []
        for bundle in sorted(self.session.applications.glob("*/*.app")):
            with contextlib.suppress(OSError):
                told = plistlib.loads((bundle / "Contents/Info.plist").read_bytes())
                found.append((str(bundle.parent / "Plug-Ins") + "/", bundle.stem, told["CFBundleName"],
                              int(told["CFBundleVersion"])))
        return found

    def bundles(self):
        """By path what stands there: (plug-in, version, host), or the files of a torn one."""
        found = {}
        for path in self.session.applications.glob("*/Plug-Ins/Tolvane/*.InDesignPlugin"):
            if path.name.startswith("."):
                continue  # it bears no bundle's name yet, or no more
            files = {str(file.relative_to(path)): file.read_bytes() for file in path.rglob("*") if file.is_file()}
            found[str(path)] = identity(path.stem, files)
        return found

    def disk(self):
        """By path the information of every bundle, as the oracle wants it."""
        return {path: information(what) for path, what in self.bundles().items()}

    def changed_by_the_world(self, *folders):
        """What others do to the bundles (of some folders) is as it should be, and what a program that was killed has left
        there may come back besides."""
        found = self.bundles()
        for path in {*found, *self.expected}:
            folder = next((one for one in folders if path.startswith(f"{one}/")), None)
            if folder or not folders:
                left = self.expected.get(path, set()) if folder and self.is_in_disorder(folder) else set()
                self.expected[path] = left | {found.get(path)}

    @staticmethod
    def is_in_disorder(folder):
        """Whether a program that was killed has left something there, which is looked for where it was left."""
        return any(folder.rglob(".tolvane-*"))

    # the world

    def do_publish(self, package, prefix, name, version, host, hashed):
        self.service.publish(package, prefix, name, version, host, hashed)

    def do_withdraw(self, prefix, name, host):
        self.service.withdraw(prefix, name, host)

    def do_host(self, name, version):
        contents = self.folder_of(name) / f"{name}.app" / "Contents"
        contents.mkdir(parents=True, exist_ok=True)
        (contents.parent.parent / "Plug-Ins").mkdir(exist_ok=True)
        new = contents / "Info.plist.new"
        new.write_bytes(plistlib.dumps({
            "CFBundlePackageType": "APPL", "CFBundleSignature": "InDn" if HOSTS[name][0] == "InDesign" else "InCp",
            "CFBundleVersion": str(version), "CFBundleName": HOSTS[name][0]}))
        new.rename(contents / "Info.plist")
        self.road.belongs_to_root(self.session.applications)

    def do_vanish(self, name):
        self.pass_over_if(name in self.mounted)
        self.do_rest(name)
        shutil.rmtree(self.folder_of(name), ignore_errors=True)
        self.changed_by_the_world(self.folder_of(name))

    def do_move(self, name):
        """To another name, or back."""
        there, elsewhere = self.folder_of(name), self.folder_of(name + " moved")
        self.pass_over_if(name in self.mounted or there.exists() == elsewhere.exists() or self.is_in_disorder(there))
        self.do_rest(name)
        there.rename(elsewhere) if there.exists() else elsewhere.rename(there)
        self.changed_by_the_world(there, elsewhere)

    def do_mount(self, name):
        """The host lies on a volume that comes now; what lay in its place is out of sight."""
        self.pass_over_if("BREVOK_TEST_NAMESPACE" not in os.environ or name in self.mounted or name in self.running)
        volume = self.volumes / name
        (volume / f"{name}.app").mkdir(parents=True, exist_ok=True)
        self.folder_of(name).mkdir(exist_ok=True)
        subprocess.run(["mount", "--bind", volume, self.folder_of(name)], check=True)
        self.mounted.add(name)
        self.do_host(name, HOSTS[name][1][0])
        self.changed_by_the_world(self.folder_of(name))

    def do_unmount(self, name):
        self.pass_over_if(name not in self.mounted or self.is_in_disorder(self.folder_of(name)))
        self.do_rest(name)
        subprocess.run(["umount", "--lazy", self.folder_of(name)], check=True)
        self.mounted.discard(name)
        self.changed_by_the_world(self.folder_of(name))

    def do_run(self, name):
        contents = self.folder_of(name) / f"{name}.app" / "Contents"
        self.pass_over_if(name in self.running or not contents.exists())
        (contents / "MacOS").mkdir(exist_ok=True)
        shutil.copy(shutil.which("sleep"), contents / "MacOS" / name)
        self.running[name] = subprocess.Popen([contents / "MacOS" / name, "3600"])

    def do_rest(self, name):
        end_process(self.running.pop(name, None), signal.SIGKILL)

    def do_place(self, host, name, version, build_host):
        """Somebody else's hand puts a bundle there."""
        self.pass_over_if(not (self.folder_of(host) / "Plug-Ins").exists())
        path = pathlib.Path(oracles.bundle_in(self.target_of(host), name))
        shutil.rmtree(path, ignore_errors=True)
        for file, content in services.contents(name, version, build_host).items():
            (path / file).parent.mkdir(parents=True, exist_ok=True)
            (path / file).write_bytes(content)
        self.road.belongs_to_root(self.session.applications)
        self.changed_by_the_world(self.folder_of(host))

    def do_expire(self):
        self.service.expire()

    def do_service(self, place, fault):
        self.service.spoil(place, fault)

    def do_well(self):
        self.service.mend()

    def do_full(self, disk):
        with open(self.world / "full", "a", encoding="utf-8") as out:
            out.write(f"{self.disks[disk]}\n")
        self.full = True

    def do_room(self):
        (self.world / "full").unlink(missing_ok=True)
        self.full = False

    def do_clock(self, seconds):
        new = self.world / "clock.new"
        new.write_text(str(seconds))
        new.rename(self.world / "clock")

    def do_policy(self, required, forbidden):
        file = self.session.programs.parent / "etc" / "tolvane-brevok" / "policy.conf"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(f"[Packages]\nRequired={':'.join(required)}\nForbidden={':'.join(forbidden)}\n")
        self.policy = (required, forbidden)

    def do_bus(self):
        self.caller.asked = None
        end_process(self.road.bus, signal.SIGKILL)
        self.socket.unlink(missing_ok=True)
        self.road.bus, _ = start_bus(self, f"unix:path={self.socket}", **self.session.user)
        if self.is_running():
            wait_for(lambda: self.session.ctl("status", check=False).returncode == 0, "the program is on the new bus")
            self.caller.asked, self.caller.bus = self.session.application.pid, self.road.bus.pid

    def workspace(self):
        """What the file of that name beside each target holds."""
        return next(self.session.programs.parent.glob("share/**/Tolvane.xml")).read_bytes()
