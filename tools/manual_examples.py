#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the numbers, tables and pictures of the manual's pages from runs of velt-batch.

    manual_examples.py [--program PATH]            rewrites the marked blocks and draws the pictures
    manual_examples.py [--program PATH] --check    says whether the blocks agree with a fresh run; exits 1 if not

A page marks what is made as <!-- made: NAME -->...<!-- end -->. A NAME is either "table:" with the name of a table below, or
a case and a quantity (bass.N1, bass.N1.low, bass.RSqr), or "coverage:" with a place in docs/coverage.csv. Numbers agree when
they differ by less than half a unit of the third digit, as replicates go through the mathematics library of the system;
everything else has to be the same to the letter.
"""
import argparse
import csv
import html
import json
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import textwrap
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
MANUAL = ROOT / "docs" / "manual"
PROGRAM = ROOT / "build" / "release" / "src" / "batch" / "velt-batch"
MOST_PICTURE = 60 * 1024  # bytes

REPLICATES = "--bootstraps 500 --seed 7"
BASS = ("--data samples/smallmouth_bass.txt --time-column Period "
        "--columns 'Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort' --model no-recruitment --m 0")
SHRIMP = ("--data samples/northern_shrimp.txt --time-column Year --columns 'Tot_Catch_Nums=Tot. Catch Nums,"
          "Recruit_Index=Recruit. Index,Abund_Index=Abundance Index,Abund_Index=Catch Nums' --model recruitment-index")
SQUID = ("--data samples/squid_falklands_1990.txt --time-column Day "
         "--columns 'Tot_Catch_wt=Tot. Catch Wt,Effort_=Effort,Mean_Wt=Mean Wt'")
INDEX = "--time-column Year --columns 'Tot_Catch_wt=Tot. Catch Wt,Abund_Index=Abundance Index'"
LING = f"--data samples/pink_ling.txt {INDEX} --model fox"
ALBACORE = f"--data samples/albacore_south_atlantic.txt {INDEX}"
SCHAEFER = f"{ALBACORE} --model schaefer"
PELLA = f"{ALBACORE} --model pella-tomlinson --error log"

CASES = {
    "bass": f"{BASS} {REPLICATES}",
    "bass-log": f"{BASS} --error log {REPLICATES}",
    "bass-gamma": f"{BASS} --error gamma {REPLICATES}",
    "bass-without-2": f"{BASS} --exclude 2",
    "shrimp": f"{SHRIMP} --m 0.25 --error log {REPLICATES}",
    "shrimp-gamma": f"{SHRIMP} --m 0.25 --error gamma {REPLICATES}",
    "shrimp-ls": f"{SHRIMP} --m 0.25 --error ls",
    "shrimp-m15": f"{SHRIMP} --m 0.15 --error log",
    "shrimp-m35": f"{SHRIMP} --m 0.35 --error log",
    "squid": f"{SQUID} --model constant-recruitment --m 0.0133 --error log {REPLICATES}",
    "squid-ls": f"{SQUID} --model constant-recruitment --m 0.0133 {REPLICATES}",
    "squid-m005": f"{SQUID} --model constant-recruitment --m 0.005 --error log {REPLICATES}",
    "squid-m02": f"{SQUID} --model constant-recruitment --m 0.02 --error log {REPLICATES}",
    "squid-closed": f"{SQUID} --model no-recruitment --m 0.0133 --error log",
    "ling": f"{LING} --error log {REPLICATES}",
    "ling-half": f"{LING} --error log --init-proportion 0.5 {REPLICATES}",
    "ling-ls": f"{LING} --error ls",
    "ling-steady": f"{LING} --error ls --start K=13100,R=0.0827",
    "albacore": f"{SCHAEFER} --error log {REPLICATES} --scenarios @SCENARIOS@ --project-ci Twenty",
    "albacore-ls": f"{SCHAEFER} --error ls {REPLICATES}",
    "albacore-gamma": f"{SCHAEFER} --error gamma {REPLICATES}",
    "albacore-r02": f"{SCHAEFER} --error log --start R=0.2 --fix R",
    "pella-half": f"{PELLA} --z 0.5 {REPLICATES}",
    "pella-one": f"{PELLA} --z 1 {REPLICATES}",
    "pella-two": f"{PELLA} --z 2 {REPLICATES}",
}

# Five years under two total catches, thousand tonnes.
SCENARIOS = "Scenario,Units,Time,Value\n" + "".join(
    f"{name},Total Catch Weight,{year},{catch}\n"
    for name, catch in (("Closed", 0), ("Twenty", 20)) for year in range(1990, 1995))

# File in docs/manual/images: case, further options, how the picture's name begins behind its number.
PICTURES = {
    "bass_cpue.png": ("bass", "", "expected-and-observed-cpue"),
    "bass_n1.png": ("bass", "", "n-0-025"),
    "shrimp_cpue.png": ("shrimp", "", "expected-and-observed-cpue"),
    "shrimp_population.png": ("shrimp", "", "population-numbers"),
    "squid_cpue.png": ("squid", "", "expected-and-observed-cpue"),
    "squid_residuals.png": ("squid", "", "residual-catches-vs-time"),
    "ling_cpue.png": ("ling", "", "expected-and-observed-cpue"),
    "ling_k.png": ("ling", "", "k-0-025"),
    "albacore_cpue.png": ("albacore", "", "expected-and-observed-cpue"),
    "albacore_contours.png": ("albacore", "--contours 60", "contours"),
    "albacore_projection.png": ("albacore", "", "projection-2"),
    "pella_yield.png": ("pella-half", "", "equilibrium-yield-curve"),
}

NAMES = {"Q": "q", "R": "r", "MSY": "M.S.Y.", "RYield": "R. Yield", "FinalPopulation": "Final Population",
         "FinalBiomass": "Final Biomass"}

TITLES = {"no-recruitment": "No recruitment", "recruitment-index": "Recruitment index",
          "constant-recruitment": "Constant recruitment", "fox": "Fox", "schaefer": "Schaefer",
          "pella-tomlinson": "Pella-Tomlinson"}


def short(value):
    """Four digits, without an exponent where a reader does without one."""
    text = f"{value:.4g}"
    if "e" not in text:
        return text
    mantissa, exponent = text.split("e")
    if 0 <= int(exponent) < 7:
        return f"{float(text):.0f}"
    return f"{mantissa}E{exponent}"


class Runs:
    """Results of the cases, each run once."""

    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.scenarios = folder / "scenarios.csv"
        self.scenarios.write_text(SCENARIOS)
        self.results = {}

    def call(self, arguments, statuses=(0,)):
        words = [word.replace("@SCENARIOS@", str(self.scenarios)) for word in shlex.split(arguments)]
        done = subprocess.run([self.program, *words], cwd=ROOT, capture_output=True, text=True)
        if done.returncode not in statuses:
            sys.exit(f"velt-batch {arguments}: status {done.returncode}\n{done.stderr}")
        return done

    def of(self, case):
        if case not in self.results:
            done = self.call(f"fit {CASES[case]} --format json", (0, 4))
            self.results[case] = json.loads(done.stdout)
        return self.results[case]

    def value(self, case, quantity):
        result = self.of(case)
        name, _, end = quantity.partition(".")
        if end:
            return result["ConfidenceIntervals"][name][("low", "high").index(end)]
        return result["Estimates"].get(name, result.get(name))


def table(rows, head=True):
    lines = ['<table border="1" cellspacing="0" cellpadding="4">']
    for i, row in enumerate(rows):
        tag = "th" if head and i == 0 else "td"
        lines.append("<tr>" + "".join(f"<{tag}>{html.escape(cell)}</{tag}>" for cell in row) + "</tr>")
    return "\n".join(lines + ["</table>"])


def estimates_of(*labelled):
    """Estimates and limits, one column for each (label, case)."""
    def make(runs):
        names = list(runs.of(labelled[0][1])["Estimates"])
        rows = [["", *(label for label, _ in labelled)]]
        for name in names:
            cells = []
            for _, case in labelled:
                cell = short(runs.value(case, name))
                limits = (runs.of(case).get("ConfidenceIntervals") or {}).get(name)
                cells.append(cell if not limits else f"{cell} ({short(limits[0])} to {short(limits[1])})")
            rows.append([NAMES.get(name, name), *cells])
        rows.append(["R Sqr", *(f"{runs.of(case)['RSqr']:.3f}" for _, case in labelled)])
        return table(rows)
    return make


def remarks_of(case):
    def make(runs):
        remarks = runs.of(case)["Remarks"]
        if not remarks:
            return "<p>The report has no remarks.</p>"
        return "<ol>\n" + "\n".join(f"<li>{html.escape(r['Text'])}</li>" for r in remarks) + "\n</ol>"
    return make


def message_of(case):
    def make(runs):
        lines = [line for line in runs.of(case)["Message"].split("\n") if line]
        return "<pre>\n" + html.escape("\n".join(lines)) + "\n</pre>"
    return make


def projections_of(case):
    def make(runs):
        entries = [entry for entry in runs.of(case)["Projections"] if entry["Scenario"] != "Fit"]
        plain = {entry["Scenario"]: entry["Series"] for entry in entries if "Low" not in entry["Series"][0]}
        limits = next((entry for entry in entries if "Low" in entry["Series"][0]), None)
        names = list(plain)
        if limits and limits["Scenario"] not in names:
            names.append(limits["Scenario"])
        rows = [["Year", *names, *([f"limits of {limits['Scenario']}"] if limits else [])]]
        first = (list(plain.values()) or [limits["Series"]])[0]
        for i, point in enumerate(first):
            cells = [str(point["Time"])]
            for name in names:
                series = plain.get(name) or limits["Series"]
                cells.append(short(series[i]["Population"]))
            if limits:
                cells.append(f"{short(limits['Series'][i]['Low'])} to {short(limits['Series'][i]['High'])}")
            rows.append(cells)
        return table(rows)
    return make


def session_of(arguments, *, lines=None, statuses=(0,), errors=False):
    """A command as typed, and what it answers."""
    def make(runs):
        done = runs.call(arguments.replace("\\\n", " "), statuses)
        answer = (done.stderr if errors else done.stdout).rstrip().split("\n")
        if lines:
            answer = [*answer[:lines], "..."]
        answer = [part for line in answer for part in textwrap.wrap(line, 90, drop_whitespace=False) or [""]]
        answer = [line.rstrip() for line in answer]  # as a terminal shows it
        return "<pre>\n" + html.escape(f"velt-batch {arguments}\n\n" + "\n".join(answer)) + "\n</pre>"
    return make


def coverage():
    """Rows of docs/coverage.csv by model, error model and parameter."""
    with open(ROOT / "docs" / "coverage.csv", encoding="utf-8") as file:
        return {(row["model"], row["error"], row["parameter"]): row for row in csv.DictReader(file)}


def coverage_table(runs):
    """Per cent of the simulated data sets whose limits held the truth."""
    rows = [["Model", "Parameter", "Least squares, 90 %", "Log, 90 %", "Gamma, 90 %", "Least squares, 95 %"]]
    measured = coverage()
    for model, error, parameter in measured:
        exact = (model, parameter) == ("constant-recruitment", "RYield") # follows from the catches and M alone
        if error != "ls" or exact or parameter == "MSY (peak)":
            continue
        rows.append([TITLES[model], NAMES.get(parameter, parameter)] +
                    [measured[model, e, parameter]["covered %"] for e in ("ls", "log", "gamma", "ls, 95 %")])
    return table(rows)


TABLES = {
    "coverage": coverage_table,
    "bass": estimates_of(("Least squares", "bass"), ("Log transform", "bass-log"), ("Gamma", "bass-gamma")),
    "bass-remarks": remarks_of("bass"),
    "bass-gamma-remarks": remarks_of("bass-gamma"),
    "bass-without-2": estimates_of(("All periods", "bass"), ("Without period 2", "bass-without-2")),
    "shrimp": estimates_of(("Log transform", "shrimp"), ("Gamma", "shrimp-gamma")),
    "shrimp-m": estimates_of(("M = 0.15", "shrimp-m15"), ("M = 0.25", "shrimp"), ("M = 0.35", "shrimp-m35")),
    "shrimp-remarks": remarks_of("shrimp"),
    "shrimp-ls": message_of("shrimp-ls"),
    "squid": estimates_of(("Log transform", "squid"), ("Least squares", "squid-ls")),
    "squid-m": estimates_of(("M = 0.005", "squid-m005"), ("M = 0.0133", "squid"), ("M = 0.02", "squid-m02")),
    "squid-closed": estimates_of(("No recruitment, M = 0.0133", "squid-closed")),
    "squid-closed-remarks": remarks_of("squid-closed"),
    "squid-remarks": remarks_of("squid"),
    "ling": estimates_of(("Initial proportion 1", "ling"), ("Initial proportion 0.5", "ling-half")),
    "ling-remarks": remarks_of("ling"),
    "ling-half-remarks": remarks_of("ling-half"),
    "ling-ls": estimates_of(("Own starts", "ling-ls"), ("Started at K = 13100, r = 0.0827", "ling-steady")),
    "ling-ls-remarks": remarks_of("ling-ls"),
    "albacore": estimates_of(("Log transform", "albacore"), ("Least squares", "albacore-ls"),
                             ("Gamma", "albacore-gamma")),
    "albacore-fixed": estimates_of(("r searched", "albacore"), ("r held at 0.2", "albacore-r02")),
    "albacore-remarks": remarks_of("albacore"),
    "albacore-projection": projections_of("albacore"),
    "pella": estimates_of(("Z = 0.5", "pella-half"), ("Z = 1", "pella-one"), ("Z = 2", "pella-two")),
    "pella-half-remarks": remarks_of("pella-half"),
    "pella-two-remarks": remarks_of("pella-two"),
    "session-fit": session_of(
        "fit --data samples/smallmouth_bass.txt --time-column Period \\\n"
        "    --columns \"Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort\" \\\n"
        "    --model no-recruitment --m 0 --bootstraps 500 --seed 7"),
    "session-json": session_of(
        "fit --data samples/smallmouth_bass.txt --time-column Period \\\n"
        "    --columns \"Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort\" \\\n"
        "    --model no-recruitment --m 0 --format json", lines=19),
    "session-remark": session_of(
        "fit --data samples/albacore_south_atlantic.txt --time-column Year \\\n"
        "    --columns \"Tot_Catch_wt=Tot. Catch Wt,Abund_Index=Abundance Index\" \\\n"
        "    --model pella-tomlinson --z 2 --error log"),
    "session-refused": session_of(
        "fit --data samples/smallmouth_bass.txt --time-column Period \\\n"
        "    --columns \"Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort\" \\\n"
        "    --model schaefer", statuses=(3,), errors=True),
}


# ---------------------------------------------------------------- pages

BLOCK = re.compile(r"(<!-- made: (\S+) -->)(.*?)(<!-- end -->)", re.DOTALL)


def made(name, runs):
    if name.startswith("table:"):
        return "\n" + TABLES[name.removeprefix("table:")](runs) + "\n"
    if name.startswith("coverage:"):
        _, model, error, parameter, column = name.split(":")
        return coverage()[model, error.replace("_", " "), parameter][column.replace("_", " ")]
    case, _, quantity = name.partition(".")
    if quantity == "RSqr":
        return f"{runs.value(case, quantity):.3f}"
    if quantity == "percent": # of the stock that is left
        last = runs.value(case, "FinalPopulation" if "FinalPopulation" in runs.of(case)["Estimates"] else "FinalBiomass")
        first = runs.value(case, "N1" if "N1" in runs.of(case)["Estimates"] else "K")
        return f"{100 * last / first:.0f}"
    return short(runs.value(case, quantity))


def pages():
    return sorted(MANUAL.glob("*.html"))


def rewrite(runs):
    for page in pages():
        before = page.read_text(encoding="utf-8")
        after = BLOCK.sub(lambda m: m[1] + made(m[2], runs) + m[4], before)
        if after != before:
            page.write_text(after, encoding="utf-8")
            print(f"rewritten: {page.name}")


NUMBER = re.compile(r"-?\d+(?:\.\d+)?(?:[Ee][+-]?\d+)?")


def same_number(a, b):
    x, y = float(a), float(b)
    largest = max(abs(x), abs(y))
    if largest == 0.0:
        return True
    third = 10.0 ** (int(f"{largest:e}".split("e")[1]) - 2)
    return abs(x - y) < 0.5 * third


def disagreement(old, new):
    """What tells the two texts apart; None where they agree."""
    if NUMBER.sub("#", old) != NUMBER.sub("#", new):
        return "the words differ"
    for a, b in zip(NUMBER.findall(old), NUMBER.findall(new)):
        if not same_number(a, b):
            return f"{a} is {b} in a fresh run"
    return None


def check(runs):
    faults = []
    blocks = 0
    for page in pages():
        for match in BLOCK.finditer(page.read_text(encoding="utf-8")):
            blocks += 1
            fault = disagreement(match[3], made(match[2], runs))
            if fault:
                faults.append(f"{page.name}: {match[2]}: {fault}")
    for name in PICTURES:
        picture = MANUAL / "images" / name
        if not picture.is_file():
            faults.append(f"images/{name} is missing")
        elif picture.stat().st_size > MOST_PICTURE:
            faults.append(f"images/{name} is larger than {MOST_PICTURE} bytes")
    if blocks == 0:
        faults.append("no page has a block that is made")
    for fault in faults:
        print(fault)
    print(f"{blocks} blocks, {len(PICTURES)} pictures, {len(faults)} faults")
    return 1 if faults else 0


# ---------------------------------------------------------------- pictures

def read_png(path):
    """Width, height and rows of an 8-bit RGB picture without interlacing."""
    data = path.read_bytes()
    chunks, at = b"", 8
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", body)
            if (depth, colour, interlaced) != (8, 2, 0):
                sys.exit(f"{path}: a kind of picture that is not understood")
        elif kind == b"IDAT":
            chunks += body
        at += 12 + length
    raw = zlib.decompress(chunks)
    stride = 3 * width
    rows, before = [], bytearray(stride)
    for y in range(height):
        kind = raw[y * (stride + 1)]
        row = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        unfilter(kind, row, before)
        rows.append(row)
        before = row
    return width, height, rows


def unfilter(kind, row, before):
    for x in range(len(row)):
        left = row[x - 3] if x >= 3 else 0
        up = before[x]
        if kind == 1:
            row[x] = (row[x] + left) & 255
        elif kind == 2:
            row[x] = (row[x] + up) & 255
        elif kind == 3:
            row[x] = (row[x] + (left + up) // 2) & 255
        elif kind == 4:
            corner = before[x - 3] if x >= 3 else 0
            guess = left + up - corner
            distances = abs(guess - left), abs(guess - up), abs(guess - corner)
            nearest = (left, up, corner)[distances.index(min(distances))]
            row[x] = (row[x] + nearest) & 255


def halved(width, rows):
    """Each pixel the mean of four, its colour rounded so that a palette holds it."""
    pixels = []
    for upper, lower in zip(rows[0::2], rows[1::2]):
        line = []
        for x in range(0, 3 * (width - 1), 6):
            line.append(tuple(min(255, (((upper[x + c] + upper[x + 3 + c] + lower[x + c] + lower[x + 3 + c]) // 4 + 4)
                                        // 8) * 8) for c in range(3)))
        pixels.append(line)
    return pixels


def write_png(path, pixels):
    counts = {}
    for line in pixels:
        for colour in line:
            counts[colour] = counts.get(colour, 0) + 1
    palette = sorted(counts, key=lambda c: (-counts[c], c))[:256]
    index = {colour: i for i, colour in enumerate(palette)}
    for colour in counts:
        if colour not in index:
            index[colour] = min(range(len(palette)),
                                key=lambda i: sum((a - b) ** 2 for a, b in zip(colour, palette[i])))
    raw = b"".join(b"\0" + bytes(index[colour] for colour in line) for line in pixels)

    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    header = struct.pack(">IIBBBBB", len(pixels[0]), len(pixels), 8, 3, 0, 0, 0)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                     chunk(b"PLTE", b"".join(bytes(colour) for colour in palette)) +
                     chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def draw(runs):
    (MANUAL / "images").mkdir(parents=True, exist_ok=True)
    drawn = {}
    for name, (case, options, start) in PICTURES.items():
        if (case, options) not in drawn:
            folder = runs.folder / f"plots{len(drawn)}"
            runs.call(f"fit {CASES[case]} {options} --plots {folder} --csv {folder}")
            drawn[case, options] = folder
        found = [path for path in sorted(drawn[case, options].glob("*.png"))
                 if re.sub(r"^\d+-", "", path.stem).startswith(start)]
        if len(found) != 1:
            sys.exit(f"images/{name}: {len(found)} pictures begin with \"{start}\"")
        width, _, rows = read_png(found[0])
        target = MANUAL / "images" / name
        write_png(target, halved(width, rows))
        if target.stat().st_size > MOST_PICTURE:
            sys.exit(f"images/{name} has {target.stat().st_size} bytes")
        print(f"drawn: {name}, {target.stat().st_size} bytes")


def main():
    options = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    options.add_argument("--program", default=str(PROGRAM), help="the velt-batch to run")
    options.add_argument("--check", action="store_true", help="change nothing; exit 1 where a page is out of date")
    options.add_argument("--no-pictures", action="store_true", help="leave the pictures as they are")
    chosen = options.parse_args()
    folder = pathlib.Path(tempfile.mkdtemp(prefix="velt-manual-"))
    try:
        runs = Runs(str(pathlib.Path(chosen.program).resolve()), folder)
        if chosen.check:
            return check(runs)
        rewrite(runs)
        if not chosen.no_pictures:
            draw(runs)
        return 0
    finally:
        shutil.rmtree(folder)


if __name__ == "__main__":
    sys.exit(main())
