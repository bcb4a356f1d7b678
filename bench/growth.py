# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""What every job costs by the number of packages, and how fast that grows."""
import json
import math
import os
import statistics
import subprocess
import time

from measures import QUICK, clicks, docked, publish_many, times_to_icon

SIZES = 10, 100, 1000, 10000
GOAL = 1.1
NOISE = 0.05  # share of the cost at the smallest size below which nothing is said of what a larger one adds


def exponent(costs):
    """The power of the number of packages with which grows what they add to the cost at the smallest size: fitted from
    the first size on that adds more than noise. 0 where none does."""
    noise = NOISE * costs[0]
    added = [max(cost - costs[0], noise) for cost in costs]
    telling = [place for place, cost in enumerate(added) if cost > noise]
    if not telling:
        return 0.0
    # The size before is there with the most that it may have added.
    points = [(math.log(SIZES[place]), math.log(added[place])) for place in range(max(1, telling[0] - 1), len(SIZES))]
    return statistics.linear_regression(*zip(*points)).slope


def entry(name, unit, costs):
    return {"name": name, "unit": unit, "sizes": SIZES, "costs": costs, "exponent": exponent(costs), "goal": GOAL}


def of_jobs(build):
    """The jobs of the catalogue, without their windows."""
    names = {"refreshAllNew": "refresh of the list, all new", "refreshUnchanged": "refresh of the list, unchanged",
             "statusFirst": "status, at first", "statusAgain": "status, again",
             "installOne": "install of one plug-in"}
    output = subprocess.run(
        [build / "bench/bench_growth", "--benchmark_format=json", f"--benchmark_repetitions={3 if QUICK else 9}",
         "--benchmark_min_time=0.05"],
        check=True, capture_output=True, text=True, env={**os.environ, "QT_LOGGING_RULES": "*=false"}).stdout
    times = {}
    for run in json.loads(output)["benchmarks"]:
        if run["run_type"] == "iteration":
            job, size = run["run_name"].split("/")[:2]
            times.setdefault(job, {}).setdefault(int(size), []).append(run["real_time"])
    for job, name in names.items():
        yield entry(name, "ms", [min(times[job][size]) for size in SIZES])


def of_windows(build, session, command, environment):
    """The application with windows, as a user has it."""
    starts = 3 if QUICK else 7
    icon, first, later, memory = [], [], [], []
    for size in SIZES:
        session.plugins, session.products = [], []
        publish_many(session, size)
        icon.append(statistics.median(times_to_icon(build, command, environment, starts)))
        opening = clicks(build, command, environment, starts)
        first.append(opening[0])
        later.append(opening[1])
        with docked(build, command, environment) as (_, _, process):
            time.sleep(5 if QUICK else 20)
            memory.append(session.memory("Pss", "smaps_rollup", process) / 1024)
    yield entry("exec to icon docked in the tray", "ms", icon)
    yield entry("click to the panel's first frame, first opening", "ms", first)
    yield entry("click to the panel's first frame, later ones", "ms", later)
    yield entry("PSS, panel never opened", "MB", memory)


def show(entries):
    if entries:
        print(f"\n{'by the number of packages':58} " + " ".join(f"{size:>11,}" for size in SIZES) + "  exponent")
    for one in entries:
        reached = "" if one["exponent"] <= one["goal"] else "  missed"
        costs = " ".join(f"{cost:9.1f}{one['unit']:>2}" for cost in one["costs"])
        print(f"{one['name']:58} {costs}  {one['exponent']:8.2f}{reached}")


def plot(entries, folder):
    import matplotlib
    matplotlib.use("Agg")
    from matplotlib import pyplot
    figure, axes = pyplot.subplots(figsize=(9, 7))
    for one in entries:
        axes.loglog(SIZES, one["costs"], "o-", label=f"{one['name']}, {one['unit']} ({one['exponent']:.2f})")
    axes.set_xlabel("packages")
    axes.set_ylabel("cost (exponent of what the packages add)")
    axes.legend(fontsize="small")
    figure.tight_layout()
    for suffix in ("png", "svg"):
        figure.savefig(folder / f"growth.{suffix}")
