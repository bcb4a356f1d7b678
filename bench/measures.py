# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""How things are measured, and what a measurement is: a dictionary that becomes a line of the table and stands in the
report as it is."""
import contextlib
import os
import pathlib
import random
import statistics
import subprocess
import sys
import time

SOURCE = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(SOURCE / "tests" / "end-to-end"))
import brevok_session  # noqa: E402  (the same real processes as the end-to-end tests)

PAIRS = int(os.environ.get("BENCH_PAIRS", "40"))
QUICK = PAIRS < 40


def bootstrap(ratios, rounds=2000):
    chance = random.Random(1)
    medians = sorted(statistics.median(chance.choices(ratios, k=len(ratios))) for _ in range(rounds))
    return medians[int(rounds * 0.025)], medians[int(rounds * 0.975)]


def row(name, unit, ours, yardstick, goal):
    ratios = [a / b for a, b in zip(ours, yardstick)]
    low, high = bootstrap(ratios)
    return {"name": name, "unit": unit, "ours": ours, "yardstick": yardstick, "ratio": statistics.median(ratios),
            "low": low, "high": high, "goal": goal}


def idle_rows(session, where, process=None):
    """@return what the program does while nobody asks anything of it

    The whole run waits first until the first usage report has been sent.
    """
    settles, seconds = (15, 10) if QUICK else (185, 60)
    time.sleep(settles)
    before = session.activity(process)
    time.sleep(seconds)
    after = session.activity(process)
    changes = [[now - then for now, then in zip(after[thread], before.get(thread, (0, 0)))] for thread in after]
    ended = len(before.keys() - after.keys())  # each woke up to do so
    return [{"name": f"CPU in {seconds} s idle{where}", "unit": "ms", "value": sum(ms for ms, _ in changes), "goal": 1},
            {"name": f"wake-ups in {seconds} s idle{where}", "unit": "",
             "value": sum(wakeups for _, wakeups in changes) + ended, "goal": 0}]


@contextlib.contextmanager
def virtual_display():
    reading, writing = os.pipe()
    # Without a reset, which would close the connection of who comes while it lasts.
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1440x900x24", "-nolisten", "tcp",
                               "-noreset"], pass_fds=[writing], stderr=subprocess.DEVNULL)
    os.close(writing)
    try:
        yield ":" + os.read(reading, 20).decode().strip()
    finally:
        os.close(reading)
        server.terminate()
        server.wait()


@contextlib.contextmanager
def docked(build, command, environment):
    """The tray's timer with `command` docked in it, the milliseconds that took, and the process id."""
    timer = subprocess.Popen([build / "bench/desktop_timer", *command], env=environment, stdin=subprocess.PIPE,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        taken, process = timer.stdout.readline().split()
        yield timer, float(taken), int(process)
    finally:
        timer.stdin.close()
        timer.wait()


def clicks(build, command, environment, starts=7, openings=5):
    """Median milliseconds from a click to the panel's first frame: of the first openings, and of later ones."""
    first, later = [], []
    for _ in range(starts):
        with docked(build, command, environment) as (timer, _, _):
            time.sleep(3)
            for opening in range(openings):
                timer.stdin.write("\n")
                timer.stdin.flush()
                (later if opening else first).append(float(timer.stdout.readline()))
    return statistics.median(first), statistics.median(later)


def times_to_icon(build, command, environment, starts=7):
    taken = []
    for _ in range(starts):
        with docked(build, command, environment) as (_, milliseconds, _):
            taken.append(milliseconds)
    return taken


def publish_many(session, count, builds=1):
    for number in range(count):
        name, prefix = f"Package {number}", f"0x{number:06x}"
        dated = {"Prefix": prefix, "Version": "1.0", "Published": "2026-01-01", "Platform": "Mac"}
        session.products.append({"Name": name, **dated})
        for build in range(builds):
            session.plugins.append({"Name": name, "HostVersion": 140 + 10 * build, "Size": 1,
                                    "Link": "/archives/none.zip", **dated})
    session.write_lists()
    session.start_application()
    session.ctl("check")
    session.stop_application()
