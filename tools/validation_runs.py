# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs of velt-batch for validation.py, their verdicts and their tables."""
import json
import pathlib
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLES = ROOT / "tests" / "samples"


class Runner:
    def __init__(self, program):
        self.program = program
        self.misses = 0
        self.elsewhere = []  # (target, our fit) where our answer is another minimum than the published one
        self.log_fits = {}  # (fit, quantity): (ours, difference from the published value in per cent)
        self.exact_sets = {}  # the same of the depletion experiments with equal efforts

    def fit(self, *words):
        done = subprocess.run([self.program, "fit", *words, "--format", "json"],
                              capture_output=True, text=True, check=False)
        return json.loads(done.stdout) if done.stdout else {"Status": "failed", "Message": done.stderr.strip()}

    def verdict(self, met):
        self.misses += not met
        return "met" if met else "**missed**"


def per_cent(ours, published):
    return 100.0 * (ours - published) / published


def figure(value):
    return f"{value:.7g}"


def table(headings, rows):
    lines = ["| " + " | ".join(headings) + " |", "|" + "---|" * len(headings)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"
