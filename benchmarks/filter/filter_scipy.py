#!/usr/bin/env python3
"""filter_scipy.py [RESULTS]: SciPy's `signal.lfilter` and NumPy's `diff` on the arrays of iirfilter_bench and diff_bench,
by one thread. Prints milliseconds and, given the JSON file of one of these, how many times as fast that is, in all and
for each of its cores.

    out/cpu/benchmarks/filter_iirfilter_bench --benchmark_out=iirfilter.json
    benchmarks/filter/filter_scipy.py iirfilter.json
"""
import json
import pathlib
import re
import statistics
import sys
import time

try:
    import numpy
    from scipy import signal
except ImportError:
    sys.exit("NumPy or SciPy is missing: install the package python3-scipy")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

SAMPLES, LARGE_COUNT = 1 << 24, 1 << 26
TYPES = {"double": numpy.float64, "float": numpy.float32, "int": numpy.int32, "unsigned long long": numpy.uint64}
REPETITIONS = 3


def filters():
    for name, columns in (("double", 64), ("double", 4096), ("float", 4096)):
        for order in (2, 6, 10):
            b = numpy.array([1 / (i + 1) for i in range(order + 1)], TYPES[name])
            a = numpy.array([1] + order * [0.5 / order], TYPES[name])
            x = numpy.random.default_rng(1).integers(-1000, 1001, SAMPLES).astype(TYPES[name])
            for layout, shape, axis in (("interleaved", (-1, columns), 0), ("contiguous", (columns, -1), 1)):
                benchmark = "iirFilter<%s, %d, %d, Layout::%s>" % (name, order, columns, layout)
                yield benchmark, "lfilter", lambda: signal.lfilter(b, a, x.reshape(shape), axis)


def differences():
    for stride, length in (("1", "(1UL << 26) - 1"), ("8192", "8191")):
        for name, dtype in TYPES.items():
            array = numpy.ones((LARGE_COUNT // int(stride), int(stride)), dtype)
            yield "diff<%s, %s, %s>" % (name, stride, length), "diff", lambda: numpy.diff(array, axis=0)


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
    rows = [("benchmark", "peer", "its ms", "ours ms", "ratio", "a core")]
    for cases in (filters, differences):
        for name, function, call in cases():
            if ours and name not in ours:
                continue
            theirs = milliseconds(call)
            row = [name, function, "%.1f" % theirs, "", "", ""]
            if name in ours:
                own = 1e3 * ours[name].median
                row[3:] = "%.1f" % own, "%.2f" % (theirs / own), "%.2f" % (theirs / own / cores)
            rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
