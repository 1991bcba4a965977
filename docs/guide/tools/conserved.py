#!/usr/bin/env python3
"""How often tests reject at P <= 0.05 where related species are alike and the traits do nothing: a trait
that nobody measured sorts the species along one variable; the two that are measured evolved apart from it,
along the same tree, that of examples/mafragh. For comparison two random traits. Minutes long; writes a table.

  conserved.py PROGRAM TABLE [DATA_SETS]
"""
import csv
import math
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile

SITES, ITERATIONS = 30, 200
CLADES = {"clades4": 254, "clades7": 244}  # relatives up to this distance are one clade
examples = pathlib.Path(__file__).resolve().parents[3] / "examples" / "mafragh"
program, table, data_sets = os.path.realpath(sys.argv[1]), sys.argv[2], int((sys.argv[3:] or ["300"])[0])

with open(examples / "phylogeny.csv", newline="", encoding="utf-8") as lines:
    header, *body = csv.reader(lines)
species = header[1:]
distance = [[float(d) for d in row[1:]] for row in body]
assert [row[0] for row in body] == species
depth = max(map(max, distance))


def root_of(matrix):
    """The lower triangle whose product with its transpose is the matrix (Cholesky)."""
    low = [[0.0] * len(matrix) for _ in matrix]
    for i, row in enumerate(matrix):
        for j in range(i + 1):
            rest = row[j] - sum(low[i][k] * low[j][k] for k in range(j))
            low[i][j] = math.sqrt(rest) if i == j else rest / low[j][j]
    return low


# Brownian motion along the tree: species share what came before they parted.
shared = root_of([[1 - d / depth + (1e-9 if d == 0 else 0) for d in row] for row in distance])


def random_trait():
    return [random.gauss(0, 1) for _ in species]


def conserved_trait():
    steps = random_trait()
    values = [sum(a * b for a, b in zip(row, steps)) for row in shared]
    mean = sum(values) / len(values)
    spread = math.sqrt(sum((v - mean) ** 2 for v in values) / len(values))
    return [(v - mean) / spread for v in values]


def poisson(rate):
    count, product = 0, random.random()
    while product > math.exp(-rate):
        count, product = count + 1, product * random.random()
    return count


def write(path, first, *body_of_table):
    with open(path, "w", newline="", encoding="utf-8") as file:
        csv.writer(file, lineterminator="\n").writerows([first, *body_of_table])


def tessel(folder, *arguments):
    subprocess.run([program, *arguments, "--force", "--quiet"], cwd=folder, check=True,
                   stderr=subprocess.DEVNULL)


def rejected(folder, statistic):
    with open(f"{folder}/t/statistics.csv", newline="", encoding="utf-8") as file:
        return next(float(r["P"]) for r in csv.DictReader(file) if r["statistic"] == statistic) <= 0.05


random.seed(1)
tests = ["random traits", "free", *CLADES, "TE.P"]
rejections = dict.fromkeys(tests, 0)
with tempfile.TemporaryDirectory() as folder:
    shutil.copy(examples / "phylogeny.nwk", folder)
    for name, limit in CLADES.items():
        clade = [min(j for j, d in enumerate(row) if d <= limit) for row in distance]
        write(f"{folder}/{name}.csv", ["OTU", "clade"], *zip(species, clade))
    for data_set in range(1, data_sets + 1):
        sites = [f"site{i}" for i in range(SITES)]
        abundance = [[0]]
        while not all(map(any, abundance)) or not all(map(any, zip(*abundance))):
            sorting = conserved_trait()
            water = [random.uniform(-1.5, 1.5) for _ in sites]
            abundance = [[poisson(8 * math.exp(-2 * (w - h) ** 2)) for h in sorting] for w in water]
        write(f"{folder}/e.csv", ["site", "water"], *zip(sites, water))
        write(f"{folder}/w.csv", ["site", *species], *([s, *row] for s, row in zip(sites, abundance)))
        for traits in "random", "conserved":
            make = random_trait if traits == "random" else conserved_trait
            write(f"{folder}/b.csv", ["OTU", "a", "b"], *zip(species, make(), make()))
            tessel(folder, "import", "--traits", "b.csv", "--communities", "w.csv", "--environment", "e.csv",
                   "--phylogeny", "phylogeny.nwk", "--session", "s")
            for within in ["none"] + (list(CLADES) if traits == "conserved" else []):
                tessel(folder, "analyse", "s", "--iterations", str(ITERATIONS), "--seed", str(data_set),
                       "--within", within if within == "none" else f"{within}.csv", "--tables", "t")
                if traits == "random":
                    rejections["random traits"] += rejected(folder, "TE")
                elif within == "none":
                    rejections["free"] += rejected(folder, "TE")
                    rejections["TE.P"] += rejected(folder, "TE.P")
                else:
                    rejections[within] += rejected(folder, "TE")
write(table, ["test", "rejections", "data sets", "iterations"],
      *([test, n, data_sets, ITERATIONS] for test, n in rejections.items()))
