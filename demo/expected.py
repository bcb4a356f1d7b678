# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""What the demo expects to find at first, and how it says that it found something else."""

# What lay-out-hosts lays out: name, its "Version" and label as a target, the host version of the builds that fit it.
HOSTS = {
    "Adobe InDesign CS5.5": ("75", "Adobe InDesign CS5.5", 75),
    "Adobe InDesign CC 2019": ("140", "Adobe InDesign CC 2019", 140),
    "Adobe InDesign 2020": ("151", "Adobe InDesign CC 2020", 150),
    "Adobe InDesign 2021": ("162", "Adobe InDesign CC 2021", 160),
    "Adobe InDesign 2021 (16.4)": ("164", "Adobe InDesign CC 2021", 163),
    "Adobe InDesign 2024": ("190", "Adobe InDesign CC 2024", 190),
    "Adobe InCopy 2020": ("150", "Adobe InCopy CC 2020", 150),
}

# Every package's status before anything is done.
BEFORE = {
    "BRSW20": "Not Installed",
    "CVTB41": "Mixed Not Updated",  # current, outdated, missing, built for another host version
    "DMFN27": "Not Updated",
    "FLIM33": "Not Installed",
    "IKCP10": "Mixed",
    "KWBL56": "Up To Date",
    "MGIX14": "Up To Date",
    "PWPF07": "Up To Date",
    "QLNT01": "Missing Data",  # offered for no host that is there
    "SBLK61": "Mixed Not Updated",
    "0xr5700": "Mixed",
    "KM#xR57": "Not Installed",
}
UPDATES_BEFORE = 3

# The window that tells what a check found.
RESULT_TITLES = {"You're up-to-date!", "Plug-In update available!", "Plug-In updates available!"}


class StepFailed(Exception):
    """A step did not have its expected result; the text says which and how."""


def expect(name, found, wanted):
    if found != wanted:
        raise StepFailed(f"{name}: expected {wanted!r}, found {found!r}")


def expect_same(name, found, wanted):
    """Compares two dictionaries and names only what differs."""
    differences = [f"  {key}: expected {wanted.get(key, 'nothing')}, found {found.get(key, 'nothing')}"
                   for key in sorted({*found, *wanted}, key=str) if found.get(key) != wanted.get(key)]
    if differences:
        raise StepFailed("\n".join([f"{name} differ:"] + differences))
