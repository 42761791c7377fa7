#!/usr/bin/env python3
"""NumPy's peers of the benchmarks of reductions, whose segments are rows here. It sums in an order of its own, `int` in
64 bits; its extremes of NaN are NaN; its cumulative sums add from left to right, and none of its integers saturates.

usage: reductions_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, numpy, peer  # noqa: E402

LARGE = constant("largeCount", "support/bench.hpp")


def reduced(function, element, length, stride=1, **options):
    """The dimensions stand the other way round: NumPy's arrays are row-major."""
    array = numpy.empty((LARGE // (length * stride), length, stride), element)
    array.fill(function is numpy.all)  # So that no element decides.
    return LARGE, lambda: function(array, axis=1, **options)


for words, function, names in (
        ("sum", numpy.sum, ("sumOfSegments", "sumOfColumns")), ("prod", numpy.prod, ("prodOfSegments",)),
        ("min", numpy.min, ("minOf",)), ("max", numpy.max, ("maxOf",)), ("argmin", numpy.argmin, ("minWithIndex",)),
        ("argmax", numpy.argmax, ("maxWithIndex",)), ("any", numpy.any, ("anyOfSegments", "anyOfColumns")),
        ("all", numpy.all, ("allOfSegments",)), ("count_nonzero", numpy.count_nonzero, ("countNonZeroOfSegments",))):
    peer(words, *names)(lambda T, *shape, function=function: reduced(function, T, *shape))

AS_DOUBLE = constant("asDoubleLength", "reductions/sum_bench.cpp")
peer("sum, dtype=double", "sumAsDouble")(lambda: reduced(numpy.sum, numpy.int32, AS_DOUBLE, dtype=numpy.float64))
peer("prod, dtype=double", "prodAsDouble")(lambda: reduced(numpy.prod, numpy.int32, AS_DOUBLE, dtype=numpy.float64))


def flagged(flag, reduce):
    def make(T, length):
        array, flags = filled(T, LARGE // length, length), filled(numpy.bool_, LARGE // length, length)
        return LARGE, lambda: reduce(flag(array, out=flags), axis=1)
    return make


peer("isnan, any", "hasNaNOrTrueOfSegments")(flagged(numpy.isnan, numpy.any))
peer("isinf, any", "hasInfOrTrueOfSegments")(flagged(numpy.isinf, numpy.any))
peer("isfinite, all", "hasNaNOrInfOrTrueOfSegments")(flagged(numpy.isfinite, numpy.all))


def scanned(function, dtype, count, length, stride):
    array = numpy.empty((count // (length * stride), length, stride), dtype)
    array.fill(0)
    return count, lambda: function(array, axis=1, dtype=dtype, out=array)


peer("cumsum", "cumSum")(lambda T, N, L, S=1: scanned(numpy.cumsum, T, N, L, S))
peer("cumprod", "cumProd")(lambda T: scanned(numpy.cumprod, T, 4 * LARGE // numpy.dtype(T).itemsize, 1 << 20, 1))


def adjusted(function, scan):
    """Each chunk joined with the total of those before it."""
    chunks, totals = filled(numpy.float64, LARGE >> 20, 1 << 20), filled(numpy.float64, LARGE >> 20)
    return LARGE, lambda: function(chunks[1:], scan(totals)[:-1, None], out=chunks[1:])


peer("cumsum, add", "cumSumAdjust")(lambda: adjusted(numpy.add, numpy.cumsum))
peer("cumprod, multiply", "cumProdAdjust")(lambda: adjusted(numpy.multiply, numpy.cumprod))


if __name__ == "__main__":
    main(__file__)
