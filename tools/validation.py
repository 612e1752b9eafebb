#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs velt-batch over cases with known answers and writes docs/validation.md.

    validation.py [--batch PATH] [--output FILE] [--former FILE]

Public surplus-production data with independent fits, published depletion experiments with their exact regressions,
two further public stocks, made-up stocks with ranges from an independent computation, and the coverage that
coverage.py counted into docs/coverage.csv. Every figure of the document comes out of these runs, but for those of a
former version, which stand beside them: --former takes that version's document and keeps its figures in
docs/validation_former.csv. The exit status is 1 when a tolerance is missed.
"""
import argparse
import pathlib
import sys

from validation_cases import made_up
from validation_coverage import coverage
from validation_depletion import depletion, shrimp, squid
from validation_former import exact_before_and_now, keep_former
from validation_production import production_text
from validation_runs import ROOT, Runner


def document(runner):
    parts = {"production": production_text(runner), "depletion": depletion(runner), "exact": exact_before_and_now(runner),
             "shrimp": shrimp(runner), "squid": squid(runner), "coverage": coverage(), "cases": made_up(runner)}
    summary = "Every tolerance is met." if runner.misses == 0 else f"{runner.misses} tolerances are missed."
    return f"""# Validation

Written by `tools/validation.py` from runs of `velt-batch`; do not edit. {summary}

{parts["production"]}
## Depletion

Closed stocks with M = 0 by least squares. With equal efforts the fit is the regression of Leslie with Ricker's
modification, and six digits agree. With unequal efforts ours is that regression weighted by effort squared, while the
published one of blue crab and northern pike gives every period the same weight: those differ by method, so they
stand here without a tolerance.

{parts["depletion"]}
The exact sets before and now; a regression is not searched, so nothing may change:

{parts["exact"]}
## Recruitment index: northern shrimp, Gulf of Maine, 1985 to 2007

{parts["shrimp"]}
## Mean weight: squid, Falkland Islands, 1990

{parts["squid"]}
## How often 90 % limits hold the truth

{parts["coverage"]}
## Made-up stocks

Ranges from an independent computation; each holds every answer whose objective lies within rounding of the optimum.
Where the optimum lies at an edge or at infinity only the objective is compared.

{parts["cases"]}"""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--batch", default=str(ROOT / "build" / "release" / "src" / "batch" / "velt-batch"))
    parser.add_argument("--output", default=str(ROOT / "docs" / "validation.md"))
    parser.add_argument("--former", help="a former version's validation.md, to compare with")
    options = parser.parse_args()
    if options.former:
        keep_former(options.former)
    runner = Runner(options.batch)
    pathlib.Path(options.output).write_text(document(runner), encoding="utf-8")
    print(f"{options.output}: {runner.misses} tolerances missed")
    return 1 if runner.misses else 0


if __name__ == "__main__":
    sys.exit(main())
