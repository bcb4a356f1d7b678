"""The real programs in a scratch home: service, sample host applications, application, brevokctl.

Needs a session bus of its own (dbus-run-session). Everything started here is ended by its process id.
"""
import contextlib
import json
import os
import pathlib
import plistlib
import queue
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import unittest
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "demo"))
from virtual_desktop import wait_for  # noqa: E402

EMAIL, PASSWORD = "ada@example.com", "analytical-engine"  # an account that the service knows
LISTS = ("/api/plugin/list", "/api/product/list")
PATIENCE = 60  # seconds until a condition that should come true counts as missed


def information(name, version, host):
    """The information dictionary of an installed plug-in."""
    return plistlib.dumps({"CFBundleExecutable": name, "CFBundleShortVersionString": f"{version} (build 7)",
                           "CFBundleShortVersionStringTemplate": version, "TolvaneHostAppShortVersion": host})


class Session:
    """`folder` is the scratch folder if there is one already; `user` whose the application is, as subprocess has it."""

    def __init__(self, programs, folder=None, **user):
        self.programs = pathlib.Path(programs).resolve()
        self.folder = folder or pathlib.Path(tempfile.mkdtemp(prefix="brevok-session-"))
        self.user = user
        self.environment = dict(os.environ)
        for variable, name in (("XDG_CONFIG_HOME", "config"), ("XDG_DATA_HOME", "data"), ("XDG_STATE_HOME", "state"),
                               ("HOME", "home")):
            (self.folder / name).mkdir()
            self.environment[variable] = str(self.folder / name)
        self.environment.pop("DISPLAY", None)
        self.applications = self.folder / "Applications"
        self.applications.mkdir()
        self.service_root = self.folder / "service"
        self.service = self.application = None
        self.headless = ["--headless"]
        self.service_log = open(self.folder / "service.log", "ab")
        self.early_log = open(self.folder / "early.log", "ab")
        self.plugins, self.products = [], []

    def __enter__(self):
        self.start_service()
        self.add_host("Adobe InDesign CC 2019", 14012)
        return self

    def __exit__(self, *_):
        self.stop_application()
        self.stop_service()
        self.service_log.close()
        self.early_log.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    # the service

    def start_service(self, port=0):
        self.service = subprocess.Popen(
            [self.programs / "brevok-demo-service", "--root", self.service_root, "--tls", self.folder / "tls", "--port",
             str(port)], stdout=subprocess.PIPE, stderr=self.service_log, text=True)
        first = json.loads(self.service.stdout.readline())
        self.service_url, self.service_ca = first["url"], first["ca"]

    def stop_service(self):
        end_process(self.service, signal.SIGTERM)
        self.service = None

    def port(self):
        return int(self.service_url.rsplit(":", 1)[1].strip("/"))

    def requests(self, *paths):
        """What has been asked of the service so far, the oldest first."""
        lines = (self.service_root / "requests.jsonl").read_text().splitlines()
        return [request for request in map(json.loads, lines) if request["path"] in paths]

    def publish(self, name, prefix, version, host_version, archive=None, package=None, **more):
        """Lists one build (and its package); without an archive one is made that holds the bundle."""
        if archive is None:
            archive = self.service_root / "archives" / f"{name}-{host_version}-{version}.zip"
            archive.parent.mkdir(exist_ok=True)
            with zipfile.ZipFile(archive, "w") as out:
                host = f"{host_version // 10}.{host_version % 10}"
                out.writestr(f"{name}.InDesignPlugin/Contents/Info.plist", information(name, version, host))
        self.plugins.append({"Name": name, "Prefix": prefix, "Version": version, "HostVersion": host_version,
                             "Size": archive.stat().st_size, "Link": f"/archives/{archive.name}",
                             "Published": "2026-01-01", "Platform": "Mac", **more})
        package = package or name
        self.products = [product for product in self.products if product["Name"] != package]
        self.products.append({"Name": package, "Prefix": prefix, "Version": version, "Published": "2026-01-01",
                              "Platform": "Mac"})
        self.write_lists()
        return archive

    def write_lists(self):
        for name, content in (("plugins.json", self.plugins), ("products.json", self.products)):
            temporary = self.service_root / (name + ".new")
            temporary.write_text(json.dumps(content))
            temporary.rename(self.service_root / name)

    # host applications

    def add_host(self, name, version, signature="InDn", plug_ins=True):
        folder = self.applications / name
        contents = folder / f"{name}.app" / "Contents"
        contents.mkdir(parents=True)
        if plug_ins:
            (folder / "Plug-Ins").mkdir()
        kind = "Adobe InDesign" if signature == "InDn" else "Adobe InCopy"
        (contents / "Info.plist").write_bytes(plistlib.dumps(
            {"CFBundlePackageType": "APPL", "CFBundleSignature": signature, "CFBundleVersion": str(version),
             "CFBundleName": kind}))
        return folder

    @contextlib.contextmanager
    def running_host(self, name="Adobe InDesign CC 2019"):
        """A process whose executable lies in the host's bundle, which makes it that application."""
        contents = self.applications / name / f"{name}.app" / "Contents"
        information = contents / "Info.plist"
        information.write_bytes(information.read_bytes().replace(b"Adobe InDesign<", b"InDesign<"))
        (contents / "MacOS").mkdir(exist_ok=True)
        shutil.copy(shutil.which("sleep"), contents / "MacOS" / name)
        host = subprocess.Popen([contents / "MacOS" / name, "600"])
        try:
            yield host
        finally:
            end_process(host, signal.SIGKILL)

    def bundle(self, name, host="Adobe InDesign CC 2019"):
        return self.applications / host / "Plug-Ins" / "Tolvane" / f"{name}.InDesignPlugin"

    def installed_version(self, name, host="Adobe InDesign CC 2019"):
        path = self.bundle(name, host) / "Contents" / "Info.plist"
        return plistlib.loads(path.read_bytes())["CFBundleShortVersionStringTemplate"] if path.exists() else None

    # the application

    def application_command(self, *more):
        return [self.programs / "tolvane-brevok", *self.headless, "--service-url", self.service_url, "--service-ca",
                self.service_ca, "--reachability-host", "localhost", "--applications", self.applications, *more]

    def variables(self):
        """What the options say, for a program that somebody else starts."""
        return {"BREVOK_SERVICE_URL": self.service_url, "BREVOK_SERVICE_CA": str(self.service_ca),
                "BREVOK_REACHABILITY_HOST": "localhost", "BREVOK_APPLICATIONS": str(self.applications)}

    def start_application(self, *more, wait=True):
        if self.application is not None:
            return
        self.application = subprocess.Popen(self.application_command(*more), env=self.environment,
                                            stdout=subprocess.DEVNULL, stderr=self.early_log,
                                            preexec_fn=ignore_size_limit, **self.user)
        if wait:
            wait_for(lambda: self.ctl("status", check=False).returncode == 0, "the application answers")

    def start_and_check(self):
        self.start_application()
        self.ctl("check")

    def sign_in(self):
        self.ctl("signin", EMAIL, BREVOK_PASSWORD=PASSWORD)

    @contextlib.contextmanager
    def install_under_way(self, prefix):
        """brevokctl in the middle of an install: its commands are recorded, and the service keeps it waiting."""
        self.service.send_signal(signal.SIGSTOP)
        install = subprocess.Popen([self.programs / "brevokctl", "install", prefix], env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        try:
            wait_for(lambda: self.package_status(prefix) == "In Progress", "the commands are planned")
            wait_for(self.has_stored_commands, "the commands are recorded")
            yield install
        finally:
            self.service.send_signal(signal.SIGCONT)
            end_process(install, signal.SIGKILL)
            install.stderr.close()

    def mount_dead(self, library, mount):
        """@return the file as long as which exists nothing below `mount` answers the application, and the one that
        tells what its main thread asked there"""
        gate, asked = self.folder / "gate", self.folder / "asked-by-the-main-thread"
        # The loader takes a blank in a path for the end of a name.
        self.environment |= {"LD_PRELOAD": shutil.copy(library, self.folder), "DEAD_MOUNT": str(mount),
                             "ASAN_OPTIONS": "verify_asan_link_order=0", "DEAD_MOUNT_GATE": str(gate),
                             "DEAD_MOUNT_LOG": str(asked)}
        return gate, asked

    def fill_disk(self, full):
        """To the application, whom a limit on the size of files tells what a full disk tells."""
        limit = 0 if full else resource.RLIM_INFINITY
        resource.prlimit(self.application.pid, resource.RLIMIT_FSIZE, (limit, resource.RLIM_INFINITY))

    def stop_application(self, how=signal.SIGTERM):
        status = end_process(self.application, how)
        self.application = None
        return status

    def log_file(self):
        return self.folder / "state" / "tolvane-brevok" / "Logs" / "orlec.log"

    def log(self):
        path = self.log_file()
        return path.read_text(errors="replace") if path.exists() else ""

    def settings_file(self):
        return self.folder / "config" / "tolvane" / "brevok.conf"

    def state_file(self):
        return self.folder / "data" / "Tolvane Brevok" / "state.sqlite"

    def has_stored_commands(self):
        with contextlib.closing(sqlite3.connect(f"file:{self.state_file()}?mode=ro", uri=True)) as state:
            return state.execute("SELECT count(*) FROM state WHERE value LIKE '%installStart%'").fetchone()[0] > 0

    def ctl(self, *words, check=True, **more):
        result = subprocess.run([self.programs / "brevokctl", *words], env={**self.environment, **more},
                                stdin=subprocess.DEVNULL, capture_output=True, text=True, **self.user)
        if check and result.returncode != 0:
            raise AssertionError(f"brevokctl {' '.join(map(str, words))}: {result.returncode}\n{result.stdout}"
                                 f"{result.stderr}\n{self.log()[-4000:]}")
        return result

    def status(self):
        return json.loads(self.ctl("status", "--json").stdout)

    def package_status(self, prefix):
        return next((p["statusName"] for p in self.status()["packages"] if p["prefix"] == prefix), None)

    # what the process does

    def memory(self, field, table="status", process=None):
        """In KiB, of the application, or of another process, and of those that it has started."""
        lines = []
        for one in with_children(process or self.application.pid):
            with contextlib.suppress(OSError):  # it is gone again
                lines += (one / table).read_text().splitlines()
        return sum(int(line.split()[1]) for line in lines if line.startswith(field + ":"))

    def activity(self, process=None):
        """Of every thread of the application, or of another process: milliseconds on a CPU and wake-ups so far."""
        threads = {}
        for task in pathlib.Path(f"/proc/{process or self.application.pid}/task").iterdir():
            nanoseconds = int((task / "schedstat").read_text().split()[0])
            status = (task / "status").read_text()
            wakeups = int(next(line for line in status.splitlines() if line.startswith("voluntary")).split()[1])
            threads[task.name] = (nanoseconds / 1e6, wakeups)
        return threads


class SessionTest(unittest.TestCase):
    """A session for each test."""
    programs = None

    def setUp(self):
        self.session = self.enterContext(Session(self.programs))


def run_tests():
    """The main program of a file of tests; its argument is the folder of the programs."""
    SessionTest.programs = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)


def with_children(process):
    """The entries of a process and of those that it has started in the table of processes."""
    entries = [pathlib.Path(f"/proc/{process}")]
    for status in pathlib.Path("/proc").glob("[1-9]*/status"):
        with contextlib.suppress(OSError):  # it is gone again
            if f"\nPPid:\t{process}\n" in status.read_text():
                entries.append(status.parent)
    return entries


def ignore_size_limit():
    """A write beyond the limit of the size of files then fails, and ends nobody."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)


def start_bus(test, address, **user):
    """A session bus at `address` until the test ends; @return its process and its full address"""
    daemon = subprocess.Popen(["dbus-daemon", "--session", "--nofork", f"--address={address}", "--print-address"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, **user)
    test.addCleanup(end_process, daemon, signal.SIGKILL)
    return daemon, daemon.stdout.readline().strip()


def install(programs, prefix):
    """Puts a copy of the programs where they can have a policy of their own; @return their new folder"""
    for name in ("bin", "lib", "share"):
        shutil.copytree(programs.parent / name, pathlib.Path(prefix, name))
    return pathlib.Path(prefix, "bin")


class Played:
    """A service of the desktop on a session bus, played by a process of its own until the test ends."""

    def __init__(self, test, script, *words, environment=None):
        self.process = subprocess.Popen([sys.executable, pathlib.Path(__file__).with_name(script), *map(str, words)],
                                        env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        test.addCleanup(self.close)
        self.lines = queue.Queue()  # that it has said
        self.reader = threading.Thread(target=lambda: [self.lines.put(line.strip()) for line in self.process.stdout])
        self.reader.start()
        assert self.lines.get(timeout=PATIENCE) == "ready"

    def say(self, line):
        self.process.stdin.write(f"{line}\n")
        self.process.stdin.flush()

    def close(self):
        self.process.kill()
        self.process.wait()
        self.reader.join()
        self.process.stdin.close()
        self.process.stdout.close()


def ask_bus(method):
    return subprocess.run(
        ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
         f"org.freedesktop.DBus.{method}"], capture_output=True, text=True, check=True).stdout


def offer_to_the_bus(test, service):
    """The bus of this test starts the application as `service` says, until the test ends."""
    # It looks where the data of the test's own scratch home is.
    services = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "dbus-1" / "services"
    services.mkdir(parents=True, exist_ok=True)
    file = services / "com.tolvane.brevok.service"
    test.addCleanup(file.unlink)
    file.write_text(service)
    ask_bus("ReloadConfig")
    wait_for(lambda: "com.tolvane.brevok" in ask_bus("ListActivatableNames"), "the bus knows the service")


def end_process(process, how):
    """Ends a process that was started here and returns its exit status."""
    if process is None:
        return None
    if process.poll() is None:
        process.send_signal(how)
        try:
            process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    if process.stdout:
        process.stdout.close()
    return process.returncode
