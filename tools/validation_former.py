# SPDX-License-Identifier: GPL-3.0-or-later
"""What a former version's document of validation.py said, and how far today's answers differ from it."""
import csv
import pathlib

from validation_depletion import EXACT_DEPLETION
from validation_runs import ROOT, table

FORMER = ROOT / "docs" / "validation_former.csv"


def fit_title(name):
    """One text for the columns that name a fit, but for the error model."""
    data, model, _, proportion = name
    return f"{data}, {model}, from {proportion} K"


def former_rows(document):
    """The log fits and the exact sets out of the tables of a former version's document."""
    exact = {what for _, what, *_ in EXACT_DEPLETION}
    for line in document.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if len(cells) == 10 and cells[2] == "log":
            yield fit_title(cells[:4]), cells[4], cells[5], cells[7]
        elif len(cells) == 8 and cells[0] in exact:
            yield cells[0], cells[2], cells[3], cells[5]


def keep_former(path):
    rows = list(former_rows(pathlib.Path(path).read_text(encoding="utf-8")))
    with open(FORMER, "w", newline="", encoding="utf-8") as file:
        csv.writer(file, lineterminator="\n").writerows([["fit", "quantity", "ours", "difference %"], *rows])


def read_former():
    with open(FORMER, newline="", encoding="utf-8") as file:
        return {(row["fit"], row["quantity"]): row for row in csv.DictReader(file)}


def largest(differences):
    return f"{max(map(abs, differences)):.3f} %"


def before_and_now(runner):
    """The log fits: each quantity's difference from the published one in the former version and in this one."""
    former, quantities = read_former(), ("K", "R", "Q", "MSY", "sum of squares")
    headings = ["fit", *(f"{quantity}, {when}" for quantity in quantities for when in ("before", "now"))]
    rows = []
    for title in dict.fromkeys(title for title, _ in runner.log_fits):
        rows.append([title])
        for quantity in quantities:
            now = runner.log_fits.get((title, quantity))
            before = former.get((title, quantity), {"difference %": ""})["difference %"]
            rows[-1] += [before, f"{now[1]:+.3f}"] if now else ["", ""]
    shared = [key for key in runner.log_fits if key in former and key[1] != "sum of squares"]
    before = largest(float(former[key]["difference %"]) for key in shared)
    now = largest(runner.log_fits[key][1] for key in shared)
    return table(headings, rows) + f"\nThe largest difference of a parameter was {before} and is {now}."


def exact_before_and_now(runner):
    former = read_former()
    return table(["stock", "quantity", "before", "now", "difference before, %", "now, %"],
                 [[what, quantity, former[what, quantity]["ours"], ours, former[what, quantity]["difference %"],
                   f"{difference:+.5f}"] for (what, quantity), (ours, difference) in runner.exact_sets.items()])
