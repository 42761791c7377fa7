#!/usr/bin/env python3
"""reductions_numpy.py [RESULTS]: NumPy's `sum`, `min`, `max`, `argmin`, `argmax` and `any` on the arrays of the benchmarks
of reductions, by one thread. It sums in an order of its own, and its extremes of NaN are NaN. Prints GB/s read and,
given a folder of the benchmarks' JSON files, how many times as fast those are, in all and for each of their cores.

    for unit in sum min max any; do
      out/cpu/benchmarks/reductions_${unit}_bench --benchmark_out=results/$unit.json; done
    benchmarks/reductions/reductions_numpy.py results
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

ROOT = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(ROOT.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

COUNT = 2**26
TYPES = {"double": numpy.float64, "int": numpy.int32, "double2": numpy.complex128, "signed char": numpy.int8,
         "unsigned char": numpy.uint8}
PEERS = {"sum": numpy.sum, "minOf": numpy.min, "maxOf": numpy.max, "minWithIndex": numpy.argmin,
         "maxWithIndex": numpy.argmax, "any": numpy.any}
REPETITIONS = 3


def cases():
    """Name of a benchmark, NumPy's function, type, and L and S, read from the sources."""
    for unit in ("sum", "min", "max", "any"):
        for name in re.findall(r"GPURUNTIME_BENCHMARK\((.*)\);", (ROOT / (unit + "_bench.cpp")).read_text()):
            family, element, sizes = re.fullmatch(r"(\w+)<([\w ]+), (.*)>", name).groups()
            sizes = [eval(size, {}, {}) for size in sizes.split(",")]
            yield name, PEERS[re.sub("Of(Segments|Columns)$", "", family)], TYPES[element], *sizes, *[1] * (2 - len(sizes))


def rate(peer, dtype, length, stride):
    """GB/s of NumPy, whose arrays are row-major: the dimensions stand the other way round."""
    array = numpy.empty((COUNT // (length * stride), length, stride), dtype)
    array.fill(0)  # numpy.zeros would leave one page of zeros in the place of all.

    def seconds():
        start = time.perf_counter()
        peer(array, axis=1)
        return time.perf_counter() - start
    seconds()
    return array.nbytes / statistics.median(seconds() for _ in range(REPETITIONS)) / 1e9


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours, cores = {}, 1
    if len(sys.argv) == 2:
        ours = {re.sub(r"\s*,\s*", ", ", name): result for name, result in read(sys.argv[1]).items()}
        cores = json.loads(next(pathlib.Path(sys.argv[1]).glob("*.json")).read_text())["context"]["num_cpus"]
    rows = [("benchmark", "NumPy GB/s", "ours GB/s", "ratio", "a core")]
    for name, peer, dtype, length, stride in cases():
        numpys = rate(peer, dtype, length, stride)
        row = [name, "%.2f" % numpys, "", "", ""]
        if name in ours:
            own = ours[name].run["bytes_per_second"] / 1e9
            row[2:] = "%.2f" % own, "%.1f" % (own / numpys), "%.1f" % (own / numpys / cores)
        rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
