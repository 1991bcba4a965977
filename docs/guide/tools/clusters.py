#!/usr/bin/env python3
"""Measures how fast subsets of traits are rated on one core and what further cores bring, and
estimates from that what searches of 30 and 40 traits take on larger machines, for the guide's last
chapter. Run by hand on an idle machine; PROGRAM stands beside PROGRAM-mpi.

  clusters.py PROGRAM TABLE
"""
import csv
import datetime
import math
import os
import re
import subprocess
import sys
import tempfile

from measure import make_session, model, run

CRITERIA = [(criterion, measure) for measure in ("mantel", "rv", "procrustes")
            for criterion in ("XE", "RE")]
UNITS = {"seconds": 1, "minutes": 60, "hours": 3600, "days": 86400, "years": 31557600}
TIMES = 2
SECONDS = 8  # of the shorter runs on one core, beside which starting processes costs little


def seconds_by_sample(program, folder, *options):
    """Seconds of the whole search on one core, by the sample that the program rates."""
    said = subprocess.run([program, "rank", "s", *options, "--dry-run", "--threads", "1"], cwd=folder,
                          stdout=subprocess.PIPE, text=True, check=True).stdout
    time, unit = re.search(r"about ([0-9.e+]+) (\w+) on 1 core", said).groups()
    return float(time) * UNITS[unit]


def seconds_of(starts, folder, *options):
    """Shortest of some runs, the kinds of start alternating."""
    seconds = {name: [] for name in starts}
    for _ in range(TIMES):
        for name, (start, threads) in starts.items():
            seconds[name].append(run(start[0], folder, *start[1:], "rank", "s", *options, "--threads", threads,
                                     "--tables", "no", "--force", "--quiet")[0])
    return {name: min(values) for name, values in seconds.items()}


def main(program, table):
    starts = {"one core": ([program], "1"), "two threads": ([program], "2"),
              "two ranks": (["mpirun", "--allow-run-as-root", "--oversubscribe", "-n", "2", program + "-mpi"],
                            "1")}
    rows = []
    with tempfile.TemporaryDirectory() as folder:
        sampled = {}
        for traits in (30, 40):
            make_session(program, folder, 100, 100, traits)
            for criterion, measure in CRITERIA:
                sampled[criterion, measure, traits] = seconds_by_sample(
                    program, folder, "--criterion", criterion, "--congruence", measure)
        for criterion, measure in CRITERIA:
            rate = 2**30 / sampled[criterion, measure, 30]
            traits = math.ceil(math.log2(SECONDS * rate))
            make_session(program, folder, 100, 100, traits)
            seconds = seconds_of(starts, folder, "--criterion", criterion, "--congruence", measure)
            threads, ranks = (seconds["one core"] / seconds[f"two {kind}"] / 2 for kind in ("threads", "ranks"))
            row = [f"{criterion}-{measure}", rate, threads, ranks]
            for bits in (30, 40):
                alone = sampled[criterion, measure, bits] / 3600
                row += [alone, *(alone / cores / ranks for cores in (16, 1000))]
            rows.append(row)
    with open(table, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(["search", "subsets per second and core", "efficiency of two threads",
                         "efficiency of two ranks",
                         *(f"2^{bits} on {cores}, hours" for bits in (30, 40) for cores in (1, 16, 1000)),
                         "date", "machine"])
        writer.writerows([name, *(f"{x:.4g}" for x in numbers), datetime.date.today(), model()]
                         for name, *numbers in rows)


if __name__ == "__main__":
    main(os.path.realpath(sys.argv[1]), sys.argv[2])
