#!/usr/bin/env python3
"""conv_scipy.py [RESULTS]: SciPy's direct convolutions on arrays of the sizes of conv_bench, conv2_bench and
conv2SmallSquareFilter_bench, by one thread: `signal.convolve(method='direct')`, `ndimage.convolve1d` and
`ndimage.convolve`. Prints millions of elements per second and, given the JSON file of one of the three or a folder of
them, how many times as fast that is, in all and for each of its cores.

    for unit in conv conv2 conv2SmallSquareFilter; do
      out/cpu/benchmarks/convolutions_${unit}_bench --benchmark_out=results/$unit.json
    done
    benchmarks/convolutions/conv_scipy.py results
"""
import os
import pathlib
import re
import sys
import time

try:
    import numpy
    from scipy import ndimage, signal
except ImportError:
    sys.exit("NumPy or SciPy is missing: install the packages python3-numpy and python3-scipy")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

TYPES = {"float": numpy.float32, "double": numpy.float64, "float2": numpy.complex64, "double2": numpy.complex128}
COUNT, SIDE = 1 << 24, 2048
REPETITIONS = 3


def random(dtype, *shape):
    return numpy.random.default_rng(1).random(shape).astype(dtype)


def cases():
    """Name in the benchmarks, elements, and a call of SciPy's. Its arrays are row-major: the last dimension is our first."""
    for name in TYPES:
        vector, page = random(TYPES[name], COUNT), random(TYPES[name], SIDE, SIDE)
        for taps, member in ((16, 16), (64, 64), (128, 128), (128, 64)):
            line = random(TYPES[name], taps)
            yield ("convolutionVector<%s, %d, %d>" % (name, member, taps), COUNT,
                   lambda: signal.convolve(vector, line, mode="same", method="direct"))
        for taps in (9, 16, 24, 32, 36):
            line = random(TYPES[name], taps)
            for axis, direction in ((1, "KernelTypeColumn"), (0, "KernelTypeRow")):
                yield ("convolutionMatrix<%s, %d, %s>" % (name, taps, direction), SIDE * SIDE,
                       lambda: ndimage.convolve1d(page, line, axis=axis, mode="constant"))
        for side in (3, 5, 7, 9):
            square = random(TYPES[name], side, side)
            yield ("convolutionSquare<%s, %d>" % (name, side), SIDE * SIDE,
                   lambda: ndimage.convolve(page, square, mode="constant"))


def seconds(call):
    start = time.perf_counter()
    call()
    return time.perf_counter() - start


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours, cores = {}, os.cpu_count()
    if len(sys.argv) == 2:
        ours = {re.sub(r"/.*", "", name): result for name, result in read(sys.argv[1]).items()}
    rows = [("benchmark", "SciPy M/s", "ours M/s", "ratio", "a core")]
    for name, elements, call in cases():
        if ours and name not in ours:
            continue
        peer = elements / min(seconds(call) for _ in range(REPETITIONS)) / 1e6
        row = [name, "%.1f" % peer, "", "", ""]
        if name in ours:
            own = elements / ours[name].median / 1e6
            row[2:] = "%.1f" % own, "%.1f" % (own / peer), "%.1f" % (own / peer / cores)
        rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
