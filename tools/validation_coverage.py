# SPDX-License-Identifier: GPL-3.0-or-later
"""How often limits hold the truth, as coverage.py counted it into docs/coverage.csv."""
import csv
import math
import statistics

from validation_runs import ROOT, table

COVERED = (80.0, 97.0)  # per cent of data sets; outside, a sentence says why


def is_known(row):
    """The quantity does not depend on what is fitted, or is not the one that the program reports."""
    return (row["model"], row["parameter"]) == ("constant-recruitment", "RYield") or "(peak)" in row["parameter"]


def moved(row):
    """Limits of Q under the gamma error where positions are not taken at the mean stock."""
    return row["parameter"] == "Q" and row["mean position"] and abs(float(row["mean position"]) - 0.5) > 0.05


def reason(row):
    if row["parameter"] == "RYield" and row["model"] == "constant-recruitment":
        return ("with an initial proportion of 1, K - N follows a recursion that holds the total catch and M but not "
                "K, so the estimate is exact and the limits coincide to the rounding of 32 bits; limits and truth are "
                "compared to six digits")
    if "(peak)" in row["parameter"]:
        top = 3.0 ** -0.5
        return (f"the program's MSY is R K m (1 - m) with m = (Z + 1)^(-1/Z); production peaks at R K m (1 - m^Z), "
                f"which for Z = 2 is {(1.0 - top * top) / (1.0 - top):.3f} times as much; the row MSY counts the "
                "program's own quantity")
    if moved(row):
        return (f"gamma positions are taken from the stock at the start of the period while replicate catches are "
                f"made from the mean stock: the mean position is {row['mean position']} instead of 0.5 and replicate "
                f"catches are {row['replicate catch level']} times the fitted ones ({row['level at mean stock']} with "
                f"positions from the mean stock); limits divided by that excess cover {row['covered rescaled %']} %")
    return (f"the limits are {row['width / spread']} times as wide as the estimates of the data sets scatter, "
            f"{row['estimates below %']} % of the estimates lie below the truth, and limits stretched for the fitted "
            f"parameters cover {row['covered stretched %']} %; a further reason was not found")


def coverage_reasons(rows):
    odd = {}
    for row in rows:
        if not COVERED[0] <= float(row["covered %"]) <= COVERED[1]:
            odd.setdefault((row["model"], row["parameter"], reason(row)), []).append(
                f"{row['error']} {row['covered %']} %")
    return "\n".join(f"- {model}, {parameter} ({', '.join(found)}): {why}."
                     for (model, parameter, why), found in odd.items()) or "No parameter does."


def middle(rows, column="covered %", digits=1):
    return f"{statistics.median(float(row[column]) for row in rows if not is_known(row)):.{digits}f}"


def span(rows):
    values = [float(row["covered %"]) for row in rows if not is_known(row)]
    return f"{min(values):.1f} to {max(values):.1f} %"


def unfitted(rows, error):
    lost = {row["model"]: int(row["data sets"]) - int(row["fitted"]) for row in rows if row["error"] == error}
    return sum(lost.values())


def coverage():
    with open(ROOT / "docs" / "coverage.csv", newline="", encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    main_rows = [row for row in rows if "," not in row["error"]]
    calm = {(row["model"], row["parameter"]): row for row in rows if row["error"] == "log, q = 1"}
    units = max(abs(float(row["covered %"]) - float(calm[row["model"], row["parameter"]]["covered %"]))
                for row in main_rows if row["error"] == "log")
    failed = sorted({(row["model"], row["error"], row["failures"]) for row in rows if row["failures"]})
    shown = ["model", "error", "parameter", "data sets", "fitted", "covered %", "lower misses %", "upper misses %",
             "width / truth", "width / spread", "estimates below %", "covered stretched %"]
    parts = {"table": table(shown, [[row[name] for name in shown] for row in main_rows]),
             "reasons": coverage_reasons(main_rows),
             "failed": "\n".join(f"- {model}, {error}: {text}" for model, error, text in failed) or "- none",
             "lost": f"{unfitted(rows, 'log')} data sets of all models, {unfitted(rows, 'log, q = 1')} with q = 1",
             "noise": f"{100.0 * math.sqrt(0.9 * 0.1 / int(rows[0]['data sets'])):.1f}", "units": f"{units:.1f}"}
    return coverage_text(parts, main_rows, [row for row in rows if row["error"] == "ls"],
                         [row for row in rows if row["error"] == "ls, 95 %"])


def meaning(rows, plain, wide):
    usual = [row for row in rows if not moved(row)]
    shift = next(f"{100.0 * (float(row['replicate catch level']) - 1.0):+.1f} %" for row in rows
                 if row["model"] == "no-recruitment" and row["mean position"])
    return f"""\
**What your limits mean.** They tell how far the estimates would move if the same fishery were observed again with
other noise, under the model as you set it up. When the model is right and the total catch exact, 90 % limits of this
program held the truth in {span(usual)} of the data sets here, so read them as somewhat too narrow. Under
least squares limits at 0.025 and 0.975 held it in {span(wide)}, against {span(plain)} for 0.05 and 0.95:
ask for the wider levels when you need nine in ten. Limits know nothing of errors in the total catch, in M, in the
initial proportion or in the choice of the model, which are often larger; compare models and inputs for those.
Under the gamma error do not use the limits of Q with the constant recruitment model. With the no recruitment model
they are shifted in the same way, by {shift} here, and by more where a period removes a larger share of the stock.
"""


def coverage_text(parts, rows, plain, wide):
    usual = [row for row in rows if not moved(row)]
    lean = max((row for row in usual if not is_known(row)),
               key=lambda row: abs(float(row["lower misses %"]) - float(row["upper misses %"])))
    return f"""\
`tools/coverage.py` makes data sets from each model's own dynamics with known parameters, 20 to 28 periods, the
total catch exact and noise of the fitted catch alone (least squares: constant, 10 % of the mean catch; log: 20 %;
gamma: 15 % at the mean catch, variance proportional to the mean), fits each with 500 replicates, and counts in
`docs/coverage.csv` how often the limits at 0.05 and 0.95 hold the truth. The coverage of {rows[0]["data sets"]} data
sets is itself known to about {parts["noise"]} points (one standard error). A lower miss is a truth below the lower
limit. Width / spread is the median width over the distance of the 5 % and 95 % points of the estimates: below 1 the
limits are too narrow. Stretched: distances from the estimate multiplied by sqrt(n / (n - p)), with n periods and p
fitted parameters.

{parts["table"]}
Data sets that were not fitted:

{parts["failed"]}

Why a parameter lies outside {COVERED[0]:.0f} to {COVERED[1]:.0f} %:

{parts["reasons"]}

Why the others lie a little below 90 %: their median is {middle(usual)} %, with limits
{middle(usual, "width / spread", 2)} times as wide as the estimates scatter. Residuals of a fit are smaller than the
errors behind them, because p parameters were bent towards the data, and replicates resample them as they stand; and
percentiles take no account of how uncertain the variance itself is. In a linear model with normal errors such limits
cover the probability that Student's t with n - p degrees of freedom lies within 1.645 sqrt((n - p) / n); its
median over these rows is {middle(usual, "linear theory %")} %. Stretched for the first of the two reasons the
limits cover {middle(usual, "covered stretched %")} %. The unit of effort is not among the reasons: counted so that
q = 1, it moves no coverage of the log transform by more than {parts["units"]} points. Under the log transform
{parts["lost"]} were not fitted.

Percentile limits carry no correction for bias and may lean. The most uneven here are those of {lean["parameter"]}
({lean["model"]}, {lean["error"]}), whose middle lies below the estimate in {lean["limits below %"]} % of the data
sets: {lean["lower misses %"]} % lower and {lean["upper misses %"]} % upper misses.

{meaning(rows, plain, wide)}"""
