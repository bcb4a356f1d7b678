# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""Other programs that live in a tray, where Debian's packages of them are installed, measured as ours is; and an update
of many plug-ins beside a script that does no more than download and unpack.

Each has a home of its own, in which it was never started before, a session bus and a network in which nothing is up:
none looks for its updates meanwhile.
"""
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import tempfile
import time
import zipfile

from measures import PAIRS, QUICK, brevok_session, docked, row, virtual_display

PLUG_INS = 30
ALONE = ["unshare", "--map-current-user", "--net"]
# Command, and the settings with which it shows its icon and asks nothing: file and content.
PEERS = {
    "copyq": (["copyq"], {}),
    "flameshot": (["flameshot"], {"flameshot/flameshot.ini":
                                  "[General]\ndisabledTrayIcon=false\nshowStartupLaunchMessage=false\n"}),
    "keepassxc": (["keepassxc"], {"keepassxc/keepassxc.ini":
                                  "[General]\nUpdateCheckMessageShown=true\n[GUI]\nShowTrayIcon=true\n"}),
    "nextcloud-desktop": (["nextcloud", "--background"], {}),
}


def new_home(folder, settings):
    """The variables of a home in which nothing is but `settings`."""
    home = pathlib.Path(tempfile.mkdtemp(dir=folder))
    names = {"HOME": "home", "XDG_CONFIG_HOME": "config", "XDG_DATA_HOME": "data", "XDG_STATE_HOME": "state",
             "XDG_CACHE_HOME": "cache", "XDG_RUNTIME_DIR": "runtime", "TMPDIR": "tmp"}
    for name in names.values():
        (home / name).mkdir(mode=0o700)
    for name, content in settings.items():
        file = home / "config" / name
        file.parent.mkdir()
        file.write_text(content)
    return {variable: str(home / name) for variable, name in names.items()}


def wakeups(session, process):
    """Of every thread of a process and of those that it has started, so far."""
    return {thread: count for one in brevok_session.with_children(process)
            for thread, (_, count) in session.activity(one.name).items()}


def one_start(build, session, command, environment):
    """@return milliseconds to the icon, MB after 20 s, and wake-ups in the next 10 s; nothing when no icon came"""
    try:
        with docked(build, [*ALONE, *command], environment) as (_, milliseconds, process):
            time.sleep(5 if QUICK else 20)
            memory = session.memory("Pss", "smaps_rollup", process) / 1024
            before = wakeups(session, process)
            time.sleep(10)
            after = wakeups(session, process)
            woken = sum(count - before.get(thread, 0) for thread, count in after.items())
            return milliseconds, memory, woken + len(before.keys() - after.keys())
    except ValueError:
        return None


def desktop_programs(build, session, ours):
    """One dictionary for each program that is installed, ours first."""
    if subprocess.run([*ALONE, "true"], check=False, capture_output=True).returncode:
        print("The other programs are not measured: no network of their own is allowed here.")
        return
    programs = {"tolvane-brevok": (ours, {}), **{name: how for name, how in PEERS.items() if shutil.which(how[0][0])}}
    runs = {name: [] for name in programs}
    with virtual_display() as display:
        for _ in range(3 if QUICK else 7):
            for name, (command, settings) in programs.items():
                with tempfile.TemporaryDirectory(dir=session.folder, ignore_cleanup_errors=True) as folder:
                    # By a path, as an abstract address belongs to a network.
                    bus = subprocess.Popen(
                        ["dbus-daemon", "--session", "--nofork", f"--address=unix:path={folder}/bus",
                         "--print-address"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
                    environment = {**session.environment, **new_home(folder, settings), "DISPLAY": display,
                                   "DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().strip()}
                    environment.pop("QT_QPA_PLATFORM", None)
                    runs[name].append(one_start(build, session, command, environment))
                    brevok_session.end_process(bus, subprocess.signal.SIGTERM)
    for name, measured in runs.items():
        figures = [figure for figure in measured if figure]
        if not figures:
            print(f"{name} has shown no icon.")
            continue
        yield {"name": name, **{key: statistics.median(values) for key, values in
                                zip(("icon ms", "PSS MB", "wake-ups in 10 s"), zip(*figures))}, "starts": len(figures)}


def archive_of(session, name, version):
    """A plug-in of a megabyte in ten files."""
    archive = session.service_root / "archives" / f"{name}-{version}.zip"
    chance = random.Random(name)
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=1) as out:
        out.writestr(f"{name}.InDesignPlugin/Contents/Info.plist", brevok_session.information(name, version, "14.0"))
        for part in range(10):
            out.writestr(f"{name}.InDesignPlugin/Contents/Resources/part-{part}", chance.randbytes(100000))
    return archive


SCRIPT = """set -e
fetch() { curl -sf --cacert "$CA" -o "$2" "$URL$1"; }
fetch /api/plugin/list plugins.json
fetch /api/product/list products.json
for name in $NAMES; do
    fetch "/archives/$name-$VERSION.zip" "$name.zip"
    rm -rf "$name.InDesignPlugin"
    bsdtar -xf "$name.zip"
    rm "$name.zip"
done"""


def whole_update(session):
    """Both from what the service has to what stands on disk: the lists, then each plug-in that has another version."""
    names = [f"Everyday{number}" for number in range(PLUG_INS)]
    (session.service_root / "archives").mkdir(exist_ok=True)
    session.plugins, session.products = [], []
    scratch = session.folder / "script"
    scratch.mkdir()
    session.start_application()
    ours, yardstick = [], []
    for turn in range(max(5, PAIRS // 4) + 1):
        session.plugins = []
        version = f"1.{turn}"
        for name in names:
            session.publish(name, prefix=name, version=version, host_version=140,
                            archive=archive_of(session, name, version))
        if turn == 0:  # there must be something to update
            session.ctl("check")
            session.ctl("install", *names)
            continue
        start = time.perf_counter()
        session.ctl("check")
        session.ctl("update", "--all")
        ours.append(time.perf_counter() - start)
        assert all(session.installed_version(name) == version for name in names)
        start = time.perf_counter()
        subprocess.run(["bash", "-c", SCRIPT], cwd=scratch, check=True,
                       env={**os.environ, "CA": str(session.service_ca), "URL": session.service_url,
                            "NAMES": " ".join(names), "VERSION": version})
        yardstick.append(time.perf_counter() - start)
    session.stop_application()
    return row(f"check and update of {PLUG_INS} plug-ins, beside a script", "s", ours, yardstick, 1)


def show(programs):
    if programs:
        print(f"\n{'beside others that live in a tray':58} {'to the icon':>12} {'PSS':>10} {'wake-ups in 10 s':>17}")
    for one in programs:
        print(f"{one['name']:58} {one['icon ms']:9.1f} ms {one['PSS MB']:7.1f} MB {one['wake-ups in 10 s']:17.0f}")


def plot(programs, folder):
    import matplotlib
    matplotlib.use("Agg")
    from matplotlib import pyplot
    keys = ("icon ms", "PSS MB", "wake-ups in 10 s")
    figure, axes = pyplot.subplots(1, len(keys), figsize=(12, 1 + 0.5 * len(programs)), sharey=True)
    for place, key in zip(axes, keys):
        bars = place.barh([one["name"] for one in programs], [one[key] for one in programs])
        place.bar_label(bars, fmt="%.0f")
        place.set_xlabel(key)
    axes[0].invert_yaxis()
    figure.tight_layout()
    for suffix in ("png", "svg"):
        figure.savefig(folder / f"peers.{suffix}")
