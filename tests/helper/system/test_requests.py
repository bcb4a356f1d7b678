#!/usr/bin/python3
"""What the helper does for whom, on a system bus with polkit: consent, refusals, and attacks of every kind."""
import concurrent.futures
import contextlib
import ctypes
import errno
import os
import pathlib
import random
import socket
import stat
import threading

from helper_case import DENIED_ERROR, NOT_AUTHORIZED, HelperCase, run_tests
from rig import ALLOWED, ASKED, DENIED, OTHER, plugin_archive, snapshot


class RequestTest(HelperCase):
    # what it is for

    def test_installs_replaces_and_removes(self):
        for content in (b"first", b"second"):
            self.assertEqual(self.allowed.install(self.rig.archive(content=content), self.target)["result"],
                             [True, "", 0, ""])
            self.assertEqual(self.content(), content)
        self.rig.settle()
        self.assertEqual({facts[1] for facts in snapshot(self.target.parent).values()}, {ALLOWED})
        self.assertEqual(os.stat(self.target / "Contents" / "MacOS" / "A").st_mode & 0o7777, 0o755)
        self.assertEqual(os.listdir(self.target.parent), ["A.InDesignPlugin"])
        for method, answer in (("FileExistsAtPath", [True]), ("FileExistsAtPathIsDirectory", [True, True]),
                               ("IsReadableFileAtPath", [True]), ("IsWritableFileAtPath", [True]),
                               ("IsDeletableFileAtPath", [True])):
            self.assertEqual(self.allowed.call(method, "s", str(self.target))["result"], answer, method)
        self.assertEqual(self.allowed.call("RemoveItemAtPath", "s", str(self.target))["result"], [True, "", 0, ""])
        self.assertEqual(os.listdir(self.target.parent), [])
        self.assertEqual(self.allowed.call("FileExistsAtPath", "s", str(self.target))["result"], [False])

    def test_unauthorized_callers_change_nothing(self):
        for user, error in ((DENIED, NOT_AUTHORIZED),
                            (ASKED, "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired")):
            caller = self.rig.caller(user)
            self.assertRefused(caller.install(self.rig.archive(user), self.target, mayAsk=False), error)
            self.assertRefused(caller.call("RemoveItemAtPath", "s", str(self.target), mayAsk=False), error)
            self.assertRefused(caller.call("SetUID", "uusb", user, 0o777, str(self.target), True, mayAsk=False), error)
        # A question that nobody can be asked ends the same way.
        self.assertRefused(self.rig.caller(ASKED).install(self.rig.archive(ASKED), self.target), NOT_AUTHORIZED)
        self.assertNothingChanged()
        self.assertIn(f'InstallPluginFromSource "{self.target}": not authorized', self.rig.log_text())

    # attacks that a path makes

    def test_paths_that_belong_to_no_target(self):
        good = self.rig.archive()
        folder = self.target.parent
        for path in (folder / ".." / "Tolvane" / "A.InDesignPlugin", f"{folder}/./A.InDesignPlugin",
                     f"{self.target}/", self.target / "Contents", folder / ".InDesignPlugin", folder / "A.txt",
                     folder.parent / "A.InDesignPlugin", folder / "A\nB.InDesignPlugin", "", "/",
                     "Tolvane/A.InDesignPlugin", "/etc/passwd", "/etc/shadow", "/nothing/at/all",
                     folder / ("A" * 5000 + ".InDesignPlugin"), folder.parent / "Presets" / "Tolvane.xml",
                     folder / "\u202eA.InDesignPlugin"):
            answers = [self.allowed.install(good, path), self.allowed.call("RemoveItemAtPath", "s", str(path)),
                       self.allowed.call("SetUID", "uusb", ALLOWED, 0o600, str(path), True),
                       self.allowed.call("FileExistsAtPath", "s", str(path)),
                       self.allowed.call("IsReadableFileAtPath", "s", str(path))]
            for answer in answers:
                self.assertRefused(answer)
            self.assertEqual(len({answer["message"] for answer in answers}), 1)  # the same whatever is there
        self.assertNothingChanged()

    def test_links_in_every_component(self):
        good = self.rig.archive()
        for name, goal, below in (("Tolvane", "outside/Tolvane", ""), ("a", "outside", "Tolvane"),
                                  ("b", "", "outside/Tolvane")):
            link = self.home / name
            link.symlink_to(self.rig.root / goal)
            target = self.own(link) / below / "A.InDesignPlugin"
            self.assertFalse(self.allowed.install(good, target)["result"][0])
            self.assertEqual(self.allowed.call("FileExistsAtPath", "s", str(target))["result"], [False])
            self.allowed.call("RemoveItemAtPath", "s", str(target))
            self.allowed.call("SetUID", "uusb", ALLOWED, 0o666, str(target), True)
            self.assertNothingChanged()
            link.unlink()
        # A link of root's, in a folder of root's, is the way the administrator wants it.
        (self.rig.root / "Applications" / "moved").symlink_to(self.target.parents[2])
        self.assertTrue(self.allowed.install(
            good, self.rig.root / "Applications" / "moved" / "Plug-Ins" / "Tolvane" / "A.InDesignPlugin")["result"][0])
        self.assertEqual(self.content(), b"new")
        (self.rig.root / "Applications" / "moved").unlink()

    def test_target_that_is_a_link(self):
        folder = self.folder(self.home / "Tolvane")
        for goal in ("/etc", self.outside, self.outside / "secret", self.outside / "missing"):
            target = folder / "A.InDesignPlugin"
            target.symlink_to(goal)
            self.allowed.call("SetUID", "uusb", ALLOWED, 0o666, str(target), True)
            self.assertTrue(self.allowed.install(self.rig.archive(), target)["result"][0])
            self.assertFalse(target.is_symlink())
            self.assertEqual(self.content(target), b"new")
            self.assertTrue(self.allowed.call("RemoveItemAtPath", "s", str(target))["result"][0])
            self.assertNothingChanged()

    def test_what_the_caller_could_not_read_is_not_given_to_him(self):
        target = self.folder(self.folder(self.folder(self.home / "mine") / "Tolvane") / "A.InDesignPlugin")
        os.link(self.outside / "open", target / "second-name")
        (target / "roots").write_text("root's")
        (target / "roots").chmod(0o600)
        (target / "readable").write_text("everybody's")
        self.assertEqual(self.allowed.call("SetUID", "uusb", ALLOWED, 0o600, str(target), True)["result"], [])
        owners = {name: os.stat(target / name).st_uid for name in ("second-name", "roots", "readable")}
        self.assertEqual(owners, {"second-name": 0, "roots": 0, "readable": ALLOWED})

    # attacks that an argument makes

    def test_sources_that_are_not_the_callers_files(self):
        victim = self.rig.archive(OTHER, file="victim.zip")
        os.chmod(victim, 0o600)
        plugin_archive(self.outside / "roots.zip")
        self.before = snapshot(self.outside), self.before[1]
        (self.home / "link.zip").symlink_to(victim)
        (self.home / "folder").symlink_to(self.rig.home(OTHER))
        os.mkfifo(self.home / "pipe.zip")
        os.mknod(self.home / "device.zip", stat.S_IFCHR | 0o666, os.makedev(1, 5))
        (self.home / "directory.zip").mkdir()
        os.link(victim, self.home / "hard.zip")
        for name in ("link.zip", "pipe.zip", "device.zip", "directory.zip", "hard.zip"):
            if name != "hard.zip":
                self.own(self.home / name)
        os.link(self.outside / "roots.zip", self.home / "hard2.zip")
        for source in (victim, self.outside / "roots.zip", self.outside / "missing.zip", self.home / "link.zip",
                       self.home / "folder" / "victim.zip", self.home / "pipe.zip", self.home / "device.zip",
                       self.home / "directory.zip", self.home / "hard.zip", self.home / "hard2.zip",
                       f"{self.home}/../home-{OTHER}/victim.zip", "/dev/zero", "/etc/shadow", "/proc/self/environ", ""):
            self.assertRefused(self.allowed.install(source, self.target))
            self.assertFalse(self.target.exists())
        os.unlink(self.home / "hard2.zip")
        large = self.home / "large.zip"
        large.touch()
        os.truncate(self.own(large), (1 << 30) + 1)
        self.assertEqual(self.allowed.install(large, self.target)["result"][::2], [False, errno.EFBIG])
        large.unlink()
        self.assertNothingChanged()

    def test_foreign_users_and_special_permissions(self):
        good = self.rig.archive()
        for user in (0, OTHER, 0xffffffff):
            self.assertRefused(self.allowed.install(good, self.target, user))
            self.assertRefused(self.allowed.call("SetUID", "uusb", user, 0o600, str(self.target), True))
        for permissions in (0o4755, 0o2755, 0o1777, 0xffffffff):
            self.assertRefused(self.allowed.call("SetUID", "uusb", ALLOWED, permissions, str(self.target), True))
        self.assertNothingChanged()

    def test_an_archive_that_is_refused(self):
        self.allowed.install(self.rig.archive(content=b"old"), self.target)
        self.setUp()
        # Answered yes as ever, and the old plug-in is back.
        source = self.rig.archive(extra=[("A.InDesignPlugin/setuid", stat.S_IFREG | 0o4755, b"x")])
        answer = self.allowed.call("Install", "ssuay", str(source), str(self.target), ALLOWED, [])["result"]
        self.assertEqual(answer[:2], [True, ""])
        self.assertIn("the archive is refused: ", answer[6])
        self.assertNothingChanged()

    def test_large_arguments_and_garbage(self):
        self.allowed.call("Version")
        process = self.rig.helper_process()
        self.assertRefused(self.allowed.call("FileExistsAtPath", "s", "/" + "x" * 20_000_000))
        for signature, arguments in (("", []), ("u", [1]), ("ss", ["a", "b"]), ("as", [["a"] * 1000])):
            self.assertIn("error", self.allowed.call("InstallPluginFromSource", signature, *arguments))
        self.assertIn("error", self.allowed.call("Nothing"))
        # A gigabyte, and bytes that are no message: the bus shows such callers the door.
        for garbage in (b"l\1\0\1" + (1 << 30).to_bytes(4, "little") + b"\1\0\0\0" + b"\0" * 1000,
                        random.Random(1).randbytes(5000)):
            with socket.socket(socket.AF_UNIX) as bus:
                bus.connect(str(self.rig.root / "run" / "system_bus_socket"))
                bus.sendall(b"\0AUTH EXTERNAL " + b"0".hex().encode() + b"\r\n")
                bus.recv(100)
                bus.sendall(b"BEGIN\r\n" + garbage)
                bus.settimeout(20)
                with contextlib.suppress(ConnectionResetError):
                    self.assertEqual(bus.recv(100), b"")
        self.assertEqual(self.allowed.call("Version")["result"], [15])
        self.assertEqual(self.rig.helper_process(), process)
        self.assertLess(max(len(line) for line in self.rig.log_text().splitlines()), 2000)

    def test_nobody_else_takes_the_name(self):
        self.assertRefused(self.allowed.call("RequestName", "su", "com.tolvane.brevok.HelperTool", 4,
                                             to="org.freedesktop.DBus", path="/", interface="org.freedesktop.DBus"))
        self.allowed.call("Version")
        self.assertIn("belongs to somebody else", self.rig.root_helper())

    def test_two_hundred_callers(self):
        callers = [self.rig.caller(user) for user in (ALLOWED, OTHER, DENIED, ASKED)]
        calls = []
        for caller in callers:
            source = self.rig.archive(caller.user, content=str(caller.user).encode())
            for _ in range(50):
                connection = caller.do("connect")["result"][0]
                calls.append((caller, caller.begin_install(source, self.target, connection=connection)))
        for caller, number in calls:
            answer = caller.wait(number, 120)
            self.assertEqual(answer.get("result", [False])[0], caller.user in (ALLOWED, OTHER), answer)
        self.rig.settle()
        self.assertEqual(os.listdir(self.target.parent), ["A.InDesignPlugin"])
        self.assertIn(self.content(), (str(ALLOWED).encode(), str(OTHER).encode()))

    def test_swapped_under_its_hands(self):
        base, over = self.home / "race", threading.Event()
        self.folder(self.folder(self.folder(base) / "real") / "Tolvane")
        (base / "real").rename(base / "now")
        (base / "link").symlink_to(self.outside)
        source = pathlib.Path(self.rig.archive(file="race.zip"))
        (self.home / "theirs.zip").symlink_to(self.rig.archive(OTHER, file="victim.zip", content=b"victim"))
        for link in (base / "link", self.home / "theirs.zip"):
            self.own(link)
        target, libc, here, exchange = base / "now" / "Tolvane" / "A.InDesignPlugin", ctypes.CDLL(None), -100, 2

        def swapping():
            while not over.is_set():
                for one, other in ((base / "now", base / "link"), (source, self.home / "theirs.zip")):
                    libc.renameat2(here, bytes(one), here, bytes(other), exchange)

        outcomes = set()
        with concurrent.futures.ThreadPoolExecutor() as beside:
            beside.submit(swapping)
            try:
                for _ in range(300):
                    self.allowed.install(self.rig.archive(), target)
                    self.allowed.call("SetUID", "uusb", ALLOWED, 0o666, str(target), True)
                    self.allowed.call("RemoveItemAtPath", "s", str(target))
                    outcomes.add(self.allowed.install(source, self.target).get("error", "answered"))
            finally:
                over.set()
        self.assertLessEqual({"answered", DENIED_ERROR}, outcomes)  # some calls came while the caller's own was there
        self.assertEqual(self.content(), b"new")
        self.allowed.call("RemoveItemAtPath", "s", str(self.target))
        self.target.parent.rmdir()
        self.assertNothingChanged()


if __name__ == "__main__":
    run_tests()
