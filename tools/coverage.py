#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Counts how often bootstrap limits hold the value that made the data and writes docs/coverage.csv.

    coverage.py [--batch PATH] [--output FILE] [--sets 200]

Each data set comes from the model's own dynamics with the total catch exact and noise on the fitted catch alone, of
the kind that the error model assumes. So a limit that misses here misses for a reason of its own, not because the
model is wrong. Same seed, same figures.
"""
import argparse
import collections
import concurrent.futures
import csv
import json
import math
import pathlib
import random
import statistics
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SEED = 20261121
REPLICATES = 500
LIMITS = {"": "0.05,0.95", "95 %": "0.025,0.975"}
NOISE = {"ls": 0.10, "log": 0.20, "gamma": 0.15}  # coefficient of variation at the mean catch
# With effort counted so that q = 1 the same data sets come again in other units, which must not move a limit.
SCHEMES = [*NOISE, "log, q = 1", "ls, 95 %"]
GAMMA_COLUMNS = ("mean position", "replicate catch level", "level at mean stock", "covered rescaled %")
ROUNDING = 1e-6  # limits are 32-bit floats
PATIENCE = 300  # seconds; a log replicate that never converges is drawn again without end

DEPLETION_COLUMNS = "total=Tot. Catch Nums,catch=Catch Nums,effort=Effort"
PRODUCTION_COLUMNS = "total=Tot. Catch Wt,catch=Catch Wt,effort=Effort"


def ramp(periods, low, high):
    """Fishing mortality that rises to `high` in mid-series and falls again: both directions of contrast."""
    return [low + (high - low) * (1.0 - abs(2.0 * t / (periods - 1) - 1.0)) for t in range(periods)]


def steady(periods, low, high):
    return [low if t % 3 else high for t in range(periods)]


def recruit_index(periods):
    rng = random.Random(SEED)
    return [round(100.0 * math.exp(rng.gauss(0.0, 0.6)), 1) for _ in range(periods)]


# model: natural mortality, truth, fishing mortality by period, recruitment index
STOCKS = {
    "no-recruitment": (0.02, {"N1": 100000.0, "Q": 5e-4}, steady(20, 0.05, 0.10), None),
    "constant-recruitment": (0.2, {"K": 100000.0, "Q": 5e-4}, ramp(25, 0.05, 0.60), None),
    "recruitment-index": (0.3, {"N1": 100000.0, "Q": 5e-4, "Lambda": 300.0}, ramp(25, 0.10, 0.60), recruit_index(25)),
    "fox": (0.2, {"K": 10000.0, "Q": 2e-4, "R": 0.3}, ramp(28, 0.05, 0.45), None),
    "schaefer": (0.2, {"K": 10000.0, "Q": 2e-4, "R": 0.4}, ramp(28, 0.05, 0.35), None),
    "pella-tomlinson": (0.2, {"K": 10000.0, "Q": 2e-4, "R": 0.3, "Z": 2.0}, ramp(28, 0.05, 0.30), None),
}


def production_of(model, truth, biomass):
    share = biomass / truth["K"]
    growth = {"fox": -math.log(share), "schaefer": 1.0 - share}
    return truth["R"] * biomass * growth.get(model, 1.0 - share ** truth.get("Z", 1.0))


def simulate_depletion(model, mort, truth, fishing, index):
    """Pope's approximation: the catch leaves in mid-period. The catch is q E times the mean stock."""
    half, stock, catches = math.exp(-mort / 2.0), truth.get("N1", truth.get("K")), []
    for period, force in enumerate(fishing):
        recruits = truth["K"] * math.expm1(mort) if model == "constant-recruitment" else 0.0
        if index:
            recruits = truth["Lambda"] * index[period]
        catches.append(force * half * (stock + recruits) / (1.0 + force / 2.0))
        stock = half * half * (stock + recruits) - half * catches[-1]
    return catches, stock


def simulate_production(model, truth, fishing):
    """The catch is q E times the mean of the biomass at both ends of the period."""
    biomass, catches = truth["K"], []
    for force in fishing:
        after = (biomass * (2.0 - force) + 2.0 * production_of(model, truth, biomass)) / (2.0 + force)
        catches.append(force * (biomass + after) / 2.0)
        biomass = after
    return catches, biomass


def simulate(model):
    """Exact catches and every true value, the derived ones included."""
    mort, given, fishing, index = STOCKS[model]
    truth = dict(given)
    if "R" not in given:
        catches, last = simulate_depletion(model, mort, given, fishing, index)
        if model == "constant-recruitment":
            truth["RYield"] = math.exp(mort / 2.0) * -math.expm1(-mort) * (given["K"] - last)
        return catches, truth
    catches, last = simulate_production(model, given, fishing)
    truth["RYield"] = production_of(model, given, last)
    z = truth.pop("Z", 1.0)
    top = math.exp(-1.0) if model == "fox" else (z + 1.0) ** (-1.0 / z)  # share of K at which production peaks
    truth["MSY"] = production_of(model, given, top * given["K"])
    if z != 1.0:  # the program's MSY is another quantity for these shapes
        truth["MSY (peak)"] = truth["MSY"]
        truth["MSY"] = given["R"] * given["K"] * top * (1.0 - top)
    return catches, truth


def with_noise(catches, error, rng):
    mean, cv = statistics.fmean(catches), NOISE[error]
    if error == "ls":
        return [catch + rng.gauss(0.0, cv * mean) for catch in catches]
    if error == "log":
        return [catch * math.exp(rng.gauss(0.0, cv)) for catch in catches]
    scale = cv * cv * mean  # variance = scale * mean of the period
    return [rng.gammavariate(catch / scale, scale) for catch in catches]


def true_values(model, scheme):
    truth = simulate(model)[1]
    return truth | {"Q": 1.0} if "q = 1" in scheme else truth


def write_data(path, model, scheme, number):
    catches, _ = simulate(model)
    _, _, fishing, index = STOCKS[model]
    error, q = scheme.split(",")[0], true_values(model, scheme)["Q"]
    observed = with_noise(catches, error, random.Random(f"{SEED} {model} {error} {number}"))
    with open(path, "w", newline="", encoding="utf-8") as file:
        out = csv.writer(file)
        out.writerow(["period", "total", "catch", "effort", "recruits"])
        for t, total in enumerate(catches):
            out.writerow([t + 1, total, observed[t], fishing[t] / q, index[t] if index else 0])


def fit(program, folder, model, scheme, number):
    """What the program answers to one data set: estimates and limits, or Status "failed" and a Message."""
    path, (error, _, variant) = folder / f"{model}_{scheme}_{number}.data", scheme.partition(", ")
    write_data(path, model, scheme, number)
    mort, given, _, index = STOCKS[model]
    columns = PRODUCTION_COLUMNS if "R" in given else DEPLETION_COLUMNS
    columns += ",recruits=Recruit. Index" if index else ""
    words = [program, "fit", "--csv-data", path, "--time-column", "period", "--columns", columns, "--model", model,
             "--error", error, "--m", str(mort), "--z", str(given.get("Z", 1.0)),
             "--bootstraps", str(REPLICATES), "--seed", str(number + 1), "--ci", LIMITS.get(variant, LIMITS[""]),
             "--format", "json"]
    try:
        done = subprocess.run(words, capture_output=True, text=True, check=False, timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        return {"Status": "failed", "Message": f"no end after {PATIENCE} s"}
    said = done.stderr.strip() or "no answer"
    answer = json.loads(done.stdout) if done.stdout else {"Status": "failed", "Message": said}
    if answer["Status"] == "ok" and not answer.get("ConfidenceIntervals"):
        return {"Status": "failed", "Message": "no limits: " + said}
    return answer


def failures(answers):
    told = collections.Counter(answer["Message"].splitlines()[0] for answer in answers if answer["Status"] != "ok")
    return "; ".join(f"{text} ({number})" for text, number in told.items())


def stretched(estimate, limits, factor):
    return [estimate + factor * (limit - estimate) for limit in limits]


def percent(flags):
    return f"{100.0 * statistics.fmean(flags):.1f}"


def theory(periods, fitted, level):
    """Coverage in per cent of percentile limits in a linear model with normal errors.

    Residuals resampled as they stand have the variance RSS / n, so the limits lie z sqrt((n - p) / n) standard
    errors away as estimated, and the distance of the truth follows Student's t with n - p degrees of freedom.
    """
    freedom, steps = periods - fitted, 1000
    limit = statistics.NormalDist().inv_cdf(level) * math.sqrt(freedom / periods)
    scale = math.exp(math.lgamma((freedom + 1) / 2) - math.lgamma(freedom / 2)) / math.sqrt(freedom * math.pi)
    middles = ((step + 0.5) * limit / steps for step in range(steps))
    return 200.0 * scale * limit / steps * sum((1.0 + x * x / freedom) ** (-(freedom + 1) / 2) for x in middles)


def catch_level(answer, positions):
    """Mean catch of the gamma replicates over the fitted catch, from each period's position in its distribution.

    Wilson and Hilferty (1931): a gamma value of shape a is about a (1 - 1/(9 a) + z / (3 sqrt(a)))^3, z normal.
    """
    beta, rows = 1.0 / answer["Var"], answer["Series"][:-1]
    shapes = [row["ExpCatch"] * beta for row in rows]
    if positions == "of the program":
        scores = [statistics.NormalDist().inv_cdf(min(max(row["ResidVec"], 1e-9), 1.0 - 1e-9)) for row in rows]
    else:
        scores = [3.0 * math.sqrt(shape) * ((row["ObsCatch"] * beta / shape) ** (1.0 / 3.0) - 1.0 + 1.0 / (9.0 * shape))
                  for row, shape in zip(rows, shapes)]
    drawn = sum(shape * (1.0 - 1.0 / (9.0 * shape) + z / (3.0 * math.sqrt(shape))) ** 3
                for shape in shapes for z in scores)
    return drawn / (len(scores) * sum(shapes))


def gamma_columns(parameter, truth, answers, limits):
    """Whether positions taken elsewhere than at the mean stock of the period move the limits of q."""
    places = [row["ResidVec"] for answer in answers for row in answer["Series"][:-1]]
    told = [catch_level(answer, "of the program") for answer in answers]
    mid = [catch_level(answer, "at the mean stock") for answer in answers]
    back = [low * b / a <= truth <= high * b / a for (low, high), a, b in zip(limits, told, mid)]
    return dict(zip(GAMMA_COLUMNS, (f"{statistics.fmean(places):.3f}", f"{statistics.median(told):.3f}",
                                    f"{statistics.median(mid):.3f}", percent(back) if parameter == "Q" else "")))


def count(model, scheme, parameter, truth, answers, sets):
    """One line of the table; the last columns tell why a coverage is off."""
    name = parameter.split()[0]
    estimates = [answer["Estimates"][name] for answer in answers]
    limits = [answer["ConfidenceIntervals"][name] for answer in answers]
    periods, fitted = len(STOCKS[model][2]), len(STOCKS[model][1].keys() - {"Z"})
    factor = math.sqrt(periods / (periods - fitted))
    wider = [stretched(estimate, pair, factor) for estimate, pair in zip(estimates, limits)]
    slack = ROUNDING * abs(truth)
    cuts = statistics.quantiles(estimates, n=20)
    level = float(LIMITS.get(scheme.partition(", ")[2], LIMITS[""]).split(",")[1])
    width = statistics.median(high - low for low, high in limits)
    row = {
        "model": model, "error": scheme, "parameter": parameter, "data sets": sets, "fitted": len(answers),
        "covered %": percent([low - slack <= truth <= high + slack for low, high in limits]),
        "lower misses %": percent([truth < low - slack for low, _ in limits]),
        "upper misses %": percent([truth > high + slack for _, high in limits]),
        "width / truth": f"{width / truth:.4g}",
        "width / spread": f"{width / (cuts[-1] - cuts[0]):.3g}",
        "estimates below %": percent([estimate < truth for estimate in estimates]),
        "limits below %": percent([low + high < 2.0 * estimate for estimate, (low, high) in zip(estimates, limits)]),
        "linear theory %": f"{theory(periods, fitted, level):.1f}",
        "covered stretched %": percent([low - slack <= truth <= high + slack for low, high in wider]),
    }
    if scheme == "gamma":
        return row | gamma_columns(parameter, truth, answers, limits)
    return row | dict.fromkeys(GAMMA_COLUMNS, "")


def study(program, sets, folder, models, schemes):
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        for model in models:
            for scheme in schemes:
                found = list(pool.map(lambda n, m=model, s=scheme: fit(program, folder, m, s, n), range(sets)))
                answers = [answer for answer in found if answer["Status"] == "ok"]
                if len(answers) < 2:
                    raise SystemExit(f"{model}, {scheme}: {failures(found)}")
                for parameter, truth in true_values(model, scheme).items():
                    row = count(model, scheme, parameter, truth, answers, sets) | {"failures": failures(found)}
                    print(*row.values(), flush=True)
                    yield row


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--batch", default=str(ROOT / "build" / "release" / "src" / "batch" / "velt-batch"))
    parser.add_argument("--output", default=str(ROOT / "docs" / "coverage.csv"))
    parser.add_argument("--sets", type=int, default=200)
    parser.add_argument("--model", choices=STOCKS, action="append")
    parser.add_argument("--error", choices=SCHEMES, action="append")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        rows = list(study(options.batch, options.sets, pathlib.Path(folder), options.model or list(STOCKS),
                          options.error or SCHEMES))
    with open(options.output, "w", newline="", encoding="utf-8") as file:
        out = csv.DictWriter(file, rows[0].keys(), lineterminator="\n")
        out.writeheader()
        out.writerows(rows)
    return 0


if __name__ == "__main__":
    sys.exit(main())
