#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""Every text of the source is translated, with its placeholders, mnemonics and line breaks, and with one word for
one thing.

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

# What no text may hold: a second word for a thing that has one, or marks that are not the language's.
UNWANTED = {
    "en": {r"(?i)e-mail": "email", r"plug-ins\b": "Plug-Ins", r"[“”]": "straight quotation marks"},
    "de": {r"[^\u00a0]…": "no-break space before …", r"Plug-in": "Plug-In",
           r"\bApp\b|\bApp-|Anwendung": "Programm", r"Ausgabe|Fassung": "Version", r"(?i)softwareaktual": "Update",
           r"(?i)weiterleit|weitergeleit": "umleiten", r"Mitteilung": "Benachrichtigung", r"[\"']": "„…“"},
    "es": {r"(?i)asistencia": "soporte", r"\b[Ss]e han? \w+[ai]do\b": "simple past",
           r"(?i)compilaci": "versión", r"(?i)descomprimir": "extraer", r"(?i)fabricante": "desarrollador",
           r"(?i)\bel auxiliar": "programa auxiliar", r"[\"']": "«…»", r"\bKB\b": "kB"},
    "fr": {r"[^\u00a0][!?;»]|«[^\u00a0]| :": "no-break space at the mark", r"(?i)bogue": "problème",
           r"(?i)compilée": "version", r"(?i)\bentrée (?!incorrecte)": "élément", r"[\"']": "’ and «…»", r"\bKo\b": "ko"},
    "ja": {r"不具合": "問題", r"フォルダ(?!ー)": "フォルダー", r"サーバ(?!ー)": "サーバー",
           r"エントリ": "項目", r"ビルド": "バージョン", r"対象": "インストール先", r"あとで": "後で", r"[?]": "？",
           r"\((?!&)": "（）", r"リクエスト.*転送": "リダイレクト", r"[\"']": "「…」", r"\bKB\b": "kB"},
}
NAMED = "%1 Plug-In update is available."  # one package's name, which no language may count
COUNTED = r"^%1 (?!Plug-In)|%1 Plug-In-Update|Hay %1|%1 個"


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


def faults(language, source, translation):
    if not translation:
        return ["not translated"]
    wanted, found = marks(source), marks(translation)
    bad = [f"other {kind} in {translation!r}" for kind in wanted if set_of(wanted[kind]) != set_of(found[kind])]
    if source == NAMED and re.search(COUNTED, translation):
        bad.append(f"counts a name: {translation!r}")
    return bad + unwanted(language, translation)


def unwanted(language, text):
    patterns = {r"\.\.\.": "…", r"[ \u00a0]{2}": "one blank", **UNWANTED[language]}
    return [f"{found[0]!r} instead of {better!r} in {text!r}" for pattern, better in patterns.items()
            if (found := re.search(pattern, text))]


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
    bad += [f"en: {fault}" for _, text in texts for fault in unwanted("en", text)]
    for language in LANGUAGES:
        translated = messages(root / f"resources/translations/tolvane-brevok_{language}.ts")
        for key in texts:
            bad += [f"{language}: {key[1]!r}: {fault}" for fault in faults(language, key[1], translated.get(key))]
        bad += [f"{language}: {key[1]!r}: no longer in the source" for key in translated.keys() - texts.keys()]
    print("\n".join(sorted(bad)))
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
