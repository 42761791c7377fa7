#!/usr/bin/env python3
"""NumPy's peers of the benchmarks of build. Its `arange`, `linspace` and `logspace` make a new array a call, and
`linspace` takes one product an element where ours divides. Of its generators, which draw by one thread, Philox is the
variant with 64-bit words, PCG64 the default. Normal numbers are drawn by its ziggurat.

usage: build_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, numpy, peer  # noqa: E402

LARGE, SIDE = constant("largeCount", "support/bench.hpp"), constant("largeSide", "support/bench.hpp")


@peer("arange", "colon", "intColon")
def ascending(T):
    return LARGE, lambda: numpy.arange(LARGE, dtype=T)


@peer("diagonal[:] = 1", "eye")
def eye():
    diagonal = filled(numpy.float64, SIDE * SIDE)[::SIDE + 1]
    return SIDE, lambda: diagonal.fill(1)


@peer("resize(repeat(arange, 1000), n)", "fillArrayWithRunningIndex")
def running_index(T):
    return LARGE, lambda: numpy.resize(numpy.repeat(numpy.arange(1, 78, dtype=T), 1000), LARGE)


@peer("fill", "genericOnes")
def fill(T):
    array = filled(T, LARGE)
    return LARGE, lambda: array.fill(0)


def spaced(count, function, stop, dtype=None):
    return count, lambda: function(-1, stop, count, dtype=dtype)


peer("linspace", "linspaceDouble")(lambda: spaced(LARGE, numpy.linspace, 3))
peer("linspace", "linspaceFloat")(lambda: spaced(LARGE, numpy.linspace, 3, numpy.float32))
peer("linspace", "linspaceDouble2")(lambda: spaced(LARGE, numpy.linspace, 3 + 1j))
peer("logspace", "logspaceDouble")(lambda: spaced(1 << 22, numpy.logspace, 3))
peer("logspace", "logspaceDouble2")(lambda: spaced(1 << 20, numpy.logspace, 3 + 1j))


def drawn(bits, method, dtype):
    draw = getattr(numpy.random.Generator(getattr(numpy.random, bits)(12345)), method)
    out = filled(dtype, LARGE)
    return LARGE, lambda: draw(out=out, dtype=dtype), dtype


@peer("Philox random", "rand")
def philox(G, T):
    return drawn("Philox", "random", T) if G.startswith("Philox") else None


peer("PCG64 random", "rand")(lambda G, T: drawn("PCG64", "random", T))
peer("PCG64 random", "randFromSecondSample")(lambda: drawn("PCG64", "random", numpy.float64))
peer("PCG64 standard_normal", "boxMuller", "inversion")(lambda G, T: drawn("PCG64", "standard_normal", T))


@peer("PCG64 integers", "randI")
def integers(G, T):
    draw = numpy.random.default_rng(12345).integers
    dtype = numpy.int64 if T is numpy.float64 else T
    return LARGE, lambda: draw(1, 101, LARGE, dtype)


if __name__ == "__main__":
    main(__file__)
