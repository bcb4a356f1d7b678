"""Plays a story with the real programs, and keeps the oracle told of what happens."""
import contextlib
import dataclasses
import json
import os
import signal
import sqlite3
import subprocess

import oracle as oracles
from service import ACCOUNT, PASSWORD
from story import PREFIXES
from world import Broken, PassedOver, World, end_process, wait_for

PATIENCE = 100  # seconds until a call counts as hanging
WRONG_PASSWORD = "engine-of-indifference-51"
LOOKING = ("check", "install", "remove", "converge")  # calls after which the statuses are true
PROCESSES = {"application": "tolvane-brevok", "helper": "tolvane-brevok-helper", "network": "tolvane-brevok-network"}


@dataclasses.dataclass
class Answer:
    status: int
    text: str
    document: dict
    troubled: bool  # something went wrong on purpose, so failing is no fault


class Stage(World):
    """A step that is a person's is played by the method do_WORD."""

    def __init__(self, programs, library, story):
        super().__init__(programs, library, story)
        self.oracle = oracles.Oracle()
        self.strikes = self.lists_read = 0
        self.lethal = False  # the latest strike
        self.log_start = 0  # of the copy that runs
        self.signed_in, self.settings = {False}, {}  # what may be
        self.said = []  # everything that the programs said to a person
        self.notes = []  # about the step
        self.looks = []  # what lay on the disk whenever the program may have looked at the bundles for the last time
        self.in_flight = False  # lists may be on their way that no call waits for
        self.goes_on = False  # an operation may, whose call was cut
        self.network_struck = False  # which leaves a part of a file, until the next one or the next start
        self.callback(self.end_application)

    def end_application(self):
        self.session.stop_application(signal.SIGKILL)

    def play(self, step):
        """@return what a reader of the story wants to know besides"""
        self.notes = []
        try:
            getattr(self, "do_" + step[0])(*step[1:])
        except PassedOver:
            self.notes.append("passed over")
        self.notice_end()
        return "; ".join(self.notes)

    # what the program does by itself

    def hear(self, certain):
        """Tells the oracle what the program has been given and finds."""
        given = self.service.given[self.lists_read:]
        self.lists_read += len(given)
        for place, listed in given:
            (self.oracle.happened if certain else self.oracle.may_have_happened)(place, listed)
        if self.is_running():
            hosts = self.hosts_on_disk()
            there = {path for state in self.oracle.now for path in (*state["targets"], *(host[0] for host in hosts))}
            there = {path for path in there if os.path.exists(path)}
            for change, happened in (
                    (lambda targets: oracles.after_search(targets, hosts, there.__contains__), self.oracle.happened),
                    (lambda targets: oracles.after_look(targets, there.__contains__), self.oracle.may_have_happened)):
                if any(change(state["targets"]) != state["targets"] for state in self.oracle.now):
                    happened("targets", change)

    def notice_end(self):
        """The program may end only where the story ends it."""
        struck = self.world / "struck"
        told = struck.read_text().strip() if struck.exists() else ""
        if told:
            struck.unlink()
            self.notes.append("struck " + told)
            self.full = self.full or (self.world / "full").exists()
            self.network_struck = self.network_struck or told.startswith(PROCESSES["network"] + ":")
        if self.is_running() and told.startswith(PROCESSES["application"] + ":") and self.lethal:
            self.do_kill()  # it is on its way
            if str(self.disks["targets"]) in told and not self.full and not self.unfinished():
                raise Broken("killed amid a change of a target, and no unfinished command tells of it")
        elif self.is_running() and self.session.application.poll() is not None:
            raise Broken(f"the program ended by itself: {self.session.application.returncode}")

    def program_ended(self):
        self.caller.asked = None
        self.hear(False)
        self.oracle.program_ended()
        self.goes_on = False
        self.looks.clear()

    def unfinished(self):
        """The builds that have commands, as they are stored: by key the commands."""
        if not self.session.state_file().exists():
            return {}
        # Not for reading alone: what a kill has left half written is taken back first.
        with contextlib.closing(sqlite3.connect(f"file:{self.session.state_file()}?mode=rw", uri=True)) as state:
            rows = state.execute("SELECT value FROM state WHERE key = 'OrlecPluginsData'").fetchall() if state.execute(
                "SELECT 1 FROM sqlite_master WHERE name = 'state'").fetchone() else []
        builds = [json.loads(row[0]) for row in rows]
        return {oracles.build_key(one): one["CommandQueue"] for one in builds if one.get("CommandQueue")}

    # calls

    def call(self, *words, meanwhile=None, **environment):
        """One call of brevokctl, during which something may go wrong."""
        self.pass_over_if(not self.is_running())
        meanwhile = meanwhile or {}
        troubled = bool(meanwhile) or self.full or bool(self.service.faults)
        if "strike" in meanwhile:
            program, disk, number, what = meanwhile["strike"]
            self.strikes, self.lethal = self.strikes + 1, what == "kill"
            (self.world / "strike").write_text(
                f"{self.strikes} {PROCESSES[program]} {self.disks[disk]} {number} {what}\n")
        before = self.service.faults.get(meanwhile.get("silent"))
        if "silent" in meanwhile:
            self.service.spoil(meanwhile["silent"], "silent")
        process = subprocess.Popen([self.session.programs / "brevokctl", *words, "--json"], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   env={**self.session.environment, **environment}, **self.session.user)
        try:
            if "silent" in meanwhile:
                wait_for(lambda: self.service.is_asked() or process.poll() is not None, "somebody asks or answers")
                self.interrupt(meanwhile["then"], process)
                self.service.spoil(meanwhile["silent"], before)
            out, err = process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired as hanging:
            raise Broken(f"brevokctl {' '.join(map(str, words))} got no answer") from hanging
        finally:
            end_process(process, signal.SIGKILL)
            (self.world / "strike").unlink(missing_ok=True)
        self.said += [out, err]
        document = {}
        with contextlib.suppress(ValueError):
            document = json.loads(out)
        self.notes.append(f"exit {process.returncode}")
        self.notice_end()
        self.hear(not troubled or process.returncode == 0)
        if process.returncode == 0:
            self.oracle.all_is_stored()
            if words[0] in LOOKING:
                self.looks.clear()
            self.in_flight = self.in_flight and words[0] != "check"
        elif not troubled and process.returncode != 1:
            raise Broken(f"brevokctl {' '.join(map(str, words))}: {process.returncode} {err}")
        return Answer(process.returncode, out + err, document, troubled)

    def interrupt(self, how, process):
        self.in_flight, self.goes_on = True, how in ("give up", "bus")
        if how == "kill":
            self.do_kill()
        elif how == "quit":
            self.do_quit()
        elif how == "give up":
            process.send_signal(signal.SIGINT)
            process.wait(PATIENCE)
        elif how == "bus":
            self.do_bus()

    def must_succeed(self, answer, what):
        if answer.status != 0 and not answer.troubled:
            raise Broken(f"{what} failed although nothing went wrong: {answer.text.strip()}")

    # what people do

    def do_start(self):
        state = self.session.state_file()
        # Without space a change of the state that is to be taken back cannot be, and nothing can be read.
        unreadable = self.full and state.with_name(state.name + "-journal").exists()
        self.pass_over_if(self.is_running() or unreadable)
        self.log_start, self.network_struck, self.in_flight = len(self.session.log()), False, True
        before = dict(self.service.asked)
        self.session.start_application()
        wait_for(lambda: all(count > before[place] for place, count in self.service.asked.items()),
                 "the lists are asked for")
        self.caller.asked, self.caller.bus = self.session.application.pid, self.road.bus.pid

    def do_quit(self):
        self.pass_over_if(not self.is_running())
        self.caller.asked = None
        status = self.session.stop_application()
        self.program_ended()
        if status != 0:
            raise Broken(f"quitting ended with {status}")

    def do_kill(self):
        self.pass_over_if(not self.is_running())
        self.session.stop_application(signal.SIGKILL)
        self.program_ended()

    def do_signin(self, right, meanwhile):
        before = set(self.signed_in)
        answer = self.call("signin", ACCOUNT, meanwhile=meanwhile,
                           BREVOK_PASSWORD=PASSWORD if right else WRONG_PASSWORD)
        if answer.status == 0:
            self.signed_in = {True}
        else:
            self.signed_in = before | {False} | ({True} if right else set()) if answer.troubled else {False}
        if right:
            self.must_succeed(answer, "signing in")
        elif answer.status == 0:
            raise Broken("a wrong password was taken")

    def do_signout(self, meanwhile):
        answer = self.call("signout", meanwhile=meanwhile)
        self.signed_in = {False} if answer.status == 0 else self.signed_in | {False}

    def do_check(self, meanwhile):
        answer = self.call("check", meanwhile=meanwhile)
        if self.signed_in == {False}:
            self.must_succeed(answer, "a check")

    def do_set(self, key, value):
        answer = self.call("settings", "set", key, value)
        known = self.settings.get(key, {None})
        self.settings[key] = {value} if answer.status == 0 else known | {value}
        self.must_succeed(answer, "setting " + key)

    def do_discard(self):
        self.must_succeed(self.call("discard"), "discarding")

    def do_target(self, what, host):
        path, version = self.target_of(host), next((str(one[3] // 100) for one in self.hosts_on_disk()
                                                    if one[0] == self.target_of(host)), "140")
        words = [path, "--type", "InDesign", "--version", version] if what == "add" else [path]
        answer = self.call("targets", what, *words)

        def change(targets):
            known = next((one for one in targets if one.rstrip("/") == path.rstrip("/")), None)
            if what == "add":
                return {**targets, known or path: oracles.new_target("InDesign", version)}
            if known is None:
                return targets
            changed = {"removed": True} if what == "remove" else {"enabled": what == "enable"}
            return {**targets, known: {**targets[known], **changed}}

        if answer.status == 0:
            self.oracle.happened("targets", change)
            self.oracle.all_is_stored()
        elif answer.troubled:
            self.oracle.may_have_happened("targets", change)
        elif what == "add" and os.path.exists(path):
            self.must_succeed(answer, "adding a target")

    # what changes bundles

    def do_install(self, prefix, meanwhile):
        return self.operation(("install", prefix), [prefix], [], meanwhile)

    def do_update(self, meanwhile):
        return self.operation(("update", "--all"), PREFIXES, [], meanwhile)

    def do_remove(self, prefix, meanwhile):
        return self.operation(("remove", prefix), [], [prefix], meanwhile)

    def do_converge(self, meanwhile):
        required, forbidden = self.policy
        installs = PREFIXES if self.settings.get("autoUpdate", {"no"}) != {"no"} else required
        return self.operation(("converge",), installs, forbidden, meanwhile)

    def operation(self, words, installs, removals, meanwhile):
        self.pass_over_if(not self.is_running())
        disk, states, pending = self.disk(), list(self.oracle.now), self.unfinished()
        gone = any(oracles.is_valid(target) and not os.path.exists(path)  # which no search may have told
                   for state in states for path, target in state["targets"].items())
        answer = self.call(*words, meanwhile=meanwhile)
        self.goes_on = self.goes_on and answer.status != 0
        for key, commands in pending.items():  # what is begun again carries them out, too
            build = next(state["builds"][key] for state in states if key in state["builds"])
            for command, path, *_ in commands:
                self.may_become(os.path.normpath(path), {(build["Name"], build["Version"], build["HostVersion"])
                                                         if command == "installStart" else None})
        for state in states + self.oracle.now:
            for prefix in installs:
                for path, builds in oracles.planned(disk if not pending else {}, state, prefix).items():
                    self.may_become(path, {(one["Name"], one["Version"], one["HostVersion"]) for one in builds})
            for prefix in removals:
                going, _ = oracles.removable(disk, state, prefix)
                for path in going:
                    self.may_become(path, {None})
        known = any(prefix == one["Prefix"] for prefix in (*installs, *removals)
                    for state in states for one in state["packages"].values())
        if words[0] in ("install", "remove") and known and not pending and not gone:
            self.must_succeed(answer, " ".join(words))
        if self.is_running():
            self.road.start_helper()  # which makes good what one that was killed has left
        # Who lost the helper amid the work cannot know how far that got.
        keys = ("outcome", "changed", "deferred", "failed") if "strike" not in meanwhile else ("changed", "deferred")
        self.compare_with_outcome([one for key in keys for one in answer.document.get(key, [])], disk)
        if answer.status == 0 and words[0] in ("install", "update") and not gone and not pending:
            self.compare_with_plan(installs, disk, states if words[0] == "install" else [])

    def compare_with_outcome(self, entries, before):
        """What a person is told has become of the bundles is what became of them."""
        now = self.disk()
        for entry in entries:
            if not entry.get("target") or not entry.get("plugin"):
                continue
            path = oracles.bundle_in(entry["target"], entry["plugin"])
            right = {"installed": path in now, "removed": path not in now, "skipped": now.get(path) == before.get(path),
                     "failed": now.get(path) == before.get(path), "left alone": path in now}
            # Two of its packages may have worked on the same bundle.
            if not right[entry["result"]] and sum(path == oracles.bundle_in(one.get("target", ""), one.get("plugin", ""))
                                                  for one in entries) == 1:
                raise Broken(f"told is {entry}, but there is {now.get(path)} where {before.get(path)} was")

    def compare_with_plan(self, prefixes, before, states):
        """A success has done everything that was to do."""
        now = self.bundles()
        for prefix in prefixes if len(states) == 1 else ():
            for path, builds in oracles.planned(before, states[0], prefix, must=True).items():
                if now.get(path) not in {(one["Name"], one["Version"], one["HostVersion"]) for one in builds}:
                    raise Broken(f"an install that succeeded left {now.get(path)} in {path}")

    def may_become(self, path, what):
        self.expected[path] = self.expected.get(path, {None}) | what
