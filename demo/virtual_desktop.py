# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""A desktop on a virtual display: window manager, tray, keyboard and pointer, pictures of the screen.

Everything started here is ended by its process id.
"""
import contextlib
import os
import re
import shutil
import subprocess
import time

PATIENCE = 60  # seconds until a condition that should come true counts as missed
TRAY_HEIGHT = 28
NEEDED = ("Xvfb", "openbox", "trayer", "xdotool", "xprop", "xwininfo", "xsetroot", "import")


class NeverCameTrue(AssertionError):
    """A condition was waited for in vain; the text says which."""


def wait_for(condition, what):
    """Waits until `condition()` is true and returns what it gave."""
    end = time.monotonic() + PATIENCE
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise NeverCameTrue(f"never came true: {what}")
        time.sleep(0.02)


def missing_programs():
    return [name for name in NEEDED if shutil.which(name) is None]


class VirtualDesktop:
    """Use it in a `with`; `environment` is for the programs that are to appear on it."""

    def __init__(self, environment, width=1440, height=900, background="#30475e"):
        self.width, self.height = width, height
        self.background = background
        self.environment = dict(environment)
        for name in ("QT_QPA_PLATFORM", "WAYLAND_DISPLAY"):
            self.environment.pop(name, None)
        self.display = self.tray = None
        self.running = []

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.stop_tray()
        for process in reversed(self.running):
            end(process)
        self.running.clear()
        if self.display:
            end(self.display)

    def start(self):
        reading, writing = os.pipe()
        self.display = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{self.width}x{self.height}x24", "-nolisten", "tcp",
             "-noreset"], pass_fds=[writing], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise NeverCameTrue("Xvfb could not start")
        self.environment["DISPLAY"] = f":{number}"
        self.show("openbox")
        wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "a window manager runs")
        self.run("xsetroot", "-solid", self.background)
        self.start_tray()

    def start_tray(self):
        """A bar's tray at the right end of the upper edge."""
        # No wider than its items, which it gives a square each.
        self.tray = self.show("trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--height",
                              TRAY_HEIGHT, "--SetDockType", "true", "--SetPartialStrut", "true", keep=False)

    def stop_tray(self):
        if self.tray:
            end(self.tray, kill=True)
            self.tray = None

    def show(self, *words, keep=True):
        """Starts a program on this desktop."""
        process = subprocess.Popen([str(word) for word in words], env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if keep:
            self.running.append(process)
        return process

    def run(self, *words):
        """@return what a program of this desktop writes"""
        return subprocess.run([str(word) for word in words], env=self.environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False).stdout

    # keyboard and pointer

    def click(self, x, y):
        self.run("xdotool", "mousemove", x, y, "click", 1)

    @contextlib.contextmanager
    def holding(self, *keys):
        """Holds the keys down meanwhile, as long as a user would."""
        self.run("xdotool", *[word for key in keys for word in ("keydown", key)])
        try:
            yield
        finally:
            self.run("xdotool", *[word for key in reversed(keys) for word in ("keyup", key)])

    def move_pointer(self, x, y):
        self.run("xdotool", "mousemove", x, y)

    def press(self, *keys):
        self.run("xdotool", "key", "--delay", "20", *keys)

    def write(self, text):
        self.run("xdotool", "type", "--delay", "15", text)

    # what is on the screen

    def tray_item(self):
        """@return x, y, width and height of the item at its place at the end of the tray, or nothing"""
        if self.tray is None or self.tray.poll() is not None:
            return None
        lines = self.run("xwininfo", "-root", "-tree").splitlines()
        for index, line in enumerate(lines):
            if '("panel" "trayer")' in line:
                # Its children follow, deeper; the item is the one with the application's name.
                for child in lines[index + 1:]:
                    if '"Tolvane Brevok"' in child:
                        return self.settled(child)
        return None

    def settled(self, line):
        """A tray that has just started gives its item another size and place once more, and shows it last."""
        found = rectangle_of(line)
        at_place = found and found[0] + found[2] == self.width - 1 and found[1] + found[3] == TRAY_HEIGHT - 1
        shown = at_place and "IsViewable" in self.run("xwininfo", "-id", line.split()[0])
        return found if shown else None

    def windows(self):
        """@return the titles of the application's windows on the screen; the item is none"""
        found = self.run("xdotool", "search", "--onlyvisible", "--class", "tolvane-brevok").split()
        titles = [(self.run("xdotool", "getwindowname", window).strip(), self.rectangle(window)) for window in found]
        return [title for title, rectangle in titles if rectangle[3] > 60]

    def rectangle(self, window):
        """@return x, y, width and height of an X window"""
        found = dict(re.findall(r"^(X|Y|WIDTH|HEIGHT)=(-?\d+)$",
                                self.run("xdotool", "getwindowgeometry", "--shell", window), re.M))
        return tuple(int(found.get(name, 0)) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def panel(self):
        """@return x, y, width and height of the panel's window when it is on the screen, or nothing"""
        for window in self.run("xdotool", "search", "--onlyvisible", "--class", "tolvane-brevok").split():
            # The item and alerts bear the same title.
            if "_UTILITY" in self.run("xprop", "-id", window, "_NET_WM_WINDOW_TYPE"):
                return self.rectangle(window)
        return None

    def picture(self, path, area=None):
        """Writes the screen, or its part `area` (x, y, width, height), as a PNG."""
        words = ["import", "-silent", "-window", "root"]
        if area:
            x, y, width, height = area
            words += ["-crop", f"{width}x{height}+{max(0, x)}+{max(0, y)}", "+repage"]
        subprocess.run([*words, str(path)], env=self.environment, stdin=subprocess.DEVNULL, check=True)


def rectangle_of(line):
    """From a line of xwininfo's tree: `... 24x24+0+0  +1416+0`."""
    size = re.search(r" (\d+)x(\d+)[+-]", line)
    place = re.search(r"\s\+(-?\d+)\+(-?\d+)$", line)
    return (int(place[1]), int(place[2]), int(size[1]), int(size[2])) if size and place else None


def end(process, kill=False):
    if process.poll() is None:
        if kill:
            process.kill()
        else:
            process.terminate()
        with contextlib.suppress(subprocess.TimeoutExpired):
            process.wait(10)
        if process.poll() is None:
            process.kill()
    process.wait()
