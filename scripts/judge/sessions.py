#!/usr/bin/env python3
"""Works out the numbers of the sessions in tests/data/sessions from their raw data, by the formulas
of the analyses alone, and tells which printed ones differ:

    python3 scripts/judge/sessions.py tests/data/sessions

Probabilities are left out: they follow from random permutations.
"""
import math
import re
import sys

FOLDER = sys.argv[1]

# ---- The data of functional.txt and ranking.txt

B = [[1, 10], [2, 10], [4, 30], [5, 20], [8, 50]]
W = [[4, 0, 2, 0, 2], [0, 3, 1, 0, 0], [1, 1, 1, 1, 0], [0, 0, 0, 5, 5]]
E = [[1, 10], [3, 10], [2, 40], [7, 20]]
F = [[0, .2, .8, .8, .8], [.2, 0, .8, .8, .8], [.8, .8, 0, .4, .4], [.8, .8, .4, 0, .1],
     [.8, .8, .4, .1, 0]]
TYPES = [0, 0, 1, 1, 1]

# ---- Tables


def product(a, b):
    return [[sum(x * y for x, y in zip(row, col)) for col in zip(*b)] for row in a]


def unit_rows(a):
    return [[x / sum(row) if sum(row) else x for x in row] for row in a]


def unit_columns(a):
    lengths = [math.sqrt(sum(x * x for x in col)) for col in zip(*a)]
    return [[x / l if l else x for x, l in zip(row, lengths)] for row in a]


def centred(a):
    means = [sum(col) / len(a) for col in zip(*a)]
    return [[x - m for x, m in zip(row, means)] for row in a]


def distances(a):
    return [[math.dist(x, y) for y in a] for x in a]


def columns(a, chosen):
    return [[row[k] for k in chosen] for row in a]


def gower(subset):
    ranges = [max(col) - min(col) for col in zip(*B)]
    return [[1 - sum(abs(x[k] - y[k]) / ranges[k] for k in subset) / len(subset) for y in B]
            for x in B]


def belonging(s):
    """Mean similarity with the members of each type, over the sum of the means. OTUs of one type
    that are identical count once."""
    n = len(s)
    like = list(range(n))
    for i in range(n):
        for j in range(i + 1, n):
            if like[i] == i and like[j] == j and TYPES[i] == TYPES[j] and s[i][j] == 1:
                like[j] = i
    u = []
    for i in range(n):
        row = [0.0, 0.0]
        for g in range(2):
            members = [j for j in range(n) if TYPES[j] == g and like[j] == j]
            row[g] = sum(s[like[i]][j] for j in members) / len(members)
        u.append(row)
    return unit_rows(u)


def rao(w, difference):
    q = []
    for row in unit_rows(w):
        n = range(len(row))
        q.append(sum(row[i] * row[j] * difference(i, j) for i in n for j in n))
    return q


# ---- Congruence


def above(d):
    return [d[i][j] for i in range(len(d)) for j in range(i + 1, len(d))]


def correlation(a, b):
    x, y = above(a), above(b)
    mx, my = sum(x) / len(x), sum(y) / len(y)
    xy = sum((s - mx) * (t - my) for s, t in zip(x, y))
    squares = sum((s - mx) ** 2 for s in x) * sum((t - my) ** 2 for t in y)
    return xy / math.sqrt(squares) if squares else 0.0


def partial(ab, ac, bc):
    return (ab - ac * bc) / math.sqrt((1 - ac * ac) * (1 - bc * bc))


def eigenvalues(a):
    """Of a symmetric matrix, by Jacobi rotations."""
    a = [row[:] for row in a]
    n = len(a)
    for _ in range(100):
        for p in range(n):
            for q in range(p + 1, n):
                if abs(a[p][q]) < 1e-300:
                    continue
                t = math.atan2(2 * a[p][q], a[q][q] - a[p][p]) / 2
                c, s = math.cos(t), math.sin(t)
                for k in range(n):
                    a[k][p], a[k][q] = c * a[k][p] - s * a[k][q], s * a[k][p] + c * a[k][q]
                for k in range(n):
                    a[p][k], a[q][k] = c * a[p][k] - s * a[q][k], s * a[p][k] + c * a[q][k]
    return [a[i][i] for i in range(n)]


def procrustes(a, b):
    a, b = centred(a), centred(b)
    cross = product(list(zip(*a)), b)
    squares = eigenvalues(product(list(zip(*cross)), cross))
    size = lambda m: math.sqrt(sum(x * x for row in m for x in row))
    return sum(math.sqrt(max(0, e)) for e in squares) / (size(a) * size(b))


def rv(a, b):
    a, b = centred(a), centred(b)
    cross = lambda x, y: sum(z * z for row in product(list(zip(*x)), y) for z in row)
    return cross(a, b) / math.sqrt(cross(a, a) * cross(b, b))


# ---- The statistics of a subset of the traits


class Tables:
    def __init__(self, subset, fuzzy=True, unit=True, otus=5):
        w = unit_rows(W) if unit else W
        s = gower(subset)
        crisp = [[float(g == t) for g in range(2)] for t in TYPES]
        self.T = unit_columns(product(unit_rows(W), columns(B, subset)))
        self.U = belonging(s) if fuzzy else crisp
        self.X = product(w, self.U)
        self.P = product(w, belonging([[1 - x for x in row] for row in F]))
        first = [row[:otus] for row in W]
        self.rao = rao(first, lambda i, j: math.sqrt(1 - s[i][j]))
        self.E = E
        self.dark = []
        for row, x in zip(W, self.X):
            pairs = zip(unit_rows([row[:2]])[0], unit_rows([x[:2]])[0])
            self.dark.append([sum(abs(p - q) for p, q in pairs) / 2 if sum(row[:2]) else 0.0])
        joint = unit_rows([[sum(c[i] * c[j] for c in map(list, w)) for j in range(5)]
                           for i in range(5)])
        conditional = [[sum(c[i] for c in w if c[j] > 0) / sum(c[i] for c in w) for j in range(5)]
                       for i in range(5)]
        self.Z = product(unit_rows(W), joint)
        self.Y = product(unit_rows(W), conditional)

    def r(self, name):
        """Matrix correlation of two letters, partial with what stands behind the dot."""
        if len(name) == 2:
            return correlation(*(self.resemblance(x) for x in name))
        rest = name[4:] and "." + name[4:]
        return partial(*(self.r(p + rest) for p in (name[:2], name[0] + name[3], name[1] + name[3])))

    def resemblance(self, letter):
        if letter == "R":
            return distances([[1 / (1 - q)] for q in self.rao])
        if letter == "Q":  # the entropy itself, as the rankings take it
            return distances([[q] for q in self.rao])
        return distances(self.dark if letter == "S" else getattr(self, letter))


# ---- Comparison

differences = compared = 0


def expect(what, printed, value, digits=6):
    global differences, compared
    compared += 1
    if abs(printed - value) > 10 ** -digits * max(5.0 * abs(value), 0.5):
        differences += 1
        print(f"{what}: printed {printed}, worked out {value}")


def read(name):
    return open(f"{FOLDER}/{name}.txt", encoding="utf-8").read()


def numbers(text):
    return [[float(x) for x in line.split()] for line in text.split("\n") if line.strip()]


def expect_table(what, text, heading, table):
    """The rows that follow the line of the heading."""
    lines = text[text.index(heading):].split("\n")[1:]
    printed = numbers("\n".join(lines[:len(table)]))
    for i, (row, expected) in enumerate(zip(printed, table)):
        for j, x in enumerate(row):
            expect(f"{what} {heading} {i} {j}", x, expected[j])


def expect_labels(what, text, labels):
    for label, value in labels.items():
        printed = float(re.search(re.escape(label) + r"\s*=?\s*([-+.0-9e]+)", text).group(1))
        expect(f"{what} {label}", printed, value)


both = Tables([0, 1])
report = read("functional")
whole = report[report.index("\n== sPrinda.txt\n", report.index("SMW 1\n0\n=>\nSMW 1\n1\n3")):]
whole = whole[:whole.index("== change")]
for heading, table in (
    ("Community matrix W with 4 communities by 5 OTUs adjusted", unit_rows(W)),
    ("Fuzzy belonging of 5 OTUs", belonging([[1 - x for x in row] for row in F])),
    ("Pooled performance matrix P", both.P), ("Resemblance matrix (DP)", distances(both.P)),
    ("Resemblance matrix (DE)", distances(E)),
    ("Matrix T with trait averages", [[x / sum(col) for x, col in zip(row, zip(*B))]
                                      for row in product(unit_rows(W), B)]),
    ("Matrix T with normalized", both.T), ("Resemblance matrix (DT)", distances(both.T)),
    ("Similarity matrix between 5 OTUs", gower([0, 1])), ("Fuzzy degrees of", both.U),
    ("Average trait matrix", [[1.5, 10], [17 / 3, 100 / 3]]),
    ("Pooled performance community", product(unit_rows(W), [[1, 0]] * 2 + [[0, 1]] * 3)),
    ("Gini-Simpson", [rao(W, lambda i, j: i != j)]),
    ("Rao quadratic entropy within", [both.rao]),
    ("Rao quadratic entropy (Rp)", [rao(W, lambda i, j: F[i][j])])):
    expect_table("H", whole, heading, table)
expect_table("H", whole[whole.index("Pooled performance matrix X"):], "Traits:", both.X)
expect_labels("H", whole, {f"({name})": both.r(name) for name in (
    "TE", "XE", "XE.T", "RE", "XE.TR", "PE", "PT", "PX", "PX.T", "TE.P", "XE.P", "XE.TP", "PE.T",
    "PE.X")})
expect_labels("H", whole, {"ro(BF)": -correlation(gower([0, 1]), F)})
turned = report[report.index("Procrustes correlations"):]
expect_labels("H Procrustes", turned, {
    "(TE)": procrustes(both.T, E), "(XE)": procrustes(both.X, E), "(PE)": procrustes(both.P, E),
    "(PT)": procrustes(both.P, both.T), "(PX)": procrustes(both.P, both.X),
    "(RE)": procrustes([[1 / (1 - q)] for q in both.rao], E)})

ranking = read("ranking")
SUBSETS = {"h \t": [0], "sla\t": [1], "h \tsla\t": [0, 1]}
# Under the matrix correlation the ranking by r(XE.TR) removes T alone.
NAMES = {"r(RE)": "QE", "r(XE.TR)": "XE.T", "ro(XE.PT)": "XE.TP"}
for line in ranking[:ranking.index("== file TESSEL.prf")].split("\n"):
    labels = re.findall(r"(ro?\([A-Z.]+\))=\t([-+.0-9e]+)", line)
    traits = re.search(r"Traits:\t(.*?)(?:Group|$)", line)
    if not labels or not traits:
        continue
    t = Tables(SUBSETS[traits.group(1)], otus=2 if "r(" in labels[0][0][:2] else 5)
    for label, printed in labels:
        name = NAMES.get(label, label[label.index("(") + 1:-1])
        # Single precision leaves less where correlations near 1 are removed.
        expect(f"K {line[:60]} {label}", float(printed), t.r(name), 4 if "." in name else 6)

# Of crisp types, performances as they are and the second trait.
t = Tables([1], fuzzy=False, unit=False)
t.S = t.dark
for way, a, b, printed in re.findall(
        r"(Procrustes|RV coefficient)[a-z ]* ro?\(([A-Z])([A-Z])\):\nTRC\t.*\n([.0-9]+)", ranking):
    measure = procrustes if way == "Procrustes" else rv
    expect(f"K {way} {a}{b}", float(printed), measure(getattr(t, a), getattr(t, b)))

# Two sites of the tiny world: its means -1/3 and 1, its factor -1/3 and 3, compositions
# (2/3 1/3) and (0 1).
ratio = lambda a, b: min(a, b) / max(a, b)
dT = (4 / 3) / math.sqrt(1 / 9 + 1)
dE, dX = math.sqrt(2), math.sqrt(2) * 2 / 3
TE, XE, XT = ratio(dT, dE), ratio(dX, dE), ratio(dX, dT)
expect_labels("A", read("simulation"), {"r(TE)": TE, "r(XE)": XE, "r(XE.T)": partial(XE, XT, TE)})

print(f"{compared} numbers compared, {differences} differ")
sys.exit(differences > 0)
