#!/usr/bin/env python3
"""search_numpy.py [RESULTS]: NumPy's `flatnonzero`, `isin` and `searchsorted` on the inputs of find_bench, ismember_bench
and ismembercmplx_bench, by one thread. Prints milliseconds and, given the JSON file of one of these, how many times as
fast that is, in all and for each of its cores. `isin` doesn't tell the places of what it finds; `searchsorted`, on
values sorted before, is the search alone.

    out/cpu/benchmarks/indexing_find_bench --benchmark_out=find.json
    benchmarks/indexing/search_numpy.py find.json
"""
import json
import pathlib
import re
import statistics
import sys
import time

try:
    import numpy
except ImportError:
    sys.exit("NumPy is missing: install the package python3-numpy")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

FIND_COUNT, QUERIES, VALUES = 1 << 24, 1 << 22, 1 << 20
REPETITIONS = 3


def cases():
    """Name of the benchmark, name of NumPy's function, and the call."""
    generator = numpy.random.default_rng(1)
    for name, dtype in (("double", numpy.float64), ("bool", numpy.bool_)):
        for percent in (1, 50, 99):
            array = (generator.integers(0, 100, FIND_COUNT) < percent).astype(dtype)
            yield "find1D<%s, %d, true>" % (name, percent), "flatnonzero", lambda: numpy.flatnonzero(array)
    for name, dtype in (("double", numpy.float64), ("int", numpy.int32)):
        queries = generator.integers(0, 2 * VALUES, QUERIES).astype(dtype)
        values = generator.integers(0, 2 * VALUES, VALUES).astype(dtype)
        yield "isMember2Arg<%s, true>" % name, "isin", lambda: numpy.isin(queries, values)
        yield "isMember2Arg<%s, false>" % name, "searchsorted", lambda values=numpy.sort(values): numpy.searchsorted(
            values, queries)
    for distinct in (1 << 20, 4):
        def pairs(count):
            return generator.integers(0, distinct, count) + 1j * generator.integers(0, 1000, count)
        queries, values = pairs(QUERIES), pairs(VALUES)
        label = "(1U << 20)" if distinct > 4 else "4"
        yield "isMember2ArgCmplx<%s>" % label, "isin", lambda: numpy.isin(queries, values)


def milliseconds(call):
    def once():
        start = time.perf_counter()
        call()
        return 1e3 * (time.perf_counter() - start)
    return statistics.median(once() for _ in range(REPETITIONS))


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours, cores = {}, 1
    if len(sys.argv) == 2:
        ours = {re.sub(r"\s*,\s*", ", ", name): result for name, result in read(sys.argv[1]).items()}
        cores = json.loads(pathlib.Path(sys.argv[1]).read_text())["context"]["num_cpus"]
    rows = [("benchmark", "NumPy", "NumPy ms", "ours ms", "ratio", "a core")]
    for name, function, call in cases():
        if ours and name not in ours:
            continue
        numpys = milliseconds(call)
        row = [name, function, "%.1f" % numpys, "", "", ""]
        if name in ours:
            own = 1e3 * ours[name].median
            row[3:] = "%.1f" % own, "%.2f" % (numpys / own), "%.2f" % (numpys / own / cores)
        rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
