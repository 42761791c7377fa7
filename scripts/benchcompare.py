#!/usr/bin/env python3
"""benchcompare.py OLD NEW: holds two runs of the benchmarks, folders or JSON files, side by side.

A ratio above 1 says that the new run is slower. Noise is the larger of the two runs' standard deviations, where a
benchmark was repeated; a difference of less than twice that is not marked.
"""
import sys

from benchresults import read, seconds, table


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    old, new = read(sys.argv[1]), read(sys.argv[2])
    rows = [("benchmark", "old", "new", "new/old", "noise", "")]
    for name in [name for name in old if name in new]:
        before, after = old[name], new[name]
        ratio = after.median / before.median
        known = [result.noise for result in (before, after) if result.noise is not None]
        noise = max(known, default=None)
        beyond = noise is not None and abs(ratio - 1) > 2 * noise
        rows.append((name, seconds(before.median), seconds(after.median), "%.2f" % ratio,
                     "unknown" if noise is None else "%.0f %%" % (100 * noise),
                     ("slower" if ratio > 1 else "faster") if beyond else ""))
    print(table(rows))
    for where, names in (("old", set(old) - set(new)), ("new", set(new) - set(old))):
        if names:
            print("only in the %s run: %s" % (where, ", ".join(sorted(names))))


if __name__ == "__main__":
    main()
