#!/usr/bin/env python3
"""sortVector_numpy.py [RESULTS]: NumPy's stable sort and argsort on the inputs of sortVector_bench, by one thread. Prints
milliseconds and, given the JSON file of sortVector_bench, how many times as fast that is. NumPy orders complex values
by their parts, not by magnitude.

    out/cpu/benchmarks/sorting_sortVector_bench --benchmark_out=sort.json
    benchmarks/sorting/sortVector_numpy.py sort.json
"""
import pathlib
import statistics
import sys
import time

try:
    import numpy
except ImportError:
    sys.exit("NumPy is missing: install the package python3-numpy")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

COUNT = 2**24
TYPES = {"double": numpy.float64, "long long": numpy.int64, "double2": numpy.complex128}
INPUTS = ("random", "sorted", "reversed", "fewValues", "someNaN")
REPETITIONS = 3


def values(name, generator):
    up = numpy.arange(COUNT, dtype=numpy.float64)
    if name == "sorted":
        return up
    if name == "reversed":
        return COUNT - up
    random = generator.integers(0, 2**52, COUNT).astype(numpy.float64)
    if name == "fewValues":
        return numpy.mod(random, 16)
    if name == "someNaN":
        random[generator.integers(0, 100, COUNT) == 0] = numpy.nan
    return random


def milliseconds(call):
    def once():
        start = time.perf_counter()
        call()
        return 1e3 * (time.perf_counter() - start)
    return statistics.median(once() for _ in range(REPETITIONS))


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours = read(sys.argv[1]) if len(sys.argv) == 2 else {}
    ours = {name.replace("Input::", "").replace(" ,", ","): result for name, result in ours.items()}
    generator = numpy.random.default_rng(1)
    rows = [("benchmark", "NumPy ms", "ours ms", "ratio")]
    for type_name, dtype in TYPES.items():
        for name in INPUTS:
            if name == "someNaN" and type_name == "long long":
                continue
            array = values(name, generator).astype(dtype)
            for with_index in (False, True):
                sort = numpy.argsort if with_index else numpy.sort
                numpys = milliseconds(lambda: sort(array, kind="stable"))
                benchmark = "sortVector<%s, %s, %s>" % (type_name, name, str(with_index).lower())
                row = [benchmark, "%.0f" % numpys, "", ""]
                if benchmark in ours:
                    own = 1e3 * ours[benchmark].median
                    row[2:] = "%.0f" % own, "%.1f" % (numpys / own)
                rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
