# SPDX-License-Identifier: GPL-3.0-or-later
"""The chapter on surplus production: public data with independent fits."""
import csv
import math

from validation_former import before_and_now, fit_title
from validation_runs import SAMPLES, figure, per_cent, table

# Tolerances in per cent, by error model. The search ends at 0.01 % of a parameter, and a little more is left along the
# ridge of K and R.
TOLERANCES = {
    "ls": {"K": 0.05, "R": 0.05, "Q": 0.05},
    "log": {"K": 0.05, "R": 0.05, "Q": 0.05, "MSY": 0.05},
}
WORSE_SUM = 0.3  # per cent by which our sum of squares may lie above the published optimum
LOWER_SUM = "lower sum of squares than published"


def sum_of_squares(series, error):
    total = 0.0
    for period in series:
        if period["ToggledIn"]:
            observed, expected = period["ObsCPUE"], period["ExpCPUE"]
            residual = math.log(observed / expected) if error == "log" else observed - expected
            total += residual * residual
    return total


def production_words(target, path=None):
    words = ["--csv-data", str(path or SAMPLES / "datasets" / target["file"]), "--time-column", "year",
             "--columns", "catch=Tot. Catch Wt,index=Abundance Index", "--model", target["model"],
             "--error", target["error"], "--init-proportion", target["InitialProportion"]]
    return words + (["--z", target["Z"]] if target["Z"] else [])


def target_name(target):
    return [target["file"].removesuffix(".csv"), target["model"] + (f" Z={target['Z']}" if target["Z"] else ""),
            target["error"], target["InitialProportion"]]


def production_rows(runner, target):
    ours, name = runner.fit(*production_words(target)), target_name(target)
    if ours["Status"] != "ok":
        return [name + ["fit", ours["Message"].replace("\n", " "), "", "", "", runner.verdict(False)]]
    value, published = sum_of_squares(ours["Series"][:-1], target["error"]), float(target["sum_of_squares"])
    sum_difference = per_cent(value, published)
    lower = sum_difference < -WORSE_SUM
    rows = []
    for quantity in ("K", "R", "Q", "MSY"):
        if not target[quantity]:
            continue
        estimate, expected = ours["Estimates"][quantity], float(target[quantity])
        difference = per_cent(estimate, expected)
        if target["error"] == "log":
            runner.log_fits[fit_title(name), quantity] = (figure(estimate), difference)
        allowed = TOLERANCES[target["error"]].get(quantity)
        verdict = ""
        if allowed is not None:
            verdict = LOWER_SUM if lower and abs(difference) > allowed else runner.verdict(abs(difference) <= allowed)
        rows.append(name + [quantity, figure(estimate), figure(expected), f"{difference:+.3f}",
                            "" if allowed is None else f"{allowed}", verdict])
    rows.append(name + ["sum of squares", figure(value), figure(published), f"{sum_difference:+.3f}",
                        f"at most +{WORSE_SUM}", runner.verdict(sum_difference <= WORSE_SUM)])
    if target["error"] == "log":
        runner.log_fits[fit_title(name), "sum of squares"] = (figure(value), sum_difference)
    if lower or any("missed" in row[-1] for row in rows):
        runner.elsewhere.append((target, ours))
    return rows


def production(runner):
    with open(SAMPLES / "datasets" / "production_targets.csv", newline="", encoding="utf-8") as file:
        rows = [row for target in csv.DictReader(file) for row in production_rows(runner, target)]
    return table(["data", "model", "error", "initial proportion", "quantity", "ours", "published", "difference, %",
                  "tolerance, %", ""], rows)


def other_minima(runner):
    """What stands behind each fit that is not the published one, and how to get the published one."""
    parts = []
    for target, ours in runner.elsewhere:
        start = f"K={round(float(target['K']), -3):.0f},R={float(target['R']):.1g}"
        typed = runner.fit(*production_words(target), "--start", start)
        held = runner.fit(*production_words(target), "--start", start, "--fix", "R")
        rows = [[what, *(figure(fit["Estimates"][name]) for name in ("K", "R", "Q", "MSY")),
                 figure(sum_of_squares(fit["Series"][:-1], target["error"]))]
                for what, fit in (("own three starts", ours), (f"`--start {start}`", typed),
                                  (f"`--start {start} --fix R`", held))]
        rows.append(["published", *(target[name] for name in ("K", "R", "Q", "MSY")), target["sum_of_squares"]])
        last = ", ".join(f"{period['Nt']:.0f}" for period in ours["Series"][-6:])
        parts.append(f"""{" ".join(target_name(target))}: the biomasses of our last periods are {last}.

{table(["start", "K", "R", "Q", "MSY", "sum of squares"], rows)}""")
    return "\n".join(parts)


def production_text(runner):
    rows = production(runner)
    return f"""\
## Surplus production

Fits of public fishery data against independent fits of the same dynamics, index = q (B(t) + B(t+1)) / 2. Data:
albacore, Polacheck, Hilborn and Punt (1993); pink ling and blacklip abalone, Haddon (2021), chapter 7. For
Pella-Tomlinson, R is r/Z of the form with exponent p. Differences come from 32-bit storage and the minimiser's
tolerance.

{rows}
### The log fits before and now

Differences from the published fits in per cent. Before: the former search, and a log objective summed in 32-bit floats,
which made its surface rough by up to a few per cent near a good fit, so that K and R could trade against each other
along their ridge. Now: the search in logarithms of the parameters, and sums of 64 bits.

{before_and_now(runner)}

### Where our answer is another minimum than the published one

A fit stands here when a quantity is outside its tolerance. Where our sum of squares, computed from the printed index
and expected index, is lower by more than {WORSE_SUM} %, the verdict is "{LOWER_SUM}"; otherwise
it is a miss. Of three starts (R = 0.1, 0.5 and 1) the program keeps the lowest. Where R of the Fox model exceeds 2, the
step from one period to the next overshoots K (its slope there is 1 - R, below -1), so that the biomass alternates from
period to period and follows the noise of the index. Such an answer is no stock, and the surface around it has many
minima of which a search finds one or the other: the remark Oscillating says so and names the best steady fit. Hold R at
a value known from biology, or type starting values near a plausible one, as below.

{other_minima(runner) or "No such fit today."}
"""
