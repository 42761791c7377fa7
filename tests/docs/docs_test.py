"""Holds the documents against the tree: their programs and what these print, the build options, the families' rows and
every relative link.

usage: docs_test.py [FOLDER]     of the compiled examples, to be run as well
"""

import pathlib
import re
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAMS = None


def read(name):
    return (ROOT / name).read_text(encoding="utf-8")


def block(text, language):
    """The first fenced block of a language."""
    return re.search(r"^```%s\n(.*?)^```$" % language, text, re.MULTILINE | re.DOTALL).group(1)


class Documents(unittest.TestCase):
    def expect_program(self, code, printed, example):
        self.assertEqual(code, read("examples/%s.cpp" % example))
        if PROGRAMS:
            run = subprocess.run([PROGRAMS / example], check=True, capture_output=True, text=True)
            self.assertEqual(printed, run.stdout, example)

    def test_program_of_the_readme_is_the_example(self):
        readme = read("README.md")
        self.expect_program(block(readme, "cpp"), block(readme, "text"), "ten_lines")

    def test_programs_of_the_pages_are_the_examples(self):
        for page in (ROOT / "docs").glob("*.md"):
            programs = re.findall(r"^```cpp\n// examples/(\w+)\.cpp\n(.*?)^```\n\n(?:```text\n(.*?)^```$)?",
                                  page.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
            for example, code, printed in programs:
                self.expect_program(code, printed, example)

    def test_every_option_and_family_is_documented(self):
        options = re.findall(r"^(?:set|option)\((GPURUNTIME_\w+) ", read("cmake/options.cmake"), re.MULTILINE)
        families = [family for header in (ROOT / "include" / "gpuruntime").glob("*/*.hpp")
                    for family in re.findall(r"GPURUNTIME_FAMILY_TAKES\((\w+),", header.read_text(encoding="utf-8"))]
        for names, document in ((options, "README.md"), (families, "docs/numerics.md")):
            self.assertTrue(names)
            rows = set(re.findall(r"^\| `(\w+)` \|", read(document), re.MULTILINE))
            self.assertEqual(sorted(set(names) - rows), [], "without a row in " + document)

    def test_readme_leads_to_every_page(self):
        linked = set(re.findall(r"\]\((docs/[\w-]+\.md)\)", read("README.md")))
        self.assertEqual(sorted({"docs/" + page.name for page in (ROOT / "docs").glob("*.md")} - linked), [])

    def test_names_in_prose_are_names_in_the_tree(self):
        sources = [path for folder in ("include", "src", "tests", "benchmarks", "examples")
                   for path in (ROOT / folder).rglob("*") if path.suffix in (".hpp", ".cpp", ".py", ".txt", ".cmake")]
        known = set(re.findall(r"\w+", "\n".join(path.read_text(encoding="utf-8") for path in sources)))
        for document in [ROOT / "README.md", *(ROOT / "docs").glob("*.md")]:
            # Every second piece is a program, which names what it defines.
            pieces = re.split(r"^(```.*?^```)$", document.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
            names = set(re.findall(r"`(?:\w+::)*([A-Z]\w*[a-z]\w*|[a-z]+[A-Z]\w*)[`:<(]", "".join(pieces[::2])))
            with self.subTest(document.name):
                self.assertEqual(sorted(names - known - set(re.findall(r"\w+", "".join(pieces[1::2])))), [])

    def test_links_lead_to_files(self):
        for document in [ROOT / "README.md", *(ROOT / "docs").rglob("*.md")]:
            prose = re.sub(r"^```.*?^```$", "", document.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
            for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", prose):
                self.assertTrue((document.parent / target).exists(), "%s links to %s" % (document.name, target))


if __name__ == "__main__":
    if len(sys.argv) > 1:
        PROGRAMS = pathlib.Path(sys.argv.pop(1))
    unittest.main()
