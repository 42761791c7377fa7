#!/usr/bin/env python3
"""cumsum_numpy.py [RESULTS]: NumPy's `cumsum` on the arrays of cumsum_bench, in place, by one thread. It adds from left
to right and does not clamp. Prints GB/s (bytes read and written) and, given the JSON file of cumsum_bench, how many
times as fast that is, in all and for each of its cores.

    out/cpu/benchmarks/reductions_cumsum_bench --benchmark_out=cumsum.json
    benchmarks/reductions/cumsum_numpy.py cumsum.json
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

TYPES = {"double": numpy.float64, "int": numpy.int32, "double2": numpy.complex128, "signed char": numpy.int8}
REPETITIONS = 3
SOURCE = pathlib.Path(__file__).with_name("cumsum_bench.cpp")


def cases():
    """Name in cumsum_bench, type, and N, L and S, read from its source."""
    text = SOURCE.read_text()
    shapes = re.findall(r"cumSum<T, ([^>]+)>", text)
    listed = re.findall(r"_SHAPES\((\w+)\);", text)
    single = re.findall(r"GPURUNTIME_BENCHMARK\(cumSum<([a-z]\w*(?: \w+)?), ([^>]+)>", text)
    for name, shape in [(name, shape) for name in listed for shape in shapes] + single:
        sizes = [eval(size, {}, {"K": 1 << 10, "M": 1 << 20}) for size in shape.split(",")]
        yield "cumSum<%s, %s>" % (name, shape), TYPES[name], *sizes, *[1] * (3 - len(sizes))


def rate(dtype, count, length, stride):
    """GB/s of NumPy, whose arrays are row-major: the dimensions stand the other way round."""
    array = numpy.zeros((count // (length * stride), length, stride), dtype)

    def seconds():
        start = time.perf_counter()
        numpy.cumsum(array, axis=1, dtype=dtype, out=array)
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
    for name, *case in cases():
        numpys = rate(*case)
        row = [name, "%.2f" % numpys, "", "", ""]
        if name in ours:
            own = ours[name].run["bytes_per_second"] / 1e9
            row[2:] = "%.2f" % own, "%.1f" % (own / numpys), "%.1f" % (own / numpys / cores)
        rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
