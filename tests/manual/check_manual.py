#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the pages of docs/manual against each other and against the sources.

    check_manual.py [ROOT]

Prints a line for each fault and exits 1 when there is one.
"""
import html.parser
import pathlib
import re
import sys
import xml.etree.ElementTree

MOST_WORDS = 3500
NAMESPACE = "org.velt.manual"
FOLDER = "manual"

# Contexts that the windows and messages of the program ask for.
CONTEXTS = {"20", "68", "102", "107", "117", "main", "new-data-set", "import-wizard", "parameters", "model-graph",
            "input-parameters", "starting-values", "contour-range", "number-format", "overview", "file-type"}

# What the help viewer shows well.
VOID = {"meta", "link", "br", "img", "hr"}
TAGS = VOID | {"html", "head", "title", "body", "h1", "h2", "h3", "p", "ul", "ol", "li", "table", "tr", "th", "td", "sub",
               "sup", "i", "b", "a", "tt", "pre"}


class Page(html.parser.HTMLParser):
    """Links, anchors and words of a page, and where its tags do not balance."""

    def __init__(self, path):
        super().__init__()
        self.anchors = []
        self.headings = set()  # anchors within h2
        self.links = []
        self.images = []
        self.words = 0
        self.faults = []
        self.open = []
        self.title = ""
        self.cells = []  # of the rows of the open table
        text = path.read_text(encoding="utf-8")
        self.feed(text)
        self.close()
        self.faults += [f"<{tag}> in line {line} is never closed" for tag, line in self.open]
        marks = re.findall(r"<!-- (made: \S+|end) -->", text)
        if any((mark == "end") == (i % 2 == 0) for i, mark in enumerate(marks)) or len(marks) % 2:
            self.faults.append("marks of made blocks do not come in pairs")

    def fault(self, text):
        self.faults.append(f"line {self.getpos()[0]}: {text}")

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag not in TAGS:
            self.fault(f"<{tag}> is none of the tags that the viewer shows")
        if "style" in attributes:
            self.fault("a style attribute; manual.css is the place for it")
        for name in {attributes.get("id"), attributes.get("name") if tag == "a" else None} - {None}:
            if name in self.anchors:
                self.fault(f"the anchor \"{name}\" stands twice")
            self.anchors.append(name)
            if any(outer == "h2" for outer, _ in self.open):
                self.headings.add(name)
        if tag == "a" and "href" in attributes:
            self.links.append((attributes["href"], self.getpos()[0]))
        if tag in ("img", "link"):
            self.images.append((attributes.get("src" if tag == "img" else "href", ""), self.getpos()[0]))
        if tag == "img" and not attributes.get("alt"):
            self.fault("a picture without words for those who do not see it")
        if tag == "table":
            self.cells = []
        elif tag == "tr":
            self.cells.append(0)
        elif tag in ("th", "td") and self.cells:
            self.cells[-1] += 1
        if tag not in VOID:
            self.open.append((tag, self.getpos()[0]))

    def handle_endtag(self, tag):
        if not self.open or self.open[-1][0] != tag:
            self.fault(f"</{tag}> closes nothing, or the wrong tag")
            return
        self.open.pop()
        if tag == "table" and (len(self.cells) < 2 or len(set(self.cells)) > 1):
            self.fault("a table with heads alone, or with rows of different lengths")

    def handle_data(self, data):
        if any(tag == "title" for tag, _ in self.open):
            self.title += data
            return
        self.words += len(data.split())


def check_links(folder, pages):
    for name, page in pages.items():
        for href, line in page.links:
            target, _, anchor = href.partition("#")
            target = target or name
            if target not in pages:
                yield f"{name}: line {line}: the link to {href} leads nowhere"
            elif anchor and anchor not in pages[target].anchors:
                yield f"{name}: line {line}: {target} has no anchor \"{anchor}\""
        for source, line in page.images:
            if not (folder / source).is_file():
                yield f"{name}: line {line}: {source} is missing"


def check_reference(pages, reference, where):
    target, _, anchor = reference.partition("#")
    if target not in pages:
        yield f"{where}: {reference}: there is no such page"
    elif anchor and anchor not in pages[target].anchors:
        yield f"{where}: {reference}: the page has no such anchor"


def check_project(folder, pages):
    project = xml.etree.ElementTree.parse(folder / "velt.qhp").getroot()
    if project.findtext("namespace") != NAMESPACE or project.findtext("virtualFolder") != FOLDER:
        yield f"velt.qhp: namespace and folder are not {NAMESPACE} and {FOLDER}"
    listed = [node.text for node in project.iter("file")]
    there = {str(path.relative_to(folder)) for path in folder.rglob("*")
             if path.suffix in (".html", ".css", ".png")}
    for name in sorted(there - set(listed)):
        yield f"velt.qhp: {name} is not among its files"
    for name in sorted(set(listed) - there):
        yield f"velt.qhp: the file {name} is missing"
    told = set()
    for section in project.iter("section"):
        yield from check_reference(pages, section.get("ref", ""), "velt.qhp: contents")
        told.add(section.get("ref", "").partition("#")[0])
    for name in sorted(set(pages) - told):
        yield f"velt.qhp: {name} is not in the contents"
    ids = set()
    for keyword in project.iter("keyword"):
        yield from check_reference(pages, keyword.get("ref", ""), "velt.qhp: keyword")
        if not keyword.get("id") or keyword.get("id") in ids:
            yield f"velt.qhp: the keyword {keyword.get('name')} has no id of its own"
        ids.add(keyword.get("id"))
    if not ids:
        yield "velt.qhp: there are no keywords"


def check_reachable(pages):
    reached, ahead = set(), ["index.html"]
    while ahead:
        name = ahead.pop()
        if name in reached or name not in pages:
            continue
        reached.add(name)
        ahead += [href.partition("#")[0] for href, _ in pages[name].links]
    for name in sorted(set(pages) - reached):
        yield f"{name}: no way leads there from index.html"


def check_contexts(folder, pages):
    found = []
    for number, line in enumerate((folder / "contexts.txt").read_text(encoding="utf-8").splitlines(), 1):
        words = line.split()
        if len(words) != 2 or "#" not in words[1]:
            yield f"contexts.txt: line {number} is none of the form NAME page.html#anchor"
            continue
        found.append(words[0])
        yield from check_reference(pages, words[1], f"contexts.txt: {words[0]}")
    for name in sorted(CONTEXTS - set(found)):
        yield f"contexts.txt: {name} is missing"
    for name in sorted({name for name in found if found.count(name) > 1}):
        yield f"contexts.txt: {name} stands twice"


def remark_codes(sources):
    """The codes of all remarks that the program can make."""
    codes = set()
    for path in sources.rglob("*.cpp"):
        codes |= set(re.findall(r"Remark\s*\{\s*\"(\w+)\"", path.read_text(encoding="utf-8")))
    return codes


def check_remarks(root, pages):
    codes = remark_codes(root / "src")
    if not codes:
        yield "src: no remark was found; the pattern for them is out of date"
    entries = set().union(*(page.headings for name, page in pages.items() if name.startswith("remarks")))
    for code in sorted(codes - entries):
        yield f"the remark {code} has no entry on the pages of remarks"


def faults_of(root):
    folder = root / "docs" / "manual"
    pages = {path.name: Page(path) for path in sorted(folder.glob("*.html"))}
    for name, page in pages.items():
        for fault in page.faults:
            yield f"{name}: {fault}"
        if not page.title.strip():
            yield f"{name}: there is no title"
        if page.words > MOST_WORDS:
            yield f"{name}: {page.words} words, at most {MOST_WORDS} belong on a page"
    yield from check_links(folder, pages)
    yield from check_project(folder, pages)
    yield from check_reachable(pages)
    yield from check_contexts(folder, pages)
    yield from check_remarks(root, pages)


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parents[2])
    faults = list(faults_of(root))
    for fault in faults:
        print(fault)
    pages = len(list((root / "docs" / "manual").glob("*.html")))
    print(f"{pages} pages, {len(faults)} faults")
    return 1 if faults or pages == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
