#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Breaks a copy of the manual in one way after the other and looks whether check_manual.py says so."""
import pathlib
import re
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_manual  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]


class CheckManual(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="velt-check-manual-"))
        self.addCleanup(shutil.rmtree, self.root)
        shutil.copytree(ROOT / "docs" / "manual", self.root / "docs" / "manual")
        (self.root / "src").mkdir()
        for path in (ROOT / "src" / "fit").glob("*.cpp"):
            shutil.copy(path, self.root / "src")
        self.manual = self.root / "docs" / "manual"

    def change(self, name, pattern, replacement):
        path = self.manual / name
        text, count = re.subn(pattern, replacement, path.read_text(encoding="utf-8"), count=1, flags=re.DOTALL)
        self.assertEqual(count, 1, f"{name} has no {pattern}")
        path.write_text(text, encoding="utf-8")

    def assert_fault(self, *words):
        faults = list(check_manual.faults_of(self.root))
        self.assertTrue(any(all(word in fault for word in words) for fault in faults), faults)

    def test_the_manual_as_it_stands_has_no_faults(self):
        self.assertEqual(list(check_manual.faults_of(self.root)), [])

    def test_a_link_to_a_page_that_is_not_there_is_a_fault(self):
        self.change("models.html", r'href="limits\.html"', 'href="limit.html"')
        self.assert_fault("models.html", "limit.html", "leads nowhere")

    def test_a_link_to_an_anchor_that_is_not_there_is_a_fault(self):
        self.change("models.html", r"#StockUnbounded", "#StockUnbound")
        self.assert_fault("models.html", "no anchor", "StockUnbound")

    def test_a_picture_that_is_not_there_is_a_fault(self):
        (self.manual / "images" / "bass_n1.png").unlink()
        self.assert_fault("graph-list.html", "bass_n1.png is missing")

    def test_a_picture_without_words_is_a_fault(self):
        self.change("graph-list.html", r' alt="[^"]*"', "")
        self.assert_fault("graph-list.html", "without words")

    def test_a_page_that_is_not_among_the_files_of_the_help_project_is_a_fault(self):
        self.change("velt.qhp", r"<file>glossary\.html</file>", "")
        self.assert_fault("glossary.html is not among its files")

    def test_a_file_of_the_help_project_that_is_missing_is_a_fault(self):
        self.change("velt.qhp", r"<file>glossary\.html</file>", "<file>glossary.html</file><file>more.html</file>")
        self.assert_fault("more.html is missing")

    def test_a_page_that_is_not_in_the_contents_of_the_help_project_is_a_fault(self):
        self.change("velt.qhp", r'<section title="[^"]*" ref="glossary\.html"/>', "")
        self.assert_fault("glossary.html is not in the contents")

    def test_a_keyword_that_leads_nowhere_is_a_fault(self):
        self.change("velt.qhp", r'(<keyword [^>]*ref="glossary\.html#)', r"\1no-")
        self.assert_fault("keyword", "no such anchor")

    def test_a_section_that_leads_to_no_page_is_a_fault(self):
        self.change("velt.qhp", r'<section title="Glossary" ref="glossary\.html"/>',
                    '<section title="Glossary" ref="words.html"/><section title="G" ref="glossary.html"/>')
        self.assert_fault("contents", "words.html", "no such page")

    def test_a_help_project_without_keywords_is_a_fault(self):
        self.change("velt.qhp", r"<keywords>.*</keywords>", "<keywords></keywords>")
        self.assert_fault("no keywords")

    def test_two_keywords_with_one_id_are_a_fault(self):
        self.change("velt.qhp", r'(<keyword name="[^"]*" id=)"[^"]*"(.*?<keyword name="[^"]*" id=)"[^"]*"', r'\1"k"\2"k"')
        self.assert_fault("no id of its own")

    def test_another_namespace_is_a_fault(self):
        self.change("velt.qhp", r"org\.velt\.manual", "org.velt.handbook")
        self.assert_fault("namespace")

    def test_a_page_that_no_way_leads_to_is_a_fault(self):
        (self.manual / "lonely.html").write_text("<html><head><title>Alone</title></head><body></body></html>")
        self.assert_fault("lonely.html", "no way leads there")

    def test_a_context_that_is_missing_is_a_fault(self):
        self.change("contexts.txt", r"68 [^\n]*\n", "")
        self.assert_fault("contexts.txt", "68 is missing")

    def test_a_context_whose_anchor_is_missing_is_a_fault(self):
        self.change("contexts.txt", r"#options", "#option")
        self.assert_fault("contexts.txt", "68", "no such anchor")

    def test_a_context_that_stands_twice_is_a_fault(self):
        self.change("contexts.txt", r"^", "20 settings.html#options\n")
        self.assert_fault("contexts.txt", "20 stands twice")

    def test_a_context_of_another_form_is_a_fault(self):
        self.change("contexts.txt", r"settings\.html#options", "settings.html")
        self.assert_fault("contexts.txt", "line 2", "none of the form")

    def test_sources_in_which_no_remark_is_found_are_a_fault(self):
        shutil.rmtree(self.root / "src")
        self.assert_fault("no remark was found")

    def test_a_remark_without_an_entry_is_a_fault(self):
        (self.root / "src" / "New.cpp").write_text('return Remark{"StockDoubtful", "..."};')
        self.assert_fault("StockDoubtful", "no entry")

    def test_each_remark_that_is_documented_for_scripts_is_found_in_the_sources(self):
        told = set(re.findall(r"^\| `(\w+)` \|", (ROOT / "docs" / "remarks.md").read_text(encoding="utf-8"), re.M))
        self.assertEqual(check_manual.remark_codes(ROOT / "src"), told)

    def test_a_page_that_is_too_long_is_a_fault(self):
        self.change("glossary.html", r"</body>", "<p>" + "word " * check_manual.MOST_WORDS + "</p></body>")
        self.assert_fault("glossary.html", "at most 3500")

    def test_a_table_with_heads_alone_is_a_fault(self):
        self.change("new-data.html", r"(<table.*?</tr>).*?</table>", r"\1</table>")
        self.assert_fault("new-data.html", "heads alone")

    def test_a_row_that_lacks_a_cell_is_a_fault(self):
        self.change("new-data.html", r"<td>[^<]*</td></tr>", "</tr>")
        self.assert_fault("new-data.html", "different lengths")

    def test_a_tag_that_is_never_closed_is_a_fault(self):
        self.change("glossary.html", r"</b>", "")
        self.assert_fault("glossary.html", "closes nothing, or the wrong tag")

    def test_a_body_that_is_never_closed_is_a_fault(self):
        self.change("glossary.html", r"</body>\s*</html>", "")
        self.assert_fault("glossary.html", "is never closed")

    def test_a_tag_that_the_viewer_does_not_show_is_a_fault(self):
        self.change("glossary.html", r"</body>", "<script></script></body>")
        self.assert_fault("glossary.html", "script")

    def test_a_style_within_a_page_is_a_fault(self):
        self.change("glossary.html", r"<h1>", '<h1 style="color: red">')
        self.assert_fault("glossary.html", "style attribute")

    def test_a_page_without_a_title_is_a_fault(self):
        self.change("glossary.html", r"<title>.*</title>", "<title></title>")
        self.assert_fault("glossary.html", "no title")

    def test_an_anchor_that_stands_twice_is_a_fault(self):
        self.change("glossary.html", r"</body>", '<p><a name="recruits"></a></p></body>')
        self.assert_fault("glossary.html", "stands twice")

    def test_a_made_block_without_its_end_is_a_fault(self):
        self.change("ex-fox.html", r"<!-- end -->", "")
        self.assert_fault("ex-fox.html", "pairs")


if __name__ == "__main__":
    unittest.main()
