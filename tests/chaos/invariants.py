"""What must hold after every step of a story."""
import itertools
import json
import os
import time

import oracle as oracles
from service import PASSWORD
from stage import WRONG_PASSWORD
from world import Broken

PATIENCE = 60  # seconds until what should come true counts as missed
QUESTION = "Installer detected one or more unfinished actions."
NAMES = {1: "Missing Data", 2: "Not Installed", 3: "Not Updated", 4: "Up To Date", 5: "In Progress", 6: "Mixed",
         7: "Mixed Not Updated"}


def check(stage):
    """Raises Broken."""
    whole_bundles(stage)
    no_secrets(stage)
    if stage.is_running():
        settled(stage)
        bounded(stage)


def eventually(stage, condition):
    """`condition` gives nothing when all is well, else what is wrong."""
    end = time.monotonic() + PATIENCE
    while True:
        stage.notice_end()
        wrong = condition()
        if not wrong:
            return
        if time.monotonic() > end:
            raise Broken(wrong)
        time.sleep(0.03)


# bundles

def whole_bundles(stage):
    found = stage.bundles()
    for path in {*found, *stage.expected}:
        is_there, may_be = found.get(path), stage.expected.get(path, {None})
        if isinstance(is_there, str):
            raise Broken(f"{path} is {is_there}")
        # What was replaced when the program was killed is put back at the next start.
        if is_there not in may_be and (is_there is not None or stage.is_running()):
            raise Broken(f"{path} is {is_there} and not one of {may_be}")


def leftovers(stage):
    """What has no business where it is."""
    found = list(stage.road.leftovers())
    for folder in stage.session.applications.glob("*/Plug-Ins"):
        found += [path for path in folder.iterdir() if path.name != "Tolvane"]
        found += [path for path in folder.glob("Tolvane/*") if path.suffix != ".InDesignPlugin"
                  or path.name.startswith(".")]
    for path in stage.session.applications.glob("*/Presets/**/*"):
        if path.is_file() and (path.name != "Tolvane.xml" or path.read_bytes() != stage.workspace()):
            found.append(path)
    for path in stage.disks["data"].rglob("*"):
        known = path.name.startswith("state.sqlite") or path.suffix == ".zip"
        if path.is_file() and not known and not (stage.network_struck and ".part-" in path.name):
            found.append(path)
    return found


# what the program says

def shown_by(state, disk, pending, listed="prefixes"):
    """The part of the status document that the rules know; of each package every status that may be."""
    prefixes = {record["Prefix"] for record in state["packages"].values()}
    statuses = {prefix: sorted(NAMES[status] for status in oracles.package_statuses(disk, state, prefix, pending, listed))
                for prefix in prefixes}
    packages = [(name, record["Prefix"], record["Version"], statuses[record["Prefix"]])
                for name, record in state["packages"].items()]
    return {
        "packages": sorted(packages, key=lambda one: one[0].lower()),
        "targets": sorted((path, one["type"], one["version"], one["enabled"], one["removed"], one["invalid"])
                          for path, one in state["targets"].items()),
    }


def shown(document):
    return {
        "packages": [(one["name"], one["prefix"], one["version"], one["statusName"]) for one in document["packages"]],
        "targets": sorted((one["path"], one["type"], one["version"], one["enabled"], one["removed"], one["invalid"])
                          for one in document["targets"]),
    }


def agrees(document, rules):
    said = shown(document)
    waiting = sum(status in (NAMES[oracles.OLD], NAMES[oracles.MIXED_OLD]) for *_, status in said["packages"])
    return (said["targets"] == rules["targets"] and document["updates"] == waiting
            and [one[:3] for one in said["packages"]] == [one[:3] for one in rules["packages"]]
            and all(one[3] in known[3] for one, known in zip(said["packages"], rules["packages"])))


def subsets(keys):
    """What may be left of commands, if it cannot be stored which are carried out."""
    return [some for count in range(len(keys) + 1) for some in itertools.combinations(sorted(keys), count)]


def settled(stage):
    """Waits until the program shows what the rules say, and nothing is left over."""
    session = stage.session

    def wrong():
        stage.hear(not stage.full)
        answer = session.ctl("status", "--json", check=False)
        stage.said.append(answer.stdout)
        if answer.returncode != 0:
            return f"the status cannot be asked for: {answer.stderr}"
        document = json.loads(answer.stdout)
        stored = stage.unfinished()
        troubled = stage.full or "warnings" in document  # what is kept in memory counts
        now = stage.disk()
        if now not in stage.looks:
            stage.looks.append(now)
        views = [(disk, pending) for disk in stage.looks for pending in (subsets(stored) if troubled else [stored])]
        if not stage.oracle.agrees(lambda state: any(
                agrees(document, shown_by(state, disk, pending, listed))
                for disk, pending in views for listed in ("prefixes", "undropped")), not stage.in_flight):
            rules = [lines(shown_by(state, now, stored)) for state in stage.oracle.now]
            return (f"shown is\n{lines(shown(document))}\n    updates: {document['updates']}\nbut it should be\n"
                    + "\nor\n".join(rules))
        if document["session"]["signedIn"] not in stage.signed_in:
            return f"signed in: {document['session']['signedIn']}"
        if stored and QUESTION not in session.log()[stage.log_start:] and not troubled:
            return f"unfinished commands that nobody asks about: {stored}"
        left = leftovers(stage)
        return f"left over: {left}" if left and not stage.full else ""

    stage.road.start_helper()
    eventually(stage, wrong)
    for key, may_be in stage.settings.items():
        value = session.ctl("settings", "get", key).stdout.strip()
        if value not in may_be and None not in may_be:
            raise Broken(f"{key} is {value} and not one of {may_be}")
    whole_bundles(stage)
    if not stage.goes_on:
        stage.changed_by_the_world()  # from here on it stays so


def lines(shown_things):
    return "\n".join(f"    {key}: {value}" for key, value in shown_things.items())


# secrets

def no_secrets(stage):
    secrets = [text.encode() for text in (PASSWORD, WRONG_PASSWORD, *stage.service.session_ids)]
    places = [stage.folder / name for name in ("config", "data", "state", "home", "temporary", "Applications")]
    for place in places:
        for folder, _, files in os.walk(place):
            for file in files:
                path = os.path.join(folder, file)
                if not file.startswith("state.sqlite"):
                    refuse_secrets(secrets, path, lambda path=path: open(path, "rb").read())
    for number, said in enumerate(stage.said):
        refuse_secrets(secrets, f"message {number}", said.encode)
    stage.said.clear()
    for process in filter(str.isdigit, os.listdir("/proc")):
        refuse_secrets(secrets, f"the command line of {process}",
                       lambda process=process: open(f"/proc/{process}/cmdline", "rb").read())


def refuse_secrets(secrets, where, content):
    try:
        text = content()
    except OSError:
        return  # it is gone again
    for secret in secrets:
        if secret in text:
            raise Broken(f"{where} holds the secret {secret.decode()}")


# bounds

MOST = {"rules on the bus": 40, "memory (KiB)": 120 * 1024, "open files": 80, "threads": 30, "log (bytes)": 3 * 1024 * 1024}


def bounded(stage):
    process = f"/proc/{stage.session.application.pid}"
    found = {"memory (KiB)": stage.session.memory("VmRSS"), "open files": len(os.listdir(process + "/fd")),
             "threads": len(os.listdir(process + "/task")), "log (bytes)": len(stage.session.log()),
             "rules on the bus": stage.caller.match_rules()}
    for what, much in found.items():
        if much > MOST[what]:
            raise Broken(f"{what}: {much}")
    # On a busy machine nobody can tell whom an answer waited for.
    quiet = os.getloadavg()[0] < os.cpu_count()
    slowest = stage.caller.take_slowest()
    if slowest > (0.25 if quiet else 10):
        raise Broken(f"the program held an answer back for {slowest:.2f} s")
