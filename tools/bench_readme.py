#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the benchmarks of a release build and writes bench/README.md.

    bench_readme.py [--bench PATH] [--desktop PATH] [--output FILE]

Times are processor time per call, the median of five runs. The goals stand beside the figures.
"""
import argparse
import json
import os
import pathlib
import platform
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6}
MODELS = {"1": "no recruitment", "2": "recruitment index", "3": "constant recruitment", "5": "Schaefer"}
ERRORS = {"1": "least squares", "2": "log", "3": "gamma"}

# What must hold, in nanoseconds, by the name of a benchmark.
GOALS = {
    "Import200Rows": 2e6,
    "CalcPopTraj/model:1/periods:30": 15.0 * 30,
    "CalcPopTraj/model:1/periods:199": 15.0 * 199,
    "SchaeferLogObjective/periods:30": 0.55e3,
    "SchaeferLogObjective/periods:199": 3.6e3,
    "ContourGrid20": 5e6,
    "WholeFit/model:5/error:2/periods:30": 0.35e6,
    **{f"WholeFit/model:{m}/error:1/periods:30": 50e3 for m in "123"},
    **{f"WholeFit/model:{m}/error:2/periods:30": 100e3 for m in "13"},
    **{f"WholeFit/model:{m}/error:3/periods:30": 4e6 for m in "1235"},
    **{f"Bootstraps/model:{m}/error:1/periods:30": 5e6 for m in "123"},
    **{f"Bootstraps/model:{m}/error:2/periods:30": 25e6 for m in "13"},
    **{f"Bootstraps/model:{m}/error:3/periods:30": 1e9 for m in "1235"},
    "Bootstraps/model:5/error:2/periods:30": 22e6,
    "Bootstraps/model:5/error:2/periods:199": 100e6,
    **{f"DoProjCI/model:{m}/periods:30/future:50/replicates:500": 60e6 for m in "1356"},
    **{f"DoProjCI/model:{m}/periods:49/future:150/replicates:1000": 1e9 for m in "1356"},
    **{f"CancelDoProjCI/model:{m}": 100e6 for m in "16"},
    "OpenProject50x1000/real_time": 300e6,
    "SaveProject50x1000/real_time": 300e6,
    "GridRebuild": 50e6,
    "Paste200x9": 100e6,
    "TogglePoint": 50e6,
}


def run(program):
    done = subprocess.run([program, "--benchmark_repetitions=5", "--benchmark_report_aggregates_only=true",
                           "--benchmark_min_time=0.1", "--benchmark_format=json"],
                          capture_output=True, text=True, check=True)
    return [b for b in json.loads(done.stdout)["benchmarks"] if b.get("aggregate_name") == "median"]


def readable(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def words(name):
    head, *parts = name.split("/")
    values = dict(part.split(":") for part in parts if ":" in part)
    said = [{**MODELS, "6": "Pella-Tomlinson"}.get(values["model"])] if "model" in values else []
    said += [ERRORS.get(values["error"])] if "error" in values else []
    said += [values["periods"] + " periods"] if "periods" in values else []
    said += [values["future"] + " future ones"] if "future" in values else []
    said += [values["replicates"] + " replicates"] if "replicates" in values else []
    return head, ", ".join(said)


def machine():
    model = "unknown processor"
    cpuinfo = pathlib.Path("/proc/cpuinfo")
    if cpuinfo.exists():
        names = [line.split(":", 1)[1].strip() for line in cpuinfo.read_text().splitlines()
                 if line.startswith("model name")]
        model = names[0] if names else model
    compiler = subprocess.run(["g++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]
    return f"{model}, {os.cpu_count()} cores, {platform.system()} {platform.release()}, {compiler}, release build"


def table(benchmarks):
    lines = ["| what | case | time | goal |  | evaluations |", "|---|---|---|---|---|---|"]
    missed = 0
    fits = {b["run_name"]: b["cpu_time"] * NANOSECONDS[b["time_unit"]] for b in benchmarks}
    for b in benchmarks:
        name = b["run_name"]
        head, case = words(name)
        clock = "real_time" if name.endswith("/real_time") else "cpu_time"
        time = b[clock] * NANOSECONDS[b["time_unit"]]
        goal = GOALS.get(name, fits.get(name.replace("Remarks/", "WholeFit/")) if head == "Remarks" else None)
        verdict = "" if goal is None else "met" if time <= goal else "**missed**"
        missed += verdict == "**missed**"
        evaluations = int(b["evaluations"]) if b.get("evaluations") else ""
        lines.append(f"| {head} | {case} | {readable(time)} | {readable(goal) if goal else ''} | {verdict} | "
                     f"{evaluations} |")
    return lines, missed


def growth(benchmarks):
    times = {b["run_name"]: b["cpu_time"] * NANOSECONDS[b["time_unit"]] for b in benchmarks}
    lines = ["| model | error | 30 periods | 100 periods | factor |", "|---|---|---|---|---|"]
    for m, model in MODELS.items():
        for e, error in ERRORS.items():
            short, long = (times[f"Bootstraps/model:{m}/error:{e}/periods:{n}"] for n in (30, 100))
            lines.append(f"| {model} | {error} | {readable(short)} | {readable(long)} | {long / short:.1f} |")
    return lines


HEAD = """# Benchmarks

Written by `tools/bench_readme.py` from runs of `velt_bench` and `velt_bench_desktop`; do not edit.

Machine: {machine}. Processor time per call, median of five runs.

`CalcPopTraj`: one trajectory (the goal is 15 ns a period). `WholeFit`: starting estimates and final fit, for Schaefer
from three starts; the evaluations are those of the search that was kept. `Bootstraps`: 500 replicates and their sorting,
under the gamma model with the matrix of catches. `Remarks`: what the program says about a fit, whose own time is the
goal. `Import200Rows`: file, wizard and conversions. `ContourGrid20`: 20 x 20 cells. `OpenProject50x1000` and `SaveProject50x1000`: a project with 50 logged fits of 1000 replicates
each, by the clock and not by the processor, flushed to the disk.
In the real main window, drawn to the last pixel: `GridRebuild`, 200 rows, 15 columns and 200 boxes; `Paste200x9`, a block
from the clipboard with its step of Undo; `TogglePoint`, a period out of the fit or into it with all graphs of a fit on 199
periods open.
"""

GROWTH = """
## From 30 to 100 periods

An evaluation costs in proportion to the periods, so a replicate should grow 3.3 times. It grows less where the longer
series is better determined and the search needs fewer steps, and more where each step needs more root search. The
gamma matrix grows with the square of the periods: each pair of periods is one root search.
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bench", default=str(ROOT / "build/release/bench/velt_bench"))
    parser.add_argument("--desktop", default=str(ROOT / "build/release/bench/velt_bench_desktop"))
    parser.add_argument("--output", default=str(ROOT / "bench/README.md"))
    options = parser.parse_args()
    benchmarks = run(options.bench) + run(options.desktop)
    rows, missed = table(benchmarks)
    text = HEAD.format(machine=machine()) + "\n" + "\n".join(rows) + "\n" + GROWTH + "\n" + "\n".join(growth(benchmarks))
    pathlib.Path(options.output).write_text(text + "\n", encoding="utf-8")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
