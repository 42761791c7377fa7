#!/usr/bin/env python3
"""includeclosure.py INCLUDE_FOLDER LIBRARY FOLDER...: names the files of a header-only library, relative to
INCLUDE_FOLDER, that the sources under the FOLDERs reach.

Every header that is named is followed, whatever the preprocessor would say: so the list holds for any compiler.
"""
import pathlib
import re
import sys


def main():
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    root, library = pathlib.Path(sys.argv[1]), sys.argv[2]
    named = re.compile(r'[<"](%s/[\w/.+-]+)[>"]' % re.escape(library))
    beside = re.compile(r'#\s*include\s*"([\w/.+-]+)"')
    todo = set()
    for folder in map(pathlib.Path, sys.argv[3:]):
        for source in folder.rglob("*.[hc]pp"):
            todo.update(named.findall(source.read_text()))
    reached = set()
    while todo:
        header = todo.pop()
        if header in reached or not (root / header).is_file():
            continue
        reached.add(header)
        text = (root / header).read_text(errors="replace")
        todo.update(named.findall(text))
        todo.update((pathlib.PurePath(header).parent / name).as_posix() for name in beside.findall(text))
    print("\n".join(sorted(reached)))


if __name__ == "__main__":
    main()
