#!/usr/bin/env python3
"""benchtable.py FOLDER|FILE: prints the results of the benchmarks as a table."""
import sys

from benchresults import read, seconds, table


def giga(run, key):
    return "%.2f" % (run[key] / 1e9) if key in run else ""


def percent(run, key):
    return "%.0f %%" % (100 * run[key]) if key in run else ""


def noise(result):
    return "" if result.noise is None else "%.0f %%" % (100 * result.noise)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    rows = [("benchmark", "median time", "noise", "GB/s", "G items/s", "of copy", "of fill", "of read")]
    for name, result in read(sys.argv[1]).items():
        run = result.run
        rows.append((name, seconds(result.median), noise(result), giga(run, "bytes_per_second"),
                     giga(run, "items_per_second"), percent(run, "copyFraction"),
                     percent(run, "fillFraction"), percent(run, "readFraction")))
    print(table(rows))


if __name__ == "__main__":
    main()
