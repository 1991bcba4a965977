#!/usr/bin/env python3
"""How often tests reject at P <= 0.05 in data sets of random traits, where there is nothing to find:
all traits, the winner of a search tested as if it had been chosen beforehand, and the test of the
search itself. Communities and environment are those of examples/aravo. Minutes long; writes a table.

  level.py PROGRAM TABLE [DATA_SETS]
"""
import csv
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile

TRAITS = ["a", "b", "c", "d", "e", "f"]
ITERATIONS = 200
examples = pathlib.Path(__file__).resolve().parents[3] / "examples" / "aravo"
program, table, data_sets = os.path.realpath(sys.argv[1]), sys.argv[2], int((sys.argv[3:] or ["500"])[0])


def rows(path):
    with open(path, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def tessel(folder, *arguments):
    subprocess.run([program, *arguments, "--force", "--quiet"], cwd=folder, check=True)


def probability(folder, file, key, row):
    return next(float(r["P"]) for r in rows(f"{folder}/{file}") if r[key] == row)


random.seed(1)
species = [row["OTU"] for row in rows(examples / "traits.csv")]
rejections = {"all": 0, "naive": 0, "size1": 0, "best": 0}
with tempfile.TemporaryDirectory() as folder:
    for name in "communities.csv", "environment.csv":
        shutil.copy(examples / name, folder)
    for data_set in range(1, data_sets + 1):
        with open(f"{folder}/traits.csv", "w", newline="", encoding="utf-8") as file:
            writer = csv.writer(file)
            writer.writerow(["OTU", *TRAITS])
            writer.writerows([s, *(f"{random.gauss(0, 1):.6g}" for _ in TRAITS)] for s in species)
        tessel(folder, "import", "--traits", "traits.csv", "--communities", "communities.csv",
               "--environment", "environment.csv", "--session", "s")
        seed = ("--seed", str(data_set))
        tessel(folder, "rank", "s", "--criterion", "TE", "--test", str(ITERATIONS - 1), *seed,
               "--tables", "r")
        winner = rows(f"{folder}/r/ranked.csv")[0] if rows(f"{folder}/r/ranked.csv") else None
        chosen = ",".join(t for t in TRAITS if winner and winner[t] == "1")
        for traits, test in (",".join(TRAITS), "all"), (chosen, "naive"):
            if traits:
                tessel(folder, "analyse", "s", "--iterations", str(ITERATIONS), *seed, "--traits", traits,
                       "--tables", "t")
                rejections[test] += probability(folder, "t/statistics.csv", "statistic", "TE") <= 0.05
        rejections["size1"] += probability(folder, "r/test.csv", "size", "1") <= 0.05
        rejections["best"] += probability(folder, "r/test.csv", "size", "all") <= 0.05
with open(table, "w", newline="", encoding="utf-8") as file:
    writer = csv.writer(file, lineterminator="\n")
    writer.writerow(["test", "rejections", "data sets", "traits", "iterations"])
    writer.writerows([test, n, data_sets, len(TRAITS), ITERATIONS] for test, n in rejections.items())
