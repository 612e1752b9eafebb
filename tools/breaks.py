# SPDX-License-Identifier: GPL-3.0-or-later
"""The ways to break a source in one place, as pure functions of its text; what mutate.py draws from."""
import random
import re
from typing import NamedTuple


class Site(NamedTuple):
    """One way to break one place: text[start:end] becomes `after`."""
    file: str
    line: int
    kind: str
    start: int
    end: int
    before: str
    after: str


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
