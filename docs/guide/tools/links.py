#!/usr/bin/env python3
"""Checks the links of Markdown files: files and headings within the repository must be there, a DOI
must look like one. Nothing is fetched.

  links.py FILE...
"""
import pathlib
import re
import sys

FENCE = re.compile(r"^```.*?^```$", re.M | re.S)
HEADING = re.compile(r"^#+ (.*)$", re.M)
LINK = re.compile(r"\]\(<?([^)>\s]+)>?\)")
DOI = re.compile(r"https://doi\.org/10\.\d{4,9}/[^\s\"<>\[\]]+[^\s\"<>\[\].,;]")


def anchors_of(path):
    """As forges and pandoc (gfm_auto_identifiers) name headings; repeated ones are numbered."""
    anchors = set()
    for heading in HEADING.findall(FENCE.sub("", path.read_text(encoding="utf-8"))):
        text = re.sub(r"[`*]|\[([^\]]*)\]\([^)]*\)", r"\1", heading).strip().lower()
        anchor = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
        number = 0
        while anchor + (f"-{number}" if number else "") in anchors:
            number += 1
        anchors.add(anchor + (f"-{number}" if number else ""))
    return anchors


def faults_of(path):
    for target in LINK.findall(FENCE.sub("", path.read_text(encoding="utf-8"))):
        if target.startswith("https://doi.org/"):
            if not DOI.fullmatch(target):
                yield f"no DOI: {target}"
        elif not re.match(r"[a-z]+:", target):
            name, _, anchor = target.partition("#")
            aim = (path.parent / name).resolve() if name else path
            if not aim.exists():
                yield f"no such file: {target}"
            elif anchor and anchor not in anchors_of(aim):
                yield f"no such heading: {target}"


faults = [f"{name}: {fault}" for name in sys.argv[1:] for fault in faults_of(pathlib.Path(name))]
print(*faults, sep="\n", end="\n" if faults else "")
sys.exit(1 if faults else 0)
