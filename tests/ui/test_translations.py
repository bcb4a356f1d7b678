#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""Every text of the source is translated, with its placeholders, mnemonics and line breaks.

usage: test_translations.py LUPDATE SOURCE_FOLDER
"""
import collections
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

LANGUAGES = ["de", "es", "fr", "ja"]


def messages(path):
    """Source text to translation, None where that is missing or unfinished."""
    found = {}
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            finished = translation is not None and translation.get("type") is None
            text = translation.text if finished else None
            found[(context.findtext("name"), message.findtext("source"))] = text
    return found


def marks(text):
    """What a translation must keep, however its words are ordered."""
    return {
        "placeholders": collections.Counter(re.findall(r"%L?\d+|%n", text)),
        "mnemonics": len(re.findall(r"&(?!&)", text.replace("&&", ""))),
        "line breaks": text.count("\n"),
        "blanks at the end": len(text) - len(text.rstrip(" ")),
        "ellipses": text.count("…"),
    }


def faults(source, translation):
    if not translation:
        return ["not translated"]
    wanted, found = marks(source), marks(translation)
    return [f"other {kind} in {translation!r}" for kind in wanted if set_of(wanted[kind]) != set_of(found[kind])]


def set_of(mark):
    """A placeholder may be repeated or said once where the language asks for it."""
    return set(mark) if isinstance(mark, collections.Counter) else mark


def main():
    lupdate, root = sys.argv[1], pathlib.Path(sys.argv[2])
    bad = []
    with tempfile.TemporaryDirectory() as folder:
        collected = pathlib.Path(folder, "source.ts")
        subprocess.run(
            [lupdate, "-silent", "-locations", "none", root / "src", root / "apps", "-I", root / "src",
             "-ts", collected], check=True
        )
        texts = messages(collected)
    assert len(texts) > 100, "the texts were not found"
    for language in LANGUAGES:
        translated = messages(root / f"resources/translations/tolvane-brevok_{language}.ts")
        for key in texts:
            bad += [f"{language}: {key[1]!r}: {fault}" for fault in faults(key[1], translated.get(key))]
        bad += [f"{language}: {key[1]!r}: no longer in the source" for key in translated.keys() - texts.keys()]
    print("\n".join(sorted(bad)))
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
