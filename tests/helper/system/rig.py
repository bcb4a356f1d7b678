"""A system of its own for the helper: a private system bus, the real polkitd with rules of the test, a real root helper
started by the bus, and real unprivileged users. Needs root; everything is gone afterwards."""
import json
import os
import pathlib
import queue
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import threading
import time
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
DATA = HERE.parents[2] / "packaging" / "helper"
POLKITD = "/usr/lib/polkit-1/polkitd"
SKIPPED = 77

# Users that every Debian has, by what polkit's rules below say of them.
ALLOWED, ASKED, DENIED, OTHER = 65534, 2, 3, 4
NAMES = {ALLOWED: "nobody", ASKED: "bin", DENIED: "sys", OTHER: "sync"}

RULES = """polkit.addRule(function(action, subject) {
    if (action.id.indexOf("com.tolvane.brevok.helper.") != 0) { return polkit.Result.NOT_HANDLED; }
    if (subject.user == "nobody" || subject.user == "sync") { return polkit.Result.YES; }
    if (subject.user == "sys") { return polkit.Result.NO; }
    return polkit.Result.AUTH_ADMIN;
});
polkit.addAdminRule(function(action, subject) { return ["unix-user:root"]; });
"""

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={root}/run/system_bus_socket</listen><auth>EXTERNAL</auth>
<servicedir>{root}/blessed/usr/local/share/dbus-1/system-services</servicedir>
<servicedir>{root}/services</servicedir>
<policy context="default"><allow user="*"/><deny own="*"/><deny send_type="method_call"/><allow send_type="signal"/>
<allow send_requested_reply="true" send_type="method_return"/><allow send_requested_reply="true" send_type="error"/>
<allow receive_type="method_call"/><allow receive_type="method_return"/><allow receive_type="error"/>
<allow receive_type="signal"/><allow send_destination="org.freedesktop.DBus"/></policy>
<includedir>{root}/bus.d</includedir><includedir>{root}/blessed/etc/dbus-1/system.d</includedir>
<limit name="service_start_timeout">4000</limit><limit name="max_connections_per_user">2000</limit><limit name="max_completed_connections">4000</limit>
</busconfig>
"""


def enter():
    """Goes where the test's polkit can have rules of its own, or says why it cannot."""
    if os.geteuid() != 0:
        print("SKIPPED: needs root, for a bus and a helper of its own")
        sys.exit(SKIPPED)
    if not os.path.exists(POLKITD):
        print("SKIPPED: needs polkitd")
        sys.exit(SKIPPED)
    if "BREVOK_TEST_NAMESPACE" not in os.environ:
        os.environ["BREVOK_TEST_NAMESPACE"] = "1"
        if subprocess.run(["unshare", "--mount", "true"], check=False).returncode != 0:
            print("SKIPPED: this machine lets root make no mount namespace")
            sys.exit(SKIPPED)
        os.execvp("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable, *sys.argv])


def wait_for(what, condition, seconds=20):
    """For states of other processes that nobody announces."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.01)


def plugin_archive(path, name="A", content=b"new", extra=()):
    """`extra` holds more entries: (name, mode, content)."""
    entries = [(f"{name}.InDesignPlugin/Contents/Info.plist", stat.S_IFREG | 0o644, content),
               (f"{name}.InDesignPlugin/Contents/MacOS/{name}", stat.S_IFREG | 0o755, b"code" * 1000), *extra]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for entry, mode, bytes_ in entries:
            information = zipfile.ZipInfo(entry)
            information.create_system = 3
            information.external_attr = mode << 16
            archive.writestr(information, bytes_)
    return str(path)


def snapshot(folder):
    """Everything about a folder that an attack could change."""
    result = {}
    for at, folders, files in os.walk(folder):
        for name in [*folders, *files]:
            path = os.path.join(at, name)
            facts = os.lstat(path)
            content = None
            if stat.S_ISREG(facts.st_mode):
                content = pathlib.Path(path).read_bytes()
            elif stat.S_ISLNK(facts.st_mode):
                content = os.readlink(path)
            result[os.path.relpath(path, folder)] = (facts.st_mode, facts.st_uid, facts.st_nlink, content)
    return result


class Caller:
    """A process of an unprivileged user; see caller.py."""

    def __init__(self, rig, user):
        self.rig, self.user, self._last = rig, user, 0
        self._answers, self._events = {}, queue.Queue()
        self._arrived = threading.Condition()
        self.process = subprocess.Popen([sys.executable, rig.programs / "caller.py"], user=user, group=65534,
                                        extra_groups=[], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        env=rig.environment)
        threading.Thread(target=self._read, daemon=True).start()
        self.event("ready")

    def _read(self):
        for line in self.process.stdout:
            answer = json.loads(line)
            if "event" in answer:
                self._events.put(answer)
                continue
            with self._arrived:
                self._answers[answer["id"]] = answer
                self._arrived.notify_all()

    def start(self, do, **command):
        self._last += 1
        self.process.stdin.write(json.dumps({"id": self._last, "do": do, **command}) + "\n")
        self.process.stdin.flush()
        return self._last

    def wait(self, number, seconds=60):
        with self._arrived:
            if not self._arrived.wait_for(lambda: number in self._answers, seconds):
                raise AssertionError("no answer")
            return self._answers.pop(number)

    def answered(self, number):
        with self._arrived:
            return number in self._answers

    def asked(self):
        """Whether an event has come."""
        return not self._events.empty()

    def event(self, name, seconds=20):
        event = self._events.get(timeout=seconds)
        assert event["event"] == name, event
        return event

    def do(self, do, **command):
        return self.wait(self.start(do, **command))

    def begin(self, method, signature="", *arguments, **more):
        return self.start("call", method=method, signature=signature, arguments=arguments, **more)

    def call(self, method, signature="", *arguments, **more):
        return self.wait(self.begin(method, signature, *arguments, **more))

    def begin_install(self, source, target, user=None, **more):
        return self.begin("InstallPluginFromSource", "ssu", str(source), str(target),
                          self.user if user is None else user, **more)

    def install(self, source, target, user=None, **more):
        return self.wait(self.begin_install(source, target, user, **more))

    def end(self):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()


class Rig:
    def __init__(self, helper, *options, environment=None):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brevok-helper-test-", dir="/tmp"))  # where every user gets to
        self.root.chmod(0o755)
        self.helper, self.options = self.root / "programs" / pathlib.Path(helper).name, options
        self.address = f"unix:path={self.root}/run/system_bus_socket"
        self.environment = {**os.environ, "TMPDIR": "/tmp", "DBUS_SYSTEM_BUS_ADDRESS": self.address, "LC_ALL": "C.UTF-8",
                            "HOME": str(self.root), **(environment or {})}
        self.log = self.root / "helper.log"
        self.state = self.root / "state"
        self._callers = []
        self.polkit = None
        self.blessed, self.programs = self.root / "blessed", self.root / "programs"
        for folder in ("services", "bus.d", "rules", "actions", "run", "blessed/etc/dbus-1/system.d",
                       "blessed/usr/local/share/dbus-1/system-services"):
            (self.root / folder).mkdir(parents=True)
        # The build's own folder may be closed to other users.
        self.programs.mkdir()
        for program in (helper, HERE / "caller.py", HERE / "other_helper.py"):
            shutil.copy(program, self.programs)
        (self.root / "rules" / "1.rules").write_text(RULES)
        shutil.copy(DATA / "com.tolvane.brevok.HelperTool.conf", self.root / "bus.d")
        shutil.copy("/usr/share/dbus-1/system.d/org.freedesktop.PolicyKit1.conf", self.root / "bus.d")
        shutil.copy("/usr/share/polkit-1/actions/org.freedesktop.policykit.policy", self.root / "actions")
        policy = (DATA / "com.tolvane.brevok.helper.policy.in").read_text().replace("@PROGRAM@", "/nowhere")
        (self.root / "actions" / "helper.policy").write_text(policy)
        (self.root / "bus.conf").write_text(BUS.format(root=self.root))
        self.serve_by()
        for mine, place in (("rules", "/etc/polkit-1/rules.d"), ("actions", "/usr/share/polkit-1/actions")):
            subprocess.run(["mount", "--bind", str(self.root / mine), place], check=True)
        self.start_bus()
        self.start_polkit()

    def serve_by(self, environment=None, program=None, options=None):
        """What the bus starts when somebody calls; its log is appended to."""
        words = " ".join(f"{key}={value}" for key, value in (environment or {}).items())
        (self.root / "helper.sh").write_text(
            f"#!/bin/sh\nexec env {words} {program or self.helper} --state {self.state} "
            f"{' '.join(options if options is not None else self.options)} 2>>{self.log}\n")
        (self.root / "helper.sh").chmod(0o755)
        (self.root / "services" / "com.tolvane.brevok.HelperTool.service").write_text(
            f"[D-BUS Service]\nName=com.tolvane.brevok.HelperTool\nExec={self.root}/helper.sh\nUser=root\n")

    def be_the_systems(self):
        """Puts the bus where programs look for it that take no other, pkexec being one."""
        subprocess.run(["mount", "-t", "tmpfs", "none", "/run"], check=True)
        os.symlink(self.root / "run", "/run/dbus")

    def start_bus(self):
        self.bus = subprocess.Popen(["dbus-daemon", f"--config-file={self.root}/bus.conf", "--nofork",
                                     "--print-address"], env=self.environment, stdout=subprocess.PIPE,
                                    stderr=subprocess.DEVNULL, text=True)
        self.bus.stdout.readline()

    def start_polkit(self):
        self.polkit = subprocess.Popen([POLKITD, "--no-debug"], env=self.environment, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        wait_for("polkit on the bus", lambda: self.owner("org.freedesktop.PolicyKit1"))

    def stop_polkit(self):
        self.polkit.kill()
        self.polkit.wait()
        self.polkit = None

    def root_call(self, *words):
        return subprocess.run(["dbus-send", "--system", "--print-reply=literal", *words], env=self.environment,
                              capture_output=True, text=True, check=False)

    def owner(self, name):
        """The process that has a name, if any."""
        reply = self.root_call("--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                               f"string:{name}")
        return int(reply.stdout.split()[-1]) if reply.returncode == 0 else None

    def helper_process(self):
        return self.owner("com.tolvane.brevok.HelperTool")

    def settle(self):
        """Waits for what the helper does after it has answered."""
        wait_for("the end of the work", lambda: not self.state.exists() or not os.listdir(self.state))

    def end_helper(self, how=signal.SIGTERM):
        process = self.helper_process()
        if process:
            os.kill(process, how)
            wait_for("the helper's end", lambda: self.helper_process() != process)

    def caller(self, user=ALLOWED):
        self._callers.append(Caller(self, user))
        return self._callers[-1]

    def home(self, user):
        """A folder of the user's own."""
        folder = self.root / f"home-{user}"
        if not folder.exists():
            folder.mkdir(mode=0o755)
            os.chown(folder, user, 65534)
        return folder

    def archive(self, user=ALLOWED, file="A.zip", **what):
        path = plugin_archive(self.home(user) / file, **what)
        os.chown(path, user, 65534)
        return path

    def application(self, name="InDesign"):
        """A host application that only root may change; the path of its plug-in A."""
        folder = self.root / "Applications" / name / "Plug-Ins"
        folder.mkdir(parents=True, exist_ok=True)
        return folder / "Tolvane" / "A.InDesignPlugin"

    def root_helper(self, *options):
        """What a helper says that somebody starts by hand beside the bus's own."""
        return subprocess.run([self.helper, "--state", self.root / "other-state", *options], env=self.environment,
                              capture_output=True, text=True, timeout=30, check=False).stderr

    def log_text(self):
        return self.log.read_text() if self.log.exists() else ""

    def grant(self, cookie, user):
        """What the system's own login check does once a password was right."""
        reply = subprocess.run(
            ["gdbus", "call", "--system", "--dest", "org.freedesktop.PolicyKit1", "--object-path",
             "/org/freedesktop/PolicyKit1/Authority", "--method",
             "org.freedesktop.PolicyKit1.Authority.AuthenticationAgentResponse2", str(user), cookie,
             "('unix-user', {'uid': <uint32 0>})"], env=self.environment, capture_output=True, text=True, check=False)
        assert reply.returncode == 0, reply.stderr

    def end_callers(self, but=None):
        for caller in self._callers:
            if caller is not but:
                caller.end()
        self._callers = [but] if but else []

    def close(self):
        self.end_callers()
        self.bus.stdout.close()
        for process in (self.polkit, self.bus):
            if process:
                process.kill()
                process.wait()
        for place in ("/etc/polkit-1/rules.d", "/usr/share/polkit-1/actions"):
            subprocess.run(["umount", place], check=False)
        shutil.rmtree(self.root, ignore_errors=True)
