#!/usr/bin/env python3
"""Prints a file as the site takes it (docs/Doxyfile): the README as the main page, links of documents to what the site
has, and in headers the types that a family takes, as the comment of its call, and from a class to its file's comment.
Lines keep their numbers.

usage: sitefilter.py FILE
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TAKES = re.compile(r"GPURUNTIME_(?:GENERATOR_)?FAMILY_TAKES\(\w+, (\w+), (\w+)\);")
TAKES_SIZES = re.compile(r"GPURUNTIME_FAMILY_TAKES_SIZES\(\w+, (\w+), (\w+), [\w:]+, (\w+)\);")
# English words at the beginning of a sentence, which are names of families too.
WORDS = re.compile(r"(?<![\w%`:,] )(?<![\w%`:])(All|Any|Real)(?=:| [a-zT])")


def families():
    headers = (ROOT / "include" / "gpuruntime").glob("*/*.hpp")
    return set(re.findall(r"FAMILY_TAKES(?:_SIZES)?\((\w+),", "".join(header.read_text("utf-8") for header in headers)))


def document(path):
    names = families()

    def family(match):
        return "[%s](@ref gpuruntime::%s)" % (2 * match.groups()) if match.group(1) in names else match.group()

    def link(match):
        text, place = match.group(1), (path.parent / match.group(2)).resolve()
        if not place.exists() or place.suffix in (".md", ".png"):
            return match.group()
        if place.suffix in (".hpp", ".cpp"):
            return "[%s](@ref %s)" % (text, place.relative_to(ROOT))
        return "[%s](files.html)" % text if place.is_dir() else "`%s`" % text.strip("`")

    text = path.read_text(encoding="utf-8")
    if path == ROOT / "README.md":
        text = re.sub(r"^# .*", r"\g<0> {#mainpage}", text, count=1)
    pieces = re.split(r"^(```.*?^```$)", text, flags=re.MULTILINE | re.DOTALL)
    pieces[::2] = [re.sub(r"\[([^]\n]+)\]\(([^)#:\n]+)(#[^)\n]*)?\)", link, piece) for piece in pieces[::2]]
    pieces[::2] = [re.sub(r"(?<![\[`])`(\w+)`(?!`)", family, piece) for piece in pieces[::2]]
    return "".join(pieces)


def header(path):
    def comment(match):
        return match.group(1) + WORDS.sub(r"%\1", match.group(2))

    text = TAKES.sub(r"/// \1 is one of gpuruntime::\2.", path.read_text(encoding="utf-8"))
    text = TAKES_SIZES.sub(r"/// The pair of \1 and \2 is one of #GPURUNTIME_\3.", text)
    if len(re.match(r"(?:///.*\n)*", text).group().splitlines()) > 2:
        text = re.sub(r"(?<=\n)(///.*)(?=\n(?:template <.*\n)?class \w+ {)", r"\1 @see %s" % path.name, text)
    return re.sub(r"^( *///)(.*)", comment, text, flags=re.MULTILINE)


if __name__ == "__main__":
    source = pathlib.Path(sys.argv[1]).resolve()
    sys.stdout.write(document(source) if source.suffix == ".md" else header(source))
