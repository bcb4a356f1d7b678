"""What the rules say must be, told from what lies on disk, what the service gave and what was asked for.

Nothing here knows how the program does it. Where a rule leaves open what became of something, as when the program was
killed before it had said that a change is stored, every state that may be is kept, until one of them shows.
"""
import itertools
import json
import os
import re

MISSING, ABSENT, OLD, CURRENT, PENDING, MIXED, MIXED_OLD = range(1, 8)
SUPPORT_PLUGINS = ("Tolvane", "Vondrel Tools")
SUPPORT_PREFIXES = ("KM#xR57", "0xr5700")
SEARCHED_NAMES = re.compile(r".*InDesign (20|CS|CC).*|.*InCopy 20.*")


# versions

def version_parts(version):
    return re.findall(r"[0-9]+|[A-Za-z]+", version)


def compare_versions(one, other):
    """Below, at or above 0, as the updater's standard comparator orders versions of numbers, periods and letters."""
    first, second = version_parts(one), version_parts(other)
    for a, b in itertools.zip_longest(first, second):
        if a is None or b is None:
            longer = b if a is None else a
            if longer.isdigit() and int(longer) == 0:
                continue
            sign = 1 if longer.isdigit() else -1  # what is followed by letters comes before
            return sign if b is None else -sign
        if a.isdigit() != b.isdigit():
            return 1 if a.isdigit() else -1
        if a != b and (not a.isdigit() or int(a) != int(b)):
            low = int(a) < int(b) if a.isdigit() else a < b
            return -1 if low else 1
    return 0


# the catalogue: {"builds": {key: build}, "prefixes" and "undropped": {prefix: [key]}, "packages": {name: record}}

def build_key(build):
    return f"{build['HostVersion']}:{build['Name']}_{build['Version']}"


def after_plugin_list(catalogue, listed):
    chosen = {}
    for build in listed:
        key = (build["HostVersion"], build["Name"], build["Prefix"])
        if key not in chosen or compare_versions(chosen[key]["Version"], build["Version"]) <= 0:
            chosen[key] = build
    builds, prefixes = dict(catalogue["builds"]), {p: list(keys) for p, keys in catalogue["prefixes"].items()}
    reply = {}
    for build in chosen.values():
        key, prefix = build_key(build), build["Prefix"]
        stored = prefixes.get(prefix)
        place = next((n for n, one in enumerate(stored or []) if builds[one]["Name"] == build["Name"]
                      and builds[one]["HostVersion"] == build["HostVersion"]), None)
        reply.setdefault(prefix, []).append(key)
        builds.setdefault(key, {name: build[name] for name in ("Name", "Version", "HostVersion")})
        if stored is None:
            prefixes[prefix] = [key]
        elif place is None:
            stored.append(key)
        else:
            stored[place] = key
    undropped = dict(prefixes)
    for prefix, keys in reply.items():
        if len(keys) != len(prefixes[prefix]):
            left, kept = list(keys), []
            for key in prefixes[prefix]:
                if key in left:
                    left.remove(key)
                    kept.append(key)
            prefixes[prefix] = kept
    # Who shows statuses hears of the list before builds are dropped, and of that with the next change.
    return {**catalogue, "builds": builds, "prefixes": prefixes, "undropped": undropped}


def after_product_list(catalogue, listed):
    packages = dict(catalogue["packages"])
    for product in listed:
        packages[product["Name"]] = {"Prefix": product["Prefix"], "Version": product["Version"]}
    return {**catalogue, "packages": packages}


# what is installed

def same_side(major, one, other):
    split = {16: 3, 7: 5}.get(major)
    return split is None or (one < split) == (other < split)


def fits(target_version, host):
    """Whether a build for a host goes with a target, as the statuses see it."""
    if target_version // 10 != host // 10:
        return False
    if target_version // 10 in (16, 7):
        return same_side(target_version // 10, target_version % 10, host % 10)
    return target_version % 10 >= host % 10


def is_planned(target_version, host):
    """Whether it is installed there: not everything that fits is."""
    return fits(target_version, host) and target_version % 10 >= host % 10


def bundle_in(target, name):
    return os.path.normpath(f"{target}/Tolvane/{name}.InDesignPlugin")


def host_code(text):
    return int(float(text) * 10.0)


def status_of_build(disk, target, version, build):
    """`disk` has the information of every bundle by path; a broken one has none."""
    path = bundle_in(target, build["Name"])
    if path not in disk:
        return ABSENT
    found = disk[path]
    if "TolvaneHostAppShortVersion" not in found:
        return OLD
    installed_for = host_code(found["TolvaneHostAppShortVersion"])
    if installed_for // 10 != version // 10 or not same_side(version // 10, version % 10, installed_for % 10):
        return OLD
    installed = found.get("CFBundleShortVersionString", "")
    if not installed:
        return ABSENT
    installed = installed.split(" ")[0]
    if not installed or not build["Version"]:
        return MISSING
    return OLD if compare_versions(installed, build["Version"]) < 0 else CURRENT


def is_up_to_date(disk, target, build):
    """As planning sees it, which installs nothing then."""
    found = disk.get(bundle_in(target, build["Name"]), {})
    if "TolvaneHostAppShortVersion" not in found:
        return False
    installed_for, host = host_code(found["TolvaneHostAppShortVersion"]), build["HostVersion"]
    if host // 10 != installed_for // 10 or host % 10 < installed_for % 10:
        return False
    installed = found.get("CFBundleShortVersionString", "").split(" ")[0]
    return bool(installed) and compare_versions(installed, build["Version"]) >= 0


def combined(status, result, name, prefix):
    if status == result:
        return status
    if name in SUPPORT_PLUGINS:
        if prefix not in SUPPORT_PREFIXES:
            return status
        return result if status == MISSING else MIXED
    if status == MISSING:
        return result
    return MIXED_OLD if status in (MIXED_OLD, OLD) or result == OLD else MIXED


def builds_of(state, prefix):
    return [state["builds"][key] for key in state["prefixes"].get(prefix, [])]


def is_valid(target):
    return target["enabled"] and not target["removed"] and not target["invalid"]


def package_statuses(disk, state, prefix, pending, listed="prefixes"):
    """What may be shown, as no rule says which target comes first. `pending` has the keys of the builds with unfinished
    commands."""
    targets = [results_in(path, int(target["version"]), disk, state, state[listed].get(prefix, []), pending)
               for path, target in state["targets"].items() if is_valid(target)]
    orders = [targets]
    if any(result in (PENDING, MISSING) for results in targets for result, _ in results):
        orders = set(itertools.permutations(targets))  # else it makes no difference
    return {status_over(itertools.chain(*order), prefix) for order in orders}


def results_in(path, version, disk, state, keys, pending):
    """Of the builds that are looked at in a target: (result, name)."""
    results = []
    for key in keys:
        build = state["builds"][key]
        if not fits(version, build["HostVersion"]):
            continue
        if key in pending:
            return (*results, (PENDING, build["Name"]))
        results.append((status_of_build(disk, path, version, build), build["Name"]))
    return tuple(results)


def status_over(results, prefix):
    status = MISSING
    for result, name in results:
        status = PENDING if result == PENDING else combined(status, result, name, prefix)
    return status


# operations

def planned(disk, state, prefix, must=False):
    """The bundles that an install makes, by path: the builds that may stand there afterwards. A build that one target
    needs goes into every other that is looked at after that one, too, even where it is up to date: so it may, but
    need not."""
    result, others = {}, {}
    for build in builds_of(state, prefix):
        fitting = [path for path, target in state["targets"].items() if is_valid(target)
                   and is_planned(int(target["version"]), build["HostVersion"])]
        needing = [path for path in fitting if not is_up_to_date(disk, path, build)]
        for path in fitting if needing else ():
            (result if path in needing else others).setdefault(bundle_in(path, build["Name"]), []).append(build)
    if must:
        return {path: builds + others.get(path, []) for path, builds in result.items()}
    return {path: result.get(path, []) + others.get(path, []) for path in {**result, **others}}


def may_be_removed(disk, state, name, target, prefix):
    for record in state["packages"].values():
        other = record["Prefix"]
        names = [build["Name"] for build in builds_of(state, other)]
        if other in (prefix, *SUPPORT_PREFIXES) or name not in names:
            continue
        if all(bundle_in(target, one) in disk for one in names):
            return False
    return True


def removable(disk, state, prefix):
    """The bundles that a removal takes away, and those that it leaves because another package needs them."""
    going, needed = set(), set()
    for path, target in state["targets"].items():
        for build in builds_of(state, prefix) if is_valid(target) else ():
            bundle = bundle_in(path, build["Name"])
            (going if may_be_removed(disk, state, build["Name"], path, prefix) else needed).add(bundle)
    return going, needed


# targets

def is_searched(path):
    """Whether the search tells when the application beside a target comes or goes."""
    return SEARCHED_NAMES.fullmatch(os.path.basename(os.path.dirname(path.rstrip("/")))) is not None


def after_search(targets, hosts, exists):
    """`hosts` are the applications that lie in the searched folders: (target path, name, type, version)."""
    targets = {path: dict(target, invalid=target["invalid"] or not exists(path)) if is_searched(path) else target
               for path, target in targets.items()}
    for path, name, kind, version in hosts:
        if not SEARCHED_NAMES.fullmatch(name):
            continue
        code = str(version // 100)
        known = targets.get(path)
        if (known is None or known["version"] != code) and exists(path):
            targets[path] = new_target(kind, code)
        elif known is not None:
            targets[path] = dict(known, invalid=False)
    return targets


def after_look(targets, exists):
    """The other targets are looked at when the search has something else to tell."""
    return {path: target if is_searched(path) else dict(target, invalid=not exists(path))
            for path, target in targets.items()}


def new_target(kind, version):
    return {"type": kind, "version": version, "enabled": True, "removed": False, "invalid": False}


EVENTS = {
    "plugins": lambda state, listed: after_plugin_list(state, listed),
    "products": lambda state, listed: after_product_list(state, listed),
    "targets": lambda state, changed: {**state, "targets": changed(state["targets"])},
}


class Oracle:
    """Every state that the program may be in."""

    def __init__(self):
        self.stored = [{"builds": {}, "prefixes": {}, "undropped": {}, "packages": {}, "targets": {}}]
        self.since = []  # what happened since, and may not be stored yet: (kind, what)
        self.now = list(self.stored)

    def happened(self, kind, what):
        self.since.append((kind, what))
        self.now = distinct([EVENTS[kind](state, what) for state in self.now])

    def may_have_happened(self, kind, what):
        self.since.append((kind, what))
        self.now = distinct(self.now + [EVENTS[kind](state, what) for state in self.now])

    def all_is_stored(self):
        """The program has said so."""
        self.stored, self.since = list(self.now), []

    def program_ended(self):
        """What had not been confirmed may be stored or not, each kind in its order."""
        states = self.stored
        for kind in EVENTS:
            for what in (what for one, what in self.since if one == kind):
                states = distinct(states + [EVENTS[kind](state, what) for state in states])
        self.now = self.stored = states
        self.since = []

    def agrees(self, shown, final):
        """Whether any state does; when what is shown is final, the others are forgotten."""
        agreeing = [state for state in self.now if shown(state)]
        if agreeing and (final or len(self.now) > 100):
            self.now = agreeing
        return bool(agreeing)


def distinct(states):
    return list({json.dumps(state, sort_keys=True): state for state in states}.values())
