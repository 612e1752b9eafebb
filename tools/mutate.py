#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Breaks the sources in small ways, one at a time, and counts the breaks that the tests notice.

    mutate.py [--number 200] [--seed 1] [--build build/mutate] [--in src/base ...] [--list FILE]
    mutate.py --again [--build build/mutate] [--in ...] [--list FILE]
                           tries the survivors once more, with the tests as they are now
    mutate.py --self-test  checks how breaks are found, applied and undone

The work is done in a copy of the tree under the build folder; the files of the checkout are only read. The copy is
built without optimisation and without sanitizers. For each break the programs of tests/core, tests/batch and
tests/desktop that hold the broken file are built and run, the floor's own first, then the fast ones, until one fails.
A program that takes far longer than usual has noticed. A break that does not compile counts for nothing, and another
is drawn. One compiler and one test run at a time.

What was found stands in state.jsonl in the build folder, so that a run can be stopped at any time and goes on where
it was when it is started again with the same numbers. `--fresh` throws the state away. `--in` takes files or folders.
"""
import argparse
import hashlib
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

from breaks import Site, applied, draws, self_test, sites_of, undone

ROOT = pathlib.Path(__file__).resolve().parent.parent
TEST_FOLDERS = ("tests/core/", "tests/batch/", "tests/desktop/")
SECONDS_TO_COMPILE = 900  # a header of the lowest floor rebuilds nearly everything
BYTES_FOR_A_TEST = 4 << 30
CMAKE = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_FLAGS=-O0 -D_GLIBCXX_ASSERTIONS", "-DVELT_BENCH=OFF",
         # Asking a program for its tests after every link would cost more than the link.
         "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"]


# ---- the copy of the tree, its build and its tests --------------------------------------------------------------

class Workshop:
    """The copy under the build folder. One break is in it at most, and none when a call has returned."""

    def __init__(self, folder):
        self.tree = folder / "tree"
        self.out = folder / "out"
        self.scratch = folder / "scratch"

    def sync(self):
        """Makes the copy equal to the checkout; files that are equal already keep their times."""
        names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                               check=True, capture_output=True, text=True).stdout.split("\0")
        wanted = {name for name in names if name and (ROOT / name).is_file()}
        for name in wanted:
            source, target = (ROOT / name).read_bytes(), self.tree / name
            if not target.is_file() or target.read_bytes() != source:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(source)
                shutil.copymode(ROOT / name, target)
        for path in [p for p in self.tree.rglob("*") if p.is_file()]:
            if path.relative_to(self.tree).as_posix() not in wanted:
                path.unlink()

    def configure(self):
        linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []
        subprocess.run(["cmake", "-S", self.tree, "-B", self.out, *CMAKE, *linker], check=True,
                       stdout=subprocess.DEVNULL)

    def test_programs(self):
        targets = subprocess.run(["ninja", "-C", self.out, "-t", "targets", "all"], check=True, capture_output=True,
                                 text=True).stdout
        names = re.findall(r"^(\S+): CXX_EXECUTABLE_LINKER", targets, re.M)
        return sorted(name for name in names if name.startswith(TEST_FOLDERS))

    def build(self, program, keep=False):
        """Whether the program could be built. What is built broken is kept out of the compiler's cache."""
        environment = dict(os.environ) if keep else {**os.environ, "CCACHE_READONLY": "1"}
        with subprocess.Popen(["ninja", "-j1", "-C", self.out, program], env=environment, start_new_session=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True) as ninja:
            try:
                output, _ = ninja.communicate(timeout=SECONDS_TO_COMPILE)
            except BaseException as stopped:
                os.killpg(ninja.pid, signal.SIGKILL)
                if not isinstance(stopped, subprocess.TimeoutExpired):
                    raise
                return False
        if ninja.returncode != 0 and keep:
            sys.exit(f"{program} does not build as it stands:\n{output[-4000:]}")
        return ninja.returncode == 0

    def looks(self, program):
        """A word that changes when the program does, or the one that it starts."""
        files = [program] + (["src/batch/velt-batch"] if program == "tests/batch/batch_tests" else [])
        return hashlib.sha256(b"".join((self.out / f).read_bytes() for f in files)).hexdigest()

    def run(self, program, seconds):
        """Nothing when all its tests pass within the time, else the line that said so; it stops at the first that fails."""
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir(parents=True)
        environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "TMPDIR": str(self.scratch),
                       "GTEST_FAIL_FAST": "1", "GTEST_COLOR": "no"}
        with subprocess.Popen([self.out / program], cwd=self.scratch, env=environment, start_new_session=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              preexec_fn=prepare_test) as test:
            clock = threading.Timer(seconds, kill_all, [test])
            clock.start()
            try:
                for line in test.stdout:
                    if b"[  FAILED  ]" in line or line.startswith(b"FAIL!"):
                        return line.decode(errors="replace").strip()
                return "" if test.wait() == 0 else f"ended with status {test.returncode}"
            finally:
                clock.cancel()
                kill_all(test)


def prepare_test():
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, signal.SIG_DFL)  # tests of signals must not inherit that nohup ignores them
    resource.setrlimit(resource.RLIMIT_AS, (BYTES_FOR_A_TEST, BYTES_FOR_A_TEST))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def kill_all(process):
    """Ends the process and those that it started; they are a session of their own."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass


def baseline(workshop):
    """Builds everything unbroken; how long each program takes and how it looks."""
    programs = {}
    for program in workshop.test_programs():
        print(f"building {program}", flush=True)
        workshop.build(program, keep=True)
        start = time.monotonic()
        failure = workshop.run(program, 900)
        if failure:
            sys.exit(f"{program} fails as it stands, so breaks cannot be judged: {failure}")
        programs[program] = {"seconds": time.monotonic() - start, "looks": workshop.looks(program)}
    return programs


def in_order(programs, file):
    """The floor's own program first, then the fast ones."""
    folder = file.split("/")[1]
    return sorted(programs, key=lambda p: (not p.rsplit("/", 1)[1].startswith(folder + "_"), programs[p]["seconds"]))


def judge(workshop, programs, site):
    """What became of one break: "killed by ...", "survived" or "no mutant"."""
    path = workshop.tree / site.file
    text = path.read_text(encoding="utf-8")
    path.write_text(applied(text, site), encoding="utf-8")
    try:
        for program in in_order(programs, site.file):
            if not workshop.build(program):
                return "no mutant"
            if workshop.looks(program) == programs[program]["looks"]:
                continue  # it does not hold the place
            if workshop.run(program, 10 + 4 * programs[program]["seconds"]):
                return "killed by " + program.rsplit("/", 1)[1]
        return "survived"
    finally:
        path.write_text(undone(applied(text, site), site), encoding="utf-8")


# ---- runs, their state and their tables -------------------------------------------------------------------------

def sources(within):
    names = sorted(p.relative_to(ROOT).as_posix() for p in (ROOT / "src").rglob("*") if p.suffix in (".h", ".cpp"))
    return [name for name in names if not within or any(name == w or name.startswith(w + "/") for w in within)]


def digest(names):
    return hashlib.sha256("".join(n + (ROOT / n).read_text(encoding="utf-8") for n in names).encode()).hexdigest()[:16]


class State:
    """One line a break, behind a line that says which run it is."""

    def __init__(self, path, head, fresh):
        self.path = path
        self.results = {}
        if not path.exists() or fresh:
            path.write_text(json.dumps(head) + "\n", encoding="utf-8")
            return
        lines = path.read_text(encoding="utf-8").splitlines()
        if head is not None and json.loads(lines[0]) != head:
            sys.exit(f"{path} belongs to another run (seed, sources or --in differ); --fresh throws it away")
        for line in lines[1:]:
            record = json.loads(line)
            self.results[Site(*record[0])] = record[1]

    def add(self, site, result):
        self.results[site] = result
        with self.path.open("a", encoding="utf-8") as file:
            file.write(json.dumps([site, result]) + "\n")


def run_draws(workshop, state, arguments, names):
    programs = None
    judged = 0
    sites = [site for n in names for site in sites_of(n, (ROOT / n).read_text(encoding="utf-8"))]
    for site in draws(sites, arguments.seed):
        if judged == arguments.number:
            break
        if site not in state.results:
            programs = programs or baseline(workshop)
            start = time.monotonic()
            state.add(site, judge(workshop, programs, site))
            print(f"{judged + 1:4} {time.monotonic() - start:5.0f} s  {told(site, state.results[site])}", flush=True)
        judged += state.results[site] != "no mutant"


def run_again(workshop, state, names):
    survivors = [site for site, result in state.results.items() if result == "survived" and site.file in names]
    programs = baseline(workshop) if survivors else {}
    for site in survivors:
        try:
            state.add(site, judge(workshop, programs, site))
            print(told(site, state.results[site]), flush=True)
        except ValueError as moved:
            print(moved, flush=True)


def told(site, result):
    def one_line(text):
        return " ".join(text.split()) or "(nothing)"
    return f"{result:28} {site.file}:{site.line}: {site.kind}: {one_line(site.before)} -> {one_line(site.after)}"


def table(results, title, key):
    counts = {}
    for site, result in results.items():
        if result != "no mutant":
            row = counts.setdefault(key(site), [0, 0])
            row[result == "survived"] += 1
    total = [sum(row[i] for row in counts.values()) for i in (0, 1)]
    lines = [f"| {title} | breaks | killed | survived | share killed |", "|---|---|---|---|---|"]
    for name, (killed, survived) in [*sorted(counts.items()), ("all", total)]:
        share = f"{100.0 * killed / (killed + survived):.1f} %" if killed + survived else "-"
        lines.append(f"| {name} | {killed + survived} | {killed} | {survived} | {share} |")
    return "\n".join(lines)


def report(state, list_to):
    survivors = sorted(told(site, result) for site, result in state.results.items() if result == "survived")
    failed = sum(result == "no mutant" for result in state.results.values())
    print("", table(state.results, "folder", lambda site: site.file.split("/")[1]), "",
          table(state.results, "kind", lambda site: site.kind), "",
          f"{failed} more did not compile.", *survivors, sep="\n")
    if list_to:
        pathlib.Path(list_to).write_text("".join(line + "\n" for line in survivors), encoding="utf-8")


def main(words):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--number", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--build", default="build/mutate")
    parser.add_argument("--in", dest="within", nargs="+", default=[], metavar="PATH")
    parser.add_argument("--list", metavar="FILE")
    parser.add_argument("--fresh", action="store_true")
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--self-test", action="store_true")
    arguments = parser.parse_args(words)
    if arguments.self_test:
        failures = self_test()
        print(*failures, sep="\n", end="\n" if failures else "")
        return 1 if failures else 0
    within = [path.rstrip("/") for path in arguments.within]
    names = sources(within)
    if not names:
        parser.error("no sources there")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # by way of the clauses that put things back
    folder = pathlib.Path(arguments.build).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    if arguments.again and not (folder / "state.jsonl").exists():
        parser.error("nothing has been run there yet")
    head = None if arguments.again else {"seed": arguments.seed, "in": within, "sources": digest(names)}
    state = State(folder / "state.jsonl", head, arguments.fresh and not arguments.again)
    workshop = Workshop(folder)
    workshop.sync()
    workshop.configure()
    if arguments.again:
        run_again(workshop, state, names)
    else:
        run_draws(workshop, state, arguments, names)
    report(state, arguments.list)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
