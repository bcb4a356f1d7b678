# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""The programs of the demo."""
import os
import subprocess

from expected import StepFailed
from virtual_desktop import end


class Programs:
    """The programs of one build in a scratch environment, ended by their process ids."""

    def __init__(self, build, scratch):
        self.folder = build / "bin"
        self.logs = scratch / "logs"
        self.logs.mkdir()
        self.running = []
        self.environment = {key: value for key, value in os.environ.items()
                            if not key.startswith("BREVOK_") and not key.lower().endswith("_proxy")}
        for variable, name in [("HOME", "home"), ("XDG_CONFIG_HOME", "config"), ("XDG_DATA_HOME", "data"),
                               ("XDG_STATE_HOME", "state"), ("XDG_CACHE_HOME", "cache"),
                               ("XDG_RUNTIME_DIR", "runtime")]:
            (scratch / name).mkdir(mode=0o700)
            self.environment[variable] = str(scratch / name)
        self.environment.pop("QT_QPA_PLATFORM", None)
        self.application_log = scratch / "state" / "tolvane-brevok" / "Logs" / "orlec.log"
        self.environment["LC_ALL"] = "C.UTF-8"
        # Nobody is asked for a password: the sample hosts are the user's own, and the machine's helper stays out of it.
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={scratch}/no-system-bus"

    def start(self, name, *arguments, output=None):
        """Starts a program of the build, or one of the system's when the build has none of that name."""
        program = self.folder / name
        with (self.logs / f"{name}.log").open("ab") as log:
            process = subprocess.Popen([program if program.exists() else name, *arguments], env=self.environment,
                                       stdin=subprocess.DEVNULL, stdout=output or log, stderr=log, text=True)
        self.running.append(process)
        return process

    def start_and_read(self, name, *arguments):
        """@return the first line that the program writes"""
        process = self.start(name, *arguments, output=subprocess.PIPE)
        line = process.stdout.readline().strip()
        if not line:
            raise StepFailed(f"{name} ended with exit status {process.wait()}")
        return line

    def start_bus(self):
        """A session bus apart from the user's, where a copy that the user runs owns the application's name."""
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.start_and_read(
            "dbus-daemon", "--session", "--nofork", "--print-address=1")

    def stop_all(self):
        for process in reversed(self.running):
            end(process)
