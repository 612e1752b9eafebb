#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that the sources include only what stands below them.

    check_includes.py SRC          checks the tree under SRC; status 1 and one line a finding when a rule is broken
    check_includes.py --self-test  breaks each rule in a made-up tree and sees that it is found

The rules: a file includes from its own folder and from the floors below, never from a higher floor and never
from another folder of its own floor; a folder that the table does not know is a finding; folders of the core
include no header of Qt or of the plot library; no file includes itself by way of others.
"""
import pathlib
import re
import sys
import tempfile

FLOORS = {
    "base": 1,
    "engines": 2, "files": 2, "graphs": 2,
    "data": 3,
    "models": 4,
    "fit": 5,
    "toolkit": 5.5,  # what views and dialogs share
    "views": 6, "dialogs": 6,
    "shell": 7, "batch": 7,
}
CORE = {folder for folder, floor in FLOORS.items() if floor <= 5}
# The one file of the batch tool that may draw; it is built only with the desktop.
BATCH_PICTURES = "batch/WritePlots.cpp"
QUOTED = re.compile(r'^\s*#\s*include\s+"([^"]+)"')
QT = re.compile(r'^\s*#\s*include\s+[<"](Q[A-Za-z0-9]*|Qt[A-Z]\w*/.*|q[a-z]+\.h|ui_.*)[>"]')


def sources(src):
    return sorted(p for p in src.rglob("*") if p.suffix in (".h", ".cpp"))


def included(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = QUOTED.match(line)
        if match:
            yield number, match.group(1)


def wrong_floor(name, target):
    """Why `name` may not include `target`, both relative to the source tree; empty when it may."""
    here, there = name.split("/")[0], target.split("/")[0]
    if "/" not in target:
        return "" if target.endswith(".moc") else "an include names its folder"
    if there not in FLOORS:
        return f'there is no folder "{there}"'
    if here == there:
        return ""
    if FLOORS[there] > FLOORS[here]:
        return f"{there} stands above {here}"
    if FLOORS[there] == FLOORS[here]:
        return f"{there} stands beside {here}"
    if here == "batch" and there in ("views", "dialogs") and name != BATCH_PICTURES:
        return f"only {BATCH_PICTURES} may draw"
    return ""


def floor_findings(src):
    for path in sources(src):
        name = path.relative_to(src).as_posix()
        if name.split("/")[0] not in FLOORS:
            yield f"{name}: its folder stands on no floor"
            continue
        for number, target in included(path):
            why = wrong_floor(name, target)
            if why:
                yield f'{name}:{number}: "{target}": {why}'


def qt_findings(src):
    for path in sources(src):
        name = path.relative_to(src).as_posix()
        core = name.split("/")[0] in CORE or (name.startswith("batch/") and name != BATCH_PICTURES)
        if not core:
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            if QT.match(line):
                yield f"{name}:{number}: a header of the desktop's libraries below the desktop"


def cycle_findings(src):
    graph = {}
    for path in sources(src):
        graph[path.relative_to(src).as_posix()] = [target for _, target in included(path)]
    state = {}  # 1 on the way down, 2 done
    findings = []

    def visit(name, trail):
        state[name] = 1
        for target in graph[name]:
            if target not in graph:
                continue
            if state.get(target) == 1:
                circle = trail[trail.index(target):] + [target]
                findings.append("a circle: " + " -> ".join(circle))
            elif target not in state:
                visit(target, trail + [target])
        state[name] = 2

    for name in graph:
        if name not in state:
            visit(name, [name])
    return findings


def findings_of(src):
    return [*floor_findings(src), *qt_findings(src), *cycle_findings(src)]


def self_test():
    cases = {
        "an include upwards": ({"base/a.h": '#include "data/b.h"\n', "data/b.h": ""}, "stands above"),
        "an include sideways": ({"files/a.h": '#include "graphs/b.h"\n', "graphs/b.h": ""}, "stands beside"),
        "shell and batch": ({"batch/a.h": '#include "shell/b.h"\n', "shell/b.h": ""}, "stands beside"),
        "Qt in the core": ({"fit/a.cpp": "#include <QString>\n"}, "below the desktop"),
        "Qt in the batch tool": ({"batch/a.cpp": "#include <QtGui/QImage>\n"}, "below the desktop"),
        "the plot library": ({"models/a.cpp": "#include <qcustomplot.h>\n"}, "below the desktop"),
        "a circle": ({"base/a.h": '#include "base/b.h"\n', "base/b.h": '#include "base/a.h"\n'}, "a circle"),
        "an unknown folder": ({"misc/a.h": ""}, "no floor"),
        "an include without a folder": ({"base/a.h": '#include "b.h"\n', "base/b.h": ""}, "names its folder"),
    }
    good = {"base/a.h": "#include <vector>\n", "data/b.cpp": '#include "base/a.h"\n#include "data/b.h"\n',
            "data/b.h": "", "views/c.cpp": '#include "data/b.h"\n#include <QString>\n'}
    failures = [] if not run_on(good) else ["a clean tree is refused"]
    for title, (files, wanted) in cases.items():
        if not any(wanted in finding for finding in run_on(files)):
            failures.append(f"{title} is not found")
    return failures


def run_on(files):
    with tempfile.TemporaryDirectory() as directory:
        src = pathlib.Path(directory)
        for name, text in files.items():
            (src / name).parent.mkdir(parents=True, exist_ok=True)
            (src / name).write_text(text, encoding="utf-8")
        return findings_of(src)


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    if arguments[0] == "--self-test":
        findings = self_test()
    else:
        src = pathlib.Path(arguments[0])
        findings = findings_of(src)
        if not sources(src):
            findings.append(f"{src} holds no sources")
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
