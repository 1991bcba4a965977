#!/usr/bin/env python3
"""Runs what the pages of the guide show, and puts the outputs and numbers in their places.

  pages.py write FOLDER_OF_PROGRAM PAGE...   renew the pages
  pages.py check FOLDER_OF_PROGRAM PAGE...   fail where a page differs from what the program says
  pages.py cell TABLE ROW COLUMN [FORMAT]    a cell of a CSV table, its row named in the first column

In a page
  - every line "$ command" of a block of the kind "console" is run ("> " continues it); what follows
    up to the next command is its output;
  - 0.285<!--= command --> is the word that the command prints: the word in front is replaced;
  - <!--run: command --> runs without a trace in the page.
All commands of a page run in one shell, one after the other, in a folder of its own with a copy of
the examples; each must succeed. Dates and elapsed times may differ.
"""
import csv
import difflib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
CONSOLE = re.compile(r"^```console\n(.*?)^```$", re.M | re.S)
INLINE = re.compile(r"<!--run: (?P<run>.*?)-->|(?P<word>[^\s|(*]+)<!--= (?P<value>.*?)-->", re.S)
COMMAND = re.compile(r"^\$ (.*(?:\n> .*)*)$", re.M)
PASSING = [
    (re.compile(r"\b[A-Z][a-z]{2} [A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d \d{4}"), "DATE"),
    (re.compile(r"(Elapsed time[^:]*): \S+"), r"\1: TIME"),
]


def lasting(text):
    for pattern, word in PASSING:
        text = pattern.sub(word, text)
    return text


def steps_of(page):
    """The page's commands in their order: where each stands, and what it is."""
    steps = []
    blocks = [match.span() for match in CONSOLE.finditer(page)]
    for match in CONSOLE.finditer(page):
        commands = list(COMMAND.finditer(page, *match.span(1)))
        ends = [c.start() for c in commands[1:]] + [match.end(1)]
        for command, end in zip(commands, ends):
            text = command.group(1).replace("\n> ", "\n")
            steps.append((command.end() + 1, end, text, "output"))
    for match in INLINE.finditer(page):
        if any(start <= match.start() < end for start, end in blocks):
            continue
        if match.group("run"):
            steps.append((match.start(), match.start(), match.group("run"), "nothing"))
        else:
            steps.append((*match.span("word"), " ".join(match.group("value").split()),
                          "word"))
    return sorted(steps)


def run(commands, program):
    """The outputs of the commands, run in one shell."""
    marker = "@@@ end of step"
    script = ["set -o pipefail", f"export PATH={program}:$PATH LC_ALL=C GUIDE={ROOT}/docs/guide",
              f'cell() {{ python3 {pathlib.Path(__file__).resolve()} cell "$@"; }}']
    for command in commands:
        script += ["{ " + command + "\n} </dev/null", f'status=$?; echo; echo "{marker} $status"']
    with tempfile.TemporaryDirectory() as folder:
        shutil.copytree(ROOT / "examples", folder, dirs_exist_ok=True)
        done = subprocess.run(["bash", "-c", "\n".join(script)], cwd=folder, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    outputs = re.split(rf"\n{marker} (\d+)\n", done.stdout)
    texts, statuses = outputs[0::2], outputs[1::2]
    for command, text, status in zip(commands, texts, statuses):
        if status != "0":
            sys.exit(f"This command of the guide failed ({status}):\n{command}\n{text}")
    if len(statuses) != len(commands):
        sys.exit(f"The shell of the guide ended early:\n{done.stdout[-2000:]}")
    return texts[:len(commands)]


def renewed(page, program):
    steps = steps_of(page)
    outputs = run([step[2] for step in steps], program)
    parts, place = [], 0
    for (start, end, command, kind), output in zip(steps, outputs):
        old = page[start:end]
        output = "\n".join(line.rstrip() for line in output.strip("\n").split("\n"))
        if kind == "output":
            output += "\n" if output else ""
            if old.endswith("\n\n"):
                output += "\n"
        if kind == "word" and not re.fullmatch(r"\S+", output):
            sys.exit(f"This command of the guide gives no word: {command}\n{output}")
        parts += [page[place:start], old if lasting(old) == lasting(output) else output]
        if kind == "nothing":
            parts[-1] = ""
        place = end
    return "".join(parts) + page[place:]


def cell(table, row, column, form="{}"):
    with open(table, newline="", encoding="utf-8") as file:
        for line in csv.DictReader(file):
            if next(iter(line.values())) == row:
                value = line[column]
                print(form.format(value if form == "{}" else float(value)))
                return
    sys.exit(f"{table} has no row {row}")


def main(task, *arguments):
    if task == "cell":
        return cell(*arguments)
    differs = False
    for name in map(pathlib.Path, arguments[1:]):
        old = name.read_text(encoding="utf-8")
        new = renewed(old, pathlib.Path(arguments[0]).resolve())
        if new == old:
            continue
        differs = True
        if task == "write":
            name.write_text(new, encoding="utf-8")
        else:
            sys.stdout.writelines(difflib.unified_diff(old.splitlines(True), new.splitlines(True),
                                                       str(name), "what the program says"))
    return 1 if differs and task == "check" else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
