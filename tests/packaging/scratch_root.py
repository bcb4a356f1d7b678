# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""Debian packages in a scratch root: made from a build, installed, upgraded, removed and purged with the real dpkg."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

APPLICATION, HELPER, DEMO = "tolvane-brevok", "tolvane-brevok-helper", "tolvane-brevok-demo"
POLICY = "etc/tolvane-brevok/policy.conf"
SYSTEM_PATH = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"


def missing_tools():
    return [tool for tool in ("cpack", "dpkg", "dpkg-deb", "dpkg-shlibdeps", "fakeroot") if not shutil.which(tool)]


def run(*command, check=True, **more):
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                            check=False, **more)
    if check and result.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}: {result.returncode}\n{result.stdout}{result.stderr}")
    return result


def make_packages(build, folder):
    """@return the packages by name"""
    run("cpack", "--config", build / "CPackConfig.cmake", "-B", folder)
    packages = {}
    for file in folder.glob("*.deb"):
        packages[run("dpkg-deb", "-f", file, "Package").stdout.strip()] = file
    return packages


def make_newer(package, folder, change):
    """The same package as version 1000.0-1, its unpacked tree changed by change(tree)."""
    folder = pathlib.Path(tempfile.mkdtemp(dir=folder))
    tree = folder / package.stem
    run("dpkg-deb", "-R", package, tree)
    control = tree / "DEBIAN" / "control"
    control.write_text(re.sub(r"^Version: .*$", "Version: 1000.0-1", control.read_text(), flags=re.M))
    change(tree)
    result = folder / package.name
    run("dpkg-deb", "--root-owner-group", "-Znone", "-b", tree, result)
    return result


def mode_and_path(line):
    """One line of 'dpkg-deb -c'."""
    words = line.split(None, 5)
    return words[0], words[1], words[5].split(" -> ")[0].removeprefix("./")


class ScratchRoot:
    def __init__(self, folder):
        self.folder = folder
        database = folder / "var" / "lib" / "dpkg"
        for name in ("info", "updates", "triggers"):
            (database / name).mkdir(parents=True)
        (database / "status").touch()

    def __truediv__(self, path):
        return self.folder / path

    @property
    def programs(self):
        return self.folder / "usr" / "bin"

    def dpkg(self, *words):
        """Packages that ours depend on belong to the machine, not to this root."""
        as_root = [] if os.geteuid() == 0 else ["fakeroot"]
        return run(*as_root, "dpkg", f"--root={self.folder}", f"--log={self.folder}/var/log.dpkg", "--force-depends",
                   "--force-not-root", "--force-script-chrootless", "--force-confold", *words,
                   env={**os.environ, "PATH": SYSTEM_PATH})

    def state(self, package):
        return run("dpkg-query", f"--admindir={self.folder}/var/lib/dpkg", "-W", "-f=${db:Status-Status} ${Version}",
                   package, check=False).stdout.strip()

    def files(self):
        """Everything outside dpkg's own folder: contents of files, where links lead, and folders."""
        found = {}
        for path in sorted(self.folder.rglob("*")):
            name = str(path.relative_to(self.folder))
            if not name.startswith("var"):
                found[name] = (os.readlink(path) if path.is_symlink()
                               else path.read_bytes() if path.is_file() else None)
        return found
