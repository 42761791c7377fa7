"""Holds the documents against the tree: the README's program, its output, the build options, the families' rows and
every relative link.

usage: docs_test.py [PROGRAM]     the compiled examples/ten_lines.cpp, to be run as well
"""

import pathlib
import re
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = None


def read(name):
    return (ROOT / name).read_text(encoding="utf-8")


def block(text, language):
    """The first fenced block of a language."""
    return re.search(r"^```%s\n(.*?)^```$" % language, text, re.MULTILINE | re.DOTALL).group(1)


class Documents(unittest.TestCase):
    def test_program_of_the_readme_is_the_example(self):
        readme = read("README.md")
        self.assertEqual(block(readme, "cpp"), read("examples/ten_lines.cpp"))
        if PROGRAM:
            printed = subprocess.run([PROGRAM], check=True, capture_output=True, text=True).stdout
            self.assertEqual(block(readme, "text"), printed)

    def test_every_option_and_family_is_documented(self):
        options = re.findall(r"^(?:set|option)\((GPURUNTIME_\w+) ", read("cmake/options.cmake"), re.MULTILINE)
        families = [family for header in (ROOT / "include" / "gpuruntime").glob("*/*.hpp")
                    for family in re.findall(r"GPURUNTIME_FAMILY_TAKES\((\w+),", header.read_text(encoding="utf-8"))]
        for names, document in ((options, "README.md"), (families, "docs/numerics.md")):
            self.assertTrue(names)
            rows = set(re.findall(r"^\| `(\w+)` \|", read(document), re.MULTILINE))
            self.assertEqual(sorted(set(names) - rows), [], "without a row in " + document)

    def test_links_lead_to_files(self):
        for document in [ROOT / "README.md", *(ROOT / "docs").rglob("*.md")]:
            prose = re.sub(r"^```.*?^```$", "", document.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
            for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", prose):
                self.assertTrue((document.parent / target).exists(), "%s links to %s" % (document.name, target))


if __name__ == "__main__":
    if len(sys.argv) > 1:
        PROGRAM = sys.argv.pop(1)
    unittest.main()
