#!/usr/bin/env python3
"""permute_numpy.py [RESULTS]: NumPy's `ascontiguousarray(transpose(a, ...))` on the arrays of permute_bench, by one
thread. Prints GB/s (bytes read and written) and, given the JSON file of permute_bench, how many times as fast that is,
in all and for each of its cores.

    out/cpu/benchmarks/elmath_permute_bench --benchmark_out=permute.json
    benchmarks/elmath/permute_numpy.py permute.json
"""
import json
import math
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

TYPES = {"unsigned char": numpy.uint8, "float": numpy.float32, "double": numpy.float64, "double2": numpy.complex128}
ORDERS = ((2, 1, 3), (3, 1, 2), (3, 2, 1), (1, 3, 2), (4, 3, 2, 1))
ODD = (("unsigned char", (3, 2, 1)), ("float", (3, 2, 1)), ("float", (1, 3, 2)))
REPETITIONS = 3


def large_size(rank, width):
    exponent = int(math.log2(2**29 // width))
    return tuple(2 ** ((exponent + rank - 1 - k) // rank) for k in range(rank))


def cases():
    """Name in permute_bench, type, sizes and order, column-major and counted from 1."""
    for name, dtype in TYPES.items():
        for order in ORDERS:
            size = large_size(len(order), numpy.dtype(dtype).itemsize)
            yield "permute<%s, %s>" % (name, ", ".join(map(str, order))), dtype, size, order
    for name, order in ODD:
        yield "permuteOddSizes<%s, %s>" % (name, ", ".join(map(str, order))), TYPES[name], (453, 469, 469), order
    for name in ("unsigned char", "float"):
        yield "permuteToPlanes<%s>" % name, TYPES[name], (3, 4096, 4096), (2, 3, 1)
        yield "permuteFromPlanes<%s>" % name, TYPES[name], (4096, 4096, 3), (3, 1, 2)


def rate(dtype, size, order):
    """GB/s of NumPy. Its arrays are row-major: the dimensions stand the other way round."""
    rank = len(size)
    array = numpy.full(size[::-1], 7, dtype)
    axes = [rank - dim for dim in reversed(order)]

    def seconds():
        start = time.perf_counter()
        numpy.ascontiguousarray(numpy.transpose(array, axes))
        return time.perf_counter() - start
    seconds()
    return 2 * array.nbytes / statistics.median(seconds() for _ in range(REPETITIONS)) / 1e9


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours, cores = {}, 1
    if len(sys.argv) == 2:
        ours = {re.sub(r"\s*,\s*", ", ", name): result for name, result in read(sys.argv[1]).items()}
        cores = json.loads(pathlib.Path(sys.argv[1]).read_text())["context"]["num_cpus"]
    rows = [("benchmark", "NumPy GB/s", "ours GB/s", "ratio", "a core")]
    for name, dtype, size, order in cases():
        numpys = rate(dtype, size, order)
        row = [name, "%.2f" % numpys, "", "", ""]
        if name in ours:
            own = ours[name].run["bytes_per_second"] / 1e9
            row[2:] = "%.2f" % own, "%.1f" % (own / numpys), "%.1f" % (own / numpys / cores)
        rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
