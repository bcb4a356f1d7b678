#!/usr/bin/python
# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""Ansible module: plug-in packages of one user, through brevokctl."""
import contextlib
import json
import os
import subprocess
import time

from ansible.module_utils.basic import AnsibleModule

DOCUMENTATION = r"""
module: brevok_packages
short_description: Installs, updates and removes plug-in packages with Tolvane Brevok
description:
  - Asks the user's running Tolvane Brevok, or starts one for the time of the task where the user is not logged in.
  - The user is who the task runs as (C(become_user)), and is signed in to the service.
options:
  name:
    description: The packages' prefixes.
    type: list
    elements: str
    required: true
  state:
    description:
      - C(present) installs what is missing in any application; C(latest) updates what is outdated too;
        C(absent) removes.
      - A package that is offered for none of the machine's applications is left alone, and listed as C(unavailable).
    choices: [present, absent, latest]
    default: present
    type: str
  check:
    description: Whether the service is asked for its lists first.
    type: bool
    default: true
  timeout:
    description: Seconds that one call may take.
    type: int
    default: 600
author: Tolvane Brevok contributors
"""

EXAMPLES = r"""
- name: Two packages are there, in their newest version
  brevok_packages:
    name: [CVTB41, KWBL56]
    state: latest
  become: true
  become_user: ada
"""

RETURN = r"""
packages:
  description: Each package's status before the task, and after it.
  returned: always
  type: dict
  sample: {CVTB41: {before: Not Updated, after: Up To Date}}
unavailable:
  description: Packages that no application on this machine can use.
  returned: always
  type: list
failures:
  description: What went wrong, one sentence for each thing.
  returned: when something failed
  type: list
"""

# The statuses with which a package is not yet what is wanted, and the call that makes it so.
MISSING = {"Not Installed", "Mixed", "Mixed Not Updated"}
OUTDATED = {"Not Updated", "Mixed Not Updated"}
UNAVAILABLE = "Missing Data"


def to_change(state, status):
    if state == "absent":
        return status not in ("Not Installed", UNAVAILABLE)
    return status in (MISSING | OUTDATED if state == "latest" else MISSING)


class CallFailed(Exception):
    """A call of brevokctl did not do what it was to do."""

    def __init__(self, sentences, document=None):
        super().__init__(*sentences)
        self.sentences = sentences
        self.document = document or {}


def changed_something(document):
    return any(entry.get("result") in ("installed", "removed") for entry in document.get("outcome", []))


class Control:
    """brevokctl on the user's session bus, or on one that lasts as long as this object is entered."""

    def __init__(self, timeout):
        self.timeout = timeout
        self.environment = dict(os.environ, LC_ALL="C.UTF-8")
        self.bus = None

    def __enter__(self):
        users_bus = f"/run/user/{os.getuid()}/bus"
        if "DBUS_SESSION_BUS_ADDRESS" not in self.environment:
            if os.path.exists(users_bus):
                self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={users_bus}"
                self.environment["XDG_RUNTIME_DIR"] = os.path.dirname(users_bus)
            else:
                try:
                    self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                                                env=self.environment, stdout=subprocess.PIPE, text=True)
                except OSError as error:
                    raise CallFailed([f"dbus-daemon cannot be started: {error.strerror}"]) from error
                self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.stdout.readline().strip()
        return self

    def __exit__(self, *_):
        if self.bus:
            with contextlib.suppress(CallFailed):
                self.call("quit")
            self.bus.terminate()
            self.bus.wait()

    def call(self, *arguments):
        """@return the document that brevokctl prints"""
        try:
            ended = subprocess.run(["brevokctl", "--json", "--timeout", str(self.timeout), *arguments],
                                   env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                   check=False)
        except OSError as error:
            raise CallFailed([f"brevokctl cannot be started: {error.strerror}"]) from error
        try:
            document = json.loads(ended.stdout)
        except ValueError:
            document = {}
        if ended.returncode != 0:
            raise CallFailed(document.get("failures") or [ended.stderr.strip()
                             or f"brevokctl {arguments[0]} ended with exit status {ended.returncode}"], document)
        return document

    def statuses(self):
        document = self.call("status")
        end = time.monotonic() + self.timeout
        while document.get("calculating") and time.monotonic() < end:  # the program may have just been started
            time.sleep(0.2)
            document = self.call("status")
        if not document["session"]["signedIn"]:
            raise CallFailed(["nobody is signed in: brevokctl signin EMAIL"])
        return {package["prefix"]: package["statusName"] for package in document["packages"]}


def run(module, control, result):
    names = list(dict.fromkeys(module.params["name"]))
    state = module.params["state"]
    if module.params["check"] and not module.check_mode:
        control.call("check")
    before = control.statuses()
    unknown = [name for name in names if name not in before]
    if unknown:
        raise CallFailed([f"the catalogue has no package {name}" for name in unknown])
    result["packages"] = {name: {"before": before[name], "after": before[name]} for name in names}
    result["unavailable"] = [name for name in names if before[name] == UNAVAILABLE]
    wanted = [name for name in names if to_change(state, before[name])]
    result["changed"] = bool(wanted)
    if not wanted or module.check_mode:
        return
    try:
        document = control.call("remove" if state == "absent" else "install", *wanted)
        result["changed"] = changed_something(document)
    except CallFailed as failed:
        result["changed"] = changed_something(failed.document)
        raise
    finally:
        with contextlib.suppress(CallFailed):
            after = control.statuses()
            for name in names:
                result["packages"][name]["after"] = after.get(name)


def main():
    module = AnsibleModule(
        argument_spec={
            "name": {"type": "list", "elements": "str", "required": True},
            "state": {"choices": ["present", "absent", "latest"], "default": "present"},
            "check": {"type": "bool", "default": True},
            "timeout": {"type": "int", "default": 600},
        },
        supports_check_mode=True)
    result = {"changed": False, "packages": {}, "unavailable": []}
    try:
        with Control(module.params["timeout"]) as control:
            run(module, control, result)
    except CallFailed as failed:
        module.fail_json(msg="; ".join(failed.sentences), failures=failed.sentences, **result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
