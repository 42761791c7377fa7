#!/usr/bin/env python3
"""NumPy's peers of the benchmarks of throughput over size. In what rules differ stands in the subsystems' scripts.

usage: report_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import filled, main, numpy, peer  # noqa: E402

generator = numpy.random.default_rng(1)
DOUBLE = numpy.float64


def copied(n, dtype):
    array, out = filled(DOUBLE, n), filled(dtype, n)
    return n, lambda: numpy.copyto(out, array, casting="unsafe")


peer("copyto", "copySizes")(lambda n: copied(n, DOUBLE))
peer("copyto, as astype", "castSizes")(lambda n: copied(n, numpy.float32))
peer("arange", "colonSizes")(lambda n: (n, lambda: numpy.arange(n, dtype=DOUBLE)))


@peer("sum", "sumSizes")
def total(n):
    array = filled(DOUBLE, n)
    return n, lambda: numpy.sum(array)


@peer("cumsum", "cumSumSizes")
def running(n):
    array = filled(DOUBLE, n)
    array.fill(0)
    return n, lambda: numpy.cumsum(array, out=array)


@peer("copyto, transpose", "transposeSizes")
def transpose(n):
    rows = 1 << (n.bit_length() // 2)
    array, out = filled(DOUBLE, n // rows, rows), filled(DOUBLE, rows, n // rows)
    return n, lambda: numpy.copyto(out, array.T)


@peer("sort", "sortSizes")
def sort(n):
    array = generator.random(n)
    return n, lambda: numpy.sort(array, kind="stable")


@peer("take", "gatherSizes")
def gather(n):
    array, out, places = filled(DOUBLE, n), filled(DOUBLE, n), generator.permutation(n)
    return n, lambda: numpy.take(array, places, out=out, mode="clip")


@peer("interp", "interpolationSizes")
def interpolate(n):
    points, values, queries = numpy.linspace(0, 1, 1000), generator.random(1000), generator.random(n)
    return n, lambda: numpy.interp(queries, points, values)


@peer("convolve", "convolutionSizes")
def convolve(n):
    array, line = filled(numpy.float32, n), filled(numpy.float32, 16)
    return n, lambda: numpy.convolve(array, line, "same")


if __name__ == "__main__":
    main(__file__)
