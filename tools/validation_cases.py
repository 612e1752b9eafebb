# SPDX-License-Identifier: GPL-3.0-or-later
"""Made-up stocks with ranges from an independent computation."""
import json
import math

from validation_runs import SAMPLES, table

def first_time(case):
    lines = (SAMPLES / "expected" / case["data"]).read_text(encoding="utf-8").splitlines()
    return int(lines[2].split()[lines[1].split().index(case["time_column"])])


def outside(ours, case):
    """How many of the case's ranges our answer misses, and how many there are."""
    missed = checked = 0

    def check(value, low, high):
        nonlocal missed, checked
        checked += 1
        missed += not (isinstance(value, (int, float)) and low <= value <= high)

    objective = case.get("objective")
    if objective:
        check(ours["Objective"], -math.inf, objective["accept_up_to"])
        if objective["kind"] != "interior":
            return missed, checked
    for group in ("InitEsts", "Estimates"):
        for name, bounds in case[group].items():
            check(ours[group].get(name), *bounds)
    check(ours["Var"], *case["Var"])
    check(ours["RSqr"], *case["RSqr"])
    for name, values in case["Series"].items():
        for row, bounds in values.items():
            check(ours["Series"][int(row) - 1][name], *bounds)
    return missed, checked


def case_row(runner, path):
    case = json.loads(path.read_text(encoding="utf-8"))
    inputs = case["inputs"]
    words = ["--data", str(SAMPLES / "expected" / case["data"]), "--time-column", case["time_column"],
             "--columns", ",".join(f"{heading}={title}" for heading, title in case["columns"].items()),
             "--model", case["model"], "--error", case["error"], "--m", str(inputs["M"]),
             "--init-proportion", str(inputs["InitialProportion"]), "--lag", str(inputs["LAG"]),
             "--z", str(inputs["Z"])]
    if case["excluded_rows"]:
        words += ["--exclude", ",".join(str(first_time(case) + row - 1) for row in case["excluded_rows"])]
    ours = runner.fit(*words)
    if case["status"] != "ok":
        wanted = case.get("Excuse", 3)
        met = ours["Status"] == "failed" and ours.get("Excuse") == wanted
        return [case["case"], f"no fit, excuse {wanted}", f"{ours['Status']}, excuse {ours.get('Excuse', '')}",
                runner.verdict(met)]
    if ours["Status"] != "ok":
        return [case["case"], "a fit", ours["Message"].replace("\n", " "), runner.verdict(False)]
    missed, checked = outside(ours, case)
    return [case["case"], f"{checked} ranges", f"{checked - missed} inside", runner.verdict(missed == 0)]


def made_up(runner):
    paths = sorted((SAMPLES / "expected").glob("*.json"))
    return table(["case", "accepted", "ours", ""], [case_row(runner, path) for path in paths])
