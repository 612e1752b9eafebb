# SPDX-License-Identifier: GPL-3.0-or-later
"""Depletion experiments with their exact regressions, and two further public stocks."""
import csv
import math
import pathlib
import tempfile

from validation_runs import SAMPLES, figure, per_cent, table

# file, what, source, N1, q; equal efforts make the fit the plain regression, so six digits must agree
EXACT_DEPLETION = [
    ("depletion_smallmouth_bass_little_silver.csv", "smallmouth bass", "Omand (1951)", 1077.5713, 0.01525078),
    ("depletion_fantail_darter.csv", "fantail darter", "Mahon (1980)", 861.8144, 0.207561),
]
# The published regressions weight the periods otherwise (CPUE against catch, not by effort squared).
NEAR_DEPLETION = [
    ("depletion_blue_crab.csv", "blue crab", "Fischler (1965)", 332043.0, 5.975e-4),
    ("depletion_northern_pike_island_lake.csv", "northern pike", "Peterson et al. (1980)", 6286.0, 0.02722),
]
SIX_DIGITS = 5e-4  # per cent: half a unit of the sixth digit of a number that starts with 1


def depletion_rows(runner, entries, tolerance):
    for file, what, source, n1, q in entries:
        ours = runner.fit("--csv-data", str(SAMPLES / "datasets" / file), "--time-column", "period", "--columns",
                          "catch=Catch Nums,catch=Tot. Catch Nums,effort=Effort", "--model", "no-recruitment",
                          "--m", "0")
        for quantity, published in (("N1", n1), ("Q", q)):
            if ours["Status"] != "ok":
                yield [what, source, quantity, ours["Message"], "", "", "", runner.verdict(False)]
                continue
            value = ours["Estimates"][quantity]
            difference = per_cent(value, published)
            checked = tolerance is not None
            if checked:
                runner.exact_sets[what, quantity] = (figure(value), difference)
            yield [what, source, quantity, figure(value), figure(published), f"{difference:+.5f}",
                   f"{tolerance}" if checked else "none",
                   runner.verdict(abs(difference) <= tolerance) if checked else ""]


def depletion(runner):
    rows = [*depletion_rows(runner, EXACT_DEPLETION, SIX_DIGITS), *depletion_rows(runner, NEAR_DEPLETION, None)]
    return table(["stock", "source", "quantity", "ours", "published", "difference, %", "tolerance, %", ""], rows)


def data_words(name, time, columns, model, mort):
    return ["--csv-data", str(name), "--time-column", time, "--columns", columns, "--model", model, "--m", str(mort)]


def solve(matrix, right):
    """Gauss-Jordan with pivoting, for the three unknowns below."""
    rows = [[*row, value] for row, value in zip(matrix, right)]
    for i in range(len(rows)):
        pivot = max(range(i, len(rows)), key=lambda k: abs(rows[k][i]))
        rows[i], rows[pivot] = rows[pivot], rows[i]
        for k in range(len(rows)):
            if k != i:
                factor = rows[k][i] / rows[i][i]
                rows[k] = [x - factor * y for x, y in zip(rows[k], rows[i])]
    return [row[-1] / row[i] for i, row in enumerate(rows)]


def recruit_regression(total, recruits, catch, mort):
    """C = q N1 x1 - q x2 + q Lambda x3 with unit effort: N1, q, Lambda and the lowest stock of their trajectory."""
    half, columns, taken, joined = math.exp(-mort / 2.0), [], 0.0, 0.0
    for t, (caught, recruit) in enumerate(zip(total, recruits)):
        taken, joined = half * half * taken + caught, half * half * joined + recruit
        columns.append((math.exp(-mort * t) * half, taken - caught / 2.0, joined * half))
    b1, b2, b3 = solve([[sum(x[i] * x[j] for x in columns) for j in range(3)] for i in range(3)],
                       [sum(x[i] * y for x, y in zip(columns, catch)) for i in range(3)])
    n1, q, per_index = b1 / -b2, -b2, b3 / -b2
    stock = [n1]
    for caught, recruit in zip(total, recruits):
        stock.append(half * half * (stock[-1] + per_index * recruit) - half * caught)
    return n1, q, per_index, stock


def shrimp(runner):
    with open(SAMPLES / "datasets" / "northern_shrimp_gulf_of_maine.csv", newline="", encoding="utf-8") as file:
        rows = [{key: float(value) for key, value in row.items()} for row in csv.DictReader(file)]
    total, recruits, index = ([row[key] for row in rows] for key in ("catch", "recruit_index", "postrecruit_index"))
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "shrimp.csv"
        lines = ["year,catch,recruits,index,one"] + [
            f"{row['year']:.0f},{row['catch']},{row['recruit_index']},{row['postrecruit_index']},1" for row in rows]
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
        shared = "catch=Tot. Catch Nums,recruits=Recruit. Index,"
        fits = {(place, error): runner.fit(*data_words(path, "year", shared + columns, "recruitment-index", 0.25),
                                           "--error", error)
                for place, columns in (("Abundance Index", "index=Abundance Index"),
                                       ("Catch Nums", "index=Catch Nums,one=Effort"))
                for error in ("ls", "log", "gamma")}
    lines = []
    for (place, error), fit in fits.items():
        if fit["Status"] != "ok":
            lines.append([place, error, fit["Message"].splitlines()[0]] + [""] * 6)
            continue
        estimates = fit["Estimates"]
        years = {row["year"]: f"{period['Nt'] + estimates['Lambda'] * row['recruit_index']:.0f}"
                 for row, period in zip(rows, fit["Series"])}
        lines.append([place, error, *(figure(estimates[name]) for name in ("N1", "Q", "Lambda")),
                      *(years[year] for year in (1985, 1996, 2000, 2006))])
    found = {"as it lands": recruit_regression(total, recruits, total, 0.25),
             "as it should": recruit_regression(total, recruits, index, 0.25)}
    return shrimp_text(found, [row["year"] for row in rows], lines)


def shrimp_text(found, years, lines):
    n1, q, per_index, _ = found["as it lands"]
    other_n1, other_q, other_index, stock = found["as it should"]
    first = next((t for t, number in enumerate(stock) if number <= 0.0), None)
    lowest = min(stock)
    when = "never falls to zero" if first is None else (
        f"falls to {stock[first]:.0f} at the start of {years[first]:.0f}" if first < len(years) else "ends below zero")
    return f"""\
An index in the Abundance Index column becomes a catch in *weight* with effort 1; without a Mean Wt column
the model, which works in numbers, has no catch of the fleet and takes the total catch in its place. An independent
regression of the total catch on its own trajectory gives N1 {n1:.1f}, q {q:.4f} and Lambda {per_index:.4f}, so the
refusal is right for what the model was given. With the index as Catch Nums and an Effort column of ones, the same
regression gives N1 {other_n1:.1f}, q {other_q:.4f} and Lambda {other_index:.4f}, but its stock {when}
(lowest {lowest:.0f}), so least squares has no admissible answer; log and gamma have one. A two-index method with
M = 0.25 gave a total abundance of 1592 (1985), 1714 (1996), 613 (2000) and 4053 (2006), to be compared in scale
and trend with stock + recruits here.

{table(["index as", "error", "N1", "Q", "Lambda", "stock + recruits 1985", "1996", "2000", "2006"], lines)}"""


def squid(runner):
    path = SAMPLES / "datasets" / "squid_loligo_gahi_falklands_1990.csv"
    columns = "catch_kg=Tot. Catch Wt,catch_kg=Catch Wt,effort_vessels=Effort,mean_weight_kg=Mean Wt"
    with open(path, newline="", encoding="utf-8") as file:
        rows = [{key: float(value) for key, value in row.items()} for row in csv.DictReader(file)]
    numbers = [row["catch_kg"] / row["mean_weight_kg"] for row in rows]
    rates = [math.log(number / row["effort_vessels"]) for number, row in zip(numbers, rows)]
    days = [row["day"] - sum(r["day"] for r in rows) / len(rows) for row in rows]
    slope = sum(x * y for x, y in zip(days, rates)) / sum(x * x for x in days)
    lines = []
    for mort in (0, 0.0133):
        for error in ("ls", "log", "gamma"):
            fit = runner.fit(*data_words(path, "day", columns, "no-recruitment", mort), "--error", error,
                             "--bootstraps", "500", "--seed", "7", "--ci", "0.05,0.95")
            if fit["Status"] != "ok":
                lines.append([str(mort), error, fit["Message"].splitlines()[0], "", "", ""])
                continue
            low, high = fit["ConfidenceIntervals"]["N1"]
            lines.append([str(mort), error, f"{fit['Estimates']['N1']:.4g}", f"{low:.4g} to {high:.4g}",
                          f"{fit['Estimates']['Q']:.4g}", f"{fit['Estimates']['N1'] / sum(numbers):.4g}"])
    return f"""\
Catch in kg over mean weight gives {sum(numbers):.4g} animals in {len(rows)} days; with M = 0 all three error models
put N1 at a sensible multiple of that, while with M = 0.0133 a day, which exceeds the mean fall of the catch rate
({-slope:.4f} a day by regression of its logarithm), nothing is left for the catch to explain and N1 runs away.

{table(["M a day", "error", "N1", "90 % limits", "Q", "N1 / total catch"], lines)}"""
