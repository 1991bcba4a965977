#!/usr/bin/env python3
"""Measures time and memory of the program on data of several sizes, for the guide's last chapter.
Run by hand on an idle machine; writes a table with the date and the kind of the machine.

  measure.py PROGRAM TABLE
"""
import csv
import datetime
import os
import platform
import random
import subprocess
import sys
import tempfile


def write(path, corner, rows, columns, value):
    with open(path, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file)
        writer.writerow([corner, *columns])
        writer.writerows([row, *(value(i, j) for j in range(len(columns)))] for i, row in enumerate(rows))


def make_session(program, folder, otus, communities, traits):
    """A gradient that every OTU has an optimum on; traits follow the optimum in part."""
    random.seed(otus * communities + traits)
    species = [f"sp{i}" for i in range(otus)]
    sites = [f"s{i}" for i in range(communities)]
    optima = [random.random() for _ in species]
    write(f"{folder}/b.csv", "OTU", species, [f"t{k}" for k in range(traits)],
          lambda i, _: f"{optima[i] + random.gauss(1, 0.5):.4f}")
    write(f"{folder}/w.csv", "site", sites, species,
          lambda i, j: random.randint(1, 5) if abs(i / communities - optima[j]) < random.random() / 3 else
          int(i == j % communities or j == i % otus))
    write(f"{folder}/e.csv", "site", sites, ["e1", "e2", "e3", "e4"],
          lambda i, j: f"{(i / communities if j == 0 else 0) + random.gauss(0, 0.1):.4f}")
    run(program, folder, "import", "--traits", "b.csv", "--communities", "w.csv", "--environment", "e.csv",
        "--session", "s", "--force", "--quiet")


def run(program, folder, *arguments):
    """Seconds on the clock, of all cores, and MiB at the peak."""
    start = datetime.datetime.now()
    process = subprocess.Popen([program, *arguments], cwd=folder, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"failed: {arguments}")
    seconds = (datetime.datetime.now() - start).total_seconds()
    return seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def model():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        names = [line.split(":")[1].strip() for line in file if line.startswith("model name")]
    return f"{names[0] if names else platform.machine()}, {len(os.sched_getaffinity(0))} cores"


MEASURES = [("mantel", n, c) for n, c in
            [(50, 30), (100, 100), (300, 100), (1000, 100), (100, 300), (100, 1000)]]
MEASURES += [(m, n, c) for m in ("procrustes", "rv") for n, c in [(50, 30), (100, 100), (300, 100)]]
RANKINGS = [("TE", 10), ("TE", 15), ("XE", 10), ("XE", 13), ("XE.T", 10)]


def main(program, table):
    rows = []
    with tempfile.TemporaryDirectory() as folder:
        for measure, otus, communities in MEASURES:
            make_session(program, folder, otus, communities, 8)
            cost = run(program, folder, "analyse", "s", "--iterations", "1000", "--seed", "1", "--congruence", measure,
                       "--force", "--quiet")
            rows.append([f"{measure}-{otus}-{communities}", *cost])
        for criterion, traits in RANKINGS:
            make_session(program, folder, 100, 100, traits)
            cost = run(program, folder, "rank", "s", "--criterion", criterion, "--seed", "1", "--force", "--quiet")
            rows.append([f"rank-{criterion}-{traits}", *cost])
        make_session(program, folder, 100, 100, 6)
        cost = run(program, folder, "rank", "s", "--criterion", "TE", "--test", "999", "--seed", "1", "--force", "--quiet")
        rows.append(["test-TE-6", *cost])
    with open(table, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(["run", "seconds", "seconds of all cores", "MiB", "date", "machine"])
        today, machine = datetime.date.today(), model()
        writer.writerows([name, *(f"{x:.2f}" for x in cost), today, machine] for name, *cost in rows)


if __name__ == "__main__":
    main(os.path.realpath(sys.argv[1]), sys.argv[2])
