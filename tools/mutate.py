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
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time
from typing import NamedTuple

ROOT = pathlib.Path(__file__).resolve().parent.parent
TEST_FOLDERS = ("tests/core/", "tests/batch/", "tests/desktop/")
SECONDS_TO_COMPILE = 900  # a header of the lowest floor rebuilds nearly everything
BYTES_FOR_A_TEST = 4 << 30
CMAKE = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_FLAGS=-O0 -D_GLIBCXX_ASSERTIONS", "-DVELT_BENCH=OFF",
         # Asking a program for its tests after every link would cost more than the link.
         "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"]


class Site(NamedTuple):
    """One way to break one place: text[start:end] becomes `after`."""
    file: str
    line: int
    kind: str
    start: int
    end: int
    before: str
    after: str


# ---- finding sites: pure functions of a text -------------------------------------------------------------------

NUMBER = r"(?<![\w.])(?:0[xX][\da-fA-F']+|(?:\d[\d']*\.?[\d']*|\.\d+)(?:[eE][+-]?\d+)?)[uUlLfFzZ]*"
TOKEN = re.compile(r"""
    (?P<line>^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<raw>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")
  | (?P<string>"(?:\\.|[^"\\\n])*")
  | (?P<number>""" + NUMBER + r""")
  | (?P<char>'(?:\\.|[^'\\\n])+')
""", re.X | re.S | re.M)
NOT_FORMATTED = re.compile(r"// clang-format off.*?(?:// clang-format on|\Z)", re.S)
ROW_OF_WORDS = re.compile(r"""^\s*\{+\s*-?\d+,\s*".*$""", re.M)
STATIC_ASSERT = re.compile(r"\bstatic_assert\s*\(")


def blanked(text, filler=" "):
    return "".join("\n" if c == "\n" else filler for c in text)


def masked(text):
    """The text in its own length, in which only code is left: words become letters, everything else blanks."""
    code = list(text)

    def wipe(match, filler=" "):
        code[match.start():match.end()] = blanked(match.group(), filler)

    for match in TOKEN.finditer(text):
        if match.lastgroup != "number":
            wipe(match, "s" if match.group("string") or match.group("raw") or match.group("char") else " ")
    for pattern in (NOT_FORMATTED, ROW_OF_WORDS):
        for match in pattern.finditer(text):
            wipe(match)
    result = "".join(code)
    for match in STATIC_ASSERT.finditer(result):
        end = end_of_statement(result, match.start())
        code[match.start():end] = blanked(result[match.start():end])
    return "".join(code)


def end_of_statement(code, start):
    """The place behind the semicolon that ends what begins at `start`; `start` itself where none does."""
    depth = 0
    for at in range(start, len(code)):
        if code[at] in "([{":
            depth += 1
        elif code[at] in ")]}":
            depth -= 1
            if depth < 0:
                return start
        elif code[at] == ";" and depth == 0:
            return at + 1
    return start


RELATIONS = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",)}
OPERATORS = {
    "relation": RELATIONS,
    "arithmetic": {"+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",),
                   "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",)},
    "logic": {"&&": ("||",), "||": ("&&",)},
}
# Binary operators stand between blanks, which tells them from template brackets, pointers and signs.
BINARY = re.compile(r"(?<=\s)(?:[<>=!+\-*/]=|[<>+\-*/]|&&|\|\|)(?=\s)")
NOT = re.compile(r"(?<![\w=!])!(?=[\w(:])")
CONDITION = re.compile(r"\b(?:if|while)\s*\(")
CONSTANT = re.compile(NUMBER)
LEAVE = re.compile(r"\b(?:break|continue)\s*;")
RETURN = re.compile(r"\breturn\b(?=\s)")
ANSWERS = re.compile(r"\bbool\s+[\w:]+\(")
STATEMENT = re.compile(r"^[ \t]+(?=[A-Za-z_*(])", re.M)
NO_STATEMENT = re.compile(
    r"(?:return|using|const|constexpr|static|auto|break|continue|if|for|while|switch|case|default|throw|template|typedef"
    r"|class|struct|enum|namespace|public|private|protected|friend|virtual|explicit|inline|try|catch|do|else|new|delete"
    r"|goto|extern|operator|co_\w+|Q_[A-Z]\w*)\b")
ASSIGNMENT = re.compile(r"\s+(?:[-+*/%|&^]|<<|>>)?=\s")


def binary_sites(code):
    for match in BINARY.finditer(code):
        for kind, table in OPERATORS.items():
            for after in table.get(match.group(), ()):
                yield kind, match.start(), match.end(), after


def condition_sites(text, code):
    for match in NOT.finditer(code):
        yield "negation", match.start(), match.end(), ""
    for match in CONDITION.finditer(code):
        close = closing(code, match.end() - 1)
        start = max(match.end(), code.rfind(";", match.end(), close) + 1)  # if (auto it = ...; condition)
        start += len(code[start:close]) - len(code[start:close].lstrip())
        yield "negation", start, close, f"!({text[start:close]})"


def closing(code, opening):
    depth = 0
    for at in range(opening, len(code)):
        depth += (code[at] == "(") - (code[at] == ")")
        if depth == 0:
            return at
    return len(code)


def next_constant(word):
    """The word of a number that is certainly another one; an integer gets its neighbour, a fraction its double."""
    plain = word.replace("'", "")
    if plain[:2] in ("0x", "0X"):
        digits = plain.rstrip("uUlLzZ")
        return hex(int(digits, 16) + 1) + plain[len(digits):]
    digits = plain.rstrip("uUlLfFzZ")
    suffix = plain[len(digits):]
    if digits.isdigit():
        return str(int(digits) + 1) + suffix
    return "1.0" + suffix if float(digits) == 0.0 else f"(2 * {word})"


def return_sites(code, whole):
    for match in RETURN.finditer(code):
        end = end_of_statement(code, match.start()) - 1
        start = match.end() + 1
        value = " ".join(code[start:end].split())
        if end < match.end() or value in ("", "{}", "0", "nullptr", "std::nullopt"):  # `{}` says the same
            continue
        # Between the last function's end and here stands the type that this one answers with.
        ends = ("\n}",) if whole == code else (";", "}")
        function = whole[max(whole.rfind(sign, 0, match.start()) for sign in ends) + 1:start]
        truths = ("true", "false") if ANSWERS.search(function) else ("{}",)
        for after in truths:
            if after != value:
                yield "return", start, end, after


def statement_sites(code):
    for match in STATEMENT.finditer(code):
        start = match.end()
        before = code[:start].rstrip()
        if before[-1:] not in tuple(";{}):") and not before.endswith("else"):
            continue
        end = end_of_statement(code, start)
        if end > start and is_call_or_assignment(code[start:end]):
            yield "statement", start, end, "{}"
    for match in LEAVE.finditer(code):
        yield "leaving", match.start(), match.end(), "{}"


def is_call_or_assignment(statement):
    if statement.startswith("emit "):
        statement = statement[5:]
    if NO_STATEMENT.match(statement):
        return False
    depth = 0
    for at, c in enumerate(statement):
        depth += (c in "([{") - (c in ")]}")
        if depth == 0 and c.isspace():
            return ASSIGNMENT.match(statement, at) is not None
    return "(" in statement  # nothing but a call, or a chain of them


def bodies_of(code):
    """Of a header, only what stands in bodies of functions: defaults of members and constants are declarations."""
    kept = [c if c == "\n" else " " for c in code]
    inside = []  # for each open brace, whether it stands in a body
    head = 0
    for at, c in enumerate(code):
        if inside and inside[-1]:
            kept[at] = c
        if c == "{":
            words = code[head:at]
            body = "(" in words and not re.match(r"\s*(?:class|struct|enum|union|namespace)\b", words)
            inside.append(body or (bool(inside) and inside[-1]))
            kept[at] = c if inside[-1] else " "
        elif c == "}" and inside:
            inside.pop()
        if c in "{};":
            head = at + 1
    return "".join(kept)


def sites_of(name, text):
    """Every way to break the text of the file `name`, in the order of their places."""
    code = masked(text)
    whole = code
    if name.endswith(".h"):
        code = bodies_of(code)
    found = [*binary_sites(code), *condition_sites(text, code), *return_sites(code, whole), *statement_sites(code)]
    found += [("constant", match.start(), match.end(), next_constant(match.group())) for match in CONSTANT.finditer(code)]
    sites = []
    for kind, start, end, after in sorted(found):
        before = text[start:end]
        kept = after + "\n" * (before.count("\n") - after.count("\n"))  # the lines below keep their numbers
        sites.append(Site(name, text.count("\n", 0, start) + 1, kind, start, end, before, kept))
    return sorted(sites, key=lambda site: (site.start, site.end, site.after))


def applied(text, site):
    if text[site.start:site.end] != site.before:
        raise ValueError(f"{site.file}:{site.line}: the text is no longer what it was")
    return text[:site.start] + site.after + text[site.end:]


def undone(text, site):
    return text[:site.start] + site.before + text[site.start + len(site.after):]


def draws(sites, seed):
    """All sites in an order that the seed decides: a line of code first, each as likely as any other, then its break."""
    lines = {}
    for site in sites:
        lines.setdefault((site.file, site.line), []).append(site)
    groups = [lines[key] for key in sorted(lines)]
    dice = random.Random(seed)
    while groups:
        at = dice.randrange(len(groups))
        group = groups[at]
        yield group.pop(dice.randrange(len(group)))
        if not group:
            groups[at] = groups[-1]
            groups.pop()


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


# ---- self-test ---------------------------------------------------------------------------------------------------

FOUND = {  # code, then a kind and what the line becomes
    "    if (a < b)\n": [("relation", "    if (a <= b)\n"), ("relation", "    if (a >= b)\n"),
                         ("negation", "    if (!(a < b))\n")],
    "x = y == z;\n": [("relation", "x = y != z;\n")],
    "x = y * z - w;\n": [("arithmetic", "x = y / z - w;\n"), ("arithmetic", "x = y * z + w;\n")],
    "{\n    total += part;\n": [("arithmetic", "{\n    total -= part;\n"), ("statement", "{\n    {}\n")],
    "x = a && !b;\n": [("logic", "x = a || !b;\n"), ("negation", "x = a && b;\n")],
    "    while (const int n = Next(); n > x)\n": [("relation", "    while (const int n = Next(); n >= x)\n"),
                                                ("relation", "    while (const int n = Next(); n <= x)\n"),
                                                ("negation", "    while (const int n = Next(); !(n > x))\n")],
    "x = 0;\n": [("constant", "x = 1;\n")],
    "x = 1'000U;\n": [("constant", "x = 1001U;\n")],
    "x = 0xFFU;\n": [("constant", "x = 0x100U;\n")],
    "x = 0.0F;\n": [("constant", "x = 1.0F;\n")],
    "x = 1e-4;\n": [("constant", "x = (2 * 1e-4);\n")],
    "{\n    m_list.push_back({a, b});\n": [("statement", "{\n    {}\n")],
    "{\n    Call(a,\n         b);\n}\n": [("statement", "{\n    {}\n\n}\n")],
    "{\n    m.row(t) = Other(t);\n": [("statement", "{\n    {}\n")],
    "    else\n        emit Done();\n": [("statement", "    else\n        {}\n")],
    "bool Is()\n{\n    return true;\n": [("return", "bool Is()\n{\n    return false;\n")],
    "bool Is() { return a; }\n": [("return", "bool Is() { return true; }\n"), ("return", "bool Is() { return false; }\n")],
    "    return a;\n": [("return", "    return {};\n")],
    "        break;\n": [("leaving", "        {}\n")],
    "        continue;\n": [("leaving", "        {}\n")],
}
NOT_FOUND = [
    "// a < b, 1\n", "/* a < b\n 1 */\n", 'x = "a < 1";\n', "x = '1';\n", '#include "a1.h"\n', "#define A \\\n    1 + 2\n",
    "static_assert(1 < 2);\n", "// clang-format off\nx = 1;\n// clang-format on\n", '    {61, "Opening"},\n',
    'x = R"(a < 1)";\n', "template <typename T>\n", "std::vector<int> x;\n", "T&& x;\n", "const char* x;\n",
    "    void Call(int x);\n", "    const auto x = y;\n", "    Type x = y;\n", "    return;\n", "    using a = b;\n",
    "x = a1;\n", "bool operator==(const T&) const = default;\n",
]
IN_HEADERS = {  # text, then the line of each break
    "constexpr int kMost = 5;\nstruct A {\n    int x = 1;\n    virtual void F() = 0;\n    A(int a);\n};\n": [],
    "struct A {\n    int F() const { return m_x; }\n    A() : m_x(3)\n    {\n        F(2);\n    }\n};\n": [2, 5, 5],
}


def self_test():
    failures = []
    for text, wanted in FOUND.items():
        results = [(site.kind, applied(text, site)) for site in sites_of("a.cpp", text)]
        if sorted(results) != sorted(wanted):
            failures.append(f"{text!r} becomes {results}, not {wanted}")
    failures += [f"{text!r} is broken as {sites_of('a.cpp', text)}" for text in NOT_FOUND if sites_of("a.cpp", text)]
    for text, lines in IN_HEADERS.items():
        if [site.line for site in sites_of("a.h", text)] != lines:
            failures.append(f"of a header {text!r} is broken as {sites_of('a.h', text)}")
    everything = "".join(FOUND) + "".join(NOT_FOUND)
    sites = sites_of("a.cpp", everything)
    for site in sites:
        broken = applied(everything, site)
        if broken == everything or undone(broken, site) != everything:
            failures.append(f"{site} is not undone")
        if broken.count("\n") != everything.count("\n"):
            failures.append(f"{site} moves the lines below")
    orders = [list(draws(sites, seed)) for seed in (1, 1, 2)]
    if orders[0] != orders[1] or orders[0] == orders[2] or sorted(orders[0]) != sorted(sites):
        failures.append("the draws do not hang on the seed alone, or leave something out")
    try:
        applied("x = 2;\n", sites_of("a.cpp", "x = 1;\n")[0])
        failures.append("a break is put where the text has changed")
    except ValueError:
        pass
    return failures


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
